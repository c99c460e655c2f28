// Whole backups and restores on the system: real files, archivers, database and mail. Only the user is played.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "com/late_bound.h"
#include "com/wide_text.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/password_source_win32.h"
#include "controls/backup/procedure.h"
#include "controls/backup/set_aside.h"
#include "controls/backup/system_services_win32.h"
#include "tests/support/ado_server.h"
#include "tests/support/fake_mail.h"
#include "tests/support/files.h"
#include "tests/support/import_patch.h"
#include "tests/support/narrow.h"

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
    std::function<void()> whenArchiverEnds;

    std::string Said() const {
        std::string all;
        for (const std::string& line : said) all += line + "\n";
        return all;
    }

    void Refresh(const FormState&) override {}
    bool ShowMessage(TextView prompt, const dialogs::MessageKind& kind, const std::optional<Text>& title) override {
        std::string line = Narrow(prompt);
        std::replace(line.begin(), line.end(), '\r', '|');
        said.push_back(Narrow(title.value_or(u"-")) + ": " + line + " (" + std::to_string(kind.buttons) + ", " +
                       std::to_string(kind.icon) + ", " + std::to_string(kind.timeOut) + ")");
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
    std::uint32_t WaitForArchiver() override {
        const std::uint32_t code = SystemServices::WaitForArchiver();
        if (whenArchiverEnds) whenArchiverEnds();
        return code;
    }
};

// Programs start without a console of their own, which takes the longest.
class NoConsoles {
  public:
    NoConsoles() : start_(GetModuleHandleW(nullptr), "CreateProcessW", reinterpret_cast<void*>(&Start)) {
        EXPECT_TRUE(start_.Found());
        realStart_ = reinterpret_cast<decltype(&CreateProcessW)>(start_.Real());
    }

  private:
    static BOOL WINAPI Start(LPCWSTR program, LPWSTR command, LPSECURITY_ATTRIBUTES process,
                             LPSECURITY_ATTRIBUTES thread, BOOL inherits, DWORD flags, LPVOID environment,
                             LPCWSTR folder, LPSTARTUPINFOW start, LPPROCESS_INFORMATION started) {
        const DWORD detached = (flags & ~static_cast<DWORD>(CREATE_NEW_CONSOLE)) | DETACHED_PROCESS;
        return realStart_(program, command, process, thread, inherits, detached, environment, folder, start, started);
    }

    inline static decltype(&CreateProcessW) realStart_;
    ImportPatch start_;
};

// A shop's database with its administrator, a folder for copies, one to work in and one with the archivers. All paths
// have blanks in them, and characters of no one code page.
class BackupRun : public TemporaryFolder {
  protected:
    void SetUp() override {
        TemporaryFolder::SetUp();
        for (const Text& folder : {settings_.dataPath, settings_.tempPath, settings_.zipPath, copies_}) {
            ASSERT_TRUE(CreateDirectoryW(Wide(folder), nullptr)) << GetLastError();
        }
        for (const wchar_t* program : {L"PkZip.exe", L"PkunZip.exe"}) {
            const Text copy = settings_.zipPath + Text(FromWide(program));
            ASSERT_TRUE(CopyFileW(BuiltFile(program).c_str(), Wide(copy), TRUE)) << GetLastError();
        }
        server_ = std::make_unique<AdoServer>();
        try {
            Execute(u"create table Users(UCode integer, Password text)");
        } catch (const RunTimeError& error) {
            if (!MeansNoDriver(error.Description())) throw;
            GTEST_SKIP() << "NO ODBC DRIVER FOR SQLITE IS INSTALLED: " << Narrow(error.Description());
        }
        Execute(u"insert into Users values(1, 'Sesame')");
        saved_ = Read(live_);
        ASSERT_GT(saved_.size(), 1000u);
    }
    void TearDown() override {
        server_.reset();
        // Neither the connection string nor the password reaches anybody, and no error's words repeat a path.
        for (const Text& command : computer_.commands) {
            EXPECT_EQ(command.find(u"hush"), Text::npos);
            EXPECT_EQ(command.find(u"Sesame"), Text::npos);
            EXPECT_EQ(command.find(u"Driver"), Text::npos);
        }
        for (const std::string& line : computer_.said) {
            for (const char* secret : {"hush", "Sesame", "Driver"}) {
                EXPECT_EQ(line.find(secret), std::string::npos) << line;
            }
            if (line.rfind("error", 0) == 0) {
                EXPECT_EQ(line.find("secret"), std::string::npos) << line;
            }
        }
        TemporaryFolder::TearDown();
    }

    void Execute(const char16_t* sql) const {
        const auto connection = CreateNamedObject(L"ADODB.Connection");
        LateMember(connection.get(), L"Open").Get(connection.get(), {Variant(u"Driver=SQLite3;Database=" + live_)});
        LateMember(connection.get(), L"Execute").Get(connection.get(), {Variant(sql)});
    }

    // The outcome line, its tip behind it where there is one.
    std::string Run(Mode mode, const Text& location, bool check = false, const Text& group = {}) {
        FormState form;
        form.location = location;
        form.email = check;
        form.groupName = group;
        computer_.said.clear();
        backup::Procedure(computer_, computer_, settings_, mode).Run(form);
        return Narrow(form.outcome + (form.outcomeTip.empty() ? Text() : u" " + form.outcomeTip));
    }

    std::vector<Text> FilesIn(const Text& folder) const {
        std::vector<Text> names;
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(Wide(folder + u'*'), &entry);
        if (search == INVALID_HANDLE_VALUE) return names;
        do {
            if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.emplace_back(FromWide(entry.cFileName));
        } while (FindNextFileW(search, &entry));
        FindClose(search);
        return names;
    }

    backup::Settings settings_{.cnnString = u"Driver={SQLite3 ODBC Driver};NoCreat=1;PWD=hush;Database=",
                               .database = u"Shop of \u0416anna",
                               .tempPath = In(u"working folder\\"),
                               .dataPath = In(u"live data\\"),
                               .zipPath = In(u"pack programs\\"),
                               .backupExtension = u".qvx",
                               .dataExtension = u".db",
                               .checkSecurity = true};
    const Text copies_ = In(u"copies \u20ac\\");
    const Text archive_ = copies_ + u"Sh-1-3.qvx";
    const Text live_ = backup::LiveDatabase(settings_);
    std::string saved_;  // the database's bytes
    Computer computer_;
    const NoConsoles noConsoles_;
    std::unique_ptr<AdoServer> server_;
};

TEST_F(BackupRun, ComesBackAsItWasAndBesideItself) {
    FakeMail mail(GetModuleHandleW(nullptr));
    EXPECT_EQ(Run(Mode::backup, archive_, true), "Completed Successfully.");
    EXPECT_EQ(computer_.Said(), "");
    const Text mailed = mail.Take();
    EXPECT_NE(mailed.find(u" subject Database "), Text::npos) << Narrow(mailed);
    EXPECT_NE(mailed.find(u"\n0: " + archive_ + u" as " + archive_ + u"\n"), Text::npos) << Narrow(mailed);

    Execute(u"insert into Users values(2, 'new')");
    const std::string changed = Read(live_);
    ASSERT_NE(changed, saved_);
    computer_.typed = u"sesame";
    EXPECT_EQ(Run(Mode::restore, archive_), "Not Completed Successfully.");
    EXPECT_TRUE(Read(live_) == changed);
    computer_.typed = u"Sesame";
    EXPECT_EQ(Run(Mode::restore, archive_), "Completed Successfully.");
    EXPECT_TRUE(Read(live_) == saved_);
    EXPECT_EQ(Run(Mode::restore, archive_, true, u" a/b:\u0416 "), "Completed Successfully.");
    EXPECT_TRUE(Read(settings_.dataPath + u"ab\u0416.db") == saved_);
    EXPECT_EQ(computer_.Said(), "");
    // Nothing else is left anywhere.
    EXPECT_EQ(FilesIn(settings_.dataPath).size(), 2u);
    EXPECT_EQ(FilesIn(copies_).size(), 1u);
    EXPECT_EQ(FilesIn(settings_.tempPath).size(), 0u);
}

TEST_F(BackupRun, ArchiversTakeLongNamesWhereThereAreNoOthers) {
    computer_.shortNames = false;
    EXPECT_EQ(Run(Mode::backup, archive_), "Completed Successfully.");
    Execute(u"drop table Users");
    settings_.checkSecurity = false;
    EXPECT_EQ(Run(Mode::restore, archive_), "Completed Successfully.");
    EXPECT_EQ(computer_.Said(), "");
    EXPECT_TRUE(Read(live_) == saved_);
    const auto quoted = [](const Text& path) { return u'"' + path + u'"'; };
    ASSERT_EQ(computer_.commands.size(), 2u);
    EXPECT_EQ(computer_.commands[0],
              quoted(settings_.zipPath + u"PkZip.exe") + u' ' + quoted(archive_) + u' ' + quoted(live_));
    EXPECT_EQ(computer_.commands[1], quoted(settings_.zipPath + u"PkunZip.exe") + u' ' + quoted(archive_) + u' ' +
                                         quoted(settings_.tempPath + u'\\'));
}

// Something in the way of the work, for as long as it lasts.
struct Obstacle {
    const char* what;
    std::function<void()> begin;
    std::function<void()> end;
    const char* said;
};

Obstacle ReadOnly(const Text& path) {
    return {"read-only", [path] { EXPECT_TRUE(SetFileAttributesW(Wide(path), FILE_ATTRIBUTE_READONLY)); },
            [path] { EXPECT_TRUE(SetFileAttributesW(Wide(path), FILE_ATTRIBUTE_NORMAL)); },
            "error 75: Path/File access error\n"};
}

Obstacle InUse(const Text& path) {
    const auto held = std::make_shared<std::unique_ptr<OpenElsewhere>>();
    return {"in use", [=] { *held = std::make_unique<OpenElsewhere>(path, GENERIC_READ, FILE_SHARE_READ); },
            [=] { held->reset(); }, "error 70: Permission denied\n"};
}

// A file, or a folder without a separator at its end.
Obstacle Gone(const char* what, const Text& path, const char* said) {
    const Text elsewhere = path + u" elsewhere";
    return {what, [=] { EXPECT_TRUE(MoveFileW(Wide(path), Wide(elsewhere))); },
            [=] { EXPECT_TRUE(MoveFileW(Wide(elsewhere), Wide(path))); }, said};
}

TEST_F(BackupRun, WhatIsInABackupsWayLeavesTheOldArchive) {
    const Obstacle cases[] = {
        ReadOnly(archive_),
        InUse(archive_),
        Gone("no archiver", settings_.zipPath + u"PkZip.exe", "error 53: File not found\n"),
        Gone("no database", live_, "error 53: File not found\n"),
    };
    Write(archive_, "the old archive");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        c.begin();
        EXPECT_EQ(Run(Mode::backup, archive_), "Not Completed Successfully.");
        const std::string said = computer_.Said();
        EXPECT_EQ(said.substr(0, said.find('\n')),
                  "Backup: This will overwrite the previous backup files under the directory.|" + Narrow(archive_) +
                      "|Continue with Backup...? (2, 7, 0)");
        EXPECT_EQ(said.substr(said.find('\n') + 1), c.said);
        c.end();
        EXPECT_EQ(Read(archive_), "the old archive");
        EXPECT_EQ(FilesIn(copies_).size(), 1u);
    }
    EXPECT_TRUE(computer_.commands.empty());
    // Without any folder for it.
    EXPECT_EQ(Run(Mode::backup, In(u"no copies\\a.qvx")), "Not Completed Successfully.");
    EXPECT_EQ(computer_.Said(), "error 76: Path not found\n");
    // Nothing in the way.
    EXPECT_EQ(Run(Mode::backup, archive_), "Completed Successfully.");
    EXPECT_EQ(Read(archive_).substr(0, 2), "PK");
    EXPECT_EQ(FilesIn(copies_).size(), 1u);
}

// A disk on which the file that is written next has room for so many bytes only.
class FullDisk {
  public:
    explicit FullDisk(DWORD room) : write_(GetModuleHandleW(nullptr), "WriteFile", reinterpret_cast<void*>(&Write)) {
        EXPECT_TRUE(write_.Found());
        realWrite_ = reinterpret_cast<decltype(&WriteFile)>(write_.Real());
        room_ = room;
    }

  private:
    static BOOL WINAPI Write(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED overlapped) {
        const DWORD fitting = std::min(count, room_);
        room_ -= fitting;
        if (!realWrite_(file, bytes, fitting, written, overlapped)) return FALSE;
        if (fitting == count) return TRUE;
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }

    inline static decltype(&WriteFile) realWrite_;
    inline static DWORD room_;
    ImportPatch write_;
};

TEST_F(BackupRun, WhatIsInARestoresWayLeavesTheLiveDatabase) {
    EXPECT_EQ(Run(Mode::backup, archive_), "Completed Successfully.");
    Execute(u"insert into Users values(2, 'new')");
    const std::string changed = Read(live_);
    const Text dataFolder = settings_.dataPath.substr(0, settings_.dataPath.size() - 1);
    std::unique_ptr<FullDisk> full;
    const Obstacle cases[] = {
        ReadOnly(live_),
        InUse(live_),
        Gone("no archiver", settings_.zipPath + u"PkunZip.exe", "error 53: File not found\n"),
        Gone("the folder goes", dataFolder, "error 76: Path not found\n"),
        {"full disk", [&] { full = std::make_unique<FullDisk>(100); }, [&] { full.reset(); }, "error 61: Disk full\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        // Between the archiver and what is done with what it has unpacked, where there is an archiver.
        const bool before = std::string(c.what) == "no archiver";
        computer_.whenArchiverEnds = before ? nullptr : c.begin;
        if (before) c.begin();
        EXPECT_EQ(Run(Mode::restore, archive_), "Not Completed Successfully.");
        EXPECT_EQ(computer_.Said(), c.said);
        c.end();
        EXPECT_TRUE(Read(live_) == changed);
        EXPECT_EQ(FilesIn(settings_.dataPath).size(), 1u);
        EXPECT_EQ(FilesIn(settings_.tempPath).size(), before ? 0u : 1u);
    }
    computer_.whenArchiverEnds = nullptr;
    EXPECT_EQ(Run(Mode::restore, archive_), "Completed Successfully.");
    EXPECT_TRUE(Read(live_) == saved_);
    // What the archiver itself finds wrong with an archive comes back as its exit code.
    Write(archive_, "PK\x03\x04 and nothing that belongs there");
    EXPECT_TRUE(
        Run(Mode::restore, archive_).starts_with("Not Completed Successfully. The archiver ended with exit code "));
    EXPECT_TRUE(Read(live_) == saved_);
}

}  // namespace
}  // namespace qvx::test
