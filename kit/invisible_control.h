// What controls that nobody sees at run time have in common: `I` is the dual interface. Windows only.
#pragma once

#include "com/members.h"
#include "dialogs/about_dialog.h"
#include "kit/control.h"
#include "win/dpi.h"

namespace qvx {

constexpr DWORD invisibleMiscStatus = usualMiscStatus | OLEMISC_INVISIBLEATRUNTIME | OLEMISC_NOUIACTIVATE;

template <typename I>
class InvisibleControl : public Control<I> {
  public:
    STDMETHODIMP ShowAbout() override {
        return Guard([&] {
            const ControlBase::DialogScope dialog(*this);
            ShowAboutBox(OwnerWindow());
        });
    }

  protected:
    // `size` is in twips; the control keeps it whatever the host does.
    InvisibleControl(const ControlClass& controlClass, Size size) : Control<I>(controlClass), size_(size) {}
    ~InvisibleControl() override = default;

    // What the control works on may be another window than before, or none. Called often; only at run time, with
    // the control set up and a host to ask, does `working` hold.
    virtual void Follow([[maybe_unused]] bool working) {}
    // The control's picture for designers.
    virtual void DrawPicture(Surface& surface, const Rect& area) = 0;

    // The control's own window, where it has one that is in place, else null.
    HWND PlacedWindow() const { return this->InPlaceActive() ? this->WindowHandle() : nullptr; }
    // The form's window, for dialogs: the control itself has none to see.
    HWND OwnerWindow() {
        const HWND form = this->Host().FormWindow(PlacedWindow());
        return form ? form : GetActiveWindow();
    }

    Size DefaultPixelSize() const override { return TwipsToPixels(size_, Dpi{}); }
    void OnResize(Size) override { this->RequestPixelSize(TwipsToPixels(size_, WindowDpi(this->WindowHandle()))); }
    void DrawControl(Surface& surface, const Rect& area) override {
        if (!this->UserMode()) DrawPicture(surface, area);
    }
    void OnAfterRead() override { FollowHost(); }
    void OnAmbientChange(DISPID) override { FollowHost(); }
    void OnShow() override { FollowHost(); }
    void OnTerminate() override { Follow(false); }

  private:
    void FollowHost() { Follow(this->IsSetUp() && this->Host().Site() && this->UserMode()); }

    Size size_;
};

}  // namespace qvx
