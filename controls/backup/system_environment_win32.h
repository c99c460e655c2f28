// The system's part of the backup's environment: everything except the user.
#pragma once

#include <optional>

#include "controls/backup/environment.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::backup {

class SystemEnvironment : public Environment {
  public:
    // clang-format off
    Date Today() override { return SystemServices::Today(); }
    std::optional<std::uint64_t> FileSize(TextView path) override { return SystemServices::FileSize(path); }
    void CreateEmptyFile(TextView path) override { SystemServices::CreateEmptyFile(path); }
    void DeleteFile(TextView path) override { SystemServices::DeleteFile(path); }
    void RenameFile(TextView from, TextView to) override { SystemServices::RenameFile(from, to); }
    void ReplaceFile(TextView from, TextView to) override { SystemServices::ReplaceFile(from, to); }
    Text FirstFile(TextView folder, TextView extension) override { return SystemServices::FirstFile(folder, extension); }
    void DeleteFiles(TextView folder) override { SystemServices::DeleteFiles(folder); }
    bool SameFolder(TextView one, TextView other) override { return SystemServices::SameFolder(one, other); }
    Text ShortPath(TextView file) override { return SystemServices::ShortPath(file); }
    DriveKind DriveTypeOf(TextView path) override { return SystemServices::DriveTypeOf(path); }
    std::optional<std::uint64_t> FreeSpace(TextView path) override { return SystemServices::FreeSpace(path); }
    void ChangeDrive(TextView path) override { SystemServices::ChangeDrive(path); }
    Text TemporaryName() override { return SystemServices::TemporaryName(); }
    bool DatabaseOpens(TextView connection) override { return SystemServices::DatabaseOpens(connection); }
    void StartArchiver(TextView commandLine) override { services_.StartArchiver(commandLine); }
    std::uint32_t WaitForArchiver() override { return services_.WaitForArchiver(DialogWindow()); }
    void SendMail(const Mail& mail) override { SystemServices::SendMail(DialogWindow(), mail); }
    // clang-format on

  protected:
    // The window to paint while an archiver runs, and the owner of the mail program's dialogs; may be null.
    virtual HWND DialogWindow() const = 0;

  private:
    SystemServices services_;
};

}  // namespace qvx::backup
