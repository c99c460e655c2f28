#include "controls/grid/export_file_win32.h"

#include <algorithm>

#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "win/handles.h"

namespace qvx::grid {
namespace {

// What the system's functions take in one call.
constexpr std::size_t mostUnits = 0x10000000;

}  // namespace

void ThrowForSystemError(DWORD code) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND:
            throw RunTimeError(errors::fileNotFound, u"File not found");
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            throw RunTimeError(errors::pathNotFound, u"Path not found");
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_FILE_EXISTS:
            throw RunTimeError(errors::permissionDenied, u"Permission denied");
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_FILE_TOO_LARGE:
            throw RunTimeError(errors::diskFull, u"Disk full");
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            throw RunTimeError(errors::outOfMemory, u"Out of memory");
        default:
            throw RunTimeError(errors::pathFileAccess, u"Path/File access error");
    }
}

Text CheckedTarget(const Text& path) {
    const DWORD attributes = GetFileAttributesW(Wide(path));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
        ThrowForSystemError(ERROR_DIRECTORY);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
        ThrowForSystemError(ERROR_ACCESS_DENIED);
    return path;
}

ReplacingExport::ReplacingExport(const Text& path) : path_(CheckedTarget(path)), file_(path + u".~new") {
    if (!file_.Handle()) ThrowForSystemError(GetLastError());
}

void ReplacingExport::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min(bytes.size(), mostUnits));
        DWORD written = 0;
        if (!WriteFile(file_.Handle(), bytes.data(), size, &written, nullptr)) ThrowForSystemError(GetLastError());
        if (written != size) ThrowForSystemError(ERROR_DISK_FULL);
        bytes.remove_prefix(size);
    }
}

void ReplacingExport::Rewrite(std::uint64_t at, std::string_view bytes) {
    LARGE_INTEGER place{};
    place.QuadPart = static_cast<LONGLONG>(at);
    if (!SetFilePointerEx(file_.Handle(), place, nullptr, FILE_BEGIN)) ThrowForSystemError(GetLastError());
    Write(bytes);
    if (!SetFilePointerEx(file_.Handle(), {}, nullptr, FILE_END)) ThrowForSystemError(GetLastError());
}

void ReplacingExport::Finish() {
    if (!file_.TakePlaceOf(path_)) ThrowForSystemError(GetLastError());
}

std::string ReadImportedFile(const Text& path) {
    const DWORD attributes = GetFileAttributesW(Wide(path));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
        ThrowForSystemError(ERROR_DIRECTORY);
    const HANDLE handle = CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE) ThrowForSystemError(GetLastError());
    const UniqueKernelObject owner(handle);
    std::string bytes;
    std::string buffer(65536, '\0');
    for (DWORD count = 0;;) {
        if (!ReadFile(handle, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr))
            ThrowForSystemError(GetLastError());
        if (count == 0) return bytes;
        bytes.append(buffer.data(), count);
    }
}

AnsiCodePage SystemCodePage() {
    AnsiCodePage page;
    page.encode = [](TextView text) {
        std::string bytes;
        if (text.empty()) return bytes;
        if (text.size() > mostUnits) ThrowForSystemError(ERROR_NOT_ENOUGH_MEMORY);
        // A character has at most as many bytes as in UTF-8.
        bytes.resize(text.size() * 4);
        const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
        const int length = WideCharToMultiByte(CP_ACP, flags, Wide(text).data(), static_cast<int>(text.size()),
                                               bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
        if (length <= 0) ThrowForSystemError(GetLastError());
        bytes.resize(static_cast<std::size_t>(length));
        return bytes;
    };
    page.decode = [](std::string_view bytes) {
        Text text;
        if (bytes.empty()) return text;
        if (bytes.size() > mostUnits) ThrowForSystemError(ERROR_NOT_ENOUGH_MEMORY);
        text.resize(bytes.size());
        const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()),
                                               WideBuffer(text), static_cast<int>(text.size()));
        if (length <= 0) ThrowForSystemError(GetLastError());
        text.resize(static_cast<std::size_t>(length));
        return text;
    };
    return page;
}

}  // namespace qvx::grid
