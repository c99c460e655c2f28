#include "archivers/deflate.h"

#include <zlib.h>

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace qvx::archivers {

namespace {

// How far back a match may be.
constexpr std::size_t window = 32768;
constexpr int level = 6;
// One more would take an eighth more time to save a thousandth.
constexpr int memoryLevel = 8;

struct Block {
    Bytes data;  // the dictionary, then the block itself
    std::size_t dictionary = 0;
    bool isLast = false;
    Bytes packed;
    std::uint32_t crc = 0;
    std::exception_ptr failure;
    bool isDone = false;

    ByteView Dictionary() const { return ByteView(data).first(dictionary); }
    ByteView Content() const { return ByteView(data).subspan(dictionary); }
};

// One thread's deflater.
class BlockDeflater {
  public:
    BlockDeflater() {
        // Raw data, without a header of the compression library.
        if (deflateInit2(&stream_, level, Z_DEFLATED, -MAX_WBITS, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~BlockDeflater() { deflateEnd(&stream_); }
    BlockDeflater(const BlockDeflater&) = delete;
    BlockDeflater& operator=(const BlockDeflater&) = delete;

    void Run(Block& block) {
        // A hole in a file consists of many identical blocks of zeros.
        const bool isHole = !block.isLast && block.dictionary == window && IsAllZero(block.data);
        if (isHole && !hole_.empty()) {
            block.packed = hole_;
            block.crc = holeCrc_;
            return;
        }
        const ByteView content = block.Content();
        block.crc = static_cast<std::uint32_t>(crc32_z(0, content.data(), content.size()));
        Pack(block);
        if (isHole) {
            hole_ = block.packed;
            holeCrc_ = block.crc;
        }
    }

  private:
    void Pack(Block& block) {
        const ByteView content = block.Content();
        deflateReset(&stream_);
        if (block.dictionary > 0) {
            deflateSetDictionary(&stream_, block.Dictionary().data(), static_cast<uInt>(block.dictionary));
        }
        // The bound is that of a finished stream; an unfinished one's empty block at its end takes a little more.
        block.packed.resize(deflateBound(&stream_, static_cast<uLong>(content.size())) + 64);
        stream_.next_in = const_cast<Bytef*>(content.data());
        stream_.avail_in = static_cast<uInt>(content.size());
        stream_.next_out = block.packed.data();
        stream_.avail_out = static_cast<uInt>(block.packed.size());
        const int result = deflate(&stream_, block.isLast ? Z_FINISH : Z_SYNC_FLUSH);
        if (result != (block.isLast ? Z_STREAM_END : Z_OK) || stream_.avail_in > 0 || stream_.avail_out == 0) {
            throw ArchiveError(ExitCode::internal);
        }
        block.packed.resize(block.packed.size() - stream_.avail_out);
    }

    z_stream stream_{};
    Bytes hole_;
    std::uint32_t holeCrc_ = 0;
};

using BlockPointer = std::shared_ptr<Block>;

// Threads that take blocks in any order; the caller gets each block when it is done.
class Workers {
  public:
    explicit Workers(unsigned count) {
        try {
            for (; count > 0; --count) threads_.emplace_back([this] { Work(); });
        } catch (const std::exception&) {
            // Fewer threads than wanted are enough, but at least one is needed. Those that run must not be abandoned.
            if (threads_.empty()) throw;
        }
    }
    ~Workers() {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        changed_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    void Give(const BlockPointer& block) {
        {
            const std::lock_guard lock(mutex_);
            waiting_.push_back(block);
        }
        changed_.notify_all();
    }

    void WaitFor(const Block& block) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return block.isDone; });
        if (block.failure) std::rethrow_exception(block.failure);
    }

  private:
    void Work() {
        std::unique_ptr<BlockDeflater> deflater;
        for (;;) {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [&] { return isEnding_ || !waiting_.empty(); });
            if (isEnding_) return;
            const BlockPointer block = waiting_.front();
            waiting_.pop_front();
            lock.unlock();
            try {
                if (!deflater) deflater = std::make_unique<BlockDeflater>();
                deflater->Run(*block);
            } catch (...) {
                block->failure = std::current_exception();
            }
            lock.lock();
            block->isDone = true;
            lock.unlock();
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<BlockPointer> waiting_;
    bool isEnding_ = false;
    std::vector<std::thread> threads_;
};

// Cuts the data into blocks.
class Cutter {
  public:
    explicit Cutter(const Source& source) : source_(source) {}

    // Returns null after the last block.
    BlockPointer Next() {
        if (isAtEnd_) return nullptr;
        auto block = std::make_shared<Block>();
        block->dictionary = tail_.size();
        block->data.resize(tail_.size() + deflateBlock);
        std::copy(tail_.begin(), tail_.end(), block->data.begin());
        const std::size_t count = source_(std::span(block->data).subspan(block->dictionary));
        block->data.resize(block->dictionary + count);
        isAtEnd_ = block->isLast = count < deflateBlock;
        const std::size_t kept = std::min(window, block->data.size());
        tail_.assign(block->data.end() - static_cast<std::ptrdiff_t>(kept), block->data.end());
        return block;
    }

  private:
    const Source& source_;
    Bytes tail_;
    bool isAtEnd_ = false;
};

void Append(Packed& packed, const Block& block, const Sink& sink) {
    const std::size_t size = block.Content().size();
    packed.crc = static_cast<std::uint32_t>(crc32_combine(packed.crc, block.crc, static_cast<z_off_t>(size)));
    packed.size += size;
    packed.packedSize += block.packed.size();
    sink(block.packed);
}

}  // namespace

Packed Deflate(const Source& source, const Sink& sink, unsigned threads) {
    Packed packed;
    Cutter cutter(source);
    BlockPointer next = cutter.Next();
    if (threads <= 1 || next->isLast) {
        BlockDeflater deflater;
        for (; next; next = cutter.Next()) {
            deflater.Run(*next);
            Append(packed, *next, sink);
        }
        return packed;
    }
    Workers workers(threads);
    std::deque<BlockPointer> inOrder;
    while (next || !inOrder.empty()) {
        while (next && inOrder.size() < std::size_t{threads} * 2) {
            workers.Give(next);
            inOrder.push_back(next);
            next = cutter.Next();
        }
        workers.WaitFor(*inOrder.front());
        Append(packed, *inOrder.front(), sink);
        inOrder.pop_front();
    }
    return packed;
}

Bytes DeflateWhole(ByteView data) {
    Block block;
    block.data.assign(data.begin(), data.end());
    block.isLast = true;
    BlockDeflater().Run(block);
    return std::move(block.packed);
}

}  // namespace qvx::archivers
