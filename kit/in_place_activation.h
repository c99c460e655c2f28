// A control's activation in place: the windows of the host that it is in, and the calls to the host that lead there and
// back. The host may cancel an activation in any of these calls.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include <functional>

#include "com/pointer.h"

namespace qvx {

class InPlaceActivation {
  public:
    // Whether the control's window is in the host's.
    bool Active() const { return active_; }
    // Whether it has the host's keys and menus as well.
    bool UiActive() const { return uiActive_; }
    // Whether it is active, or about to be.
    bool UnderWay() const { return active_ || beginning_; }
    // Null while the control is not active.
    const ComPtr<IOleInPlaceSite>& Site() const { return site_; }
    const ComPtr<IOleInPlaceFrame>& Frame() const { return frame_; }

    // Where the host wants the control, in pixels of its window.
    struct Place {
        RECT position{};
        RECT clip{};
    };
    // Activates. `enter` moves the control's window into the one it is given, and returns whether that worked. Throws
    // ComError when the host refuses or cancels; the host's activation is undone then.
    Place Begin(const ComPtr<IOleClientSite>& client, const std::function<bool(HWND)>& enter);
    // Does nothing unless the control is active. `object` and `name` are announced to the host's windows.
    void BeginUi(IOleInPlaceActiveObject& object, const wchar_t* name);
    void EndUi();
    // Deactivates, or cancels an activation that is under way. `leave` takes the window out of the host's.
    void End(const std::function<void()>& leave);
    // Notifies no one, for a control that is being destroyed.
    void Forget() { active_ = uiActive_ = false; }

  private:
    ComPtr<IOleInPlaceSite> site_;
    ComPtr<IOleInPlaceFrame> frame_;
    ComPtr<IOleInPlaceUIWindow> window_;
    bool beginning_ = false;  // the host is being notified, and may still cancel
    bool active_ = false;
    bool uiActive_ = false;
};

}  // namespace qvx
