// What the backup does outside itself that needs no dialog: files, drives, the archivers' processes, the database,
// mail. What each step does and how it fails is said in controls/backup/environment.h. No description that leaves here
// names a path, a connection string or a password.
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
    // Error 5 when none was started. Of the dialog (and the windows in it) only painting goes on, and what other
    // threads and processes send: input waits in the queue, and so does a request to end the thread.
    std::uint32_t WaitForArchiver(HWND dialog);
    // `owner` is the window that the mail program's dialogs are put over; may be null.
    static void SendMail(HWND owner, const Mail& mail);

  private:
    UniqueKernelObject archiver_;  // the one started last, until it has been waited for
};

}  // namespace qvx::backup
