#include "dialogs/message_box_window.h"

#include "dialogs/show_message_dialog.h"
#include "win/dpi.h"
#include "win/window_text.h"

namespace qvx::dialogs {

namespace {

constexpr WindowClass boxClass{L"QvxMessageBox", CS_DBLCLKS};

constexpr UINT_PTR blinkTimer = 1;
constexpr UINT_PTR closeTimer = 2;
constexpr int okId = 1;
constexpr int cancelId = 2;

// Returns the small icon of a window or its class, for the caption; null when it has none.
HICON SmallIcon(HWND window) {
    if (!window) {
        return nullptr;
    }
    DWORD_PTR icon = 0;
    SendMessageTimeoutW(window, WM_GETICON, ICON_SMALL, 0, SMTO_ABORTIFHUNG, 200, &icon);
    return reinterpret_cast<HICON>(icon ? icon : GetClassLongPtrW(window, GCLP_HICONSM));
}

// Wakes the message loop, since what ended the box may not have been a posted message.
void WakeLoop() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

void DrawImage(HDC dc, const IconImage& image, const Rect& area) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = image.size;
    info.bmiHeader.biHeight = -image.size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    StretchDIBits(dc, area.left, area.top, area.Width(), area.Height(), 0, 0, image.size, image.size,
                  image.pixels.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace

MessageBoxWindow::~MessageBoxWindow() { Destroy(); }

Rect MessageBoxWindow::IconArea() const { return TwipsToPixels(design::icon, dpi_); }

void MessageBoxWindow::PlaceButton(buttons::ButtonWindow& button, const ButtonPlace& place) {
    button.Button().SetCaption(place.caption);
    const Rect bounds = TwipsToPixels(
        Rect{place.left, place.top, place.left + design::button.width, place.top + design::button.height}, dpi_);
    MoveWindow(button.Handle(), bounds.left, bounds.top, bounds.Width(), bounds.Height(), FALSE);
    ShowWindow(button.Handle(), place.visible ? SW_SHOWNA : SW_HIDE);
}

bool MessageBoxWindow::Open(HWND owner, const MessageRequest& request) {
    request_ = request;
    const Text caption = request.title ? CaptionFor(*request.title) : Text(design::caption);
    if (!Create(boxClass, Wide(caption), WS_POPUP | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, {}, owner)) {
        return false;
    }
    if (const HICON icon = SmallIcon(owner)) {
        SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    }
    if (!ok_.Create(Handle(), okId, {}) || !cancel_.Create(Handle(), cancelId, {})) {
        return false;
    }
    ApplyLayout(WindowDpi(owner), owner, std::nullopt);
    okActive_ = layout_.ok.tabIndex == 0;
    ok_.onFocus = [this](bool focused) { okActive_ = focused || okActive_; };
    cancel_.onFocus = [this](bool focused) { okActive_ = okActive_ && !focused; };
    ok_.Button().onClick = [this] { Close(true); };
    cancel_.Button().onClick = [this] { Close(false); };
    return true;
}

void MessageBoxWindow::ApplyLayout(Dpi dpi, HWND owner, const std::optional<Point>& at) {
    dpi_ = dpi;
    icon_ = OnBackground(DrawIcon(PictureNumber(request_.icon), IconArea().Width()), design::backColor);
    {
        const WindowDc dc(Handle());
        GdiSurface surface(dc.Get(), dpi);
        const Size text = surface.MeasureText(request_.prompt, FontSpec{}, WrapWidth(dpi), textFormat);
        layout_ = LayOut(request_.buttons, text, dpi);
    }
    const Size size = TwipsToPixels(layout_.size, dpi);
    const Point place = at ? *at : PlaceDialog(owner, size);
    SetWindowPos(Handle(), nullptr, place.x, place.y, size.width, size.height, SWP_NOZORDER | SWP_NOACTIVATE);
    // The resolution has changed again, and this function has been called for the new one meanwhile.
    if (dpi_ != dpi) return;
    PlaceButton(ok_, layout_.ok);
    PlaceButton(cancel_, layout_.cancel);
    PaintImage();
    // The system owns the region from here on; the outline was drawn with a region of its own.
    SetWindowRgn(Handle(),
                 CreateRoundRectRgn(0, 0, size.width, size.height, layout_.corner.width, layout_.corner.height), TRUE);
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void MessageBoxWindow::PaintImage() {
    const Rect client = ClientArea();
    const WindowDc window(Handle());
    const HDC dc = image_.Prepare(window.Get(), {client.right, client.bottom});
    if (!dc) {
        return;
    }
    {
        GdiSurface surface(dc, dpi_);
        surface.FillRect(client, design::backColor);
    }
    const RECT bar = ToRECT(layout_.caption);
    DrawCaption(Handle(), dc, &bar, DC_ACTIVE | DC_ICON | DC_TEXT | DC_GRADIENT);
    GdiSurface surface(dc, dpi_);
    surface.DrawLabel(request_.prompt, layout_.text, FontSpec{}, design::foreColor, textFormat);
    surface.FrameRoundRect(client, layout_.corner, Rgb(0, 0, 0));
}

void MessageBoxWindow::Paint() {
    const PaintScope paint(Handle());
    if (image_.Dc()) {
        image_.CopyTo(paint.Dc(), FromRECT(paint.Area()));
    }
    if (iconVisible_) {
        DrawImage(paint.Dc(), icon_, IconArea());
    }
}

void MessageBoxWindow::Close(bool result) {
    if (closed_) {
        return;
    }
    result_ = result;
    closed_ = true;
    if (modal_) {
        modal_->End();
    }
    // This also ends a drag that is in progress.
    SendMessageW(Handle(), WM_CANCELMODE, 0, 0);
    ShowWindow(Handle(), SW_HIDE);
    WakeLoop();
}

void MessageBoxWindow::OnGone() { WakeLoop(); }

void MessageBoxWindow::Tick() {
    iconVisible_ = !iconVisible_;
    Invalidate(IconArea());
}

void MessageBoxWindow::StartDrag() {
    if (!iconVisible_) {
        Tick();
    }
    ReleaseCapture();
    SendMessageW(Handle(), WM_NCLBUTTONDOWN, HTCAPTION, 0);
}

void MessageBoxWindow::FocusActiveButton() { SetFocus(okActive_ ? ok_.Handle() : cancel_.Handle()); }

void MessageBoxWindow::MoveFocus() {
    if (layout_.cancel.visible) {
        SetFocus(okActive_ ? cancel_.Handle() : ok_.Handle());
    }
}

bool MessageBoxWindow::TakeKey(int key) {
    switch (AnswerForKey(key, ShiftState(), layout_.cancel.visible)) {
        case Answer::ok:
            ok_.Button().Click();
            return true;
        case Answer::cancel:
            cancel_.Button().Click();
            return true;
        case Answer::focused:
            (okActive_ ? ok_ : cancel_).Button().Click();
            return true;
        case Answer::moveFocus:
            MoveFocus();
            return true;
        case Answer::none:
            break;
    }
    return false;
}

bool MessageBoxWindow::TakeAccessKey(char16_t character) {
    for (buttons::ButtonWindow* button : {&ok_, &cancel_}) {
        if (IsWindowVisible(button->Handle()) && button->Button().AnswersTo(character)) {
            SetFocus(button->Handle());
            button->Button().AccessKeyPress(character);
            return true;
        }
    }
    return false;
}

bool MessageBoxWindow::BeforeDispatch(const MSG& message) {
    if (message.hwnd != Handle() && !IsChild(Handle(), message.hwnd)) {
        return false;
    }
    switch (message.message) {
        case WM_KEYDOWN:
            return TakeKey(static_cast<int>(message.wParam));
        case WM_SYSCHAR:
            return TakeAccessKey(static_cast<char16_t>(message.wParam));
        default:
            return false;
    }
}

bool MessageBoxWindow::Run(HWND owner, const MessageRequest& request) {
    const HWND over = owner ? GetAncestor(owner, GA_ROOT) : GetActiveWindow();
    if (!Open(over, request)) {
        return false;
    }
    ModalScope modal(Handle());
    modal_ = &modal;
    ShowWindow(Handle(), SW_SHOW);
    FocusActiveButton();
    if (request_.blink) {
        SetTimer(Handle(), blinkTimer, design::blinkInterval, nullptr);
    }
    if (request_.timeOut > 0) {
        SetTimer(Handle(), closeTimer, static_cast<UINT>(request_.timeOut), nullptr);
    }
    RunModalLoop(
        modal, [this] { return !closed_ && Handle(); }, [this](const MSG& message) { return BeforeDispatch(message); });
    modal_ = nullptr;
    modal.Close(*this);
    return result_;
}

LRESULT MessageBoxWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SETFOCUS:
            FocusActiveButton();
            return 0;
        case WM_TIMER:
            if (wParam == blinkTimer) {
                Tick();
            } else if (wParam == closeTimer) {
                Close(okActive_);
            }
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            StartDrag();
            return 0;
        case WM_NCLBUTTONDBLCLK:
            return 0;  // a double-click on a caption maximizes; this caption is only for dragging
        case WM_SYSCOLORCHANGE:
            PaintImage();
            Invalidate();
            return 0;
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            ApplyLayout(change.dpi, nullptr, change.Corner());
            return 0;
        }
        case WM_CLOSE:
            // Alt+F4 counts as a refusal.
            Close(false);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

bool ShowMessage(HWND owner, TextView prompt, int buttons, const std::optional<Text>& title, int icon, bool blink,
                 int timeOut) {
    MessageBoxWindow box;
    return box.Run(owner, {Text(prompt), buttons, title, icon, blink, timeOut});
}

bool ShowMessage(HWND owner, TextView prompt, const MessageKind& kind, const std::optional<Text>& title) {
    return ShowMessage(owner, prompt, kind.buttons, title, kind.icon, kind.blink, kind.timeOut);
}

}  // namespace qvx::dialogs
