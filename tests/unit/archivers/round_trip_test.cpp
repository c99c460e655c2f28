#include "archivers/archive_reader.h"
#include "tests/unit/archivers/archive_fixture.h"

namespace qvx::archivers {
namespace {

class RoundTrip : public ArchiveTest {};

TEST_F(RoundTrip, EverySizeAndKindOfContent) {
    const std::size_t block = deflateBlock;
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{100}, block - 1, block,
                                   block + 1, 3 * block + 77}) {
        const Bytes contents[] = {Bytes(size), TextBytes(size), RandomBytes(size)};
        for (const Bytes& content : contents) {
            files.Put(u"C:\\in\\a.db", content);
            ASSERT_EQ(PkZip(u"C:\\b.qvx C:\\in\\a.db", 3), ExitCode::done) << size;
            ASSERT_EQ(PkunZip(u"C:\\b.qvx C:\\out\\"), ExitCode::done) << size;
            EXPECT_TRUE(ContentOf(u"C:\\out\\a.db") == content) << size;
            EXPECT_LE(ContentOf(u"C:\\b.qvx").size(), size + 250) << "stored where that is smaller";
            const Bytes archive = ContentOf(u"C:\\b.qvx");
            ASSERT_EQ(PkZip(u"C:\\b.qvx C:\\in\\a.db", 1), ExitCode::done);
            EXPECT_TRUE(ContentOf(u"C:\\b.qvx") == archive) << "the number of threads does not show";
        }
    }
    EXPECT_EQ(files.Temporaries(), 0u);
}

TEST_F(RoundTrip, NamesTimesAndAttributesAreKept) {
    const FileTime times[] = {FromUnixTime(0) - 5, FromUnixTime(1'700'000'001) + 1234567, FromUnixTime(4'200'000'000)};
    for (const FileTime time : times) {
        for (const Text& name :
             {Text(u"plain.db"), Text(u"with blank.db"), Text(u"Z\u00F3\u0142w \u65E5\u672C \U0001F600.db")}) {
            const std::uint32_t attributes = attribute::readOnly | attribute::archive;
            files.Put(u"C:\\in\\" + name, TextBytes(5000), attributes).modified = time;
            ASSERT_EQ(PkZip(u"C:\\b.qvx \"C:\\in\\" + name + u"\""), ExitCode::done);
            ASSERT_EQ(PkunZip(u"C:\\b.qvx C:\\out"), ExitCode::done);
            const MemoryNode* node = files.Find(u"C:\\out\\" + name);
            ASSERT_NE(node, nullptr);
            EXPECT_EQ(node->modified, time);
            EXPECT_EQ(node->attributes, attributes);
            EXPECT_EQ(node->path, u"C:\\out\\" + name);
            EXPECT_EQ(PkunZip(u"C:\\b.qvx C:\\out"), ExitCode::done) << "a read-only file is replaced";
        }
    }
}

TEST_F(RoundTrip, ForeignAttributesBecomeWhatTheyMeanAndTheTimeIsLocal) {
    const struct {
        std::uint8_t system;
        std::uint32_t attributes;
        std::uint32_t kept;
    } cases[] = {
        {0, 0x21, 0x21}, {0, 0x17, 0x07}, {3, 0100644U << 16, 0}, {3, 0100444U << 16, 1}, {3, 0, 0}, {10, 1, 1},
    };
    for (const auto& test : cases) {
        Entry entry;
        entry.name = u"a";
        entry.system = test.system;
        entry.attributes = test.attributes;
        entry.dosTime = DosTime({2020, 6, 1, 12, 0, 30});
        WriteArchive({entry}, TextBytes(9));
        ASSERT_EQ(PkunZip(u"C:\\a.zip C:\\out"), ExitCode::done);
        EXPECT_EQ(files.Find(u"C:\\out\\a")->attributes, test.kept) << test.attributes;
        EXPECT_EQ(files.Find(u"C:\\out\\a")->modified, FromUtcTime({2020, 6, 1, 11, 0, 30}));
    }
}

TEST_F(RoundTrip, FoldersAreMade) {
    std::vector<Entry> entries(3);
    entries[0].name = u"sub/";
    entries[1].name = u"sub/deep/a";
    entries[2].name = u"b";
    files.Put(u"C:\\out", {}, attribute::folder);
    WriteArchive({entries[1], entries[2]}, TextBytes(9));
    ASSERT_EQ(PkunZip(u"C:\\a.zip C:\\out\\"), ExitCode::done);
    EXPECT_EQ(ContentOf(u"C:\\out\\sub\\deep\\a"), TextBytes(9));
    EXPECT_EQ(ContentOf(u"C:\\out\\b"), TextBytes(9));
    WriteArchive({entries[0]}, {});
    EXPECT_EQ(PkunZip(u"C:\\a.zip C:\\new"), ExitCode::done);
    EXPECT_EQ(files.Attributes(u"C:\\new\\sub"), attribute::folder);
    entries[1].name = u"SUB";
    WriteArchive({entries[0], entries[1]}, {});
    EXPECT_EQ(PkunZip(u"C:\\a.zip C:\\new"), ExitCode::unsafeName) << "a file of that name is a second one";
}

TEST_F(RoundTrip, WildcardsTakeFilesOnly) {
    files.Put(u"C:\\in\\b.db", TextBytes(1));
    files.Put(u"C:\\in\\a.DB", TextBytes(2));
    files.Put(u"C:\\in\\c.txt", TextBytes(3));
    files.Put(u"C:\\in\\folder.db", {}, attribute::folder);
    files.Put(u"C:\\in\\old.db.~pkzip", TextBytes(4));
    ASSERT_EQ(PkZip(u"C:\\in\\all.db C:\\in\\*.db"), ExitCode::done);
    ASSERT_EQ(PkZip(u"C:\\in\\all.db C:\\in\\*.db"), ExitCode::done) << "the archive is not put into itself";
    const auto file = files.OpenInput(u"C:\\in\\all.db");
    SingleInput volumes(*file);
    std::vector<Text> names;
    const ArchiveReader reader(volumes);
    for (const Entry& entry : reader.Entries()) names.push_back(entry.name);
    EXPECT_EQ(names, (std::vector<Text>{u"a.DB", u"b.db"}));
    EXPECT_EQ(files.Temporaries(), 0u) << "what a killed run has left is gone";
}

// Hosts hand over short names, as "C:\IN\CUSTOM~1.DB".
class ShortNames : public ArchiveTest {
  protected:
    void PutLong(const Text& folder, const Bytes& bytes) {
        files.Put(folder + u"Customers of today.db", bytes);
        files.shortPaths[FoldedText(folder) + u"custom~1.db"] = folder + u"Customers of today.db";
    }
};

TEST_F(ShortNames, TheLongNameIsStored) {
    PutLong(u"C:\\in\\", TextBytes(9));
    ASSERT_EQ(PkZip(u"C:\\b.qvx C:\\IN\\CUSTOM~1.DB"), ExitCode::done);
    ASSERT_EQ(PkunZip(u"C:\\b.qvx C:\\out"), ExitCode::done);
    EXPECT_EQ(ContentOf(u"C:\\out\\Customers of today.db"), TextBytes(9));
    EXPECT_EQ(PkZip(u"C:\\b.qvx C:\\in\\CUSTOM~1.DB \"C:\\in\\Customers of today.db\""), ExitCode::sameName);
}

TEST_F(ShortNames, WhatIsReplacedKeepsItsLongName) {
    PutLong(u"C:\\out\\", TextBytes(9));
    Entry entry;
    entry.name = u"CUSTOM~1.DB";
    WriteArchive({entry}, TextBytes(7));
    ASSERT_EQ(PkunZip(u"C:\\a.zip C:\\out"), ExitCode::done);
    EXPECT_EQ(ContentOf(u"C:\\out\\Customers of today.db"), TextBytes(7));
    files.Put(u"C:\\in\\a.db", TextBytes(5));
    ASSERT_EQ(PkZip(u"C:\\out\\CUSTOM~1.DB C:\\in\\a.db"), ExitCode::done);
    const MemoryNode* node = files.Find(u"C:\\out\\CUSTOM~1.DB");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->path, u"C:\\out\\Customers of today.db");
}

TEST_F(ShortNames, OneFileUnderBothNamesIsNotWrittenTwice) {
    PutLong(u"C:\\out\\", TextBytes(9));
    std::vector<Entry> entries(2);
    entries[0].name = u"Customers of today.db";
    entries[1].name = u"CUSTOM~1.DB";
    WriteArchive(entries, TextBytes(7));
    EXPECT_EQ(PkunZip(u"C:\\a.zip C:\\out"), ExitCode::unsafeName);
    EXPECT_EQ(ContentOf(u"C:\\out\\Customers of today.db"), TextBytes(7));
}

TEST_F(RoundTrip, WhatCannotBeDoneHasItsOwnExitCode) {
    files.Put(u"C:\\in\\a.db", TextBytes(9));
    files.Put(u"C:\\in2\\A.DB", TextBytes(9));
    files.Put(u"C:\\in\\folder", {}, attribute::folder);
    files.Put(u"C:\\locked.zip", TextBytes(9), attribute::readOnly);
    files.Put(u"C:\\not.zip", TextBytes(900));
    const struct {
        TextView arguments;
        ExitCode code;
    } cases[] = {
        {u"", ExitCode::usage},
        {u"-?", ExitCode::done},
        {u"-q C:\\a.zip C:\\in\\a.db", ExitCode::usage},
        {u"C:\\a.zip C:\\in\\missing.db", ExitCode::notFound},
        {u"C:\\a.zip C:\\in\\folder", ExitCode::notFound},
        {u"C:\\a.zip C:\\in\\*.none", ExitCode::nothingMatched},
        {u"C:\\a.zip C:\\in\\a.db C:\\in2\\A.DB", ExitCode::sameName},
        {u"C:\\in\\a.db C:\\in\\a.db", ExitCode::sameName},
        {u"C:\\locked.zip C:\\in\\a.db", ExitCode::accessDenied},
        {u"C:\\NUL C:\\in\\a.db", ExitCode::unsafeName},
    };
    for (const auto& test : cases) {
        const MemoryDisk before = files.fixed;
        EXPECT_EQ(PkZip(Text(test.arguments)), test.code) << testing::PrintToString(test.arguments);
        EXPECT_TRUE(files.fixed.nodes == before.nodes) << testing::PrintToString(test.arguments);
    }
    EXPECT_EQ(PkunZip(u""), ExitCode::usage);
    EXPECT_EQ(PkunZip(u"C:\\missing.zip C:\\out"), ExitCode::notFound);
    EXPECT_EQ(PkunZip(u"C:\\not.zip C:\\out"), ExitCode::damaged);
    EXPECT_EQ(files.Find(u"C:\\out"), nullptr);
}

TEST(ZipRecords, TheWideFormIsReadBackAndOnlyThereWhereItIsNeeded) {
    for (const std::uint64_t size : {std::uint64_t{9}, limit32 - 1, limit32, limit32 * 3}) {
        for (const std::uint64_t offset : {std::uint64_t{7}, limit32, limit32 * 5}) {
            for (const std::uint32_t disk : {0U, 65534U, 65535U, 70000U}) {
                Entry entry;
                entry.name = u"n";
                entry.size = entry.packedSize = size;
                entry.offset = offset;
                entry.disk = disk;
                const Bytes header = CentralHeader(entry);
                ByteReader reader(header);
                const Entry read = ReadCentralHeader(reader);
                EXPECT_EQ(reader.Left(), 0u);
                EXPECT_EQ(std::tie(read.size, read.packedSize, read.offset, read.disk),
                          std::tie(entry.size, entry.packedSize, entry.offset, entry.disk));
                const bool isWide = size >= limit32 || offset >= limit32 || disk >= limit16;
                EXPECT_EQ(header.size() > centralHeaderSize + 1, isWide);
            }
        }
    }
    for (const std::uint64_t entries : {std::uint64_t{65534}, std::uint64_t{65535}}) {
        EXPECT_EQ(NeedsEnd64({0, 0, entries, entries, 9, 9}), entries == 65535);
    }
    const EndRecord end{70000, 69999, limit32 + 1, limit32 + 2, limit32 + 3, limit32 + 4};
    const EndRecord read = ReadEnd64(End64(end));
    EXPECT_EQ(std::tie(read.disk, read.centralDisk, read.entriesHere, read.entries),
              std::tie(end.disk, end.centralDisk, end.entriesHere, end.entries));
    EXPECT_EQ(std::tie(read.centralSize, read.centralOffset), std::tie(end.centralSize, end.centralOffset));
    const auto place = ReadEnd64Locator(End(end, End64Place{65536, limit32 + 5}));
    ASSERT_TRUE(place);
    EXPECT_EQ(std::pair(place->disk, place->offset), std::pair(65536U, limit32 + 5));
}

// Fields that our own reader passes over.
TEST(ZipRecords, OtherProgramsFindTheirFieldsToo) {
    Entry entry;
    entry.name = u"n";
    entry.size = 9;
    const EndRecord end{4, 4, 1, 1, 9, 9};
    const struct {
        const char* what;
        Bytes record;
        std::size_t at, size;
        std::uint64_t value;
    } cases[] = {
        {"the version that reads the wide form", LocalHeader(entry, true, true), 4, 2, 45},
        {"the wide sizes' tag", LocalHeader(entry, true, true), localHeaderSize + 1, 2, 1},
        {"how long they are", LocalHeader(entry, true, true), localHeaderSize + 3, 2, 16},
        {"the wide size", LocalHeader(entry, true, true), localHeaderSize + 5, 8, 9},
        {"what kind of text it is", CentralHeader(entry), 36, 2, 0},
        {"the number of disks", End(end, End64Place{}), 16, 4, 5},
    };
    for (const auto& test : cases) {
        std::uint64_t value = 0;
        for (std::size_t i = test.size; i-- > 0;) value = value << 8 | test.record[test.at + i];
        EXPECT_EQ(value, test.value) << test.what;
    }
}

TEST(ZipRecords, NamesWithoutAMarkAreInTheirSystemsBytes) {
    const struct {
        std::uint8_t system;
        std::uint8_t secondByte;
        TextView name;
    } cases[] = {
        {3, 0xB3, u"\u00F3"},        // two bytes of UTF-8
        {3, 'x', u"\u251Cx"},        // no UTF-8
        {0, 0xB3, u"\u251C\u2502"},  // DOS
    };
    for (const auto& test : cases) {
        Entry entry;
        entry.name = u"\u00F3";
        entry.system = test.system;
        Bytes header = CentralHeader(entry);
        header[centralHeaderSize + 1] = test.secondByte;
        ByteReader reader(header);
        EXPECT_EQ(ReadCentralHeader(reader).name, test.name) << int{test.system} << ' ' << int{test.secondByte};
    }
}

}  // namespace
}  // namespace qvx::archivers
