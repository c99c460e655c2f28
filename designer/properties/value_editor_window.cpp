#include "designer/properties/value_editor_window.h"

#include <algorithm>

#include "designer/properties/property_rows_window.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

class ValueEditor::FieldSubclass final : public WindowSubclass {
  public:
    FieldSubclass(ValueEditor& editor, HWND field) : editor_(editor) { Attach(field); }
    ~FieldSubclass() override {
        const HWND field = Handle();
        Detach();
        if (field) DestroyWindow(field);
    }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        const LifeWatch alive = Watch();
        switch (message) {
            case WM_GETDLGCODE:
                return Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
            case WM_SYSKEYDOWN:
            case WM_KEYDOWN:
                if (editor_.OnKey(PressedKey(message, wParam))) return 0;
                break;
            case WM_CHAR:
                // Their keys have been handled, and the field would beep.
                if (wParam == VK_RETURN || wParam == VK_ESCAPE || wParam == VK_TAB) return 0;
                break;
            case WM_MOUSEWHEEL:
                editor_.rows_.OnWheel(GET_WHEEL_DELTA_WPARAM(wParam));
                return 0;
            case WM_LBUTTONDOWN:
            case WM_LBUTTONDBLCLK:
                if (editor_.OnClick(message == WM_LBUTTONDBLCLK)) return 0;
                break;
            case WM_KILLFOCUS: {
                const LRESULT result = Default(message, wParam, lParam);
                if (alive.Alive()) editor_.OnFocusLost(reinterpret_cast<HWND>(wParam));
                return result;
            }
            default:
                break;
        }
        return alive.Alive() && Handle() ? Default(message, wParam, lParam) : 0;
    }

  private:
    ValueEditor& editor_;
};

ValueEditor::ValueEditor(PropertyRowsWindow& rows) : rows_(rows) {}

ValueEditor::~ValueEditor() = default;

void ValueEditor::Dispose() {
    editing_ = false;
    box_.reset();
    field_.reset();
}

// --- The field.

bool ValueEditor::Create() {
    const HWND field = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 0, 0, rows_.Handle(), nullptr,
                                       ModuleInstance(), nullptr);
    if (!field) return false;
    SendMessageW(field, EM_SETLIMITTEXT, 0, 0);
    field_ = std::make_unique<FieldSubclass>(*this, field);
    return true;
}

HWND ValueEditor::Field() const { return field_ ? field_->Handle() : nullptr; }

void ValueEditor::Fill(const Text& text) {
    SetWindowTextW(Field(), Wide(text));
    SetUnchanged();
    SelectAll();
}

bool ValueEditor::Changed() const { return SendMessageW(Field(), EM_GETMODIFY, 0, 0) != 0; }

void ValueEditor::SetUnchanged() { SendMessageW(Field(), EM_SETMODIFY, FALSE, 0); }

void ValueEditor::SelectAll() { SendMessageW(Field(), EM_SETSEL, 0, -1); }

void ValueEditor::Layout() {
    const HWND field = Field();
    if (!editing_ || !field) return;
    const Rect area = rows_.FieldArea();
    SetWindowPos(field, nullptr, area.left, area.top, std::max(0, area.Width()), std::max(0, area.Height()),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void ValueEditor::ValuesChanged() {
    const PropertyRow* row = rows_.CurrentRow();
    if (editing_ && row && !committing_ && !Changed()) Fill(row->reading.text);
}

bool ValueEditor::Begin() {
    const PropertyRow* row = rows_.CurrentRow();
    const HWND field = Field();
    if (!row || !field || !IsTyped(row->info.kind)) return false;
    rows_.RevealCurrent();
    const bool started = !editing_;
    editing_ = true;
    if (started) {
        SendMessageW(field, EM_SETREADONLY, row->info.readOnly, 0);
        SendMessageW(field, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(0, 0));
        Fill(row->reading.text);
    }
    Layout();
    ShowWindow(field, SW_SHOWNA);
    SetFocus(field);
    SelectAll();
    rows_.Invalidate();
    return true;
}

bool ValueEditor::Commit() {
    const PropertyRow* row = rows_.CurrentRow();
    if (!editing_ || !row || committing_ || row->info.readOnly || !Changed()) return true;
    const Text typed = WindowText(Field());
    const Text shown = row->reading.text;
    // From here on, the text counts as unchanged, so that a nested message does not apply it again.
    SetUnchanged();
    if (typed == shown) return true;
    const LifeWatch alive = rows_.Watch();
    const std::shared_ptr<PropertyModel> model = rows_.Model();
    const std::size_t index = rows_.CurrentIndex();
    bool accepted = false;
    committing_ = true;
    try {
        accepted = rows_.Owner().EnterText(index, typed);
    } catch (...) {
        if (alive.Alive()) committing_ = false;
        throw;
    }
    if (!alive.Alive()) return accepted;
    committing_ = false;
    if (rows_.Model() == model && editing_ && Field()) Fill(model->Table().Rows()[index].reading.text);
    return accepted;
}

void ValueEditor::End() {
    if (!editing_) return;
    editing_ = false;
    const HWND field = Field();
    if (!field) return;
    if (GetFocus() == field) SetFocus(rows_.Handle());
    ShowWindow(field, SW_HIDE);
    rows_.Invalidate();
}

void ValueEditor::OnFocusLost(HWND next) {
    const HWND box = box_ ? box_->Handle() : nullptr;
    const bool toBox = box && (next == box || IsChild(box, next));
    if (toBox || committing_ || !editing_) return;
    const LifeWatch alive = rows_.Watch();
    Commit();
    if (alive.Alive() && GetFocus() != Field()) End();
}

bool ValueEditor::OnClick(bool twice) {
    // The first of two clicks may have gone to the list, before the field was there.
    const DWORD since = static_cast<DWORD>(GetMessageTime()) - clickTime_;
    clickTime_ = 0;
    const PropertyRow* row = rows_.CurrentRow();
    const bool cycles = row && !row->info.readOnly && !ChoicesOf(row->info).empty();
    if (!cycles || (!twice && since > GetDoubleClickTime())) return false;
    Cycle();
    return true;
}

void ValueEditor::Cycle() {
    const PropertyRow* row = rows_.CurrentRow();
    if (!row || row->info.readOnly) return;
    const PropertyValue next = NextChoice(row->info, row->reading.value, !IsKeyDown(VK_SHIFT));
    if (std::holds_alternative<std::monostate>(next)) return;
    const std::size_t index = rows_.CurrentIndex();
    if (Field()) SetUnchanged();
    const LifeWatch alive = rows_.Watch();
    rows_.Owner().EnterValue(index, next);
    if (alive.Alive() && editing_ && Field()) SelectAll();
}

bool ValueEditor::OnKey(const ListKey& key) {
    const PropertyRow* row = rows_.CurrentRow();
    const FieldKeyMeaning meaning = FieldKeyOf(key, row && Changed());
    const LifeWatch alive = rows_.Watch();
    switch (meaning.action) {
        case FieldAction::none:
            return false;
        case FieldAction::pressButton:
            rows_.PressButton();
            break;
        case FieldAction::jump:
            rows_.JumpTo(static_cast<char16_t>(key.key));
            break;
        case FieldAction::walk:
            rows_.Walk(meaning.step);
            break;
        case FieldAction::apply:
            Commit();
            if (alive.Alive() && editing_) SelectAll();
            break;
        case FieldAction::restore:
            Fill(row->reading.text);
            break;
        case FieldAction::close:
            End();
            break;
        case FieldAction::applyToRows:
        case FieldAction::leave:
            Commit();
            if (!alive.Alive()) break;
            End();
            if (meaning.action == FieldAction::leave) rows_.Owner().LeaveByTab(true);
            break;
    }
    return true;
}

// --- The box.

std::unique_ptr<DropDown> ValueEditor::MakeBox(const PropertyRow& row, std::size_t index) {
    const PropertyValue& value = row.reading.value;
    if (row.info.kind == PropertyKind::color) {
        return MakeColorBox(value, [this, index] { rows_.Owner().OpenDialog(index); });
    }
    if (auto choices = ChoicesOf(row.info); !choices.empty()) {
        for (PropertyChoice& choice : choices) choice.name = ShowValue(row.info, choice.value);
        return MakeChoiceBox(std::move(choices), value);
    }
    const Text* text = std::get_if<Text>(&value);
    return MakeTextBox(text ? *text : Text());
}

void ValueEditor::OpenBox() {
    // The box begins with the text that has been typed so far.
    const LifeWatch alive = rows_.Watch();
    const std::shared_ptr<PropertyModel> model = rows_.Model();
    if (editing_ && !Commit()) return;
    if (!alive.Alive() || rows_.Model() != model) return;
    const PropertyRow* row = rows_.CurrentRow();
    if (!row) return;
    const std::size_t index = rows_.CurrentIndex();
    if (BoxIsOpen()) return box_->Close(std::nullopt);
    box_ = MakeBox(*row, index);
    const Rect cell = rows_.View().ValueArea(rows_.Current());
    POINT corners[] = {{cell.left, cell.top}, {cell.right, cell.bottom}};
    MapWindowPoints(rows_.Handle(), nullptr, corners, 2);
    box_->Open(
        rows_.Handle(), {corners[0].x, corners[0].y, corners[1].x, corners[1].y},
        [this, index, model](std::optional<PropertyValue> picked) { BoxClosed(index, model, std::move(picked)); });
}

void ValueEditor::CloseBox() {
    if (box_) box_->Close(std::nullopt);
}

void ValueEditor::DisposeOfBox() {
    if (box_ && !box_->IsOpen()) box_.reset();
}

void ValueEditor::BoxClosed(std::size_t row, const std::shared_ptr<PropertyModel>& model,
                            std::optional<PropertyValue> picked) {
    // The box is in the middle of a message, and is destroyed later.
    const HWND rows = rows_.Handle();
    PostMessageW(rows, PropertyRowsWindow::disposeOfBox, 0, 0);
    const HWND focus = GetFocus();
    const bool focusInside =
        !focus || focus == rows || IsChild(GetParent(rows), focus) || focus == GetAncestor(rows, GA_ROOT);
    if (focusInside) SetFocus(editing_ ? Field() : rows);
    // Typing replaces the value now, as when the field has just opened.
    if (editing_) SelectAll();
    if (!picked || rows_.Model() != model) return;
    rows_.Owner().EnterValue(row, *picked);
}

}  // namespace qvx::host::designer
