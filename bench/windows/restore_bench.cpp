// Restores a backup once as the Backup control does after its OK button, without the dialog, and prints the seconds.
//
//     bench_restore ARCHIVE WORKING DATA ARCHIVERS CONNECTION
//
// WORKING, DATA and ARCHIVERS are folders that end in a backslash. The database is called shop.db.
#include <windows.h>

#include <ole2.h>

#include <cstdio>
#include <cstdlib>

#include "bench/support/measure.h"
#include "com/wide_text.h"
#include "controls/backup/procedure.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::bench {
namespace {

// A user who is never asked: the working folder is in order, and no password guards the database.
class NobodyAsked final : public backup::UserSteps {
  public:
    void Refresh(const backup::FormState&) override {}
    bool ShowMessage(TextView prompt, const dialogs::MessageKind&, const std::optional<Text>&) override {
        Fail(prompt);
        return false;
    }
    void ReportError(int, TextView description) override { Fail(description); }
    Text BrowseForFolder(TextView) override { return {}; }
    Text ShowOpenFile(TextView) override { return {}; }
    bool RunPasswordPrompt(TextView) override { return false; }
    void ClosePasswordPrompt() override {}

  private:
    static void Fail(TextView why) {
        std::fprintf(stderr, "%s\n", std::string(why.begin(), why.end()).c_str());
        std::exit(1);
    }
};

void Restore(wchar_t** arguments) {
    const auto argument = [&](int at) { return Text(FromWide(arguments[at])); };
    backup::Settings settings;
    settings.tempPath = argument(2);
    settings.dataPath = argument(3);
    settings.zipPath = argument(4);
    settings.cnnString = argument(5);
    settings.database = u"shop";
    settings.dataExtension = u".db";
    settings.backupExtension = u".qvx";
    backup::FormState form;
    form.location = argument(1);
    NobodyAsked user;
    backup::SystemServices system;
    backup::Procedure procedure(user, system, settings, backup::Mode::restore);
    const Stopwatch watch;
    procedure.Run(form);
    const double seconds = watch.Seconds();
    CheckSameWork(form.outcome == u"Completed Successfully." && form.outcomeTip.empty(), "Backup", "restore");
    std::printf("%.6f\n", seconds);
}

}  // namespace
}  // namespace qvx::bench

int wmain(int count, wchar_t** arguments) {
    if (count != 6 || FAILED(OleInitialize(nullptr))) return 1;
    qvx::bench::Restore(arguments);
    OleUninitialize();
    return 0;
}
