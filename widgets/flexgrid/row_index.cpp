#include "widgets/flexgrid/row_index.h"

#include <algorithm>
#include <utility>

namespace qvx::flexgrid {

RowIndex::RowIndex() : root_{new Leaf, 0, 0}, leaves_(1) {}

RowIndex::~RowIndex() { FreeTree(root_.node, height_); }

void RowIndex::Swap(RowIndex& other) noexcept {
    std::swap(root_, other.root_);
    std::swap(height_, other.height_);
    std::swap(size_, other.size_);
    std::swap(leaves_, other.leaves_);
    std::swap(inners_, other.inners_);
    std::swap(deviations_, other.deviations_);
    std::swap(filtered_, other.filtered_);
    std::swap(filteredCount_, other.filteredCount_);
    std::swap(shared_, other.shared_);
    Forget();
    other.Forget();
}

void RowIndex::CopyFrom(const RowIndex& other) {
    assert(size_ == 0);
    deviations_ = other.deviations_;
    filtered_ = other.filtered_;
    filteredCount_ = other.filteredCount_;
    shared_ = other.shared_;
    other.ForEachLeaf(0, other.size_ - 1, [this](std::span<const RowId> ids) { Insert(size_, ids); });
}

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
    // One leaf may be split, and with it every inner node above and the root.
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
    appendedTo_ = nullptr;
    rightmost = true;
    void* node = root_.node;
    if (position == size_) {
        // Rows are mostly added at the end, which needs no search.
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
        // At a border, the row goes to the end of the child before it.
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
    if (HasDeviations()) {
        for (const RowId id : ids) {
            sum += ShownDeviation(id);
        }
    }
    return sum;
}

void RowIndex::AddAlongPath(int count, std::int64_t deviation) noexcept {
    root_.count += count;
    for (const Step& step : path_) {
        step.node->counts[static_cast<std::size_t>(step.child)] += count;
    }
    if (deviation == 0) {
        return;
    }
    root_.deviation += deviation;
    for (const Step& step : path_) {
        step.node->deviations[static_cast<std::size_t>(step.child)] += deviation;
    }
}

void RowIndex::Append(std::span<const RowId> ids) noexcept {
    Leaf& leaf = *appendedTo_;
    for (const RowId id : ids) {
        leaf.ids[static_cast<std::size_t>(leaf.count++)] = id;
    }
    size_ += static_cast<int>(ids.size());
    AddAlongPath(static_cast<int>(ids.size()), DeviationOf(ids));
}

void RowIndex::Insert(int position, std::span<const RowId> ids) {
    assert(position >= 0 && position <= size_ && ids.size() <= leafCapacity);
    const int added = static_cast<int>(ids.size());
    if (added == 0) {
        return;
    }
    const bool appends = position == size_;
    const bool continues = position == std::exchange(insertedEnd_, position + added);
    if (appends && appendedTo_ && appendedTo_->count + added <= leafCapacity) {
        Append(ids);
        return;
    }
    path_.reserve(static_cast<std::size_t>(height_) + 1);
    bool rightmost = true;
    int offset = position;
    Leaf* const leaf = &Descend(offset, rightmost);
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
        appendedTo_ = appends ? leaf : nullptr;
        return;
    }
    std::array<RowId, 2 * std::size_t{leafCapacity}> all;
    auto out = std::copy(leaf->ids.begin(), at, all.begin());
    out = std::copy(ids.begin(), ids.end(), out);
    out = std::copy(at, end, out);
    const int total = static_cast<int>(out - all.begin());
    // Rows that come one after the other leave full leaves, and go on coming to the end of the left one; elsewhere both
    // halves keep some room.
    rightmost = rightmost && offset == leaf->count;
    const int left = rightmost ? leafCapacity : continues ? std::min(offset + added, leafCapacity) : total / 2;
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

// Inserts `child` after the child to which the path leads, which keeps leftCount rows; splits inner nodes on the way
// up.
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
    if (!IsFiltered(id)) {
        AddToDeviationAt(position, change);
    }
}

[[gnu::cold]] void RowIndex::AddToDeviationAt(int position, int change) {
    int offset = position + 1;  // the insertion after the row leads to the row's own leaf
    bool rightmost = false;
    (void)Descend(offset, rightmost);
    AddAlongPath(0, change);
}

[[gnu::cold]] void RowIndex::SetFiltered(const std::vector<bool>& marked, int shared) {
    assert(marked.size() == static_cast<std::size_t>(size_));
    std::vector<std::uint64_t> fresh;
    int count = 0;
    int position = 0;
    ForEachLeaf(0, size_ - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            if (!marked[static_cast<std::size_t>(position++)]) {
                continue;
            }
            const std::size_t word = id / bitsPerWord;
            if (word >= fresh.size()) {
                fresh.resize(word + 1);
            }
            fresh[word] |= std::uint64_t{1} << id % bitsPerWord;
            ++count;
        }
    });
    const bool hadAny = filteredCount_ > 0;
    filtered_.swap(fresh);
    filteredCount_ = count;
    shared_ = shared;
    if (hadAny || count > 0) {
        RefreshDeviation(root_, height_);
    }
}

[[gnu::cold]] void RowIndex::SetFiltered(int position, bool filtered, int shared) {
    const RowId id = At(position);
    if (IsFiltered(id) == filtered) {
        return;
    }
    path_.reserve(static_cast<std::size_t>(height_) + 1);
    if (id / bitsPerWord >= filtered_.size()) {
        filtered_.resize(id / bitsPerWord + 1);
    }
    shared_ = shared;
    const int before = ShownDeviation(id);
    FlipFiltered(id);
    AddToDeviationAt(position, ShownDeviation(id) - before);
}

[[gnu::cold]] void RowIndex::ClearFiltered() noexcept {
    std::vector<std::uint64_t>().swap(filtered_);
    if (std::exchange(filteredCount_, 0) > 0) {
        RefreshDeviation(root_, height_);
    }
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

void RowIndex::SetDeviations(SparseMap<int> byId, int shared) noexcept {
    const bool wereNone = deviations_.Empty();
    deviations_ = std::move(byId);
    shared_ = shared;
    if (!wereNone || HasDeviations()) {
        RefreshDeviation(root_, height_);
    }
}

std::int64_t RowIndex::ExtentBefore(int position, int shared) const {
    assert(position >= 0 && position <= size_);
    std::int64_t extent = static_cast<std::int64_t>(position) * shared;
    if (!HasDeviations()) {
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
    if (!HasDeviations()) {
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
        y -= shared + ShownDeviation(leaf.ids[i]);
        if (y < 0) {
            return position;
        }
    }
}

std::size_t RowIndex::MemoryUsed() const {
    return sizeof(*this) + filtered_.capacity() * sizeof(filtered_[0]) +
           static_cast<std::size_t>(leaves_) * sizeof(Leaf) + static_cast<std::size_t>(inners_) * sizeof(Inner);
}

}  // namespace qvx::flexgrid
