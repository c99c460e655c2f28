// The Backup control: its settings, and opening the dialog.
#pragma once

#include <olectl.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/backup/settings.h"
#include "kit/invisible_control.h"

namespace qvx::backup {

class BackupControl final : public InvisibleControl<_Backup>, private MemberAccess<BackupControl> {
  public:
    static const ControlClass classInfo;

    BackupControl();

    const PropertyTable& Properties() override;

    QVX_FIELD(BSTR, CnnString, Settings::cnnString)
    QVX_FIELD(BSTR, Database, Settings::database)
    QVX_FIELD(BSTR, TempPath, Settings::tempPath)
    QVX_FIELD(BSTR, DataPath, Settings::dataPath)
    QVX_FIELD(BSTR, ZipPath, Settings::zipPath)
    QVX_FIELD(BSTR, BackupExtension, Settings::backupExtension)
    QVX_FIELD(BSTR, DataExtension, Settings::dataExtension)
    QVX_FIELD(VARIANT_BOOL, CheckSecurity, Settings::checkSecurity)

    // Opens the dialog; any number but 0 opens it for a backup. The value that `action` points to is not changed;
    // returns E_POINTER for null.
    STDMETHODIMP Show(ActionType* action) override;

  protected:
    void DrawPicture(Surface& surface, const Rect& area) override;

  private:
    friend MemberAccess;
    friend PropertyRows<BackupControl>;

    ~BackupControl() override = default;

    Settings& PartOf(std::type_identity<Settings>) { return settings_; }
    void Run(Mode mode, HWND owner);

    Settings settings_;
};

}  // namespace qvx::backup
