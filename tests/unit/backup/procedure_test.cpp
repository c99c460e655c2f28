// What the dialog's buttons do, step by step and word by word.
#include "backup/procedure.h"

#include <gtest/gtest.h>

#include "tests/unit/backup/fake_environment.h"

namespace qvx::backup {
namespace {

const char* const live = "db live";
const char* const saved = "db saved";

Settings SampleSettings() {
    Settings settings;
    settings.cnnString = u"file=";
    settings.database = u"Accounts";
    settings.tempPath = u"C:\\Temp\\";
    settings.dataPath = u"C:\\Data\\";
    settings.zipPath = u"C:\\Zip\\";
    settings.backupExtension = u".qvx";
    settings.dataExtension = u".mdb";
    return settings;
}

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
        Procedure(computer_, settings_, mode).Run(form_);
        return computer_.Log();
    }
    std::string Browse(Mode mode) {
        computer_.log.clear();
        Procedure(computer_, settings_, mode).Browse(form_);
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
              "rename D:\\Ac-1-3.qvx > D:\\Ac-1-3.qvx.old\n"
              "create D:\\Ac-1-3.qvx\n"
              "delete D:\\Ac-1-3.qvx\n"
              "start C:\\Zip\\PkZip.exe D:\\Ac-1-3.qvx C:\\Data\\Accounts.mdb\n"
              "wait\n"
              "delete D:\\Ac-1-3.qvx.old\n"
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
        Procedure(computer, settings, Mode::backup).Run(form);
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
    } const cases[] = {
        {"nothing written", FakeEnvironment::Archiver::leavesNothing, 12,
         u"The archiver ended with exit code 12. The previous archive is back in its place.", old, "(none)"},
        {"nothing written, no word of it", FakeEnvironment::Archiver::leavesNothing, 0,
         u"The previous archive is back in its place.", old, "(none)"},
        {"half written", FakeEnvironment::Archiver::leavesHalf, 12,
         u"The archiver ended with exit code 12. The previous archive is kept beside it.", "zip|A", old},
        {"a warning", FakeEnvironment::Archiver::works, 1,
         u"The archiver ended with exit code 1. The previous archive is kept beside it.",
         FakeEnvironment::Packed("Accounts.mdb", live), old},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        computer_.files.erase(u"D:\\Ac-1-3.qvx.old");
        computer_.files[form_.location] = old;
        computer_.archiver = c.archiver;
        computer_.exitCode = c.code;
        Run(Mode::backup);
        // What was started counts.
        EXPECT_EQ(form_.outcome, u"Completed Successfully.");
        EXPECT_EQ(form_.outcomeTip, c.tip);
        EXPECT_EQ(File(form_.location), c.left);
        EXPECT_EQ(File(form_.location + u".old"), c.aside);
    }
}

TEST_F(BackupProcedure, MissingArchivers) {
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
    EXPECT_NE(log.find("wait\ndelete D:\\Ac-1-3.qvx.old\nmail Database D:\\Ac-1-3.qvx as D:\\Ac-1-3.qvx\n"
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
              "copy C:\\Temp\\Accounts.mdb > C:\\Data\\Accounts.mdb.new\n"
              "replace C:\\Data\\Accounts.mdb.new > C:\\Data\\Accounts.mdb\n"
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
    const auto before = computer_.files;
    struct {
        const char* name;
        std::function<void(FakeEnvironment&, Settings&, FormState&)> change;
        const char* says;
    } const cases[] = {
        {"no such archive", [](auto&, auto&, auto& form) { form.location = u"D:\\none.qvx"; },
         "message No Backup files found under this directory.|D:\\none.qvx (Restore, 1, 6, 3000)\n"},
        {"archiver fails", [](auto& c, auto&, auto&) { c.archiver = FakeEnvironment::Archiver::leavesNothing; },
         "message Could not restore data. File may be correpted. (Restore, 1, 8, 2000)\n"},
        {"unpacked file does not open",
         [](auto& c, auto&, auto&) { c.archiver = FakeEnvironment::Archiver::leavesHalf; },
         "message Could not restore data. File may be correpted. (Restore, 1, 8, 2000)\n"},
        {"other extension", [](auto&, auto& settings, auto&) { settings.dataExtension = u".db"; },
         "message Could not restore data. File may be correpted. (Restore, 1, 8, 2000)\n"},
        {"no working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u""; },
         "error 76 Path not found\n"},
        {"working folder without separator", [](auto&, auto& settings, auto&) { settings.tempPath = u"C:\\Temp"; },
         "error 76 Path not found\n"},
        {"data in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"c:\\data\\"; },
         "error 75 The working folder must be one of its own, since every file in it is deleted.\n"},
        {"archive in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"D:\\"; },
         "error 75 The working folder must be one of its own, since every file in it is deleted.\n"},
        {"archivers in the working folder", [](auto&, auto& settings, auto&) { settings.tempPath = u"C:\\Zip\\"; },
         "error 75 The working folder must be one of its own, since every file in it is deleted.\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakeEnvironment computer;
        computer.files = before;
        Settings settings = settings_;
        FormState form = form_;
        c.change(computer, settings, form);
        Procedure(computer, settings, Mode::restore).Run(form);
        EXPECT_NE(computer.Log().find(c.says), std::string::npos) << computer.Log();
        EXPECT_EQ(form.outcome, u"Not Completed Successfully.");
        computer.files.erase(u"C:\\Temp\\Accounts.mdb");
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
