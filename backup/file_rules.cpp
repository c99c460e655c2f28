#include "backup/file_rules.h"

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
    std::uint32_t code;
    Description description;
    bool absent = false;
};

constexpr Row rows[] = {
    {2, fileNotFound, true},  // no such file
    {3, pathNotFound, true},  // no such folder
    {4, tooManyFiles},        // too many open
    {5, pathFileAccess},      // access denied
    {8, outOfMemory},
    {14, outOfMemory},
    {15, deviceUnavailable, true},  // no such drive
    {17, otherDrive},
    {19, permissionDenied},   // write-protected
    {20, deviceUnavailable},  // no such unit
    {21, diskNotReady, true},
    {23, deviceError},       // wrong check sum
    {27, deviceError},       // sector not found
    {29, deviceError},       // cannot be written
    {30, deviceError},       // cannot be read
    {31, deviceError},       // the device does not work
    {32, permissionDenied},  // in use
    {33, permissionDenied},  // locked
    {39, diskFull},
    {51, deviceUnavailable},   // the server does not answer
    {53, pathNotFound, true},  // no such server
    {55, deviceUnavailable},   // no longer there
    {59, deviceError},         // network
    {64, deviceUnavailable},   // the connection is gone
    {65, permissionDenied},    // network
    {67, pathNotFound, true},  // no such share
    {80, fileAlreadyExists},
    {108, permissionDenied},  // the drive is in use
    {112, diskFull},
    {123, badName, true},
    {161, pathNotFound, true},  // no path at all
    {183, fileAlreadyExists},
    {206, badName, true},        // too long
    {267, pathNotFound, true},   // a file where a folder should be
    {1005, deviceUnavailable},   // no file system on it
    {1110, deviceUnavailable},   // another disk is in the drive
    {1112, diskNotReady, true},  // no disk in the drive
    {1117, deviceError},
    {1167, deviceUnavailable},  // not connected
    {1224, permissionDenied},   // mapped into a program's memory
    {1231, deviceUnavailable},  // network not reachable
    {1295, diskFull},           // quota
    {1314, permissionDenied},   // a privilege is missing
    {1816, diskFull},           // quota
};

const Row* Find(std::uint32_t code) {
    const auto* const row =
        std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.code == code; });
    return row == std::end(rows) ? nullptr : row;
}

RunTimeError Raised(const Description& description) { return {description.number, Text(description.words)}; }

// The system's own limit, less the 8.3 name that a folder's path must leave room for.
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
        case 740:   // asks for an administrator
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
    // "\\?\" and "\\.\" have no server's name behind the first two.
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

}  // namespace qvx::backup
