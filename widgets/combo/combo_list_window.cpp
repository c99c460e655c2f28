// The entries of a combo, and the list that shows them.
#include <algorithm>

#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "widgets/combo/combo_window.h"
#include "win/window_text.h"

namespace qvx {

namespace {

[[noreturn]] void InvalidCall() {
    throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
}

}  // namespace

EntryReader ComboWindow::Entries() const {
    return [this](int index) { return List(index); };
}

void ComboWindow::CheckIndex(int index) const {
    if (index < 0 || index >= ListCount()) InvalidCall();
}

void ComboWindow::AddItem(TextView item, std::optional<int> index) {
    if (index && (*index < 0 || *index > ListCount())) InvalidCall();
    const qvx::Text text(item);
    const auto data = reinterpret_cast<LPARAM>(Wide(text));
    const LRESULT added = index ? SendMessageW(Window(), CB_INSERTSTRING, static_cast<WPARAM>(*index), data)
                                : SendMessageW(Window(), CB_ADDSTRING, 0, data);
    if (added < 0) throw RunTimeError(errors::outOfMemory, u"Out of memory");
    newIndex_ = static_cast<int>(added);
    if (chosen_ >= newIndex_) ++chosen_;
}

void ComboWindow::RemoveItem(int index) {
    CheckIndex(index);
    SendMessageW(Window(), CB_DELETESTRING, static_cast<WPARAM>(index), 0);
    newIndex_ = -1;
    if (chosen_ == index)
        chosen_ = -1;
    else if (chosen_ > index)
        --chosen_;
}

void ComboWindow::Clear() {
    {
        const FlagScope scope(writing_);
        SendMessageW(Window(), CB_RESETCONTENT, 0, 0);
    }
    chosen_ = -1;
    newIndex_ = -1;
    NotifyChange();
}

qvx::Text ComboWindow::List(int index) const {
    if (index < 0 || index >= ListCount()) return {};
    const LRESULT length = SendMessageW(Window(), CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length <= 0) return {};
    qvx::Text text(static_cast<std::size_t>(length) + 1, u'\0');
    const LRESULT copied =
        SendMessageW(Window(), CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(WideBuffer(text)));
    text.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
    return text;
}

void ComboWindow::SetList(int index, TextView item) {
    if (index == ListCount()) {
        AddItem(item, index);
        return;
    }
    CheckIndex(index);
    const LONG data = ItemData(index);
    const int chosen = chosen_;
    const int newIndex = newIndex_;
    const FlagScope scope(writing_);
    SendMessageW(Window(), CB_DELETESTRING, static_cast<WPARAM>(index), 0);
    const qvx::Text text(item);
    SendMessageW(Window(), CB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(Wide(text)));
    SetItemData(index, data);
    chosen_ = chosen;
    newIndex_ = newIndex;
    HighlightEntry(chosen_);
}

int ComboWindow::ListCount() const {
    return static_cast<int>(std::max<LRESULT>(SendMessageW(Window(), CB_GETCOUNT, 0, 0), 0));
}

int ComboWindow::ListIndex() const { return chosen_; }

void ComboWindow::SetListIndex(int index) {
    if (index < -1 || index >= ListCount()) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    if (index == chosen_) return;
    HighlightEntry(index);
    chosen_ = index;
    WriteText(List(index));
    lastText_ = GetText();
    if (listener_) listener_->ComboClick(*this);
}

LONG ComboWindow::ItemData(int index) const {
    CheckIndex(index);
    return static_cast<LONG>(SendMessageW(Window(), CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

void ComboWindow::SetItemData(int index, LONG data) {
    CheckIndex(index);
    SendMessageW(Window(), CB_SETITEMDATA, static_cast<WPARAM>(index), data);
}

int ComboWindow::TopIndex() const {
    return static_cast<int>(std::max<LRESULT>(SendMessageW(Window(), CB_GETTOPINDEX, 0, 0), 0));
}

void ComboWindow::SetTopIndex(int index) {
    CheckIndex(index);
    SendMessageW(Window(), CB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
}

void ComboWindow::HighlightEntry(int index) {
    if (!list_) return;
    SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
    if (index >= 0) SendMessageW(list_, LB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
}

void ComboWindow::DropDown() {
    FitList();
    const qvx::Text text = GetText();
    const int chosen = chosen_;
    {
        // The system searches for the text itself and may write the entry that it finds.
        const FlagScope scope(writing_);
        SendMessageW(Window(), CB_SHOWDROPDOWN, TRUE, 0);
        if (GetText() != text) WriteText(text);
    }
    chosen_ = chosen >= 0 ? chosen : FindExactly(ListCount(), Entries(), text);
    HighlightEntry(chosen_);
    const int top = chosen_ >= 0 ? chosen_ : FindBeginningWith(ListCount(), Entries(), text);
    if (top >= 0) SetTopIndex(top);
    SendMessageW(EditWindow(), EM_SETSEL, 0, -1);
}

bool ComboWindow::IsDroppedDown() const { return SendMessageW(Window(), CB_GETDROPPEDSTATE, 0, 0) != FALSE; }

}  // namespace qvx
