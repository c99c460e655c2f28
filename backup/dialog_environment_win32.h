// The surroundings of the backup's procedure in the product: the dialog for what the user sees, the system for the
// rest.
#pragma once

#include <optional>

#include "backup/backup_dialog.h"
#include "backup/environment.h"
#include "backup/password_dialog.h"
#include "backup/system_services_win32.h"

namespace qvx::backup {

class DialogEnvironment final : public Environment {
  public:
    // `dialog` must outlive it.
    explicit DialogEnvironment(BackupDialog& dialog) : dialog_(dialog) {}

    void Refresh(const FormState& form) override;
    bool ShowMessage(TextView prompt, const msgbox::MessageKind& kind, const std::optional<Text>& title) override;
    void ReportError(int number, TextView description) override;
    Text BrowseForFolder(TextView title) override;
    Text ShowOpenFile(TextView title) override;
    bool RunPasswordPrompt(TextView connection) override;
    void ClosePasswordPrompt() override;
    std::uint32_t WaitForArchiver() override;
    void SendMail(const Mail& mail) override;

    // The system's, as they are.
    // clang-format off
    Date Today() override { return system_.Today(); }
    std::optional<std::uint64_t> FileSize(TextView path) override { return system_.FileSize(path); }
    void CreateEmptyFile(TextView path) override { system_.CreateEmptyFile(path); }
    void DeleteFile(TextView path) override { system_.DeleteFile(path); }
    void RenameFile(TextView from, TextView to) override { system_.RenameFile(from, to); }
    void CopyFile(TextView from, TextView to) override { system_.CopyFile(from, to); }
    void ReplaceFile(TextView from, TextView to) override { system_.ReplaceFile(from, to); }
    Text FirstFile(TextView folder, TextView extension) override { return system_.FirstFile(folder, extension); }
    void DeleteFiles(TextView folder) override { system_.DeleteFiles(folder); }
    bool SameFolder(TextView one, TextView other) override { return system_.SameFolder(one, other); }
    Text ShortPath(TextView file) override { return system_.ShortPath(file); }
    DriveKind DriveTypeOf(TextView path) override { return system_.DriveTypeOf(path); }
    void ChangeDrive(TextView path) override { system_.ChangeDrive(path); }
    Text TemporaryName() override { return system_.TemporaryName(); }
    bool DatabaseOpens(TextView connection) override { return system_.DatabaseOpens(connection); }
    void StartArchiver(TextView commandLine) override { system_.StartArchiver(commandLine); }
    // clang-format on

  private:
    BackupDialog& dialog_;
    SystemServices system_;
    std::optional<PasswordDialog> prompt_;
};

}  // namespace qvx::backup
