#include "backup/backup_form.h"

#include "backup/dialog_layout.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/modal.h"
#include "win/wide.h"

namespace qvx::backup {

namespace {

constexpr WindowClass formClass{L"QvxBackupForm", 0};
constexpr DWORD formStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD formExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace

Size FormWindow::Border() const {
    RECT frame{};
    AdjustWindowRectEx(&frame, formStyle, FALSE, formExStyle);
    return {static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
}

bool FormWindow::Open(HWND owner, TextView caption, Size client) {
    dpi_ = WindowDpi(owner);
    font_ = AcquireFont(FontSpec{}, dpi_);
    const Size inside = TwipsToPixels(client, dpi_);
    const Size border = Border();
    const Size size{inside.width + border.width, inside.height + border.height};
    const Point at = PlaceDialog(owner, size);
    const Text title(caption);
    if (!Create(formClass, Wide(title), formStyle, formExStyle, {at.x, at.y, at.x + size.width, at.y + size.height},
                owner)) {
        return false;
    }
    // Access keys and the focus show from the start.
    SendMessageW(Handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS), 0);
    return true;
}

HWND FormWindow::Add(const wchar_t* kind, TextView text, DWORD style, const Rect& place, int id, DWORD exStyle) {
    const Rect bounds = TwipsToPixels(place, dpi_);
    const Text copy(text);
    const HWND control = CreateWindowExW(exStyle, kind, Wide(copy), WS_CHILD | WS_VISIBLE | style, bounds.left,
                                         bounds.top, bounds.Width(), bounds.Height(), Handle(),
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    return control;
}

bool FormWindow::Add(buttons::ButtonWindow& button, TextView caption, const Rect& place, int id) {
    if (!button.Create(Handle(), id, TwipsToPixels(place, dpi_))) return false;
    button.Button().SetCaption(Text(caption));
    ShowWindow(button.Handle(), SW_SHOWNA);
    buttons_.push_back(&button);
    return true;
}

void FormWindow::Close() {
    closed_ = true;
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void FormWindow::RunModal() {
    closed_ = false;
    ModalScope modal(Handle());
    ShowWindow(Handle(), SW_SHOW);
    RunModalLoop([this] { return !closed_ && Handle(); },
                 [this](const MSG& message) { return BeforeDispatch(message); });
    modal.End();
    if (Handle()) ShowWindow(Handle(), SW_HIDE);
    modal.RestoreFocus();
}

buttons::ButtonWindow* FormWindow::FocusedButton() const {
    const HWND focus = GetFocus();
    for (buttons::ButtonWindow* button : buttons_) {
        if (button->Handle() == focus) return button;
    }
    return nullptr;
}

bool FormWindow::PressAccessKey(char16_t character) {
    for (buttons::ButtonWindow* button : buttons_) {
        if (!IsWindowVisible(button->Handle()) || !button->Button().AnswersTo(character)) continue;
        SetFocus(button->Handle());
        button->Button().AccessKeyPress(character);
        return true;
    }
    return false;
}

bool FormWindow::BeforeDispatch(MSG message) {
    if (message.hwnd != Handle() && !IsChild(Handle(), message.hwnd)) return false;
    if (message.message == WM_SYSCHAR && PressAccessKey(static_cast<char16_t>(message.wParam))) return true;
    if (message.message == WM_KEYDOWN) {
        buttons::ButtonWindow* const focused = FocusedButton();
        switch (FormKeyOf(static_cast<int>(message.wParam), ShiftState(), focused != nullptr)) {
            case FormKey::ok:
                OnOk();
                return true;
            case FormKey::cancel:
                OnCancel();
                return true;
            case FormKey::focusedButton:
                focused->Button().Click();
                return true;
            case FormKey::none:
                break;
        }
    }
    return IsDialogMessageW(Handle(), &message) != FALSE;
}

LRESULT FormWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND: {
            const RECT area = ToRECT(ClientArea());
            FillRect(reinterpret_cast<HDC>(wParam), &area, GetSysColorBrush(COLOR_3DFACE));
            return 1;
        }
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) {
                focus_ = IsChild(Handle(), GetFocus()) ? GetFocus() : focus_;
                return 0;
            }
            break;
        case WM_SETFOCUS:
            SetFocus(IsChild(Handle(), focus_) && IsWindowEnabled(focus_)
                         ? focus_
                         : GetNextDlgTabItem(Handle(), nullptr, FALSE));
            return 0;
        case WM_CLOSE:
            OnCancel();
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::backup
