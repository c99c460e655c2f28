// Memory for records: blocks that are only ever appended to, addressed by 32-bit numbers in words of four bytes, so
// that an address takes half the size of a pointer and still reaches 16 GB.
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

    // Allocates memory for a record; pointers from At become invalid. Throws std::bad_alloc, or error 7 beyond 16 GB.
    Address Allocate(std::size_t size) {
        if (Padded(size) > blockSize / 4) {
            return AllocateAlone(Padded(size));
        }
        (void)Reserve(size);
        return Take(size);
    }
    // Makes room for a record of at most `most` bytes, whose exact size is not known before it is written; pointers
    // from At become invalid. Take makes its first `size` bytes a record. Throws as Allocate does.
    std::uint8_t* Reserve(std::size_t most) {
        const std::size_t padded = Padded(most);
        assert(padded > 0 && padded <= blockSize / 4);
        if (open_ + padded > openSize_) {
            MakeRoom(padded);
        }
        return blocks_[openBlock_] + open_;
    }
    Address Take(std::size_t size) noexcept {
        const std::size_t padded = Padded(size);
        assert(padded > 0 && open_ + padded <= openSize_);
        const auto address = static_cast<Address>(openBlock_ << blockBits | open_ / wordSize);
        open_ += padded;
        used_ += padded;
        return address;
    }
    // Resizes a record of `size` bytes to `newSize` in place, if that is possible without moving anything: when it does
    // not grow, or when it is the last one and its block has room. Bytes that become free count as dead.
    bool Resize(Address address, std::size_t size, std::size_t newSize) noexcept;
    // Counts a record that is no longer used as dead.
    void Release(std::size_t size) noexcept { dead_ += Padded(size); }

    // Restores the state in which Used was `used` and Dead was `dead`: all later records are dead, and the earlier ones
    // as they were. None must have been resized since.
    void ReleaseSince(std::size_t used, std::size_t dead) noexcept { dead_ = dead + (used_ - used); }

    std::size_t Dead() const { return dead_; }  // bytes
    std::size_t Used() const { return used_; }  // bytes handed out, dead ones included
    std::size_t MemoryUsed() const { return reserved_; }

  private:
    static constexpr unsigned blockBits = 16;  // words in a block, as a power of two
    static constexpr std::uint32_t wordMask = (1u << blockBits) - 1;
    static constexpr std::size_t wordSize = 4;
    static constexpr std::size_t blockSize = wordSize << blockBits;
    // The first block doubles from firstBlockSize on, and later grows by firstBlockStep.
    static constexpr std::size_t firstBlockSize = 64;
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
    // first block is ever smaller than blockSize. Larger records have consecutive block numbers to themselves.
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
