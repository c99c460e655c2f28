// A push button's object for assistive programs.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

namespace qvx::buttons {

class PushElement;

class ButtonAccessibility {
  public:
    // Sent by an object to its window to have the button pressed once its client has its answer: the click may well
    // open a dialog.
    static constexpr UINT pressMessage = WM_APP + 0x1B0;

    // The element owns this.
    explicit ButtonAccessibility(PushElement& element) : link_(std::make_shared<PushElement*>(&element)) {}
    ~ButtonAccessibility() { *link_ = nullptr; }
    ButtonAccessibility(const ButtonAccessibility&) = delete;
    ButtonAccessibility& operator=(const ButtonAccessibility&) = delete;

    // WM_GETOBJECT.
    std::optional<LRESULT> Answer(WPARAM wParam, LPARAM lParam);

  private:
    // Objects may outlive the element.
    std::shared_ptr<PushElement*> link_;
};

}  // namespace qvx::buttons
