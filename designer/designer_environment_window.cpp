#include "designer/designer_environment_window.h"

#include <commdlg.h>

#include <algorithm>
#include <vector>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "designer/browser_win32.h"
#include "host/form_storage_win32.h"

namespace qvx::host::designer {

Questions SystemQuestions() {
    Questions questions;
    questions.ask = [](HWND owner, const Text& question, UINT kind) {
        return MessageBoxW(owner, Wide(question), Wide(ProgramTitle()), kind);
    };
    questions.file = [](HWND owner, bool save, const Text& initial, const Text& filter) {
        std::vector<wchar_t> buffer(32768);
        const Text fileName = initial.substr(initial.find_last_of(u"\\/") + 1);
        const Text folder = initial.substr(0, initial.size() - fileName.size());
        const std::wstring_view name = Wide(TextView(fileName));
        std::copy_n(name.begin(), std::min(name.size(), buffer.size() - 1), buffer.begin());
        OPENFILENAMEW request{};
        request.lStructSize = sizeof request;
        request.hwndOwner = owner;
        request.lpstrFilter = Wide(filter);
        // Without a folder, the system begins in that of the file that was chosen last, whichever that is.
        request.lpstrInitialDir = folder.empty() ? nullptr : Wide(folder);
        request.lpstrFile = buffer.data();
        request.nMaxFile = static_cast<DWORD>(buffer.size());
        request.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY |
                        (save ? OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST : OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
        request.lpstrDefExt = save ? L"frm" : nullptr;
        const BOOL chosen = save ? GetSaveFileNameW(&request) : GetOpenFileNameW(&request);
        return chosen ? Text(FromWide(buffer.data())) : Text();
    };
    questions.browse = OpenInBrowser;
    return questions;
}

void DesignerEnvironment::Log(const Text& line) const {
    try {
        AppendLine(options.log, line);
    } catch (const RunTimeError& error) {
        reporter.Note(Text(error.Description()));
    }
}

void DesignerEnvironment::ReportFailure() const { reporter.Error(FailureInFlightText()); }

}  // namespace qvx::host::designer
