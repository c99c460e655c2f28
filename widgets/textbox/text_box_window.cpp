#include "widgets/textbox/text_box_window.h"

#include <utility>

#include "com/guard.h"
#include "common/flag_scope.h"
#include "common/keys.h"
#include "common/run_time_error.h"
#include "win/dpi.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx {
namespace {

constexpr int selectAllCharacter = 1;  // Ctrl+A

DWORD StyleOf(TextAlign align) {
    if (align == TextAlign::right) return ES_RIGHT;
    return align == TextAlign::center ? ES_CENTER : ES_LEFT;
}

bool HasFlatLine(const TextBoxLook& look) { return BorderThickness(look) == 1; }
bool HasEdge(const TextBoxLook& look) { return BorderThickness(look) == 2; }

}  // namespace

TextBoxWindow::~TextBoxWindow() { Destroy(); }

bool TextBoxWindow::Create(HWND parent) {
    if (!Make(parent)) return false;
    Dress(parent);
    return true;
}

// Creates the window with its contents.
bool TextBoxWindow::Make(HWND parent) {
    const TextBoxLook look = Look();
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | ES_AUTOHSCROLL | StyleOf(align_) |
                        (HasFlatLine(look) ? static_cast<DWORD>(WS_BORDER) : 0u) |
                        (enabled_ ? 0u : static_cast<DWORD>(WS_DISABLED)) |
                        (locked_ ? static_cast<DWORD>(ES_READONLY) : 0u);
    RECT room{};
    GetClientRect(parent, &room);
    const HWND window = CreateWindowExW(HasEdge(look) ? WS_EX_CLIENTEDGE : 0, L"EDIT", L"", style, 0, 0, room.right,
                                        room.bottom, parent, nullptr, ModuleInstance(), nullptr);
    if (!window) return false;
    Attach(window);
    SendMessageW(window, EM_SETLIMITTEXT, static_cast<WPARAM>(maxLength_), 0);
    if (!passwordChar_.empty()) SendMessageW(window, EM_SETPASSWORDCHAR, passwordChar_.front(), 0);
    // A new window is empty.
    if (text_.empty()) return true;
    {
        const FlagScope writing(writing_);
        SetWindowTextW(window, Wide(text_));
        SendMessageW(window, EM_EMPTYUNDOBUFFER, 0, 0);
    }
    SendMessageW(window, EM_SETSEL, static_cast<WPARAM>(selection_.start), selection_.start + selection_.length);
    return true;
}

// Applies the appearance and behaviour to the window, which takes memory.
void TextBoxWindow::Dress(HWND parent) {
    ApplyFont(false);
    name_.Attach(Window());
    toolTip_.Set(parent, Window(), qvx::Text(toolTip_.Text()));
    ApplyTouchKeys();
    drops_.Attach(*this);
}

void TextBoxWindow::Destroy() {
    const HWND window = Window();
    if (!window) return;
    LetGo();
    Detach();
    DestroyWindow(window);
}

// This is also needed when the parent destroys the window: the system keeps a drop target that is not revoked.
void TextBoxWindow::LetGo() {
    text_ = GetText();
    selection_ = SelectionOf(Window());
    drops_.Detach();
    toolTip_.Destroy();
    name_.Detach();
}

// Creates the window anew, for properties that an edit control accepts only at creation. When it throws, nothing has
// been done; afterwards, the new window does without the properties that there is no memory for.
void TextBoxWindow::Recreate() {
    const HWND old = Window();
    if (!old) return;
    const HWND parent = GetParent(old);
    const bool focused = HasFocus();
    Destroy();
    if (!Make(parent)) return;
    Contain([&] { Dress(parent); });
    if (!focused) return;
    const EditSelection selection = selection_;
    Focus();
    // A listener may have selected the text, as it does when the user enters the box; this is no such case.
    if (Window())
        SendMessageW(Window(), EM_SETSEL, static_cast<WPARAM>(selection.start), selection.start + selection.length);
}

TextBoxLook TextBoxWindow::Look() const {
    return {font_, colors_.Back(), colors_.Fore(), border_, align_, depth_, enabled_};
}

int TextBoxWindow::NaturalHeight(Dpi dpi) const { return TextBoxHeight(Look(), AcquireFont(font_, dpi)->LineHeight()); }

void TextBoxWindow::Resize(Size pixels) {
    if (!Window()) return;
    FollowResolution();
    RECT now{};
    GetWindowRect(Window(), &now);
    if (now.right - now.left == pixels.width && now.bottom - now.top == pixels.height) return;
    SetWindowPos(Window(), nullptr, 0, 0, pixels.width, pixels.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

// ---- Text and selection --------------------------------------------------------------------------------------------

qvx::Text TextBoxWindow::GetText() const { return Window() ? WindowText(Window()) : text_; }

qvx::Text TextBoxWindow::ShownText() const {
    qvx::Text text = GetText();
    return passwordChar_.empty() ? text : qvx::Text(text.size(), passwordChar_.front());
}

void TextBoxWindow::SetText(TextView text) {
    const auto room = maxLength_ > 0 ? static_cast<std::size_t>(maxLength_) : TextView::npos;
    qvx::Text wanted(text.substr(0, room));
    if (wanted == GetText()) return;
    if (!Window()) {
        text_ = std::move(wanted);
        selection_ = {};
    } else {
        const FlagScope writing(writing_);
        SetWindowTextW(Window(), Wide(wanted));
    }
    NotifyChange();
}

// The text has changed: a notification that fails for lack of memory is lost, since the change itself must not be
// reported as a failure.
void TextBoxWindow::NotifyChange() {
    Contain([&] {
        qvx::Text text = GetText();
        if (text == lastText_) return;
        lastText_ = std::move(text);
        listener_.TextBoxChange();
    });
}

int TextBoxWindow::SelStart() const { return Window() ? SelectionOf(Window()).start : selection_.start; }

void TextBoxWindow::SetSelStart(int start) {
    if (Window()) {
        SetSelectionStart(Window(), start);
        return;
    }
    selection_ = ClampedSelection(start, 0, text_.size());
}

int TextBoxWindow::SelLength() const { return Window() ? SelectionOf(Window()).length : selection_.length; }

void TextBoxWindow::SetSelLength(int length) {
    if (Window()) {
        SetSelectionLength(Window(), length);
        return;
    }
    selection_ = ClampedSelection(selection_.start, length, text_.size());
}

qvx::Text TextBoxWindow::SelText() const {
    if (Window()) return SelectedText(Window());
    return text_.substr(static_cast<std::size_t>(selection_.start), static_cast<std::size_t>(selection_.length));
}

void TextBoxWindow::SetSelText(TextView text) {
    if (Window()) {
        const FlagScope writing(writing_);
        ReplaceSelection(Window(), text);
    } else {
        text_.replace(static_cast<std::size_t>(selection_.start), static_cast<std::size_t>(selection_.length), text);
        selection_ = {selection_.start + static_cast<int>(text.size()), 0};
    }
    NotifyChange();
}

void TextBoxWindow::SelectAll() {
    if (Window()) {
        SendMessageW(Window(), EM_SETSEL, 0, -1);
        return;
    }
    selection_ = {0, static_cast<int>(text_.size())};
}

// ---- Members -------------------------------------------------------------------------------------------------------

void TextBoxWindow::SetMaxLength(int length) {
    if (length < 0) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    maxLength_ = length;
    if (Window()) SendMessageW(Window(), EM_SETLIMITTEXT, static_cast<WPARAM>(length), 0);
}

void TextBoxWindow::SetLocked(bool locked) {
    locked_ = locked;
    if (Window()) SendMessageW(Window(), EM_SETREADONLY, locked, 0);
}

void TextBoxWindow::SetEnabled(bool enabled) {
    enabled_ = enabled;
    if (Window()) EnableWindow(Window(), enabled);
}

// The system's edit control decides at creation about its border and the position of its text.
template <class Value>
bool TextBoxWindow::Remake(Value& value, Value wanted) {
    if (value == wanted) return false;
    TentativeValue tentative(value, wanted);
    Recreate();
    tentative.Done();
    return true;
}

void TextBoxWindow::SetAlignment(TextAlign align) { Remake(align_, align); }

void TextBoxWindow::SetBorderStyle(TextBorder border) {
    if (Remake(border_, border)) listener_.TextBoxPrepared();
}

void TextBoxWindow::SetAppearance(TextDepth depth) {
    if (Remake(depth_, depth)) listener_.TextBoxPrepared();
}

void TextBoxWindow::SetPasswordChar(TextView character) {
    passwordChar_ = character.substr(0, 1);
    if (!Window()) return;
    SendMessageW(Window(), EM_SETPASSWORDCHAR, passwordChar_.empty() ? 0 : passwordChar_.front(), 0);
    InvalidateRect(Window(), nullptr, TRUE);
}

void TextBoxWindow::SetFont(const FontSpec& font) {
    font_ = font;
    if (Window()) ApplyFont(true);
    listener_.TextBoxPrepared();
}

void TextBoxWindow::ApplyFont(bool repaint) {
    dpi_ = WindowDpi(Window());
    // The previous font is released only after the window has stopped using it.
    const SharedFont before = std::exchange(gdiFont_, AcquireFont(font_, dpi_));
    SendMessageW(Window(), WM_SETFONT, reinterpret_cast<WPARAM>(gdiFont_->Get()), repaint);
}

void TextBoxWindow::FollowResolution() {
    if (Window() && WindowDpi(Window()) != dpi_) ApplyFont(true);
}

void TextBoxWindow::SetBackColor(OleColor color) {
    colors_.SetBack(color);
    if (Window()) InvalidateRect(Window(), nullptr, TRUE);
}

void TextBoxWindow::SetForeColor(OleColor color) {
    colors_.SetFore(color);
    if (Window()) InvalidateRect(Window(), nullptr, TRUE);
}

void TextBoxWindow::SetTouchKeys(TouchKeys keys) {
    if (std::exchange(touchKeys_, keys) != keys) ApplyTouchKeys();
}

// Systems without touch keyboards lack the call, or the library.
void TextBoxWindow::ApplyTouchKeys() {
    if (!Window()) return;
    using SetInputScope = HRESULT(WINAPI*)(HWND, int);
    static const auto call = [] {
        const HMODULE library = LoadLibraryExW(L"msctf.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        const FARPROC address = library ? GetProcAddress(library, "SetInputScope") : nullptr;
        return reinterpret_cast<SetInputScope>(reinterpret_cast<void*>(address));
    }();
    if (call) call(Window(), static_cast<int>(touchKeys_));
}

// ---- Messages ------------------------------------------------------------------------------------------------------

void TextBoxWindow::OnCommand(WORD code) {
    if (code == EN_CHANGE && !writing_) NotifyChange();
}

LRESULT TextBoxWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return OnKey(message, wParam, lParam);
        case WM_CHAR:
            return OnCharacter(wParam, lParam);
        case WM_KEYUP:
        case WM_SYSKEYUP: {
            const LifeWatch alive = Watch();
            listener_.TextBoxKeyUp(static_cast<int>(wParam), ShiftState());
            return alive.Alive() && Window() ? Default(message, wParam, lParam) : 0;
        }
        case WM_SETFOCUS: {
            const LRESULT result = Default(message, wParam, lParam);
            listener_.TextBoxGotFocus();
            return result;
        }
        case WM_KILLFOCUS: {
            const LRESULT result = Default(message, wParam, lParam);
            listener_.TextBoxLostFocus(reinterpret_cast<HWND>(wParam));
            return result;
        }
        case WM_DPICHANGED_AFTERPARENT:
            FollowResolution();
            return Default(message, wParam, lParam);
        case WM_DESTROY:
            LetGo();
            return Default(message, wParam, lParam);
        default:
            return Default(message, wParam, lParam);
    }
}

LRESULT TextBoxWindow::OnKey(UINT message, WPARAM wParam, LPARAM lParam) {
    const LifeWatch alive = Watch();
    auto key = static_cast<int>(wParam);
    listener_.TextBoxKeyDown(key, ShiftState());
    if (!alive.Alive() || !Window() || key == 0) return 0;
    return Default(message, static_cast<WPARAM>(key), lParam);
}

LRESULT TextBoxWindow::OnCharacter(WPARAM wParam, LPARAM lParam) {
    const LifeWatch alive = Watch();
    auto character = static_cast<int>(wParam);
    listener_.TextBoxKeyPress(character);
    if (!alive.Alive() || !Window() || character == 0) return 0;
    if (character == selectAllCharacter) {
        SelectAll();
        return 0;
    }
    return Default(WM_CHAR, static_cast<WPARAM>(character), lParam);
}

}  // namespace qvx
