#include "controls/backup/file_rules.h"

#include <algorithm>
#include <iterator>

#include "common/ascii.h"
#include "common/text_compare.h"

namespace qvx::backup {

namespace {

struct Description {
    int number;
    TextView words;
};

constexpr Description fileNotFound{errors::fileNotFound, u"File not found"};
constexpr Description pathNotFound{errors::pathNotFound, u"Path not found"};
constexpr Description permissionDenied{errors::permissionDenied, u"Permission denied"};
constexpr Description pathFileAccess{errors::pathFileAccess, u"Path/File access error"};
constexpr Description fileAlreadyExists{errors::fileAlreadyExists, u"File already exists"};
constexpr Description diskFull{errors::diskFull, u"Disk full"};
constexpr Description deviceUnavailable{errors::deviceUnavailable, u"Device unavailable"};
constexpr Description badName{52, u"Bad file name or number"};
constexpr Description deviceError{57, u"Device I/O error"};
constexpr Description tooManyFiles{67, u"Too many files"};
constexpr Description diskNotReady{71, u"Disk not ready"};
constexpr Description otherDrive{74, u"Can't rename with different drive"};
constexpr Description outOfMemory{errors::outOfMemory, u"Out of memory"};

struct Row {
    Description description;
    std::uint32_t code;
    bool absent = false;
};

constexpr Row rows[] = {
    {fileNotFound, 2, true},  // no such file
    {pathNotFound, 3, true},  // no such folder
    {tooManyFiles, 4},        // too many open files
    {pathFileAccess, 5},      // access denied
    {outOfMemory, 8},
    {outOfMemory, 14},
    {deviceUnavailable, 15, true},  // no such drive
    {otherDrive, 17},
    {permissionDenied, 19},   // write-protected
    {deviceUnavailable, 20},  // no such unit
    {diskNotReady, 21, true},
    {deviceError, 23},       // wrong check sum
    {deviceError, 27},       // sector not found
    {deviceError, 29},       // cannot be written
    {deviceError, 30},       // cannot be read
    {deviceError, 31},       // the device does not work
    {permissionDenied, 32},  // in use
    {permissionDenied, 33},  // locked
    {diskFull, 39},
    {deviceUnavailable, 51},   // the server does not answer
    {pathNotFound, 53, true},  // no such server
    {deviceUnavailable, 55},   // no longer present
    {deviceError, 59},         // network
    {deviceUnavailable, 64},   // the connection is gone
    {permissionDenied, 65},    // network
    {pathNotFound, 66, true},  // no share for files
    {pathNotFound, 67, true},  // no such share
    {fileAlreadyExists, 80},
    {permissionDenied, 108},  // the drive is in use
    {diskFull, 112},
    {badName, 123, true},
    {pathNotFound, 161, true},  // not a path
    {fileAlreadyExists, 183},
    {badName, 206, true},        // too long
    {pathNotFound, 267, true},   // a file where a folder should be
    {deviceUnavailable, 1005},   // no file system on it
    {deviceUnavailable, 1110},   // another disk is in the drive
    {diskNotReady, 1112, true},  // no disk in the drive
    {deviceError, 1117},
    {deviceUnavailable, 1167},  // not connected
    {permissionDenied, 1224},   // mapped into a program's memory
    {deviceUnavailable, 1231},  // network not reachable
    {diskFull, 1295},           // quota
    {permissionDenied, 1314},   // a privilege is missing
    {diskFull, 1816},           // quota
};

const Row* Find(std::uint32_t code) {
    const auto* const row =
        std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.code == code; });
    return row == std::end(rows) ? nullptr : row;
}

RunTimeError Raised(const Description& description) { return {description.number, Text(description.words)}; }

// The system's own limit, minus an 8.3 name, for which a folder's path must leave room.
constexpr std::size_t longestOrdinary = 247;

constexpr TextView longPrefix = u"\\\\?\\";
constexpr TextView longServerPrefix = u"\\\\?\\UNC\\";

bool IsSeparator(char16_t c) { return c == u'\\' || c == u'/'; }

bool BeginsWithDrive(TextView path) { return path.size() >= 2 && IsAsciiLetter(path[0]) && path[1] == u':'; }
bool BeginsWithServer(TextView path) {
    return path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1]) && !IsSeparator(path[2]);
}

}  // namespace

RunTimeError FileError(std::uint32_t systemCode) {
    const Row* const row = Find(systemCode);
    return Raised(row ? row->description : pathFileAccess);
}

bool MeansAbsent(std::uint32_t systemCode) {
    const Row* const row = Find(systemCode);
    return row && row->absent;
}

RunTimeError StartError(std::uint32_t systemCode) {
    switch (systemCode) {
        case 2:
        case 3:
        case 123:
        case 267:
            return Raised(fileNotFound);
        case 5:
        case 32:
        case 740:   // requires an administrator
        case 1260:  // forbidden by a policy
            return Raised(permissionDenied);
        case 8:
        case 14:
        case 1455:
            return Raised(outOfMemory);
        default:
            return {errors::invalidProcedureCall, u"Invalid procedure call or argument"};
    }
}

Text LongForm(TextView fullPath) {
    if (fullPath.size() <= longestOrdinary) return Text(fullPath);
    if (fullPath.size() > 2 && BeginsWithDrive(fullPath) && fullPath[2] == u'\\') {
        return Text(longPrefix) + Text(fullPath);
    }
    // After the two backslashes of "\\?\" and "\\.\", there is no server's name.
    if (BeginsWithServer(fullPath) && fullPath[2] != u'?' && fullPath[2] != u'.') {
        return Text(longServerPrefix) + Text(fullPath.substr(2));
    }
    return Text(fullPath);
}

Text WithoutLongForm(TextView path) {
    if (StartsWithNoCase(path, longServerPrefix)) return u"\\\\" + Text(path.substr(longServerPrefix.size()));
    const TextView rest = path.substr(std::min(longPrefix.size(), path.size()));
    return Text(path.substr(0, longPrefix.size()) == longPrefix && BeginsWithDrive(rest) ? rest : path);
}

TextView DriveName(TextView fullPath) {
    if (BeginsWithDrive(fullPath)) return fullPath.substr(0, 2);
    if (!BeginsWithServer(fullPath)) return {};
    const auto share = fullPath.find_first_of(u"\\/", 2);
    if (share == TextView::npos) return {};
    const auto end = std::min(fullPath.find_first_of(u"\\/", share + 1), fullPath.size());
    return end == share + 1 ? TextView() : fullPath.substr(0, end);
}

bool HasExtension(TextView name, TextView extension) {
    return name.size() >= extension.size() && EqualNoCase(name.substr(name.size() - extension.size()), extension);
}

bool IsFolderPath(TextView path) { return !path.empty() && IsSeparator(path.back()); }

bool SameFolder(const FolderIdentity& one, const FolderIdentity& other) {
    const auto known = [](const FolderIdentity& folder) {
        return folder.volume != 0 && folder.file != decltype(folder.file){};
    };
    if (known(one) && known(other)) return one.volume == other.volume && one.file == other.file;
    const auto path = [](const FolderIdentity& folder) {
        const Text plain = WithoutLongForm(folder.path);
        return plain.substr(0, plain.find_last_not_of(u"\\/") + 1);
    };
    return EqualNoCase(path(one), path(other));
}

bool MayLackPermissions(std::uint32_t systemCode, bool onServer) {
    switch (systemCode) {
        case 1:    // no such function
        case 50:   // not supported
        case 120:  // not implemented
            return true;
        case 5:   // access denied
        case 65:  // on the network
            return onServer;
        default:
            return false;
    }
}

}  // namespace qvx::backup
