// Which controls of a form are selected. All of them are in the same container, so that they can be moved, aligned and
// cut together; the last one is the primary, which the others follow.
#pragma once

#include <optional>
#include <vector>

#include "common/geometry.h"
#include "common/text.h"

namespace qvx::host::designer {

// A control by its name and index in the form file. Names compare without case.
struct ObjectId {
    Text name;
    int index = -1;  // of an element of a control array
    friend bool operator==(const ObjectId& a, const ObjectId& b);
};

// "txtField" or "txtField(2)".
Text TitleOf(const ObjectId& id);

// Finds ids in a list, which must outlive it, without going through the list each time.
class IdTable {
  public:
    explicit IdTable(const std::vector<ObjectId>& ids);
    bool Has(const ObjectId& id) const { return PositionOf(id).has_value(); }
    // The first place of an id.
    std::optional<std::size_t> PositionOf(const ObjectId& id) const;

  private:
    const std::vector<ObjectId>& ids_;
    std::vector<std::size_t> sorted_;
};

// A control as it is seen on the form: its area in pixels from the form's inside, and the position of its container in
// the list.
struct Shape {
    ObjectId id;
    std::optional<std::size_t> container;
    Rect area;
    bool holdsOthers = false;
};

// Containers come before their contents; of two that overlap in one container, the former is in front.
using Shapes = std::vector<Shape>;

std::vector<ObjectId> IdsOf(const Shapes& shapes);

// Where a control is in the list; nothing when it is not there.
std::optional<std::size_t> PositionOf(const Shapes& shapes, const ObjectId& id);
// The innermost, foremost one at a point. Parts outside the container are not hit.
std::optional<std::size_t> ShapeAt(const Shapes& shapes, Point point);
// The innermost container at a point, for a control that is placed there; nothing for the form.
std::optional<std::size_t> ContainerAt(const Shapes& shapes, Point point);

class Selection {
  public:
    const std::vector<ObjectId>& All() const { return selected_; }
    bool Empty() const { return selected_.empty(); }
    bool Has(const ObjectId& id) const;
    // The last one selected; null when the form itself is.
    const ObjectId* Primary() const { return selected_.empty() ? nullptr : &selected_.back(); }

    void Clear() { selected_.clear(); }
    void Set(std::vector<ObjectId> ids) { selected_ = std::move(ids); }
    // A press on a control. With `toggle` (Ctrl or Shift), it is added or removed; without, it becomes the only one, or
    // the primary when it is selected already, so that a drag moves all of them.
    void Press(const Shapes& shapes, std::size_t position, bool toggle);
    // A rubber band in one container selects what it touches; with `add`, beside what is selected.
    void Band(const Shapes& shapes, std::optional<std::size_t> container, const Rect& band, bool add);
    // The control after or before the primary in `order`, and round the end; without a primary, the first or last one.
    void Cycle(const std::vector<ObjectId>& order, bool forward);
    // All in the primary's container; without a primary, all on the form.
    void SelectAll(const Shapes& shapes);
    // Removes the ones that no longer exist.
    void Keep(const Shapes& shapes);

  private:
    std::vector<ObjectId> selected_;
};

// Where the text of controls is pasted: into a frame that is selected alone (beside it, though, when the text is a
// frame itself), else beside the primary. Nothing for the form.
std::optional<ObjectId> PasteContainer(const Shapes& shapes, const Selection& selection, TextView text);

}  // namespace qvx::host::designer
