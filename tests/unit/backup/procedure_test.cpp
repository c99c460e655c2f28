// What the dialog's buttons do, step by step and word by word.
#include "controls/backup/procedure.h"

#include <gtest/gtest.h>

#include "controls/backup/set_aside.h"
#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

const char* const live = "db live";
const char* const saved = "db saved";

class BackupProcedure : public ::testing::Test {
  protected:
    BackupProcedure() {
        computer_.files = {{u"C:\\Data\\Accounts.mdb", live},
                           {u"C:\\Zip\\PkZip.exe", "MZ"},
                           {u"C:\\Zip\\PkunZip.exe", "MZ"},
                           {u"D:\\Ac-1-3.qvx", FakeEnvironment::Packed("Accounts.mdb", saved)}};
        form_.location = u"D:\\Ac-1-3.qvx";
    }
    std::string Run(Mode mode) {
        computer_.log.clear();
        Procedure(computer_, computer_, settings_, mode).Run(form_);
        return computer_.Log();
    }
    std::string Browse(Mode mode) {
        computer_.log.clear();
        Procedure(computer_, computer_, settings_, mode).Browse(form_);
        return computer_.Log();
    }
    std::string File(const Text& path) const {
        const auto found = computer_.files.find(path);
        return found == computer_.files.end() ? "(none)" : found->second;
    }

    FakeEnvironment computer_;
    Settings settings_ = SampleSettings();
    FormState form_;
};

TEST_F(BackupProcedure, BacksUpInThisOrder) {
    computer_.files.erase(form_.location);
    EXPECT_EQ(Run(Mode::backup),
              "refresh []\n"
              "create D:\\Ac-1-3.qvx\n"
              "delete D:\\Ac-1-3.qvx\n"
              "start C:\\Zip\\PkZip.exe D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb\n"
              "wait\n"
              "refresh [Completed Successfully.]\n");
    EXPECT_EQ(File(u"D:\\Ac-1-3.qvx"), FakeEnvironment::Packed("Accounts.mdb", live));
}

TEST_F(BackupProcedure, AsksBeforeItWritesOverAnArchive) {
    computer_.answer = false;
    const auto before = computer_.files;
    EXPECT_EQ(Run(Mode::backup),
              "refresh []\n"
              "message This will overwrite the previous backup files under the directory.|D:\\Ac-1-3.qvx|Continue with "
              "Backup...? (Backup, 2, 7, 0)\n"
              "refresh [Not Completed Successfully.]\n");
    EXPECT_EQ(computer_.files, before);

    computer_.answer = true;
    EXPECT_EQ(Run(Mode::backup),
              "refresh []\n"
              "message This will overwrite the previous backup files under the directory.|D:\\Ac-1-3.qvx|Continue with "
              "Backup...? (Backup, 2, 7, 0)\n"
              "rename D:\\Ac-1-3.qvx > D:\\Ac-1-3.~previous-5d2e9c41.qvx\n"
              "create D:\\Ac-1-3.qvx\n"
              "delete D:\\Ac-1-3.qvx\n"
              "start C:\\Zip\\PkZip.exe D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb\n"
              "wait\n"
              "delete D:\\Ac-1-3.~previous-5d2e9c41.qvx\n"
              "refresh [Completed Successfully.]\n");
    EXPECT_EQ(File(u"D:\\Ac-1-3.qvx"), FakeEnvironment::Packed("Accounts.mdb", live));
    EXPECT_EQ(computer_.files.size(), before.size());
}

TEST_F(BackupProcedure, CommandLines) {
    struct {
        const char* name;
        std::function<void(FakeEnvironment&, Settings&)> change;
        const char* command;
    } const cases[] = {
        {"several disks", [](auto& computer, auto&) { computer.removableDrive = u"D:"; },
         "start C:\\Zip\\PkZip.exe -& D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb"},
        {"blanks where there are no short names",
         [](auto& computer, auto& settings) {
             settings.zipPath = u"C:\\Program Files\\";
             settings.database = u"My accounts";
             computer.files[u"C:\\Program Files\\PkZip.exe"] = "MZ";
             computer.files[u"C:\\Data\\My accounts.mdb"] = live;
         },
         "start \"C:\\Program Files\\PkZip.exe\" D:\\Ac-1-3.qvx \"C:\\Data\\My accounts.mdb\""},
        {"short names",
         [](auto& computer, auto& settings) {
             computer.shortNames = true;
             settings.database = u"Accounts of 2026";
             computer.files[u"C:\\Data\\Accounts of 2026.mdb"] = live;
         },
         "start C:\\Zip\\PkZip.exe D:\\Ac-1-3.qvx C:\\Data\\Accoun~1.mdb"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeEnvironment computer;
        computer.files = computer_.files;
        Settings settings = settings_;
        c.change(computer, settings);
        FormState form = form_;
        Procedure(computer, computer, settings, Mode::backup).Run(form);
        EXPECT_EQ(form.outcome, u"Completed Successfully.");
        EXPECT_NE(std::find(computer.log.begin(), computer.log.end(), c.command), computer.log.end()) << computer.Log();
    }
}

TEST_F(BackupProcedure, ArchiveGetsItsLongNameBack) {
    computer_.shortNames = true;
    form_.location = u"D:\\Accounts of Monday.qvx";
    Run(Mode::backup);
    EXPECT_EQ(File(u"D:\\Accounts of Monday.qvx"), FakeEnvironment::Packed("Accounts.mdb", live));
    EXPECT_EQ(File(u"D:\\Accoun~1.qvx"), "(none)");
}

TEST_F(BackupProcedure, ArchiversThatFail) {
    const std::string old = File(form_.location);
    struct {
        const char* name;
        FakeEnvironment::Archiver archiver;
        std::uint32_t code;
        const char16_t* tip;
        std::string left;
        std::string aside;
        bool missing;
    } const cases[] = {
        {"nothing written", FakeEnvironment::Archiver::leavesNothing, 12,
         u"The archiver ended with exit code 12. The previous archive is back in its place.", old, "(none)", true},
        {"nothing written, no word of it", FakeEnvironment::Archiver::leavesNothing, 0,
         u"The previous archive is back in its place.", old, "(none)", true},
        {"half written", FakeEnvironment::Archiver::leavesHalf, 12,
         u"The archiver ended with exit code 12. The previous archive is kept beside it.", "zip|A", old, false},
        {"a warning", FakeEnvironment::Archiver::works, 1,
         u"The archiver ended with exit code 1. The previous archive is kept beside it.",
         FakeEnvironment::Packed("Accounts.mdb", live), old, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        computer_.files.erase(SetAsideName(form_.location, 1));
        computer_.files[form_.location] = old;
        computer_.archiver = c.archiver;
        computer_.exitCode = c.code;
        const std::string log = Run(Mode::backup);
        // What was started counts, but nobody is left to believe in an archive that is not there.
        EXPECT_EQ(form_.outcome, u"Completed Successfully.");
        EXPECT_EQ(log.ends_with("refresh [Completed Successfully.]\nerror 53 The archiver has left no archive.\n"),
                  c.missing)
            << log;
        EXPECT_EQ(form_.outcomeTip, c.tip);
        EXPECT_EQ(File(form_.location), c.left);
        EXPECT_EQ(File(SetAsideName(form_.location, 1)), c.aside);
    }
}

// The user's own files, whatever they are called, are no leftovers of a backup's or a restore's.
TEST_F(BackupProcedure, LeavesTheUsersOwnFilesAlone) {
    const Files own{{u"D:\\Ac-1-3.qvx.old", "old letters"},
                    {u"D:\\Ac-1-3.old.qvx", "older letters"},
                    {u"C:\\Data\\Accounts.mdb.new", "new letters"}};
    for (const bool archiveThere : {false, true}) {
        for (const Mode mode : {Mode::backup, Mode::restore}) {
            computer_.files.insert(own.begin(), own.end());
            if (!archiveThere && mode == Mode::backup) computer_.files.erase(form_.location);
            Run(mode);
            EXPECT_EQ(form_.outcome, u"Completed Successfully.");
            for (const auto& [path, bytes] : own) EXPECT_EQ(File(path), bytes);
        }
    }
}

// A backup that was cut short has set the old archive aside and written none, or but begun with one.
TEST_F(BackupProcedure, RestoresWhatAnInterruptedBackupSetAside) {
    const std::string old = File(form_.location);
    struct {
        const char* name;
        const char* archive;  // null for none
        const char* log;
        const char16_t* outcome;
    } const cases[] = {
        {"none yet", nullptr, "short D:\\Ac-1-3.~previous-5d2e9c41.qvx\n", u"Completed Successfully."},
        {"an empty one", "", "short D:\\Ac-1-3.~previous-5d2e9c41.qvx\n", u"Completed Successfully."},
        {"a damaged one", "zip|A", "short D:\\Ac-1-3.qvx\n", u"Not Completed Successfully."},
    };
    computer_.logLooks = true;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        computer_.files.erase(form_.location);
        if (c.archive) computer_.files[form_.location] = c.archive;
        computer_.files[SetAsideName(form_.location, 1)] = old;
        const std::string log = Run(Mode::restore);
        EXPECT_NE(log.find(c.log), std::string::npos) << log;
        EXPECT_EQ(form_.outcome, c.outcome);
        EXPECT_EQ(File(SetAsideName(form_.location, 1)), old);
    }
}

// What is in the drive when a disk has been changed is another disk's, whatever it is called.
TEST_F(BackupProcedure, DisksThatFillAndChange) {
    const std::string database = "db " + std::string(100'000, 'x');
    const std::string packed = FakeEnvironment::Packed("Accounts.mdb", database);
    const std::string old(150'000, 'o');
    const Text archive = u"A:\\Ac-1-3.qvx";
    const Text aside = SetAsideName(archive, 1);
    const char* const done = "Completed Successfully.";
    struct {
        const char* name;
        std::function<void(FakeEnvironment&)> change;
        const char* outcome;
        std::string archive;  // of the disk that was in the drive first; "(none)"
        std::string aside;
        const char* said;  // of errors
    } const cases[] = {
        {"room for both", [](auto&) {}, done, packed, "(none)", ""},
        {"full", [](auto& c) { c.files[u"A:\\photos"] = std::string(350'000, 'p'); }, done, packed, "(none)", ""},
        {"full, over two disks",
         [](auto& c) { c.capacity[u"A:"] = 160'000, c.files[u"A:\\x"] = std::string(90'000, 'x'); }, done,
         packed.substr(0, 70'000), "(none)", ""},
        {"so full that nothing is gained",
         [&](auto& c) { c.files[archive] = "old", c.files[u"A:\\photos"] = std::string(499'000, 'p'); },
         "Not Completed Successfully.", "old", "(none)", "error 61 Disk full\n"},
        {"changed at the end", [](auto& c) { c.swapsWhenDone = true; }, done, packed, old, ""},
        {"pulled at the end", [](auto& c) { c.pulledWhenDone = true; }, done, packed, old, ""},
        {"pulled, and the archiver failed", [](auto& c) { c.pulledWhenDone = true, c.exitCode = 9; }, done, packed, old,
         "error 68 Device unavailable\n"},
        {"changed for one with such an archive",
         [&](auto& c) {
             c.swapsWhenDone = true, c.nextDisk = {{archive, "another"}, {aside, "its own"}};
         },
         done, packed, old, ""},
        {"changed, and the archiver failed",
         [](auto& c) { c.swapsWhenDone = true, c.archiver = FakeEnvironment::Archiver::leavesNothing, c.exitCode = 9; },
         done, "(none)", old, "error 53 The archiver has left no archive.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeEnvironment computer;
        computer.files = computer_.files;
        computer.files[u"C:\\Data\\Accounts.mdb"] = database;
        computer.files[archive] = old;
        computer.removableDrive = u"A:";
        computer.capacity[u"A:"] = 500'000;
        c.change(computer);
        FormState form;
        form.location = archive;
        Procedure(computer, computer, settings_, Mode::backup).Run(form);
        SCOPED_TRACE(computer.Log());
        EXPECT_EQ(Narrow(form.outcome), c.outcome);
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
        computer.archiver = FakeEnvironment::Archiver::works;
        computer.exitCode = 0;
        computer.capacity.clear();
        Procedure(computer, computer, settings_, Mode::backup).Run(form);
        EXPECT_TRUE(computer.files.at(archive) == packed);
        EXPECT_EQ(computer.files.count(aside), 0U);
    }
}

TEST_F(BackupProcedure, WhatCannotBeRemovedAfterwardsDoesNotUndoABackup) {
    computer_.logLooks = true;
    Run(Mode::backup);
    const auto removal =
        std::find(computer_.log.begin(), computer_.log.end(), "delete D:\\Ac-1-3.~previous-5d2e9c41.qvx") -
        computer_.log.begin();
    computer_.steps = 0;
    computer_.failAt = static_cast<int>(removal) + 1;
    const std::string log = Run(Mode::backup);
    EXPECT_EQ(form_.outcome, u"Completed Successfully.");
    EXPECT_EQ(form_.outcomeTip, u"The previous archive is kept beside it.");
    EXPECT_EQ(log.find("error"), std::string::npos) << log;
}

TEST_F(BackupProcedure, MissingArchivers) {
    settings_.database = u"File";  // as the message has it, too
    computer_.files[u"C:\\Data\\File.mdb"] = live;
    const auto before = computer_.files;
    for (const Mode mode : {Mode::backup, Mode::restore}) {
        computer_.files = before;
        computer_.files.erase(u"C:\\Zip\\PkZip.exe");
        computer_.files.erase(u"C:\\Zip\\PkunZip.exe");
        const auto files = computer_.files;
        const std::string log = Run(mode);
        EXPECT_NE(log.find("error 53 File not found\n"), std::string::npos) << log;
        EXPECT_EQ(form_.outcome, u"Not Completed Successfully.");
        EXPECT_EQ(computer_.files, files);
    }
}

TEST_F(BackupProcedure, MailsTheArchive) {
    form_.email = true;
    std::string log = Run(Mode::backup);
    EXPECT_NE(
        log.find("wait\ndelete D:\\Ac-1-3.~previous-5d2e9c41.qvx\nmail Database D:\\Ac-1-3.qvx as D:\\Ac-1-3.qvx\n"
                 "refresh [Completed Successfully.]\n"),
        std::string::npos)
        << log;
    struct {
        const char16_t* error;
        const char* message;
    } const cases[] = {
        {u"There is no mail program.",
         "message Could n't e-mail your database.|There is no mail program. (Backup, 1, 8, 0)\n"},
        {u"Cannot read C:\\Data\\Accounts.mdb", "message Could n't e-mail your database.| (Backup, 1, 8, 0)\n"},
    };
    for (const auto& c : cases) {
        computer_.mailError = c.error;
        log = Run(Mode::backup);
        EXPECT_NE(log.find(c.message), std::string::npos) << log;
        EXPECT_EQ(form_.outcome, u"Completed Successfully.");
    }
    computer_.mailError.clear();
    computer_.archiver = FakeEnvironment::Archiver::leavesNothing;
    log = Run(Mode::backup);
    EXPECT_EQ(log.find("mail Database"), std::string::npos) << "an old archive is no copy of this backup";
    EXPECT_NE(log.find("message Could n't e-mail your database.|File not found"), std::string::npos) << log;
}

TEST_F(BackupProcedure, RestoresInThisOrder) {
    computer_.files[u"C:\\Temp\\leftover.txt"] = "x";
    EXPECT_EQ(Run(Mode::restore),
              "refresh []\n"
              "delete all C:\\Temp\\\n"
              "create C:\\Temp\\x\n"
              "delete C:\\Temp\\x\n"
              "start C:\\Zip\\PkunZip.exe D:\\Ac-1-3.qvx C:\\Temp\\\n"
              "wait\n"
              "replace C:\\Temp\\Accounts.mdb > C:\\Data\\Accounts.mdb\n"
              "delete all C:\\Temp\\\n"
              "refresh [Completed Successfully.]\n");
    EXPECT_EQ(File(u"C:\\Data\\Accounts.mdb"), saved);
    EXPECT_EQ(computer_.files.size(), 4U);
}

TEST_F(BackupProcedure, PasswordGuardsAnExistingDatabase) {
    settings_.checkSecurity = true;
    struct {
        const char* name;
        const char* existing;  // null for none
        bool password;
        bool asked;
        const char* after;
        const char16_t* outcome;
    } const cases[] = {
        {"accepted", live, true, true, saved, u"Completed Successfully."},
        {"refused", live, false, true, live, u"Not Completed Successfully."},
        {"nothing there", nullptr, false, false, saved, u"Completed Successfully."},
        {"not a database", "broken", false, false, saved, u"Completed Successfully."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        computer_.files.erase(u"C:\\Data\\Accounts.mdb");
        if (c.existing) computer_.files[u"C:\\Data\\Accounts.mdb"] = c.existing;
        computer_.password = c.password;
        const std::string log = Run(Mode::restore);
        EXPECT_EQ(log.find("prompt file=C:\\Data\\Accounts.mdb\nrefresh []\n") != std::string::npos, c.asked) << log;
        EXPECT_EQ(log.find("close prompt\n") != std::string::npos, c.asked);
        EXPECT_EQ(File(u"C:\\Data\\Accounts.mdb"), c.after);
        EXPECT_EQ(form_.outcome, c.outcome);
        // A refused password leaves what was unpacked.
        EXPECT_EQ(File(u"C:\\Temp\\Accounts.mdb"), c.asked && !c.password ? saved : "(none)");
    }
}

TEST_F(BackupProcedure, RestoresAsASeparateGroup) {
    settings_.checkSecurity = true;
    form_.email = true;
    struct {
        const char16_t* typed;
        const char16_t* file;
    } const cases[] = {
        {u" a/b:c ", u"C:\\Data\\abc.mdb"}, {u"", u"C:\\Data\\rad12345.mdb"}, {u" /:* ", u"C:\\Data\\rad12345.mdb"}};
    for (const auto& c : cases) {
        form_.groupName = c.typed;
        const std::string log = Run(Mode::restore);
        EXPECT_EQ(File(c.file), saved) << log;
        EXPECT_EQ(File(u"C:\\Data\\Accounts.mdb"), live);
        EXPECT_EQ(log.find("prompt"), std::string::npos);
    }
}

TEST_F(BackupProcedure, RefusesToRestore) {
    constexpr const char* damaged = "message Could not restore data. File may be correpted. (Restore, 1, 8, 2000)\n";
    constexpr const char* folderOfItsOwn =
        "error 75 The working folder must be one of its own, since every file in it is deleted.\n";
    struct {
        const char* name;
        std::function<void(FakeEnvironment&, Settings&, FormState&)> change;
        const char* says;
    } const cases[] = {
        {"no such archive", [](auto&, auto&, auto& form) { form.location = u"D:\\none.qvx"; },
         "message No Backup files found under this directory.|D:\\none.qvx (Restore, 1, 6, 3000)\n"},
        {"archiver fails", [](auto& c, auto&, auto&) { c.archiver = FakeEnvironment::Archiver::leavesNothing; },
         damaged},
        {"unpacked file does not open",
         [](auto& c, auto&, auto&) { c.archiver = FakeEnvironment::Archiver::leavesHalf; }, damaged},
        {"other extension", [](auto&, auto& settings, auto&) { settings.dataExtension = u".db"; }, damaged},
        {"no working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u""; },
         "error 76 Path not found\n"},
        {"working folder without separator", [](auto&, auto& settings, auto&) { settings.tempPath = u"C:\\Temp"; },
         "error 76 Path not found\n"},
        {"data in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"c:\\data\\"; },
         folderOfItsOwn},
        {"archive in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"D:\\"; },
         folderOfItsOwn},
        {"archivers in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"C:\\Zip\\"; },
         folderOfItsOwn},
        {"data in the current folder, which is the working folder",
         [](auto&, auto& settings, auto&) { settings.dataPath = u"", settings.tempPath = u".\\"; }, folderOfItsOwn},
        {"names that begin in the working folder",
         [](auto&, auto& settings, auto&) { settings.dataPath = u"C:\\Temp\\My "; }, folderOfItsOwn},
        {"a name that does more than to name a file",
         [](auto& c, auto&, auto& form) {
             c.files[form.location] = FakeEnvironment::Packed("x;Mode=Write.mdb", saved);
         },
         "error 52 The database in the archive has a name that cannot be opened safely.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeEnvironment computer;
        computer.files = computer_.files;
        Settings settings = settings_;
        FormState form = form_;
        form.outcome = u"Completed Successfully.";
        c.change(computer, settings, form);
        const Files before = computer.files;
        Procedure(computer, computer, settings, Mode::restore).Run(form);
        EXPECT_NE(computer.Log().find(c.says), std::string::npos) << computer.Log();
        EXPECT_TRUE(computer.Log().starts_with("refresh []\n")) << "nothing is said before the last outcome is gone";
        EXPECT_EQ(form.outcome, u"Not Completed Successfully.");
        computer.DeleteFiles(u"C:\\Temp\\");
        EXPECT_EQ(computer.files, before);
    }
}

TEST_F(BackupProcedure, BrowsesForALocation) {
    struct {
        const char* name;
        Mode mode;
        const char16_t* picked;
        const char16_t* location;
        const char* log;
    } const cases[] = {
        {"folder", Mode::backup, u"D:\\Copies", u"D:\\Copies\\Ac-1-3.qvx",
         "refresh []\nbrowse Select a location\nrefresh []\n"},
        {"disk", Mode::backup, u"A:\\", u"A:\\Ac-1-3.qvx",
         "refresh []\nbrowse Select a location\nchange drive C:\\Data\\\nrefresh []\n"},
        {"cancelled", Mode::backup, u"", u"", "refresh []\nbrowse Select a location\nrefresh []\n"},
        {"archive", Mode::restore, u"D:\\x.qvx", u"D:\\x.qvx", "refresh []\nopen Restore Database From\nrefresh []\n"},
        {"archive on a disk", Mode::restore, u"A:\\x.qvx", u"A:\\x.qvx",
         "refresh []\nopen Restore Database From\nchange drive C:\\Data\\\nrefresh []\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        computer_.removableDrive = u"A:";
        computer_.pickedFolder = c.picked;
        computer_.pickedFile = c.picked;
        form_.outcome = u"Completed Successfully.";
        form_.outcomeTip = u"x";
        EXPECT_EQ(Browse(c.mode), c.log);
        EXPECT_EQ(form_.location, c.location);
        EXPECT_EQ(form_.outcome + form_.outcomeTip, u"");
    }
}

TEST_F(BackupProcedure, OkBrowsesFirstWithoutALocation) {
    form_.location = u"  ";
    EXPECT_EQ(Run(Mode::restore), "refresh []\nopen Restore Database From\nrefresh []\n")
        << "and stops when there is none";
    EXPECT_EQ(form_.outcome, u"");
    computer_.pickedFile = u"D:\\Ac-1-3.qvx";
    form_.location = u"";
    Run(Mode::restore);
    EXPECT_EQ(form_.outcome, u"Completed Successfully.");
}

}  // namespace
}  // namespace qvx::backup
