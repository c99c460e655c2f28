// qvxhost.exe: shows a form from a text file and runs its script.
//
// Exit codes: 0 success; 1 the command line makes no sense; 2 the form, a control or the script cannot be loaded; 3 the
// script failed while it ran; 4 the form could not be saved; others as Host.Quit gave them.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <shellapi.h>

#include <string>
#include <vector>

#include "com/guard.h"
#include "com/module.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "designer/designer_window.h"
#include "host/class_source_object.h"
#include "host/form_storage_win32.h"
#include "host/options.h"
#include "host/report_dialog.h"
#include "host/running_form_window.h"
#include "host/text_encoding.h"

namespace {

using namespace qvx;
using namespace qvx::host;

constexpr int exitUsage = 1;
constexpr int exitLoad = 2;

std::vector<Text> Arguments() {
    int count = 0;
    wchar_t** list = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<Text> arguments;
    for (int i = 1; i < count; ++i) arguments.emplace_back(FromWide(list[i]));
    LocalFree(list);
    return arguments;
}

class OleSession {
  public:
    OleSession() { Check(OleInitialize(nullptr)); }
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;
    ~OleSession() { OleUninitialize(); }
};

// The library that came with this program, or nothing where one is registered: a folder that was only copied works.
Text OwnServer() {
    CLSID id{};
    if (SUCCEEDED(CLSIDFromProgID(L"Qvx.ComboGrid", &id))) return {};
    const Text path = FolderOf(ModulePath(nullptr)) + u"\\Qvx.ocx";
    return GetFileAttributesW(Wide(path)) == INVALID_FILE_ATTRIBUTES ? Text() : path;
}

int RunForm(const Options& options, Reporter& reporter) {
    const OleSession ole;
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    try {
        ClassSource source;
        const Text server = options.server.empty() ? OwnServer() : options.server;
        if (!server.empty()) source.UseFile(server);
        if (options.design) {
            designer::DesignerWindow designer(options, source, reporter);
            designer.Open(options.form);
            designer.Show();
            designer.Run();
            return designer.ExitCode();
        }
        FormFile file = FormFile::Parse(ReadFileBytes(options.form));
        for (const Warning& warning : file.warnings) {
            reporter.Note(options.form + u"(" + ValueAsText(FormValue(std::int32_t{warning.line})) + u"): " +
                          warning.message);
        }
        const Text folder = FolderOf(options.form);
        RunningForm form(std::move(file), options, folder, source, reporter);
        form.Build();
        const Text script = options.script.empty() ? Text() : DecodeFile(ReadFileBytes(options.script)).text;
        if (!form.Start(options.script, script)) return exitLoad;
        form.Run();
        return form.ExitCode();
    } catch (const FormFileError& error) {
        Text place = options.form;
        if (error.Line() > 0) place += u"(" + ValueAsText(FormValue(std::int32_t{error.Line()})) + u")";
        reporter.Error(place + u": " + error.Message());
    } catch (...) {
        reporter.Error(FailureInFlightText());
    }
    return exitLoad;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    Reporter reporter(false);
    Options options;
    try {
        options = ParseOptions(Arguments());
    } catch (const RunTimeError& error) {
        const std::vector<Text> given = Arguments();
        for (const Text& argument : given) {
            if (argument == u"--quiet") reporter.SetQuiet(true);
        }
        reporter.Error(Text(error.Description()) + u"\n\n" + Text(usage));
        return exitUsage;
    }
    if (options.help) {
        reporter.Note(Text(usage));
        MessageBoxW(nullptr, Wide(Text(usage)), Wide(ProgramTitle()), MB_OK | MB_ICONINFORMATION);
        return 0;
    }
    reporter.SetQuiet(options.quiet);
    for (Text* path : {&options.form, &options.script, &options.save, &options.log, &options.server}) {
        *path = FullPath(*path);
    }
    return RunForm(options, reporter);
}
