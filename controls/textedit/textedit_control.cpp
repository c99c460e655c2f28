// The TextEdit control's lifetime and the user's input. Its members are in textedit_members_control.cpp.
#include "controls/textedit/textedit_control.h"

#include <olectl.h>

#include <utility>

#include "com/variant.h"
#include "common/flag_scope.h"
#include "common/keys.h"
#include "dialogs/show_message_dialog.h"
#include "win/accessible.h"
#include "win/dpi.h"
#include "win/send_key.h"
#include "win/thread_value.h"

namespace qvx::textedit {
namespace {

// Posted to the control's own window when the focus has left a text that it must not leave.
constexpr UINT leftEmptyMessage = WM_APP + 1;

// True while a box takes the focus back. The box that loses the focus to it has been left only for a moment, and not by
// the user: if it were checked too, two empty boxes would move the focus back and forth for ever.
[[gnu::section(".tls$")]] bool takingBack = false;

}  // namespace

// ---- Life ----------------------------------------------------------------------------------------------------------

void TextEditControl::OnAfterRead() {
    ambientFont_.Remember(Host());
    DataTypeChanged();
    if (rules_.dataType != data_type::none) NormaliseInPlace();
}

void TextEditControl::OnWindowCreated(HWND window) {
    // In a designer, the box is only a picture: a window would take the mouse from the designer.
    if (!UserMode()) return;
    box_.Create(window);
    box_.SetAccessibleName(AccessibleName());
}

// A label contains the name that users know; the control's own name is for programmers.
Text TextEditControl::AccessibleName() {
    const Text label = LabelBefore(WindowHandle());
    return label.empty() ? Host().DisplayName() : label;
}

void TextEditControl::OnResize(Size size) {
    // The text determines the height, the host the width.
    RequestPixelSize({size.width, box_.NaturalHeight(WindowDpi(WindowHandle()))});
    box_.Resize(PixelSize());
}

void TextEditControl::TextBoxPrepared() {
    if (WindowHandle()) OnResize(PixelSize());
    Invalidate();
}

void TextEditControl::OnAmbientChange(DISPID property) {
    if (property == DISPID_AMBIENT_FONT) {
        if (const auto font = ambientFont_.Followed(Host(), box_.Font())) automation_.LoadFont(*font);
    }
    Invalidate();
}

void TextEditControl::DrawControl(Surface& surface, const Rect& area) {
    PaintTextBox(surface, box_.Look(), box_.ShownText(), area);
}

std::optional<LRESULT> TextEditControl::OnWindowMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (lParam == 0 || reinterpret_cast<HWND>(lParam) != box_.Window()) return std::nullopt;
            box_.OnCommand(HIWORD(wParam));
            return 0;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC:
            return box_.OnColors(wParam);
        case WM_SYSCOLORCHANGE:
            // The box's brush depends on the system's colours, too.
            box_.SetBackColor(box_.BackColor());
            return std::nullopt;
        case leftEmptyMessage:
            // A host may have returned the focus, or closed the form, in the meantime.
            if (HasFocus() || !InPlaceActive() || !box_.Window() || MayLeave()) return 0;
            SayEmpty();
            return 0;
        default:
            return std::nullopt;
    }
}

// ---- Keys ----------------------------------------------------------------------------------------------------------

TextEntry TextEditControl::Entry() const {
    return {box_.GetText(), static_cast<std::size_t>(box_.SelStart()), static_cast<std::size_t>(box_.SelLength()),
            box_.Locked(), box_.Tag()};
}

int TextEditControl::Take(const KeyAnswer& answer) {
    box_.SetTag(answer.tag);
    if (answer.beep) MessageBeep(MB_OK);
    return answer.key;
}

void TextEditControl::TextBoxKeyDown(int& key, int shift) {
    const auto keep = KeepAlive();
    if (key == keys::enter && settings_.useEnterKey) SendKey(keys::tab, 0);
    auto keyCode = static_cast<short>(key);
    auto state = static_cast<short>(shift);
    Fire(u"KeyDown", EventArguments().InOut(keyCode).InOut(state));
    key = keyCode & 0xFFFF;
    if (box_.Window()) key = Take(FilterKeyDown(rules_, Entry(), key));
}

void TextEditControl::TextBoxKeyPress(int& character) {
    const auto keep = KeepAlive();
    int left = std::exchange(character, 0);  // any failure below refuses the character
    // A handler of Change may write a text of its own after each step, so each step reads the text anew.
    const TextEntry before = Entry();
    if (PrepareForCharacter(rules_, before, left).selLength < before.selLength) box_.SetSelText(u"");
    const TextEntry cleared = Entry();
    const TextEntry prepared = PrepareForCharacter(rules_, cleared, left);
    if (prepared.text != cleared.text) {
        box_.SelectAll();
        box_.SetSelText(prepared.text);
    }
    left = Take(FilterCharacter(rules_, Entry(), left));
    auto keyAscii = static_cast<short>(left);
    Fire(u"KeyPress", EventArguments().InOut(keyAscii));
    character = keyAscii & 0xFFFF;
    // The text box would only beep.
    if (character == keys::enter) character = 0;
}

void TextEditControl::TextBoxKeyUp(int key, int shift) {
    const auto keep = KeepAlive();
    auto keyCode = static_cast<short>(key);
    auto state = static_cast<short>(shift);
    Fire(u"KeyUp", EventArguments().InOut(keyCode).InOut(state));
}

bool TextEditControl::WantsKey(const MSG& message) {
    if (message.message == WM_CHAR || message.message == WM_KEYUP) return true;
    return message.message == WM_KEYDOWN &&
           KeepsKey(static_cast<int>(message.wParam), ShiftState(), settings_.useEnterKey);
}

// ---- Focus ---------------------------------------------------------------------------------------------------------

void TextEditControl::TextBoxChange() { Fire(u"Change"); }

HWND TextEditControl::FocusWindow() { return box_.Window() && box_.Enabled() ? box_.Window() : WindowHandle(); }

void TextEditControl::TextBoxGotFocus() {
    if (settings_.autoSelection) box_.SelectAll();
    FocusMovesTo(box_.Window());
}

void TextEditControl::TextBoxLostFocus(HWND to) {
    const auto keep = KeepAlive();
    // The message must wait until the focus has reached its new window.
    if (LeavesBy(to) && !MayLeave()) PostMessageW(WindowHandle(), leftEmptyMessage, 0, 0);
    FocusMovesTo(to);
}

// A user who switches to another window, for instance a message box, has not left the box.
bool TextEditControl::LeavesBy(HWND to) const {
    const HWND window = WindowHandle();
    if (OfThisThread(takingBack) || !InPlaceActive() || !window || !to || to == window || IsChild(window, to))
        return false;
    return IsWindowVisible(window) && GetAncestor(to, GA_ROOT) == GetAncestor(window, GA_ROOT);
}

bool TextEditControl::MayLeave() {
    bool may = true;
    // The focus leaves even if the text cannot be normalised, as with negative places: the text then stays as it is.
    Contain([&] {
        may = settings_.allowEmpty || !IsEmptyEntry(box_.GetText());
        if (may && rules_.dataType != data_type::none) NormaliseInPlace();
    });
    return may;
}

void TextEditControl::SayEmpty() {
    const auto keep = KeepAlive();
    {
        const DialogScope dialog(*this);
        namespace messages = dialogs::messages;
        dialogs::ShowMessage(WindowHandle(), messages::emptyValuePrompt, messages::emptyValue,
                             Text(messages::emptyValueTitle));
    }
    TakeFocusBack();
}

void TextEditControl::TakeFocusBack() {
    if (!InPlaceActive() || !box_.Window()) return;
    const FlagScope scope(OfThisThread(takingBack));
    TakeFocus();
    if (!HasFocus()) SetFocus(FocusWindow());
}

STDMETHODIMP TextEditControl::TranslateAccelerator(LPMSG message) {
    const bool leaves = message && message->message == WM_KEYDOWN && message->wParam == VK_TAB &&
                        (ShiftState() & keys::controlMask) == 0 && box_.HasFocus();
    if (leaves) {
        const auto keep = KeepAlive();
        if (!MayLeave()) {
            Contain([&] { SayEmpty(); });
            return S_OK;
        }
    }
    return ControlBase::TranslateAccelerator(message);
}

}  // namespace qvx::textedit
