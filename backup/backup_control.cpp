#include "backup/backup_control.h"

#include "backup/backup_dialog.h"
#include "common/about_dialog.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "server/resource.h"
#include "win/dpi.h"

namespace qvx::backup {

namespace {

// Twips: an icon on the form while it is designed.
constexpr Size iconSize{270, 270};

}  // namespace

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

STDMETHODIMP BackupControl::Show(ActionType* action) {
    return Guard([&] {
        const Mode mode = *Required(action) != Restore ? Mode::backup : Mode::restore;
        const DialogScope scope(*this);
        const HWND owner = OwnerWindow();
        try {
            if (SystemServices::FileSize(LockFile(settings_))) {
                namespace messages = msgbox::messages;
                msgbox::ShowMessage(owner, messages::othersLoggedOnPrompt, messages::othersLoggedOn);
                return;
            }
            BackupDialog(settings_, mode).Run(owner);
        } catch (...) {
            const RunTimeError error = CurrentError();
            ShowErrorReport(owner, error.Number(), error.Description());
        }
    });
}

STDMETHODIMP BackupControl::ShowAbout() {
    return Guard([&] {
        const DialogScope scope(*this);
        ShowAboutBox(OwnerWindow());
    });
}

Size BackupControl::DefaultPixelSize() const { return TwipsToPixels(iconSize, WindowDpi(WindowHandle())); }

void BackupControl::OnResize(Size size) {
    const Size fixed = DefaultPixelSize();
    if (!(size == fixed)) RequestPixelSize(fixed);
}

// A disk under an arrow, as on the toolbox picture.
void BackupControl::DrawControl(Surface& surface, const Rect& area) {
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, edge::raised, edge::allSides);
    const auto part = [&](int left, int top, int right, int bottom, OleColor color) {
        surface.FillRect({area.left + area.Width() * left / 18, area.top + area.Height() * top / 18,
                          area.left + area.Width() * right / 18, area.top + area.Height() * bottom / 18},
                         color);
    };
    part(4, 4, 14, 14, Rgb(0, 64, 128));
    part(6, 4, 12, 8, Rgb(255, 255, 255));
    part(9, 5, 11, 7, Rgb(0, 64, 128));
    part(6, 10, 12, 14, Rgb(208, 216, 224));
}

}  // namespace qvx::backup
