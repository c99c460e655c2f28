#include "host/form_keyboard_window.h"

#include "common/keys.h"
#include "host/form_window.h"

namespace qvx::host {

namespace {

bool IsKeyMessage(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }
bool IsMouseMessage(UINT message) { return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST; }

}  // namespace

// --- Focus.

void FormKeyboard::FollowFocus() {
    if (!form_.Handle() || form_.DesignMode()) return;
    const HWND focus = GetFocus();
    // While the focus is elsewhere, the form keeps its active control.
    if (!focus || !IsChild(form_.Handle(), focus)) return;
    FormControl* now = form_.ControlOf(focus);
    if (!now || now == active_) return;
    FormControl* before = active_;
    active_ = now;
    if (before) {
        before->OnLeft();
        form_.Fire(*before, u"LostFocus", {});
    }
    // The handler may have moved the focus on, or closed the form.
    if (active_ == now && form_.Handle()) form_.Fire(*now, u"GotFocus", {});
}

void FormKeyboard::FocusActive() const {
    if (active_ && active_->CanFocus()) active_->Focus(nullptr);
}

void FormKeyboard::FocusFirst() {
    if (!active_) FocusNext(true, nullptr);
}

void FormKeyboard::FinishInput() const {
    if (active_) active_->OnLeft();
}

void FormKeyboard::Forget(const FormControl& control) {
    if (active_ == &control) active_ = nullptr;
}

// --- Keys.

bool FormKeyboard::TranslateKey(MSG& message) {
    const HWND window = form_.Handle();
    const bool inside = message.hwnd == window || IsChild(window, message.hwnd);
    if (!inside) return false;
    if (form_.DesignMode()) {
        // Controls under design are looked at, not used.
        const bool input = IsKeyMessage(message.message) || IsMouseMessage(message.message);
        if (input && message.hwnd != window) {
            if (IsMouseMessage(message.message)) return true;
            message.hwnd = window;
        }
        return IsKeyMessage(message.message) && HandleKey(message, ShiftState());
    }
    if (!IsKeyMessage(message.message)) return false;
    FormControl* focused = form_.ControlOf(GetFocus());
    if (focused && focused->TranslateKey(message)) return true;
    return HandleKey(message, ShiftState());
}

bool FormKeyboard::HandleKey(MSG& message, int shift) {
    if (message.message == WM_SYSCHAR) return PressAccessKey(message);
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
    const int key = static_cast<int>(message.wParam);
    if (const MenuItem* item = form_.Menus().FindShortcut({key, shift})) {
        SendMessageW(form_.Handle(), WM_COMMAND, item->id, 0);
        return true;
    }
    if (form_.DesignMode() || message.message != WM_KEYDOWN) return false;
    if (key == keys::tab && (shift & ~keys::shiftMask) == 0) {
        FocusNext((shift & keys::shiftMask) == 0, &message);
        return true;
    }
    if ((key == keys::enter || key == keys::escape) && shift == 0) return PressDefaultOrCancel(message);
    return false;
}

std::vector<TabStop> FormKeyboard::TabStops() const {
    std::vector<TabStop> stops;
    for (const auto& control : form_.Controls()) {
        stops.push_back({control->TabIndex(), control->HasTabStop() && control->CanFocus()});
    }
    return stops;
}

std::optional<std::size_t> FormKeyboard::PositionOf(const FormControl* control) const {
    const auto& controls = form_.Controls();
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (controls[i].get() == control) return i;
    }
    return std::nullopt;
}

void FormKeyboard::FocusNext(bool forward, const MSG* message) {
    const auto from = PositionOf(form_.ControlOf(GetFocus()));
    if (const auto next = NextTabStop(TabStops(), from, forward)) form_.Controls()[*next]->Focus(message);
}

bool FormKeyboard::PressAccessKey(MSG& message) {
    if (form_.DesignMode()) return false;
    std::vector<AccessStop> stops;
    for (const auto& control : form_.Controls()) {
        const std::vector<char16_t> keys = control->AccessKeys();
        stops.push_back({control->TabIndex(), Text(keys.begin(), keys.end()), control->Reachable()});
    }
    const auto from = PositionOf(form_.ControlOf(GetFocus()));
    const auto found = FindAccessKey(stops, static_cast<char16_t>(message.wParam), from);
    if (!found) return false;
    FormControl& control = *form_.Controls()[*found];
    if (control.CanFocus()) {
        control.Focus(nullptr);
        control.OnAccessKey(message);
        return true;
    }
    // The access key of a label is that of the field after it.
    if (const auto next = NextTabStop(TabStops(), *found, true)) {
        form_.Controls()[*next]->Focus(&message);
    } else {
        control.OnAccessKey(message);
    }
    return true;
}

bool FormKeyboard::PressDefaultOrCancel(MSG& message) {
    const bool enter = static_cast<int>(message.wParam) == keys::enter;
    FormControl* focused = form_.ControlOf(GetFocus());
    if (enter && focused && focused->TakesReturn()) return false;
    // Enter presses a button that has the focus, whichever is the form's default.
    if (enter && focused && focused->IsButton()) {
        focused->OnAccessKey(message);
        return true;
    }
    for (const auto& control : form_.Controls()) {
        const bool meant = enter ? control->IsDefault() : control->IsCancel();
        if (!meant || !control->Reachable()) continue;
        control->OnAccessKey(message);
        return true;
    }
    // Without such a button, Enter would only make a single-line text box beep.
    return enter && focused && focused->IgnoresReturn();
}

}  // namespace qvx::host
