// The field in which the current value of the property list is edited in its place, and the box that opens below it.
#include <algorithm>

#include "designer/properties/property_rows_window.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

// The field over a value.
class PropertyRowsWindow::EditSubclass final : public WindowSubclass {
  public:
    EditSubclass(PropertyRowsWindow& rows, HWND edit) : rows_(rows) { Attach(edit); }
    ~EditSubclass() override {
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
                if (rows_.OnEditKey(PressedKey(message, wParam))) return 0;
                break;
            case WM_CHAR:
                // Their keys have been handled, and the field would beep.
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
                if (rowsAlive.Alive() && GetFocus() != rows.Edit()) rows.EndEdit();
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

bool PropertyRowsWindow::CreateEdit() {
    const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 0, 0, Handle(), nullptr,
                                      ModuleInstance(), nullptr);
    if (!edit) return false;
    SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
    edit_ = std::make_unique<EditSubclass>(*this, edit);
    return true;
}

HWND PropertyRowsWindow::Edit() const { return edit_ ? edit_->Handle() : nullptr; }

void PropertyRowsWindow::FillEdit(const Text& text) {
    const HWND edit = Edit();
    SetWindowTextW(edit, Wide(text));
    SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
    SendMessageW(edit, EM_SETSEL, 0, -1);
}

void PropertyRowsWindow::Layout() {
    const HWND edit = Edit();
    if (!editing_ || !edit) return;
    const Rect area = Look().EditArea(font_->LineHeight());
    SetWindowPos(edit, nullptr, area.left, area.top, std::max(0, area.Width()), std::max(0, area.Height()),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void PropertyRowsWindow::ValuesChanged() {
    const PropertyRow* row = CurrentRow();
    const HWND edit = Edit();
    if (editing_ && row && !committing_ && !SendMessageW(edit, EM_GETMODIFY, 0, 0)) {
        FillEdit(row->reading.text);
    }
    Invalidate();
}

bool PropertyRowsWindow::BeginEdit() {
    const PropertyRow* row = CurrentRow();
    const HWND edit = Edit();
    if (!row || !edit || !IsTyped(row->info.kind)) return false;
    ScrollTo(View().TopShowing(current_));
    const bool started = !editing_;
    editing_ = true;
    if (started) {
        SendMessageW(edit, EM_SETREADONLY, row->info.readOnly, 0);
        SendMessageW(edit, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(0, 0));
        FillEdit(row->reading.text);
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
    const HWND edit = Edit();
    if (!editing_ || !row || committing_ || row->info.readOnly) return true;
    if (!SendMessageW(edit, EM_GETMODIFY, 0, 0)) return true;
    const Text typed = WindowText(edit);
    const Text shown = row->reading.text;
    // From here on, the text counts as unchanged, so that a nested message does not apply it again.
    SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
    if (typed == shown) return true;
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> model = model_;
    const std::size_t index = CurrentIndex();
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
    if (model_ == model && editing_ && Edit()) {
        FillEdit(model->Table().Rows()[index].reading.text);
    }
    return accepted;
}

void PropertyRowsWindow::EndEdit() {
    if (!editing_) return;
    editing_ = false;
    const HWND edit = Edit();
    if (!edit) return;
    if (GetFocus() == edit) SetFocus(Handle());
    ShowWindow(edit, SW_HIDE);
    Invalidate();
}

void PropertyRowsWindow::Cycle() {
    const PropertyRow* row = CurrentRow();
    if (!row || row->info.readOnly) return;
    const PropertyValue next = NextChoice(row->info, row->reading.value, !IsKeyDown(VK_SHIFT));
    if (std::holds_alternative<std::monostate>(next)) return;
    const std::size_t index = CurrentIndex();
    if (Edit()) SendMessageW(Edit(), EM_SETMODIFY, FALSE, 0);
    const LifeWatch alive = Watch();
    owner_.EnterValue(index, next);
    if (alive.Alive() && editing_ && Edit()) SendMessageW(Edit(), EM_SETSEL, 0, -1);
}

void PropertyRowsWindow::PressButton() {
    const ValueButton button = CurrentButton();
    if (button == ValueButton::none) return;
    if (button == ValueButton::dropDown) return OpenBox();
    const std::size_t index = CurrentIndex();
    owner_.OpenDialog(index);
}

void PropertyRowsWindow::OpenBox() {
    // The box begins with the text that has been typed so far.
    const LifeWatch alive = Watch();
    const std::shared_ptr<PropertyModel> model = model_;
    if (editing_ && !CommitEdit()) return;
    const PropertyRow* row = CurrentRow();
    if (!alive.Alive() || model_ != model || !row) return;
    const std::size_t index = CurrentIndex();
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
    // The box is in the middle of a message, and is destroyed later.
    PostMessageW(Handle(), disposeOfBox, 0, 0);
    const bool focusInside = GetFocus() == nullptr || GetFocus() == Handle() ||
                             IsChild(GetParent(Handle()), GetFocus()) || GetFocus() == GetAncestor(Handle(), GA_ROOT);
    if (focusInside) SetFocus(editing_ ? Edit() : Handle());
    // Typing replaces the value now, as when the field has just opened.
    if (editing_) SendMessageW(Edit(), EM_SETSEL, 0, -1);
    if (!picked || model_ != model) return;
    owner_.EnterValue(row, *picked);
}

bool PropertyRowsWindow::OnEditKey(const ListKey& key) {
    const PropertyRow* row = CurrentRow();
    const bool changed = row && SendMessageW(Edit(), EM_GETMODIFY, 0, 0) != 0;
    const FieldKeyMeaning meaning = FieldKeyOf(key, changed);
    const LifeWatch alive = Watch();
    switch (meaning.action) {
        case FieldAction::none:
            return false;
        case FieldAction::pressButton:
            PressButton();
            break;
        case FieldAction::jump:
            JumpTo(static_cast<char16_t>(key.key));
            break;
        case FieldAction::walk:
            Walk(meaning.step);
            break;
        case FieldAction::apply:
            CommitEdit();
            if (alive.Alive() && editing_) SendMessageW(Edit(), EM_SETSEL, 0, -1);
            break;
        case FieldAction::restore:
            FillEdit(row->reading.text);
            break;
        case FieldAction::close:
            EndEdit();
            break;
        case FieldAction::applyToRows:
        case FieldAction::leave:
            CommitEdit();
            if (!alive.Alive()) break;
            EndEdit();
            if (meaning.action == FieldAction::leave) owner_.LeaveByTab(true);
            break;
    }
    return true;
}

}  // namespace qvx::host::designer
