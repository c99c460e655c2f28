// Files in a folder of the test, with ways to create and examine them.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "com/wide_text.h"
#include "common/number_text.h"
#include "tests/support/narrow.h"

namespace qvx::test {

inline void Write(const Text& path, std::string_view content) {
    const HANDLE file = CreateFileW(Wide(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE) << Narrow(path) << ": " << GetLastError();
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr));
    CloseHandle(file);
}

// Returns the content of a file; "(none)" when it cannot be read.
inline std::string Read(const Text& path) {
    const HANDLE file = CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return "(none)";
    std::string content(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &read, nullptr));
    CloseHandle(file);
    return content;
}

inline bool IsThere(const Text& path) { return GetFileAttributesW(Wide(path)) != INVALID_FILE_ATTRIBUTES; }

// Returns the path of a name in the folder for temporary files.
inline Text TemporaryPath(TextView name) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return Text(FromWide(folder)) + Text(name);
}

// Creates an empty file in the folder for temporary files and returns its path.
inline Text NewTemporaryFile() {
    wchar_t file[MAX_PATH] = L"";
    EXPECT_NE(GetTempFileNameW(Wide(TemporaryPath({})), L"qvx", 0, file), 0u) << GetLastError();
    return Text(FromWide(file));
}

// Removes a folder with all that is in it; its path ends in a backslash.
inline void RemoveFolder(const Text& folder) {
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW(Wide(folder + u'*'), &entry);
    do {
        const Text name(FromWide(entry.cFileName));
        if (name == u"." || name == u".." || search == INVALID_HANDLE_VALUE) continue;
        SetFileAttributesW(Wide(folder + name), FILE_ATTRIBUTE_NORMAL);
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            RemoveFolder(folder + name + u'\\');
        } else {
            DeleteFileW(Wide(folder + name));
        }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    EXPECT_TRUE(RemoveDirectoryW(Wide(folder))) << Narrow(folder) << ": " << GetLastError();
}

// Keeps a file open, as another program would.
class OpenElsewhere {
  public:
    OpenElsewhere(const Text& path, DWORD access, DWORD sharing)
        : file_(CreateFileW(Wide(path), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(file_, INVALID_HANDLE_VALUE) << GetLastError();
    }
    ~OpenElsewhere() { CloseHandle(file_); }
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;

  private:
    HANDLE file_;
};

// A folder whose name no description may repeat, with characters that no single code page has.
class TemporaryFolder : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(CreateDirectoryW(Wide(root_), nullptr)) << GetLastError(); }
    void TearDown() override { RemoveFolder(root_); }

    Text In(TextView name) const { return root_ + Text(name); }

    const Text root_ = TemporaryPath(u"secret \u0416\u20ac" + IntegerToText(GetCurrentProcessId()) + u'\\');
};

}  // namespace qvx::test
