// The Backup control: its settings, and opening the dialog.
#pragma once

#include <olectl.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/backup/settings.h"
#include "kit/invisible_control.h"

namespace qvx::backup {

class BackupControl final : public InvisibleControl<_Backup> {
  public:
    static const ControlClass classInfo;

    BackupControl();

    const PropertyTable& Properties() override;

    STDMETHODIMP get_CnnString(BSTR* result) override { return Get(result, &Settings::cnnString); }
    STDMETHODIMP put_CnnString(BSTR value) override { return Put(u"CnnString", &Settings::cnnString, value); }
    STDMETHODIMP get_Database(BSTR* result) override { return Get(result, &Settings::database); }
    STDMETHODIMP put_Database(BSTR value) override { return Put(u"Database", &Settings::database, value); }
    STDMETHODIMP get_TempPath(BSTR* result) override { return Get(result, &Settings::tempPath); }
    STDMETHODIMP put_TempPath(BSTR value) override { return Put(u"TempPath", &Settings::tempPath, value); }
    STDMETHODIMP get_DataPath(BSTR* result) override { return Get(result, &Settings::dataPath); }
    STDMETHODIMP put_DataPath(BSTR value) override { return Put(u"DataPath", &Settings::dataPath, value); }
    STDMETHODIMP get_ZipPath(BSTR* result) override { return Get(result, &Settings::zipPath); }
    STDMETHODIMP put_ZipPath(BSTR value) override { return Put(u"ZipPath", &Settings::zipPath, value); }
    STDMETHODIMP get_BackupExtension(BSTR* result) override { return Get(result, &Settings::backupExtension); }
    STDMETHODIMP put_BackupExtension(BSTR value) override {
        return Put(u"BackupExtension", &Settings::backupExtension, value);
    }
    STDMETHODIMP get_DataExtension(BSTR* result) override { return Get(result, &Settings::dataExtension); }
    STDMETHODIMP put_DataExtension(BSTR value) override {
        return Put(u"DataExtension", &Settings::dataExtension, value);
    }
    STDMETHODIMP get_CheckSecurity(VARIANT_BOOL* result) override { return Get(result, &Settings::checkSecurity); }
    STDMETHODIMP put_CheckSecurity(VARIANT_BOOL value) override {
        return Put(u"CheckSecurity", &Settings::checkSecurity, value);
    }

    // Opens the dialog; any number but 0 opens it for a backup. The value that `action` points to is not changed;
    // returns E_POINTER for null.
    STDMETHODIMP Show(ActionType* action) override;

  protected:
    void DrawPicture(Surface& surface, const Rect& area) override;

  private:
    ~BackupControl() override = default;

    template <class Result, class Value>
    HRESULT Get(Result* result, Value Settings::*field) {
        return Give(result, [&] { return settings_.*field; });
    }
    using Control::Put;
    template <class Value, class Given>
    HRESULT Put(TextView name, Value Settings::*field, Given given) {
        return Put(name, [&] { settings_.*field = FromHost<Value>(given); });
    }
    void Run(Mode mode, HWND owner);

    Settings settings_;
};

}  // namespace qvx::backup
