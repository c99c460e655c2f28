// The steps of the backup that concern the user, as the dialog performs them.
#pragma once

#include <optional>

#include "controls/backup/backup_dialog.h"
#include "controls/backup/password_dialog.h"
#include "controls/backup/steps.h"

namespace qvx::backup {

class DialogSteps final : public UserSteps {
  public:
    // `dialog` must outlive this object.
    explicit DialogSteps(BackupDialog& dialog) : dialog_(dialog) {}

    void Refresh(const FormState& form) override;
    bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) override;
    void ReportError(int number, TextView description) override;
    Text BrowseForFolder(TextView title) override;
    Text ShowOpenFile(TextView title) override;
    bool RunPasswordPrompt(TextView connection) override;
    void ClosePasswordPrompt() override;

  private:
    BackupDialog& dialog_;
    std::optional<PasswordDialog> prompt_;
};

}  // namespace qvx::backup
