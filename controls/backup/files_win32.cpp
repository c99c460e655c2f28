// Single files: what there is, made, deleted, renamed, copied and put in another one's place.
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
// What a copy takes over. A copy that could not be written over again would be in the way of the next one.
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

// Times that are 0 stay as they are.
void SetBasics(HANDLE file, FILE_BASIC_INFO basics, DWORD attributes) {
    // No attribute at all would leave them as they are.
    basics.FileAttributes = attributes & keptAttributes ? attributes & keptAttributes : FILE_ATTRIBUTE_NORMAL;
    if (!SetFileInformationByHandle(file, FileBasicInfo, &basics, sizeof basics)) ThrowFileError();
}

// The system's calls refuse these, too, but not where whoever runs them may do anything to files.
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

// The system's code where they could not be read or set, else 0.
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
    // What a file does not inherit it must not begin to inherit now.
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

// A rename over the target would not always tell that it must not be replaced, or is in use.
void CheckReplaceable(const Text& target, const WIN32_FILE_ATTRIBUTE_DATA& old) {
    if (IsFolder(old)) ThrowFileError(ERROR_ACCESS_DENIED);
    RefuseReadOnly(old.dwFileAttributes);
    if (!OpenFile(target, DELETE, sharedByAll, OPEN_EXISTING) && GetLastError() == ERROR_SHARING_VIOLATION) {
        ThrowFileError();
    }
}

// The path of a file that is there by its long names: a file that is replaced is called what the rename calls it.
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

// What is there is emptied, not created anew: that is refused for a hidden file.
void SystemServices::CreateEmptyFile(TextView path) {
    const UniqueKernelObject file =
        OpenFile(SystemPath(path), GENERIC_WRITE, 0, OPEN_ALWAYS, FILE_FLAG_SEQUENTIAL_SCAN | FILE_ATTRIBUTE_NORMAL);
    BY_HANDLE_FILE_INFORMATION data{};
    if (!file || !GetFileInformationByHandle(file.Get(), &data)) ThrowFileError();
    RefuseReadOnly(data.dwFileAttributes);
    // On a full disk even the end of an empty file may be refused.
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

// A rename over the target, since the system's ReplaceFileW is not one step: without a backup's name it deletes the
// target first, and if it is stopped then, or cannot move the new file after that, there is none of that name.
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
        // What whoever looks at the old file knows it by: permissions, attributes, the day it was made.
        CopyPermissions(target, beside);
        basics.CreationTime = Ticks(old->ftCreationTime);
        data.dwFileAttributes = old->dwFileAttributes;
    }
    SetBasics(arriving.Handle(), basics, data.dwFileAttributes);
    if (!arriving.TakePlaceOf(target)) ThrowFileError();
}

}  // namespace qvx::backup
