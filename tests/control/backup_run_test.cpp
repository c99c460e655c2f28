// A whole backup and restore on the system: real files, archivers and database. Only the user is played.
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "controls/backup/procedure.h"
#include "controls/backup/system_services_win32.h"
#include "tests/control/backup_database.h"

namespace qvx::test {
namespace {

using backup::FormState;
using backup::Mode;

// The system, on a volume that keeps no short names, with a user who says yes. What it says is written down.
class Computer final : public backup::UserSteps, public backup::SystemServices {
  public:
    std::vector<Text> commands;
    std::vector<std::string> errors;

    void Refresh(const FormState&) override {}
    bool ShowMessage(TextView, const dialogs::MessageKind&, const std::optional<Text>&) override { return true; }
    void ReportError(int number, TextView description) override {
        errors.push_back(std::to_string(number) + " " + Narrow(description));
    }
    Text BrowseForFolder(TextView) override { return {}; }
    Text ShowOpenFile(TextView) override { return {}; }
    bool RunPasswordPrompt(TextView) override { return false; }
    void ClosePasswordPrompt() override {}
    Text ShortPath(TextView file) override { return Text(file); }
    void StartArchiver(TextView commandLine) override {
        commands.emplace_back(commandLine);
        SystemServices::StartArchiver(commandLine);
    }
};

class BackupRun : public DatabaseTest {};

// All paths contain blanks, and characters of no one code page.
TEST_F(BackupRun, ArchiversTakeLongNamesWhereThereAreNoOthers) {
    backup::Settings settings{.cnnString = connection_,
                              .database = u"Shop of \u0416anna",
                              .tempPath = In(u"working folder\\"),
                              .dataPath = root_,
                              .zipPath = In(u"pack programs\\"),
                              .backupExtension = u".qvx",
                              .dataExtension = u".db"};
    for (const Text& folder : {settings.tempPath, settings.zipPath}) {
        ASSERT_TRUE(CreateDirectoryW(Wide(folder), nullptr)) << GetLastError();
    }
    for (const wchar_t* program : {L"PkZip.exe", L"PkunZip.exe"}) {
        const Text copy = settings.zipPath + Text(FromWide(program));
        ASSERT_TRUE(CopyFileW(BuiltFile(program).c_str(), Wide(copy), TRUE)) << GetLastError();
    }
    FormState form;
    form.location = In(u"Sh of today.qvx");
    Computer computer;
    const auto run = [&](Mode mode) {
        backup::Procedure(computer, computer, settings, mode).Run(form);
        return form.outcome == u"Completed Successfully.";
    };
    const std::string saved = Read(file_);
    ASSERT_GT(saved.size(), 1000u);
    EXPECT_TRUE(run(Mode::backup));
    Execute(u"drop table t");
    const std::string changed = Read(file_);
    ASSERT_NE(changed, saved);
    {
        const OpenElsewhere reader(file_, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_FALSE(run(Mode::restore));
        EXPECT_EQ(computer.errors, std::vector<std::string>{"70 Permission denied"});
        EXPECT_TRUE(Read(file_) == changed);
    }
    EXPECT_TRUE(run(Mode::restore));
    EXPECT_TRUE(Read(file_) == saved);
    const auto quoted = [](const Text& path) { return u'"' + path + u'"'; };
    ASSERT_EQ(computer.commands.size(), 3u);
    EXPECT_EQ(computer.commands[0],
              quoted(settings.zipPath + u"PkZip.exe") + u' ' + quoted(form.location) + u' ' + quoted(file_));
    EXPECT_EQ(computer.commands[2], quoted(settings.zipPath + u"PkunZip.exe") + u' ' + quoted(form.location) + u' ' +
                                        quoted(settings.tempPath + u'\\'));
    // What the archiver itself finds wrong with an archive comes back as its exit code.
    Write(form.location, "PK\x03\x04 and nothing that belongs there");
    EXPECT_FALSE(run(Mode::restore));
    EXPECT_TRUE(form.outcomeTip.starts_with(u"The archiver ended with exit code ")) << Narrow(form.outcomeTip);
    EXPECT_TRUE(Read(file_) == saved);
}

}  // namespace
}  // namespace qvx::test
