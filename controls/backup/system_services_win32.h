// The effects of the backup that need no dialog: files, drives, the archivers' processes, the database, mail.
// controls/backup/environment.h documents each step and its errors. No description that is thrown from here contains a
// path, a connection string or a password.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

#include "common/text.h"
#include "controls/backup/environment.h"
#include "win/handles.h"

namespace qvx::backup {

class SystemServices {
  public:
    // --- Files ---
    static std::optional<std::uint64_t> FileSize(TextView path);
    static void CreateEmptyFile(TextView path);
    static void DeleteFile(TextView path);
    static void RenameFile(TextView from, TextView to);
    static void ReplaceFile(TextView from, TextView to);
    // --- Folders ---
    static Text FirstFile(TextView folder, TextView extension);
    static void DeleteFiles(TextView folder);
    static bool SameFolder(TextView one, TextView other);
    // --- Names and drives ---
    static Text ShortPath(TextView file);
    static DriveKind DriveTypeOf(TextView path);
    static std::optional<std::uint64_t> FreeSpace(TextView path);
    static void ChangeDrive(TextView path);
    static Text TemporaryName();
    static Date Today();
    // --- Others ---
    static bool DatabaseOpens(TextView connection);
    void StartArchiver(TextView commandLine);
    // Throws error 5 when none was started. Only painting of the dialog (and the windows in it) continues, and messages
    // from other threads and processes are handled: input waits in the queue, and so does a request to end the thread.
    std::uint32_t WaitForArchiver(HWND dialog);
    // `owner` is the window over which the mail program's dialogs appear; may be null.
    static void SendMail(HWND owner, const Mail& mail);

  private:
    UniqueKernelObject archiver_;  // the one that was started last, until it has been waited for
};

}  // namespace qvx::backup
