// The backup's steps on the system: files, folders, drives, archivers, databases and mail as they are there.
#include "controls/backup/system_services_win32.h"

#include <windows.h>

#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "com/wide_text.h"
#include "common/number_text.h"
#include "controls/backup/backup_names.h"
#include "tests/support/error_of.h"
#include "tests/support/files.h"
#include "tests/support/import_patch.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using backup::DriveKind;
using Services = backup::SystemServices;

// The number that `work` fails with, 0 when it does not. No description may give away what follows "secret".
int Failure(const std::function<void()>& work) {
    const Raised raised = RaisedBy(work);
    EXPECT_EQ(raised.words.empty(), raised.number == 0);
    EXPECT_EQ(raised.words.find(u"secret"), Text::npos) << Narrow(raised.words);
    EXPECT_EQ(raised.words.find(u'\\'), Text::npos) << Narrow(raised.words);
    return raised.number;
}

Text CurrentFolder() {
    wchar_t folder[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, folder);
    return Text(FromWide(folder));
}

class Files : public TemporaryFolder {};

TEST_F(Files, SizeIsThatOfFilesOnly) {
    Write(In(u"a.db"), "four");
    Write(In(u"empty"), "");
    EXPECT_EQ(Services().FileSize(In(u"a.db")), 4u);
    EXPECT_EQ(Services().FileSize(In(u"empty")), 0u);
    {
        const HANDLE file = CreateFileW(Wide(In(u"large")), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        LARGE_INTEGER end{};
        end.QuadPart = 5'000'000'000;
        EXPECT_TRUE(SetFilePointerEx(file, end, nullptr, FILE_BEGIN) && SetEndOfFile(file));
        CloseHandle(file);
    }
    EXPECT_EQ(Services().FileSize(In(u"large")), 5'000'000'000u);
    Text slashes = In(u"a.db");
    std::replace(slashes.begin(), slashes.end(), u'\\', u'/');
    EXPECT_EQ(Services().FileSize(slashes), 4u);
    for (const Text& none : {In(u"b.db"), In(u"no\\a.db"), In(u"a.*"), In(u"?.db"), In(u"a.db\\b"), Text(root_), Text(),
                             Text(u"\\\\no-such-server\\share\\a.db")}) {
        std::optional<std::uint64_t> size;
        EXPECT_EQ(Failure([&] { size = Services().FileSize(none); }), 0) << Narrow(none);
        EXPECT_EQ(size, std::nullopt) << Narrow(none);
    }
}

TEST_F(Files, FailuresHaveTheNumbersThatHostsKnow) {
    Write(In(u"a"), "a");
    Write(In(u"b"), "b");
    Write(In(u"fixed"), "fixed");
    Write(In(u"held"), "held");
    SetFileAttributesW(Wide(In(u"fixed")), FILE_ATTRIBUTE_READONLY);
    CreateDirectoryW(Wide(In(u"folder")), nullptr);
    const OpenElsewhere held(In(u"held"), GENERIC_READ | GENERIC_WRITE, 0);
    const Text nul = In(u"a") + u'\0' + u"b";
    const struct {
        const char* what;
        std::function<void()> step;
        std::vector<int> numbers;  // any of them
    } cases[] = {
        {"delete none", [&] { Services().DeleteFile(In(u"none")); }, {53}},
        {"delete read-only", [&] { Services().DeleteFile(In(u"fixed")); }, {75}},
        {"delete what is in use", [&] { Services().DeleteFile(In(u"held")); }, {70}},
        {"delete wildcards", [&] { Services().DeleteFile(In(u"?")); }, {52, 53}},
        {"delete a name cut short", [&] { Services().DeleteFile(nul); }, {52}},
        {"create in no folder", [&] { Services().CreateEmptyFile(In(u"no\\a")); }, {76}},
        {"create over read-only", [&] { Services().CreateEmptyFile(In(u"fixed")); }, {75}},
        {"rename to a name taken", [&] { Services().RenameFile(In(u"a"), In(u"b")); }, {58}},
        {"rename read-only", [&] { Services().RenameFile(In(u"fixed"), In(u"c")); }, {75}},
        {"replace by none what is there", [&] { Services().ReplaceFile(In(u"none"), In(u"b")); }, {53}},
        {"replace in no folder", [&] { Services().ReplaceFile(In(u"a"), In(u"no\\c")); }, {76}},
        {"replace read-only", [&] { Services().ReplaceFile(In(u"a"), In(u"fixed")); }, {75}},
        {"replace what is in use", [&] { Services().ReplaceFile(In(u"a"), In(u"held")); }, {70}},
        {"replace a folder", [&] { Services().ReplaceFile(In(u"a"), In(u"folder")); }, {70, 75}},
        {"replace by a folder", [&] { Services().ReplaceFile(In(u"folder"), In(u"c")); }, {75}},
        {"the short path of a folder", [&] { Services().ShortPath(root_); }, {53}},
        {"empty no folder", [&] { Services().DeleteFiles(In(u"no\\")); }, {0}},
        {"empty what is no folder's path", [&] { Services().DeleteFiles(In(u"fol")); }, {76}},
        {"empty nothing", [&] { Services().DeleteFiles(u""); }, {76}},
    };
    for (const auto& c : cases) {
        const int number = Failure(c.step);
        const bool expected = std::find(c.numbers.begin(), c.numbers.end(), number) != c.numbers.end();
        EXPECT_TRUE(expected) << c.what << " failed with " << number;
    }
    EXPECT_FALSE(IsThere(In(u"c")));
    for (const TextView name : {u"b", u"c", u"fixed", u"held", u"folder"}) {
        EXPECT_FALSE(IsThere(In(backup::ArrivingName(name)))) << Narrow(name);
    }
    EXPECT_EQ(Read(In(u"a")) + Read(In(u"b")) + Read(In(u"fixed")), "abfixed");
    EXPECT_EQ(Services().FileSize(In(u"held")), 4u);
}

TEST_F(Files, AnEmptyFileTakesThePlaceOfWhateverIsThere) {
    Write(In(u"hidden"), "content");
    SetFileAttributesW(Wide(In(u"hidden")), FILE_ATTRIBUTE_HIDDEN);
    for (const TextView name : {u"new", u"hidden"}) {
        Services().CreateEmptyFile(In(name));
        EXPECT_EQ(Services().FileSize(In(name)), 0u) << Narrow(name);
        Services().DeleteFile(In(name));
        EXPECT_FALSE(IsThere(In(name)));
    }
}

BOOL WINAPI NoRoom(HANDLE) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}
BOOL WINAPI NoRoomForAll(HANDLE, LPCVOID, DWORD count, LPDWORD written, LPOVERLAPPED) {
    *written = count - 1;
    return TRUE;
}

TEST_F(Files, AFullDiskLeavesWhatIsThere) {
    Write(In(u"from"), "content");
    Write(In(u"to"), "old");
    const struct {
        const char* function;
        void* replacement;
        std::function<void()> step;
        int error;
    } cases[] = {
        // Some systems refuse on a full disk even to end an empty file where it ends.
        {"SetEndOfFile", reinterpret_cast<void*>(&NoRoom), [&] { Services().CreateEmptyFile(In(u"new")); }, 0},
        {"SetEndOfFile", reinterpret_cast<void*>(&NoRoom), [&] { Services().CreateEmptyFile(In(u"to")); }, 61},
        // Some report only when what they keep in memory is to be written that there is no room for it.
        {"FlushFileBuffers", reinterpret_cast<void*>(&NoRoom), [&] { Services().ReplaceFile(In(u"from"), In(u"to")); },
         61},
        {"WriteFile", reinterpret_cast<void*>(&NoRoomForAll), [&] { Services().ReplaceFile(In(u"from"), In(u"to")); },
         61},
    };
    for (const auto& c : cases) {
        const ImportPatch full(GetModuleHandleW(nullptr), c.function, c.replacement);
        ASSERT_TRUE(full.Found());
        EXPECT_EQ(Failure(c.step), c.error) << c.function;
    }
    EXPECT_EQ(Services().FileSize(In(u"new")), 0u);
    EXPECT_EQ(Read(In(u"to")), "old");
    EXPECT_FALSE(IsThere(In(backup::ArrivingName(u"to"))));
}

TEST_F(Files, AReplacementHasTheBytesAndTheTimeOfItsSource) {
    std::string content(3 * 1024 * 1024 + 17, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 31 >> 3);
    Write(In(u"from"), content);
    Write(In(u"to"), std::string(content.size() + 1000, 'x'));
    Write(In(backup::ArrivingName(u"to")), "half of a run that was interrupted");
    const FILETIME written{0, 0x01D00000};
    {
        const HANDLE file =
            CreateFileW(Wide(In(u"from")), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_TRUE(SetFileTime(file, nullptr, nullptr, &written));
        CloseHandle(file);
    }
    SetFileAttributesW(Wide(In(u"from")), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    // Whoever else has the source open, and however, is no hindrance.
    const OpenElsewhere reader(In(u"from"), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    for (const TextView name : {u"to", u"new", u"to"}) {
        Services().ReplaceFile(In(u"from"), In(name));
        EXPECT_TRUE(Read(In(name)) == content) << Narrow(name);
        WIN32_FILE_ATTRIBUTE_DATA data{};
        EXPECT_TRUE(GetFileAttributesExW(Wide(In(name)), GetFileExInfoStandard, &data));
        EXPECT_EQ(CompareFileTime(&data.ftLastWriteTime, &written), 0) << Narrow(name);
        EXPECT_FALSE(data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) << Narrow(name);
        // What takes nobody's place has nobody's attributes but those of its source.
        EXPECT_EQ((data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0, name == u"new") << Narrow(name);
    }
    EXPECT_TRUE(IsThere(In(u"from"))) << "a copy takes its place";
    EXPECT_FALSE(IsThere(In(backup::ArrivingName(u"to"))));
    SetFileAttributesW(Wide(In(u"from")), FILE_ATTRIBUTE_NORMAL);
    SetFileAttributesW(Wide(In(u"to")), FILE_ATTRIBUTE_HIDDEN);
    Services().ReplaceFile(In(u"from"), In(u"to"));
    EXPECT_TRUE(GetFileAttributesW(Wide(In(u"to"))) & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(DeleteFileW(Wide(In(u"to")))) << "nothing is kept open";
}

// A share whose server lets nobody set permissions, or has none; and what was set.
DWORD settingPermissions = 0;
UINT driveOfAll = 0;
SECURITY_INFORMATION setInformation = 0;
int setEntries = 0;
DWORD WINAPI RecordPermissions(LPWSTR, SE_OBJECT_TYPE, SECURITY_INFORMATION what, PSID, PSID, PACL list, PACL) {
    setInformation = what;
    setEntries = list ? list->AceCount : 0;
    return settingPermissions;
}
UINT WINAPI ReportDrive(LPCWSTR) { return driveOfAll; }

TEST_F(Files, AReplacementKeepsThePermissionsOfTheOldFileWhereSomebodyCanSetThem) {
    Write(In(u"a.db"), "old");
    Write(In(u"new"), "new");
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    // Administrators and the owner everything, everyone else nothing.
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;BA)(A;;FA;;;OW)", SDDL_REVISION_1,
                                                                     &descriptor, nullptr));
    ASSERT_TRUE(SetFileSecurityW(Wide(In(u"a.db")), DACL_SECURITY_INFORMATION, descriptor));
    LocalFree(descriptor);
    const ImportPatch setting(GetModuleHandleW(nullptr), "SetNamedSecurityInfoW",
                              reinterpret_cast<void*>(&RecordPermissions));
    const ImportPatch drive(GetModuleHandleW(nullptr), "GetDriveTypeW", reinterpret_cast<void*>(&ReportDrive));
    ASSERT_TRUE(setting.Found() && drive.Found());
    const struct {
        DWORD refusal;
        UINT drive;
        int error;
    } cases[] = {{ERROR_SUCCESS, DRIVE_FIXED, 0},
                 {ERROR_ACCESS_DENIED, DRIVE_REMOTE, 0},
                 {ERROR_ACCESS_DENIED, DRIVE_FIXED, 75},
                 {ERROR_NOT_ENOUGH_MEMORY, DRIVE_REMOTE, 7}};
    for (const auto& c : cases) {
        settingPermissions = c.refusal;
        driveOfAll = c.drive;
        setInformation = 0;
        EXPECT_EQ(Failure([&] { Services().ReplaceFile(In(u"new"), In(u"a.db")); }), c.error) << c.refusal;
        EXPECT_EQ(Read(In(u"a.db")), c.error == 0 ? "new" : "old") << c.refusal;
        EXPECT_TRUE(setInformation & DACL_SECURITY_INFORMATION);
        EXPECT_TRUE(&c != cases || setEntries == 2) << "those of the old file";
        Write(In(u"a.db"), "old");
    }
}

TEST_F(Files, PathsLongerThanTheSystemsOldLimitWork) {
    Text folder = root_;
    for (int i = 0; i < 3; ++i) {
        folder.append(100, static_cast<char16_t>(u'a' + i)).append(1, u'\\');
        ASSERT_TRUE(CreateDirectoryW(Wide(u"\\\\?\\" + folder), nullptr)) << GetLastError();
    }
    Services().CreateEmptyFile(folder + u"empty");
    EXPECT_EQ(Services().FileSize(folder + u"empty"), 0u);
    Write(In(u"short"), "content");
    for (int i = 0; i < 2; ++i) Services().ReplaceFile(In(u"short"), folder + u"a.db");
    Services().RenameFile(folder + u"a.db", folder + u"b.db");
    EXPECT_EQ(Services().FileSize(folder + u"b.db"), 7u);
    EXPECT_EQ(Services().FirstFile(folder, u".db"), u"b.db");
    EXPECT_TRUE(Services().SameFolder(folder, folder + u"..\\" + Text(100, u'C') + u'\\'));
    EXPECT_FALSE(Services().ShortPath(folder + u"b.db").empty());
    EXPECT_EQ(Services().DriveTypeOf(folder + u"b.db"), DriveKind::other);
    Services().DeleteFile(folder + u"empty");
    Services().DeleteFiles(folder);
    EXPECT_EQ(Services().FirstFile(folder, u""), u"");
}

// ---- Folders -------------------------------------------------------------------------------------------------------

TEST_F(Files, TheFirstFileEndsInTheExtensionItself) {
    for (const TextView name : {u"x.abcd", u"x.ab", u"abc", u".abcx"}) Write(In(name), "");
    CreateDirectoryW(Wide(In(u"folder.abc")), nullptr);
    EXPECT_EQ(Services().FirstFile(root_, u".abc"), u"");
    EXPECT_EQ(Services().FirstFile(In(u"no\\"), u".abc"), u"");
    EXPECT_EQ(Services().FirstFile(In(u"*\\"), u".abc"), u"");
    EXPECT_EQ(Services().FirstFile(In(u"x"), u".ab"), u"") << "that is no folder's path";
    EXPECT_NE(Services().FirstFile(root_, u""), u"");
    Write(In(u"\u0416.ABC"), "");
    EXPECT_EQ(Services().FirstFile(root_, u".abc"), u"\u0416.ABC");
    SetFileAttributesW(Wide(In(u"\u0416.ABC")), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    EXPECT_EQ(Services().FirstFile(root_, u".aBc"), u"\u0416.ABC");
}

TEST_F(Files, AFolderIsEmptiedOfFilesOnly) {
    for (const DWORD attributes : {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_READONLY,
                                   FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY}) {
        const Text file = In(IntegerToText(static_cast<int>(attributes)));
        Write(file, "x");
        SetFileAttributesW(Wide(file), attributes);
    }
    for (int i = 0; i < 200; ++i) Write(In(u"many" + IntegerToText(i)), "");
    CreateDirectoryW(Wide(In(u"inner")), nullptr);
    Write(In(u"inner\\kept"), "kept");
    Services().DeleteFiles(root_);
    EXPECT_EQ(Services().FirstFile(root_, u""), u"");
    EXPECT_EQ(Read(In(u"inner\\kept")), "kept");
    Write(In(u"held"), "x");
    const OpenElsewhere held(In(u"held"), GENERIC_READ, 0);
    EXPECT_EQ(Failure([&] { Services().DeleteFiles(root_); }), 70);
}

// A server that has no numbers for its folders.
BOOL WINAPI NoNumber(HANDLE, FILE_INFO_BY_HANDLE_CLASS, LPVOID number, DWORD size) {
    std::memset(number, 0, size);
    return TRUE;
}

TEST_F(Files, AFolderIsTheSameHoweverItIsSpelled) {
    CreateDirectoryW(Wide(In(u"one")), nullptr);
    CreateDirectoryW(Wide(In(u"two")), nullptr);
    Write(In(u"file"), "");
    const struct {
        Text one;
        Text other;
        bool same;
    } cases[] = {
        {In(u"one\\"), In(u"ONE"), true},
        {In(u"one\\"), In(u"two\\..\\one\\."), true},
        {In(u"one\\"), u"\\\\?\\" + In(u"one"), true},
        {In(u"one\\"), In(u"two\\"), false},
        {In(u"three\\"), In(u"three\\"), false},
        {In(u"file"), In(u"file"), false},
        {u"", u"", false},
        {u".", In(u"one\\"), true},
    };
    const Text before = CurrentFolder();
    SetCurrentDirectoryW(Wide(In(u"one")));
    for (const bool numbers : {true, false}) {
        std::optional<ImportPatch> none;
        if (!numbers) {
            none.emplace(GetModuleHandleW(nullptr), "GetFileInformationByHandleEx", reinterpret_cast<void*>(&NoNumber));
            ASSERT_TRUE(none->Found());
        }
        for (const auto& c : cases) {
            EXPECT_EQ(Services().SameFolder(c.one, c.other), c.same) << Narrow(c.one) << " | " << Narrow(c.other);
        }
    }
    SetCurrentDirectoryW(Wide(before));
}

// ---- Names and drives ----------------------------------------------------------------------------------------------

Text renamedTo;

BOOL WINAPI RecordRename(LPCWSTR from, LPCWSTR to, DWORD flags) {
    renamedTo = FromWide(to);
    return MoveFileWithProgressW(from, to, nullptr, nullptr, flags);
}

// As in an archive that an old program made.
TEST_F(Files, AShortPathLeadsToTheFileWhichKeepsItsLongName) {
    const Text name = u"a rather long name.database";
    Write(In(name), "old");
    Write(In(u"new"), "new");
    EXPECT_EQ(Services().FileSize(Services().ShortPath(In(name))), 3u);
    Text shortPath(MAX_PATH, u'\0');
    shortPath.resize(GetShortPathNameW(Wide(In(name)), WideBuffer(shortPath), MAX_PATH));
    if (shortPath.find(u'~') == Text::npos) GTEST_SKIP() << "this disk has no short names";
    // Some systems let a file keep its name when it is replaced by its short one; a rename's own name must be right.
    const ImportPatch rename(GetModuleHandleW(nullptr), "MoveFileExW", reinterpret_cast<void*>(&RecordRename));
    ASSERT_TRUE(rename.Found());
    Services().ReplaceFile(In(u"new"), shortPath);
    EXPECT_EQ(Narrow(renamedTo), Narrow(In(name)));
    EXPECT_EQ(Services().FirstFile(root_, u".database"), name);
    EXPECT_EQ(Read(In(name)), "new");
}

TEST(BackupDrives, AreToldByAnyPathOnThem) {
    for (const TextView path : {u"C:\\", u"C:\\no such\\file.x", u"c:/windows/x", u"C:", u"no such.file"}) {
        EXPECT_EQ(Services().DriveTypeOf(path), DriveKind::other) << Narrow(path);
    }
    EXPECT_EQ(Failure([] { Services().DriveTypeOf(u"Q:\\secret\\x"); }), 68);
}

TEST_F(Files, TheFreeSpaceIsThatOfTheFolderAPathIsIn) {
    ULARGE_INTEGER free{};
    ASSERT_TRUE(GetDiskFreeSpaceExW(Wide(root_), &free, nullptr, nullptr));
    const auto told = Services().FreeSpace(In(u"no such.file"));
    ASSERT_TRUE(told);
    // Others write to the disk meanwhile.
    EXPECT_NEAR(static_cast<double>(*told), static_cast<double>(free.QuadPart), 1e9);
    EXPECT_EQ(Services().FreeSpace(u"Q:\\secret\\x"), std::nullopt);
    EXPECT_EQ(Services().FreeSpace(In(u"no such\\folder.file")), std::nullopt);
}

TEST(BackupDrives, ChangingTheDriveGoesToItsCurrentFolder) {
    const Text before = CurrentFolder();
    ASSERT_TRUE(SetCurrentDirectoryW(L"Z:\\"));
    Services().ChangeDrive(u"C:\\no such folder\\a.db");
    const Text now = CurrentFolder();
    EXPECT_TRUE(now.starts_with(u"C:"));
    Services().ChangeDrive(u"");
    Services().ChangeDrive(u"relative.db");
    EXPECT_EQ(Failure([] { Services().ChangeDrive(u"Q:\\secret\\"); }), 68);
    EXPECT_EQ(Narrow(CurrentFolder()), Narrow(now));
    SetCurrentDirectoryW(Wide(before));
}

TEST(BackupNames, TemporaryOnesAreFreshAndLongEnough) {
    const Text one = Services().TemporaryName();
    EXPECT_TRUE(one.starts_with(u"rad") && one.size() == 12 && one.find_first_of(u"\\/:") == Text::npos) << Narrow(one);
    EXPECT_NE(one, Services().TemporaryName());
}

TEST(BackupNames, TodayIsTheLocalDay) {
    SYSTEMTIME before{};
    SYSTEMTIME after{};
    GetLocalTime(&before);
    const backup::Date today = Services().Today();
    GetLocalTime(&after);
    EXPECT_TRUE((today.day == before.wDay && today.month == before.wMonth) ||
                (today.day == after.wDay && today.month == after.wMonth));
}

}  // namespace
}  // namespace qvx::test
