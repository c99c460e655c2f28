#include "designer/properties/property_list_view_window.h"

#include <commctrl.h>

#include <algorithm>

#include "com/guard.h"
#include "com/late_bound.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "designer/properties/value_dialogs_win32.h"
#include "host/form_font.h"
#include "host/form_pictures_object.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

// Makes Tab leave one of the system's controls, since the program's message loop does not.
class TabSubclass final : public WindowSubclass {
  public:
    TabSubclass(HWND window, std::function<void(HWND, bool)> leave) : leave_(std::move(leave)) { Attach(window); }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_KEYDOWN && wParam == VK_TAB) {
            leave_(Handle(), GetKeyState(VK_SHIFT) >= 0);
            return 0;
        }
        if (message == WM_CHAR && wParam == VK_TAB) return 0;
        return Default(message, wParam, lParam);
    }

  private:
    std::function<void(HWND, bool)> leave_;
};

}  // namespace

// --- The window and its parts ---

HWND PropertyListWindow::View::AddChild(const wchar_t* className, DWORD style, int id) const {
    return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, 10, 10, window_.Handle(),
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ModuleInstance(), nullptr);
}

bool PropertyListWindow::View::Create() {
    INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&wanted);
    selector_ = AddChild(WC_COMBOBOXW, CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, selectorId);
    tabs_ = AddChild(WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS, tabsId);
    header_ = AddChild(WC_HEADERW, HDS_HORZ, headerId);
    if (!selector_ || !tabs_ || !header_ || !rows_.Create(window_.Handle(), {0, 0, 10, 10})) return false;
    const wchar_t* const names[] = {L"Alphabetic", L"Categorized"};
    for (int i = 0; i < 2; ++i) {
        TCITEMW tab{};
        tab.mask = TCIF_TEXT;
        tab.pszText = const_cast<wchar_t*>(names[i]);
        SendMessageW(tabs_, TCM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tab));
    }
    const wchar_t* const columns[] = {L"Property", L"Value"};
    for (int i = 0; i < 2; ++i) {
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_FORMAT | HDI_WIDTH;
        item.fmt = HDF_LEFT | HDF_STRING;
        item.cxy = 50;
        item.pszText = const_cast<wchar_t*>(columns[i]);
        SendMessageW(header_, HDM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
    for (const HWND control : {selector_, tabs_})
        subclasses_.push_back(
            std::make_unique<TabSubclass>(control, [this](HWND from, bool forward) { Leave(from, forward); }));
    AcquireFonts();
    Layout();
    return true;
}

void PropertyListWindow::View::AcquireFonts() {
    const SharedFont before = std::exchange(font_, AcquireFont(DefaultFont(), WindowDpi(window_.Handle())));
    for (const HWND control : {selector_, tabs_, header_})
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), TRUE);
    rows_.AcquireFonts();
}

void PropertyListWindow::View::Layout() {
    if (!selector_) return;
    const Rect client = window_.ClientArea();
    const int gap = Scaled(3);
    RECT combo{};
    GetWindowRect(selector_, &combo);
    const int line = font_->LineHeight();
    int y = gap;
    areas_.selector = {gap, y, client.right - gap, y + static_cast<int>(combo.bottom - combo.top)};
    y = areas_.selector.bottom + gap;
    RECT tab{};
    SendMessageW(tabs_, TCM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&tab));
    areas_.tabs = {gap, y, client.right - gap, y + static_cast<int>(tab.bottom) + 1};
    areas_.header = {gap, areas_.tabs.bottom, client.right - gap, areas_.tabs.bottom + line + Scaled(6)};
    const int room = client.bottom - gap - areas_.header.bottom;
    const int help = std::clamp(Scaled(helpHeight_), 0, std::max(0, room - 3 * line));
    areas_.help = {gap, client.bottom - gap - help, client.right - gap, client.bottom - gap};
    areas_.splitter = {0, areas_.help.top - Scaled(4), client.right, areas_.help.top};
    areas_.rows = {gap, areas_.header.bottom, client.right - gap, std::max(areas_.header.bottom, areas_.splitter.top)};
    const auto place = [](HWND child, const Rect& area, int dropHeight = 0) {
        SetWindowPos(child, nullptr, area.left, area.top, std::max(0, area.Width()),
                     std::max(0, area.Height() + dropHeight), SWP_NOZORDER | SWP_NOACTIVATE);
    };
    // A combo's own height includes its list's.
    place(selector_, areas_.selector, Scaled(250));
    place(tabs_, areas_.tabs);
    place(header_, areas_.header);
    place(rows_.Handle(), areas_.rows);
    DividerMoved();
    window_.Invalidate();
}

void PropertyListWindow::View::DividerMoved() {
    if (!header_ || !rows_.Handle() || settingHeader_) return;
    const FlagScope scope(settingHeader_);
    const int widths[] = {rows_.Divider(), std::max(0, areas_.header.Width() - rows_.Divider())};
    for (int i = 0; i < 2; ++i) {
        HDITEMW item{};
        item.mask = HDI_WIDTH;
        item.cxy = widths[i];
        SendMessageW(header_, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
}

void PropertyListWindow::View::DragSplitter(int y) {
    const int height = areas_.help.bottom - y;
    helpHeight_ = std::max(0, ScaleRounded(height, 96, WindowDpi(window_.Handle()).x));
    Layout();
}

void PropertyListWindow::View::PaintHelp(Surface& surface) const {
    const Rect client = window_.ClientArea();
    surface.FillRect(client, colors::buttonFace);
    if (areas_.help.Empty()) return;
    surface.FrameRect(areas_.help, colors::buttonShadow);
    const PropertyRow* row = rows_.CurrentRow();
    if (!row) return;
    const Rect inside = areas_.help.Inflated(-Scaled(5), -Scaled(4));
    const ClipScope clip(surface, inside);
    FontSpec bold = DefaultFont();
    bold.weight = FW_BOLD;
    const int line = font_->LineHeight();
    surface.DrawLabel(PropertyLabel(row->info), {inside.left, inside.top, inside.right, inside.top + line}, bold,
                      colors::buttonText, text_format::singleLine | text_format::noPrefix | text_format::endEllipsis);
    surface.DrawLabel(row->info.help, {inside.left, inside.top + line + Scaled(2), inside.right, inside.bottom},
                      DefaultFont(), colors::buttonText, text_format::wordBreak | text_format::noPrefix);
}

void PropertyListWindow::View::Leave(HWND from, bool forward) const {
    const HWND next = GetNextDlgTabItem(Owner(), from, !forward);
    if (next) SetFocus(next);
}

LRESULT PropertyListWindow::View::OnNotify(const NMHDR& header) {
    if (header.hwndFrom == tabs_ && header.code == TCN_SELCHANGE) {
        const bool second = SendMessageW(tabs_, TCM_GETCURSEL, 0, 0) == 1;
        SetOrder(second ? PropertyOrder::categorized : PropertyOrder::alphabetic);
    }
    const bool moved = header.code == HDN_ITEMCHANGEDW || header.code == HDN_ITEMCHANGEDA;
    if (header.hwndFrom == header_ && moved && !settingHeader_) {
        const auto& change = reinterpret_cast<const NMHEADERW&>(header);
        HDITEMW item{};
        item.mask = HDI_WIDTH;
        SendMessageW(header_, HDM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        if (change.iItem == 0) rows_.SetDivider(item.cxy);
        // The second column always takes the rest of the width.
        DividerMoved();
    }
    return 0;
}

// --- What is shown ---

void PropertyListWindow::View::FillSelector(std::vector<Text> titles) {
    if (titles == titles_) return;
    titles_ = std::move(titles);
    SendMessageW(selector_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(selector_, CB_RESETCONTENT, 0, 0);
    for (const Text& title : titles_) SendMessageW(selector_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(title)));
    SendMessageW(selector_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(selector_, nullptr, TRUE);
}

void PropertyListWindow::View::Show(std::vector<Subject> subjects, std::vector<Text> titles) {
    const unsigned show = ++shows_;
    const LifeWatch alive = window_.Watch();
    std::vector<ObjectProperties> objects;
    objects.reserve(subjects.size());
    TypeMemberReader reader;
    for (const Subject& subject : subjects) {
        objects.emplace_back(subject.extended, subject.own, subject.control, reader);
        if (!alive.Alive()) return;
    }
    const auto model = std::make_shared<PropertyModel>(std::move(objects));
    model->Table().SetOrder(order_);
    model->ReadAll();
    // The objects may have done anything meanwhile; a later call to show others has been completed then.
    if (!alive.Alive() || show != shows_ || !window_.Handle()) return;
    FillSelector(std::move(titles));
    title_ = subjects.size() == 1 ? subjects[0].title : Text();
    const auto picked = std::find(titles_.begin(), titles_.end(), title_);
    const bool known = subjects.size() == 1 && picked != titles_.end();
    SendMessageW(selector_, CB_SETCURSEL, known ? static_cast<WPARAM>(picked - titles_.begin()) : WPARAM(-1), 0);
    model_ = model;
    rows_.SetModel(model);
    window_.Invalidate(areas_.help);
}

void PropertyListWindow::View::ReadValues(const std::shared_ptr<PropertyModel>& model) {
    const LifeWatch alive = window_.Watch();
    model->ReadAll();
    if (alive.Alive() && model_ == model) rows_.ValuesChanged();
}

void PropertyListWindow::View::Refresh() {
    if (model_) ReadValues(std::shared_ptr<PropertyModel>(model_));
}

void PropertyListWindow::View::SetOrder(PropertyOrder order) {
    order_ = order;
    SendMessageW(tabs_, TCM_SETCURSEL, order == PropertyOrder::categorized ? 1 : 0, 0);
    rows_.SetOrder(order);
}

void PropertyListWindow::View::GoTo(TextView name) {
    const auto line = model_ ? model_->Table().LineOf(name) : std::nullopt;
    if (line) rows_.GoTo(static_cast<int>(*line));
}

void PropertyListWindow::View::OnSelect() {
    const LRESULT chosen = SendMessageW(selector_, CB_GETCURSEL, 0, 0);
    const auto tell = window_.onSelect;
    if (chosen >= 0 && tell) tell(static_cast<std::size_t>(chosen));
}

// --- Writing ---

void PropertyListWindow::View::Refuse(const PropertyInfo& info, const RunTimeError& error) {
    refusal_ = (PropertyLabel(info) + u": ").append(error.Description());
    // The message waits, since the focus may be about to move.
    PostMessageW(window_.Handle(), showRefusal, 0, 0);
}

void PropertyListWindow::View::ShowRefusal() {
    const Text message = std::exchange(refusal_, {});
    const Text title = title_.empty() ? Text(u"Properties") : title_;
    if (message.empty()) return;
    const LifeWatch alive = window_.Watch();
    const bool editing = rows_.Editing();
    const HWND focus = GetFocus();
    MessageBoxW(Owner(), Wide(message), Wide(title), MB_OK | MB_ICONEXCLAMATION);
    // The user continues where the message came up.
    if (!alive.Alive() || !window_.Handle()) return;
    if (editing && rows_.BeginEdit()) return;
    if (IsWindow(focus)) SetFocus(focus);
}

template <class Write>
bool PropertyListWindow::View::Apply(std::size_t row, const Write& write) {
    const std::shared_ptr<PropertyModel> model = model_;
    const PropertyInfo info = model->Table().Rows()[row].info;
    const LifeWatch alive = window_.Watch();
    if (const auto tell = window_.onBeforeChange) tell();
    if (!alive.Alive()) return false;
    const PropertyModel::Written written = write(*model);
    if (!alive.Alive()) return !written.refusal;
    if (model_ == model) ReadValues(model);
    if (!alive.Alive()) return !written.refusal;
    if (written.refusal) Refuse(info, *written.refusal);
    const auto tell = window_.onChanged;
    if (written.count > 0 && tell) tell(info.name);
    return !written.refusal;
}

bool PropertyListWindow::View::EnterValue(std::size_t row, const PropertyValue& value) {
    return Apply(row, [&](const PropertyModel& model) { return model.Write(row, value); });
}

bool PropertyListWindow::View::EnterText(std::size_t row, const Text& typed) {
    const PropertyRow& shown = model_->Table().Rows()[row];
    std::optional<PropertyValue> value;
    try {
        value = ParseTyped(shown.info, typed, shown.reading.value);
    } catch (const RunTimeError& error) {
        Refuse(shown.info, error);
        return false;
    }
    return EnterValue(row, *value);
}

bool PropertyListWindow::View::SetValue(TextView name, const PropertyValue& value) {
    const auto row = model_ ? model_->Table().FindRow(name) : std::nullopt;
    return row && EnterValue(*row, value);
}

bool PropertyListWindow::View::WritePicture(std::size_t row, const ComPtr<IPictureDisp>& picture) {
    return Apply(row, [&](const PropertyModel& model) { return model.WritePicture(row, picture.get()); });
}

void PropertyListWindow::View::ClearPicture(std::size_t row) { WritePicture(row, nullptr); }

bool PropertyListWindow::View::SetPicture(TextView name, const Text& path) {
    const auto row = model_ ? model_->Table().FindRow(name) : std::nullopt;
    if (!row) return false;
    if (path.empty()) return WritePicture(*row, nullptr);
    const std::shared_ptr<PropertyModel> model = model_;
    const PropertyInfo& info = model->Table().Rows()[*row].info;
    const LifeWatch alive = window_.Watch();
    ComPtr<IPictureDisp> picture;
    try {
        const auto load = window_.onLoadPicture;
        picture = load ? load(path) : LoadPictureFile({}, path);
    } catch (const ComError& error) {
        if (alive.Alive()) Refuse(info, ForeignError(error.Result()));
    } catch (const RunTimeError& error) {
        if (alive.Alive()) Refuse(info, error);
    }
    return picture && alive.Alive() && model_ == model && WritePicture(*row, picture);
}

// --- The system's dialogs ---

void PropertyListWindow::View::OpenDialog(std::size_t row) {
    const std::shared_ptr<PropertyModel> model = model_;
    const PropertyRow& shown = model->Table().Rows()[row];
    const LifeWatch alive = window_.Watch();
    // While a dialog is open, the list may come to show something else.
    const auto same = [&] { return alive.Alive() && model_ == model; };
    switch (shown.info.kind) {
        case PropertyKind::color: {
            const auto* before = std::get_if<std::int32_t>(&shown.reading.value);
            const auto color = AskColor(Owner(), before ? static_cast<OleColor>(*before) : OleColor{});
            if (color && same()) EnterValue(row, PropertyValue(static_cast<std::int32_t>(*color)));
            return;
        }
        case PropertyKind::font: {
            const auto* before = std::get_if<FontSpec>(&shown.reading.value);
            const auto font = AskFont(Owner(), before ? *before : DefaultFont());
            if (font && same()) EnterValue(row, PropertyValue(*font));
            return;
        }
        case PropertyKind::picture: {
            const Text path = AskPictureFile(Owner());
            if (!path.empty() && same()) SetPicture(shown.info.name, path);
            return;
        }
        default:
            // The property has a page of its own, or the row opens all pages.
            if (const auto tell = window_.onPages) tell(0);
            return;
    }
}

}  // namespace qvx::host::designer
