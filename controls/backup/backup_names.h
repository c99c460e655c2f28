// Names of archives and databases, and their form in command lines and messages.
#pragma once

#include "common/text.h"
#include "controls/backup/settings.h"

namespace qvx::backup {

// Returns the text without the blanks at both ends.
TextView Trimmed(TextView text);

// Returns a folder with the separator that joining paths needs; none is added if it already has one.
Text WithSeparator(TextView folder);

// Returns the archive of one day and month in a folder (which ends in a separator), for example "C:\Copies\Ac-1-3.qvx".
// The name contains no year: every year overwrites the archive of the year before.
Text ArchivePath(TextView folder, const Settings& settings, int day, int month);

// Whether no file name can contain the character: \ / : * ? " < > and the vertical bar.
bool IsForbiddenInNames(char16_t character);
// Returns the text without those characters.
Text CleanName(TextView text);

// Returns the file name of a database that is restored as a group of its own, from the typed name; where nothing usable
// was typed, from up to eight characters of `spare`.
Text GroupName(TextView typed);
Text SpareGroupName(TextView spare);

// Returns a path as one argument of a command line: in double quotes when it contains blanks, otherwise unchanged.
// Programs take a backslash before the closing quote for an escaped quote, so a folder's last backslash is doubled in
// that case.
Text Argument(TextView path);

// Returns the temporary name for a file that will replace `path`: it is in the same folder, so that one step moves it.
// It does not end in the extension of databases, and no user names a file like that.
Text ArrivingName(TextView path);

// Whether a file's name can be at the end of a connection string and mean that file: one with ";", "=" or a quote in it
// may end the value and begin another.
bool FitsConnectionString(TextView name);

// Returns the folder part of a path with its last separator; empty without one.
TextView FolderOf(TextView path);

// Returns an error's description if it may be shown: one that contains a path or a connection string is replaced with
// an empty text, since the user may not be allowed to know them.
TextView Redacted(TextView description) noexcept;

}  // namespace qvx::backup
