// Where records lie: blocks that are only ever appended to, addressed by 32-bit numbers in words of four bytes, so that
// an address takes half of what a pointer does and still reaches 16 GB.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace qvx::flexgrid {

class Arena {
  public:
    using Address = std::uint32_t;  // 0 is no record

    Arena() = default;
    Arena(Arena&& other) noexcept { Swap(other); }
    Arena& operator=(Arena&& other) noexcept {
        Swap(other);
        return *this;
    }

    const std::uint8_t* At(Address address) const {
        return blocks_[address >> blockBits] + std::size_t{address & wordMask} * wordSize;
    }
    std::uint8_t* At(Address address) {
        return blocks_[address >> blockBits] + std::size_t{address & wordMask} * wordSize;
    }

    // Room for a record; pointers from At are void afterwards. Throws std::bad_alloc or error 7 beyond 16 GB.
    Address Allocate(std::size_t size) {
        const std::size_t padded = Padded(size);
        assert(padded > 0);
        if (padded > blockSize / 4) {
            return AllocateAlone(padded);
        }
        if (open_ + padded > openSize_) {
            MakeRoom(padded);
        }
        const auto address = static_cast<Address>(openBlock_ << blockBits | open_ / wordSize);
        open_ += padded;
        used_ += padded;
        return address;
    }
    // A record of `size` bytes becomes one of `newSize` where it lies, when that is possible without moving anything:
    // when it becomes no longer, or is the last one and its block has room. Counts what becomes free as dead.
    bool Resize(Address address, std::size_t size, std::size_t newSize) noexcept;
    // A record is no longer used.
    void Release(std::size_t size) noexcept { dead_ += Padded(size); }

    // All records from `used` bytes on are no longer used, and those before it as they were when Used was that and Dead
    // was `dead`. None must have been resized since.
    void ReleaseSince(std::size_t used, std::size_t dead) noexcept { dead_ = dead + (used_ - used); }

    std::size_t Dead() const { return dead_; }  // bytes
    std::size_t Used() const { return used_; }  // bytes handed out, dead ones included
    std::size_t MemoryUsed() const { return reserved_; }

  private:
    static constexpr unsigned blockBits = 16;  // words in a block, as a power of two
    static constexpr std::uint32_t wordMask = (1u << blockBits) - 1;
    static constexpr std::size_t wordSize = 4;
    static constexpr std::size_t blockSize = wordSize << blockBits;
    // The first block doubles from this size and then grows in such steps.
    static constexpr std::size_t firstBlockSize = 1024;
    static constexpr std::size_t firstBlockStep = 16'384;

    struct Free {
        void operator()(std::uint8_t* memory) const noexcept { std::free(memory); }
    };
    using Memory = std::unique_ptr<std::uint8_t, Free>;

    static std::size_t Padded(std::size_t size) { return (size + wordSize - 1) & ~(wordSize - 1); }
    Address AllocateAlone(std::size_t padded);
    void MakeRoom(std::size_t padded);
    void GrowFirstBlock(std::size_t needed);
    void AddBlocks(std::size_t count);
    void Swap(Arena& other) noexcept;

    // Invariants: the open block, the one that takes new records, is filled up to open_ of openSize_ bytes; only the
    // first block is ever smaller than blockSize. Larger records have neighbouring block numbers to themselves.
    std::vector<Memory> memory_;
    std::vector<std::uint8_t*> blocks_;  // by block number
    std::size_t openBlock_ = 0;
    std::size_t open_ = 0;
    std::size_t openSize_ = 0;
    std::size_t used_ = 0;
    std::size_t dead_ = 0;
    std::size_t reserved_ = 0;
};

}  // namespace qvx::flexgrid
