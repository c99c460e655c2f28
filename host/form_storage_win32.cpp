#include "host/form_storage_win32.h"

#include <windows.h>

#include <vector>

#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "host/form_file.h"
#include "host/text_encoding.h"
#include "win/handles.h"
#include "win/replacing_file.h"

namespace qvx::host {

std::optional<std::string> TryReadFileBytes(const Text& path) {
    const HANDLE handle = CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
    const UniqueKernelObject owner(handle);
    std::string bytes;
    std::vector<char> buffer(65536);
    DWORD count = 0;
    // The rest of a file beyond the limit does not matter, since the parser refuses it for its size.
    while (bytes.size() <= limits::fileBytes &&
           ReadFile(handle, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) && count) {
        bytes.append(buffer.data(), count);
    }
    return bytes;
}

std::string ReadFileBytes(const Text& path) {
    auto bytes = TryReadFileBytes(path);
    if (!bytes) throw RunTimeError(errors::fileNotFound, u"cannot open \"" + path + u"\"");
    return std::move(*bytes);
}

void ReplaceFileBytes(const Text& path, const std::string& bytes) {
    // A read-only file is not replaced either, although its folder would allow it.
    const DWORD attributes = GetFileAttributesW(Wide(path));
    bool written = attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY);
    if (written) {
        ReplacingFile file(path + u".~new");
        DWORD count = 0;
        written = file.Handle() &&
                  WriteFile(file.Handle(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
                  count == bytes.size() && file.TakePlaceOf(path);
    }
    if (!written) throw RunTimeError(errors::pathFileAccess, u"cannot write \"" + path + u"\"");
}

void AppendLine(const Text& path, const Text& line) {
    if (path.empty()) return;
    const HANDLE handle = CreateFileW(Wide(path), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        throw RunTimeError(errors::pathFileAccess, u"cannot write to \"" + path + u"\"");
    const UniqueKernelObject owner(handle);
    const std::string bytes = EncodeUtf8(line + u"\r\n");
    DWORD written = 0;
    WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

Text FullPath(const Text& path) {
    if (path.empty()) return path;
    std::vector<wchar_t> buffer(32768);
    const DWORD length = GetFullPathNameW(Wide(path), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr);
    return length ? Text(FromWide(std::wstring_view(buffer.data(), length))) : path;
}

Text FolderOf(const Text& path) { return path.substr(0, path.find_last_of(u"\\/")); }

}  // namespace qvx::host
