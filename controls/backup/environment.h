// Everything the backup does outside itself, step by step: what the user sees and is asked, files, the archivers,
// the database, mail and the calendar. The dialog stands behind it in the product; tests have one of their own, in
// which each step can fail and the program can end between any two.
#pragma once

#include <cstdint>
#include <optional>

#include "common/text.h"
#include "dialogs/messages.h"

namespace qvx::backup {

// What the dialog's fields hold.
struct FormState {
    Text location;
    bool email = false;  // "as a separate group" in a restore
    Text groupName;
    Text outcome;
    Text outcomeTip;  // shown over the outcome line; empty for none
};

struct Date {
    int day = 1;
    int month = 1;
};

enum class DriveKind { removable, other };

struct Mail {
    Text subject;
    Text attachment;      // full path
    Text attachmentName;  // as the receiver sees it
};

// Steps that fail throw RunTimeError with the hosts' number (53 "File not found", 61 "Disk full", 70 "Permission
// denied", 75 "Path/File access error", 76 "Path not found", 68 "Device unavailable") and a description that names no
// path. A step that failed has changed nothing except where it says so.
class Environment {
  public:
    virtual ~Environment() = default;

    // --- The user ---

    // Puts the fields' contents on the screen and paints the dialog at once. Never fails.
    virtual void Refresh(const FormState& form) = 0;
    virtual bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) = 0;
    virtual void ReportError(int number, TextView description) = 0;
    // Empty when the user cancels.
    virtual Text BrowseForFolder(TextView title) = 0;
    virtual Text ShowOpenFile(TextView title) = 0;
    // Shows the password prompt on a database and returns with whether its password was given. The prompt's form stays,
    // hidden, until it is closed.
    virtual bool RunPasswordPrompt(TextView connection) = 0;
    virtual void ClosePasswordPrompt() = 0;

    virtual Date Today() = 0;

    // --- Files. Paths are taken as they are, wildcards only where it says so. ---

    // Bytes of a file; nothing when there is none (a folder is none).
    virtual std::optional<std::uint64_t> FileSize(TextView path) = 0;
    // Leaves an empty file there, whatever was there before.
    virtual void CreateEmptyFile(TextView path) = 0;
    virtual void DeleteFile(TextView path) = 0;
    // Within a folder, to a name that nobody has. A read-only file refuses, as it refuses to be deleted: what is set
    // aside so is to go.
    virtual void RenameFile(TextView from, TextView to) = 0;
    // Puts a copy of a file in the place of `to` (which may be there or not): written beside it under a name of its
    // own, through to the disk, and moved there in one step. Whenever the program or the system stops, `to` is the
    // whole old file or the whole new one. Permissions of the old one stay.
    virtual void ReplaceFile(TextView from, TextView to) = 0;
    // The name, without folder, of the first file in a folder (which ends in a separator) whose name ends in
    // `extension`, in any case; empty when there is none.
    virtual Text FirstFile(TextView folder, TextView extension) = 0;
    // Deletes every file of a folder, but no folder in it. On failure some may be gone.
    virtual void DeleteFiles(TextView folder) = 0;
    // Whether both name the same folder, however they spell it.
    virtual bool SameFolder(TextView one, TextView other) = 0;
    // The 8.3 form of an existing file's path, or the path itself where the system keeps no such form. Error 53 when
    // there is no such file.
    virtual Text ShortPath(TextView file) = 0;
    // Of the drive a path is on; the path itself need not exist.
    virtual DriveKind DriveTypeOf(TextView path) = 0;
    // Bytes that the user may still write on the medium with a path's folder; nothing where the system does not tell.
    virtual std::optional<std::uint64_t> FreeSpace(TextView path) = 0;
    // Makes the drive of a path the current one.
    virtual void ChangeDrive(TextView path) = 0;
    // A fresh name for a temporary file, without folder.
    virtual Text TemporaryName() = 0;

    // --- Others ---

    // Whether a connection opens; it is closed again. Never fails.
    virtual bool DatabaseOpens(TextView connection) = 0;
    // Starts an archiver in a normal window.
    virtual void StartArchiver(TextView commandLine) = 0;
    // Waits, as long as it takes, for the one started last, and repaints the dialog meanwhile. Its exit code.
    virtual std::uint32_t WaitForArchiver() = 0;
    // Through the mail program's own dialog. Fails with the mail system's description.
    virtual void SendMail(const Mail& mail) = 0;
};

}  // namespace qvx::backup
