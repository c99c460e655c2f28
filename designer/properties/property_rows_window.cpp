#include "designer/properties/property_rows_window.h"

#include <algorithm>

#include "designer/properties/property_list_accessible_object.h"
#include "host/form_font.h"
#include "win/accessible.h"
#include "win/dpi.h"

namespace qvx::host::designer {

namespace {

const WindowClass rowsClass{L"QvxPropertyRows", CS_DBLCLKS, 32512};
constexpr int dividerReach = 3;

}  // namespace

PropertyRowsWindow::PropertyRowsWindow(PropertyRowsOwner& owner) : owner_(owner) {}

PropertyRowsWindow::~PropertyRowsWindow() {
    editor_.Dispose();
    Destroy();
}

int PropertyRowsWindow::Scaled(int pixels) const { return qvx::Scaled(pixels, Handle()); }

bool PropertyRowsWindow::Create(HWND parent, const Rect& bounds) {
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_CLIPCHILDREN;
    if (!Window::Create(rowsClass, L"Properties", style, 0, bounds, parent)) return false;
    if (!editor_.Create()) return false;
    AcquireFonts();
    return true;
}

void PropertyRowsWindow::AcquireFonts() {
    SharedFont font = AcquireFont(DefaultFont(), WindowDpi(Handle()));
    if (editor_.Field()) SendMessageW(editor_.Field(), WM_SETFONT, reinterpret_cast<WPARAM>(font->Get()), TRUE);
    font_ = std::move(font);  // only now, since the field has used the former one until here
    UpdateBar();
    editor_.Layout();
    Invalidate();
}

RowsView PropertyRowsWindow::View() const {
    const Rect client = ClientArea();
    RowsView view;
    view.client = {client.Width(), client.Height()};
    view.lineHeight = (font_ ? font_->LineHeight() : 13) + Scaled(4);
    view.count = model_ ? static_cast<int>(model_->Table().Lines().size()) : 0;
    view.top = top_;
    view.divider = Divider();
    return view;
}

int PropertyRowsWindow::Divider() const { return DividerAt(ClientArea().Width(), share_, Scaled(40)); }

void PropertyRowsWindow::SetDivider(int x) {
    const int width = ClientArea().Width();
    if (width <= 0) return;
    share_ = std::clamp(static_cast<double>(x) / width, 0.05, 0.95);
    editor_.Layout();
    Invalidate();
    owner_.DividerMoved();
}

const PropertyRow* PropertyRowsWindow::CurrentRow() const {
    return model_ && current_ >= 0 ? model_->Table().RowAt(static_cast<std::size_t>(current_)) : nullptr;
}

Text PropertyRowsWindow::ValueText(std::size_t line) const {
    const PropertyRow* row = model_ ? model_->Table().RowAt(line) : nullptr;
    return row ? row->reading.text : Text();
}

void PropertyRowsWindow::GoOnFrom(const Text& name) {
    const auto line = model_ ? model_->Table().LineOf(name) : std::nullopt;
    const bool none = !model_ || model_->Table().Lines().empty();
    current_ = none ? -1 : line ? static_cast<int>(*line) : 0;
    UpdateBar();
    if (current_ >= 0) ScrollTo(View().TopShowing(current_));
    Invalidate();
}

void PropertyRowsWindow::SetModel(std::shared_ptr<PropertyModel> model) {
    editor_.End();
    editor_.CloseBox();
    const PropertyRow* before = CurrentRow();
    const Text name = before ? before->info.name : Text();
    model_ = std::move(model);
    search_.Reset();
    GoOnFrom(name);
}

void PropertyRowsWindow::SetOrder(PropertyOrder order) {
    if (!model_) return;
    const LifeWatch alive = Watch();
    editor_.Commit();
    if (!alive.Alive() || !model_) return;
    editor_.End();
    const PropertyRow* row = CurrentRow();
    const Text name = row ? row->info.name : Text();
    model_->Table().SetOrder(order);
    GoOnFrom(name);
    owner_.LineChanged();
}

// --- Where things are ---

RowsLook PropertyRowsWindow::Look() const {
    RowsLook look;
    look.table = model_ ? &model_->Table() : nullptr;
    look.view = View();
    look.current = current_;
    look.editing = Editing();
    look.buttonDown = buttonDown_;
    look.dpi = WindowDpi(Handle());
    look.buttonWidth = SystemMetric(SM_CXVSCROLL, look.dpi);
    return look;
}

ValueButton PropertyRowsWindow::CurrentButton() const {
    const PropertyRow* row = CurrentRow();
    return row ? ButtonOf(row->info, row->reading.value) : ValueButton::none;
}

std::size_t PropertyRowsWindow::CurrentIndex() const {
    return *model_->Table().Lines()[static_cast<std::size_t>(current_)].row;
}

Rect PropertyRowsWindow::FieldArea() const { return Look().EditArea(font_->LineHeight()); }

void PropertyRowsWindow::RevealCurrent() { ScrollTo(View().TopShowing(current_)); }

void PropertyRowsWindow::ValuesChanged() {
    editor_.ValuesChanged();
    Invalidate();
}

void PropertyRowsWindow::UpdateBar() {
    if (!Handle()) return;
    const RowsView view = View();
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_PAGE | SIF_POS | SIF_RANGE | SIF_DISABLENOSCROLL;
    info.nMax = std::max(0, view.count - 1);
    info.nPage = static_cast<UINT>(view.Page());
    info.nPos = top_ = view.ClampTop(top_);
    SetScrollInfo(Handle(), SB_VERT, &info, TRUE);
}

void PropertyRowsWindow::ScrollTo(int top) {
    top = View().ClampTop(top);
    if (top == top_) return;
    top_ = top;
    UpdateBar();
    editor_.Layout();
    Invalidate();
}

void PropertyRowsWindow::OnScroll(WPARAM wParam) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    const int page = View().Page();
    switch (LOWORD(wParam)) {
        case SB_LINEUP:
            return ScrollTo(top_ - 1);
        case SB_LINEDOWN:
            return ScrollTo(top_ + 1);
        case SB_PAGEUP:
            return ScrollTo(top_ - page);
        case SB_PAGEDOWN:
            return ScrollTo(top_ + page);
        case SB_TOP:
            return ScrollTo(0);
        case SB_BOTTOM:
            return ScrollTo(View().LastTop());
        case SB_THUMBPOSITION:
        case SB_THUMBTRACK:
            GetScrollInfo(Handle(), SB_VERT, &info);
            return ScrollTo(info.nTrackPos);
        default:
            return;
    }
}

void PropertyRowsWindow::OnWheel(int delta) {
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    if (lines == WHEEL_PAGESCROLL) lines = static_cast<UINT>(View().Page());
    wheelRest_ += delta * static_cast<int>(std::min(lines, 100U));
    const int whole = wheelRest_ / WHEEL_DELTA;
    wheelRest_ -= whole * WHEEL_DELTA;
    ScrollTo(top_ - whole);
}

// --- Walking ---

void PropertyRowsWindow::GoTo(int line) {
    if (!model_ || line < 0 || line >= View().count) return;
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> before = model_;
    if (line != current_ && !editor_.Commit()) return;
    if (!alive.Alive() || model_ != before) return;
    if (line != current_) editor_.End();
    current_ = line;
    ScrollTo(View().TopShowing(line));
    Invalidate();
    NotifyAssistive(EVENT_OBJECT_FOCUS, Handle(), line + 1);
    NotifyAssistive(EVENT_OBJECT_SELECTION, Handle(), line + 1);
    owner_.LineChanged();
}

void PropertyRowsWindow::Walk(RowStep step) {
    const bool inValues = Editing();
    const LifeWatch alive = Watch();
    GoTo(View().Step(current_, step));
    if (alive.Alive() && inValues && !BeginEdit()) SetFocus(Handle());
}

void PropertyRowsWindow::Search(char16_t letter) {
    if (!model_ || current_ < 0) return;
    const auto line = search_.Type(model_->Table(), static_cast<std::size_t>(current_), letter, GetTickCount64());
    if (line) GoTo(static_cast<int>(*line));
}

void PropertyRowsWindow::JumpTo(char16_t letter) {
    if (!model_) return;
    const auto line = model_->Table().FindBeginning(TextView(&letter, 1), static_cast<std::size_t>(current_ + 1));
    const bool inValues = Editing();
    const LifeWatch alive = Watch();
    if (line) GoTo(static_cast<int>(*line));
    if (alive.Alive() && line && inValues && !BeginEdit()) SetFocus(Handle());
}

// --- Keys and mouse ---

bool PropertyRowsWindow::OnKey(const ListKey& key) {
    const PropertyRow* row = CurrentRow();
    RowKeyState state;
    state.heading = model_ && current_ >= 0 && !row;
    state.open = state.heading && model_->Table().Lines()[static_cast<std::size_t>(current_)].open;
    state.picture = row && row->info.kind == PropertyKind::picture && !row->info.readOnly;
    const RowKeyMeaning meaning = RowKeyOf(key, state);
    switch (meaning.action) {
        case RowAction::none:
            return false;
        case RowAction::idle:
            break;
        case RowAction::pressButton:
            PressButton();
            break;
        case RowAction::jump:
            JumpTo(static_cast<char16_t>(key.key));
            break;
        case RowAction::walk:
            Walk(meaning.step);
            break;
        case RowAction::toggle:
            ToggleHeading();
            break;
        case RowAction::edit:
            BeginEdit();
            break;
        case RowAction::editOrPress:
            if (!BeginEdit()) PressButton();
            break;
        case RowAction::editOrLeave:
            if (!BeginEdit()) owner_.LeaveByTab(true);
            break;
        case RowAction::leaveBackwards:
            owner_.LeaveByTab(false);
            break;
        case RowAction::clearPicture:
            owner_.ClearPicture(CurrentIndex());
            break;
    }
    return true;
}

void PropertyRowsWindow::PressButton() {
    const ValueButton button = CurrentButton();
    if (button == ValueButton::none) return;
    if (button == ValueButton::dropDown) return editor_.OpenBox();
    owner_.OpenDialog(CurrentIndex());
}

void PropertyRowsWindow::ToggleHeading() {
    model_->Table().Toggle(static_cast<std::size_t>(current_));
    UpdateBar();
    Invalidate();
}

void PropertyRowsWindow::Activate(int line) {
    const LifeWatch alive = Watch();
    GoTo(line);
    if (!alive.Alive() || current_ != line) return;
    const PropertyRow* row = CurrentRow();
    if (!row) {
        ToggleHeading();
    } else if (!row->info.readOnly && !ChoicesOf(row->info).empty()) {
        editor_.Cycle();
    } else if (CurrentButton() == ValueButton::dialog) {
        PressButton();
    } else {
        BeginEdit();
    }
}

void PropertyRowsWindow::OnButtonDown(Point at, bool twice) {
    const RowsView view = View();
    if (view.OnDivider(at, Scaled(dividerReach))) {
        dragging_ = true;
        SetCapture(Handle());
        return;
    }
    const LifeWatch alive = Watch();
    if (GetFocus() != Handle() && !Editing()) SetFocus(Handle());
    if (!alive.Alive()) return;
    const auto line = view.LineAt(at);
    if (!line) return;
    if (twice) return Activate(*line);
    const bool heading = model_ && !model_->Table().RowAt(static_cast<std::size_t>(*line));
    if (heading && at.x < Scaled(16)) return Activate(*line);
    if (*line == current_ && Look().ButtonArea().Contains(at)) {
        buttonDown_ = true;
        Invalidate();
        // This very click may have closed the box, and must not open it again.
        if (editor_.BoxIsOpen()) return;
        SetCapture(Handle());
        if (CurrentButton() == ValueButton::dropDown) {
            ReleaseCapture();
            buttonDown_ = false;
            PressButton();
        }
        return;
    }
    const bool onValue = at.x > view.divider;
    const auto model = model_;
    GoTo(*line);
    if (!alive.Alive() || model_ != model || current_ != *line) return;
    if (onValue && BeginEdit()) {
        editor_.NoteClick();
    } else {
        SetFocus(Handle());
    }
}

LRESULT PropertyRowsWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            const Rect client = ClientArea();
            BufferedPaint paint(Handle(), WindowDpi(Handle()), buffer_, {client.Width(), client.Height()});
            PaintRows(paint.Surface(), Look());
            return 0;
        }
        case WM_PRINTCLIENT: {
            GdiSurface surface(reinterpret_cast<HDC>(wParam), WindowDpi(Handle()));
            PaintRows(surface, Look());
            return 0;
        }
        case WM_SIZE:
            UpdateBar();
            editor_.Layout();
            Invalidate();
            owner_.DividerMoved();
            return 0;
        case WM_VSCROLL:
            OnScroll(wParam);
            return 0;
        case WM_MOUSEWHEEL:
            OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTALLKEYS;
        case WM_SYSKEYDOWN:
        case WM_KEYDOWN:
            if (OnKey(PressedKey(message, wParam))) return 0;
            break;
        case WM_CHAR:
            if (wParam > L' ') Search(static_cast<char16_t>(wParam));
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            OnButtonDown(MousePoint(lParam), message == WM_LBUTTONDBLCLK);
            return 0;
        case WM_MOUSEMOVE:
            if (dragging_) SetDivider(MousePoint(lParam).x);
            return 0;
        case WM_LBUTTONUP: {
            const bool press = buttonDown_ && Look().ButtonArea().Contains(MousePoint(lParam));
            dragging_ = buttonDown_ = false;
            if (GetCapture() == Handle()) ReleaseCapture();
            Invalidate();
            if (press && !editor_.BoxIsOpen()) PressButton();
            return 0;
        }
        case WM_CAPTURECHANGED:
            dragging_ = buttonDown_ = false;
            Invalidate();
            return 0;
        case WM_SETCURSOR: {
            POINT at{};
            GetCursorPos(&at);
            ScreenToClient(Handle(), &at);
            const bool inside = LOWORD(lParam) == HTCLIENT && reinterpret_cast<HWND>(wParam) == Handle();
            if (inside && View().OnDivider({static_cast<int>(at.x), static_cast<int>(at.y)}, Scaled(dividerReach))) {
                SetCursor(LoadCursorW(nullptr, IDC_SIZEWE));
                return TRUE;
            }
            break;
        }
        case WM_SETFOCUS:
            if (current_ >= 0) NotifyAssistive(EVENT_OBJECT_FOCUS, Handle(), current_ + 1);
            return 0;
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORSTATIC: {
            const PropertyRow* row = CurrentRow();
            const auto dc = reinterpret_cast<HDC>(wParam);
            SetTextColor(dc, GetSysColor(row && row->info.readOnly ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
            SetBkColor(dc, GetSysColor(COLOR_WINDOW));
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
        }
        case WM_GETOBJECT:
            if (const auto answer = AnswerGetObject(wParam, lParam, [this] { return MakeAccessibleRows(*this); }))
                return *answer;
            break;
        case disposeOfBox:
            editor_.DisposeOfBox();
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::host::designer
