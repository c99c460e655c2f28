#include "controls/grid/filter_strip_window.h"

#include <algorithm>
#include <utility>

#include "common/flag_scope.h"
#include "common/text_direction.h"
#include "win/dpi.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::grid {
namespace {

const WindowClass stripClass{L"QvxFilterStrip"};
constexpr UINT_PTR typingTimer = 1;
constexpr UINT typingPause = 250;  // milliseconds

struct FieldColor {
    OleColor back;
    OleColor fore;
    OleColor frame;
};

FieldColor ColorOf(FieldState state) {
    constexpr OleColor red = 0x0000C0;
    switch (state) {
        case FieldState::Filters:
            return {colors::infoBackground, colors::infoText, colors::highlight};
        case FieldState::Unreadable:
            return {colors::windowBackground, red, red};
        case FieldState::Empty:
            break;
    }
    return {colors::windowBackground, colors::windowText, colors::buttonShadow};
}

// Conditions are read from left to right, as they are typed, unless they begin with letters of the other direction.
bool IsRightToLeft(TextView text) { return ReadsRightToLeft(text, false); }

}  // namespace

FilterStripWindow::~FilterStripWindow() { Destroy(); }

bool FilterStripWindow::CreateIn(HWND parent) {
    return Create(stripClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CONTROLPARENT, {}, parent);
}

void FilterStripWindow::OnGone() {
    tip_.Destroy();
    buffer_.Release();
    edit_ = nullptr;
    col_ = -1;
    typing_ = false;
}

// ---- Layout --------------------------------------------------------------------------------------------------------

int FilterStripWindow::Place(Size parent, const StripLook& look) {
    if (!Handle()) return 0;
    const int height = std::min(StripHeight(AcquireFont(look.font, look.dpi)->LineHeight(), look.dpi), parent.height);
    SetWindowPos(Handle(), nullptr, 0, 0, parent.width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS | SWP_SHOWWINDOW);
    Refresh(look);
    return height;
}

void FilterStripWindow::Refresh(const StripLook& look) {
    if (!Handle()) return;
    const bool turned = look.rightToLeft != look_.rightToLeft;
    look_ = look;
    if ((IsWindowEnabled(Handle()) != FALSE) != look.enabled) EnableWindow(Handle(), look.enabled);
    if (edit_ && turned) {
        if (HasFocus()) SetFocus(Handle());
        DestroyWindow(std::exchange(edit_, nullptr));
        col_ = -1;
    }
    if (tip_.Text() != look.count) tip_.Set(Handle(), Handle(), look.count);
    if (edit_ && !typing_) {
        const Text text = listener_.FieldText(col_);
        const ValueScope writing(writing_, true);
        if (WindowText(edit_) != text) SetWindowTextW(edit_, Wide(text));
    }
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

StripLayout FilterStripWindow::Layout() {
    StripMeasures measures;
    measures.strip = {ClientArea().Width(), ClientArea().Height()};
    measures.dpi = look_.dpi;
    measures.rightToLeft = look_.rightToLeft;
    if (!look_.count.empty()) {
        const WindowDc dc(Handle());
        measures.countWidth = AcquireFont(look_.font, look_.dpi)->RunWidth(dc.Get(), look_.count);
    }
    return LayOutStrip(listener_.StripColumns(), look_.fixedCols, measures);
}

// The edit field keeps the focus while its column is out of view.
void FilterStripWindow::PlaceEdit(const StripLayout& layout) {
    if (!edit_) return;
    const SharedFont font = AcquireFont(look_.font, look_.dpi);
    if (std::exchange(editFont_, font) != font) {
        SendMessageW(edit_, WM_SETFONT, reinterpret_cast<WPARAM>(font->Get()), TRUE);
        SendMessageW(edit_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
    }
    Rect area{};
    for (const FilterField& field : layout.fields)
        if (field.col == col_) area = field.area;
    if (!area.Empty()) {
        const int across = Scaled(3, look_.dpi.x);
        const int top = area.top + (area.Height() - font->LineHeight()) / 2;
        area = {area.left + across, top, std::max(area.right - across, area.left + across), top + font->LineHeight()};
    }
    SetWindowPos(edit_, nullptr, area.left, area.top, area.Width(), area.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
}

// ---- Painting ------------------------------------------------------------------------------------------------------

void FilterStripWindow::DrawField(Surface& surface, const FilterField& field) {
    const FieldColor color = ColorOf(listener_.StateOfField(field.col));
    surface.FillRect(field.area, color.back);
    surface.FrameRect(field.area, color.frame);
    if (color.frame != colors::buttonShadow) {
        const Rect& area = field.area;
        surface.FrameRect({area.left + 1, area.top + 1, area.right - 1, area.bottom - 1}, color.frame);
    }
    const int across = Scaled(3, look_.dpi.x);
    const Rect inside{field.area.left + across, field.area.top, field.area.right - across, field.area.bottom};
    const Text text = listener_.FieldText(field.col);
    if (text.empty() || field.col == col_) return;
    surface.DrawLabel(text, inside, look_.font, color.fore,
                      text_format::middle | text_format::singleLine | text_format::noPrefix | text_format::endEllipsis |
                          (look_.rightToLeft ? text_format::right : text_format::left) |
                          (IsRightToLeft(text) ? text_format::rightToLeft : 0));
}

void FilterStripWindow::OnPaint() {
    const StripLayout layout = Layout();
    PlaceEdit(layout);
    const Rect client = ClientArea();
    BufferedPaint paint(Handle(), look_.dpi, buffer_, {client.Width(), client.Height()});
    Surface& surface = paint.Surface();
    surface.FillRect(client, look_.back);
    for (const FilterField& field : layout.fields) DrawField(surface, field);
    if (layout.count.Empty()) return;
    surface.DrawLabel(look_.count, layout.count, look_.font, look_.fore,
                      text_format::middle | text_format::singleLine | text_format::noPrefix |
                          (look_.rightToLeft ? text_format::right : text_format::left));
}

// ---- The edit field ------------------------------------------------------------------------------------------------

bool FilterStripWindow::CreateEdit() {
    edit_ = CreateWindowExW(look_.rightToLeft ? WS_EX_RIGHT : 0, L"EDIT", L"", WS_CHILD | WS_TABSTOP | ES_AUTOHSCROLL,
                            0, 0, 0, 0, Handle(), reinterpret_cast<HMENU>(1), ModuleInstance(), nullptr);
    if (!edit_) return false;
    editFont_.reset();
    name_.Attach(edit_);
    return field_.Attach(edit_);
}

void FilterStripWindow::Focus(int col) {
    const LifeWatch alive = Watch();
    EndTyping();
    if (!alive.Alive() || !Handle() || (!edit_ && !CreateEdit())) return;
    col_ = col;
    {
        const ValueScope writing(writing_, true);
        SetWindowTextW(edit_, Wide(listener_.FieldText(col)));
    }
    name_.SetName(listener_.FieldName(col));
    PlaceEdit(Layout());
    ShowWindow(edit_, SW_SHOWNA);
    Invalidate();
    if (GetFocus() == edit_) NotifyAssistive(EVENT_OBJECT_NAMECHANGE, edit_, CHILDID_SELF);
    SetFocus(edit_);
    if (alive.Alive() && edit_) SelectAll();
}

void FilterStripWindow::EndTyping() {
    if (!std::exchange(typing_, false)) return;
    KillTimer(Handle(), typingTimer);
    listener_.FieldTyped(col_, WindowText(edit_));
}

LRESULT FilterStripWindow::Field::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            // A host's dialog loop would take Tab, Enter and Escape otherwise.
            return Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
        case WM_KEYDOWN: {
            const int keyCode = static_cast<int>(wParam);
            const StripKey key = DecideStripKey(keyCode, ShiftState());
            dropCharacter_ = key != StripKey::None;
            if (dropCharacter_) {
                strip_.listener_.FieldKey(strip_.col_, key);
                return 0;
            }
            const LifeWatch alive = Watch();
            const bool known = strip_.listener_.OtherKey(keyCode, ShiftState());
            if (alive.Alive()) dropCharacter_ = known;
            if (known) return 0;
            break;
        }
        case WM_CHAR:
            if (std::exchange(dropCharacter_, false)) return 0;
            break;
        case WM_SETFOCUS:
        case WM_KILLFOCUS: {
            const LifeWatch alive = Watch();
            const LRESULT result = Default(message, wParam, lParam);
            if (alive.Alive() && message == WM_KILLFOCUS) strip_.EndTyping();
            if (alive.Alive()) strip_.listener_.StripFocus();
            return result;
        }
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

LRESULT FilterStripWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            OnPaint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_COMMAND:
            if (HIWORD(wParam) == EN_CHANGE && edit_) {
                const LONG_PTR style = GetWindowLongPtrW(edit_, GWL_EXSTYLE);
                if (IsRightToLeft(WindowText(edit_)) != ((style & WS_EX_RTLREADING) != 0))
                    SetWindowLongPtrW(edit_, GWL_EXSTYLE, style ^ WS_EX_RTLREADING);
            }
            if (HIWORD(wParam) == EN_CHANGE && !writing_) {
                typing_ = true;
                SetTimer(Handle(), typingTimer, typingPause, nullptr);
            }
            return 0;
        case WM_TIMER:
            EndTyping();
            return 0;
        case WM_CTLCOLOREDIT: {
            const FieldColor color = ColorOf(listener_.StateOfField(col_));
            const auto dc = reinterpret_cast<HDC>(wParam);
            SetTextColor(dc, ResolveColor(color.fore));
            SetBkColor(dc, ResolveColor(color.back));
            return reinterpret_cast<LRESULT>(
                GetSysColorBrush(color.back == colors::infoBackground ? COLOR_INFOBK : COLOR_WINDOW));
        }
        case WM_LBUTTONDOWN:
            for (const FilterField& field : Layout().fields) {
                if (!field.area.Contains(MousePoint(lParam))) continue;
                listener_.FieldClicked(field.col);
                break;
            }
            return 0;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            listener_.StripWheel(message, wParam, lParam);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::grid
