#include <algorithm>

#include "archivers/zip_records.h"
#include "common/utf8.h"

namespace qvx::archivers {

namespace {

constexpr std::uint16_t versionPlain = 20;
constexpr std::uint16_t version64 = 45;

std::uint64_t Narrow32(std::uint64_t value) { return std::min(value, limit32); }
std::uint64_t Narrow16(std::uint64_t value) { return std::min(value, limit16); }

ByteView BytesOf(const std::string& text) { return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}; }

// Writes whole seconds of UTC since 1970, if 32 bits can represent them.
void PutUnixTime(ByteWriter& extra, FileTime modified) {
    const std::int64_t seconds = UnixTime(modified);
    if (seconds < 0 || seconds > 0x7FFFFFFF) return;
    extra.U16(0x5455).U16(5).Raw(Bytes{1}).U32(static_cast<std::uint64_t>(seconds));
}

// Writes the times of modification, access and creation in the system's own format; the last two are not kept, so all
// three are the first.
void PutSystemTime(ByteWriter& extra, FileTime modified) {
    const auto ticks = static_cast<std::uint64_t>(modified);
    extra.U16(0x000A).U16(32).U32(0).U16(1).U16(24).U64(ticks).U64(ticks).U64(ticks);
}

}  // namespace

bool NeedsLocal64(std::uint64_t size) { return size + size / 1024 + 65536 >= limit32; }

Bytes LocalHeader(const Entry& entry, bool wide, bool known) {
    const std::string name = EncodeUtf8(entry.name);
    ByteWriter extra;
    if (wide) extra.U16(1).U16(16).U64(known ? entry.size : 0).U64(known ? entry.packedSize : 0);
    if (entry.modified) PutUnixTime(extra, *entry.modified);
    ByteWriter header;
    header.U32(signature::localHeader).U16(wide ? version64 : versionPlain);
    header.U16(entry.flags | (known ? 0 : flag::descriptor)).U16(entry.method).U32(entry.dosTime);
    header.U32(known ? entry.crc : 0);
    header.U32(wide ? limit32 : known ? entry.packedSize : 0).U32(wide ? limit32 : known ? entry.size : 0);
    header.U16(name.size()).U16(extra.Size()).Raw(BytesOf(name)).Raw(extra.Take());
    return header.Take();
}

Bytes Descriptor(const Entry& entry, bool wide) {
    ByteWriter record;
    record.U32(signature::descriptor).U32(entry.crc);
    if (wide) return record.U64(entry.packedSize).U64(entry.size).Take();
    return record.U32(entry.packedSize).U32(entry.size).Take();
}

Bytes CentralHeader(const Entry& entry) {
    const std::string name = EncodeUtf8(entry.name);
    ByteWriter wide;
    if (entry.size >= limit32) wide.U64(entry.size);
    if (entry.packedSize >= limit32) wide.U64(entry.packedSize);
    if (entry.offset >= limit32) wide.U64(entry.offset);
    if (entry.disk >= limit16) wide.U32(entry.disk);
    ByteWriter extra;
    const bool isWide = wide.Size() > 0;
    if (isWide) {
        extra.U16(1).U16(wide.Size());
        extra.Raw(wide.Take());
    }
    if (entry.modified) {
        PutUnixTime(extra, *entry.modified);
        PutSystemTime(extra, *entry.modified);
    }
    const std::uint16_t version = isWide ? version64 : versionPlain;
    ByteWriter header;
    header.U32(signature::centralHeader).U16(version | entry.system << 8).U16(version);
    header.U16(entry.flags).U16(entry.method).U32(entry.dosTime).U32(entry.crc);
    header.U32(Narrow32(entry.packedSize)).U32(Narrow32(entry.size));
    header.U16(name.size()).U16(extra.Size()).U16(0).U16(Narrow16(entry.disk)).U16(0).U32(entry.attributes);
    header.U32(Narrow32(entry.offset)).Raw(BytesOf(name)).Raw(extra.Take());
    return header.Take();
}

bool NeedsEnd64(const EndRecord& end) {
    return end.disk >= limit16 || end.centralDisk >= limit16 || end.entries >= limit16 || end.centralSize >= limit32 ||
           end.centralOffset >= limit32;
}

Bytes End64(const EndRecord& end) {
    ByteWriter record;
    record.U32(signature::end64).U64(end64Size - 12).U16(version64).U16(version64);
    record.U32(end.disk).U32(end.centralDisk).U64(end.entriesHere).U64(end.entries);
    return record.U64(end.centralSize).U64(end.centralOffset).Take();
}

Bytes End(const EndRecord& end, const std::optional<End64Place>& wide) {
    ByteWriter record;
    if (wide) record.U32(signature::end64Locator).U32(wide->disk).U64(wide->offset).U32(end.disk + 1);
    record.U32(signature::end).U16(Narrow16(end.disk)).U16(Narrow16(end.centralDisk));
    record.U16(Narrow16(end.entriesHere)).U16(Narrow16(end.entries));
    return record.U32(Narrow32(end.centralSize)).U32(Narrow32(end.centralOffset)).U16(0).Take();
}

}  // namespace qvx::archivers
