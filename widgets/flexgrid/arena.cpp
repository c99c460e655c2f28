#include "widgets/flexgrid/arena.h"

#include <algorithm>
#include <new>
#include <utility>

#include "common/run_time_error.h"

namespace qvx::flexgrid {

void Arena::Swap(Arena& other) noexcept {
    std::swap(memory_, other.memory_);
    std::swap(blocks_, other.blocks_);
    std::swap(openBlock_, other.openBlock_);
    std::swap(open_, other.open_);
    std::swap(openSize_, other.openSize_);
    std::swap(used_, other.used_);
    std::swap(dead_, other.dead_);
    std::swap(reserved_, other.reserved_);
}

// Adds blocks with the next numbers, adjacent in memory.
void Arena::AddBlocks(std::size_t count) {
    if (blocks_.size() + count > std::size_t{1} << (32 - blockBits)) {
        throw RunTimeError(errors::outOfMemory, u"Out of memory");
    }
    memory_.reserve(memory_.size() + 1);
    if (blocks_.capacity() < blocks_.size() + count) {
        blocks_.reserve(std::max(2 * blocks_.capacity(), blocks_.size() + count));
    }
    Memory memory(static_cast<std::uint8_t*>(std::malloc(count * blockSize)));
    if (!memory) {
        throw std::bad_alloc();
    }
    for (std::size_t i = 0; i < count; ++i) {
        blocks_.push_back(memory.get() + i * blockSize);
    }
    memory_.push_back(std::move(memory));
    reserved_ += count * blockSize;
}

// A small grid does not need a whole block.
void Arena::GrowFirstBlock(std::size_t needed) {
    std::size_t size = std::max(openSize_, firstBlockSize);
    while (size < needed) {
        size += std::min(size, firstBlockStep);
    }
    size = std::min(size, blockSize);
    memory_.reserve(1);
    blocks_.reserve(1);
    auto* grown = static_cast<std::uint8_t*>(std::realloc(memory_.empty() ? nullptr : memory_[0].get(), size));
    if (!grown) {
        throw std::bad_alloc();
    }
    if (memory_.empty()) {
        memory_.emplace_back(grown);
        blocks_.push_back(grown);
        open_ = wordSize;  // address 0 is not used by any record
    } else {
        (void)memory_[0].release();
        memory_[0].reset(grown);
        blocks_[0] = grown;
    }
    reserved_ += size - openSize_;
    openSize_ = size;
}

Arena::Address Arena::AllocateAlone(std::size_t padded) {
    if (blocks_.empty()) {
        GrowFirstBlock(0);
    }
    const std::size_t block = blocks_.size();
    AddBlocks((padded + blockSize - 1) / blockSize);
    used_ += padded;
    return static_cast<Address>(block << blockBits);
}

// Makes room in the open block, or opens a new one.
void Arena::MakeRoom(std::size_t padded) {
    const bool firstHasRoom = openBlock_ == 0 && std::max(open_, wordSize) + padded <= blockSize;
    if (firstHasRoom) {
        GrowFirstBlock(std::max(open_, wordSize) + padded);
        return;
    }
    AddBlocks(1);
    openBlock_ = blocks_.size() - 1;
    open_ = 0;
    openSize_ = blockSize;
}

bool Arena::Resize(Address address, std::size_t size, std::size_t newSize) noexcept {
    const std::size_t before = Padded(size);
    const std::size_t after = Padded(newSize);
    if (address >> blockBits == openBlock_ && std::size_t{address & wordMask} * wordSize + before == open_ &&
        open_ - before + after <= openSize_ && after <= blockSize / 4) {
        open_ = open_ - before + after;
        used_ = used_ - before + after;
        return true;
    }
    if (after > before) {
        return false;
    }
    dead_ += before - after;
    return true;
}

}  // namespace qvx::flexgrid
