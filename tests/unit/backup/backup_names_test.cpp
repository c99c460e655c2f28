#include "controls/backup/backup_names.h"

#include <gtest/gtest.h>

namespace qvx::backup {
namespace {

TEST(BackupNames, ArchivesAreNamedByDayAndMonth) {
    struct {
        const char16_t* folder;
        const char16_t* database;
        int day;
        int month;
        const char16_t* path;
    } const cases[] = {
        {u"D:\\Copies", u"Accounts", 1, 3, u"D:\\Copies\\Ac-1-3.qvx"},
        {u"A:\\", u"Accounts", 31, 12, u"A:\\Ac-31-12.qvx"},
        {u"D:", u"X", 9, 10, u"D:\\X-9-10.qvx"},
        {u"D:\\Copies", u"", 1, 1, u"D:\\Copies\\-1-1.qvx"},
    };
    for (const auto& c : cases) {
        Settings settings;
        settings.database = c.database;
        settings.backupExtension = u".qvx";
        EXPECT_EQ(ArchivePath(WithSeparator(c.folder), settings, c.day, c.month), c.path);
    }
}

TEST(BackupNames, GroupNamesAreTrimmedAndCleaned) {
    struct {
        const char16_t* typed;
        const char16_t* name;
    } const cases[] = {
        {u"a/b:c", u"abc"},       {u"  North branch ", u"North branch"},
        {u"\\/:*?\"<>|", u""},    {u"   ", u""},
        {u"Größe.1", u"Größe.1"}, {u"..\\..\\x", u"....x"},
    };
    for (const auto& c : cases) EXPECT_EQ(GroupName(c.typed), c.name);
    Text all;
    for (char16_t c = u' ' + 1; c < 128; ++c) all += c;
    EXPECT_EQ(GroupName(all).size(), all.size() - 9) << "no others are left out";
    EXPECT_EQ(SpareGroupName(u"r.tmp"), u"r.tmp");
    // A name that no file of a user's has.
    EXPECT_EQ(ArrivingName(u"a.db"), u"a.db.~arriving-5d2e9c41");
}

TEST(BackupNames, ArgumentsAreQuotedWhereTheyMustBe) {
    struct {
        const char16_t* path;
        const char16_t* argument;
    } const cases[] = {
        {u"C:\\DATA\\A.MDB", u"C:\\DATA\\A.MDB"},
        {u"C:\\My data\\A.mdb", u"\"C:\\My data\\A.mdb\""},
        {u"C:\\My data\\", u"\"C:\\My data\\\\\""},
        {u"C:\\DATA\\", u"C:\\DATA\\"},
    };
    for (const auto& c : cases) EXPECT_EQ(Argument(c.path), c.argument);
}

TEST(BackupNames, FilesInConnectionStrings) {
    struct {
        const char16_t* name;
        bool fits;
    } const cases[] = {
        {u"Accounts.mdb", true}, {u"Größe {1}.mdb", true}, {u"", true},          {u"a;PWD.mdb", false},
        {u"a=b.mdb", false},     {u"Tom's.mdb", false},    {u"a\"b.mdb", false},
    };
    for (const auto& c : cases) EXPECT_EQ(FitsConnectionString(c.name), c.fits) << &c - cases;
}

TEST(BackupNames, DescriptionsThatTellTooMuchAreLeftOut) {
    struct {
        const char16_t* description;
        bool shown;
    } const cases[] = {
        {u"Permission denied", true},
        {u"Path/File access error", true},
        {u"Could not find file C:\\DATA\\x", false},
        {u"Could not find file C:/DATA/x", false},
        {u"Login failed; Uid=sa", false},
        {u"\\\\server\\share is offline", false},
        {u"", true},
    };
    for (const auto& c : cases) EXPECT_EQ(Redacted(c.description), c.shown ? c.description : u"");
}

}  // namespace
}  // namespace qvx::backup
