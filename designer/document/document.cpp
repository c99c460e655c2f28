// The designer's document: steps and commands. Copying and pasting: document_paste.cpp.
#include "designer/document/document.h"

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

#include "common/number_text.h"
#include "common/text_compare.h"
#include "designer/document/control_walk.h"
#include "designer/document/form_text.h"
#include "designer/document/placement.h"

namespace qvx::host::designer {

namespace {

constexpr std::size_t mostSteps = 500;
constexpr std::size_t mostHistoryBytes = 64u << 20;

// The entry of a block in its container, searched for in everything below `container`.
struct Spot {
    Block* container = nullptr;
    std::size_t position = 0;
};

Spot SpotOf(Block& container, const Block& wanted) {
    for (std::size_t i = 0; i < container.entries.size(); ++i) {
        Block* block = container.entries[i].block.get();
        if (!block || block->kind != Block::Kind::object) continue;
        if (block == &wanted) return {&container, i};
        const Spot inner = SpotOf(*block, wanted);
        if (inner.container) return inner;
    }
    return {};
}

// Null when there is no such container.
std::unique_ptr<Block> TakeOut(const Spot& place) {
    if (!place.container) return nullptr;
    Entry& entry = place.container->entries[place.position];
    std::unique_ptr<Block> block = std::move(entry.block);
    place.container->entries.erase(place.container->entries.begin() + static_cast<std::ptrdiff_t>(place.position));
    return block;
}

// Takes controls, which are sorted by their addresses, out of a container and of those in it.
void TakeOutAll(Block& container, const std::vector<const Block*>& sorted) noexcept {
    std::erase_if(container.entries, [&](const Entry& entry) {
        Block* const block = entry.block.get();
        if (!block || block->kind != Block::Kind::object) return false;
        if (std::binary_search(sorted.begin(), sorted.end(), block, std::less<>())) return true;
        TakeOutAll(*block, sorted);
        return false;
    });
}

bool Overlaps(const TwipsRect& a, const TwipsRect& b) {
    const auto end = [](int position, int size) { return std::int64_t{position} + size; };
    return a.left < end(b.left, b.width) && b.left < end(a.left, a.width) && a.top < end(b.top, b.height) &&
           b.top < end(a.top, a.height);
}

void RequireObjectName(const Text& name) {
    if (!IsObjectName(name)) {
        Refuse(u"\"" + name + u"\" is no name: a letter, then letters, digits and \"_\", 40 characters at most.");
    }
}

void SetIfOther(Block& block, TextView name, int value, int implied) {
    if (block.IntOf(name, implied) != value) block.Set(name, std::int32_t{value});
}

}  // namespace

Document::Document(FormFile file) : file_(std::move(file)) {}

TwipsRect Document::BoundsOf(const Block& block) {
    return {block.IntOf(u"Left", 0), block.IntOf(u"Top", 0), block.IntOf(u"Width", defaultControlSize),
            block.IntOf(u"Height", defaultControlSize)};
}

std::vector<ObjectId> Document::Controls() const {
    std::vector<ObjectId> ids;
    for (const Visit& visit : Walk(file_.form)) ids.push_back(IdOf(*visit.block));
    return ids;
}

const Block* Document::Find(const ObjectId& id) const { return FindControl(file_.form, id); }

Block* Document::Find(const ObjectId& id) { return const_cast<Block*>(std::as_const(*this).Find(id)); }

std::vector<const Block*> Document::FindAll(const std::vector<ObjectId>& ids) const {
    const std::vector<Visit> visits = Walk(file_.form);
    const std::vector<ObjectId> all = Controls();
    const IdTable table(all);
    std::vector<const Block*> found;
    found.reserve(ids.size());
    for (const ObjectId& id : ids) {
        const auto at = table.PositionOf(id);
        found.push_back(at ? visits[*at].block : nullptr);
    }
    return found;
}

Block& Document::Existing(const Block* found, const ObjectId& id) {
    if (!found) Refuse(u"There is no control \"" + TitleOf(id) + u"\" any more.");
    return const_cast<Block&>(*found);
}

Block& Document::Require(const ObjectId& id) { return Existing(Find(id), id); }

Block& Document::Container(const std::optional<ObjectId>& id) {
    if (!id) return file_.form;
    Block& block = Require(*id);
    if (!HoldsOthers(block.className)) Refuse(u"\"" + TitleOf(*id) + u"\" cannot hold other controls.");
    return block;
}

Shapes Document::ShapesAt(Dpi dpi) const {
    Shapes shapes;
    for (const Visit& visit : Walk(file_.form)) {
        const TwipsRect bounds = BoundsOf(*visit.block);
        Rect area{TwipsToPixels(bounds.left, dpi.x), TwipsToPixels(bounds.top, dpi.y),
                  ScaleRounded(std::int64_t{bounds.left} + bounds.width, dpi.x, twipsPerInch),
                  ScaleRounded(std::int64_t{bounds.top} + bounds.height, dpi.y, twipsPerInch)};
        if (visit.container) {
            const Rect& outer = shapes[*visit.container].area;
            area = area.Offset(std::clamp(outer.left, -farthest, farthest), std::clamp(outer.top, -farthest, farthest));
        }
        shapes.push_back({IdOf(*visit.block), visit.container, area, HoldsOthers(visit.block->className)});
    }
    return shapes;
}

std::vector<ObjectId> Document::TabOrder() const {
    const std::vector<Visit> visits = Walk(file_.form);
    const std::vector<int> indexes = TabIndexes(visits);
    std::vector<std::size_t> order(visits.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return indexes[a] < indexes[b]; });
    std::vector<ObjectId> ids;
    ids.reserve(order.size());
    for (const std::size_t at : order) ids.push_back(IdOf(*visits[at].block));
    return ids;
}

// --- Steps.

void Document::Begin() {
    if (depth_ == 0) {
        std::string bytes = Bytes();
        unchanged_ = FormFile::Parse(bytes);
        before_ = std::move(bytes);
    }
    ++depth_;
}

bool Document::Commit(Text what, TextView merge) {
    if (depth_ > 1) {
        --depth_;
        return false;
    }
    const bool changed = Bytes() != before_;
    const bool merged = mayMerge_ && !merge.empty() && !undo_.empty() && undo_.back().merge == merge;
    if (changed && !merged) {
        Text mergedBy(merge);
        undo_.emplace_back();
        undo_.back() = {std::move(what), std::move(mergedBy), std::move(before_), state_};
    }
    depth_ = 0;
    unchanged_ = {};
    if (!changed) return false;
    redo_.clear();
    state_ = ++lastState_;
    mayMerge_ = true;
    Trim();
    return true;
}

void Document::Cancel() noexcept {
    if (depth_ == 0) return;
    depth_ = 0;
    // Without a change, the blocks stay, and so do pointers into them.
    bool changed = true;
    try {
        changed = Bytes() != before_;
    } catch (const std::bad_alloc&) {
        // Everything there is goes then.
    }
    if (changed) file_ = std::move(unchanged_);
    unchanged_ = {};
}

void Document::GoTo(std::deque<Step>& from, std::deque<Step>& to) {
    Step& step = from.back();
    FormFile other = FormFile::Parse(step.bytes);
    std::string bytes = Bytes();
    to.emplace_back();
    // From here on, nothing allocates memory.
    to.back() = {std::move(step.what), std::move(step.merge), std::move(bytes), state_};
    file_ = std::move(other);
    state_ = step.state;
    from.pop_back();
    mayMerge_ = false;
}

bool Document::Undo() {
    if (undo_.empty() || InStep()) return false;
    GoTo(undo_, redo_);
    return true;
}

bool Document::Redo() {
    if (redo_.empty() || InStep()) return false;
    GoTo(redo_, undo_);
    return true;
}

void Document::MarkSaved() {
    savedState_ = state_;
    mayMerge_ = false;
}

void Document::Trim() {
    std::size_t bytes = 0;
    for (const Step& step : undo_) bytes += step.bytes.size();
    while (undo_.size() > 1 && (undo_.size() > mostSteps || bytes > mostHistoryBytes)) {
        bytes -= undo_.front().bytes.size();
        undo_.pop_front();
    }
}

// --- Commands.

Document::Indexes Document::UsedNames() const {
    Indexes used;
    const auto add = [&](const auto& self, const Block& block) -> void {
        for (const Block* object : block.Objects()) {
            used[FoldedText(object->name)].push_back(IsMenu(*object) ? -1 : IdOf(*object).index);
            self(self, *object);
        }
    };
    used[FoldedText(file_.form.name)].push_back(-1);
    add(add, file_.form);
    return used;
}

Text Document::FreshNameIn(const Indexes& used, TextView className) {
    const std::size_t dot = className.rfind(u'.');
    const Text base(dot == TextView::npos ? className : className.substr(dot + 1));
    for (int number = 1;; ++number) {
        Text name = base + IntegerToText(number);
        if (!used.contains(FoldedText(name))) return name;
    }
}

void Document::KeepTabOrder(const std::vector<ObjectId>& before) {
    const std::vector<ObjectId> now = TabOrder();
    std::vector<ObjectId> kept;
    const IdTable former(before);
    for (const ObjectId& id : now) {
        if (former.Has(id)) kept.push_back(id);
    }
    const IdTable present(now);
    std::vector<ObjectId> wanted;
    for (const ObjectId& id : before) {
        if (present.Has(id)) wanted.push_back(id);
    }
    if (kept == wanted) return;
    for (const ObjectId& id : now) {
        if (!former.Has(id)) wanted.push_back(id);
    }
    SetTabOrder(wanted);
}

ObjectId Document::Place(TextView className, const std::optional<ObjectId>& container, const TwipsRect& bounds) {
    Block& into = Container(container);
    std::vector<ObjectId> order = TabOrder();
    const Text name = FreshNameIn(UsedNames(), className);
    bool front = false;
    for (const Block* sibling : into.Objects()) {
        front = front || (!IsMenu(*sibling) && Overlaps(BoundsOf(*sibling), bounds));
    }
    auto made = ObjectsIn(NewBlockText(className, name, bounds, NextTabIndex(Walk(file_.form))));
    Insert(into, Reindented(*made.front(), InnerIndent(into), into.begin.lineEnd), front);
    order.push_back({name, -1});
    KeepTabOrder(order);
    return {name, -1};
}

void Document::Delete(const std::vector<ObjectId>& ids) {
    const std::vector<ObjectId> order = TabOrder();
    // One that does not exist is null, which no control is.
    std::vector<const Block*> found = FindAll(ids);
    std::sort(found.begin(), found.end(), std::less<>());
    TakeOutAll(file_.form, found);
    KeepTabOrder(order);
}

void Document::SetBounds(const std::vector<ObjectId>& ids, const std::vector<TwipsRect>& bounds) {
    const std::vector<const Block*> found = FindAll(ids);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        Block& block = Existing(found[i], ids[i]);
        SetIfOther(block, u"Left", bounds[i].left, 0);
        SetIfOther(block, u"Top", bounds[i].top, 0);
        SetIfOther(block, u"Width", bounds[i].width, defaultControlSize);
        SetIfOther(block, u"Height", bounds[i].height, defaultControlSize);
    }
}

void Document::Rename(const ObjectId& id, const Text& name) {
    Block& block = Require(id);
    RequireObjectName(name);
    const Indexes used = UsedNames();
    const auto found = used.find(FoldedText(name));
    const bool same = SameName(block.name, name);
    if (!same && found != used.end()) {
        const bool intoArray = id.index >= 0 && std::all_of(found->second.begin(), found->second.end(),
                                                            [&](int index) { return index >= 0 && index != id.index; });
        if (!intoArray) Refuse(u"The name \"" + name + u"\" is used already.");
    }
    designer::Rename(block, name);
}

void Document::RenameForm(const Text& name) {
    RequireObjectName(name);
    if (!SameName(name, file_.form.name) && UsedNames().contains(FoldedText(name))) {
        Refuse(u"The name \"" + name + u"\" is used already.");
    }
    designer::Rename(file_.form, name);
}

void Document::SetIndex(const ObjectId& id, int index) {
    constexpr int largest = 32767;
    Block& block = Require(id);
    if (index < -1 || index > largest) Refuse(u"The Index of a control is a number from 0 to 32767, or nothing.");
    if (index == id.index) return;
    for (const ObjectId& other : Controls()) {
        if (other == id || !SameName(other.name, id.name)) continue;
        if (index < 0 || other.index == index)
            Refuse(u"The name \"" + TitleOf({id.name, index}) + u"\" is used already.");
    }
    if (index < 0) {
        block.Remove(u"Index");
    } else {
        block.Set(u"Index", std::int32_t{index});
    }
}

void Document::Restack(const std::vector<ObjectId>& ids, bool front) {
    const std::vector<ObjectId> order = TabOrder();
    const IdTable wanted(ids);
    std::vector<ObjectId> inOrder;
    for (const ObjectId& id : Controls()) {
        if (wanted.Has(id)) inOrder.push_back(id);
    }
    if (front) std::reverse(inOrder.begin(), inOrder.end());
    for (const ObjectId& id : inOrder) {
        const Spot place = SpotOf(file_.form, Require(id));
        Insert(*place.container, TakeOut(place), front);
    }
    KeepTabOrder(order);
}

void Document::SetTabOrder(const std::vector<ObjectId>& first) {
    std::vector<ObjectId> order = first;
    const IdTable earlier(first);
    for (const ObjectId& id : TabOrder()) {
        if (!earlier.Has(id)) order.push_back(id);
    }
    const IdTable places(order);
    // The indexes are all read first, since an implicit one depends on those before it.
    const std::vector<Visit> visits = Walk(file_.form);
    const std::vector<int> indexes = TabIndexes(visits);
    for (std::size_t i = 0; i < visits.size(); ++i) {
        const std::size_t at = places.PositionOf(IdOf(*visits[i].block)).value_or(order.size());
        auto& block = const_cast<Block&>(*visits[i].block);
        const bool implicit = !block.Find(u"TabIndex");
        const auto index = static_cast<std::int32_t>(at);
        if (implicit || indexes[i] != index) block.Set(u"TabIndex", index);
    }
}

}  // namespace qvx::host::designer
