// The files of a folder, and the identity of a folder.
#include <windows.h>

#include <algorithm>
#include <vector>

#include "com/wide_text.h"
#include "controls/backup/system_path_win32.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::backup {

namespace {

// Calls `visit` with each file of a folder, in the system's order, until it returns false. A folder that does not exist
// has no files.
template <typename Visit>
void VisitFiles(TextView folder, Visit visit) {
    WIN32_FIND_DATAW entry{};
    const Text pattern = SystemPath(folder) + u'*';
    const HANDLE found = FindFirstFileW(Wide(pattern), &entry);
    if (found == INVALID_HANDLE_VALUE) {
        if (!MeansAbsent(GetLastError())) ThrowFileError();
        return;
    }
    const UniqueFileSearch search(found);
    do {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !visit(entry)) return;
    } while (FindNextFileW(search.Get(), &entry));
    if (GetLastError() != ERROR_NO_MORE_FILES) ThrowFileError();
}

void DeleteEvenReadOnly(const Text& systemPath, DWORD attributes) {
    const bool readOnly = attributes & FILE_ATTRIBUTE_READONLY;
    if (readOnly && !SetFileAttributesW(Wide(systemPath), FILE_ATTRIBUTE_NORMAL)) ThrowFileError();
    if (DeleteFileW(Wide(systemPath))) return;
    const DWORD error = GetLastError();
    if (readOnly) SetFileAttributesW(Wide(systemPath), attributes);
    ThrowFileError(error);
}

Text PathOf(HANDLE folder, TextView given) {
    Text path(32768, u'\0');
    const DWORD length = GetFinalPathNameByHandleW(folder, WideBuffer(path), static_cast<DWORD>(path.size()), 0);
    if (length == 0 || length >= path.size()) return FullPath(given);
    path.resize(length);
    return path;
}

std::optional<FolderIdentity> Identify(TextView path) {
    // A folder can be opened in this way even without any access to its contents.
    const UniqueKernelObject folder =
        OpenFile(SystemPath(path), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                 OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!folder && MeansAbsent(GetLastError())) return std::nullopt;
    BY_HANDLE_FILE_INFORMATION data{};
    if (!folder || !GetFileInformationByHandle(folder.Get(), &data)) ThrowFileError();
    if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return std::nullopt;
    FolderIdentity identity;
    identity.path = PathOf(folder.Get(), path);
    // The numbers of some file systems exceed the 64 bits that all systems can report.
    FILE_ID_INFO whole{};
    if (GetFileInformationByHandleEx(folder.Get(), FileIdInfo, &whole, sizeof whole)) {
        identity.volume = whole.VolumeSerialNumber;
        std::copy(std::begin(whole.FileId.Identifier), std::end(whole.FileId.Identifier), identity.file.begin());
        return identity;
    }
    identity.volume = data.dwVolumeSerialNumber;
    const DWORD parts[] = {data.nFileIndexLow, data.nFileIndexHigh};
    const auto* const bytes = reinterpret_cast<const BYTE*>(parts);
    std::copy(bytes, bytes + sizeof parts, identity.file.begin());
    return identity;
}

}  // namespace

Text SystemServices::FirstFile(TextView folder, TextView extension) {
    Text first;
    if (!IsFolderPath(folder)) return first;
    VisitFiles(folder, [&](const WIN32_FIND_DATAW& entry) {
        const TextView name = FromWide(entry.cFileName);
        if (!HasExtension(name, extension)) return true;
        first = name;
        return false;
    });
    return first;
}

void SystemServices::DeleteFiles(TextView folder) {
    if (!IsFolderPath(folder)) ThrowFileError(ERROR_PATH_NOT_FOUND);
    struct File {
        Text name;
        DWORD attributes;
    };
    // All of them are listed first: a folder that changes during the listing may hide some.
    std::vector<File> files;
    VisitFiles(folder, [&](const WIN32_FIND_DATAW& entry) {
        files.push_back({Text(FromWide(entry.cFileName)), entry.dwFileAttributes});
        return true;
    });
    for (const File& file : files) DeleteEvenReadOnly(SystemPath(Text(folder) + file.name), file.attributes);
}

bool SystemServices::SameFolder(TextView one, TextView other) {
    const auto first = Identify(one);
    const auto second = first ? Identify(other) : std::nullopt;
    return second && backup::SameFolder(*first, *second);
}

}  // namespace qvx::backup
