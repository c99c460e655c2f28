// The order of the rows: which row stands at which position, and how high the rows above it are together.
//
// Leaves of up to 512 identities hang under a counted tree, so that inserting or removing anywhere moves a few
// kilobytes at most, however many rows there are, and walking the rows reads them as arrays. Every inner node knows for
// each child how many rows are in it and by how many pixels their heights deviate from what all rows share:
//
//     inner    counts 512 | 300 | 512    deviations 0 | -16 | 40
//     leaves   7 8 9 ...  | 3 1 4 ... | ...
//
// Growth takes memory before anything changes; removal never fails.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class RowIndex {
  public:
    static constexpr int leafCapacity = 512;
    static constexpr int fanout = 64;

    RowIndex();
    ~RowIndex();
    RowIndex(const RowIndex&) = delete;
    RowIndex& operator=(const RowIndex&) = delete;
    void Swap(RowIndex& other) noexcept;
    // Takes the rows and deviations of another one; for an index that is empty, and of no use any more when it throws.
    void CopyFrom(const RowIndex& other);

    int Size() const { return size_; }
    RowId At(int position) const {
        assert(position >= 0 && position < size_);
        const auto offset = static_cast<unsigned>(position - cachedFirst_);
        return offset < cachedCount_ ? cachedIds_[offset] : FindAt(position);
    }
    // use(std::span<const RowId>) for the rows first to last (included), leaf by leaf.
    template <class Use>
    void ForEachLeaf(int first, int last, Use&& use) const {
        while (first <= last) {
            (void)FindAt(first);
            const int offset = first - cachedFirst_;
            const int count = std::min(static_cast<int>(cachedCount_) - offset, last - first + 1);
            use(std::span<const RowId>(cachedIds_ + offset, static_cast<std::size_t>(count)));
            first += count;
        }
    }

    // At most leafCapacity identities. Strong guarantee.
    void Insert(int position, std::span<const RowId> ids);
    // Takes what an insertion of up to leafCapacity rows can need, so that the next one cannot fail.
    void ReserveForInsert();
    // Deviations of the removed rows are forgotten.
    void Remove(int position, int count) noexcept;
    // Removes the positions whose mark is set.
    void RemoveMarked(const std::vector<bool>& marked) noexcept;
    // The identities from `position` on are replaced by a permutation of themselves.
    void Assign(int position, std::span<const RowId> ids) noexcept;

    // Pixels by which a row's height deviates from the shared one; never below minus the shared one.
    void SetDeviation(int position, int pixels);
    int Deviation(RowId id) const {
        const int* found = deviations_.Find(id);
        return found ? *found : 0;
    }
    void SetDeviations(SparseMap<int> byId) noexcept;
    // Pixels of the rows before this position when each has `shared` pixels and its deviation.
    std::int64_t ExtentBefore(int position, int shared) const;
    // The row that covers pixel y, counted from 0; Size behind the last.
    int PositionAt(std::int64_t y, int shared) const;

    std::size_t MemoryUsed() const;

  private:
    struct Leaf {
        int count = 0;
        std::array<RowId, leafCapacity> ids;
    };
    struct Child {
        void* node;  // a Leaf at level 0, else an Inner
        int count;
        std::int64_t deviation;
    };
    struct Inner {
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
    struct Step {
        Inner* node;
        int child;
    };
    using Path = std::vector<Step>;

    RowId FindAt(int position) const;
    void Forget() const { cachedCount_ = 0; }
    // Walks down to the leaf that takes an insertion at `position`, which becomes the offset in it. Fills `path_`.
    Leaf& Descend(int& position, bool& rightmost);
    void AddAlongPath(int count, std::int64_t deviation) noexcept;
    void AddChildAlongPath(Child child, int leftCount, std::int64_t leftDeviation, bool rightmost) noexcept;
    std::int64_t DeviationOf(std::span<const RowId> ids) const noexcept;

    // These work on the subtree of a child and bring its count and deviation up to date.
    void RemoveFrom(Child& child, int level, int position, int count) noexcept;
    void RemoveMarkedFrom(Child& child, int level, const std::vector<bool>& marked, std::size_t position) noexcept;
    void AssignIn(Child& child, int level, int position, std::span<const RowId> ids) noexcept;
    void RefreshDeviation(Child& child, int level) noexcept;
    void SumUp(Child& child) const noexcept;
    void MergeChildren(Inner& inner, int first, int last, int level, int leafLimit) noexcept;
    void FreeTree(void* node, int level) noexcept;
    void ForgetAll(std::span<const RowId> ids) noexcept;
    void ForgetTree(void* node, int level) noexcept;
    void CollapseRoot() noexcept;

    // Invariants: leaves are all `height_` levels down; no node but the root is empty; the counts and deviations of a
    // child are those of its subtree.
    Child root_;
    int height_ = 0;
    int size_ = 0;
    int leaves_ = 0;
    int inners_ = 0;
    SparseMap<int> deviations_;  // none is 0
    Path path_;                  // of the insertion under way; kept for its memory
    std::unique_ptr<Leaf> spareLeaf_;
    std::vector<std::unique_ptr<Inner>> spareInners_;

    // The leaf looked at last: most questions are for the same or the next row.
    mutable const RowId* cachedIds_ = nullptr;
    mutable int cachedFirst_ = 0;
    mutable unsigned cachedCount_ = 0;
};

}  // namespace qvx::flexgrid
