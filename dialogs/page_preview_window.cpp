#include "dialogs/page_preview_window.h"

#include <algorithm>

#include "common/number_text.h"
#include "dialogs/messages.h"
#include "win/dpi.h"
#include "win/window_text.h"

namespace qvx::dialogs {

namespace {

namespace preview_texts = messages::preview;

constexpr WindowClass previewClass{L"QvxPreview", CS_HREDRAW | CS_VREDRAW};

// In pixels at 96 dots per inch.
constexpr Size previewSize{600, 760};
constexpr Size previewButton{81, 25};
constexpr int previewGap = 6;

constexpr std::array<TextView, 4> previewCaptions{preview_texts::previous, preview_texts::next, preview_texts::print,
                                                  preview_texts::close};

// Returns the largest sheet of A4 paper in the middle of an area.
Rect SheetIn(const Rect& area) {
    const int width = std::max(1, std::min(area.Width(), area.Height() * 210 / 297));
    const int height = width * 297 / 210;
    const int left = area.left + (area.Width() - width) / 2;
    const int top = area.top + (area.Height() - height) / 2;
    return {left, top, left + width, top + height};
}

}  // namespace

int PagePreviewWindow::Bar() const { return Scaled(previewButton.height + 2 * previewGap, dpi_.y); }

bool PagePreviewWindow::Open(HWND owner, const Text& title) {
    dpi_ = WindowDpi(owner);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
    const Rect work = FromRECT(monitor.rcWork);
    const Size size{std::min(work.Width(), Scaled(previewSize.width, dpi_.x)),
                    std::min(work.Height(), Scaled(previewSize.height, dpi_.y))};
    const Point at = PlaceDialog(owner, size);
    const Text caption = title.empty() ? Text(preview_texts::title) : title;
    const DWORD direction = rightToLeft_ ? WS_EX_RTLREADING | WS_EX_RIGHT : 0;
    if (!Create(previewClass, Wide(caption), (WS_OVERLAPPEDWINDOW & ~WS_MINIMIZEBOX) | WS_CLIPCHILDREN,
                WS_EX_CONTROLPARENT | direction, {at.x, at.y, at.x + size.width, at.y + size.height}, owner))
        return false;
    const std::array<std::function<void()>, 4> actions{[this] { Show(page_ - 1); }, [this] { Show(page_ + 1); },
                                                       [this] { Close(true); }, [this] { Close(false); }};
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        if (!buttons_[i].Create(Handle(), static_cast<int>(i) + 1, {})) return false;
        buttons_[i].Button().SetCaption(Text(previewCaptions[i]));
        buttons_[i].Button().onClick = actions[i];
    }
    PlaceButtons();
    Show(0);
    return true;
}

void PagePreviewWindow::PlaceButtons() {
    const int gap = Scaled(previewGap, dpi_.x);
    const Size size{Scaled(previewButton.width, dpi_.x), Scaled(previewButton.height, dpi_.y)};
    int at = gap;
    for (const buttons::ButtonWindow& button : buttons_) {
        const int left = rightToLeft_ ? ClientArea().right - at - size.width : at;
        MoveWindow(button.Handle(), left, Scaled(previewGap, dpi_.y), size.width, size.height, TRUE);
        ShowWindow(button.Handle(), SW_SHOWNA);
        at += size.width + gap;
    }
}

void PagePreviewWindow::Paint() {
    const Rect client = ClientArea();
    BufferedPaint paint(Handle(), dpi_, buffer_, {client.right, client.bottom});
    GdiSurface& surface = paint.Surface();
    const Rect bar{0, 0, client.right, Bar()};
    const Rect desk{0, bar.bottom, client.right, client.bottom};
    surface.FillRect(bar, colors::buttonFace);
    surface.FillRect(desk, colors::buttonShadow);
    Text place(messages::page);
    place.append(IntegerToText(page_ + 1)).append(messages::pageOf).append(IntegerToText(pages_));
    const int used = 4 * Scaled(previewButton.width + previewGap, dpi_.x) + 2 * Scaled(previewGap, dpi_.x);
    const Rect rest = rightToLeft_ ? Rect{0, 0, bar.right - used, bar.bottom} : Rect{used, 0, bar.right, bar.bottom};
    surface.DrawLabel(place, rest, FontSpec{}, colors::buttonText,
                      text_format::singleLine | text_format::middle |
                          (rightToLeft_ ? text_format::right | text_format::rightToLeft : text_format::left));
    const Rect sheet = SheetIn(desk.Inflated(-Scaled(12, dpi_.x), -Scaled(12, dpi_.y)));
    surface.FillRect(sheet, Rgb(255, 255, 255));
    // Lines that are thinner than a pixel would vanish, so the page is drawn larger and then shrunk.
    const RECT large{0, 0, 2 * sheet.Width(), 2 * sheet.Height()};
    if (const HDC page =
            large_.Prepare(surface.Dc(), {static_cast<int>(large.right), static_cast<int>(large.bottom)})) {
        FillRect(page, &large, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        PlayEnhMetaFile(page, file_, &large);
        const SavedDc saved(surface.Dc());
        SetStretchBltMode(surface.Dc(), HALFTONE);
        SetBrushOrgEx(surface.Dc(), 0, 0, nullptr);
        StretchBlt(surface.Dc(), sheet.left, sheet.top, sheet.Width(), sheet.Height(), page, 0, 0,
                   static_cast<int>(large.right), static_cast<int>(large.bottom), SRCCOPY);
    }
    surface.FrameRect(sheet, Rgb(0, 0, 0));
}

void PagePreviewWindow::Show(int page) {
    page_ = std::clamp(page, 0, pages_ - 1);
    file_ = nullptr;
    file_ = draw_(page_, pages_);
    Invalidate();
}

void PagePreviewWindow::Close(bool print) {
    if (closed_) return;
    print_ = print;
    closed_ = true;
    if (modal_) modal_->End();
    ShowWindow(Handle(), SW_HIDE);
    OnGone();
}

// Wakes the message loop.
void PagePreviewWindow::OnGone() { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

std::size_t PagePreviewWindow::Focused() const {
    std::size_t i = 0;
    while (i + 1 < buttons_.size() && buttons_[i].Handle() != GetFocus()) ++i;
    return i;
}

void PagePreviewWindow::MoveFocus(bool back) {
    SetFocus(buttons_[(Focused() + (back ? buttons_.size() - 1 : 1)) % buttons_.size()].Handle());
}

bool PagePreviewWindow::TakeKey(int key) {
    switch (key) {
        case VK_PRIOR:
            return Show(page_ - 1), true;
        case VK_NEXT:
            return Show(page_ + 1), true;
        case VK_HOME:
            return Show(0), true;
        case VK_END:
            return Show(pages_ - 1), true;
        case VK_ESCAPE:
            return Close(false), true;
        case VK_TAB:
            return MoveFocus(IsKeyDown(VK_SHIFT)), true;
        case VK_RETURN:
            return buttons_[Focused()].Button().Click(), true;
        default:
            return false;
    }
}

bool PagePreviewWindow::BeforeDispatch(const MSG& message) {
    if (message.hwnd != Handle() && !IsChild(Handle(), message.hwnd)) return false;
    if (message.message == WM_KEYDOWN) return TakeKey(static_cast<int>(message.wParam));
    if (message.message != WM_SYSCHAR) return false;
    const auto character = static_cast<char16_t>(message.wParam);
    const auto found = std::find_if(buttons_.begin(), buttons_.end(),
                                    [&](auto& button) { return button.Button().AnswersTo(character); });
    if (found == buttons_.end()) return false;
    SetFocus(found->Handle());
    found->Button().AccessKeyPress(character);
    return true;
}

bool PagePreviewWindow::Run(HWND owner, const Text& title) {
    const HWND over = owner ? GetAncestor(owner, GA_ROOT) : GetActiveWindow();
    if (!Open(over, title)) return false;
    ModalScope modal(Handle());
    modal_ = &modal;
    ShowWindow(Handle(), SW_SHOW);
    SetFocus(buttons_[1].Handle());
    RunModalLoop(
        modal, [this] { return !closed_ && Handle(); }, [this](const MSG& message) { return BeforeDispatch(message); });
    modal_ = nullptr;
    modal.Close(*this);
    return print_;
}

LRESULT PagePreviewWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE:
            if (buttons_.back().Handle()) PlaceButtons();
            return 0;
        case WM_SETFOCUS:
            SetFocus(buttons_[1].Handle());
            return 0;
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            dpi_ = change.dpi;
            change.Follow();
            PlaceButtons();
            return 0;
        }
        case WM_CLOSE:
            Close(false);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::dialogs
