// The combo's lifetime, text, keys and choices. Its entries are in combo_list_window.cpp; its appearance and layout are
// in combo_look_window.cpp.
#include "widgets/combo/combo_window.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "common/flag_scope.h"
#include "common/keys.h"
#include "common/run_time_error.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx {
namespace {

bool WorksTheList(int key) {
    return key == keys::up || key == keys::down || key == keys::pageUp || key == keys::pageDown || key == keys::f4;
}

}  // namespace

ComboWindow::ComboWindow(HWND parent, ComboListener* listener, bool sorted)
    : listener_(listener), edit_(*this), popup_(*this), sorted_(sorted) {
    MakeWindows(parent);
}

void ComboWindow::MakeWindows(HWND parent) {
    const DWORD style = WS_CHILD | WS_CLIPSIBLINGS | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL | CBS_HASSTRINGS |
                        (sorted_ ? static_cast<DWORD>(CBS_SORT) : 0u) |
                        (matchesParts_ ? static_cast<DWORD>(CBS_OWNERDRAWFIXED) : 0u);
    const DWORD direction = rightToLeft_ ? WS_EX_LAYOUTRTL : 0;
    const HWND window =
        CreateWindowExW(direction, L"COMBOBOX", L"", style, 0, 0, 100, 200, parent, nullptr, ModuleInstance(), nullptr);
    if (!window) throw RunTimeError(errors::outOfMemory, u"Out of memory");
    placed_.reset();
    AttachTo(window);
    SetFont(font_);
}

void ComboWindow::AttachTo(HWND window) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(window, &info);
    list_ = info.hwndList;
    Attach(window);
    edit_.Attach(info.hwndItem);
    names_[0].Attach(window);
    names_[1].Attach(info.hwndItem);
    names_[2].Attach(list_);
    popup_.Attach(list_);
    SendMessageW(info.hwndItem, EM_SETLIMITTEXT, static_cast<WPARAM>(maxLength_), 0);
}

ComboWindow::~ComboWindow() {
    listener_ = nullptr;
    edit_.Detach();
    popup_.Detach();
    const HWND window = Window();
    Detach();
    toolTip_.Destroy();
    if (window) DestroyWindow(window);
}

void ComboWindow::SetRightToLeft(bool rightToLeft) {
    if (rightToLeft == rightToLeft_) return;
    TentativeValue value(rightToLeft_, rightToLeft);
    RemakeWindows();
    value.Done();
}

void ComboWindow::SetMatchesParts(bool matches) {
    if (matches == matchesParts_) return;
    TentativeValue value(matchesParts_, matches);
    RemakeWindows();
    value.Done();
}

void ComboWindow::DetachAll() {
    edit_.Detach();
    popup_.Detach();
    Detach();
    for (AccessibleNameSubclass& part : names_) part.Detach();
}

void ComboWindow::RemakeWindows() {
    Entries();
    std::vector<LONG> data(entries_.size());
    for (std::size_t index = 0; index < data.size(); ++index) data[index] = ItemData(static_cast<int>(index));
    const qvx::Text text = GetText();
    const qvx::Text tip = toolTip_.Text();
    const HWND old = Window();
    const bool visible = (GetWindowLongW(old, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) != 0;
    const bool enabled = Enabled();
    const FlagScope scope(writing_);
    const FlagScope changing(changingEntries_);
    order_ = {};
    DetachAll();
    try {
        MakeWindows(GetParent(old));
        SendMessageW(list_, WM_SETREDRAW, FALSE, 0);
        for (std::size_t index = 0; index < data.size(); ++index) {
            if (SendMessageW(Window(), CB_INSERTSTRING, index, reinterpret_cast<LPARAM>(Wide(entries_[index]))) < 0)
                throw RunTimeError(errors::outOfMemory, u"Out of memory");
            if (data[index] != 0) SetItemData(static_cast<int>(index), data[index]);
        }
        SendMessageW(list_, WM_SETREDRAW, TRUE, 0);
        WriteText(text);
    } catch (...) {
        // The old windows are still there.
        const HWND made = Window();
        DetachAll();
        if (made) DestroyWindow(made);
        AttachTo(old);
        throw;
    }
    toolTip_.Destroy();
    DestroyWindow(old);
    HighlightEntry(chosen_);
    SetLocked(locked_);
    SetEnabled(enabled);
    SetVisible(visible);
    SetToolTipText(tip);
}

qvx::Text ComboWindow::GetText() const { return WindowText(EditWindow()); }

void ComboWindow::SetMaxLength(int length) {
    maxLength_ = length;
    SendMessageW(EditWindow(), EM_SETLIMITTEXT, static_cast<WPARAM>(length), 0);
}

void ComboWindow::SetText(TextView text) {
    chosen_ = -1;
    ShowInOrder({});
    HighlightEntry(-1);
    WriteText(text);
    NotifyChange();
}

void ComboWindow::WriteText(TextView text) {
    const FlagScope scope(writing_);
    const qvx::Text copy(text);
    SetWindowTextW(EditWindow(), Wide(copy));
}

void ComboWindow::NotifyChange() {
    qvx::Text text = GetText();
    if (text == lastText_) return;
    lastText_ = std::move(text);
    if (listener_) listener_->ComboChange(*this);
}

int ComboWindow::SelStart() const { return SelectionOf(EditWindow()).start; }
void ComboWindow::SetSelStart(int start) { SetSelectionStart(EditWindow(), start); }
int ComboWindow::SelLength() const { return SelectionOf(EditWindow()).length; }
void ComboWindow::SetSelLength(int length) { SetSelectionLength(EditWindow(), length); }
qvx::Text ComboWindow::SelText() const { return SelectedText(EditWindow()); }

void ComboWindow::SetSelText(TextView text) {
    {
        const FlagScope scope(writing_);
        const qvx::Text copy(text);
        SendMessageW(EditWindow(), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(Wide(copy)));
    }
    chosen_ = -1;
    HighlightEntry(-1);
    NotifyChange();
}

void ComboWindow::SetLocked(bool locked) {
    locked_ = locked;
    SendMessageW(EditWindow(), EM_SETREADONLY, locked, 0);
}

bool ComboWindow::Enabled() const { return IsWindowEnabled(Window()) != FALSE; }

void ComboWindow::SetEnabled(bool enabled) { EnableWindow(Window(), enabled); }

void ComboWindow::SetVisible(bool visible) { ShowWindow(Window(), visible ? SW_SHOWNA : SW_HIDE); }

void ComboWindow::BringToFront() {
    SetWindowPos(Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ComboWindow::Focus() { SetFocus(EditWindow()); }

bool ComboWindow::HasFocus() const {
    const HWND focus = GetFocus();
    return focus && (focus == Window() || IsChild(Window(), focus) || focus == list_);
}

void ComboWindow::TypeOver(TextView text) {
    SetText({});
    WriteText(text);
    SendMessageW(EditWindow(), EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
    deleting_ = false;
    OnTyped();
}

void ComboWindow::OnTyped() {
    chosen_ = -1;
    const std::vector<qvx::Text>& entries = Entries();
    if (selectsAsTyped_ && !entries.empty()) {
        const qvx::Text typed = GetText();
        const auto entry = [&](int index) { return TextView(entries[static_cast<std::size_t>(index)]); };
        if (matchesParts_) ShowInOrder(OrderByMatch(entries, typed));
        const Completion completion =
            matchesParts_ ? CompleteInOrder(entries, order_, typed, SelStart(), deleting_)
                          : CompleteTyping(static_cast<int>(entries.size()), entry, typed, SelStart(), deleting_);
        chosen_ = completion.entry;
        HighlightEntry(chosen_);
        if (completion.text != typed) {
            WriteText(completion.text);
            // The selection is anchored at the end, so that the caret stays where typing continues.
            SendMessageW(EditWindow(), EM_SETSEL, completion.text.size(), completion.selStart);
        }
    }
    NotifyChange();
}

void ComboWindow::OnChosen() {
    const int index = order_.EntryAt(static_cast<int>(SendMessageW(Window(), CB_GETCURSEL, 0, 0)));
    if (index < 0) return;
    chosen_ = index;
    // The system writes the text only after it has notified the parent of the choice.
    WriteText(List(index));
    lastText_ = GetText();
    SendMessageW(EditWindow(), EM_SETSEL, 0, -1);
    if (listener_) listener_->ComboClick(*this);
}

void ComboWindow::OnCommand(WORD code) {
    if (code == CBN_SETFOCUS) {
        if (listener_) listener_->ComboGotFocus(*this);
        return;
    }
    if (code == CBN_KILLFOCUS) {
        if (listener_ && !HasFocus()) listener_->ComboLostFocus(*this);
        return;
    }
    if (writing_) return;
    if (code == CBN_EDITCHANGE)
        OnTyped();
    else if (code == CBN_SELCHANGE)
        OnChosen();
    else if (code == CBN_DROPDOWN)
        FitList();
}

LRESULT ComboWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
        case WM_CTLCOLORSTATIC:
            return colors_.Apply(wParam, Enabled());
        case WM_PAINT: {
            const LRESULT result = Default(message, wParam, lParam);
            PaintSurround();
            return result;
        }
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            if (locked_) {
                Focus();
                return 0;
            }
            break;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            if (OnWheel(message, wParam, lParam)) return 0;
            break;
        case CB_ADDSTRING:
        case CB_INSERTSTRING:
        case CB_DELETESTRING:
        case CB_RESETCONTENT:
            if (!changingEntries_) ForgetEntries();
            break;
        case WM_DRAWITEM:
            DrawEntry(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_SIZE: {
            const LRESULT result = Default(message, wParam, lParam);
            PlaceEditField();
            return result;
        }
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

bool ComboWindow::OnWheel(UINT message, WPARAM wParam, LPARAM lParam) {
    if (IsDroppedDown() && !locked_) return false;
    if (listener_) listener_->ComboWheel(*this, message, wParam, lParam);
    return true;
}

LRESULT ComboWindow::EditField::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            // The combo wants every key, also in hosts that treat the form as a dialog.
            return Default(message, wParam, lParam) | DLGC_WANTALLKEYS | DLGC_WANTTAB | DLGC_WANTARROWS;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return OnKeyDown(message, wParam, lParam);
        case WM_CHAR:
            return OnCharacter(wParam, lParam);
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            if (owner_.OnWheel(message, wParam, lParam)) return 0;
            break;
        case WM_KILLFOCUS:
            owner_.keepsSelection_ = false;
            Default(EM_GETSEL, reinterpret_cast<WPARAM>(&owner_.selection_.first),
                    reinterpret_cast<LPARAM>(&owner_.selection_.second));
            break;
        case WM_SETFOCUS: {
            const LifeWatch alive = Watch();
            const LRESULT result = Default(message, wParam, lParam);
            if (alive.Alive() && std::exchange(owner_.keepsSelection_, false))
                Default(EM_SETSEL, owner_.selection_.first, static_cast<LPARAM>(owner_.selection_.second));
            return result;
        }
        case WM_PASTE:
        case WM_CUT:
        case WM_CLEAR:
            owner_.deleting_ = message != WM_PASTE;
            break;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

LRESULT ComboWindow::EditField::OnKeyDown(UINT message, WPARAM wParam, LPARAM lParam) {
    dropNextCharacter_ = false;
    auto key = static_cast<int>(wParam);
    if (owner_.listener_) {
        const LifeWatch alive = owner_.Watch();
        owner_.listener_->ComboKeyDown(owner_, key, ShiftState());
        if (!alive.Alive()) return 0;
    }
    if (key == 0) {
        dropNextCharacter_ = true;
        return 0;
    }
    if (owner_.locked_ && WorksTheList(key)) return 0;
    owner_.deleting_ = key == keys::deleteKey;
    return Default(message, static_cast<WPARAM>(key), lParam);
}

LRESULT ComboWindow::EditField::OnCharacter(WPARAM wParam, LPARAM lParam) {
    if (std::exchange(dropNextCharacter_, false)) return 0;
    owner_.deleting_ = wParam == keys::backspace;
    return Default(WM_CHAR, wParam, lParam);
}

}  // namespace qvx
