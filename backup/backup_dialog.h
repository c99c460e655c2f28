// The dialog that saves a database to an archive and brings it back. Windows only.
#pragma once

#include <memory>

#include "backup/backup_form.h"
#include "backup/password_dialog.h"
#include "backup/procedure.h"
#include "backup/system_services_win32.h"
#include "win/accessible.h"
#include "win/tool_tip.h"

namespace qvx::backup {

class BackupDialog final : public FormWindow, private Environment {
  public:
    BackupDialog(Settings settings, Mode mode);
    ~BackupDialog() override { Destroy(); }

    // Shows it over `owner`'s top-level window and returns when the user closes it.
    void Run(HWND owner);

  private:
    // Refuses characters that no file name can hold.
    class NameTap final : public WindowSubclass {
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    };

    bool Build(HWND owner);
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnOk() override;
    void OnCancel() override;
    // Lets the procedure work on what the fields hold. The dialog takes no input meanwhile.
    void Work(void (backup::Procedure::*work)(FormState&));
    void ShowOutcome(const FormState& form);
    void EnableOk();
    void EmailClicked();
    bool EmailChecked() const;

    // Environment
    void Refresh(const FormState& form) override;
    bool ShowMessage(TextView prompt, const msgbox::MessageKind& kind, const std::optional<Text>& title) override;
    void ReportError(int number, TextView description) override;
    Text BrowseForFolder(TextView title) override;
    Text ShowOpenFile(TextView title) override;
    bool RunPasswordPrompt(TextView connection) override;
    void ClosePasswordPrompt() override { prompt_.reset(); }
    Date Today() override { return services_.Today(); }
    std::optional<std::uint64_t> FileSize(TextView path) override { return services_.FileSize(path); }
    void CreateEmptyFile(TextView path) override { services_.CreateEmptyFile(path); }
    void DeleteFile(TextView path) override { services_.DeleteFile(path); }
    void RenameFile(TextView from, TextView to) override { services_.RenameFile(from, to); }
    void CopyFile(TextView from, TextView to) override { services_.CopyFile(from, to); }
    void ReplaceFile(TextView from, TextView to) override { services_.ReplaceFile(from, to); }
    Text FirstFile(TextView folder, TextView extension) override { return services_.FirstFile(folder, extension); }
    void DeleteFiles(TextView folder) override { services_.DeleteFiles(folder); }
    bool SameFolder(TextView one, TextView other) override { return services_.SameFolder(one, other); }
    Text ShortPath(TextView file) override { return services_.ShortPath(file); }
    DriveKind DriveTypeOf(TextView path) override { return services_.DriveTypeOf(path); }
    void ChangeDrive(TextView path) override { services_.ChangeDrive(path); }
    Text TemporaryName() override { return services_.TemporaryName(); }
    bool DatabaseOpens(TextView connection) override { return services_.DatabaseOpens(connection); }
    void StartArchiver(TextView commandLine) override { services_.StartArchiver(commandLine); }
    std::uint32_t WaitForArchiver() override { return services_.WaitForArchiver(Handle()); }
    void SendMail(const Mail& mail) override { services_.SendMail(Handle(), mail); }

    Mode mode_;
    SystemServices services_;
    backup::Procedure procedure_;
    bool working_ = false;
    HWND location_ = nullptr;
    HWND email_ = nullptr;
    HWND groupLabel_ = nullptr;
    HWND groupName_ = nullptr;
    HWND outcome_ = nullptr;
    buttons::ButtonWindow browse_;
    buttons::ButtonWindow ok_;
    buttons::ButtonWindow cancel_;
    NameTap nameTap_;
    AccessibleNameTap locationName_;  // the frame's text is what the field is for
    ToolTip outcomeTip_;
    std::unique_ptr<PasswordDialog> prompt_;
};

}  // namespace qvx::backup
