#include "backup/backup_control.h"

#include "backup/backup_dialog.h"
#include "backup/control_picture.h"
#include "backup/dialog_environment_win32.h"
#include "backup/names.h"
#include "backup/procedure.h"
#include "common/about_dialog.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "server/resource.h"
#include "win/dpi.h"

namespace qvx::backup {

const ControlClass BackupControl::classInfo{&CLSID_Backup,
                                            &DIID___Backup,
                                            L"Backup",
                                            L"Saves a database to an archive and brings it back",
                                            QVX_TOOLBOX_BACKUP,
                                            usualMiscStatus | OLEMISC_INVISIBLEATRUNTIME | OLEMISC_NOUIACTIVATE,
                                            &CreateControl<BackupControl>};

const PropertyTable& BackupControl::Properties() {
    using C = BackupControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .String(
                u"CnnString", 1, u"", [](C& c) { return c.settings_.cnnString; },
                [](C& c, const Text& v) { c.settings_.cnnString = v; })
            .String(
                u"Database", 2, u"", [](C& c) { return c.settings_.database; },
                [](C& c, const Text& v) { c.settings_.database = v; })
            .String(
                u"TempPath", 3, u"", [](C& c) { return c.settings_.tempPath; },
                [](C& c, const Text& v) { c.settings_.tempPath = v; })
            .String(
                u"DataPath", 4, u"", [](C& c) { return c.settings_.dataPath; },
                [](C& c, const Text& v) { c.settings_.dataPath = v; })
            .String(
                u"ZipPath", 5, u"", [](C& c) { return c.settings_.zipPath; },
                [](C& c, const Text& v) { c.settings_.zipPath = v; })
            .String(
                u"BackupExtension", 6, u"", [](C& c) { return c.settings_.backupExtension; },
                [](C& c, const Text& v) { c.settings_.backupExtension = v; })
            .String(
                u"DataExtension", 7, u"", [](C& c) { return c.settings_.dataExtension; },
                [](C& c, const Text& v) { c.settings_.dataExtension = v; })
            .Bool(
                u"CheckSecurity", 8, false, [](C& c) { return c.settings_.checkSecurity; },
                [](C& c, bool v) { c.settings_.checkSecurity = v; })
            .Done();
    return table;
}

HWND BackupControl::OwnerWindow() {
    const auto form = ReadMember(Host().Form().get(), L"hWnd");
    const auto number = form ? form->ToLong() : std::nullopt;
    const HWND window = number ? reinterpret_cast<HWND>(static_cast<INT_PTR>(*number)) : nullptr;
    return IsWindow(window) ? window : GetActiveWindow();
}

void BackupControl::Run(Mode mode, HWND owner) {
    // A host may set properties from a timer while the dialog is open; what was begun goes on as it was.
    const Settings settings = settings_;
    if (SystemServices::FileSize(LockFile(settings))) {
        namespace messages = msgbox::messages;
        msgbox::ShowMessage(owner, messages::othersLoggedOnPrompt, messages::othersLoggedOn);
        return;
    }
    BackupDialog dialog(mode);
    DialogEnvironment environment(dialog);
    Procedure procedure(environment, settings, mode);
    dialog.onBrowse = [&](FormState& form) { procedure.Browse(form); };
    dialog.onRun = [&](FormState& form) { procedure.Run(form); };
    dialog.Run(owner);
}

STDMETHODIMP BackupControl::Show(ActionType* action) {
    return Guard([&] {
        const Mode mode = *Required(action) != Restore ? Mode::backup : Mode::restore;
        const DialogScope scope(*this);
        const HWND owner = OwnerWindow();
        try {
            Run(mode, owner);
        } catch (...) {
            const RunTimeError error = CurrentError();
            ShowErrorReport(owner, error.Number(), Discreet(error.Description(), settings_));
        }
    });
}

STDMETHODIMP BackupControl::ShowAbout() {
    return Guard([&] {
        const DialogScope scope(*this);
        ShowAboutBox(OwnerWindow());
    });
}

Size BackupControl::DefaultPixelSize() const { return TwipsToPixels(controlSize, Dpi{}); }

void BackupControl::OnResize(Size) { RequestPixelSize(TwipsToPixels(controlSize, WindowDpi(WindowHandle()))); }

void BackupControl::DrawControl(Surface& surface, const Rect& area) {
    if (!UserMode()) PaintControlPicture(surface, area);
}

}  // namespace qvx::backup
