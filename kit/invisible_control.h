// The common parts of controls that are invisible at run time: `I` is the dual interface. Windows only.
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

    // Called often, because the window that the control works on may have changed or gone. `working` holds only at run
    // time, with the control set up and a host to ask.
    virtual void Follow([[maybe_unused]] bool working) {}
    // Draws the control's picture for designers.
    virtual void DrawPicture(Surface& surface, const Rect& area) = 0;

    // Returns the control's own window while it is active in place, else null.
    HWND PlacedWindow() const { return this->InPlaceActive() ? this->WindowHandle() : nullptr; }
    // Returns the form's window as the owner of dialogs, because the control itself is not visible; else the active
    // window.
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
