// The frame over the edited cell, and the combos in it: one for each list column, and one for free text.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "common/text.h"
#include "controls/grid/cell_step.h"
#include "widgets/combo/combo_object.h"
#include "widgets/combo/combo_window.h"
#include "widgets/flexgrid/column_drag.h"
#include "win/window.h"

namespace qvx::grid {

// Gives what is stored by column the numbers that columns have after one of them has moved. The free-text editor's is
// its own. Needs no memory.
template <class Value>
void RenumberColumns(std::map<int, Value>& values, int from, int to) noexcept {
    std::map<int, Value> renumbered;
    while (!values.empty()) {
        auto node = values.extract(values.begin());
        if (node.key() != freeTextEditor) node.key() = flexgrid::AfterMove(node.key(), from, to);
        renumbered.insert(std::move(node));
    }
    values.swap(renumbered);
}

class EditorFrame final : public Window {
  public:
    explicit EditorFrame(ComboListener& listener) : listener_(listener) {}
    ~EditorFrame() override;

    // Creates the frame, hidden. Throws error 7 when the system refuses.
    void CreateIn(HWND parent);

    // Creates the combo with that index. Throws error 360 "Object already loaded" if it exists.
    void Load(int index);
    void Unload(int index);
    // Whether the combos can follow a column that moves: none of them can have the free-text editor's number. Renumber
    // makes them do so.
    bool CanRenumber(int from, int to) const;
    void Renumber(int from, int to) { RenumberColumns(elements_, from, to); }
    // Returns the combo; null when it is not loaded.
    ComboWindow* Find(int index);
    // Returns the combo's object, with a reference for the caller. Throws error 340 for an element that is not loaded.
    IDispatch* ObjectOf(int index);
    std::vector<int> Loaded() const;
    // Returns the index of a combo in this frame; -1 for any other.
    int IndexOf(const ComboWindow& combo) const;

    const Text& Tag() const { return tag_; }
    void SetTag(TextView tag) { tag_ = tag; }
    // Moves the frame, in pixels of the parent, above its siblings.
    void MoveTo(const Rect& bounds);
    void Show(bool shown);
    bool Shown() const;
    // Calls this several times a second while the frame has a window, until it is called with an empty function.
    void Watch(std::function<void()> look);
    // Draws the frame and everything in it immediately.
    void Paint();

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    struct Element {
        // The object is destroyed before the combo that it refers to.
        std::unique_ptr<ComboWindow> combo;
        std::unique_ptr<ComboAutomation> automation;
    };

    ComboListener& listener_;
    std::map<int, Element> elements_;
    Text tag_;
    std::function<void()> look_;
};

}  // namespace qvx::grid
