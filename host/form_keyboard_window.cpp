// Keyboard and focus of a form.
#include "common/keys.h"
#include "host/form_window.h"
#include "host/tab_order.h"

namespace qvx::host {

namespace {

bool IsKeyMessage(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }
bool IsMouseMessage(UINT message) { return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST; }

}  // namespace

FormControl* HostForm::ControlOf(HWND window) const {
    for (; window && window != Handle(); window = GetParent(window)) {
        for (const auto& control : controls_) {
            if (control->Window() == window) return control.get();
        }
    }
    return nullptr;
}

void HostForm::FollowFocus() {
    if (!Handle() || options_.design) return;
    const HWND focus = GetFocus();
    if (!focus || !IsChild(Handle(), focus)) return;  // elsewhere: the form keeps its active control
    FormControl* now = ControlOf(focus);
    if (!now || now == active_) return;
    FormControl* before = active_;
    active_ = now;
    if (before) {
        before->OnLeft();
        Fire(*before, u"LostFocus", {});
    }
    // The handler may have moved the focus on, or closed the form.
    if (active_ == now && Handle()) Fire(*now, u"GotFocus", {});
}

bool HostForm::TranslateKey(MSG& message) {
    const bool inside = message.hwnd == Handle() || IsChild(Handle(), message.hwnd);
    if (!inside) return false;
    if (options_.design) {
        // Controls under design are looked at, not used.
        const bool input = IsKeyMessage(message.message) || IsMouseMessage(message.message);
        if (input && message.hwnd != Handle()) {
            if (IsMouseMessage(message.message)) return true;
            message.hwnd = Handle();
        }
        return IsKeyMessage(message.message) && HandleKey(message, ShiftState());
    }
    if (!IsKeyMessage(message.message)) return false;
    FormControl* focused = ControlOf(GetFocus());
    if (focused && focused->TranslateKey(message)) return true;
    return HandleKey(message, ShiftState());
}

bool HostForm::HandleKey(MSG& message, int shift) {
    if (message.message == WM_SYSCHAR) return PressAccessKey(message);
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
    const int key = static_cast<int>(message.wParam);
    if (const MenuItem* item = menus_.FindShortcut({key, shift})) {
        SendMessageW(Handle(), WM_COMMAND, item->id, 0);
        return true;
    }
    if (options_.design || message.message != WM_KEYDOWN) return false;
    if (key == keys::tab && (shift & ~keys::shiftMask) == 0) {
        FocusNext((shift & keys::shiftMask) == 0, &message);
        return true;
    }
    if ((key == keys::enter || key == keys::escape) && shift == 0) return PressDefaultOrCancel(message);
    return false;
}

std::vector<TabStop> HostForm::TabStops() const {
    std::vector<TabStop> stops;
    for (const auto& control : controls_) {
        stops.push_back({control->TabIndex(), control->HasTabStop() && control->CanFocus()});
    }
    return stops;
}

void HostForm::FocusNext(bool forward, const MSG* message) {
    std::optional<std::size_t> from;
    const FormControl* focused = ControlOf(GetFocus());
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        if (focused == controls_[i].get()) from = i;
    }
    if (const auto next = NextTabStop(TabStops(), from, forward)) controls_[*next]->Focus(message);
}

bool HostForm::PressAccessKey(MSG& message) {
    if (options_.design) return false;
    std::vector<AccessStop> stops;
    std::optional<std::size_t> from;
    const auto pressed = static_cast<char16_t>(message.wParam);
    const FormControl* focused = ControlOf(GetFocus());
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        const FormControl& control = *controls_[i];
        const std::vector<char16_t> keys = control.AccessKeys();
        stops.push_back({control.TabIndex(), Text(keys.begin(), keys.end()), control.Reachable()});
        if (focused == &control) from = i;
    }
    const auto found = FindAccessKey(stops, pressed, from);
    if (!found) return false;
    FormControl& control = *controls_[*found];
    if (control.CanFocus()) {
        control.Focus(nullptr);
        control.OnAccessKey(message);
        return true;
    }
    // The key of a label is meant for the field behind it.
    if (const auto next = NextTabStop(TabStops(), *found, true)) {
        controls_[*next]->Focus(&message);
    } else {
        control.OnAccessKey(message);
    }
    return true;
}

bool HostForm::PressDefaultOrCancel(MSG& message) {
    const bool enter = static_cast<int>(message.wParam) == keys::enter;
    FormControl* focused = ControlOf(GetFocus());
    if (enter && focused && focused->TakesReturn()) return false;
    // A button that has the focus is what Enter means, whichever is the form's default.
    if (enter && focused && focused->IsButton()) {
        focused->OnAccessKey(message);
        return true;
    }
    for (const auto& control : controls_) {
        const bool meant = enter ? control->IsDefault() : control->IsCancel();
        if (!meant || !control->Reachable()) continue;
        control->OnAccessKey(message);
        return true;
    }
    // Without such a button Enter would only make a single-line text box sound the beep.
    return enter && focused && focused->IgnoresReturn();
}

}  // namespace qvx::host
