// What the system's file calls are told, and what their failures are called.
#pragma once

#include <array>
#include <cstdint>

#include "common/run_time_error.h"
#include "common/text.h"

namespace qvx::backup {

// A failed call on a file as the error that hosts know, by the system's code (GetLastError). The descriptions name no
// path. What has no number of its own is error 75 "Path/File access error".
RunTimeError FileError(std::uint32_t systemCode);

// Whether a failure to find something out says that it is not there, as far as anybody can tell: no such file, folder,
// drive or server, no disk in the drive, or a name that nothing can have.
bool MeansAbsent(std::uint32_t systemCode);

// The same for a program that could not be started: 53 when there is none, 70 when it may not be started, else 5.
RunTimeError StartError(std::uint32_t systemCode);

// A full path ("C:\..." or "\\server\share\...", "\" throughout) in the form whose length has no limit but the file
// system's. Shorter ones, and those that have the form, come back as they are: it is not for all programs.
Text LongForm(TextView fullPath);
// Back again; any other path comes back as it is.
Text WithoutLongForm(TextView path);

// "C:", "\\server\share", or nothing for a path that begins with neither.
TextView DriveName(TextView fullPath);

// Whether a file's name ends in an extension (with its dot), in upper or lower case. Every name ends in the empty one.
bool HasExtension(TextView name, TextView extension);

// Whether a path says which folder's files are meant: it must end in a separator, else the last name in it would be
// taken for the beginning of the files' names.
bool IsFolderPath(TextView path);

// What the system tells of a folder that is there.
struct FolderIdentity {
    std::uint64_t volume = 0;
    std::array<std::uint8_t, 16> file{};
    Text path;  // in full, as the system itself spells it
};

// Numbers tell folders apart, however their paths are spelled. Some servers have none to tell and say 0; then only the
// path is left, in upper or lower case.
bool SameFolder(const FolderIdentity& one, const FolderIdentity& other);

// Whether a file may take another one's place without its permissions, although they could not be set, by the system's
// code: where the volume has none to set, and on servers that grant nobody to set them. Of what the old file had as
// every file in its folder, the new one has it anyway.
bool MayLackPermissions(std::uint32_t systemCode, bool onServer);

}  // namespace qvx::backup
