// The Backup control: what a host tells it of its database, and the dialog that backs it up or restores it.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "backup/settings.h"
#include "server/control.h"

namespace qvx::backup {

class BackupControl final : public Control<_Backup> {
  public:
    static const ControlClass classInfo;

    BackupControl() : Control(classInfo) {}

    const PropertyTable& Properties() override;

    STDMETHODIMP get_CnnString(BSTR* result) override { return Give(result, settings_.cnnString); }
    STDMETHODIMP put_CnnString(BSTR value) override { return Take(u"CnnString", settings_.cnnString, value); }
    STDMETHODIMP get_Database(BSTR* result) override { return Give(result, settings_.database); }
    STDMETHODIMP put_Database(BSTR value) override { return Take(u"Database", settings_.database, value); }
    STDMETHODIMP get_TempPath(BSTR* result) override { return Give(result, settings_.tempPath); }
    STDMETHODIMP put_TempPath(BSTR value) override { return Take(u"TempPath", settings_.tempPath, value); }
    STDMETHODIMP get_DataPath(BSTR* result) override { return Give(result, settings_.dataPath); }
    STDMETHODIMP put_DataPath(BSTR value) override { return Take(u"DataPath", settings_.dataPath, value); }
    STDMETHODIMP get_ZipPath(BSTR* result) override { return Give(result, settings_.zipPath); }
    STDMETHODIMP put_ZipPath(BSTR value) override { return Take(u"ZipPath", settings_.zipPath, value); }
    STDMETHODIMP get_BackupExtension(BSTR* result) override { return Give(result, settings_.backupExtension); }
    STDMETHODIMP put_BackupExtension(BSTR value) override {
        return Take(u"BackupExtension", settings_.backupExtension, value);
    }
    STDMETHODIMP get_DataExtension(BSTR* result) override { return Give(result, settings_.dataExtension); }
    STDMETHODIMP put_DataExtension(BSTR value) override {
        return Take(u"DataExtension", settings_.dataExtension, value);
    }
    STDMETHODIMP get_CheckSecurity(VARIANT_BOOL* result) override { return Give(result, settings_.checkSecurity); }
    STDMETHODIMP put_CheckSecurity(VARIANT_BOOL value) override {
        return Take(u"CheckSecurity", settings_.checkSecurity, value);
    }
    // Returns when the dialog is closed; what fails inside is told to the user, not to the caller. Anything but 0 backs
    // up.
    STDMETHODIMP Show(::ActionType* action) override;
    STDMETHODIMP ShowAbout() override;

  protected:
    Size DefaultPixelSize() const override;
    void OnResize(Size pixels) override;
    void DrawControl(Surface& surface, const Rect& area) override;

  private:
    ~BackupControl() override = default;

    template <typename Result, typename Value>
    static HRESULT Give(Result* result, const Value& value);
    template <typename Field, typename Given>
    HRESULT Take(TextView name, Field& field, Given value);
    void Run(Mode mode);
    HWND OwnerWindow() const;

    Settings settings_;
};

}  // namespace qvx::backup
