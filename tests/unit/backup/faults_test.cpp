// Each step of the backup and the restore fails in turn, and the program ends between any two: nothing is lost, nothing
// is left half written under a name that counts, and the next run makes everything good.
#include <gtest/gtest.h>

#include <algorithm>

#include "controls/backup/procedure.h"
#include "controls/backup/set_aside.h"
#include "tests/support/portable/failing_allocation.h"
#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

const std::string live = "db live";
const std::string saved = "db saved";
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
                          {u"C:\\Data\\abc.mdb", "db of another group"},
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

    // Whatever happened.
    void CheckNothingIsLost() const {
        EXPECT_EQ(At(u"C:\\Data\\notes.txt"), "notes");
        EXPECT_EQ(At(u"C:\\Zip\\PkZip.exe"), "MZ");
        const std::string group = At(u"C:\\Data\\abc.mdb");
        const bool mayReplace = scenario_.mode == Mode::restore;
        if (scenario_.mode == Mode::backup) {
            EXPECT_EQ(At(database), live);
            EXPECT_EQ(group, "db of another group");
            const std::string there = At(archive);
            EXPECT_TRUE(there == "(none)" || there.empty() || there == oldArchive || there == newArchive) << there;
            if (scenario_.archiveThere && !scenario_.full && there != oldArchive && there != newArchive) {
                EXPECT_EQ(At(SetAsideName(archive, 1)), oldArchive);
            }
        } else {
            EXPECT_EQ(At(archive), oldArchive);
            EXPECT_TRUE(At(database) == live || (mayReplace && !scenario_.group && At(database) == saved));
            EXPECT_TRUE(group == "db of another group" || (scenario_.group && group == saved)) << group;
        }
    }

    // What is there when the same is done once more without any trouble.
    void CheckEnd() const {
        std::vector<std::string> names;
        for (const auto& [path, bytes] : computer.files) names.push_back(Narrow(path));
        std::vector<std::string> expected{"C:\\Data\\abc.mdb",    Narrow(database),     "C:\\Data\\notes.txt",
                                          "C:\\Zip\\PkunZip.exe", "C:\\Zip\\PkZip.exe", Narrow(archive)};
        std::sort(names.begin(), names.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(names, expected);
        EXPECT_EQ(At(archive), scenario_.mode == Mode::backup ? newArchive : oldArchive);
        const bool replaced = scenario_.mode == Mode::restore;
        EXPECT_EQ(At(database), replaced && !scenario_.group ? saved : live);
        EXPECT_EQ(At(u"C:\\Data\\abc.mdb"), replaced && scenario_.group ? saved : "db of another group");
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

int StepsOf(const Scenario& scenario) {
    Attempt whole(scenario);
    whole.Press();
    return whole.computer.steps;
}

TEST(BackupFaults, EachStepFailing) {
    for (const Scenario& scenario : scenarios) {
        const int steps = StepsOf(scenario);
        ASSERT_GT(steps, 8) << scenario.name;
        for (int step = 1; step <= steps; ++step) {
            Attempt run(scenario);
            run.computer.failAt = step;
            run.Press();
            SCOPED_TRACE(std::string(scenario.name) + ", step " + std::to_string(step) + "\n" + run.computer.Log());
            run.CheckNothingIsLost();
            EXPECT_FALSE(run.computer.files.count(ArrivingName(database))) << "an unfinished copy was left";
            // The old archive is where the user looks for it, or a new one is. Where the archiver has failed already,
            // it may be the bringing back that fails; it then stays where it was set aside.
            if (scenario.mode == Mode::backup && scenario.archiveThere && !scenario.full &&
                scenario.archiver == FakeEnvironment::Archiver::works) {
                EXPECT_TRUE(run.At(archive) == oldArchive || run.At(archive) == newArchive);
            }
            run.Mend();
            run.Press();
            run.computer.files.erase(SetAsideName(archive, 1));  // a step that failed was the removal of the one before
            run.CheckEnd();
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
            run.computer.files.erase(archive + u".old");  // as above
            run.CheckEnd();
            return happened && !testing::Test::HasFailure();
        });
    }
}

TEST(BackupFaults, ProgramEndingBetweenSteps) {
    for (const Scenario& scenario : scenarios) {
        const int steps = StepsOf(scenario);
        for (int step = 1; step <= steps; ++step) {
            Attempt run(scenario);
            run.computer.endAt = step;
            run.Press();
            SCOPED_TRACE(std::string(scenario.name) + ", ended before step " + std::to_string(step) + "\n" +
                         run.computer.Log());
            run.CheckNothingIsLost();
            run.Mend();
            if (scenario.mode == Mode::backup && scenario.archiveThere && !scenario.full) {
                // Opened again, the dialog finds an archive under its name, and it is one that the user may keep.
                run.computer.answer = false;
                run.Press();
                EXPECT_TRUE(run.At(archive) == oldArchive || run.At(archive) == newArchive) << run.At(archive);
                run.computer.answer = true;
            }
            run.Press();
            run.computer.files.erase(SetAsideName(archive, 1));
            // An archiver that outlived the program has left its archive under its short name.
            run.computer.files.erase(u"D:\\Monday~1.qvx");
            run.CheckEnd();
        }
    }
}

}  // namespace
}  // namespace qvx::backup
