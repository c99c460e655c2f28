// Each step of the backup and the restore fails in turn, and the program ends between any two: nothing is lost, nothing
// is left half written under a name that counts, and the next run makes everything good.
#include <gtest/gtest.h>

#include "controls/backup/procedure.h"
#include "controls/backup/set_aside.h"
#include "tests/support/portable/failing_allocation.h"
#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

const std::string live = "db live";
const std::string saved = "db saved";
const std::string otherGroup = "db of another group";
const std::string oldArchive = FakeEnvironment::Packed("Accounts of 2026.mdb", saved);
const std::string newArchive = FakeEnvironment::Packed("Accounts of 2026.mdb", live);
const Text database = u"C:\\Data\\Accounts of 2026.mdb";
const Text archive = u"D:\\Monday's archive.qvx";

struct Scenario {
    const char* name;
    Mode mode;
    bool archiveThere;
    bool security;
    bool group;
    bool shortNames;
    FakeEnvironment::Archiver archiver;
    bool full = false;  // a disk without room for an old archive beside a new one
};

const Scenario scenarios[] = {
    {"first backup", Mode::backup, false, false, false, true, FakeEnvironment::Archiver::works},
    {"backup over an archive", Mode::backup, true, false, false, false, FakeEnvironment::Archiver::works},
    {"backup over an archive, short names", Mode::backup, true, false, false, true, FakeEnvironment::Archiver::works},
    {"backup over an archive, full disk", Mode::backup, true, false, false, false, FakeEnvironment::Archiver::works,
     true},
    {"backup, archiver fails", Mode::backup, true, false, false, false, FakeEnvironment::Archiver::leavesNothing},
    {"restore", Mode::restore, true, false, false, false, FakeEnvironment::Archiver::works},
    {"restore with password", Mode::restore, true, true, false, false, FakeEnvironment::Archiver::works},
    {"restore as a group", Mode::restore, true, false, true, false, FakeEnvironment::Archiver::works},
    {"restore of a damaged archive", Mode::restore, true, false, false, false, FakeEnvironment::Archiver::leavesHalf},
};

class Attempt {
  public:
    explicit Attempt(const Scenario& scenario) : scenario_(scenario) {
        settings_.database = u"Accounts of 2026";
        settings_.checkSecurity = scenario.security;
        computer.files = {{database, live},
                          {u"C:\\Data\\abc.mdb", otherGroup},
                          {u"C:\\Data\\notes.txt", "notes"},
                          {u"C:\\Zip\\PkZip.exe", "MZ"},
                          {u"C:\\Zip\\PkunZip.exe", "MZ"}};
        if (scenario.archiveThere) computer.files[archive] = oldArchive;
        if (scenario.full) {
            computer.removableDrive = u"D:";
            computer.capacity[u"D:"] = 64 * 1024 + oldArchive.size();
        }
        computer.shortNames = scenario.shortNames;
        computer.archiver = scenario.archiver;
        computer.exitCode = scenario.archiver == FakeEnvironment::Archiver::works ? 0 : 12;
    }

    // The program is started (again) and OK pressed.
    void Press() {
        Press([](const auto& run) { run(); });
    }
    // within(run) carries it out.
    template <class Within>
    void Press(Within within) {
        FormState form;
        form.location = archive;
        form.email = scenario_.group;
        form.groupName = u"abc";
        Procedure procedure(computer, computer, settings_, scenario_.mode);
        within([&] { procedure.Run(form); });
        outcome = form.outcome;
    }

    std::string At(const Text& path) const {
        const auto found = computer.files.find(path);
        return found == computer.files.end() ? "(none)" : found->second;
    }

    void CheckArchiveIsInItsPlace() const {
        EXPECT_TRUE(At(archive) == oldArchive || At(archive) == newArchive) << At(archive);
    }
    // Whatever happened.
    void CheckNothingIsLost() const {
        EXPECT_EQ(At(u"C:\\Data\\notes.txt"), "notes");
        EXPECT_EQ(At(u"C:\\Zip\\PkZip.exe"), "MZ");
        const std::string group = At(u"C:\\Data\\abc.mdb");
        if (scenario_.mode == Mode::backup) {
            EXPECT_EQ(At(database), live);
            EXPECT_EQ(group, otherGroup);
            const std::string there = At(archive);
            EXPECT_TRUE(there == "(none)" || there.empty() || there == oldArchive || there == newArchive) << there;
            if (scenario_.archiveThere && !scenario_.full && there != oldArchive && there != newArchive) {
                EXPECT_EQ(At(SetAsideName(archive, 1)), oldArchive);
            }
        } else {
            EXPECT_EQ(At(archive), oldArchive);
            EXPECT_TRUE(At(database) == live || (!scenario_.group && At(database) == saved));
            EXPECT_TRUE(group == otherGroup || (scenario_.group && group == saved)) << group;
        }
    }

    // What is there when the same is done once more without any trouble.
    void CheckEnd() const {
        const bool restored = scenario_.mode == Mode::restore;
        EXPECT_EQ(computer.files, (Files{{u"C:\\Data\\abc.mdb", restored && scenario_.group ? saved : otherGroup},
                                         {database, restored && !scenario_.group ? saved : live},
                                         {u"C:\\Data\\notes.txt", "notes"},
                                         {u"C:\\Zip\\PkZip.exe", "MZ"},
                                         {u"C:\\Zip\\PkunZip.exe", "MZ"},
                                         {archive, restored ? oldArchive : newArchive}}));
        EXPECT_EQ(outcome, u"Completed Successfully.");
    }

    // A computer on which everything works from now on, with the files as they are.
    void Mend() {
        FakeEnvironment mended;
        mended.files = computer.files;
        mended.shortNames = computer.shortNames;
        computer = mended;
    }

    FakeEnvironment computer;
    Text outcome;

  private:
    const Scenario& scenario_;
    Settings settings_ = SampleSettings();
};

// Each step fails in turn, and then the program ends before each one.
TEST(BackupFaults, EachStepFailingOrTheLast) {
    for (const auto trouble : {&FakeEnvironment::failAt, &FakeEnvironment::endAt}) {
        const bool fails = trouble == &FakeEnvironment::failAt;
        for (const Scenario& scenario : scenarios) {
            Attempt whole(scenario);
            whole.Press();
            ASSERT_GT(whole.computer.steps, 8) << scenario.name;
            const bool keepsArchive = scenario.mode == Mode::backup && scenario.archiveThere && !scenario.full;
            for (int step = 1; step <= whole.computer.steps; ++step) {
                Attempt run(scenario);
                run.computer.*trouble = step;
                run.Press();
                SCOPED_TRACE(std::string(scenario.name) + (fails ? " fails in step " : " ends before step ") +
                             std::to_string(step) + "\n" + run.computer.Log());
                run.CheckNothingIsLost();
                EXPECT_FALSE(fails && run.computer.files.count(ArrivingName(database))) << "an unfinished copy is left";
                // Where the archiver has failed already, it may be the bringing back that fails.
                if (fails && keepsArchive && scenario.archiver == FakeEnvironment::Archiver::works) {
                    run.CheckArchiveIsInItsPlace();
                }
                run.Mend();
                if (keepsArchive) {
                    // Opened again, the dialog finds an archive under its name, and it is one that the user may keep.
                    run.computer.answer = false;
                    run.Press();
                    run.CheckArchiveIsInItsPlace();
                    run.computer.answer = true;
                }
                run.Press();
                // An archiver that outlived the program has left its archive under its short name.
                run.computer.files.erase(u"D:\\Monday~1.qvx");
                run.CheckEnd();
            }
        }
    }
}

TEST(BackupFaults, EachAllocationFailing) {
    for (const Scenario& scenario : scenarios) {
        test::ForEachAllocation([&](int passing, test::Starvation starvation) {
            Attempt run(scenario);
            run.computer.log.reserve(200);
            bool happened = false;
            run.Press([&](const auto& whole) {
                const test::FailingAllocation failing(passing, starvation);
                whole();
                happened = failing.Happened();
            });
            SCOPED_TRACE(std::string(scenario.name) + ", allocation " + std::to_string(passing) + "\n" +
                         run.computer.Log());
            run.CheckNothingIsLost();
            run.Mend();
            run.Press();
            run.CheckEnd();
            return happened && !testing::Test::HasFailure();
        });
    }
}

}  // namespace
}  // namespace qvx::backup
