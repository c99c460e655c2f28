#include "archivers/inflate.h"

#include <zlib.h>

#include <algorithm>
#include <new>

#include "archivers/checksum.h"

namespace qvx::archivers {

namespace {

constexpr std::uint64_t largestPiece = std::uint64_t{256} * 1024;

// The size of the next piece: never more than the rest.
std::size_t PieceOf(std::uint64_t size) { return static_cast<std::size_t>(std::min(size, largestPiece)); }

// The compressed bytes of one entry, and not one more.
class PackedInput {
  public:
    PackedInput(const Source& source, std::uint64_t size) : source_(source), left_(size), buffer_(PieceOf(size)) {}

    // Returns an empty view at the end.
    ByteView Next() {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left_, buffer_.size()));
        const std::size_t count = wanted > 0 ? source_(std::span(buffer_).first(wanted)) : 0;
        if (count < wanted) throw ArchiveError(ExitCode::damaged);
        left_ -= count;
        return ByteView(buffer_).first(count);
    }
    bool IsAtEnd() const { return left_ == 0; }

  private:
    const Source& source_;
    std::uint64_t left_;
    Bytes buffer_;
};

// The decompressed data: counted, added to the checksum and passed on.
class Output {
  public:
    Output(std::uint64_t size, const Sink& sink) : left_(size), sink_(sink) {}
    void Add(ByteView bytes) {
        if (bytes.size() > left_) throw ArchiveError(ExitCode::damaged);
        left_ -= bytes.size();
        sum_.Add(bytes);
        if (!bytes.empty()) sink_(bytes);
    }
    void Finish(std::uint32_t crc) const {
        if (left_ != 0) throw ArchiveError(ExitCode::damaged);
        if (sum_.Value() != crc) throw ArchiveError(ExitCode::wrongCrc);
    }

  private:
    std::uint64_t left_;
    const Sink& sink_;
    Checksum sum_;
};

class Stream {
  public:
    Stream() {
        if (inflateInit2(&stream_, -MAX_WBITS) != Z_OK) throw std::bad_alloc();
    }
    ~Stream() { inflateEnd(&stream_); }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    void Run(PackedInput& input, Output& output, std::uint64_t size) {
        // Pieces are whole pages, since the system takes a quarter longer to store pieces that end within one. Even no
        // data gets room for a byte, so that a larger size is noticed.
        Bytes buffer(std::max<std::size_t>(PieceOf(size), 1));
        int result = Z_OK;
        while (result != Z_STREAM_END) {
            Feed(input);
            stream_.next_out = buffer.data();
            stream_.avail_out = static_cast<uInt>(buffer.size());
            while (stream_.avail_out > 0 && result != Z_STREAM_END) {
                Feed(input);
                result = inflate(&stream_, Z_NO_FLUSH);
                if (result == Z_MEM_ERROR) throw std::bad_alloc();
                if (result != Z_OK && result != Z_STREAM_END) throw ArchiveError(ExitCode::damaged);
            }
            output.Add(ByteView(buffer).first(buffer.size() - stream_.avail_out));
        }
        if (stream_.avail_in > 0 || !input.IsAtEnd()) throw ArchiveError(ExitCode::damaged);
    }

  private:
    void Feed(PackedInput& input) {
        if (stream_.avail_in > 0) return;
        const ByteView bytes = input.Next();
        stream_.next_in = const_cast<Bytef*>(bytes.data());
        stream_.avail_in = static_cast<uInt>(bytes.size());
    }
    z_stream stream_{};
};

}  // namespace

bool IsReadable(const Entry& entry) {
    return (entry.flags & flag::unreadable) == 0 &&
           (entry.method == method::stored || entry.method == method::deflated);
}

bool IsPlausibleSize(const Entry& entry) {
    if (entry.method == method::stored) return entry.size == entry.packedSize;
    constexpr std::uint64_t most = 1040;
    return entry.size / most <= entry.packedSize;
}

void Inflate(const Entry& entry, const Source& source, const Sink& sink) {
    PackedInput input(source, entry.packedSize);
    Output output(entry.size, sink);
    if (entry.method == method::stored) {
        for (ByteView bytes = input.Next(); !bytes.empty(); bytes = input.Next()) output.Add(bytes);
    } else {
        Stream().Run(input, output, entry.size);
    }
    output.Finish(entry.crc);
}

}  // namespace qvx::archivers
