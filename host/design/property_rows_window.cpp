#include "host/design/property_rows_window.h"

#include <algorithm>

#include "common/flag_scope.h"
#include "host/design/property_list_accessible_object.h"
#include "host/form_font.h"
#include "win/accessible.h"
#include "win/dpi.h"
#include "win/module.h"
#include "win/wide.h"

namespace qvx::host {

namespace {

const WindowClass rowsClass{L"QvxPropertyRows", CS_DBLCLKS, 32512};
constexpr UINT disposeOfBox = WM_APP + 1;
constexpr int dividerReach = 3;
// What a cell can show of a text at the most.
constexpr std::size_t longestShown = 500;

bool Held(int key) { return GetKeyState(key) < 0; }

std::optional<RowStep> StepFor(WPARAM key) {
    switch (key) {
        case VK_UP:
            return RowStep::previous;
        case VK_DOWN:
            return RowStep::next;
        case VK_PRIOR:
            return RowStep::pageUp;
        case VK_NEXT:
            return RowStep::pageDown;
        case VK_HOME:
            return RowStep::first;
        case VK_END:
            return RowStep::last;
        default:
            return std::nullopt;
    }
}

bool IsTyped(PropertyKind kind) {
    return kind != PropertyKind::font && kind != PropertyKind::picture && kind != PropertyKind::pages;
}

}  // namespace

// The field over a value.
class PropertyRowsWindow::EditTap final : public WindowSubclass {
  public:
    EditTap(PropertyRowsWindow& rows, HWND edit) : rows_(rows) { Attach(edit); }
    ~EditTap() override {
        const HWND edit = Handle();
        Detach();
        if (edit) DestroyWindow(edit);
    }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        const LifeWatch alive = Watch();
        switch (message) {
            case WM_GETDLGCODE:
                return Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
            case WM_SYSKEYDOWN:
            case WM_KEYDOWN:
                if (rows_.OnEditKey(message, wParam)) return 0;
                break;
            case WM_CHAR:
                // Their keys have been dealt with; the field would beep.
                if (wParam == VK_RETURN || wParam == VK_ESCAPE || wParam == VK_TAB) return 0;
                break;
            case WM_MOUSEWHEEL:
                rows_.OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
                return 0;
            case WM_LBUTTONDOWN:
            case WM_LBUTTONDBLCLK: {
                // The first of two clicks may have gone to the list, before the field was there.
                const DWORD since = static_cast<DWORD>(GetMessageTime()) - rows_.clickTime_;
                const bool twice = message == WM_LBUTTONDBLCLK || since <= GetDoubleClickTime();
                rows_.clickTime_ = 0;
                const PropertyRow* row = rows_.CurrentRow();
                if (twice && row && !row->info.readOnly && !ChoicesOf(row->info).empty()) {
                    rows_.Cycle();
                    return 0;
                }
                break;
            }
            case WM_KILLFOCUS: {
                const LRESULT result = Default(message, wParam, lParam);
                const auto next = reinterpret_cast<HWND>(wParam);
                const bool toBox = rows_.box_ && rows_.box_->Handle() &&
                                   (next == rows_.box_->Handle() || IsChild(rows_.box_->Handle(), next));
                if (!alive.Alive() || toBox || rows_.committing_ || !rows_.editing_) return result;
                PropertyRowsWindow& rows = rows_;
                const LifeWatch rowsAlive = rows.Watch();
                rows.CommitEdit();
                if (rowsAlive.Alive() && GetFocus() != rows.edit_->Handle()) rows.EndEdit();
                return result;
            }
            default:
                break;
        }
        return alive.Alive() && Handle() ? Default(message, wParam, lParam) : 0;
    }

  private:
    PropertyRowsWindow& rows_;
};

PropertyRowsWindow::PropertyRowsWindow(PropertyRowsOwner& owner) : owner_(owner) {}

PropertyRowsWindow::~PropertyRowsWindow() {
    editing_ = false;
    box_.reset();
    edit_.reset();
    Destroy();
}

int PropertyRowsWindow::Scaled(int pixels) const { return ScaleRounded(pixels, WindowDpi(Handle()).x, 96); }

bool PropertyRowsWindow::Create(HWND parent, const Rect& bounds) {
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_CLIPCHILDREN;
    if (!Window::Create(rowsClass, L"Properties", style, 0, bounds, parent)) return false;
    const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 0, 0, Handle(), nullptr,
                                      ModuleInstance(), nullptr);
    if (!edit) return false;
    SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
    edit_ = std::make_unique<EditTap>(*this, edit);
    AcquireFonts();
    return true;
}

void PropertyRowsWindow::AcquireFonts() {
    SharedFont font = AcquireFont(DefaultFont(), WindowDpi(Handle()));
    if (edit_->Handle()) SendMessageW(edit_->Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(font->Get()), TRUE);
    font_ = std::move(font);  // the former one only now: the field has let go of it
    UpdateBar();
    Layout();
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
    Layout();
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

void PropertyRowsWindow::SetModel(std::shared_ptr<PropertyModel> model) {
    EndEdit();
    if (box_) box_->Close(std::nullopt);
    const PropertyRow* before = CurrentRow();
    const Text name = before ? before->info.name : Text();
    model_ = std::move(model);
    search_.Reset();
    const auto line = model_ ? model_->Table().LineOf(name) : std::nullopt;
    const bool none = !model_ || model_->Table().Lines().empty();
    current_ = none ? -1 : line ? static_cast<int>(*line) : 0;
    UpdateBar();
    if (current_ >= 0) ScrollTo(View().TopShowing(current_));
    Invalidate();
}

void PropertyRowsWindow::ValuesChanged() {
    const PropertyRow* row = CurrentRow();
    const HWND edit = edit_ ? edit_->Handle() : nullptr;
    if (editing_ && row && !committing_ && !SendMessageW(edit, EM_GETMODIFY, 0, 0)) {
        SetWindowTextW(edit, Wide(row->reading.text));
        SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
        SendMessageW(edit, EM_SETSEL, 0, -1);
    }
    Invalidate();
}

void PropertyRowsWindow::SetOrder(PropertyOrder order) {
    if (!model_) return;
    const LifeWatch alive = Watch();
    if (editing_) CommitEdit();
    if (!alive.Alive() || !model_) return;
    EndEdit();
    const PropertyRow* row = CurrentRow();
    const Text name = row ? row->info.name : Text();
    PropertyTable& table = model_->Table();
    table.SetOrder(order);
    const auto line = table.LineOf(name);
    current_ = table.Lines().empty() ? -1 : line ? static_cast<int>(*line) : 0;
    UpdateBar();
    if (current_ >= 0) ScrollTo(View().TopShowing(current_));
    Invalidate();
    owner_.LineChanged();
}

// --- Where things are ---

PropertyRowsWindow::Button PropertyRowsWindow::ButtonOf(const PropertyRow* row) const {
    if (!row) return Button::none;
    const PropertyInfo& info = row->info;
    if (info.kind == PropertyKind::pages) return Button::dialog;
    if (info.readOnly) return Button::none;
    if (info.kind == PropertyKind::font || info.kind == PropertyKind::picture) return Button::dialog;
    if (!ChoicesOf(info).empty() || info.kind == PropertyKind::color) return Button::dropDown;
    if (info.page) return Button::dialog;
    const bool text = info.kind == PropertyKind::text ||
                      (info.kind == PropertyKind::variant && std::holds_alternative<Text>(row->reading.value));
    // Several lines are for texts that may have them: names may not.
    return text && !info.single ? Button::dropDown : Button::none;
}

Rect PropertyRowsWindow::ButtonArea() const {
    if (ButtonOf(CurrentRow()) == Button::none) return {};
    const Rect value = View().ValueArea(current_);
    const int width = std::min(value.Width() / 2, GetSystemMetrics(SM_CXVSCROLL) * Scaled(96) / 96);
    return {value.right - width, value.top, value.right, value.bottom};
}

Rect PropertyRowsWindow::EditArea() const {
    Rect area = View().ValueArea(current_);
    const Rect button = ButtonArea();
    if (!button.Empty()) area.right = button.left;
    const PropertyRow* row = CurrentRow();
    if (row && row->info.kind == PropertyKind::color) area.left += Scaled(20);
    return {area.left + Scaled(3), area.top + (area.Height() - font_->LineHeight()) / 2, area.right - Scaled(1),
            area.bottom};
}

void PropertyRowsWindow::Layout() {
    if (!editing_ || !edit_->Handle()) return;
    const Rect area = EditArea();
    SetWindowPos(edit_->Handle(), nullptr, area.left, area.top, std::max(0, area.Width()), std::max(0, area.Height()),
                 SWP_NOZORDER | SWP_NOACTIVATE);
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
    Layout();
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

// --- Drawing ---

void PropertyRowsWindow::Paint(Surface& surface) const {
    const RowsView view = View();
    surface.FillRect({0, 0, view.client.width, view.client.height}, colors::windowBackground);
    for (int line = top_; line < view.count && view.LineArea(line).top < view.client.height; ++line)
        PaintLine(surface, view, line);
    PaintButton(surface);
}

void PropertyRowsWindow::PaintLine(Surface& surface, const RowsView& view, int line) const {
    const PropertyTable::Line& shown = model_->Table().Lines()[static_cast<std::size_t>(line)];
    const PropertyRow* row = model_->Table().RowAt(static_cast<std::size_t>(line));
    const bool current = line == current_;
    const Rect whole = view.LineArea(line);
    constexpr unsigned format =
        text_format::singleLine | text_format::middle | text_format::noPrefix | text_format::endEllipsis;
    const OleColor fore = current ? colors::highlightText : colors::windowText;
    const Rect name = row ? view.NameArea(line) : Rect{0, whole.top, whole.right, whole.bottom - 1};
    if (current) {
        surface.FillRect(name, colors::highlight);
    } else if (!row) {
        surface.FillRect(name, colors::buttonFace);
    }
    surface.DrawLine({0, whole.bottom - 1}, {whole.right, whole.bottom - 1}, colors::light3d, 1);
    if (!row) {
        FontSpec bold = DefaultFont();
        bold.weight = FW_BOLD;
        const int box = Scaled(9);
        const int top = name.top + (name.Height() - box) / 2;
        const Rect sign{Scaled(4), top, Scaled(4) + box, top + box};
        const OleColor color = current ? colors::highlightText : colors::buttonText;
        surface.FrameRect(sign, color);
        const int middleX = sign.left + box / 2;
        const int middleY = sign.top + box / 2;
        surface.DrawLine({sign.left + 2, middleY}, {sign.right - 2, middleY}, color, 1);
        if (!shown.open) surface.DrawLine({middleX, sign.top + 2}, {middleX, sign.bottom - 2}, color, 1);
        surface.DrawLabel(shown.heading, {sign.right + Scaled(4), name.top, name.right, name.bottom}, bold, color,
                          format);
        return;
    }
    const int indent = Scaled(model_->Table().Order() == PropertyOrder::categorized ? 17 : 4);
    surface.DrawLabel(PropertyLabel(row->info), {name.left + indent, name.top, name.right, name.bottom}, DefaultFont(),
                      fore, format);
    surface.DrawLine({name.right, whole.top}, {name.right, whole.bottom}, colors::light3d, 1);
    PaintValue(surface, view, line, *row);
}

void PropertyRowsWindow::PaintValue(Surface& surface, const RowsView& view, int line, const PropertyRow& row) const {
    Rect area = view.ValueArea(line);
    const auto* color = std::get_if<std::int32_t>(&row.reading.value);
    if (row.info.kind == PropertyKind::color && color) {
        const Rect swatch{area.left + Scaled(3), area.top + Scaled(2), area.left + Scaled(19), area.bottom - Scaled(2)};
        surface.FillRect(swatch, static_cast<OleColor>(*color));
        surface.FrameRect(swatch, colors::windowText);
        area.left = swatch.right + Scaled(1);
    }
    if (line == current_ && editing_) return;
    if (line == current_ && ButtonOf(&row) != Button::none) area.right = ButtonArea().left;
    const bool grey = row.info.readOnly || !row.reading.readable;
    surface.DrawLabel(TextView(row.reading.text).substr(0, longestShown),
                      {area.left + Scaled(4), area.top, area.right, area.bottom}, DefaultFont(),
                      grey ? colors::grayText : colors::windowText,
                      text_format::singleLine | text_format::middle | text_format::noPrefix | text_format::endEllipsis);
}

void PropertyRowsWindow::PaintButton(Surface& surface) const {
    const Button button = ButtonOf(CurrentRow());
    const Rect area = ButtonArea();
    if (button == Button::none || area.Empty()) return;
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, buttonDown_ ? edge::sunkenOuter : edge::raised, edge::allSides);
    const int shift = buttonDown_ ? 1 : 0;
    const int middleX = (area.left + area.right) / 2 + shift;
    const int middleY = (area.top + area.bottom) / 2 + shift;
    if (button == Button::dropDown) {
        const int half = std::max(2, area.Width() / 5);
        for (int i = 0; i <= half; ++i) {
            const int y = middleY - half / 2 + i;
            surface.FillRect({middleX - half + i, y, middleX + half - i + 1, y + 1}, colors::buttonText);
        }
        return;
    }
    const int dot = std::max(1, Scaled(1));
    for (int i = -1; i <= 1; ++i) {
        const int x = middleX + i * 3 * dot;
        surface.FillRect({x, middleY + dot, x + dot, middleY + 2 * dot}, colors::buttonText);
    }
}

// --- Walking ---

void PropertyRowsWindow::GoTo(int line) {
    if (!model_ || line < 0 || line >= View().count) return;
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> before = model_;
    if (editing_ && line != current_ && !CommitEdit()) return;
    if (!alive.Alive() || model_ != before) return;
    if (line != current_) EndEdit();
    current_ = line;
    ScrollTo(View().TopShowing(line));
    Invalidate();
    TellAssistive(EVENT_OBJECT_FOCUS, Handle(), line + 1);
    TellAssistive(EVENT_OBJECT_SELECTION, Handle(), line + 1);
    owner_.LineChanged();
}

void PropertyRowsWindow::Walk(RowStep step) {
    const bool inValues = editing_;
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
    const bool inValues = editing_;
    const LifeWatch alive = Watch();
    if (line) GoTo(static_cast<int>(*line));
    if (alive.Alive() && line && inValues && !BeginEdit()) SetFocus(Handle());
}

// --- Editing ---

bool PropertyRowsWindow::BeginEdit() {
    const PropertyRow* row = CurrentRow();
    const HWND edit = edit_ ? edit_->Handle() : nullptr;
    if (!row || !edit || !IsTyped(row->info.kind)) return false;
    ScrollTo(View().TopShowing(current_));
    const bool started = !editing_;
    editing_ = true;
    if (started) {
        SendMessageW(edit, EM_SETREADONLY, row->info.readOnly, 0);
        SetWindowTextW(edit, Wide(row->reading.text));
        SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
        SendMessageW(edit, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(0, 0));
    }
    Layout();
    ShowWindow(edit, SW_SHOWNA);
    SetFocus(edit);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    Invalidate();
    return true;
}

bool PropertyRowsWindow::CommitEdit() {
    const PropertyRow* row = CurrentRow();
    const HWND edit = edit_ ? edit_->Handle() : nullptr;
    if (!editing_ || !row || committing_ || row->info.readOnly) return true;
    if (!SendMessageW(edit, EM_GETMODIFY, 0, 0)) return true;
    const Text typed = WindowText(edit);
    const Text shown = row->reading.text;
    // From here on the text counts as left alone: what happens meanwhile must not apply it again.
    SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
    if (typed == shown) return true;
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> model = model_;
    const std::size_t index = *model->Table().Lines()[static_cast<std::size_t>(current_)].row;
    bool accepted = false;
    committing_ = true;
    try {
        accepted = owner_.EnterText(index, typed);
    } catch (...) {
        if (alive.Alive()) committing_ = false;
        throw;
    }
    if (!alive.Alive()) return accepted;
    committing_ = false;
    if (model_ == model && editing_ && edit_->Handle()) {
        SetWindowTextW(edit, Wide(model->Table().Rows()[index].reading.text));
        SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
        SendMessageW(edit, EM_SETSEL, 0, -1);
    }
    return accepted;
}

void PropertyRowsWindow::EndEdit() {
    if (!editing_) return;
    editing_ = false;
    const HWND edit = edit_ ? edit_->Handle() : nullptr;
    if (!edit) return;
    if (GetFocus() == edit) SetFocus(Handle());
    ShowWindow(edit, SW_HIDE);
    Invalidate();
}

void PropertyRowsWindow::Cycle() {
    const PropertyRow* row = CurrentRow();
    if (!row || row->info.readOnly) return;
    const PropertyValue next = NextChoice(row->info, row->reading.value, !Held(VK_SHIFT));
    if (std::holds_alternative<std::monostate>(next)) return;
    const std::size_t index = *model_->Table().Lines()[static_cast<std::size_t>(current_)].row;
    if (edit_->Handle()) SendMessageW(edit_->Handle(), EM_SETMODIFY, FALSE, 0);
    const LifeWatch alive = Watch();
    owner_.EnterValue(index, next);
    if (alive.Alive() && editing_ && edit_->Handle()) SendMessageW(edit_->Handle(), EM_SETSEL, 0, -1);
}

void PropertyRowsWindow::PressButton() {
    const Button button = ButtonOf(CurrentRow());
    if (button == Button::none) return;
    if (button == Button::dropDown) return OpenBox();
    const std::size_t index = *model_->Table().Lines()[static_cast<std::size_t>(current_)].row;
    owner_.OpenDialog(index);
}

void PropertyRowsWindow::OpenBox() {
    // What has been typed so far is what the box begins with.
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> model = model_;
    if (editing_ && !CommitEdit()) return;
    const PropertyRow* row = CurrentRow();
    if (!alive.Alive() || model_ != model || !row) return;
    const std::size_t index = *model->Table().Lines()[static_cast<std::size_t>(current_)].row;
    if (box_ && box_->IsOpen()) return box_->Close(std::nullopt);
    const PropertyValue& value = row->reading.value;
    if (row->info.kind == PropertyKind::color) {
        box_ = MakeColorBox(value, [this, index] { owner_.OpenDialog(index); });
    } else if (auto choices = ChoicesOf(row->info); !choices.empty()) {
        for (PropertyChoice& choice : choices) choice.name = ShowValue(row->info, choice.value);
        box_ = MakeChoiceBox(std::move(choices), value);
    } else {
        const Text* text = std::get_if<Text>(&value);
        box_ = MakeTextBox(text ? *text : Text());
    }
    const Rect cell = View().ValueArea(current_);
    POINT corners[] = {{cell.left, cell.top}, {cell.right, cell.bottom}};
    MapWindowPoints(Handle(), nullptr, corners, 2);
    box_->Open(
        Handle(), {corners[0].x, corners[0].y, corners[1].x, corners[1].y},
        [this, index, model](std::optional<PropertyValue> picked) { BoxClosed(index, model, std::move(picked)); });
}

void PropertyRowsWindow::BoxClosed(std::size_t row, const std::shared_ptr<PropertyModel>& model,
                                   std::optional<PropertyValue> picked) {
    // The box itself is in the middle of a message.
    PostMessageW(Handle(), disposeOfBox, 0, 0);
    const bool focusInside = GetFocus() == nullptr || GetFocus() == Handle() ||
                             IsChild(GetParent(Handle()), GetFocus()) || GetFocus() == GetAncestor(Handle(), GA_ROOT);
    if (focusInside) SetFocus(editing_ ? edit_->Handle() : Handle());
    // What is typed now takes the place of the value, as when the field has just opened.
    if (editing_) SendMessageW(edit_->Handle(), EM_SETSEL, 0, -1);
    if (!picked || model_ != model) return;
    owner_.EnterValue(row, *picked);
}

// --- Keys and mouse ---

bool PropertyRowsWindow::OnKey(UINT message, WPARAM key) {
    const bool alt = message == WM_SYSKEYDOWN;
    if ((alt && (key == VK_DOWN || key == VK_UP)) || (!alt && key == VK_F4)) return PressButton(), true;
    if (alt) return false;
    if (Held(VK_CONTROL) && Held(VK_SHIFT) && key >= 'A' && key <= 'Z') return JumpTo(static_cast<char16_t>(key)), true;
    const PropertyRow* row = CurrentRow();
    const bool heading = current_ >= 0 && !row;
    if (heading && (key == VK_LEFT || key == VK_RIGHT || key == VK_RETURN)) {
        const auto line = static_cast<std::size_t>(current_);
        const bool open = model_->Table().Lines()[line].open;
        if (key == VK_RETURN || open == (key == VK_LEFT)) model_->Table().Toggle(line);
        UpdateBar();
        Invalidate();
        return true;
    }
    if (const auto step = StepFor(key)) return Walk(*step), true;
    switch (key) {
        case VK_TAB:
            if (Held(VK_SHIFT) || !BeginEdit()) owner_.LeaveByTab(!Held(VK_SHIFT));
            return true;
        case VK_F2:
            return BeginEdit(), true;
        case VK_RETURN:
            if (!BeginEdit()) PressButton();
            return true;
        case VK_DELETE:
            if (!row || row->info.kind != PropertyKind::picture || row->info.readOnly) return false;
            owner_.ClearPicture(*model_->Table().Lines()[static_cast<std::size_t>(current_)].row);
            return true;
        default:
            return false;
    }
}

bool PropertyRowsWindow::OnEditKey(UINT message, WPARAM key) {
    const bool alt = message == WM_SYSKEYDOWN;
    if ((alt && (key == VK_DOWN || key == VK_UP)) || (!alt && key == VK_F4)) return PressButton(), true;
    if (alt) return false;
    const LifeWatch alive = Watch();
    if (Held(VK_CONTROL) && Held(VK_SHIFT) && key >= 'A' && key <= 'Z') return JumpTo(static_cast<char16_t>(key)), true;
    switch (key) {
        case VK_UP:
        case VK_DOWN:
        case VK_PRIOR:
        case VK_NEXT:
            return Walk(*StepFor(key)), true;
        case VK_RETURN:
            CommitEdit();
            if (alive.Alive() && editing_) SendMessageW(edit_->Handle(), EM_SETSEL, 0, -1);
            return true;
        case VK_ESCAPE: {
            const PropertyRow* row = CurrentRow();
            const bool changed = SendMessageW(edit_->Handle(), EM_GETMODIFY, 0, 0) != 0;
            if (!changed || !row) return EndEdit(), true;
            SetWindowTextW(edit_->Handle(), Wide(row->reading.text));
            SendMessageW(edit_->Handle(), EM_SETMODIFY, FALSE, 0);
            SendMessageW(edit_->Handle(), EM_SETSEL, 0, -1);
            return true;
        }
        case VK_TAB: {
            const bool back = Held(VK_SHIFT);
            CommitEdit();
            if (!alive.Alive()) return true;
            EndEdit();
            if (!back) owner_.LeaveByTab(true);
            return true;
        }
        default:
            return false;
    }
}

void PropertyRowsWindow::Activate(int line) {
    const LifeWatch alive = Watch();
    GoTo(line);
    if (!alive.Alive() || current_ != line) return;
    const PropertyRow* row = CurrentRow();
    if (!row) {
        model_->Table().Toggle(static_cast<std::size_t>(line));
        UpdateBar();
        Invalidate();
    } else if (!row->info.readOnly && !ChoicesOf(row->info).empty()) {
        Cycle();
    } else if (ButtonOf(row) == Button::dialog) {
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
    if (GetFocus() != Handle() && !editing_) SetFocus(Handle());
    if (!alive.Alive()) return;
    const auto line = view.LineAt(at);
    if (!line) return;
    if (twice) return Activate(*line);
    const bool heading = model_ && !model_->Table().RowAt(static_cast<std::size_t>(*line));
    if (heading && at.x < Scaled(16)) return Activate(*line);
    if (*line == current_ && ButtonArea().Contains(at)) {
        buttonDown_ = true;
        Invalidate();
        // The box's closing by this very click must not open it again.
        if (box_ && box_->IsOpen()) return;
        SetCapture(Handle());
        if (ButtonOf(CurrentRow()) == Button::dropDown) {
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
        clickTime_ = static_cast<DWORD>(GetMessageTime());
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
            Paint(paint.Surface());
            return 0;
        }
        case WM_PRINTCLIENT: {
            GdiSurface surface(reinterpret_cast<HDC>(wParam), WindowDpi(Handle()));
            Paint(surface);
            return 0;
        }
        case WM_SIZE:
            UpdateBar();
            Layout();
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
            if (OnKey(message, wParam)) return 0;
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
            const bool press = buttonDown_ && ButtonArea().Contains(MousePoint(lParam));
            dragging_ = buttonDown_ = false;
            if (GetCapture() == Handle()) ReleaseCapture();
            Invalidate();
            if (press && !(box_ && box_->IsOpen())) PressButton();
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
            if (current_ >= 0) TellAssistive(EVENT_OBJECT_FOCUS, Handle(), current_ + 1);
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
            if (box_ && !box_->IsOpen()) box_.reset();
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::host
