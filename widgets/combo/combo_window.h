// The editor combo: the system's combo box with the members that hosts know on one.
#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "widgets/combo/completion.h"
#include "widgets/combo/list_order.h"
#include "win/accessible.h"
#include "win/edit_field.h"
#include "win/fonts.h"
#include "win/tool_tip.h"
#include "win/window.h"

namespace qvx {

class ComboWindow;

// Receives the events of a combo. A listener may change the combo, and destroy it in LostFocus and Click.
class ComboListener {
  public:
    virtual ~ComboListener() = default;
    // The text has changed, by typing or by a program.
    virtual void ComboChange(ComboWindow&) {}
    // An entry was chosen, by mouse, keys or ListIndex.
    virtual void ComboClick(ComboWindow&) {}
    // An entry of the open list was chosen with the mouse, and the list has closed; called after ComboClick.
    virtual void ComboPicked(ComboWindow&) {}
    // A virtual key, which the listener may change; 0 refuses it.
    virtual void ComboKeyDown(ComboWindow&, int& /*keyCode*/, int /*shift*/) {}
    // The wheel was turned over the closed combo; an open list uses the wheel itself.
    virtual void ComboWheel(ComboWindow&, UINT /*message*/, WPARAM, LPARAM) {}
    virtual void ComboGotFocus(ComboWindow&) {}
    virtual void ComboLostFocus(ComboWindow&) {}
};

class ComboWindow final : private WindowSubclass {
  public:
    // Creates a hidden combo with an edit field in `parent`, which must pass on the WM_COMMAND messages with the
    // combo's handle to OnCommand. `listener` may be null. Throws error 7 when the system cannot create the window.
    ComboWindow(HWND parent, ComboListener* listener, bool sorted = false);
    ~ComboWindow() override;

    HWND Window() const { return WindowSubclass::Handle(); }
    HWND EditWindow() const { return edit_.Handle(); }
    using WindowSubclass::Watch;
    // `code` is the notification code of a WM_COMMAND message.
    void OnCommand(WORD code);

    // Throws error 5 for an index outside 0 to ListCount.
    void AddItem(TextView item, std::optional<int> index = std::nullopt);
    // Throws error 5 for an index outside the list, as SetList (up to ListCount, which adds an entry), ItemData,
    // SetItemData and SetTopIndex do.
    void RemoveItem(int index);
    // Empties list and text.
    void Clear();
    // Returns "" outside the list.
    Text List(int index) const;
    void SetList(int index, TextView item);
    int ListCount() const;
    // -1 while no entry is chosen. Choosing an entry raises Click; -1 empties the text. Throws error 380 outside -1 to
    // ListCount-1.
    int ListIndex() const;
    void SetListIndex(int index);
    LONG ItemData(int index) const;
    void SetItemData(int index, LONG data);
    // The index of the entry that was added last, -1 after a removal.
    int NewIndex() const { return newIndex_; }
    // The first entry in view.
    int TopIndex() const;
    void SetTopIndex(int index);
    // Fixed at creation.
    bool Sorted() const { return sorted_; }

    // Typing may put the entries that match first (SetMatchesParts): the entry at a position of the list as it is
    // shown, and the positions of the chosen entry and of the first one in view.
    qvx::Text ShownEntry(int position) const { return List(order_.EntryAt(position)); }
    int ShownChoice() const { return order_.PositionOf(chosen_); }
    int ShownTop() const;

    // Text that is set by a program is not a choice from the list: ListIndex becomes -1.
    Text GetText() const;
    void SetText(TextView text);
    // How many UTF-16 units can be typed or pasted; 0 for no limit. What a program or the list sets may be longer.
    void SetMaxLength(int length);
    // In characters. Throws error 380 for negative values; positions beyond the text are limited to its end.
    int SelStart() const;
    void SetSelStart(int start);
    int SelLength() const;
    void SetSelLength(int length);
    Text SelText() const;
    // Replaces the selection.
    void SetSelText(TextView text);

    // The user can view and copy a locked text, but only programs can change it.
    bool Locked() const { return locked_; }
    void SetLocked(bool locked);
    bool Enabled() const;
    void SetEnabled(bool enabled);
    const Text& Tag() const { return tag_; }
    void SetTag(TextView tag) { tag_ = tag; }
    const FontSpec& Font() const { return font_; }
    void SetFont(const FontSpec& font);
    OleColor BackColor() const { return colors_.Back(); }
    void SetBackColor(OleColor color);
    OleColor ForeColor() const { return colors_.Fore(); }
    void SetForeColor(OleColor color);
    const Text& ToolTipText() const { return toolTip_.Text(); }
    void SetToolTipText(TextView text);
    // Lays out the text from right to left, with the button at the left. Must not be called while the combo has the
    // focus: it gets new windows, as an edit field keeps the alignment that it was created with.
    bool RightToLeft() const { return rightToLeft_; }
    void SetRightToLeft(bool rightToLeft);
    // Sets the name of the field and its list for assistive programs.
    void SetAccessibleName(TextView name);

    // Whether typing chooses the first entry that begins with the typed text.
    bool SelectsAsTyped() const { return selectsAsTyped_; }
    void SetSelectsAsTyped(bool selects) { selectsAsTyped_ = selects; }
    // Whether typing also finds entries that contain the text, and shows the entries found first. Must not be called
    // while the combo has the focus, as it gets new windows.
    void SetMatchesParts(bool matches);
    // Sets the position in the parent and the width, in pixels. The height of the closed combo is such that a line of
    // text is in the middle of a field of `fieldHeight`.
    void Place(Point origin, int width, int fieldHeight);
    void SetVisible(bool visible);
    void BringToFront();
    void Focus();
    bool HasFocus() const;
    // In LostFocus: the selection as it was then is restored when the field has the focus again.
    void KeepSelection() { keepsSelection_ = true; }
    // Opens the list. The entry that equals the current text is chosen; without one, the list starts at the first entry
    // that begins with the text.
    void DropDown();
    bool IsDroppedDown() const;
    // Replaces the text as if the user had typed this text over the whole field.
    void TypeOver(TextView text);

  private:
    // The edit field in the combo, which gets the keys.
    class EditField final : public WindowSubclass {
      public:
        explicit EditField(ComboWindow& owner) : owner_(owner) {}

      private:
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
        LRESULT OnKeyDown(UINT message, WPARAM wParam, LPARAM lParam);
        LRESULT OnCharacter(WPARAM wParam, LPARAM lParam);
        ComboWindow& owner_;
        bool dropNextCharacter_ = false;
    };

    // The list that drops down. The system's list keeps the entries in their own order; what it shows, and what others
    // read from it, is in the order of matches.
    class Popup final : public WindowSubclass {
      public:
        explicit Popup(ComboWindow& owner) : owner_(owner) {}

      private:
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
        LRESULT OnReleased(WPARAM wParam, LPARAM lParam);
        ComboWindow& owner_;
    };

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    // Returns whether the list did not use the wheel.
    bool OnWheel(UINT message, WPARAM wParam, LPARAM lParam);
    void MakeWindows(HWND parent);
    void AttachTo(HWND window);
    void DetachAll();
    // Replaces the system's windows by new ones with the same contents; keeps them when that fails.
    void RemakeWindows();
    void CheckIndex(int index) const;
    void OnTyped();
    void OnChosen();
    // Moves only the list's highlight; the text stays.
    void HighlightEntry(int index);
    // Changes only the field's text, without an event.
    void WriteText(TextView text);
    void NotifyChange();
    void PlaceEditField();
    void PaintSurround();
    void FitList();
    // The texts of all entries. Others may change the system's list by messages; the texts are then read again.
    const std::vector<qvx::Text>& Entries() const;
    void ForgetEntries();
    void ShowInOrder(ListOrder order);
    void DrawEntry(const DRAWITEMSTRUCT& item);

    // The number of entries that a dropped list shows at once.
    static constexpr int rowsInView = 8;

    ComboListener* listener_;
    EditField edit_;
    Popup popup_;
    HWND list_ = nullptr;
    bool sorted_;
    bool rightToLeft_ = false;
    bool locked_ = false;
    bool selectsAsTyped_ = false;
    bool matchesParts_ = false;
    int maxLength_ = 0;
    bool writing_ = false;   // the combo itself causes the field's notifications
    bool deleting_ = false;  // the last key deletes characters
    // The chosen entry; the list's own highlight also follows the mouse and the system's searches.
    int chosen_ = -1;
    int newIndex_ = -1;
    // A copy of the entries, as asking the system for each takes too long in a long list.
    mutable std::vector<qvx::Text> entries_;
    mutable bool entriesKnown_ = true;
    bool changingEntries_ = false;    // the combo itself does, and keeps the copy up to date
    std::optional<int> widestEntry_;  // in pixels, while it is known
    ListOrder order_;
    std::pair<DWORD, DWORD> selection_;  // when the field lost the focus
    bool keepsSelection_ = false;
    int fieldHeight_ = 0;
    std::optional<Rect> placed_;  // the field as Place has laid it out, unless something has changed that since
    bool placing_ = false;        // the field in the combo gets its place at the end
    Text tag_;
    Text lastText_;  // as of the last Change
    FontSpec font_;
    SharedFont gdiFont_;
    FieldColors colors_;
    ToolTip toolTip_;
    std::array<AccessibleNameSubclass, 3> names_;  // of the combo, its field and its list
};

}  // namespace qvx
