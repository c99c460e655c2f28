// The two programs without memory: each allocation of a run fails once, alone and with all behind it.
#include "tests/support/portable/failing_allocation.h"
#include "tests/unit/archivers/archive_fixture.h"

namespace qvx::archivers {
namespace {

struct Job {
    const char* name;
    Program program;
    TextView arguments;
    unsigned threads = 1;
};

constexpr std::size_t diskSize = std::size_t{32} * 1024 + 20'000;

class ArchiverAllocations : public ArchiveTest {
  protected:
    void SetUp() override {
        files.Put(u"C:\\in\\a file with a long name", TextBytes(300));
        files.Put(u"C:\\large", RandomBytes(deflateBlock + 9));
        files.Put(u"C:\\in\\\u0416", RandomBytes(30'000, 2));
        files.Put(u"C:\\a.zip", {'o', 'l', 'd'});
        files.Put(u"C:\\out\\\u0416", {'o', 'l', 'd'});
        files.disks.resize(3);
        for (MemoryDisk& disk : files.disks) disk.capacity = diskSize;
        ASSERT_EQ(PkZip(u"C:\\whole.zip C:\\in\\*"), ExitCode::done);
        ASSERT_EQ(PkZip(u"-s16k C:\\parts.zip C:\\in\\\u0416"), ExitCode::done);
    }

    // The next disk at each question.
    ExitCode Run(const Job& job) {
        console = ScriptedConsole();
        console.answers.assign(2, [this] { ++files.inserted; });
        const Text line = u"x.exe " + Text(job.arguments);
        const test::FailingAllocation failing(passing, starvation);
        const ExitCode code = RunProgram(job.program, line, files, console, job.threads);
        happened = failing.Happened();
        return code;
    }

    // What the disk holds of a run that has not come to its end: of every file all or nothing.
    static void ExpectWholeFiles(const MemoryDisk& disk, const MemoryDisk& before, const MemoryDisk& after) {
        for (const auto& [path, node] : disk.nodes) {
            const auto isIn = [&](const MemoryDisk& other) {
                return other.nodes.contains(path) && other.nodes.at(path) == node;
            };
            EXPECT_TRUE(isIn(before) || isIn(after)) << testing::PrintToString(path);
        }
        for (const auto& [path, node] : before.nodes) EXPECT_TRUE(disk.nodes.contains(path));
    }

    int passing = -1;
    test::Starvation starvation = test::Starvation::once;
    bool happened = false;
};

TEST_F(ArchiverAllocations, LeaveWholeFilesAndHaveTheirExitCode) {
    const MemoryFiles before = files;
    for (const Job& job : {Job{"packing", Program::pack, u"C:\\a.zip C:\\in\\*"},
                           {"packing on several threads", Program::pack, u"C:\\a.zip C:\\large", 3},
                           {"packing into parts", Program::pack, u"-s16k C:\\a.zip C:\\in\\\u0416"},
                           {"packing on disks", Program::pack, u"-& A:\\a.zip C:\\in\\\u0416"},
                           {"packing what is not there", Program::pack, u"C:\\a.zip C:\\in\\none"},
                           {"packing nothing", Program::pack, u"-? C:\\a.zip"},
                           {"misuse", Program::pack, u"-misused"},
                           {"unpacking", Program::unpack, u"C:\\whole.zip C:\\out"},
                           {"unpacking parts", Program::unpack, u"C:\\parts.zip C:\\new\\folder"},
                           {"unpacking what is no archive", Program::unpack, u"C:\\a.zip C:\\out"}}) {
        files = before;
        passing = -1;
        const ExitCode whole = Run(job);
        const MemoryFiles after = files;
        test::ForEachAllocation([&](int allocation, test::Starvation how) {
            SCOPED_TRACE(std::string(job.name) + ", allocation " + std::to_string(allocation) +
                         (how == test::Starvation::once ? " alone" : " and all behind it"));
            files = before;
            passing = allocation;
            starvation = how;
            const ExitCode code = Run(job);
            if (code == whole) {
                EXPECT_TRUE(files.fixed.nodes == after.fixed.nodes);
                EXPECT_TRUE(files.disks[files.inserted].nodes == after.disks[files.inserted].nodes);
            } else {
                EXPECT_EQ(code, ExitCode::outOfMemory);
                ExpectWholeFiles(files.fixed, before.fixed, after.fixed);
                // Without any memory the part cannot be looked for.
                EXPECT_TRUE(how == test::Starvation::forGood || files.disks[files.inserted].nodes.empty());
            }
            EXPECT_EQ(files.Temporaries(), 0U);
            return happened && !HasFailure();
        });
    }
}

}  // namespace
}  // namespace qvx::archivers
