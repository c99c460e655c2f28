// A small table from row identities to values, for settings that few rows have. A table that was never used takes no
// memory.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace qvx::flexgrid {

// The identity of a row, which stays the same wherever the row moves. Numbers are reused after a row has been removed.
using RowId = std::uint32_t;
constexpr RowId noRow = UINT32_MAX;

// Open addressing with linear probing; removal shifts the rest of a run back, so there are no tombstones.
template <class Value>
class SparseMap {
  public:
    bool Empty() const { return size_ == 0; }
    std::size_t Size() const { return size_; }

    const Value* Find(RowId key) const {
        if (size_ == 0) {
            return nullptr;
        }
        for (std::size_t i = Home(key); slots_[i].key != noRow; i = Next(i)) {
            if (slots_[i].key == key) {
                return &slots_[i].value;
            }
        }
        return nullptr;
    }
    Value* Find(RowId key) { return const_cast<Value*>(std::as_const(*this).Find(key)); }

    // Strong guarantee: unchanged when memory runs out.
    void Set(RowId key, Value value) {
        assert(key != noRow);
        if (Value* found = Find(key)) {
            *found = std::move(value);
            return;
        }
        Reserve(size_ + 1);
        Place(key, std::move(value));
    }
    // Reserves room for `count` entries in all; setting up to that many does not allocate.
    void Reserve(std::size_t count) {
        if (count * 4 <= slots_.size() * 3) {
            return;
        }
        std::size_t capacity = slots_.empty() ? 8 : slots_.size();
        while (count * 4 > capacity * 3) {
            capacity *= 2;
        }
        std::vector<Slot> old(capacity);
        old.swap(slots_);
        size_ = 0;
        for (Slot& slot : old) {
            if (slot.key != noRow) {
                Place(slot.key, std::move(slot.value));
            }
        }
    }
    void Erase(RowId key) noexcept {
        if (size_ == 0) {
            return;
        }
        std::size_t hole = Home(key);
        while (slots_[hole].key != key) {
            if (slots_[hole].key == noRow) {
                return;
            }
            hole = Next(hole);
        }
        for (std::size_t i = Next(hole); slots_[i].key != noRow; i = Next(i)) {
            // An entry may move into the hole unless its home slot is between the hole and itself.
            const std::size_t home = Home(slots_[i].key);
            const bool between = hole < i ? home > hole && home <= i : home > hole || home <= i;
            if (!between) {
                slots_[hole] = std::move(slots_[i]);
                hole = i;
            }
        }
        slots_[hole] = Slot{};
        --size_;
    }
    void Clear() noexcept {
        std::vector<Slot>().swap(slots_);
        size_ = 0;
    }
    // Calls use(RowId, Value&), in no particular order.
    template <class Use>
    void ForEach(Use&& use) {
        for (Slot& slot : slots_) {
            if (slot.key != noRow) {
                use(slot.key, slot.value);
            }
        }
    }
    template <class Use>
    void ForEach(Use&& use) const {
        for (const Slot& slot : slots_) {
            if (slot.key != noRow) {
                use(slot.key, slot.value);
            }
        }
    }

  private:
    struct Slot {
        RowId key = noRow;
        Value value{};
    };
    std::size_t Home(RowId key) const {
        return static_cast<std::size_t>((key * std::uint64_t{0x9E3779B97F4A7C15}) >> 32) & (slots_.size() - 1);
    }
    std::size_t Next(std::size_t i) const { return (i + 1) & (slots_.size() - 1); }
    void Place(RowId key, Value value) {
        std::size_t i = Home(key);
        while (slots_[i].key != noRow) {
            i = Next(i);
        }
        slots_[i] = Slot{key, std::move(value)};
        ++size_;
    }

    // Invariants: the size is 0 or a power of two; at least a quarter of the slots is free.
    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

}  // namespace qvx::flexgrid
