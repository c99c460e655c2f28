#include "controls/backup/dialog_steps_win32.h"

#include "controls/backup/password_source_win32.h"
#include "dialogs/file_dialogs.h"
#include "dialogs/show_message_dialog.h"
#include "kit/error_report.h"

namespace qvx::backup {

namespace {

std::intptr_t Number(HWND window) { return reinterpret_cast<std::intptr_t>(window); }

}  // namespace

void DialogSteps::Refresh(const FormState& form) { dialog_.Refresh(form); }

bool DialogSteps::ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) {
    return dialogs::ShowMessage(dialog_.Handle(), prompt, kind, title);
}

void DialogSteps::ReportError(int number, TextView description) {
    ShowErrorReport(dialog_.Handle(), number, description);
}

Text DialogSteps::BrowseForFolder(TextView title) { return qvx::BrowseForFolder(Number(dialog_.Handle()), title); }

Text DialogSteps::ShowOpenFile(TextView title) { return qvx::ShowOpenFile(Number(dialog_.Handle()), title, {}); }

bool DialogSteps::RunPasswordPrompt(TextView connection) {
    prompt_.emplace([database = Text(connection)] { return AdministratorPassword(database); });
    try {
        return prompt_->Run(dialog_.Handle());
    } catch (...) {
        ClosePasswordPrompt();
        throw;
    }
}

void DialogSteps::ClosePasswordPrompt() { prompt_.reset(); }

}  // namespace qvx::backup
