#include "archivers/archive_writer.h"

#include <algorithm>

#include "archivers/checksum.h"

namespace qvx::archivers {

namespace {

// Reads a file from its front to its end.
class FileSource {
  public:
    FileSource(InputFile& file, const ProgressCall& progress) : file_(file), progress_(progress) {}
    std::size_t operator()(std::span<std::uint8_t> into) {
        progress_(offset_);
        const std::size_t count = file_.ReadAt(offset_, into);
        offset_ += count;
        return count;
    }

  private:
    InputFile& file_;
    const ProgressCall& progress_;
    std::uint64_t offset_ = 0;
};

bool IsAscii(TextView name) {
    return std::all_of(name.begin(), name.end(), [](char16_t c) { return c < 0x80; });
}

}  // namespace

ArchiveWriter::ArchiveWriter(OutputVolumes& volumes, unsigned threads)
    : volumes_(volumes), writer_(volumes), threads_(threads) {
    if (volumes_.IsSingle()) return;
    const Bytes start = ByteWriter().U32(signature::spanned).Take();
    writer_.Reserve(start.size());
    writer_.PutRecord(start);
}

Place ArchiveWriter::PutHeader(Entry& entry, bool wide, bool known) {
    const Bytes header = LocalHeader(entry, wide, known);
    const Place place = writer_.Reserve(header.size());
    entry.disk = place.volume;
    entry.offset = place.offset;
    writer_.PutRecord(header);
    return place;
}

void ArchiveWriter::Add(Entry entry, InputFile& file, const ProgressCall& progress) {
    if (!IsAscii(entry.name)) entry.flags |= flag::utf8;
    const FileFacts before = file.Facts();
    if (before.size < deflateBlock) {
        AddSmall(entry, before.size, FileSource(file, progress));
    } else {
        AddLarge(entry, file, before.size, progress);
    }
    const FileFacts after = file.Facts();
    if (entry.size != before.size || after.size != before.size || after.modified != before.modified) {
        throw ArchiveError(ExitCode::sourceChanged, entry.name);
    }
    entries_.push_back(std::move(entry));
}

// A file that fits in memory is compressed first, so that everything is known when its header is written.
void ArchiveWriter::AddSmall(Entry& entry, std::uint64_t size, const Source& source) {
    // One byte more than expected, to find out whether the file has grown.
    Bytes content(static_cast<std::size_t>(size) + 1);
    content.resize(source(content));
    const Bytes packed = DeflateWhole(content);
    Checksum sum;
    sum.Add(content);
    entry.crc = sum.Value();
    entry.size = content.size();
    entry.method = packed.size() < content.size() ? method::deflated : method::stored;
    const Bytes& data = entry.method == method::deflated ? packed : content;
    entry.packedSize = data.size();
    PutHeader(entry, false, true);
    writer_.PutData(data);
}

void ArchiveWriter::AddLarge(Entry& entry, InputFile& file, std::uint64_t size, const ProgressCall& progress) {
    const bool wide = NeedsLocal64(size);
    const bool isSingle = volumes_.IsSingle();
    entry.method = method::deflated;
    // On several disks, the header may be out of reach by the time the sizes are known.
    if (!isSingle) entry.flags |= flag::descriptor;
    const Place header = PutHeader(entry, wide, isSingle);
    const Place data = writer_.Position();
    const Packed sums = Deflate(
        FileSource(file, progress), [&](ByteView bytes) { writer_.PutData(bytes); }, threads_);
    entry.crc = sums.crc;
    entry.size = sums.size;
    entry.packedSize = sums.packedSize;
    if (!wide && std::max(entry.size, entry.packedSize) >= limit32) {
        // The file has grown beyond the size that its header can represent.
        throw ArchiveError(ExitCode::sourceChanged, entry.name);
    }
    if (!isSingle) {
        const Bytes descriptor = Descriptor(entry, wide);
        writer_.Reserve(descriptor.size());
        writer_.PutRecord(descriptor);
        return;
    }
    if (entry.packedSize >= entry.size) StoreInstead(entry, data, file, progress);
    volumes_.Current().WriteAt(header.offset, LocalHeader(entry, wide, true));
}

void ArchiveWriter::StoreInstead(Entry& entry, Place data, InputFile& file, const ProgressCall& progress) {
    writer_.Rewind(data);
    entry.method = method::stored;
    entry.packedSize = 0;
    Checksum sum;
    FileSource source(file, progress);
    Bytes buffer(deflateBlock);
    for (std::size_t count = source(buffer); count > 0; count = source(buffer)) {
        const ByteView bytes = ByteView(buffer).first(count);
        sum.Add(bytes);
        writer_.PutData(bytes);
        entry.packedSize += count;
    }
    if (entry.packedSize != entry.size || sum.Value() != entry.crc) {
        throw ArchiveError(ExitCode::sourceChanged, entry.name);
    }
}

void ArchiveWriter::Finish() {
    EndRecord end;
    std::vector<std::uint32_t> volumesOfHeaders;
    for (const Entry& entry : entries_) {
        const Bytes header = CentralHeader(entry);
        const Place place = writer_.Reserve(header.size());
        if (volumesOfHeaders.empty()) {
            end.centralDisk = place.volume;
            end.centralOffset = place.offset;
        }
        volumesOfHeaders.push_back(place.volume);
        end.centralSize += header.size();
        writer_.PutRecord(header);
    }
    end.entries = entries_.size();
    // The numbers that refer to the last disk are known only when the record has its place.
    const auto settle = [&](std::size_t size) {
        end.disk = writer_.Reserve(size).volume;
        end.entriesHere =
            static_cast<std::uint64_t>(std::count(volumesOfHeaders.begin(), volumesOfHeaders.end(), end.disk));
    };
    settle(endSize);
    std::optional<End64Place> wide;
    if (NeedsEnd64(end)) {
        settle(end64Size + end64LocatorSize + endSize);
        wide = End64Place{end.disk, writer_.Position().offset};
        writer_.PutRecord(End64(end));
    }
    writer_.PutRecord(End(end, wide));
    if (!volumes_.IsSingle() && end.disk == 0) {
        volumes_.Current().WriteAt(0, ByteWriter().U32(signature::notSpanned).Take());
    }
}

}  // namespace qvx::archivers
