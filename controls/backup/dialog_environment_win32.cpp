#include "controls/backup/dialog_environment_win32.h"

#include "controls/backup/password_source_win32.h"
#include "dialogs/file_dialogs.h"
#include "dialogs/show_message_dialog.h"
#include "kit/error_report.h"

namespace qvx::backup {

namespace {

std::intptr_t Number(HWND window) { return reinterpret_cast<std::intptr_t>(window); }

}  // namespace

void DialogEnvironment::Refresh(const FormState& form) { dialog_.Refresh(form); }

bool DialogEnvironment::ShowMessage(TextView prompt, const dialogs::MessageKind& kind,
                                    const std::optional<Text>& title) {
    return dialogs::ShowMessage(dialog_.Handle(), prompt, kind, title);
}

void DialogEnvironment::ReportError(int number, TextView description) {
    ShowErrorReport(dialog_.Handle(), number, description);
}

Text DialogEnvironment::BrowseForFolder(TextView title) {
    return qvx::BrowseForFolder(Number(dialog_.Handle()), title);
}

Text DialogEnvironment::ShowOpenFile(TextView title) { return qvx::ShowOpenFile(Number(dialog_.Handle()), title, {}); }

bool DialogEnvironment::RunPasswordPrompt(TextView connection) {
    prompt_.emplace([database = Text(connection)] { return AdministratorPassword(database); });
    try {
        return prompt_->Run(dialog_.Handle());
    } catch (...) {
        ClosePasswordPrompt();
        throw;
    }
}

void DialogEnvironment::ClosePasswordPrompt() { prompt_.reset(); }

}  // namespace qvx::backup
