#include "elements/flexgrid/row_index.h"

#include <algorithm>
#include <utility>

namespace qvx::flexgrid {

struct RowIndex::Inner {
    int size = 0;
    std::array<int, fanout> counts;
    std::array<std::int64_t, fanout> deviations;
    std::array<void*, fanout> nodes;

    Child Get(int i) const {
        const auto at = static_cast<std::size_t>(i);
        return {nodes[at], counts[at], deviations[at]};
    }
    void Set(int i, const Child& child) {
        const auto at = static_cast<std::size_t>(i);
        nodes[at] = child.node;
        counts[at] = child.count;
        deviations[at] = child.deviation;
    }
    void Add(const Child& child) {
        assert(size < fanout);
        Set(size++, child);
    }
};

RowIndex::RowIndex() : root_{new Leaf, 0, 0}, leaves_(1) {}

RowIndex::~RowIndex() { FreeTree(root_.node, height_); }

void RowIndex::FreeTree(void* node, int level) noexcept {
    if (level == 0) {
        delete static_cast<Leaf*>(node);
        --leaves_;
        return;
    }
    auto* inner = static_cast<Inner*>(node);
    for (int i = 0; i < inner->size; ++i) {
        FreeTree(inner->Get(i).node, level - 1);
    }
    delete inner;
    --inners_;
}

RowId RowIndex::FindAt(int position) const {
    assert(position >= 0 && position < size_);
    int first = 0;
    const void* node = root_.node;
    for (int level = height_; level > 0; --level) {
        const auto& inner = *static_cast<const Inner*>(node);
        std::size_t i = 0;
        while (position - first >= inner.counts[i]) {
            first += inner.counts[i++];
        }
        node = inner.nodes[i];
    }
    const auto& leaf = *static_cast<const Leaf*>(node);
    cachedIds_ = leaf.ids.data();
    cachedFirst_ = first;
    cachedCount_ = static_cast<unsigned>(leaf.count);
    return leaf.ids[static_cast<std::size_t>(position - first)];
}

// ---- Insertion -----------------------------------------------------------------------------------------------------

void RowIndex::ReserveForInsert() {
    // One leaf may split, and with it every inner node above and the root.
    const auto inners = static_cast<std::size_t>(height_) + 1;
    path_.reserve(inners);
    if (!spareLeaf_) {
        spareLeaf_ = std::make_unique<Leaf>();
    }
    spareInners_.reserve(inners);
    while (spareInners_.size() < inners) {
        spareInners_.push_back(std::make_unique<Inner>());
    }
}

RowIndex::Leaf& RowIndex::Descend(int& position, bool& rightmost) {
    path_.clear();
    rightmost = true;
    void* node = root_.node;
    if (position == size_) {
        // Rows are mostly added at the end, where nothing need be searched.
        for (int level = height_; level > 0; --level) {
            auto& inner = *static_cast<Inner*>(node);
            path_.push_back({&inner, inner.size - 1});
            node = inner.nodes[static_cast<std::size_t>(inner.size - 1)];
        }
        position = static_cast<Leaf*>(node)->count;
        return *static_cast<Leaf*>(node);
    }
    for (int level = height_; level > 0; --level) {
        auto& inner = *static_cast<Inner*>(node);
        std::size_t i = 0;
        // At a border the row goes to the end of the child before it.
        while (position > inner.counts[i]) {
            position -= inner.counts[i++];
        }
        rightmost = rightmost && static_cast<int>(i) == inner.size - 1;
        path_.push_back({&inner, static_cast<int>(i)});
        node = inner.nodes[i];
    }
    return *static_cast<Leaf*>(node);
}

std::int64_t RowIndex::DeviationOf(std::span<const RowId> ids) const noexcept {
    std::int64_t sum = 0;
    if (!deviations_.Empty()) {
        for (const RowId id : ids) {
            sum += Deviation(id);
        }
    }
    return sum;
}

void RowIndex::AddAlongPath(int count, std::int64_t deviation) noexcept {
    root_.count += count;
    root_.deviation += deviation;
    for (const Step& step : path_) {
        step.node->counts[static_cast<std::size_t>(step.child)] += count;
        step.node->deviations[static_cast<std::size_t>(step.child)] += deviation;
    }
}

void RowIndex::Insert(int position, std::span<const RowId> ids) {
    assert(position >= 0 && position <= size_ && ids.size() <= leafCapacity);
    const int added = static_cast<int>(ids.size());
    if (added == 0) {
        return;
    }
    path_.reserve(static_cast<std::size_t>(height_) + 1);
    bool rightmost = false;
    int offset = position;
    Leaf* leaf = &Descend(offset, rightmost);
    if (leaf->count + added > leafCapacity) {
        ReserveForInsert();
    }
    Forget();
    size_ += added;
    const std::int64_t addedDeviation = DeviationOf(ids);
    const auto at = leaf->ids.begin() + offset;
    const auto end = leaf->ids.begin() + leaf->count;
    if (leaf->count + added <= leafCapacity) {
        std::move_backward(at, end, end + added);
        std::copy(ids.begin(), ids.end(), at);
        leaf->count += added;
        AddAlongPath(added, addedDeviation);
        return;
    }
    std::array<RowId, 2 * std::size_t{leafCapacity}> all;
    auto out = std::copy(leaf->ids.begin(), at, all.begin());
    out = std::copy(ids.begin(), ids.end(), out);
    out = std::copy(at, end, out);
    const int total = static_cast<int>(out - all.begin());
    // Rows appended one after the other leave full leaves behind them; elsewhere both halves keep room.
    rightmost = rightmost && offset == leaf->count;
    const int left = rightmost ? leafCapacity : total / 2;
    Leaf* right = spareLeaf_.release();
    ++leaves_;
    leaf->count = left;
    right->count = total - left;
    std::copy(all.begin(), all.begin() + left, leaf->ids.begin());
    std::copy(all.begin() + left, all.begin() + total, right->ids.begin());
    const std::span<const RowId> ordered(all);
    AddAlongPath(added, addedDeviation);
    AddChildAlongPath(
        {right, right->count,
         DeviationOf(ordered.subspan(static_cast<std::size_t>(left), static_cast<std::size_t>(right->count)))},
        left, DeviationOf(ordered.first(static_cast<std::size_t>(left))), rightmost);
}

// Hangs `child` behind the child the path leads to, which keeps leftCount rows; splits inner nodes on the way up.
void RowIndex::AddChildAlongPath(Child child, int leftCount, std::int64_t leftDeviation, bool rightmost) noexcept {
    while (!path_.empty()) {
        Inner& inner = *path_.back().node;
        const int at = path_.back().child;
        path_.pop_back();
        inner.counts[static_cast<std::size_t>(at)] = leftCount;
        inner.deviations[static_cast<std::size_t>(at)] = leftDeviation;
        if (inner.size < fanout) {
            for (int i = inner.size; i > at + 1; --i) {
                inner.Set(i, inner.Get(i - 1));
            }
            inner.Set(at + 1, child);
            ++inner.size;
            return;
        }
        std::array<Child, std::size_t{fanout} + 1> all;
        for (int i = 0, out = 0; i < fanout; ++i) {
            all[static_cast<std::size_t>(out++)] = inner.Get(i);
            if (i == at) {
                all[static_cast<std::size_t>(out++)] = child;
            }
        }
        Inner* right = spareInners_.back().release();
        spareInners_.pop_back();
        ++inners_;
        const std::size_t left = rightmost ? fanout : fanout / 2;
        inner.size = 0;
        right->size = 0;
        leftCount = 0;
        leftDeviation = 0;
        child = {right, 0, 0};
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (i < left) {
                inner.Add(all[i]);
                leftCount += all[i].count;
                leftDeviation += all[i].deviation;
            } else {
                right->Add(all[i]);
                child.count += all[i].count;
                child.deviation += all[i].deviation;
            }
        }
    }
    Inner* top = spareInners_.back().release();
    spareInners_.pop_back();
    ++inners_;
    top->Add({root_.node, leftCount, leftDeviation});
    top->Add(child);
    root_.node = top;
    ++height_;
}

// ---- Removal -------------------------------------------------------------------------------------------------------

void RowIndex::ForgetAll(std::span<const RowId> ids) noexcept {
    if (!deviations_.Empty()) {
        for (const RowId id : ids) {
            deviations_.Erase(id);
        }
    }
}

void RowIndex::ForgetTree(void* node, int level) noexcept {
    if (deviations_.Empty()) {
        return;
    }
    if (level == 0) {
        const auto* leaf = static_cast<Leaf*>(node);
        ForgetAll({leaf->ids.data(), static_cast<std::size_t>(leaf->count)});
        return;
    }
    const auto* inner = static_cast<Inner*>(node);
    for (int i = 0; i < inner->size; ++i) {
        ForgetTree(inner->nodes[static_cast<std::size_t>(i)], level - 1);
    }
}

void RowIndex::SumUp(Child& child) const noexcept {
    const auto& inner = *static_cast<Inner*>(child.node);
    child.count = 0;
    child.deviation = 0;
    for (int i = 0; i < inner.size; ++i) {
        child.count += inner.Get(i).count;
        child.deviation += inner.Get(i).deviation;
    }
}

void RowIndex::RemoveFrom(Child& child, int level, int position, int count) noexcept {
    if (level == 0) {
        auto& leaf = *static_cast<Leaf*>(child.node);
        const std::span<const RowId> removed(leaf.ids.data() + position, static_cast<std::size_t>(count));
        child.deviation -= DeviationOf(removed);
        ForgetAll(removed);
        std::copy(leaf.ids.begin() + position + count, leaf.ids.begin() + leaf.count, leaf.ids.begin() + position);
        leaf.count -= count;
        child.count = leaf.count;
        return;
    }
    auto& inner = *static_cast<Inner*>(child.node);
    int i = 0;
    while (position >= inner.counts[static_cast<std::size_t>(i)]) {
        position -= inner.counts[static_cast<std::size_t>(i++)];
    }
    const int firstTouched = i;
    int kept = i;
    for (; i < inner.size && count > 0; ++i) {
        Child part = inner.Get(i);
        const int here = std::min(count, part.count - position);
        count -= here;
        if (here == part.count) {
            child.deviation -= part.deviation;
            ForgetTree(part.node, level - 1);
            FreeTree(part.node, level - 1);
        } else {
            child.deviation -= part.deviation;
            RemoveFrom(part, level - 1, position, here);
            child.deviation += part.deviation;
            inner.Set(kept++, part);
        }
        child.count -= here;
        position = 0;
    }
    const int lastTouched = kept;
    if (kept < i) {
        for (; i < inner.size; ++i) {
            inner.Set(kept++, inner.Get(i));
        }
        inner.size = kept;
    }
    // Some slack below the full size, so that the next insertions do not split again at once.
    MergeChildren(inner, firstTouched - 1, lastTouched, level, leafCapacity * 3 / 4);
}

// Merges neighbours among the children first to last (and the one behind) whose contents fit one node with room to
// spare.
void RowIndex::MergeChildren(Inner& inner, int first, int last, int level, int leafLimit) noexcept {
    for (int i = std::max(first, 0); i <= last && i + 1 < inner.size;) {
        Child left = inner.Get(i);
        const Child right = inner.Get(i + 1);
        if (level == 1) {
            if (left.count + right.count > leafLimit) {
                ++i;
                continue;
            }
            auto& into = *static_cast<Leaf*>(left.node);
            const auto& from = *static_cast<Leaf*>(right.node);
            std::copy(from.ids.begin(), from.ids.begin() + from.count, into.ids.begin() + into.count);
            into.count += from.count;
            delete static_cast<Leaf*>(right.node);
            --leaves_;
        } else {
            auto& into = *static_cast<Inner*>(left.node);
            const auto& from = *static_cast<Inner*>(right.node);
            if (into.size + from.size > fanout * 3 / 4) {
                ++i;
                continue;
            }
            for (int c = 0; c < from.size; ++c) {
                into.Add(from.Get(c));
            }
            delete static_cast<Inner*>(right.node);
            --inners_;
        }
        left.count += right.count;
        left.deviation += right.deviation;
        inner.Set(i, left);
        for (int c = i + 1; c + 1 < inner.size; ++c) {
            inner.Set(c, inner.Get(c + 1));
        }
        --inner.size;
        --last;
    }
}

void RowIndex::CollapseRoot() noexcept {
    while (height_ > 0) {
        auto* inner = static_cast<Inner*>(root_.node);
        if (inner->size != 1) {
            return;
        }
        root_ = inner->Get(0);
        delete inner;
        --inners_;
        --height_;
    }
}

void RowIndex::Remove(int position, int count) noexcept {
    assert(position >= 0 && count >= 0 && position + count <= size_);
    if (count == 0) {
        return;
    }
    Forget();
    if (count == size_ && height_ > 0) {
        // The leftmost leaf stays as the empty root, so that nothing need be allocated.
        ForgetTree(root_.node, height_);
        auto* node = root_.node;
        for (int level = height_; level > 0; --level) {
            auto* inner = static_cast<Inner*>(node);
            for (int i = 1; i < inner->size; ++i) {
                FreeTree(inner->nodes[static_cast<std::size_t>(i)], level - 1);
            }
            node = inner->nodes[0];
            delete inner;
            --inners_;
        }
        static_cast<Leaf*>(node)->count = 0;
        root_ = {node, 0, 0};
        height_ = 0;
        size_ = 0;
        return;
    }
    RemoveFrom(root_, height_, position, count);
    size_ -= count;
    CollapseRoot();
}

void RowIndex::RemoveMarkedFrom(Child& child, int level, const std::vector<bool>& marked,
                                std::size_t position) noexcept {
    if (level == 0) {
        auto& leaf = *static_cast<Leaf*>(child.node);
        std::size_t kept = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(leaf.count); ++i) {
            if (marked[position + i]) {
                deviations_.Erase(leaf.ids[i]);
            } else {
                leaf.ids[kept++] = leaf.ids[i];
            }
        }
        leaf.count = static_cast<int>(kept);
        child.count = leaf.count;
        child.deviation = DeviationOf({leaf.ids.data(), kept});
        return;
    }
    auto& inner = *static_cast<Inner*>(child.node);
    int kept = 0;
    for (int i = 0; i < inner.size; ++i) {
        Child part = inner.Get(i);
        const auto before = static_cast<std::size_t>(part.count);
        RemoveMarkedFrom(part, level - 1, marked, position);
        position += before;
        if (part.count == 0) {
            FreeTree(part.node, level - 1);
        } else {
            inner.Set(kept++, part);
        }
    }
    inner.size = kept;
    SumUp(child);
    MergeChildren(inner, 0, inner.size, level, leafCapacity);
}

void RowIndex::RemoveMarked(const std::vector<bool>& marked) noexcept {
    assert(marked.size() == static_cast<std::size_t>(size_));
    const auto count = std::count(marked.begin(), marked.end(), true);
    if (count == size_) {
        Remove(0, size_);
        return;
    }
    Forget();
    RemoveMarkedFrom(root_, height_, marked, 0);
    size_ -= static_cast<int>(count);
    CollapseRoot();
}

// ---- Permutation ---------------------------------------------------------------------------------------------------

void RowIndex::AssignIn(Child& child, int level, int position, std::span<const RowId> ids) noexcept {
    if (level == 0) {
        auto& leaf = *static_cast<Leaf*>(child.node);
        std::copy(ids.begin(), ids.end(), leaf.ids.begin() + position);
        child.deviation = DeviationOf({leaf.ids.data(), static_cast<std::size_t>(leaf.count)});
        return;
    }
    auto& inner = *static_cast<Inner*>(child.node);
    for (int i = 0; i < inner.size && !ids.empty(); ++i) {
        Child part = inner.Get(i);
        if (position >= part.count) {
            position -= part.count;
            continue;
        }
        const std::size_t here = std::min(ids.size(), static_cast<std::size_t>(part.count - position));
        AssignIn(part, level - 1, position, ids.first(here));
        inner.Set(i, part);
        ids = ids.subspan(here);
        position = 0;
    }
    SumUp(child);
}

void RowIndex::Assign(int position, std::span<const RowId> ids) noexcept {
    assert(position >= 0 && ids.size() <= static_cast<std::size_t>(size_ - position));
    AssignIn(root_, height_, position, ids);
}

// ---- Heights -------------------------------------------------------------------------------------------------------

void RowIndex::SetDeviation(int position, int pixels) {
    const RowId id = At(position);
    const int change = pixels - Deviation(id);
    if (change == 0) {
        return;
    }
    path_.reserve(static_cast<std::size_t>(height_) + 1);
    if (pixels == 0) {
        deviations_.Erase(id);
    } else {
        deviations_.Set(id, pixels);
    }
    int offset = position + 1;  // the insertion behind the row leads into the row's own leaf
    bool rightmost = false;
    (void)Descend(offset, rightmost);
    AddAlongPath(0, change);
}

void RowIndex::RefreshDeviation(Child& child, int level) noexcept {
    if (level == 0) {
        const auto& leaf = *static_cast<Leaf*>(child.node);
        child.deviation = DeviationOf({leaf.ids.data(), static_cast<std::size_t>(leaf.count)});
        return;
    }
    auto& inner = *static_cast<Inner*>(child.node);
    for (int i = 0; i < inner.size; ++i) {
        Child part = inner.Get(i);
        RefreshDeviation(part, level - 1);
        inner.Set(i, part);
    }
    SumUp(child);
}

void RowIndex::SetDeviations(SparseMap<int> byId) noexcept {
    const bool wereNone = deviations_.Empty();
    deviations_ = std::move(byId);
    if (!wereNone || !deviations_.Empty()) {
        RefreshDeviation(root_, height_);
    }
}

std::int64_t RowIndex::ExtentBefore(int position, int shared) const {
    assert(position >= 0 && position <= size_);
    std::int64_t extent = static_cast<std::int64_t>(position) * shared;
    if (deviations_.Empty()) {
        return extent;
    }
    if (position == size_) {
        return extent + root_.deviation;
    }
    const void* node = root_.node;
    for (int level = height_; level > 0; --level) {
        const auto& inner = *static_cast<const Inner*>(node);
        std::size_t i = 0;
        while (position >= inner.counts[i]) {
            position -= inner.counts[i];
            extent += inner.deviations[i++];
        }
        node = inner.nodes[i];
    }
    const auto& leaf = *static_cast<const Leaf*>(node);
    return extent + DeviationOf({leaf.ids.data(), static_cast<std::size_t>(position)});
}

int RowIndex::PositionAt(std::int64_t y, int shared) const {
    if (y >= static_cast<std::int64_t>(size_) * shared + root_.deviation) {
        return size_;
    }
    if (deviations_.Empty()) {
        return static_cast<int>(y / shared);
    }
    int position = 0;
    const void* node = root_.node;
    for (int level = height_; level > 0; --level) {
        const auto& inner = *static_cast<const Inner*>(node);
        std::size_t i = 0;
        for (;;) {
            const std::int64_t extent = static_cast<std::int64_t>(inner.counts[i]) * shared + inner.deviations[i];
            if (y < extent) {
                break;
            }
            y -= extent;
            position += inner.counts[i++];
        }
        node = inner.nodes[i];
    }
    const auto& leaf = *static_cast<const Leaf*>(node);
    for (std::size_t i = 0;; ++i, ++position) {
        y -= shared + Deviation(leaf.ids[i]);
        if (y < 0) {
            return position;
        }
    }
}

std::size_t RowIndex::MemoryUsed() const {
    return sizeof(*this) + static_cast<std::size_t>(leaves_) * sizeof(Leaf) +
           static_cast<std::size_t>(inners_) * sizeof(Inner);
}

}  // namespace qvx::flexgrid
