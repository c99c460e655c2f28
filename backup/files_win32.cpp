// Single files: what there is, made, deleted, renamed, copied and put in another one's place.
#include <windows.h>

#include <aclapi.h>

#include <memory>
#include <vector>

#include "backup/system_path_win32.h"
#include "backup/system_services_win32.h"
#include "com/text.h"

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

// What is there is emptied, not created anew: that is refused for a hidden file.
UniqueKernelObject OpenEmptied(const Text& systemPath) {
    UniqueKernelObject file =
        OpenFile(systemPath, GENERIC_WRITE, 0, OPEN_ALWAYS, FILE_FLAG_SEQUENTIAL_SCAN | FILE_ATTRIBUTE_NORMAL);
    if (!file || !SetEndOfFile(file.Get())) ThrowFileError();
    return file;
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

// Whether the file's volume is known to keep no permissions at all.
bool HasNoPermissions(const Text& systemPath) {
    const UniqueKernelObject file = OpenFile(systemPath, READ_CONTROL, sharedByAll, OPEN_EXISTING);
    if (!file) ThrowFileError();
    DWORD features = 0;
    return GetVolumeInformationByHandleW(file.Get(), nullptr, 0, nullptr, nullptr, &features, nullptr, 0) &&
           !(features & FILE_PERSISTENT_ACLS);
}

void CarryPermissions(Text from, Text to) {
    if (HasNoPermissions(from)) return;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR memory = nullptr;
    DWORD result = GetNamedSecurityInfoW(WideBuffer(from), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                         &list, nullptr, &memory);
    if (result != ERROR_SUCCESS) ThrowFileError(result);
    const std::unique_ptr<void, ReleaseLocal> descriptor(memory);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor.get(), &control, &revision)) ThrowFileError();
    // What a file does not inherit it must not begin to inherit now.
    const SECURITY_INFORMATION inheriting =
        control & SE_DACL_PROTECTED ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION;
    result = SetNamedSecurityInfoW(WideBuffer(to), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheriting, nullptr,
                                   nullptr, list, nullptr);
    if (result != ERROR_SUCCESS) ThrowFileError(result);
}

// What whoever looks at the file `old` knows it by: permissions, attributes, the day it was made.
void TakeOver(const Text& old, const WIN32_FILE_ATTRIBUTE_DATA& data, const Text& arriving) {
    CarryPermissions(old, arriving);
    const UniqueKernelObject file =
        OpenFile(arriving, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, sharedByAll, OPEN_EXISTING);
    if (!file) ThrowFileError();
    FILE_BASIC_INFO basics{};
    basics.CreationTime = Ticks(data.ftCreationTime);
    SetBasics(file.Get(), basics, data.dwFileAttributes);
}

}  // namespace

std::optional<std::uint64_t> SystemServices::FileSize(TextView path) {
    const auto data = Find(SystemPath(path));
    if (!data || IsFolder(*data)) return std::nullopt;
    return std::uint64_t{data->nFileSizeHigh} << 32 | data->nFileSizeLow;
}

void SystemServices::CreateEmptyFile(TextView path) { OpenEmptied(SystemPath(path)); }

void SystemServices::DeleteFile(TextView path) {
    const Text systemPath = SystemPath(path);
    // The call does not take it for read-only everywhere.
    const auto data = Find(systemPath);
    if (data && data->dwFileAttributes & FILE_ATTRIBUTE_READONLY) ThrowFileError(ERROR_ACCESS_DENIED);
    if (!::DeleteFileW(Wide(systemPath))) ThrowFileError();
}

void SystemServices::RenameFile(TextView from, TextView to) {
    if (!MoveFileExW(Wide(SystemPath(from)), Wide(SystemPath(to)), 0)) ThrowFileError();
}

void SystemServices::CopyFile(TextView from, TextView to) {
    const UniqueKernelObject source =
        OpenFile(SystemPath(from), GENERIC_READ, sharedByAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
    BY_HANDLE_FILE_INFORMATION data{};
    if (!source || !GetFileInformationByHandle(source.Get(), &data)) ThrowFileError();
    // Nobody else may have it open, so it is not emptied when it is the source itself under another name.
    const UniqueKernelObject target = OpenEmptied(SystemPath(to));
    CopyBytes(source.Get(), target.Get());
    FILE_BASIC_INFO basics{};
    basics.LastWriteTime = Ticks(data.ftLastWriteTime);
    SetBasics(target.Get(), basics, data.dwFileAttributes);
    if (!FlushFileBuffers(target.Get())) ThrowFileError();
}

// A rename over the target, since the system's ReplaceFileW is not one step: without a backup's name it deletes the
// target first, and if it is stopped then, or cannot move the new file after that, there is none of that name.
void SystemServices::ReplaceFile(TextView from, TextView to) {
    const Text source = SystemPath(from);
    const Text target = SystemPath(to);
    if (const auto old = Find(target)) {
        if (IsFolder(*old) || old->dwFileAttributes & FILE_ATTRIBUTE_READONLY) ThrowFileError(ERROR_ACCESS_DENIED);
        TakeOver(target, *old, source);
    }
    if (!MoveFileExW(Wide(source), Wide(target), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) ThrowFileError();
}

}  // namespace qvx::backup
