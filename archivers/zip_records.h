// The records of an archive besides the files' data: a header before each file, the central directory with a header for
// each file, and the end record; their 64-bit forms are used only where a number requires it.
#pragma once

#include <optional>

#include "archivers/bytes.h"
#include "archivers/file_time.h"
#include "common/text.h"

namespace qvx::archivers {

namespace signature {
constexpr std::uint32_t localHeader = 0x04034B50;
constexpr std::uint32_t centralHeader = 0x02014B50;
constexpr std::uint32_t end = 0x06054B50;
constexpr std::uint32_t end64 = 0x06064B50;
constexpr std::uint32_t end64Locator = 0x07064B50;
constexpr std::uint32_t descriptor = 0x08074B50;
// The first four bytes of an archive on several disks, and of one that was prepared for several but fitted on one.
constexpr std::uint32_t spanned = 0x08074B50;
constexpr std::uint32_t notSpanned = 0x30304B50;
}  // namespace signature

namespace flag {
constexpr std::uint16_t encrypted = 1;
constexpr std::uint16_t descriptor = 8;
constexpr std::uint16_t patched = 32;
constexpr std::uint16_t strongEncryption = 64;
constexpr std::uint16_t utf8 = 2048;
constexpr std::uint16_t maskedHeader = 8192;
// Flags of data that cannot be read by its method alone.
constexpr std::uint16_t unreadable = encrypted | patched | strongEncryption | maskedHeader;
}  // namespace flag

namespace method {
constexpr std::uint16_t stored = 0;
constexpr std::uint16_t deflated = 8;
}  // namespace method

constexpr std::uint64_t limit32 = 0xFFFFFFFF;
constexpr std::uint64_t limit16 = 0xFFFF;

struct Entry {
    Text name;  // with / between folders, and at the end of a folder's own entry
    std::uint16_t flags = 0;
    std::uint16_t method = method::deflated;
    std::uint32_t crc = 0;
    std::uint64_t size = 0;
    std::uint64_t packedSize = 0;
    std::uint32_t disk = 0;
    std::uint64_t offset = 0;  // of the local header on that disk
    std::uint32_t dosTime = 0;
    std::optional<FileTime> modified;  // more precise than dosTime, where the archive has it
    std::uint8_t system = 0;           // the system of the attributes: 0 for DOS, 3 for Unix
    std::uint32_t attributes = 0;
    Bytes rawName;  // as read
};

// Whether the header before a file of that size needs the 64-bit form, with a margin for data that does not shrink.
bool NeedsLocal64(std::uint64_t size);

// `known`: the entry's sizes and checksum are already known; otherwise, a descriptor follows the data.
Bytes LocalHeader(const Entry& entry, bool wide, bool known);
// Returns the record that follows the data in that case.
Bytes Descriptor(const Entry& entry, bool wide);
Bytes CentralHeader(const Entry& entry);

struct EndRecord {
    std::uint32_t disk = 0;         // this disk's number, from 0
    std::uint32_t centralDisk = 0;  // the disk on which the central directory begins
    std::uint64_t entriesHere = 0;  // on this disk
    std::uint64_t entries = 0;
    std::uint64_t centralSize = 0;
    std::uint64_t centralOffset = 0;
};

// The position of the 64-bit form of the end record.
struct End64Place {
    std::uint32_t disk = 0;
    std::uint64_t offset = 0;
};

bool NeedsEnd64(const EndRecord& end);
Bytes End64(const EndRecord& end);
// Returns the short record; if the place of the 64-bit form is given, its locator precedes it.
Bytes End(const EndRecord& end, const std::optional<End64Place>& wide);

// The functions below throw ExitCode::damaged for bytes that are not the expected record.

constexpr std::size_t localHeaderSize = 30;
constexpr std::size_t centralHeaderSize = 46;
constexpr std::size_t endSize = 22;
constexpr std::size_t end64Size = 56;
constexpr std::size_t end64LocatorSize = 20;

struct LocalFacts {
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::size_t nameSize = 0;
    std::size_t extraSize = 0;
};
LocalFacts ReadLocalHeader(ByteView fixedPart);

// Removes one header from the front.
Entry ReadCentralHeader(ByteReader& reader);

EndRecord ReadEnd(ByteView record);
EndRecord ReadEnd64(ByteView record);
// Returns nullopt when the bytes are not a locator.
std::optional<End64Place> ReadEnd64Locator(ByteView record);

}  // namespace qvx::archivers
