// The environment of the backup procedure in the product: the dialog for everything that the user sees, the system for
// the rest.
#pragma once

#include <optional>

#include "controls/backup/backup_dialog.h"
#include "controls/backup/password_dialog.h"
#include "controls/backup/system_environment_win32.h"

namespace qvx::backup {

class DialogEnvironment final : public SystemEnvironment {
  public:
    // `dialog` must outlive this object.
    explicit DialogEnvironment(BackupDialog& dialog) : dialog_(dialog) {}

    void Refresh(const FormState& form) override;
    bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) override;
    void ReportError(int number, TextView description) override;
    Text BrowseForFolder(TextView title) override;
    Text ShowOpenFile(TextView title) override;
    bool RunPasswordPrompt(TextView connection) override;
    void ClosePasswordPrompt() override;

  protected:
    HWND DialogWindow() const override { return dialog_.Handle(); }

  private:
    BackupDialog& dialog_;
    std::optional<PasswordDialog> prompt_;
};

}  // namespace qvx::backup
