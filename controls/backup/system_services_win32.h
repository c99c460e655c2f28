// The effects of the backup that need no dialog: files, drives, the archivers' processes, the database, mail.
// controls/backup/steps.h documents each step and its errors. No description that is thrown from here contains a
// path, a connection string or a password.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "common/text.h"
#include "controls/backup/steps.h"
#include "win/handles.h"

namespace qvx::backup {

class SystemServices : public SystemSteps {
  public:
    // `dialog` names the window that is repainted while an archiver runs and that owns the mail program's dialogs; null
    // for none.
    explicit SystemServices(std::function<HWND()> dialog = [] { return HWND(nullptr); }) : dialog_(std::move(dialog)) {}

    // --- Files ---
    std::optional<std::uint64_t> FileSize(TextView path) override;
    void CreateEmptyFile(TextView path) override;
    void DeleteFile(TextView path) override;
    void RenameFile(TextView from, TextView to) override;
    void ReplaceFile(TextView from, TextView to) override;
    // --- Folders ---
    Text FirstFile(TextView folder, TextView extension) override;
    void DeleteFiles(TextView folder) override;
    bool SameFolder(TextView one, TextView other) override;
    // --- Names and drives ---
    Text ShortPath(TextView file) override;
    DriveKind DriveTypeOf(TextView path) override;
    std::optional<std::uint64_t> FreeSpace(TextView path) override;
    void ChangeDrive(TextView path) override;
    Text TemporaryName() override;
    Date Today() override;
    // --- Others ---
    bool DatabaseOpens(TextView connection) override;
    void StartArchiver(TextView commandLine) override;
    // Throws error 5 when none was started. Only painting of the dialog (and the windows in it) continues, and messages
    // from other threads and processes are handled: input waits in the queue, and so does a request to end the thread.
    std::uint32_t WaitForArchiver() override;
    void SendMail(const Mail& mail) override;

  private:
    std::function<HWND()> dialog_;
    UniqueKernelObject archiver_;  // the one that was started last, until it has been waited for
};

}  // namespace qvx::backup
