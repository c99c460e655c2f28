// Removing rows from the index: emptied nodes are freed, and adjacent nodes that have become small are merged.
#include <algorithm>

#include "widgets/flexgrid/row_index.h"

namespace qvx::flexgrid {

void RowIndex::ForgetAll(std::span<const RowId> ids) noexcept {
    if (HasDeviations()) {
        for (const RowId id : ids) {
            ForgetHeight(id);
        }
    }
}

void RowIndex::ForgetTree(void* node, int level) noexcept {
    if (!HasDeviations()) {
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
    // The limit is below the full size, so that the next insertions do not split the node again at once.
    MergeChildren(inner, firstTouched - 1, lastTouched, level, leafCapacity * 3 / 4);
}

// Merges adjacent children among first to last (and the one after) whose contents fit into one node with room to spare.
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
        // The leftmost leaf stays as the empty root, so that nothing has to be allocated.
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
                ForgetHeight(leaf.ids[i]);
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

}  // namespace qvx::flexgrid
