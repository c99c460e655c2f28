// Arguments and failures of the system's file calls.
#pragma once

#include <array>
#include <cstdint>

#include "common/run_time_error.h"
#include "common/text.h"

namespace qvx::backup {

// Returns the error that hosts know for a failed call on a file, by the system's code (GetLastError). The descriptions
// contain no path. Codes without a number of their own are error 75 "Path/File access error".
RunTimeError FileError(std::uint32_t systemCode);

// Whether a failure to examine a file means that it does not exist, as far as anybody can tell: no such file, folder,
// drive or server, no disk in the drive, or a name that nothing can have.
bool MeansAbsent(std::uint32_t systemCode);

// Returns the error for a program that could not be started: 53 when there is none, 70 when it may not be started,
// otherwise 5.
RunTimeError StartError(std::uint32_t systemCode);

// Returns a full path ("C:\..." or "\\server\share\...", with "\" throughout) in the form whose length only the file
// system limits. Shorter paths, and those already in this form, are returned unchanged, since not all programs
// understand it.
Text LongForm(TextView fullPath);
// Undoes LongForm; any other path is returned unchanged.
Text WithoutLongForm(TextView path);

// Returns "C:", "\\server\share", or an empty text for a path that begins with neither.
TextView DriveName(TextView fullPath);

// Whether a file's name ends in an extension (with its dot), ignoring case. Every name ends in the empty extension.
bool HasExtension(TextView name, TextView extension);

// Whether a path clearly names a folder whose files are meant: it must end in a separator, since its last name would
// otherwise be taken for the beginning of the files' names.
bool IsFolderPath(TextView path);

// The system's information about an existing folder.
struct FolderIdentity {
    std::uint64_t volume = 0;
    std::array<std::uint8_t, 16> file{};
    Text path;  // in full, as the system itself writes it
};

// Folders are compared by their numbers, however their paths are written. Some servers have no numbers and return 0;
// then the paths are compared, ignoring case.
bool SameFolder(const FolderIdentity& one, const FolderIdentity& other);

// Whether a file may replace another one without its permissions when these could not be set, by the system's code:
// where the volume does not support permissions, and on servers that let nobody set them. The new file has the
// permissions that every file in its folder inherits anyway.
bool MayLackPermissions(std::uint32_t systemCode, bool onServer);

}  // namespace qvx::backup
