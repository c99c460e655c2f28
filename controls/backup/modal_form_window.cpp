#include "controls/backup/modal_form_window.h"

#include <utility>

#include "widgets/button/access_key.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::backup {

namespace {

constexpr WindowClass formClass{L"QvxForm"};
constexpr DWORD formStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD formExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace

// ---- What is on it -------------------------------------------------------------------------------------------------

bool ModalForm::Open(HWND owner, TextView caption) {
    owner_ = owner ? GetAncestor(owner, GA_ROOT) : GetActiveWindow();
    const Text title(caption);
    if (!Create(formClass, Wide(title), formStyle, formExStyle, {}, owner_)) return false;
    dpi_ = WindowDpi(owner_);
    font_ = AcquireFont(FontSpec{}, dpi_);
    return true;
}

bool ModalForm::AddButton(buttons::ButtonWindow& button, int id, TextView caption, std::function<void()> click) {
    if (!button.Create(Handle(), id, {})) return false;
    button.Button().SetCaption(Text(caption));
    button.Button().onClick = std::move(click);
    ShowWindow(button.Handle(), SW_SHOWNA);
    buttons_.push_back(&button);
    return true;
}

HWND ModalForm::AddControl(const wchar_t* windowClass, TextView caption, DWORD style, DWORD exStyle) {
    const Text text(caption);
    const HWND control = CreateWindowExW(exStyle, windowClass, Wide(text), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                                         Handle(), nullptr, ModuleInstance(), nullptr);
    if (!control) return nullptr;
    controls_.push_back(control);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    return control;
}

void ModalForm::ApplyFonts() {
    // The old font is released only when no control uses it any more.
    const SharedFont before = std::exchange(font_, AcquireFont(FontSpec{}, dpi_));
    for (const HWND control : controls_) {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    }
}

Size ModalForm::FrameSize() const { return qvx::FrameSize(formStyle, formExStyle, dpi_); }

void ModalForm::Place(HWND child, const Rect& twips) const {
    const Rect bounds = TwipsToPixels(twips, dpi_);
    SetWindowPos(child, nullptr, bounds.left, bounds.top, bounds.Width(), bounds.Height(),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void ModalForm::SetWindowSize(Size pixels) const {
    const bool stays = IsWindowVisible(Handle()) && !corner_;
    const Point at = corner_ ? *corner_ : stays ? Point{} : PlaceDialog(owner_, pixels);
    SetWindowPos(Handle(), nullptr, at.x, at.y, pixels.width, pixels.height,
                 SWP_NOZORDER | SWP_NOACTIVATE | (stays ? SWP_NOMOVE : 0u));
}

buttons::ButtonWindow* ModalForm::FocusedButton() const {
    const HWND focus = GetFocus();
    for (buttons::ButtonWindow* button : buttons_) {
        if (button->Handle() == focus) return button;
    }
    return nullptr;
}

buttons::ButtonWindow* ModalForm::ButtonOf(int id) const {
    for (buttons::ButtonWindow* button : buttons_) {
        if (GetDlgCtrlID(button->Handle()) == id) return button;
    }
    return nullptr;
}

// ---- Running -------------------------------------------------------------------------------------------------------

void ModalForm::RunModal(HWND first) {
    finished_ = false;
    ModalScope modal(Handle());
    modal_ = &modal;
    LayOut();
    ShowWindow(Handle(), SW_SHOW);
    EnterField(first);
    RunModalLoop(
        modal, [this] { return !finished_ && Handle(); },
        [this](const MSG& message) { return BeforeDispatch(message); });
    // The loop may have ended because the program ends.
    Finish();
    modal_ = nullptr;
    modal.RestoreFocus();
}

void ModalForm::Finish() {
    if (std::exchange(finished_, true)) return;
    if (modal_) modal_->End();
    if (Handle()) ShowWindow(Handle(), SW_HIDE);
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void ModalForm::OnGone() {
    // The system has destroyed the children, too.
    controls_.clear();
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

// ---- Keys ----------------------------------------------------------------------------------------------------------

void ModalForm::Press(buttons::ButtonWindow& button, int key) {
    if (IsWindowEnabled(button.Handle())) button.Button().AccessKeyPress(key);
}

bool ModalForm::TakeKey(WPARAM key, LPARAM details) {
    if (key != VK_RETURN && key != VK_ESCAPE) return false;
    // The work that the key starts is done once, however long the key is held.
    if (details & static_cast<LPARAM>(KF_REPEAT) << 16) return true;
    buttons::ButtonWindow* button = key == VK_ESCAPE ? ButtonOf(IDCANCEL) : FocusedButton();
    if (!button) button = ButtonOf(IDOK);
    if (button) Press(*button, static_cast<int>(key));
    return true;
}

void ModalForm::EnterField(HWND field) {
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
}

bool ModalForm::TakeAccessKey(char16_t character) {
    for (buttons::ButtonWindow* button : buttons_) {
        if (!button->Button().AnswersTo(character)) continue;
        SetFocus(button->Handle());
        Press(*button, character);
        return true;
    }
    // A label passes the focus on to the control after it; the system handles check boxes.
    for (const HWND control : controls_) {
        const Text caption = WindowText(control);
        if (!IsWindowVisible(control)) continue;
        const bool label = (SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0 &&
                           !(GetWindowLongW(control, GWL_STYLE) & SS_NOPREFIX);
        if (!label || caption.find(u'&') == Text::npos || !buttons::IsAccessKey(caption, character)) continue;
        EnterField(GetNextDlgTabItem(Handle(), control, FALSE));
        return true;
    }
    return false;
}

bool ModalForm::BeforeDispatch(const MSG& message) {
    if (!Handle() || (message.hwnd != Handle() && !IsChild(Handle(), message.hwnd))) return false;
    MSG copy = message;
    switch (message.message) {
        case WM_KEYDOWN:
            if (TakeKey(message.wParam, message.lParam)) return true;
            break;
        case WM_SYSCHAR:
            if (TakeAccessKey(static_cast<char16_t>(message.wParam))) return true;
            break;
        case WM_CHAR:
            // Where no text is typed, a letter works without Alt.
            if (!(SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0) & DLGC_WANTCHARS) && message.wParam > VK_SPACE &&
                TakeAccessKey(static_cast<char16_t>(message.wParam))) {
                return true;
            }
            break;
        default:
            break;
    }
    return IsDialogMessageW(Handle(), &copy) != 0;
}

// ---- Messages ------------------------------------------------------------------------------------------------------

LRESULT ModalForm::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ACTIVATE:
            focus_.OnActivate(Handle(), wParam);
            return 0;
        case WM_SETFOCUS:
            focus_.Restore(Handle());
            return 0;
        case WM_ERASEBKGND: {
            const RECT all = ToRECT(ClientArea());
            ::FillRect(reinterpret_cast<HDC>(wParam), &all, GetSysColorBrush(COLOR_BTNFACE));
            return 1;
        }
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNTEXT));
            SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNFACE));
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
            return 0;
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            dpi_ = change.dpi;
            corner_ = change.Corner();
            ApplyFonts();
            LayOut();
            corner_.reset();
            RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
            return 0;
        }
        case WM_CLOSE:
            OnCloseBox();
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::backup
