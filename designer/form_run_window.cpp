#include "designer/form_run_window.h"

#include "com/guard.h"
#include "com/module.h"
#include "com/wide_text.h"
#include "designer/document/named_pictures.h"
#include "designer/run_command.h"
#include "host/form_storage_win32.h"

namespace qvx::host::designer {

namespace {

constexpr UINT poll = 300;  // milliseconds

bool IsThere(const Text& path) { return GetFileAttributesW(Wide(path)) != INVALID_FILE_ATTRIBUTES; }

}  // namespace

void FormRun::Start() {
    if (process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT) {
        environment_.Ask(u"The form is running already; close it first.", MB_OK | MB_ICONINFORMATION);
        return;
    }
    Follow();
    Text form = session_.Path();
    try {
        if (form.empty() || session_.Form().Dirty()) form = WriteCopy();
    } catch (...) {
        environment_.ReportFailure();
        return;
    }
    Text line = RunCommandLine(ModulePath(nullptr), form, Script(), environment_.options);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, WideBuffer(line), nullptr, nullptr, FALSE, 0, nullptr,
                        Wide(session_.Picture().Folder()), &start, &process)) {
        environment_.reporter.Error(u"The form cannot be started: " + FailureText(HRESULT_FROM_WIN32(GetLastError())));
        Follow();
        return;
    }
    CloseHandle(process.hThread);
    process_.Reset(process.hProcess);
    SetTimer(environment_.window, timer, poll, nullptr);
}

Text FormRun::WriteCopy() {
    const Text& path = session_.Path();
    const Text name = path.empty() ? session_.Form().File().form.name + u".frm" : FileNameOf(path);
    // A file of that name that is already there is not ours.
    Text copy;
    int attempt = 0;
    do {
        copy = session_.Picture().Folder() + u"\\" + RunCopyName(name, attempt++);
    } while (IsThere(copy));
    ReplaceFileBytes(copy, session_.Form().Bytes());
    copy_ = copy;
    return copy;
}

Text FormRun::Script() const {
    if (!environment_.options.script.empty() || session_.Path().empty()) return environment_.options.script;
    for (const Text& script : ScriptsBeside(session_.Path())) {
        if (IsThere(script)) return script;
    }
    return {};
}

void FormRun::Follow() {
    if (process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_TIMEOUT) return;
    if (process_) environment_.Log(u"Designer: the form has ended");
    process_.Reset();
    KillTimer(environment_.window, timer);
    RemoveCopy();
}

void FormRun::RemoveCopy() {
    if (!copy_.empty()) DeleteFileW(Wide(copy_));
    copy_.clear();
}

}  // namespace qvx::host::designer
