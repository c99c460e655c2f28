// The window of a control, and the window that holds it while the control is not active in place.
#pragma once

#include <memory>

#include "kit/control_base.h"
#include "win/window.h"

namespace qvx {

// A hidden window, shared by the controls of a thread, that holds the windows of controls between activations.
class ParkingWindow final : public Window {
  public:
    // Returns the thread's parking window and creates it if needed; null when the system refuses one.
    static std::shared_ptr<ParkingWindow> OfThisThread();
    bool CreateParking();
};

// Passes its messages on to the control.
class ControlWindow final : public Window {
  public:
    ControlWindow(ControlBase& owner, std::shared_ptr<ParkingWindow> parking)
        : owner_(owner), parking_(std::move(parking)) {}
    ~ControlWindow() override { Destroy(); }

    // Creates the window, hidden, in `parent` or else in the parking window; false when the system refuses. The size is
    // in pixels.
    bool CreateHidden(Size size, HWND parent);
    // Hides the window and moves it into the parking window.
    void Park();
    // Does what the system does with the message by default.
    LRESULT DefaultFor(UINT message, WPARAM wParam, LPARAM lParam) { return Default(message, wParam, lParam); }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        return owner_.OnMessage(message, wParam, lParam);
    }
    void OnGone() override { owner_.OnWindowGone(); }

  private:
    ControlBase& owner_;
    std::shared_ptr<ParkingWindow> parking_;
};

}  // namespace qvx
