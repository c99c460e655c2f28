// All effects of the backup outside itself, step by step: what concerns the user, which the dialog performs in the
// product, and what concerns files, the archivers, the database, mail and the calendar, which the system performs.
// Tests have an implementation in which each step can fail and the program can end between any two.
#pragma once

#include <cstdint>
#include <optional>

#include "common/text.h"
#include "dialogs/messages.h"

namespace qvx::backup {

// The contents of the dialog's fields.
struct FormState {
    Text location;
    bool email = false;  // in a restore, "as a separate group"
    Text groupName;
    Text outcome;
    Text outcomeTip;  // the tool tip of the outcome line; empty for none
};

struct Date {
    int day = 1;
    int month = 1;
};

enum class DriveKind { removable, other };

struct Mail {
    Text subject;
    Text attachment;      // full path
    Text attachmentName;  // the name that the receiver sees
};

// Steps that fail throw RunTimeError with the hosts' number (53 "File not found", 61 "Disk full", 70 "Permission
// denied", 75 "Path/File access error", 76 "Path not found", 68 "Device unavailable") and a description that contains
// no path. A step that failed has changed nothing unless stated otherwise.
class UserSteps {
  public:
    virtual ~UserSteps() = default;

    // Displays the contents of the fields and paints the dialog at once. Never fails.
    virtual void Refresh(const FormState& form) = 0;
    // Returns true for OK and Yes, false otherwise, as dialogs::ShowMessage does.
    virtual bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) = 0;
    // Shows an error with the hosts' number.
    virtual void ReportError(int number, TextView description) = 0;
    // Empty when the user cancels.
    virtual Text BrowseForFolder(TextView title) = 0;
    virtual Text ShowOpenFile(TextView title) = 0;
    // Shows the password prompt for a database and returns whether its password was given. The prompt's form stays,
    // hidden, until it is closed.
    virtual bool RunPasswordPrompt(TextView connection) = 0;
    virtual void ClosePasswordPrompt() = 0;
};

class SystemSteps {
  public:
    virtual ~SystemSteps() = default;

    virtual Date Today() = 0;

    // --- Files. Paths are used as they are; wildcards are allowed only where stated. ---

    // Returns the size of a file in bytes; nullopt when there is no such file (a folder is not a file).
    virtual std::optional<std::uint64_t> FileSize(TextView path) = 0;
    // Creates an empty file, or empties the existing one.
    virtual void CreateEmptyFile(TextView path) = 0;
    virtual void DeleteFile(TextView path) = 0;
    // Renames a file within its folder to an unused name. Fails for a read-only file, as deleting does: a file that is
    // set aside must be deletable.
    virtual void RenameFile(TextView from, TextView to) = 0;
    // Replaces `to` (which need not exist) with a copy of a file: the copy is written beside it under a temporary name,
    // flushed to the disk, and moved in one step. Whenever the program or the system stops, `to` is either the whole
    // old file or the whole new one. The permissions of the old file are kept.
    virtual void ReplaceFile(TextView from, TextView to) = 0;
    // Returns the name, without folder, of the first file in a folder (which ends in a separator) whose name ends in
    // `extension`, ignoring case; empty when there is none.
    virtual Text FirstFile(TextView folder, TextView extension) = 0;
    // Deletes every file of a folder, but no subfolder. When it fails, some files may have been deleted.
    virtual void DeleteFiles(TextView folder) = 0;
    // Whether both paths name the same folder, however they are written.
    virtual bool SameFolder(TextView one, TextView other) = 0;
    // Returns the 8.3 form of an existing file's path, or the path itself where the system keeps no such form. Error 53
    // when there is no such file.
    virtual Text ShortPath(TextView file) = 0;
    // Returns the type of the drive of a path; the path itself need not exist.
    virtual DriveKind DriveTypeOf(TextView path) = 0;
    // Returns the bytes that the user may still write on the medium of a path's folder; nullopt where the system does
    // not report them.
    virtual std::optional<std::uint64_t> FreeSpace(TextView path) = 0;
    // Makes the drive of a path the current one.
    virtual void ChangeDrive(TextView path) = 0;
    // Returns an unused name for a temporary file, without folder.
    virtual Text TemporaryName() = 0;

    // --- Others ---

    // Whether a connection can be opened; it is closed again. Never fails.
    virtual bool DatabaseOpens(TextView connection) = 0;
    // Starts an archiver in a normal window.
    virtual void StartArchiver(TextView commandLine) = 0;
    // Waits, however long it takes, for the archiver that was started last, and repaints the dialog meanwhile. Returns
    // the exit code.
    virtual std::uint32_t WaitForArchiver() = 0;
    // Sends mail through the mail program's own dialog. Fails with the mail system's description.
    virtual void SendMail(const Mail& mail) = 0;
};

}  // namespace qvx::backup
