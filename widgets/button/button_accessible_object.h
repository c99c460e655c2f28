// A push button's object for assistive programs.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

namespace qvx::buttons {

class PushElement;

class ButtonAccessibility {
  public:
    // An object sends this message to its window to have the button pressed after its client has received the answer:
    // the click may open a dialog.
    static constexpr UINT pressMessage = WM_APP + 0x1B0;

    // The element owns this object.
    explicit ButtonAccessibility(PushElement& element) : link_(std::make_shared<PushElement*>(&element)) {}
    ~ButtonAccessibility() { *link_ = nullptr; }
    ButtonAccessibility(const ButtonAccessibility&) = delete;
    ButtonAccessibility& operator=(const ButtonAccessibility&) = delete;

    // Handles WM_GETOBJECT.
    std::optional<LRESULT> Answer(WPARAM wParam, LPARAM lParam);

  private:
    // Objects may outlive the element.
    std::shared_ptr<PushElement*> link_;
};

}  // namespace qvx::buttons
