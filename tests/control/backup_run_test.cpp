// Whole backups and restores on the system: real files, archivers, database and mail. Only the user is played.
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "controls/backup/password_source_win32.h"
#include "controls/backup/procedure.h"
#include "controls/backup/system_services_win32.h"
#include "tests/control/backup_database.h"
#include "tests/support/fake_mail.h"

namespace qvx::test {
namespace {

using backup::FormState;
using backup::Mode;

// The system with a user who says yes and knows one password. What it says to him is written down.
class Computer final : public backup::UserSteps, public backup::SystemServices {
  public:
    std::vector<std::string> said;
    std::vector<Text> commands;
    Text typed = u"Sesame";
    bool shortNames = true;  // whether the volume keeps them

    void Refresh(const FormState&) override {}
    bool ShowMessage(TextView prompt, const dialogs::MessageKind&, const std::optional<Text>&) override {
        said.push_back(Narrow(prompt));
        return true;
    }
    void ReportError(int number, TextView description) override {
        said.push_back("error " + std::to_string(number) + ": " + Narrow(description));
    }
    Text BrowseForFolder(TextView) override { return {}; }
    Text ShowOpenFile(TextView) override { return {}; }
    bool RunPasswordPrompt(TextView connection) override {
        const auto password = backup::AdministratorPassword(connection);
        return !password || *password == typed;
    }
    void ClosePasswordPrompt() override {}
    Text ShortPath(TextView file) override {
        const Text shortPath = SystemServices::ShortPath(file);
        return shortNames ? shortPath : Text(file);
    }
    void StartArchiver(TextView commandLine) override {
        commands.emplace_back(commandLine);
        SystemServices::StartArchiver(commandLine);
    }
};

// A shop's database with its administrator, a folder for copies, one to work in and one with the archivers. All paths
// contain blanks, and characters of no one code page.
class BackupRun : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        if (IsSkipped()) return;
        for (const Text& folder : {settings_.tempPath, settings_.zipPath, copies_}) {
            ASSERT_TRUE(CreateDirectoryW(Wide(folder), nullptr)) << GetLastError();
        }
        for (const wchar_t* program : {L"PkZip.exe", L"PkunZip.exe"}) {
            const Text copy = settings_.zipPath + Text(FromWide(program));
            ASSERT_TRUE(CopyFileW(BuiltFile(program).c_str(), Wide(copy), TRUE)) << GetLastError();
        }
        Execute(u"create table Users(UCode integer, Password text)");
        Execute(u"insert into Users values(1, 'Sesame')");
        saved_ = Read(file_);
        ASSERT_GT(saved_.size(), 1000u);
    }
    void TearDown() override {
        // Neither the connection string nor the password reaches anybody, and no error's words repeat a path.
        for (const Text& command : computer_.commands) computer_.said.push_back(Narrow(command));
        for (const std::string& line : computer_.said) {
            for (const char* secret : {"hush", "Sesame", "Driver"}) {
                EXPECT_EQ(line.find(secret), std::string::npos) << line;
            }
            EXPECT_FALSE(line.starts_with("error") && line.find("secret") != std::string::npos) << line;
        }
        DatabaseTest::TearDown();
    }

    // Returns the outcome line, with its tip after it.
    std::string Run(Mode mode, bool check = false, const Text& group = {}) {
        FormState form;
        form.location = archive_;
        form.email = check;
        form.groupName = group;
        backup::Procedure(computer_, computer_, settings_, mode).Run(form);
        return Narrow(form.outcome + (form.outcomeTip.empty() ? Text() : u" " + form.outcomeTip));
    }

    static int FilesIn(const Text& folder) {
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(Wide(folder + u'*'), &entry);
        if (search == INVALID_HANDLE_VALUE) return 0;
        int count = 0;
        do count += entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY ? 0 : 1;
        while (FindNextFileW(search, &entry));
        FindClose(search);
        return count;
    }

    backup::Settings settings_{.cnnString = connection_,
                               .database = u"Shop of \u0416anna",
                               .tempPath = In(u"working folder\\"),
                               .dataPath = root_,
                               .zipPath = In(u"pack programs\\"),
                               .backupExtension = u".qvx",
                               .dataExtension = u".db",
                               .checkSecurity = true};
    const Text copies_ = In(u"copies \u20ac\\");
    const Text archive_ = copies_ + u"Sh-1-3.qvx";
    std::string saved_;  // the database's bytes
    Computer computer_;
};

TEST_F(BackupRun, ComesBackAsItWasAndBesideItself) {
    const std::string done = "Completed Successfully.";
    const std::string notDone = "Not Completed Successfully.";
    FakeMail mail(GetModuleHandleW(nullptr));
    EXPECT_EQ(Run(Mode::backup, true), done);
    const Text mailed = mail.Take();
    EXPECT_NE(mailed.find(u"\n0: " + archive_ + u" as " + archive_ + u"\n"), Text::npos) << Narrow(mailed);
    Execute(u"insert into Users values(2, 'new')");
    const std::string changed = Read(file_);
    ASSERT_NE(changed, saved_);
    computer_.typed = u"sesame";
    EXPECT_EQ(Run(Mode::restore), notDone);
    EXPECT_TRUE(Read(file_) == changed);
    computer_.typed = u"Sesame";
    // Somebody else reads the database, and then the archive.
    {
        const OpenElsewhere reader(file_, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(Run(Mode::restore), notDone);
        EXPECT_TRUE(Read(file_) == changed);
    }
    {
        const OpenElsewhere reader(archive_, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(Run(Mode::backup), notDone);
    }
    ASSERT_EQ(computer_.said.size(), 3u);
    EXPECT_EQ(computer_.said[0], "error 70: Permission denied");
    EXPECT_NE(computer_.said[1].find("overwrite the previous backup"), std::string::npos);
    EXPECT_EQ(computer_.said[2], "error 70: Permission denied");
    EXPECT_EQ(Run(Mode::restore), done);
    EXPECT_TRUE(Read(file_) == saved_);
    EXPECT_EQ(Run(Mode::restore, true, u" a/b:\u0416 "), done);
    EXPECT_TRUE(Read(settings_.dataPath + u"ab\u0416.db") == saved_);
    // Nothing else is left anywhere.
    EXPECT_EQ(FilesIn(settings_.dataPath), 2);
    EXPECT_EQ(FilesIn(copies_), 1);
    EXPECT_EQ(FilesIn(settings_.tempPath), 0);
    EXPECT_EQ(computer_.said.size(), 3u);
}

TEST_F(BackupRun, ArchiversTakeLongNamesWhereThereAreNoOthers) {
    computer_.shortNames = false;
    EXPECT_EQ(Run(Mode::backup), "Completed Successfully.");
    Execute(u"drop table Users");
    settings_.checkSecurity = false;
    EXPECT_EQ(Run(Mode::restore), "Completed Successfully.");
    EXPECT_TRUE(computer_.said.empty());
    EXPECT_TRUE(Read(file_) == saved_);
    const auto quoted = [](const Text& path) { return u'"' + path + u'"'; };
    ASSERT_EQ(computer_.commands.size(), 2u);
    EXPECT_EQ(computer_.commands[0],
              quoted(settings_.zipPath + u"PkZip.exe") + u' ' + quoted(archive_) + u' ' + quoted(file_));
    EXPECT_EQ(computer_.commands[1], quoted(settings_.zipPath + u"PkunZip.exe") + u' ' + quoted(archive_) + u' ' +
                                         quoted(settings_.tempPath + u'\\'));
    // What the archiver itself finds wrong with an archive comes back as its exit code.
    Write(archive_, "PK\x03\x04 and nothing that belongs there");
    EXPECT_TRUE(Run(Mode::restore).starts_with("Not Completed Successfully. The archiver ended with exit code "));
    EXPECT_TRUE(Read(file_) == saved_);
}

}  // namespace
}  // namespace qvx::test
