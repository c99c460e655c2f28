#include "tests/unit/archivers/archive_fixture.h"

namespace qvx::archivers {
namespace {

constexpr std::size_t reserved = 32 * 1024;

class Spanning : public ArchiveTest {
  protected:
    void MakeDisks(std::size_t count, std::uint64_t capacity) {
        files.disks.assign(count, {});
        for (MemoryDisk& disk : files.disks) disk.capacity = capacity;
        files.inserted = 0;
        console.answers.clear();
        console.asked.clear();
    }
    // The user puts these disks in, one at each question.
    void Inserts(const std::vector<std::size_t>& order) {
        console.answers.clear();
        console.asked.clear();
        for (const std::size_t disk : order) {
            console.answers.emplace_back([this, disk] { files.inserted = disk; });
        }
    }
    const MemoryNode* OnDisk(std::size_t disk, const Text& key) {
        const auto found = files.disks[disk].nodes.find(key);
        return found == files.disks[disk].nodes.end() ? nullptr : &found->second;
    }
};

TEST_F(Spanning, FilesOverAnyNumberOfDisks) {
    const Bytes large = RandomBytes(deflateBlock + 90000);
    const Bytes small = RandomBytes(40000, 2);
    files.Put(u"C:\\in\\large", large);
    files.Put(u"C:\\in\\small", small);
    for (const std::uint64_t room :
         {16'384U, 16'385U, 50'000U, 61'440U, 100'000U, 333'333U, 600'000U, 660'000U, 2'000'000U}) {
        MakeDisks(60, room + reserved);
        std::vector<std::size_t> order;
        for (std::size_t disk = 1; disk < 60; ++disk) order.push_back(disk);
        Inserts(order);
        ASSERT_EQ(PkZip(u"-& A:\\b.qvx C:\\in\\large C:\\in\\small"), ExitCode::done) << room;
        const std::size_t count = files.inserted + 1;
        EXPECT_EQ(console.asked.size(), count - 1);
        EXPECT_EQ(count > 1, room < 660'000) << room;
        order = {0};
        for (std::size_t disk = 1; disk < count; ++disk) order.push_back(disk);
        Inserts(count > 1 ? order : std::vector<std::size_t>());
        files.fixed.nodes.erase(u"c:\\out\\large");
        ASSERT_EQ(PkunZip(u"A:\\b.qvx C:\\out"), ExitCode::done) << room;
        EXPECT_TRUE(ContentOf(u"C:\\out\\large") == large) << room;
        EXPECT_TRUE(ContentOf(u"C:\\out\\small") == small) << room;
        EXPECT_EQ(files.Temporaries(), 0u);
    }
}

TEST_F(Spanning, TheWrongDiskIsAskedForAgain) {
    files.Put(u"C:\\in\\a", RandomBytes(100'000));
    files.Put(u"C:\\in\\b", RandomBytes(1'000, 2));
    MakeDisks(5, 60'000 + reserved);
    files.disks[2].capacity = 1000;                              // no room
    files.disks[3].nodes[u"a:\\b.qvx"].bytes = {'o', 'l', 'd'};  // another archive: replaced with the user's consent
    Inserts({0, 2, 3, 3});
    ASSERT_EQ(PkZip(u"-& A:\\b.qvx C:\\in\\*"), ExitCode::done);
    EXPECT_EQ(console.asked.size(), 4u);
    EXPECT_EQ(OnDisk(0, u"a:\\b.qvx")->bytes.size(), 60'000u);
    // The program wants the last disk first, and is given others; then the first, and is given none at all and the
    // last.
    files.inserted = 0;
    Inserts({1, 0, 3, 1, 3, 0, 3});
    ASSERT_EQ(PkunZip(u"A:\\b.qvx C:\\out"), ExitCode::done);
    EXPECT_TRUE(ContentOf(u"C:\\out\\a") == RandomBytes(100'000));
    EXPECT_TRUE(ContentOf(u"C:\\out\\b") == RandomBytes(1'000, 2));
}

TEST_F(Spanning, NobodyThereLeavesNoPart) {
    files.Put(u"C:\\in\\a", RandomBytes(100'000));
    MakeDisks(1, 60'000 + reserved);
    EXPECT_EQ(PkZip(u"-& A:\\b.qvx C:\\in\\a"), ExitCode::noNextDisk);
    EXPECT_TRUE(files.disks[0].nodes.empty());
    MakeDisks(1, 60'000 + reserved);
    console.answers.emplace_back([] { throw ArchiveError(ExitCode::stopped); });
    EXPECT_EQ(PkZip(u"-& A:\\b.qvx C:\\in\\a"), ExitCode::stopped);
    EXPECT_TRUE(files.disks[0].nodes.empty());
    // An archive that was there stays when nobody says that it may go.
    MakeDisks(1, 60'000 + reserved);
    files.disks[0].nodes[u"a:\\b.qvx"] = {u"A:\\b.qvx", {'o', 'l', 'd'}, 0, 0, false};
    EXPECT_EQ(PkZip(u"-& A:\\b.qvx C:\\in\\a"), ExitCode::noNextDisk);
    EXPECT_EQ(OnDisk(0, u"a:\\b.qvx")->bytes, (Bytes{'o', 'l', 'd'}));
    EXPECT_EQ(files.Temporaries(), 0u);
}

TEST_F(Spanning, PartsBesideEachOther) {
    const Bytes large = RandomBytes(deflateBlock + 90000);
    files.Put(u"C:\\in\\large", large);
    files.Put(u"C:\\in\\small", TextBytes(5000));
    for (const Text& size : {Text(u"4096"), Text(u"64k"), Text(u"600k"), Text(u"10m")}) {
        ASSERT_EQ(PkZip(u"-s" + size + u" C:\\s\\b.zip C:\\in\\*"), ExitCode::done);
        ASSERT_EQ(PkunZip(u"C:\\s\\b.zip C:\\out"), ExitCode::done);
        EXPECT_TRUE(ContentOf(u"C:\\out\\large") == large);
        EXPECT_EQ(ContentOf(u"C:\\out\\small"), TextBytes(5000));
    }
    ASSERT_EQ(PkZip(u"-s64k C:\\s\\b.zip C:\\in\\*"), ExitCode::done);
    files.Find(u"C:\\s\\b.z02")->bytes[77] ^= 1;
    EXPECT_EQ(PkunZip(u"C:\\s\\b.zip C:\\out"), ExitCode::wrongCrc);
    files.Remove(u"C:\\s\\b.z02");
    EXPECT_EQ(PkunZip(u"C:\\s\\b.zip C:\\out"), ExitCode::notFound);
    EXPECT_TRUE(ContentOf(u"C:\\out\\large") == large);
}

}  // namespace
}  // namespace qvx::archivers
