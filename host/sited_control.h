// A component control on a form: the site it lives in, its events, and its properties in the form file.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include "com/pointer.h"
#include "host/event_sink_object.h"
#include "host/form_control.h"

namespace qvx::host {

class SitedControl final : public FormControl {
  public:
    // Creates, loads and activates the control; one that is `fresh` is placed for the first time, and takes its
    // defaults instead of loading. Throws FormFileError with the line of the block.
    SitedControl(HostForm& form, const Block& block, FormControl* container, bool fresh = false);
    ~SitedControl() override;

    HWND Window() const override;
    void Focus(const MSG* message) override;
    bool Enabled() const override;
    void SetEnabled(bool enabled) override;
    ComPtr<IDispatch> Inner() const override { return members_; }
    bool TranslateKey(MSG& message) override;
    std::vector<char16_t> AccessKeys() const override;
    void OnAccessKey(MSG& message) override;
    bool TakesReturn() const override;
    bool IsButton() const override { return (status_ & OLEMISC_ACTSLIKEBUTTON) != 0; }
    void OnLeft() override;
    void OnAmbientChanged(DISPID property) override;
    // The classes of the control's own property pages.
    std::vector<CLSID> Pages() const;
    IUnknown* Object() const { return object_.get(); }

  protected:
    bool AcceptsFocus() const override;
    void ApplyBounds(const RECT& pixels) override;
    void ApplyVisible(bool visible) override;
    void SaveOwn(SavedProperties& saved) override;
    std::vector<Text> KnownProperties() const override { return known_; }

  private:
    class Site;
    class ChangeSink;

    void Load(const Block& block, bool fresh);
    // Under design, the control notifies the form when it has something new to save.
    void WatchChanges();
    // Removes the control from its form, even when it was only partly loaded.
    void Unload();
    void LoadProperties(const Block& block, bool fresh);
    void Activate();
    HRESULT DoVerb(LONG verb, const MSG* message);
    CONTROLINFO Info() const;

    ComPtr<Site> site_;
    ComPtr<IUnknown> object_;
    ComPtr<IOleObject> ole_;
    ComPtr<IOleControl> control_;
    ComPtr<IOleInPlaceObject> inPlace_;
    ComPtr<IOleInPlaceActiveObject> active_;
    ComPtr<IPersistPropertyBag> persist_;
    ComPtr<IDispatch> members_;
    ComPtr<EventSink> events_;
    ComPtr<ChangeSink> changes_;
    std::vector<Text> known_;
    DWORD status_ = 0;  // OLEMISC_...
    bool activated_ = false;
};

}  // namespace qvx::host
