#include "archivers/system_files.h"

#include <windows.h>

#include <algorithm>

#include "archivers/file_names.h"
#include "com/wide_text.h"

namespace qvx::archivers {

namespace {

constexpr std::size_t longestPath = 32768;

// Returns the root of the volume that a path is on, with its backslash.
Text VolumeOf(const Text& path) {
    Text root(MAX_PATH + 1, u'\0');
    const Text full = LongPath(Joined(FolderOf(path), u""));
    if (!GetVolumePathNameW(Wide(full), WideBuffer(root), static_cast<DWORD>(root.size()))) ThrowSystemError(path);
    Text plain(root.c_str());
    // Not every system recognises the drive in "\\?\A:\".
    if (plain.size() > 5 && plain.starts_with(u"\\\\?\\") && plain[5] == u':') plain.erase(0, 4);
    return plain;
}

SYSTEMTIME ToSystemTime(const CivilTime& civil) {
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(civil.year);
    time.wMonth = static_cast<WORD>(civil.month);
    time.wDay = static_cast<WORD>(civil.day);
    time.wHour = static_cast<WORD>(civil.hour);
    time.wMinute = static_cast<WORD>(civil.minute);
    time.wSecond = static_cast<WORD>(civil.second);
    return time;
}

CivilTime FromSystemTime(const SYSTEMTIME& time) {
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
}

Text AbsolutePath(const Text& path) {
    Text full(longestPath, u'\0');
    const DWORD length = GetFullPathNameW(Wide(path), static_cast<DWORD>(full.size()), WideBuffer(full), nullptr);
    if (length == 0 || length >= full.size()) throw ArchiveError(ExitCode::notFound, Text(FileNameOf(path)));
    full.resize(length);
    return full;
}

// Returns an absolute path in the form that the system accepts at any length.
Text Marked(const Text& path) {
    if (path.starts_with(u"\\\\?\\") || path.starts_with(u"\\\\.\\")) return path;
    if (path.starts_with(u"\\\\")) return u"\\\\?\\UNC\\" + path.substr(2);
    return u"\\\\?\\" + path;
}

// Missing in the older headers used here.
constexpr DWORD diskQuotaExceeded = 1295;

ExitCode CodeOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_DRIVE:
        case ERROR_NOT_READY:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_DIRECTORY:
            return ExitCode::notFound;
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return ExitCode::accessDenied;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case diskQuotaExceeded:
        case ERROR_FILE_TOO_LARGE:
            return ExitCode::diskFull;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            return ExitCode::outOfMemory;
        default:
            return ExitCode::readWrite;
    }
}

}  // namespace

void ThrowSystemError(TextView path) { throw ArchiveError(CodeOf(GetLastError()), Text(FileNameOf(path))); }

Text LongPath(const Text& path) { return Marked(AbsolutePath(path)); }

std::vector<ListedFile> SystemFiles::List(const Text& folder) {
    std::vector<ListedFile> files;
    WIN32_FIND_DATAW found{};
    const Text pattern = LongPath(Joined(folder.empty() ? Text(u".") : folder, u"*"));
    const HANDLE first = FindFirstFileW(Wide(pattern), &found);
    if (first == INVALID_HANDLE_VALUE) return files;
    const UniqueFileSearch search(first);
    do {
        files.push_back({Text(FromWide(found.cFileName)), (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (FindNextFileW(search.Get(), &found));
    return files;
}

bool SystemFiles::Exists(const Text& path) {
    return GetFileAttributesW(Wide(LongPath(path))) != INVALID_FILE_ATTRIBUTES;
}

std::uint32_t SystemFiles::Attributes(const Text& path) {
    const DWORD attributes = GetFileAttributesW(Wide(LongPath(path)));
    return attributes == INVALID_FILE_ATTRIBUTES ? 0 : attributes;
}

void SystemFiles::MakeFolder(const Text& path, bool linkAllowed) {
    const Text full = LongPath(path);
    if (CreateDirectoryW(Wide(full), nullptr)) return;
    const DWORD error = GetLastError();
    const DWORD attributes = GetFileAttributesW(Wide(full));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        if (linkAllowed || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return;
        throw ArchiveError(ExitCode::unsafeName, Text(FileNameOf(path)));
    }
    SetLastError(error);
    ThrowSystemError(path);
}

bool SystemFiles::Remove(const Text& path) noexcept {
    try {
        const Text full = LongPath(path);
        if (DeleteFileW(Wide(full))) return true;
        if (GetLastError() != ERROR_ACCESS_DENIED) return false;
        const DWORD attributes = GetFileAttributesW(Wide(full));
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return false;
        return SetFileAttributesW(Wide(full), FILE_ATTRIBUTE_NORMAL) && DeleteFileW(Wide(full));
    } catch (const std::exception&) {
        return false;
    }
}

Text SystemFiles::FullPath(const Text& path) {
    const Text absolute = AbsolutePath(path);
    // Some systems do not resolve a path with the prefix; others do not accept one of any length without it.
    for (const Text& form : {absolute, Marked(absolute)}) {
        Text longForm(longestPath, u'\0');
        const DWORD length = GetLongPathNameW(Wide(form), WideBuffer(longForm), static_cast<DWORD>(longForm.size()));
        if (length == 0 || length >= longForm.size()) continue;
        longForm.resize(length);
        return Marked(longForm);
    }
    return Marked(absolute);
}

bool SystemFiles::IsRemovable(const Text& path) { return GetDriveTypeW(Wide(VolumeOf(path))) == DRIVE_REMOVABLE; }

std::uint64_t SystemFiles::RoomFor(const Text& path) {
    const Text volume = VolumeOf(path);
    ULARGE_INTEGER room{};
    if (!GetDiskFreeSpaceExW(Wide(volume), &room, nullptr, nullptr)) ThrowSystemError(path);
    wchar_t name[64] = {};
    GetVolumeInformationW(Wide(volume), nullptr, 0, nullptr, nullptr, nullptr, name, 64);
    const TextView system = FromWide(name);
    const std::uint64_t largest = system == u"FAT32" ? 0xFFFFFFFF : system == u"FAT" ? 0x7FFFFFFF : ~std::uint64_t{0};
    return std::min<std::uint64_t>(room.QuadPart, largest);
}

CivilTime SystemFiles::LocalTime(FileTime time) {
    const FILETIME moment = {static_cast<DWORD>(time), static_cast<DWORD>(static_cast<std::uint64_t>(time) >> 32)};
    SYSTEMTIME utc{};
    SYSTEMTIME local{};
    if (!FileTimeToSystemTime(&moment, &utc)) return {};
    return FromSystemTime(SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local) ? local : utc);
}

FileTime SystemFiles::FromLocalTime(const CivilTime& civil) {
    const SYSTEMTIME local = ToSystemTime(civil);
    SYSTEMTIME utc{};
    return FromUtcTime(TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) ? FromSystemTime(utc) : civil);
}

}  // namespace qvx::archivers
