// Names of archives and databases, and how they stand in command lines and messages.
#pragma once

#include "common/text.h"
#include "controls/backup/settings.h"

namespace qvx::backup {

// Without the blanks at both ends.
TextView Trimmed(TextView text);

// A folder with the separator that joining paths needs; nothing is added to one that has it.
Text WithSeparator(TextView folder);

// The archive of one day and month in a folder (which ends in a separator), for example "C:\Copies\Ac-1-3.qvx". There
// is no year in it: every year writes over the archive of the year before.
Text ArchivePath(TextView folder, const Settings& settings, int day, int month);

// Characters that no file name can hold: \ / : * ? " < > and the vertical bar.
bool IsForbiddenInNames(char16_t character);
// The text without them.
Text CleanName(TextView text);

// The file name that a restored database gets as a group of its own; `spare` serves where nothing usable was typed, its
// first eight characters at most.
Text GroupName(TextView typed);
Text SpareGroupName(TextView spare);

// A path as one argument of a command line: in double quotes when it has blanks in it, else as it is. Programs take a
// backslash before the closing quote for a quoted quote, so a folder's last one is doubled there.
Text Argument(TextView path);

// Where the file that takes another one's place is written: beside it, so that one step moves it. It does not end in
// the extension of databases, and nobody calls a file of his own so.
Text ArrivingName(TextView path);

// Whether a file's name can stand at the end of a connection string and mean that file: one with ";", "=" or a quote in
// it may end the value and begin another.
bool FitsConnectionString(TextView name);

// The folder part of a path with its last separator; empty without one.
TextView FolderOf(TextView path);

// An error's description as it may be shown: one that repeats any path or connection string is left out, since it would
// put on the screen what the user may not know.
TextView Redacted(TextView description) noexcept;

}  // namespace qvx::backup
