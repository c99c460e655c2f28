#include "designer/document/selection.h"

#include <algorithm>
#include <numeric>

#include "common/ascii.h"
#include "common/number_text.h"
#include "host/form_value.h"

namespace qvx::host::designer {

namespace {

// Whether one is sorted before the other, in an order in which equal ids are neighbours.
bool Before(const ObjectId& a, const ObjectId& b) {
    if (a.index != b.index) return a.index < b.index;
    return std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(),
                                        [](char16_t x, char16_t y) { return LowerAscii(x) < LowerAscii(y); });
}

std::optional<std::size_t> HitIn(const Shapes& shapes, std::optional<std::size_t> container, Point point) {
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (shapes[i].container != container || !shapes[i].area.Contains(point)) continue;
        if (!shapes[i].holdsOthers) return i;
        const auto inner = HitIn(shapes, i, point);
        return inner ? inner : i;
    }
    return std::nullopt;
}

}  // namespace

bool operator==(const ObjectId& a, const ObjectId& b) { return a.index == b.index && SameName(a.name, b.name); }

Text TitleOf(const ObjectId& id) { return id.index < 0 ? id.name : id.name + u"(" + IntegerToText(id.index) + u")"; }

IdTable::IdTable(const std::vector<ObjectId>& ids) : ids_(ids), sorted_(ids.size()) {
    std::iota(sorted_.begin(), sorted_.end(), std::size_t{0});
    std::sort(sorted_.begin(), sorted_.end(), [&](std::size_t a, std::size_t b) {
        return Before(ids[a], ids[b]) || (a < b && !Before(ids[b], ids[a]));
    });
}

std::optional<std::size_t> IdTable::PositionOf(const ObjectId& id) const {
    const auto found =
        std::partition_point(sorted_.begin(), sorted_.end(), [&](std::size_t at) { return Before(ids_[at], id); });
    return found != sorted_.end() && ids_[*found] == id ? std::optional(*found) : std::nullopt;
}

std::vector<ObjectId> IdsOf(const Shapes& shapes) {
    std::vector<ObjectId> ids;
    ids.reserve(shapes.size());
    for (const Shape& shape : shapes) ids.push_back(shape.id);
    return ids;
}

std::optional<std::size_t> PositionOf(const Shapes& shapes, const ObjectId& id) {
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (shapes[i].id == id) return i;
    }
    return std::nullopt;
}

std::optional<std::size_t> ShapeAt(const Shapes& shapes, Point point) { return HitIn(shapes, std::nullopt, point); }

std::optional<std::size_t> ContainerAt(const Shapes& shapes, Point point) {
    std::optional<std::size_t> at = ShapeAt(shapes, point);
    while (at && !shapes[*at].holdsOthers) at = shapes[*at].container;
    return at;
}

bool Selection::Has(const ObjectId& id) const {
    return std::find(selected_.begin(), selected_.end(), id) != selected_.end();
}

void Selection::Press(const Shapes& shapes, std::size_t position, bool toggle) {
    const ObjectId& id = shapes[position].id;
    const auto found = std::find(selected_.begin(), selected_.end(), id);
    if (!toggle) {
        if (found == selected_.end()) {
            selected_ = {id};
        } else {
            std::rotate(found, found + 1, selected_.end());
        }
        return;
    }
    if (found != selected_.end()) {
        selected_.erase(found);
        return;
    }
    const auto first = selected_.empty() ? std::nullopt : PositionOf(shapes, selected_.front());
    if (first && shapes[*first].container != shapes[position].container) selected_.clear();
    selected_.push_back(id);
}

void Selection::Band(const Shapes& shapes, std::optional<std::size_t> container, const Rect& band, bool add) {
    const auto first = selected_.empty() ? std::nullopt : PositionOf(shapes, selected_.front());
    if (!add || (first && shapes[*first].container != container)) selected_.clear();
    const std::vector<ObjectId> before = selected_;
    const IdTable former(before);
    for (const Shape& shape : shapes) {
        if (shape.container == container && !shape.area.Intersect(band).Empty() && !former.Has(shape.id)) {
            selected_.push_back(shape.id);
        }
    }
}

void Selection::Cycle(const std::vector<ObjectId>& order, bool forward) {
    if (order.empty()) return;
    const auto found = Primary() ? std::find(order.begin(), order.end(), *Primary()) : order.end();
    std::size_t next = forward ? 0 : order.size() - 1;
    if (found != order.end()) {
        const auto at = static_cast<std::size_t>(found - order.begin());
        next = (at + (forward ? 1 : order.size() - 1)) % order.size();
    }
    selected_ = {order[next]};
}

void Selection::SelectAll(const Shapes& shapes) {
    std::optional<std::size_t> container;
    if (Primary()) {
        if (const auto at = PositionOf(shapes, *Primary())) container = shapes[*at].container;
    }
    selected_.clear();
    for (const Shape& shape : shapes) {
        if (shape.container == container) selected_.push_back(shape.id);
    }
}

void Selection::Keep(const Shapes& shapes) {
    const std::vector<ObjectId> ids = IdsOf(shapes);
    const IdTable present(ids);
    std::erase_if(selected_, [&](const ObjectId& id) { return !present.Has(id); });
}

std::optional<ObjectId> PasteContainer(const Shapes& shapes, const Selection& selection, TextView text) {
    const auto primary = selection.Primary() ? PositionOf(shapes, *selection.Primary()) : std::nullopt;
    if (!primary) return std::nullopt;
    const Shape& shape = shapes[*primary];
    const bool into = shape.holdsOthers && selection.All().size() == 1 && !text.starts_with(u"Begin Frame");
    if (into) return shape.id;
    return shape.container ? std::optional(shapes[*shape.container].id) : std::nullopt;
}

}  // namespace qvx::host::designer
