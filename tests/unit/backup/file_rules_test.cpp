#include "controls/backup/file_rules.h"

#include <gtest/gtest.h>

#include <vector>

#include "controls/backup/mail_errors.h"

namespace qvx::backup {
namespace {

TEST(FileErrors, AreCalledWhatHostsCallThem) {
    const struct {
        int number;
        const char16_t* words;
        std::vector<std::uint32_t> absent;  // codes that mean that there is no such file
        std::vector<std::uint32_t> others;
    } cases[] = {
        {52, u"Bad file name or number", {123, 206}, {}},
        {53, u"File not found", {2}, {}},
        {58, u"File already exists", {}, {80, 183}},
        {61, u"Disk full", {}, {39, 112, 1295}},
        {68, u"Device unavailable", {15}, {64}},
        {70, u"Permission denied", {}, {19, 32, 33, 1224}},
        {71, u"Disk not ready", {21}, {}},
        {75, u"Path/File access error", {}, {5, 0, 0xFFFFFFFF}},  // and of the last two nobody knows anything
        {76, u"Path not found", {3, 53, 267}, {}},
    };
    for (const auto& c : cases) {
        for (const auto* const codes : {&c.absent, &c.others}) {
            for (const std::uint32_t code : *codes) {
                EXPECT_EQ(FileError(code).Number(), c.number) << code;
                EXPECT_EQ(FileError(code).Description(), c.words) << code;
                EXPECT_EQ(MeansAbsent(code), codes == &c.absent) << code;
            }
        }
    }
}

TEST(FileErrors, OfProgramsThatDoNotStart) {
    const struct {
        std::uint32_t code;
        int number;
    } cases[] = {{2, 53}, {3, 53}, {5, 70}, {740, 70}, {8, 7}, {193, 5}, {216, 5}, {0, 5}};
    for (const auto& c : cases) EXPECT_EQ(StartError(c.code).Number(), c.number) << c.code;
}

TEST(FilePaths, LongOnesGetTheFormWithoutALimitAndLoseItAgain) {
    const Text tail(300, u'x');
    const struct {
        Text path;
        Text longForm;
    } cases[] = {
        {u"C:\\short", u"C:\\short"},
        {u"", u""},
        {u"C:\\" + tail, u"\\\\?\\C:\\" + tail},
        {u"\\\\server\\share\\" + tail, u"\\\\?\\UNC\\server\\share\\" + tail},
        {u"\\\\?\\C:\\" + tail, u"\\\\?\\C:\\" + tail},
        {u"\\\\.\\pipe\\" + tail, u"\\\\.\\pipe\\" + tail},
        // Not full ones.
        {tail, tail},
        {u"C:" + tail, u"C:" + tail},
        {u"\\" + tail, u"\\" + tail},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(LongForm(c.path), c.longForm);
        const bool givenSo = c.path.substr(0, 4) == u"\\\\?\\";
        EXPECT_EQ(WithoutLongForm(c.longForm), givenSo ? c.path.substr(4) : c.path);
    }
    // A folder's path must leave room for a short name.
    EXPECT_EQ(LongForm(u"C:\\" + Text(244, u'x')).size(), 247u);
    EXPECT_EQ(LongForm(u"C:\\" + Text(245, u'x')).size(), 252u);
    for (const TextView other : {u"\\\\?\\Volume{1}\\a", u"\\\\?\\", u"\\\\", u"C:\\a", u""}) {
        EXPECT_EQ(WithoutLongForm(other), other);
    }
    EXPECT_EQ(WithoutLongForm(u"\\\\?\\unc\\server\\share"), u"\\\\server\\share");
}

TEST(FilePaths, NameTheirDrive) {
    const std::pair<TextView, TextView> cases[] = {
        {u"C:\\a\\b", u"C:"},
        {u"c:", u"c:"},
        {u"\\\\server\\share\\a", u"\\\\server\\share"},
        {u"//server/share/a", u"//server/share"},
        {u"\\\\server\\share", u"\\\\server\\share"},
    };
    for (const auto& [path, drive] : cases) EXPECT_TRUE(DriveName(path) == drive) << testing::PrintToString(path);
    for (const TextView path :
         {u"\\\\server\\", u"\\\\server\\\\a", u"\\\\server", u"\\\\", u"\\\\\\a\\b", u"\\a", u"1:\\a", u"C", u""}) {
        EXPECT_TRUE(DriveName(path).empty()) << testing::PrintToString(path);
    }
}

TEST(FilePaths, EndInAnExtensionOrAreAFolders) {
    const struct {
        const char16_t* name;
        const char16_t* extension;
        bool has;
    } cases[] = {
        {u"a.db", u".db", true}, {u"a.DB", u".db", true}, {u"a.dbx", u".db", false},       {u".db", u".db", true},
        {u"adb", u".db", false}, {u"db", u".db", false},  {u"a.db.old", u".db", false},    {u"", u".db", false},
        {u"a", u"", true},       {u"", u"", true},        {u"a.\u00c4", u".\u00e4", true}, {u"a.*", u".db", false},
    };
    for (const auto& c : cases) EXPECT_EQ(HasExtension(c.name, c.extension), c.has);
    EXPECT_TRUE(IsFolderPath(u"C:\\a\\"));
    EXPECT_TRUE(IsFolderPath(u"C:/a/"));
    for (const TextView file : {u"C:\\a", u"C:", u""}) EXPECT_FALSE(IsFolderPath(file));
}

FolderIdentity Folder(std::uint64_t volume, std::uint8_t file, const char16_t* path) {
    FolderIdentity folder{volume, {}, path};
    folder.file[3] = file;
    return folder;
}

TEST(FilePaths, FoldersAreToldApartByNumbersWhereThereAreAny) {
    const struct {
        const char* what;
        FolderIdentity one;
        FolderIdentity other;
        bool same;
    } cases[] = {
        {"other path", Folder(1, 2, u"C:\\a"), Folder(1, 2, u"S:\\b"), true},
        {"other number", Folder(1, 2, u"C:\\a"), Folder(1, 3, u"C:\\a"), false},
        {"other volume", Folder(1, 2, u"C:\\a"), Folder(2, 2, u"C:\\a"), false},
        {"no numbers", Folder(0, 0, u"\\\\?\\UNC\\s\\v\\A"), Folder(0, 0, u"\\\\s\\v\\a\\"), true},
        {"no numbers, other path", Folder(0, 0, u"\\\\s\\v\\a"), Folder(0, 0, u"\\\\s\\v\\b"), false},
        {"no number of a folder", Folder(1, 0, u"C:\\a"), Folder(1, 0, u"C:\\b"), false},
        {"no number of a volume", Folder(0, 5, u"S:\\"), Folder(0, 5, u"T:\\"), false},
        {"one number only", Folder(1, 2, u"C:\\a"), Folder(0, 0, u"\\\\?\\C:\\a"), true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SameFolder(c.one, c.other), c.same) << c.what;
        EXPECT_EQ(SameFolder(c.other, c.one), c.same) << c.what;
    }
}

TEST(FileErrors, PermissionsMayBeLackedWhereNobodyCanSetThem) {
    const struct {
        std::uint32_t code;
        bool here;
        bool onServer;
    } cases[] = {{1, true, true},  {50, true, true},  {120, true, true},
                 {5, false, true}, {65, false, true}, {32, false, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(MayLackPermissions(c.code, false), c.here) << c.code;
        EXPECT_EQ(MayLackPermissions(c.code, true), c.onServer) << c.code;
    }
}

TEST(MailErrors, AllHaveWordsAndTheNumberThatHostsKnow) {
    for (std::uint32_t code = 1; code < 40; ++code) {
        const bool known = code != 7 && code <= 28;
        EXPECT_EQ(MailError(code).Number(), known ? 32000 + static_cast<int>(code) : 32002) << code;
        EXPECT_FALSE(MailError(code).Description().empty()) << code;
    }
    EXPECT_EQ(MailError(0xFFFFFFFF).Number(), 32002);
    EXPECT_EQ(MailError(11).Description(), u"The attachment was not found.");
    EXPECT_EQ(MailError(28).Description(), u"The attachment is too large.");
}

}  // namespace
}  // namespace qvx::backup
