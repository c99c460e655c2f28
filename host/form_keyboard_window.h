// Keyboard and focus of a form: which control is active, and what keys mean that the controls leave to the form.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "host/form_control.h"
#include "host/tab_order.h"

namespace qvx::host {

class FormKeyboard {
  public:
    // The form outlives it.
    explicit FormKeyboard(HostForm& form) : form_(form) {}

    // True when the form has used the key message: by its active control, a menu, Tab, an access key, or as Enter and
    // Escape for the default and cancel buttons.
    bool TranslateKey(MSG& message);
    // The form's own part of the above, for keys that a control hands back. `shift` holds the bits of key events.
    bool HandleKey(MSG& message, int shift);

    // Looks who has the focus, and notifies the control that lost it and the one that got it.
    void FollowFocus();
    // The control that has the focus, or had it last; null for none.
    FormControl* Active() const { return active_; }
    // Gives the focus to the active control, if it takes it.
    void FocusActive() const;
    // Gives the focus to the first control, unless one is active.
    void FocusFirst();
    // What is typed into the active control counts as entered.
    void FinishInput() const;
    // The control is being destroyed.
    void Forget(const FormControl& control);
    void ForgetAll() { active_ = nullptr; }

  private:
    std::vector<TabStop> TabStops() const;
    std::optional<std::size_t> PositionOf(const FormControl* control) const;
    void FocusNext(bool forward, const MSG* message);
    bool PressAccessKey(MSG& message);
    bool PressDefaultOrCancel(MSG& message);

    HostForm& form_;
    FormControl* active_ = nullptr;
};

}  // namespace qvx::host
