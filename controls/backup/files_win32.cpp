// Operations on single files: examining, creating, deleting, renaming, copying and replacing.
#include <windows.h>

#include <aclapi.h>

#include <memory>
#include <vector>

#include "com/wide_text.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/system_path_win32.h"
#include "controls/backup/system_services_win32.h"
#include "win/replacing_file.h"

namespace qvx::backup {

namespace {

constexpr DWORD sharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// The attributes that a copy keeps. A copy that could not be overwritten would block the next one.
constexpr DWORD keptAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
constexpr DWORD copiedAtOnce = 1 << 20;  // bytes

std::optional<WIN32_FILE_ATTRIBUTE_DATA> Find(const Text& systemPath) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(Wide(systemPath), GetFileExInfoStandard, &data)) return data;
    if (!MeansAbsent(GetLastError())) ThrowFileError();
    return std::nullopt;
}

bool IsFolder(const WIN32_FILE_ATTRIBUTE_DATA& data) { return data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY; }

LARGE_INTEGER Ticks(const FILETIME& time) {
    LARGE_INTEGER ticks{};
    ticks.LowPart = time.dwLowDateTime;
    ticks.HighPart = static_cast<LONG>(time.dwHighDateTime);
    return ticks;
}

// Times that are 0 are not changed.
void SetBasics(HANDLE file, FILE_BASIC_INFO basics, DWORD attributes) {
    // With no attribute at all, the call would not change them.
    basics.FileAttributes = attributes & keptAttributes ? attributes & keptAttributes : FILE_ATTRIBUTE_NORMAL;
    if (!SetFileInformationByHandle(file, FileBasicInfo, &basics, sizeof basics)) ThrowFileError();
}

// The system's calls refuse these files, too, but not for users who may do anything to files.
void RefuseReadOnly(DWORD attributes) {
    if (attributes & FILE_ATTRIBUTE_READONLY) ThrowFileError(ERROR_ACCESS_DENIED);
}

void CopyBytes(HANDLE from, HANDLE to) {
    std::vector<std::byte> buffer(copiedAtOnce);
    for (;;) {
        DWORD read = 0;
        if (!ReadFile(from, buffer.data(), copiedAtOnce, &read, nullptr)) ThrowFileError();
        if (read == 0) return;
        DWORD written = 0;
        if (!WriteFile(to, buffer.data(), read, &written, nullptr)) ThrowFileError();
        if (written != read) ThrowFileError(ERROR_DISK_FULL);
    }
}

struct ReleaseLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};

bool KeepsPermissions(HANDLE file) {
    DWORD features = 0;
    const BOOL told = GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, &features, nullptr, 0);
    return !told || features & FILE_PERSISTENT_ACLS;
}

// Returns the system's code where the permissions could not be read or set, otherwise 0.
DWORD TryToCopyPermissions(Text from, Text to) {
    const UniqueKernelObject file = OpenFile(from, READ_CONTROL, sharedByAll, OPEN_EXISTING);
    if (!file) return GetLastError();
    if (!KeepsPermissions(file.Get())) return ERROR_SUCCESS;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR memory = nullptr;
    const DWORD result = GetNamedSecurityInfoW(WideBuffer(from), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                               nullptr, &list, nullptr, &memory);
    if (result != ERROR_SUCCESS) return result;
    const std::unique_ptr<void, ReleaseLocal> descriptor(memory);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor.get(), &control, &revision)) return GetLastError();
    // A file that does not inherit permissions must not begin to inherit them.
    const SECURITY_INFORMATION inheriting =
        control & SE_DACL_PROTECTED ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
    return SetNamedSecurityInfoW(WideBuffer(to), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheriting, nullptr,
                                 nullptr, list, nullptr);
}

void CopyPermissions(const Text& from, const Text& to) {
    const DWORD refused = TryToCopyPermissions(from, to);
    if (refused == ERROR_SUCCESS) return;
    if (!MayLackPermissions(refused, GetDriveTypeW(Wide(VolumeRoot(from))) == DRIVE_REMOTE)) ThrowFileError(refused);
}

// A rename over the target would not always report that it must not be replaced, or is in use.
void CheckReplaceable(const Text& target, const WIN32_FILE_ATTRIBUTE_DATA& old) {
    if (IsFolder(old)) ThrowFileError(ERROR_ACCESS_DENIED);
    RefuseReadOnly(old.dwFileAttributes);
    if (!OpenFile(target, DELETE, sharedByAll, OPEN_EXISTING) && GetLastError() == ERROR_SHARING_VIOLATION) {
        ThrowFileError();
    }
}

// Returns the path of an existing file with its long names: the rename gives its target exactly the name that it is
// called with.
Text WithLongNames(const Text& systemPath) {
    Text names(32768, u'\0');
    const DWORD length = GetLongPathNameW(Wide(systemPath), WideBuffer(names), static_cast<DWORD>(names.size()));
    if (length == 0 || length >= names.size()) return systemPath;
    names.resize(length);
    return SystemPath(names);
}

}  // namespace

std::optional<std::uint64_t> SystemServices::FileSize(TextView path) {
    const auto data = Find(SystemPath(path));
    if (!data || IsFolder(*data)) return std::nullopt;
    return std::uint64_t{data->nFileSizeHigh} << 32 | data->nFileSizeLow;
}

// An existing file is emptied, not created anew, which the system refuses for a hidden file.
void SystemServices::CreateEmptyFile(TextView path) {
    const UniqueKernelObject file =
        OpenFile(SystemPath(path), GENERIC_WRITE, 0, OPEN_ALWAYS, FILE_FLAG_SEQUENTIAL_SCAN | FILE_ATTRIBUTE_NORMAL);
    BY_HANDLE_FILE_INFORMATION data{};
    if (!file || !GetFileInformationByHandle(file.Get(), &data)) ThrowFileError();
    RefuseReadOnly(data.dwFileAttributes);
    // On a full disk, even setting the end of an empty file may fail.
    const bool empty = data.nFileSizeHigh == 0 && data.nFileSizeLow == 0;
    if (!empty && !SetEndOfFile(file.Get())) ThrowFileError();
}

void SystemServices::DeleteFile(TextView path) {
    const Text systemPath = SystemPath(path);
    if (const auto data = Find(systemPath)) RefuseReadOnly(data->dwFileAttributes);
    if (!::DeleteFileW(Wide(systemPath))) ThrowFileError();
}

void SystemServices::RenameFile(TextView from, TextView to) {
    const Text source = SystemPath(from);
    if (const auto data = Find(source)) RefuseReadOnly(data->dwFileAttributes);
    if (!MoveFileExW(Wide(source), Wide(SystemPath(to)), 0)) ThrowFileError();
}

// Uses a rename over the target, since the system's ReplaceFileW is not atomic: without the name of a backup it deletes
// the target first, and if it is stopped then, or cannot move the new file after that, there is no file of that name.
void SystemServices::ReplaceFile(TextView from, TextView to) {
    const UniqueKernelObject source =
        OpenFile(SystemPath(from), GENERIC_READ, sharedByAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    BY_HANDLE_FILE_INFORMATION data{};
    if (!source || !GetFileInformationByHandle(source.Get(), &data)) ThrowFileError();
    const Text beside = SystemPath(ArrivingName(to));
    ReplacingFile arriving(beside);
    if (!arriving.Handle()) ThrowFileError();
    CopyBytes(source.Get(), arriving.Handle());
    FILE_BASIC_INFO basics{};
    basics.LastWriteTime = Ticks(data.ftLastWriteTime);
    Text target = SystemPath(to);
    if (const auto old = Find(target)) {
        CheckReplaceable(target, *old);
        target = WithLongNames(target);
        // The copy keeps the properties by which users know the old file: permissions, attributes, the date of
        // creation.
        CopyPermissions(target, beside);
        basics.CreationTime = Ticks(old->ftCreationTime);
        data.dwFileAttributes = old->dwFileAttributes;
    }
    SetBasics(arriving.Handle(), basics, data.dwFileAttributes);
    if (!arriving.TakePlaceOf(target)) ThrowFileError();
}

}  // namespace qvx::backup
