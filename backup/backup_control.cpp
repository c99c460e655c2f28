#include "backup/backup_control.h"

#include "backup/control_picture.h"
#include "backup/dialog_environment_win32.h"
#include "backup/names.h"
#include "backup/procedure.h"
#include "com/members.h"
#include "common/about_dialog.h"
#include "common/run_time_error.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "server/resource.h"
#include "win/dpi.h"

namespace qvx::backup {

const ControlClass BackupControl::classInfo{
    &CLSID_Backup,
    &DIID___Backup,
    L"Backup",
    L"Qvx Backup Control",
    QVX_TOOLBOX_BACKUP,
    usualMiscStatus | OLEMISC_INVISIBLEATRUNTIME | OLEMISC_NOUIACTIVATE,
    CreateControl<BackupControl>,
};

const PropertyTable& BackupControl::Properties() {
    using C = BackupControl;
    static const PropertyTable table = [] {
        PropertyRows<C> rows;
        const auto text = [&rows](const char16_t* key, DISPID member, Text Settings::*field) {
            rows.String(
                key, member, u"", [field](C& c) { return c.settings_.*field; },
                [field](C& c, Text v) { c.settings_.*field = std::move(v); });
        };
        text(u"CnnString", 1, &Settings::cnnString);
        text(u"Database", 2, &Settings::database);
        text(u"TempPath", 3, &Settings::tempPath);
        text(u"DataPath", 4, &Settings::dataPath);
        text(u"ZipPath", 5, &Settings::zipPath);
        text(u"BackupExtension", 6, &Settings::backupExtension);
        text(u"DataExtension", 7, &Settings::dataExtension);
        rows.Bool(
            u"CheckSecurity", 8, false, [](C& c) { return c.settings_.checkSecurity; },
            [](C& c, bool v) { c.settings_.checkSecurity = v; });
        return rows.Done();
    }();
    return table;
}

template <typename Result, typename Value>
HRESULT BackupControl::Give(Result* result, const Value& value) {
    return Guard([&] { *Required(result) = ToHost<Result>(value); });
}

template <typename Field, typename Given>
HRESULT BackupControl::Take(TextView name, Field& field, Given value) {
    return Put(name, [&] { field = FromHost<Field>(value); });
}

// ---- The dialog ----------------------------------------------------------------------------------------------------

STDMETHODIMP BackupControl::Show(::ActionType* action) {
    return Guard([&] {
        const Mode mode = *Required(action) == ::Restore ? Mode::restore : Mode::backup;
        const DialogScope scope(*this);
        try {
            Run(mode);
        } catch (...) {
            const RunTimeError error = CurrentError();
            ShowErrorReport(OwnerWindow(), error.Number(), Discreet(error.Description(), settings_));
        }
    });
}

void BackupControl::Run(Mode mode) {
    // A host may set properties from a timer while the dialog is open; what was begun goes on as it was.
    const Settings settings = settings_;
    if (SystemServices::FileSize(LockFile(settings))) {
        namespace messages = msgbox::messages;
        msgbox::ShowMessage(OwnerWindow(), messages::othersLoggedOnPrompt, messages::othersLoggedOn);
        return;
    }
    BackupDialog dialog(mode);
    DialogEnvironment environment(dialog);
    Procedure procedure(environment, settings, mode);
    dialog.onBrowse = [&](FormState& form) { procedure.Browse(form); };
    dialog.onRun = [&](FormState& form) { procedure.Run(form); };
    dialog.Run(OwnerWindow());
}

// The host's window where the control has one in it; the library's dialogs find the active one otherwise.
HWND BackupControl::OwnerWindow() const { return InPlaceActive() ? WindowHandle() : nullptr; }

STDMETHODIMP BackupControl::ShowAbout() {
    return Guard([&] {
        const DialogScope dialog(*this);
        ShowAboutBox(OwnerWindow());
    });
}

// ---- The picture ---------------------------------------------------------------------------------------------------

Size BackupControl::DefaultPixelSize() const { return TwipsToPixels(controlSize, Dpi{}); }

void BackupControl::OnResize(Size) { RequestPixelSize(TwipsToPixels(controlSize, WindowDpi(WindowHandle()))); }

void BackupControl::DrawControl(Surface& surface, const Rect& area) {
    if (!UserMode()) PaintControlPicture(surface, area);
}

}  // namespace qvx::backup
