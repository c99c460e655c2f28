// The entries of a combo, and the list that shows them.
#include <algorithm>
#include <utility>

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

const std::vector<qvx::Text>& ComboWindow::Entries() const {
    const int count = ListCount();
    if (entriesKnown_ && static_cast<int>(entries_.size()) == count) return entries_;
    entriesKnown_ = false;
    entries_.clear();
    entries_.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        const LRESULT length = SendMessageW(Window(), CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
        qvx::Text text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, u'\0');
        const LRESULT copied = SendMessageW(Window(), CB_GETLBTEXT, static_cast<WPARAM>(index),
                                            reinterpret_cast<LPARAM>(WideBuffer(text)));
        text.resize(static_cast<std::size_t>(std::max<LRESULT>(copied, 0)));
        entries_.push_back(std::move(text));
    }
    entriesKnown_ = true;
    return entries_;
}

// Someone else changes the system's list.
void ComboWindow::ForgetEntries() {
    entriesKnown_ = false;
    widestEntry_.reset();
    order_ = {};
}

void ComboWindow::CheckIndex(int index) const {
    if (index < 0 || index >= ListCount()) InvalidCall();
}

void ComboWindow::AddItem(TextView item, std::optional<int> index) {
    if (index && (*index < 0 || *index > ListCount())) InvalidCall();
    qvx::Text text(item);
    if (!entriesKnown_) Entries();
    entries_.reserve(entries_.size() == entries_.capacity() ? 2 * entries_.size() + 1 : 0);
    ShowInOrder({});
    const FlagScope scope(changingEntries_);
    const auto data = reinterpret_cast<LPARAM>(Wide(text));
    // Straight to the list, since forms add thousands of entries, and the combo would only pass them on.
    const LRESULT added = index ? SendMessageW(list_, LB_INSERTSTRING, static_cast<WPARAM>(*index), data)
                                : SendMessageW(list_, LB_ADDSTRING, 0, data);
    if (added < 0) throw RunTimeError(errors::outOfMemory, u"Out of memory");
    newIndex_ = static_cast<int>(added);
    if (static_cast<std::size_t>(added) <= entries_.size()) {
        entries_.insert(entries_.begin() + newIndex_, std::move(text));
    } else {
        ForgetEntries();
    }
    widestEntry_.reset();
    if (chosen_ >= newIndex_) ++chosen_;
}

void ComboWindow::RemoveItem(int index) {
    CheckIndex(index);
    Entries();
    ShowInOrder({});
    const FlagScope scope(changingEntries_);
    SendMessageW(Window(), CB_DELETESTRING, static_cast<WPARAM>(index), 0);
    entries_.erase(entries_.begin() + index);
    widestEntry_.reset();
    newIndex_ = -1;
    if (chosen_ == index)
        chosen_ = -1;
    else if (chosen_ > index)
        --chosen_;
}

void ComboWindow::Clear() {
    {
        const FlagScope scope(writing_);
        const FlagScope changing(changingEntries_);
        ShowInOrder({});
        SendMessageW(Window(), CB_RESETCONTENT, 0, 0);
        entries_.clear();
        entriesKnown_ = true;
        widestEntry_.reset();
    }
    chosen_ = -1;
    newIndex_ = -1;
    NotifyChange();
}

qvx::Text ComboWindow::List(int index) const {
    const std::vector<qvx::Text>& entries = Entries();
    return index >= 0 && index < static_cast<int>(entries.size()) ? entries[static_cast<std::size_t>(index)]
                                                                  : qvx::Text();
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
    qvx::Text text(item);
    Entries();
    ShowInOrder({});
    const FlagScope scope(writing_);
    const FlagScope changing(changingEntries_);
    SendMessageW(Window(), CB_DELETESTRING, static_cast<WPARAM>(index), 0);
    SendMessageW(Window(), CB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(Wide(text)));
    entries_[static_cast<std::size_t>(index)] = std::move(text);
    widestEntry_.reset();
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

int ComboWindow::ShownTop() const {
    return static_cast<int>(std::max<LRESULT>(SendMessageW(Window(), CB_GETTOPINDEX, 0, 0), 0));
}

int ComboWindow::TopIndex() const { return std::max(order_.EntryAt(ShownTop()), 0); }

void ComboWindow::SetTopIndex(int index) {
    CheckIndex(index);
    SendMessageW(Window(), CB_SETTOPINDEX, static_cast<WPARAM>(order_.PositionOf(index)), 0);
}

void ComboWindow::HighlightEntry(int index) {
    if (!list_) return;
    const int position = order_.PositionOf(index);
    SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(position), 0);
    const int top = order_.Own() || position >= rowsInView ? position : 0;
    if (position >= 0) SendMessageW(list_, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
}

void ComboWindow::ShowInOrder(ListOrder order) {
    if (order_.Own() && order.Own()) return;
    order_ = std::move(order);
    SendMessageW(list_, LB_SETTOPINDEX, 0, 0);
    InvalidateRect(list_, nullptr, TRUE);
}

void ComboWindow::DropDown() {
    FitList();
    ShowInOrder({});
    const qvx::Text text = GetText();
    const int chosen = chosen_;
    {
        // The system searches for the text itself and may write the entry that it finds.
        const FlagScope scope(writing_);
        SendMessageW(Window(), CB_SHOWDROPDOWN, TRUE, 0);
        if (GetText() != text) WriteText(text);
    }
    const std::vector<qvx::Text>& entries = Entries();
    const auto entry = [&](int index) { return TextView(entries[static_cast<std::size_t>(index)]); };
    const auto count = static_cast<int>(entries.size());
    chosen_ = chosen >= 0 ? chosen : FindExactly(count, entry, text);
    HighlightEntry(chosen_);
    const int top = chosen_ >= 0 ? chosen_ : FindBeginningWith(count, entry, text);
    if (top >= 0) SetTopIndex(top);
    SendMessageW(EditWindow(), EM_SETSEL, 0, -1);
}

bool ComboWindow::IsDroppedDown() const { return SendMessageW(Window(), CB_GETDROPPEDSTATE, 0, 0) != FALSE; }

LRESULT ComboWindow::Popup::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const bool ordered = !owner_.order_.Own();
    switch (message) {
        case LB_GETTEXT:
        case LB_GETTEXTLEN:
            if (ordered) wParam = static_cast<WPARAM>(owner_.order_.EntryAt(static_cast<int>(wParam)));
            break;
        case LB_FINDSTRING: {
            // The system searches for what is typed; entries that begin with it are at the top.
            if (!ordered) break;
            const std::size_t first = owner_.order_.entries.front();
            const auto* const text = reinterpret_cast<const char16_t*>(lParam);
            return StartsWithNoCase(owner_.Entries()[first], text) ? 0 : LB_ERR;
        }
        case WM_LBUTTONUP:
            return OnReleased(wParam, lParam);
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

LRESULT ComboWindow::Popup::OnReleased(WPARAM wParam, LPARAM lParam) {
    const LifeWatch alive = Watch();
    const Point at = MousePoint(lParam);
    RECT inside{};
    GetClientRect(Handle(), &inside);
    const bool onEntry = PtInRect(&inside, {at.x, at.y}) && owner_.IsDroppedDown();
    const LRESULT result = Default(WM_LBUTTONUP, wParam, lParam);
    if (onEntry && alive.Alive() && owner_.chosen_ >= 0 && !owner_.IsDroppedDown() && owner_.listener_)
        owner_.listener_->ComboPicked(owner_);
    return result;
}

}  // namespace qvx
