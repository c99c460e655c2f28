#include "controls/backup/set_aside.h"

#include <gtest/gtest.h>

#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

TEST(BackupSetAside, NamesLieBesideTheArchiveAndEndAsItDoes) {
    struct {
        const char16_t* archive;
        int number;
        const char16_t* name;
    } const cases[] = {
        {u"D:\\Ac-1-3.qvx", 1, u"D:\\Ac-1-3.~previous-5d2e9c41.qvx"},
        {u"D:\\Ac-1-3.qvx", 2, u"D:\\Ac-1-3.~previous-5d2e9c41-2.qvx"},
        {u"D:\\of.2026\\March", 1, u"D:\\of.2026\\March.~previous-5d2e9c41"},
        {u"a.b.c", 1, u"a.b.~previous-5d2e9c41.c"},
    };
    for (const auto& c : cases) EXPECT_EQ(Narrow(SetAsideName(c.archive, c.number)), Narrow(c.name));
}

TEST(BackupSetAside, TheOldArchiveIsKeptWhereThereIsRoom) {
    constexpr std::uint64_t kilobyte = 1024;
    constexpr std::uint64_t megabyte = 1024 * kilobyte;
    constexpr auto none = std::nullopt;
    const struct {
        const char* what;
        Room room;
        Plan plan;
    } cases[] = {
        {"no word of the room", {DriveKind::removable, none, megabyte, megabyte}, Plan::keepOld},
        {"room without end", {DriveKind::other, ~std::uint64_t{0}, megabyte, megabyte}, Plan::keepOld},
        // A disk that the new archive fits on in any case never has to be changed.
        {"disk, all fits", {DriveKind::removable, 2 * megabyte, megabyte, megabyte}, Plan::keepOld},
        {"disk, might fit", {DriveKind::removable, megabyte, megabyte, 10 * kilobyte}, Plan::deleteOld},
        {"disk, full but for it", {DriveKind::removable, 0, 10 * megabyte, megabyte}, Plan::deleteOld},
        {"disk, small and full", {DriveKind::removable, 0, 10 * megabyte, 20 * kilobyte}, Plan::noRoom},
        {"disk, full, first archive", {DriveKind::removable, 0, megabyte, none}, Plan::noRoom},
        {"disk, first of several", {DriveKind::removable, megabyte, 10 * megabyte, none}, Plan::keepOld},
        // As large as the last time, or never larger than the database.
        {"another as large", {DriveKind::other, 2 * megabyte, 100 * megabyte, megabyte}, Plan::keepOld},
        {"not another as large", {DriveKind::other, megabyte, 100 * megabyte, megabyte}, Plan::deleteOld},
        {"just another as large", {DriveKind::other, 964 * kilobyte, 100 * megabyte, 800 * kilobyte}, Plan::keepOld},
        {"a byte less", {DriveKind::other, 964 * kilobyte - 1, 100 * megabyte, 800 * kilobyte}, Plan::deleteOld},
        {"a database gone small", {DriveKind::other, megabyte, 10 * kilobyte, 50 * megabyte}, Plan::keepOld},
        {"full", {DriveKind::other, 0, 100 * megabyte, megabyte}, Plan::deleteOld},
        {"full, first archive", {DriveKind::other, 500, 100 * megabyte, none}, Plan::noRoom},
        {"full, nothing in the old one", {DriveKind::other, 500, 100 * megabyte, 0}, Plan::noRoom},
        {"little, first archive", {DriveKind::other, 10 * kilobyte, 100 * megabyte, none}, Plan::keepOld},
    };
    for (const auto& c : cases) EXPECT_EQ(PlanFor(c.room), c.plan) << c.what;
}

}  // namespace
}  // namespace qvx::backup
