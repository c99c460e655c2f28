#include "archivers/archive_reader.h"

#include <algorithm>

namespace qvx::archivers {

namespace {

constexpr std::uint64_t largestDirectory = std::uint64_t{64} * 1024 * 1024;
constexpr std::uint64_t farthestEnd = endSize + limit16;

[[noreturn]] void Damaged() { throw ArchiveError(ExitCode::damaged); }

Bytes ReadPart(InputFile& file, std::uint64_t offset, std::size_t count) {
    Bytes bytes(count);
    bytes.resize(file.ReadAt(offset, bytes));
    return bytes;
}

bool HasSignature(ByteView bytes, std::uint32_t wanted) {
    return bytes.size() >= 4 && ByteReader(bytes).U32() == wanted;
}

// Returns the position of the end record in the last bytes of a file; its comment must fit after it.
std::optional<std::size_t> FindEndRecord(ByteView tail) {
    if (tail.size() < endSize) return std::nullopt;
    for (std::size_t at = tail.size() - endSize + 1; at-- > 0;) {
        const ByteView record = tail.subspan(at);
        if (HasSignature(record, signature::end) && ByteReader(record.subspan(20)).U16() <= record.size() - endSize)
            return at;
    }
    return std::nullopt;
}

bool FitsBefore(std::uint64_t offset, std::uint64_t size, std::uint64_t limit) {
    return offset <= limit && size <= limit - offset;
}

}  // namespace

ArchiveReader::ArchiveReader(InputVolumes& volumes) : volumes_(volumes) {
    ReadEndRecords();
    ReadDirectory();
    CheckOverlaps();
}

// The last volume is the one with an end record; any other inserted volume is wrong.
void ArchiveReader::ReadEndRecords() {
    for (;;) {
        try {
            FindEnd();
            break;
        } catch (const ArchiveError& error) {
            if (error.Code() != ExitCode::damaged || !volumes_.AskForLast()) throw;
        }
    }
    volumes_.SetLast(end_.disk);
}

void ArchiveReader::FindEnd() {
    InputFile& file = volumes_.Last();
    const std::uint64_t size = file.Facts().size;
    const std::uint64_t tailOffset = size - std::min(size, farthestEnd);
    const Bytes tail = ReadPart(file, tailOffset, static_cast<std::size_t>(size - tailOffset));
    const auto at = FindEndRecord(tail);
    if (!at) Damaged();
    endOffset_ = tailOffset + *at;
    end_ = ReadEnd(ByteView(tail).subspan(*at));
    if (endOffset_ < end64LocatorSize) return;
    const Bytes before = ReadPart(file, endOffset_ - end64LocatorSize, end64LocatorSize);
    const auto wide = ReadEnd64Locator(before);
    if (!wide) return;
    // The record is directly before its locator; if the archive follows other data in its file, the record has moved by
    // the same distance.
    if (endOffset_ < end64LocatorSize + end64Size) Damaged();
    endOffset_ -= end64LocatorSize + end64Size;
    end_ = ReadEnd64(ReadPart(file, endOffset_, end64Size));
}

void ArchiveReader::ReadDirectory() {
    if (end_.centralSize > largestDirectory || end_.entries > end_.centralSize / centralHeaderSize) Damaged();
    if (end_.centralDisk > end_.disk) Damaged();
    if (end_.disk == 0) {
        if (!FitsBefore(end_.centralOffset, end_.centralSize, endOffset_)) Damaged();
        prefix_ = endOffset_ - end_.centralOffset - end_.centralSize;
    }
    const Place start{end_.centralDisk, end_.centralOffset + prefix_};
    const Bytes bytes = VolumeReader(volumes_, end_.disk, start).Take(static_cast<std::size_t>(end_.centralSize));
    ByteReader reader(bytes);
    for (std::uint64_t i = 0; i < end_.entries; ++i) {
        Entry entry = ReadCentralHeader(reader);
        if (entry.offset > endOffset_ && entry.disk == end_.disk) Damaged();
        entry.offset += prefix_;
        entries_.push_back(std::move(entry));
    }
    // Only the directory's signature may follow.
    constexpr std::uint32_t directorySignature = 0x05054B50;
    if (reader.Left() > 0 && reader.U32() != directorySignature) Damaged();
}

void ArchiveReader::CheckOverlaps() {
    const auto earlier = [this](const Entry& one, const Entry& other) { return StartOf(one) < StartOf(other); };
    std::stable_sort(entries_.begin(), entries_.end(), earlier);
    const Place directory{end_.centralDisk, end_.centralOffset + prefix_};
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Entry& entry = entries_[i];
        const Place limit = i + 1 < entries_.size() ? StartOf(entries_[i + 1]) : directory;
        const Place start = StartOf(entry);
        if (limit <= start) Damaged();
        // If both are on one volume, there must be room between them for at least the header and the data.
        const std::uint64_t least = localHeaderSize + entry.rawName.size();
        if (start.volume == limit.volume && (!FitsBefore(start.offset, least, limit.offset) ||
                                             entry.packedSize > limit.offset - start.offset - least)) {
            Damaged();
        }
        limits_.push_back(limit);
    }
}

// The data follows the entry's own header, which must be the one that the directory refers to.
Place ArchiveReader::DataOf(const Entry& entry) {
    for (;;) {
        VolumeReader reader(volumes_, end_.disk, StartOf(entry));
        try {
            const LocalFacts facts = ReadLocalHeader(reader.Take(localHeaderSize));
            const bool isSame = facts.method == entry.method && facts.nameSize == entry.rawName.size() &&
                                ((facts.flags ^ entry.flags) & flag::unreadable) == 0;
            if (!isSame || reader.Take(facts.nameSize) != entry.rawName) Damaged();
            reader.Take(facts.extraSize);
            return reader.Position();
        } catch (const ArchiveError& error) {
            if (error.Code() != ExitCode::damaged || !volumes_.AskAgain(entry.disk)) throw;
        }
    }
}

void ArchiveReader::Read(const Entry& entry, const Sink& sink) {
    if (!IsReadable(entry)) throw ArchiveError(ExitCode::unsupported);
    if (!IsPlausibleSize(entry)) Damaged();
    const Place data = DataOf(entry);
    const Place limit = limits_[static_cast<std::size_t>(&entry - entries_.data())];
    if (data.volume == limit.volume && !FitsBefore(data.offset, entry.packedSize, limit.offset)) Damaged();
    VolumeReader reader(volumes_, end_.disk, data);
    Inflate(
        entry, [&](std::span<std::uint8_t> into) { return reader.Read(into); }, sink);
}

}  // namespace qvx::archivers
