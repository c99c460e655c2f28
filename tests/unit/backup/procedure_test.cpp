// What the dialog's buttons do, step by step and word by word.
#include "controls/backup/procedure.h"

#include <gtest/gtest.h>

#include "controls/backup/set_aside.h"
#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

const char* const live = "db live";
const char* const saved = "db saved";

// The computer, its user and the dialog for one press of a button.
struct Desk {
    Desk() {
        computer.files = {{u"C:\\Data\\Accounts.mdb", live},
                          {u"C:\\Zip\\PkZip.exe", "MZ"},
                          {u"C:\\Zip\\PkunZip.exe", "MZ"},
                          {u"D:\\Ac-1-3.qvx", FakeEnvironment::Packed("Accounts.mdb", saved)}};
        form.location = u"D:\\Ac-1-3.qvx";
    }
    void Run(Mode mode) { Procedure(computer, computer, settings, mode).Run(form); }
    void Put(const Text& path, const char* bytes) { computer.files[path] = bytes; }
    void Remove(const Text& path) { computer.files.erase(path); }
    // A backup of that name that was cut short has set the archive aside.
    void SetArchiveAside() { computer.RenameFile(form.location, u"D:\\Ac-1-3.~previous-5d2e9c41.qvx"); }

    FakeEnvironment computer;
    Settings settings = SampleSettings();
    FormState form;
};

struct Journey {
    const char* name;
    void (*prepare)(Desk&);
    std::string steps;
    const char16_t* tip = u"";  // of the outcome line
};

void ExpectJourneys(Mode mode, const std::vector<Journey>& journeys) {
    for (const Journey& journey : journeys) {
        SCOPED_TRACE(journey.name);
        Desk desk;
        desk.form.outcome = u"of the last time";
        journey.prepare(desk);
        desk.computer.log.clear();
        desk.Run(mode);
        EXPECT_EQ(desk.computer.Log(), "refresh []\n" + journey.steps);
        EXPECT_EQ(Narrow(desk.form.outcomeTip), Narrow(journey.tip));
    }
}

const std::string done = "refresh [Completed Successfully.]\n";
const std::string notDone = "refresh [Not Completed Successfully.]\n";

using Archiver = FakeEnvironment::Archiver;

TEST(BackupProcedure, BacksUp) {
    const std::string asked =
        "message This will overwrite the previous backup files under the directory.|D:\\Ac-1-3.qvx|Continue with "
        "Backup...? (Backup, 2, 7, 0)\n";
    const std::string setAside = asked + "rename D:\\Ac-1-3.qvx > D:\\Ac-1-3.~previous-5d2e9c41.qvx\n";
    const std::string created = "create D:\\Ac-1-3.qvx\ndelete D:\\Ac-1-3.qvx\n";
    const std::string packed = created + "start C:\\Zip\\PkZip.exe D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb\nwait\n";
    const std::string removed = "delete D:\\Ac-1-3.~previous-5d2e9c41.qvx\n";
    const std::string broughtBack = "rename D:\\Ac-1-3.~previous-5d2e9c41.qvx > D:\\Ac-1-3.qvx\n";
    const std::string missing = "error 53 The archiver has left no archive.\n";
    ExpectJourneys(
        Mode::backup,
        {{"the first", [](Desk& d) { d.Remove(u"D:\\Ac-1-3.qvx"); }, packed + done},
         {"refused", [](Desk& d) { d.computer.answer = false; }, asked + notDone},
         {"over an archive", [](Desk&) {}, setAside + packed + removed + done},
         {"over one that a backup cut short has set aside", [](Desk& d) { d.SetArchiveAside(); },
          broughtBack + setAside + packed + removed + done},
         {"on several disks", [](Desk& d) { d.computer.removableDrive = u"D:"; },
          setAside + created + "start C:\\Zip\\PkZip.exe -& D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb\nwait\n" + removed +
              done},
         {"names with blanks",
          [](Desk& d) {
              d.settings.zipPath = u"C:\\Program Files\\";
              d.settings.database = u"My accounts";
              d.Put(u"C:\\Program Files\\PkZip.exe", "MZ");
              d.Put(u"C:\\Data\\My accounts.mdb", live);
          },
          setAside + created +
              "start \"C:\\Program Files\\PkZip.exe\" D:\\Ac-1-3.qvx \"C:\\Data\\My accounts.mdb\"\nwait\n" + removed +
              done},
         {"short names, of which the archive's becomes its long one",
          [](Desk& d) {
              d.computer.shortNames = true;
              d.settings.database = u"Accounts of 2026";
              d.form.location = u"D:\\Accounts of Monday.qvx";
              d.Put(u"C:\\Data\\Accounts of 2026.mdb", live);
          },
          "create D:\\Accounts of Monday.qvx\ndelete D:\\Accounts of Monday.qvx\n"
          "start C:\\Zip\\PkZip.exe D:\\Accoun~1.qvx C:\\Data\\Accoun~1.mdb\nwait\n"
          "rename D:\\Accoun~1.qvx > D:\\Accounts of Monday.qvx\n" +
              done},
         {"no archiver, whatever the message has of the database's name",
          [](Desk& d) {
              d.settings.database = u"File";
              d.Put(u"C:\\Data\\File.mdb", live);
              d.Remove(u"C:\\Zip\\PkZip.exe");
          },
          asked + "error 53 File not found\n" + notDone},
         // What was started counts, but nobody is left to believe in an archive that is not there.
         {"nothing written", [](Desk& d) { d.computer.archiver = Archiver::leavesNothing, d.computer.exitCode = 12; },
          setAside + packed + broughtBack + done + missing,
          u"The archiver ended with exit code 12. The previous archive is back in its place."},
         {"nothing written, and no word of it", [](Desk& d) { d.computer.archiver = Archiver::leavesNothing; },
          setAside + packed + broughtBack + done + missing, u"The previous archive is back in its place."},
         {"half written", [](Desk& d) { d.computer.archiver = Archiver::leavesHalf, d.computer.exitCode = 12; },
          setAside + packed + done, u"The archiver ended with exit code 12. The previous archive is kept beside it."},
         {"mailed", [](Desk& d) { d.form.email = true; },
          setAside + packed + removed + "mail Database D:\\Ac-1-3.qvx as D:\\Ac-1-3.qvx\n" + done},
         {"mail that fails", [](Desk& d) { d.form.email = true, d.computer.mailError = u"There is no mail program."; },
          setAside + packed + removed + "mail Database D:\\Ac-1-3.qvx as D:\\Ac-1-3.qvx\n" +
              "message Could n't e-mail your database.|There is no mail program. (Backup, 1, 8, 0)\n" + done},
         {"mail that fails in words that give away too much",
          [](Desk& d) { d.form.email = true, d.computer.mailError = u"Cannot read C:\\Data\\Accounts.mdb"; },
          setAside + packed + removed + "mail Database D:\\Ac-1-3.qvx as D:\\Ac-1-3.qvx\n" +
              "message Could n't e-mail your database.| (Backup, 1, 8, 0)\n" + done},
         {"no archive to mail, since an old one is no copy of this backup",
          [](Desk& d) { d.form.email = true, d.computer.archiver = Archiver::leavesNothing; },
          setAside + packed + broughtBack +
              "message Could n't e-mail your database.|File not found (Backup, 1, 8, 0)\n" + done + missing,
          u"The previous archive is back in its place."}});
}

TEST(BackupProcedure, Restores) {
    const std::string created = "create C:\\Temp\\x\ndelete C:\\Temp\\x\n";
    const std::string unpacked = created + "start C:\\Zip\\PkunZip.exe D:\\Ac-1-3.qvx C:\\Temp\\\nwait\n";
    const std::string unpackedAside =
        created + "start C:\\Zip\\PkunZip.exe D:\\Ac-1-3.~previous-5d2e9c41.qvx C:\\Temp\\\nwait\n";
    const std::string replaced = "replace C:\\Temp\\Accounts.mdb > C:\\Data\\Accounts.mdb\n";
    const std::string emptied = "delete all C:\\Temp\\\n";
    const std::string prompted = "prompt file=C:\\Data\\Accounts.mdb\nrefresh []\n";
    const std::string damaged = "message Could not restore data. File may be correpted. (Restore, 1, 8, 2000)\n";
    const std::string notFound = "error 76 Path not found\n";
    const std::string folderOfItsOwn =
        "error 75 The working folder must be one of its own, since every file in it is deleted.\n";
    const char16_t* const cutShort = u"A backup to this place was cut short; the archive before it was taken.";
    ExpectJourneys(
        Mode::restore,
        {{"over the database", [](Desk& d) { d.Put(u"C:\\Temp\\leftover.txt", "x"); },
          emptied + unpacked + replaced + emptied + done},
         {"with its password", [](Desk& d) { d.settings.checkSecurity = true; },
          unpacked + prompted + replaced + "close prompt\n" + emptied + done},
         {"with another password", [](Desk& d) { d.settings.checkSecurity = true, d.computer.password = false; },
          unpacked + prompted + "close prompt\n" + notDone},
         {"where there is no database to guard",
          [](Desk& d) { d.settings.checkSecurity = true, d.Remove(u"C:\\Data\\Accounts.mdb"); },
          unpacked + replaced + emptied + done},
         {"over what is no database",
          [](Desk& d) { d.settings.checkSecurity = true, d.Put(u"C:\\Data\\Accounts.mdb", "broken"); },
          unpacked + replaced + emptied + done},
         {"as a group", [](Desk& d) { d.form.email = d.settings.checkSecurity = true, d.form.groupName = u" a/b:c "; },
          unpacked + "replace C:\\Temp\\Accounts.mdb > C:\\Data\\abc.mdb\n" + emptied + done},
         {"as a group without a name", [](Desk& d) { d.form.email = true, d.form.groupName = u" /:* "; },
          unpacked + "replace C:\\Temp\\Accounts.mdb > C:\\Data\\rad12345.mdb\n" + emptied + done},
         {"what a backup cut short has set aside", [](Desk& d) { d.SetArchiveAside(); },
          unpackedAside + replaced + emptied + done, cutShort},
         {"the same beside an empty archive", [](Desk& d) { d.SetArchiveAside(), d.Put(u"D:\\Ac-1-3.qvx", ""); },
          unpackedAside + replaced + emptied + done, cutShort},
         {"the same beside a damaged one", [](Desk& d) { d.SetArchiveAside(), d.Put(u"D:\\Ac-1-3.qvx", "zip|A"); },
          unpacked + damaged + notDone},
         {"no such archive", [](Desk& d) { d.form.location = u"D:\\none.qvx"; },
          "message No Backup files found under this directory.|D:\\none.qvx (Restore, 1, 6, 3000)\n" + notDone},
         {"no archiver", [](Desk& d) { d.Remove(u"C:\\Zip\\PkunZip.exe"); },
          created + "error 53 File not found\n" + notDone},
         {"an archiver that fails",
          [](Desk& d) { d.computer.archiver = Archiver::leavesNothing, d.computer.exitCode = 12; },
          unpacked + damaged + notDone, u"The archiver ended with exit code 12."},
         {"a file that does not open", [](Desk& d) { d.computer.archiver = Archiver::leavesHalf; },
          unpacked + damaged + notDone},
         {"a file with another extension", [](Desk& d) { d.settings.dataExtension = u".db"; },
          unpacked + damaged + notDone},
         {"a name that does more than to name a file",
          [](Desk& d) { d.computer.files[d.form.location] = FakeEnvironment::Packed("x;Mode=Write.mdb", saved); },
          unpacked + "error 52 The database in the archive has a name that cannot be opened safely.\n" + notDone},
         {"no working folder", [](Desk& d) { d.settings.tempPath = u""; }, notFound + notDone},
         {"a working folder without separator", [](Desk& d) { d.settings.tempPath = u"C:\\Temp"; }, notFound + notDone},
         {"data in the working folder", [](Desk& d) { d.settings.tempPath = u"c:\\data\\"; }, folderOfItsOwn + notDone},
         {"archive in the working folder", [](Desk& d) { d.settings.tempPath = u"D:\\"; }, folderOfItsOwn + notDone},
         {"archivers in the working folder", [](Desk& d) { d.settings.tempPath = u"C:\\Zip\\"; },
          folderOfItsOwn + notDone},
         {"data in the current folder, which is the working folder",
          [](Desk& d) { d.settings.dataPath = u"", d.settings.tempPath = u".\\"; }, folderOfItsOwn + notDone},
         {"names that begin in the working folder", [](Desk& d) { d.settings.dataPath = u"C:\\Temp\\My "; },
          folderOfItsOwn + notDone}});
}

// What is in the drive when a disk has been changed is another disk's, whatever it is called.
TEST(BackupProcedure, DisksThatFillAndChange) {
    const std::string database = "db " + std::string(100'000, 'x');
    const std::string packed = FakeEnvironment::Packed("Accounts.mdb", database);
    const std::string old(150'000, 'o');
    const Text archive = u"A:\\Ac-1-3.qvx";
    const Text aside = SetAsideName(archive, 1);
    const char* const completed = "Completed Successfully.";
    struct {
        const char* name;
        std::function<void(FakeEnvironment&)> change;
        const char* outcome;
        std::string archive;  // of the disk that was in the drive first; "(none)"
        std::string aside;
        const char* said;  // of errors
    } const cases[] = {
        {"room for both", [](auto&) {}, completed, packed, "(none)", ""},
        {"full", [](auto& c) { c.files[u"A:\\photos"] = std::string(350'000, 'p'); }, completed, packed, "(none)", ""},
        {"full, over two disks",
         [](auto& c) { c.capacity[u"A:"] = 160'000, c.files[u"A:\\x"] = std::string(90'000, 'x'); }, completed,
         packed.substr(0, 70'000), "(none)", ""},
        {"so full that nothing is gained",
         [&](auto& c) { c.files[archive] = "old", c.files[u"A:\\photos"] = std::string(499'000, 'p'); },
         "Not Completed Successfully.", "old", "(none)", "error 61 Disk full\n"},
        {"changed at the end", [](auto& c) { c.swapsWhenDone = true; }, completed, packed, old, ""},
        {"pulled at the end", [](auto& c) { c.pulledWhenDone = true; }, completed, packed, old, ""},
        {"pulled, and the archiver failed", [](auto& c) { c.pulledWhenDone = true, c.exitCode = 9; }, completed, packed,
         old, "error 68 Device unavailable\n"},
        {"changed for one with such an archive",
         [&](auto& c) {
             c.swapsWhenDone = true, c.nextDisk = {{archive, "another"}, {aside, "its own"}};
         },
         completed, packed, old, ""},
        {"changed, and the archiver failed",
         [](auto& c) { c.swapsWhenDone = true, c.archiver = Archiver::leavesNothing, c.exitCode = 9; }, completed,
         "(none)", old, "error 53 The archiver has left no archive.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Desk desk;
        FakeEnvironment& computer = desk.computer;
        computer.files[u"C:\\Data\\Accounts.mdb"] = database;
        computer.files[archive] = old;
        computer.removableDrive = u"A:";
        computer.capacity[u"A:"] = 500'000;
        c.change(computer);
        desk.form.location = archive;
        desk.Run(Mode::backup);
        SCOPED_TRACE(computer.Log());
        EXPECT_EQ(Narrow(desk.form.outcome), c.outcome);
        std::string said;
        for (const std::string& line : computer.log) said += line.starts_with("error") ? line + "\n" : "";
        EXPECT_EQ(said, c.said);
        const Files& first = computer.disksTakenOut.empty() ? computer.files : computer.disksTakenOut[0];
        const auto at = [&](const Text& path) { return first.count(path) ? first.at(path) : "(none)"; };
        EXPECT_TRUE(at(archive) == c.archive) << at(archive).substr(0, 20);
        EXPECT_TRUE(at(aside) == c.aside) << at(aside).substr(0, 20);
        for (const auto& [path, bytes] : computer.nextDisk) EXPECT_EQ(computer.files.at(path), bytes);
        if (computer.disksTakenOut.empty()) continue;
        // With the first disk back, another backup leaves one archive, the new one.
        computer.files.erase(archive);
        for (const auto& [path, bytes] : first) computer.files[path] = bytes;
        computer.swapsWhenDone = computer.pulledWhenDone = false;
        computer.archiver = Archiver::works;
        computer.exitCode = 0;
        computer.capacity.clear();
        desk.Run(Mode::backup);
        EXPECT_TRUE(computer.files.at(archive) == packed);
        EXPECT_EQ(computer.files.count(aside), 0U);
    }
}

TEST(BackupProcedure, WhatCannotBeRemovedAfterwardsDoesNotUndoABackup) {
    Desk desk;
    desk.computer.logLooks = true;
    desk.Run(Mode::backup);
    const auto& log = desk.computer.log;
    const auto removal = std::find(log.begin(), log.end(), "delete D:\\Ac-1-3.~previous-5d2e9c41.qvx") - log.begin();
    desk.computer.steps = 0;
    desk.computer.failAt = static_cast<int>(removal) + 1;
    desk.Run(Mode::backup);
    EXPECT_EQ(desk.form.outcome, u"Completed Successfully.");
    EXPECT_EQ(desk.form.outcomeTip, u"The previous archive is kept beside it.");
    EXPECT_EQ(desk.computer.Log().find("error"), std::string::npos) << desk.computer.Log();
}

TEST(BackupProcedure, BrowsesForALocation) {
    const std::string folder = "browse Select a location\n";
    const std::string file = "open Restore Database From\n";
    const std::string drive = "change drive C:\\Data\\\n";
    const struct {
        Mode mode;
        const char16_t* picked;
        const char16_t* location;
        std::string steps;
    } cases[] = {
        {Mode::backup, u"D:\\Copies", u"D:\\Copies\\Ac-1-3.qvx", folder},
        {Mode::backup, u"A:\\", u"A:\\Ac-1-3.qvx", folder + drive},
        {Mode::backup, u"", u"", folder},
        {Mode::restore, u"A:\\x.qvx", u"A:\\x.qvx", file + drive},
        {Mode::restore, u"", u"", file},
    };
    for (const auto& c : cases) {
        Desk desk;
        desk.computer.removableDrive = u"A:";
        desk.computer.pickedFolder = desk.computer.pickedFile = c.picked;
        desk.form.outcome = desk.form.outcomeTip = u"of the last time";
        Procedure(desk.computer, desk.computer, desk.settings, c.mode).Browse(desk.form);
        EXPECT_EQ(desk.computer.Log(), "refresh []\n" + c.steps + "refresh []\n");
        EXPECT_EQ(desk.form.location, c.location);
        EXPECT_EQ(desk.form.outcome + desk.form.outcomeTip, u"");
        // OK does the same where there is no location, and stops when there is none then.
        desk.form.location = u"  ";
        desk.Run(c.mode);
        EXPECT_EQ(desk.form.location, c.location);
        EXPECT_EQ(desk.form.outcome.empty(), desk.form.location.empty());
    }
}

}  // namespace
}  // namespace qvx::backup
