#include "controls/backup/backup_control.h"

#include "controls/backup/backup_dialog.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/dialog_steps_win32.h"
#include "controls/backup/procedure.h"
#include "dialogs/show_message_dialog.h"
#include "drawing/block_picture.h"
#include "kit/error_report.h"
#include "kit/resource.h"

namespace qvx::backup {

namespace {
constexpr Size twips{270, 270};
}

const ControlClass BackupControl::classInfo{&CLSID_Backup,
                                            &DIID___Backup,
                                            L"Backup",
                                            L"Saves a database to an archive and brings it back",
                                            QVX_TOOLBOX_BACKUP,
                                            invisibleMiscStatus,
                                            &CreateControl<BackupControl>};

BackupControl::BackupControl() : InvisibleControl(classInfo, twips) {}

const PropertyTable& BackupControl::Properties() {
    static const PropertyTable table = PropertyRows<BackupControl>()
                                           .Field(u"CnnString", &Settings::cnnString)
                                           .Field(u"Database", &Settings::database)
                                           .Field(u"TempPath", &Settings::tempPath)
                                           .Field(u"DataPath", &Settings::dataPath)
                                           .Field(u"ZipPath", &Settings::zipPath)
                                           .Field(u"BackupExtension", &Settings::backupExtension)
                                           .Field(u"DataExtension", &Settings::dataExtension)
                                           .Field(u"CheckSecurity", &Settings::checkSecurity)
                                           .Done();
    return table;
}

void BackupControl::Run(Mode mode, HWND owner) {
    // A host may set properties from a timer while the dialog is open; a run in progress uses the old ones.
    const Settings settings = settings_;
    if (SystemServices().FileSize(LockFile(settings))) {
        namespace messages = dialogs::messages;
        dialogs::ShowMessage(owner, messages::othersLoggedOnPrompt, messages::othersLoggedOn);
        return;
    }
    BackupDialog dialog(mode);
    DialogSteps user(dialog);
    SystemServices system([&] { return dialog.Handle(); });
    Procedure procedure(user, system, settings, mode);
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
            ShowErrorReport(owner, error.Number(), Redacted(error.Description()));
        }
    });
}

// A disk.
void BackupControl::DrawPicture(Surface& surface, const Rect& area) {
    constexpr OleColor body = Rgb(0, 0, 128);
    constexpr OleColor paper = Rgb(255, 255, 255);
    constexpr OleColor metal = Rgb(192, 192, 192);
    static const PictureBlock disk[] = {
        {{3, 3, 15, 15}, body},    // the case
        {{5, 8, 13, 15}, paper},   // the label
        {{6, 10, 12, 11}, metal},  // and the writing on it
        {{6, 12, 12, 13}, metal}, {{6, 3, 12, 7}, metal}, {{10, 4, 11, 6}, body},
    };
    DrawBlockPicture(surface, area, 18, disk);
}

}  // namespace qvx::backup
