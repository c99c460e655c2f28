// The order of the rows: the row at each position, and the total height of the rows above it.
//
// Leaves of up to 512 identities are in a counted tree, so that an insertion or removal anywhere moves a few kilobytes
// at most, however many rows there are, and walking the rows reads them as arrays. Every inner node contains for each
// child its number of rows and the sum of the pixels by which their heights deviate from the shared height:
//
//     inner    counts 512 | 300 | 512    deviations 0 | -16 | 40
//     leaves   7 8 9 ...  | 3 1 4 ... | ...
//
// Insertions allocate memory before anything changes; removal never fails.
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
    // Copies the rows and deviations of another index into this one, which must be empty, and cannot be used any more
    // when this throws.
    void CopyFrom(const RowIndex& other);

    int Size() const { return size_; }
    RowId At(int position) const {
        assert(position >= 0 && position < size_);
        const auto offset = static_cast<unsigned>(position - cachedFirst_);
        return offset < cachedCount_ ? cachedIds_[offset] : FindAt(position);
    }
    // Returns the rows from `first` on that are in the same leaf, up to `last` (included).
    std::span<const RowId> LeafFrom(int first, int last) const {
        (void)At(first);
        const int offset = first - cachedFirst_;
        const int count = std::min(static_cast<int>(cachedCount_) - offset, last - first + 1);
        return {cachedIds_ + offset, static_cast<std::size_t>(count)};
    }
    // Calls use(std::span<const RowId>) for the rows first to last (included), leaf by leaf.
    template <class Use>
    void ForEachLeaf(int first, int last, Use&& use) const {
        while (first <= last) {
            const std::span<const RowId> ids = LeafFrom(first, last);
            use(ids);
            first += static_cast<int>(ids.size());
        }
    }

    // Inserts at most leafCapacity identities. Strong guarantee.
    void Insert(int position, std::span<const RowId> ids);
    // Allocates what an insertion of up to leafCapacity rows can need, so that the next one cannot fail.
    void ReserveForInsert();
    // The deviations of the removed rows are dropped.
    void Remove(int position, int count) noexcept;
    // Removes the positions whose mark is set.
    void RemoveMarked(const std::vector<bool>& marked) noexcept;
    // Replaces the identities from `position` on with a permutation of themselves.
    void Assign(int position, std::span<const RowId> ids) noexcept;

    // The pixels by which a row's height deviates from the shared height; never below minus the shared height.
    void SetDeviation(int position, int pixels);
    // A filtered row keeps its deviation, which has no effect meanwhile.
    int Deviation(RowId id) const {
        const int* found = deviations_.Find(id);
        return found ? *found : 0;
    }
    // `shared` is the shared height that the deviations refer to.
    void SetDeviations(SparseMap<int> byId, int shared) noexcept;

    // A filtered row has no pixels. Sets it for the rows at the marked positions, and for no others. Strong guarantee.
    void SetFiltered(const std::vector<bool>& marked, int shared);
    void SetFiltered(int position, bool filtered, int shared);
    void ClearFiltered() noexcept;
    // A row on its way from one position to another is marked before it is inserted. It had a mark before.
    void RestoreFiltered(RowId id) noexcept { FlipFiltered(id); }
    bool IsFiltered(RowId id) const {
        return id / bitsPerWord < filtered_.size() && (filtered_[id / bitsPerWord] >> id % bitsPerWord & 1) != 0;
    }
    int FilteredCount() const { return filteredCount_; }
    // Returns the pixels of all rows before this position when each has `shared` pixels and its deviation.
    std::int64_t ExtentBefore(int position, int shared) const;
    // Returns the row that covers pixel y, counted from 0; Size after the last.
    int PositionAt(std::int64_t y, int shared) const;

    std::size_t MemoryUsed() const;

  private:
    struct Leaf {
        int count = 0;
        std::array<RowId, leafCapacity> ids;
    };
    struct Child {
        void* node;  // a Leaf at level 0, otherwise an Inner
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
    void Forget() {
        cachedCount_ = 0;
        appendedTo_ = nullptr;
    }
    // Finds the leaf for an insertion at `position`, which becomes the offset in the leaf. Fills `path_`.
    Leaf& Descend(int& position, bool& rightmost);
    // Appends identities to the leaf that took the last ones, which must have room.
    void Append(std::span<const RowId> ids) noexcept;
    void AddAlongPath(int count, std::int64_t deviation) noexcept;
    void AddChildAlongPath(Child child, int leftCount, std::int64_t leftDeviation, bool rightmost) noexcept;
    std::int64_t DeviationOf(std::span<const RowId> ids) const noexcept;
    bool HasDeviations() const { return filteredCount_ > 0 || !deviations_.Empty(); }
    // The deviation in effect.
    int ShownDeviation(RowId id) const { return IsFiltered(id) ? -shared_ : Deviation(id); }
    void FlipFiltered(RowId id) noexcept {
        filtered_[id / bitsPerWord] ^= std::uint64_t{1} << id % bitsPerWord;
        filteredCount_ += IsFiltered(id) ? 1 : -1;
    }
    void AddToDeviationAt(int position, int change);
    void ForgetHeight(RowId id) noexcept {
        deviations_.Erase(id);
        if (IsFiltered(id)) {
            FlipFiltered(id);
        }
    }

    // These work on the subtree of a child and update its count and deviation.
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

    // Invariants: all leaves are `height_` levels down; no node except the root is empty; the counts and deviations of
    // a child are those of its subtree.
    Child root_;
    int height_ = 0;
    int size_ = 0;
    int leaves_ = 0;
    int inners_ = 0;
    SparseMap<int> deviations_;  // no entry means 0
    static constexpr RowId bitsPerWord = 64;
    std::vector<std::uint64_t> filtered_;  // a bit for each identity, as far as any is set
    int filteredCount_ = 0;
    int shared_ = 0;
    Path path_;                   // of the last insertion
    Leaf* appendedTo_ = nullptr;  // the last leaf, while `path_` leads to it and has room; null when that is not known
    int insertedEnd_ = 0;         // the position after the last insertion, whatever has happened since
    std::unique_ptr<Leaf> spareLeaf_;
    std::vector<std::unique_ptr<Inner>> spareInners_;

    // The leaf that was used last: most accesses are to the same or the next row.
    mutable const RowId* cachedIds_ = nullptr;
    mutable int cachedFirst_ = 0;
    mutable unsigned cachedCount_ = 0;
};

}  // namespace qvx::flexgrid
