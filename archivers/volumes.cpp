#include "archivers/volumes.h"

#include <algorithm>

namespace qvx::archivers {

void VolumeWriter::GoOn() {
    // A volume that is empty and still has no room will not get any.
    if (position_.offset == 0) throw ArchiveError(ExitCode::diskFull);
    volumes_.Next();
    position_ = {position_.volume + 1, 0};
}

Place VolumeWriter::Reserve(std::size_t count) {
    while (volumes_.Room() < count) GoOn();
    return position_;
}

void VolumeWriter::PutRecord(ByteView record) {
    volumes_.Current().Write(record);
    position_.offset += record.size();
}

void VolumeWriter::PutData(ByteView data) {
    while (!data.empty()) {
        const std::uint64_t room = volumes_.Room();
        if (room == 0) {
            GoOn();
            continue;
        }
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(room, data.size()));
        PutRecord(data.first(count));
        data = data.subspan(count);
    }
}

void VolumeWriter::Rewind(Place place) {
    volumes_.Current().Truncate(place.offset);
    position_ = place;
}

std::size_t VolumeReader::Read(std::span<std::uint8_t> into) {
    std::size_t done = 0;
    while (done < into.size()) {
        const std::size_t count = volumes_.Volume(position_.volume).ReadAt(position_.offset, into.subspan(done));
        done += count;
        position_.offset += count;
        if (done == into.size()) break;
        if (position_.volume >= last_) break;
        position_ = {position_.volume + 1, 0};
    }
    return done;
}

Bytes VolumeReader::Take(std::size_t count) {
    // The buffer grows with the data, so that a false size costs nothing.
    constexpr std::size_t step = 65536;
    Bytes bytes;
    while (bytes.size() < count) {
        const std::size_t before = bytes.size();
        bytes.resize(std::min(count, before + step));
        if (Read(std::span(bytes).subspan(before)) < bytes.size() - before) throw ArchiveError(ExitCode::damaged);
    }
    return bytes;
}

}  // namespace qvx::archivers
