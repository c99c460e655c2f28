#include <zlib.h>

#include "archivers/file_names.h"
#include "archivers/zip_records.h"
#include "common/utf8.h"

namespace qvx::archivers {

namespace {

void Expect(ByteReader& reader, std::uint32_t wanted) {
    if (reader.U32() != wanted) throw ArchiveError(ExitCode::damaged);
}

std::optional<Text> Utf8Name(ByteView bytes) {
    return DecodeUtf8({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

// Reads the numbers that do not fit into the short header; they are in a fixed order, and each is present only if
// needed.
void ReadWideNumbers(Entry& entry, ByteReader field) {
    if (entry.size == limit32) entry.size = field.U64();
    if (entry.packedSize == limit32) entry.packedSize = field.U64();
    if (entry.offset == limit32) entry.offset = field.U64();
    if (entry.disk == limit16) entry.disk = field.U32();
}

std::optional<FileTime> ReadSystemTime(ByteReader field) {
    field.U32();
    while (field.Left() >= 4) {
        const std::uint16_t tag = field.U16();
        ByteReader times(field.Raw(field.U16()));
        if (tag == 1) return static_cast<FileTime>(times.U64());
    }
    return std::nullopt;
}

std::optional<FileTime> ReadUnixTime(ByteReader field) {
    if ((field.Raw(1)[0] & 1) == 0) return std::nullopt;
    return FromUnixTime(static_cast<std::int32_t>(field.U32()));
}

// Reads a second name in Unicode, which is valid only if it was made for this first name.
std::optional<Text> ReadUnicodeName(ByteReader field, ByteView rawName) {
    const std::uint8_t version = field.Raw(1)[0];
    const std::uint32_t sum = field.U32();
    if (version != 1 || sum != crc32(0, rawName.data(), static_cast<uInt>(rawName.size()))) return std::nullopt;
    return Utf8Name(field.Raw(field.Left()));
}

struct ExtraFacts {
    std::optional<FileTime> systemTime;
    std::optional<FileTime> unixTime;
    std::optional<Text> name;
};

// Truncated fields are ignored as remains of other programs, except the one that contains sizes.
ExtraFacts ReadExtra(Entry& entry, ByteReader extra) {
    ExtraFacts facts;
    bool wideSeen = false;
    while (extra.Left() >= 4) {
        const std::uint16_t tag = extra.U16();
        const std::uint16_t size = extra.U16();
        if (size > extra.Left()) break;
        const ByteReader field(extra.Raw(size));
        try {
            if (tag == 0x0001 && !wideSeen) {
                wideSeen = true;
                ReadWideNumbers(entry, field);
            } else if (tag == 0x000A) {
                facts.systemTime = ReadSystemTime(field);
            } else if (tag == 0x5455) {
                facts.unixTime = ReadUnixTime(field);
            } else if (tag == 0x7075) {
                facts.name = ReadUnicodeName(field, entry.rawName);
            }
        } catch (const ArchiveError&) {
            if (tag == 0x0001) throw;
        }
    }
    return facts;
}

// Whether the system can represent the time: from 1601 to the year 30827, with room for a time zone at both ends.
bool IsPlausible(FileTime time) { return time > 864'000'000'000 && time < 0x7FFF35F4F06C58F0; }

Text NameOf(const Entry& entry, std::optional<Text>&& unicodeName) {
    if ((entry.flags & flag::utf8) != 0) {
        // Bytes that are not UTF-8 become an unpaired surrogate, which is never safe to write.
        return Utf8Name(entry.rawName).value_or(Text(1, char16_t{0xD800}));
    }
    if (unicodeName) return std::move(*unicodeName);
    // On Unix, a name is the bytes in the file system, nearly always UTF-8, though nothing says so.
    const bool isUnix = entry.system == 3 || entry.system == 19;
    if (auto name = isUnix ? Utf8Name(entry.rawName) : std::nullopt) return std::move(*name);
    return DecodeCodePage437(entry.rawName);
}

}  // namespace

LocalFacts ReadLocalHeader(ByteView fixedPart) {
    ByteReader reader(fixedPart);
    Expect(reader, signature::localHeader);
    reader.U16();
    LocalFacts facts;
    facts.flags = reader.U16();
    facts.method = reader.U16();
    reader.Raw(16);  // time, checksum and sizes: those of the central directory are used
    facts.nameSize = reader.U16();
    facts.extraSize = reader.U16();
    return facts;
}

Entry ReadCentralHeader(ByteReader& reader) {
    Expect(reader, signature::centralHeader);
    Entry entry;
    entry.system = static_cast<std::uint8_t>(reader.U16() >> 8);
    reader.U16();
    entry.flags = reader.U16();
    entry.method = reader.U16();
    entry.dosTime = reader.U32();
    entry.crc = reader.U32();
    entry.packedSize = reader.U32();
    entry.size = reader.U32();
    const std::uint16_t nameSize = reader.U16();
    const std::uint16_t extraSize = reader.U16();
    const std::uint16_t commentSize = reader.U16();
    entry.disk = reader.U16();
    reader.U16();
    entry.attributes = reader.U32();
    entry.offset = reader.U32();
    const ByteView name = reader.Raw(nameSize);
    entry.rawName.assign(name.begin(), name.end());
    ExtraFacts facts = ReadExtra(entry, ByteReader(reader.Raw(extraSize)));
    reader.Raw(commentSize);
    entry.modified = facts.systemTime ? facts.systemTime : facts.unixTime;
    if (entry.modified && !IsPlausible(*entry.modified)) entry.modified.reset();
    entry.name = NameOf(entry, std::move(facts.name));
    return entry;
}

EndRecord ReadEnd(ByteView record) {
    ByteReader reader(record);
    Expect(reader, signature::end);
    EndRecord end;
    end.disk = reader.U16();
    end.centralDisk = reader.U16();
    end.entriesHere = reader.U16();
    end.entries = reader.U16();
    end.centralSize = reader.U32();
    end.centralOffset = reader.U32();
    return end;
}

EndRecord ReadEnd64(ByteView record) {
    ByteReader reader(record);
    Expect(reader, signature::end64);
    reader.Raw(12);  // its size and versions
    EndRecord end;
    end.disk = reader.U32();
    end.centralDisk = reader.U32();
    end.entriesHere = reader.U64();
    end.entries = reader.U64();
    end.centralSize = reader.U64();
    end.centralOffset = reader.U64();
    return end;
}

std::optional<End64Place> ReadEnd64Locator(ByteView record) {
    ByteReader reader(record);
    if (reader.U32() != signature::end64Locator) return std::nullopt;
    End64Place place;
    place.disk = reader.U32();
    place.offset = reader.U64();
    return place;
}

}  // namespace qvx::archivers
