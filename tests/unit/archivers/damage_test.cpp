// Archives that are not what they should be, and runs that break off.
#include <zlib.h>

#include "tests/unit/archivers/archive_fixture.h"

namespace qvx::archivers {
namespace {

class Damage : public ArchiveTest {
  protected:
    // An archive of two files, one stored and one deflated.
    Bytes Sample() {
        files.Put(u"C:\\in\\a.txt", TextBytes(400));
        files.Put(u"C:\\in\\b.bin", RandomBytes(60));
        EXPECT_EQ(PkZip(u"C:\\a.zip C:\\in\\*"), ExitCode::done);
        const Bytes archive = ContentOf(u"C:\\a.zip");
        files.fixed.nodes.clear();
        return archive;
    }
    // Whatever happens, a file has its whole content or is as it was.
    void CheckOutcome(ExitCode code, const std::string& what) {
        const Bytes old = {'o', 'l', 'd'};
        for (const auto& [key, node] : files.fixed.nodes) {
            if (key == u"c:\\out\\a.txt") {
                EXPECT_TRUE(node.bytes == TextBytes(400) || (node.bytes == old && code != ExitCode::done)) << what;
            } else if (key == u"c:\\out\\b.bin") {
                EXPECT_TRUE(node.bytes == RandomBytes(60)) << what;
            }
        }
        EXPECT_EQ(files.Temporaries(), 0u) << what;
        Unpacked();
    }
    ExitCode UnpackBytes(const Bytes& archive) {
        files.fixed.nodes.clear();
        files.Put(u"C:\\a.zip", archive);
        files.Put(u"C:\\out\\a.txt", {'o', 'l', 'd'});
        return PkunZip(u"C:\\a.zip C:\\out\\");
    }
};

TEST_F(Damage, CutAnywhere) {
    const Bytes whole = Sample();
    ASSERT_EQ(UnpackBytes(whole), ExitCode::done);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const ExitCode code = UnpackBytes(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_EQ(code, ExitCode::damaged) << size;
        CheckOutcome(code, std::to_string(size));
    }
}

TEST_F(Damage, EveryBitTurnedOver) {
    const Bytes whole = Sample();
    for (std::size_t i = 0; i < whole.size() * 8; ++i) {
        Bytes changed = whole;
        changed[i / 8] ^= static_cast<std::uint8_t>(1U << i % 8);
        CheckOutcome(UnpackBytes(changed), std::to_string(i));
    }
}

TEST_F(Damage, EachKindHasItsCode) {
    const Bytes whole = Sample();
    // Where the records of the first file are.
    std::size_t central = 0;
    while (whole[central] != 'P' || whole[central + 1] != 'K' || whole[central + 2] != 1) ++central;
    constexpr std::size_t data = 30 + 5 + 9 + 3;
    const struct {
        const char* what;
        std::size_t at;
        std::uint8_t value;
        ExitCode code;
    } cases[] = {
        {"encrypted", central + 8, 1, ExitCode::unsupported},
        {"strongly encrypted", central + 8, 65, ExitCode::unsupported},
        {"unknown method", central + 10, 9, ExitCode::unsupported},
        {"another method in the header", 8, 0, ExitCode::damaged},
        {"another name in the header", 30, 'z', ExitCode::damaged},
        {"another sum", central + 16, static_cast<std::uint8_t>(whole[central + 16] ^ 1), ExitCode::wrongCrc},
        {"smaller than it says", central + 24, 0xFF, ExitCode::damaged},
        {"larger than it says", central + 24, 1, ExitCode::damaged},
        {"a thousandfold", central + 27, 1, ExitCode::damaged},
        {"less data than it says", central + 20, static_cast<std::uint8_t>(whole[central + 20] - 1), ExitCode::damaged},
        {"another's data as well", central + 20, 0xFF, ExitCode::damaged},
        {"no deflated data", data, 0xFF, ExitCode::damaged},
        {"two at one place", central + 42, 1, ExitCode::damaged},
        {"beyond the end", central + 44, 1, ExitCode::damaged},
        {"on another disk", central + 34, 1, ExitCode::damaged},
        {"more entries than there are", whole.size() - 12, 3, ExitCode::damaged},
        {"fewer entries than there are", whole.size() - 12, 1, ExitCode::damaged},
        {"last of several disks", whole.size() - 18, 1, ExitCode::notFound},
    };
    for (const auto& test : cases) {
        Bytes changed = whole;
        ASSERT_NE(changed[test.at], test.value) << test.what;
        changed[test.at] = test.value;
        const ExitCode code = UnpackBytes(changed);
        EXPECT_EQ(code, test.code) << test.what;
        CheckOutcome(code, test.what);
    }
    Bytes empty = whole;
    empty[central + 24] = empty[central + 25] = 0;
    EXPECT_EQ(UnpackBytes(empty), ExitCode::damaged) << "empty, it says";
    Bytes prefixed(1000, 'x');
    prefixed.insert(prefixed.end(), whole.begin(), whole.end());
    EXPECT_EQ(UnpackBytes(prefixed), ExitCode::done) << "behind something else";
}

// Data that several entries share makes a small archive a large disk full of files.
TEST_F(Damage, EntriesWithinTheDataOfAnother) {
    std::vector<Entry> entries(3);
    for (std::size_t i = 0; i < entries.size(); ++i) entries[i].name = Text(1, static_cast<char16_t>(u'a' + i));
    WriteArchive(entries, RandomBytes(60));
    Bytes archive = ContentOf(u"C:\\a.zip");
    constexpr std::size_t local = localHeaderSize + 1 + 60;
    const auto put = [&](std::size_t at, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i) archive[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
    };
    // The second one goes on to the third one's end.
    const std::size_t data = local + localHeaderSize + 1;
    const std::size_t header = 3 * local + centralHeaderSize + 1;
    ASSERT_EQ(archive[header], 'P');
    constexpr std::uint32_t size = 60 + local;
    put(header + 16, static_cast<std::uint32_t>(crc32(0, archive.data() + data, size)));
    put(header + 20, size);
    put(header + 24, size);
    EXPECT_EQ(UnpackBytes(archive), ExitCode::damaged);
    EXPECT_EQ(Unpacked(), 1u) << "the old file";
}

TEST_F(Damage, HostileNamesAreRefusedAndTheOthersUnpacked) {
    std::vector<Entry> entries;
    for (const TextView name : {u"../x", u"C:/x", u"..\\x", u"CON", u"A.TXT/../x", u"", u"q.~pkunzip"}) {
        entries.emplace_back().name = name;
    }
    entries.emplace_back().name = u"good.txt";
    entries.emplace_back().name = u"GOOD.TXT";
    Entry& link = entries.emplace_back();
    link.name = u"link";
    link.system = 3;
    link.attributes = 0120777U << 16;
    Entry& pipe = entries.emplace_back();
    pipe.name = u"pipe";
    pipe.system = 3;
    pipe.attributes = 0010666U << 16;
    WriteArchive(entries, TextBytes(20));
    EXPECT_EQ(PkunZip(u"C:\\a.zip C:\\out"), ExitCode::unsafeName);
    EXPECT_EQ(Unpacked(), 1u);
    EXPECT_EQ(ContentOf(u"C:\\out\\good.txt"), TextBytes(20));
    EXPECT_EQ(console.said.size(), entries.size() - 1);
}

TEST_F(Damage, ASourceThatChangesMeanwhileIsNoBackup) {
    const Bytes content = TextBytes(3 * deflateBlock);
    const std::vector<std::function<void(MemoryNode&)>> changes = {
        [](MemoryNode& node) { node.modified += 1; },
        [](MemoryNode& node) { node.bytes.push_back(1); },
        [](MemoryNode& node) { node.bytes.resize(deflateBlock + 7); },
    };
    for (const auto& change : changes) {
        files.Put(u"C:\\b.qvx", {'o', 'l', 'd'});
        files.Put(u"C:\\in\\a.db", content);
        int reads = 0;
        files.onRead = [&](const Text& path) {
            if (++reads == 2) change(*files.Find(path));
        };
        EXPECT_EQ(PkZip(u"C:\\b.qvx C:\\in\\a.db"), ExitCode::sourceChanged);
        EXPECT_EQ(ContentOf(u"C:\\b.qvx"), (Bytes{'o', 'l', 'd'}));
        EXPECT_EQ(files.Temporaries(), 0u);
    }
}

TEST_F(Damage, StoppedByTheUser) {
    files.Put(u"C:\\in\\a.db", TextBytes(9));
    ASSERT_EQ(PkZip(u"C:\\a.zip C:\\in\\a.db"), ExitCode::done);
    const MemoryDisk before = files.fixed;
    console.isStopped = true;
    EXPECT_EQ(PkZip(u"C:\\a.zip C:\\in\\a.db"), ExitCode::stopped);
    EXPECT_EQ(PkunZip(u"C:\\a.zip C:\\in\\"), ExitCode::stopped);
    EXPECT_TRUE(files.fixed.nodes == before.nodes);
}

// Every change of the disk fails once in each way; the program is killed at every one. What has the final name is the
// whole old file or the whole new one then, and the next run tidies up.
TEST_F(Damage, FailuresAtEveryChangeOfTheDisk) {
    const Bytes old = {'o', 'l', 'd'};
    const Bytes contents[] = {TextBytes(300), TextBytes(2 * deflateBlock + 9), RandomBytes(2 * deflateBlock + 9)};
    const std::optional<ExitCode> ways[] = {ExitCode::diskFull, ExitCode::readWrite, ExitCode::accessDenied,
                                            std::nullopt};
    for (const Bytes& content : contents) {
        files = MemoryFiles();
        files.Put(u"C:\\in\\a.db", content);
        ASSERT_EQ(PkZip(u"C:\\new.qvx C:\\in\\a.db"), ExitCode::done);
        const Bytes archive = ContentOf(u"C:\\new.qvx");
        for (const bool packs : {true, false}) {
            const Text target = packs ? u"C:\\x\\b.qvx" : u"C:\\x\\a.db";
            const Bytes& wanted = packs ? archive : content;
            const auto run = [&] {
                return packs ? PkZip(u"C:\\x\\b.qvx C:\\in\\a.db") : PkunZip(u"C:\\new.qvx C:\\x\\");
            };
            for (const auto& way : ways) {
                ExitCode code = ExitCode::internal;
                for (int change = 1; code != ExitCode::done; ++change) {
                    files.Put(target, old);
                    files.failingChange = change;
                    files.failure = way;
                    files.changes = 0;
                    code = run();
                    EXPECT_EQ(ContentOf(target), code == ExitCode::done ? wanted : old) << change;
                    if (code != ExitCode::done) {
                        EXPECT_EQ(code, way.value_or(ExitCode::stopped)) << change;
                    }
                    if (way) {
                        EXPECT_EQ(files.Temporaries(), 0u) << change;
                    }
                    files.Restart();
                    ASSERT_LT(change, 1000);
                }
                files.failingChange = 3;
                files.failure.reset();
                EXPECT_EQ(run(), ExitCode::stopped);
                EXPECT_EQ(files.Temporaries(), 1u);
                files.Restart();
                EXPECT_EQ(run(), ExitCode::done);
                EXPECT_EQ(files.Temporaries(), 0u);
            }
        }
    }
}

}  // namespace
}  // namespace qvx::archivers
