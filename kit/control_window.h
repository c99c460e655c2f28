// The window of a control, and where it lies while the control is not active in place.
#pragma once

#include <memory>

#include "kit/control_base.h"
#include "win/window.h"

namespace qvx {

// A hidden window, shared by the controls of a thread, that holds the windows of controls between activations.
class ParkingWindow final : public Window {
  public:
    static std::shared_ptr<ParkingWindow> OfThisThread();
    bool CreateParking();
};

class ControlWindow final : public Window {
  public:
    ControlWindow(ControlBase& owner, std::shared_ptr<ParkingWindow> parking)
        : owner_(owner), parking_(std::move(parking)) {}
    ~ControlWindow() override { Destroy(); }

    // Parked, of the given size in pixels.
    bool CreateParked(Size size);
    void Park();
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
