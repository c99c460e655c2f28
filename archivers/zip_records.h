// The records that an archive consists of besides the files' data: a header before each file, the central directory
// with a header for each, and the end record; in their 64-bit form only where a number needs it.
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
// The first four bytes of an archive on several disks, and of one that was meant to be but fitted on one.
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
// What says that the data is not what the method alone would read.
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
    std::optional<FileTime> modified;  // more exact than dosTime, where the archive says so
    std::uint8_t system = 0;           // who wrote the attributes: 0 as DOS does, 3 as Unix
    std::uint32_t attributes = 0;
    Bytes rawName;  // as read
};

// Whether the header before a file of that size needs the 64-bit form, with a margin for data that does not shrink.
bool NeedsLocal64(std::uint64_t size);

// `known` says whether the entry's sizes and sum are known already; without them a descriptor follows the data.
Bytes LocalHeader(const Entry& entry, bool wide, bool known);
// What follows the data then.
Bytes Descriptor(const Entry& entry, bool wide);
Bytes CentralHeader(const Entry& entry);

struct EndRecord {
    std::uint32_t disk = 0;         // this disk's number, from 0
    std::uint32_t centralDisk = 0;  // where the central directory begins
    std::uint64_t entriesHere = 0;  // on this disk
    std::uint64_t entries = 0;
    std::uint64_t centralSize = 0;
    std::uint64_t centralOffset = 0;
};

// Of the end record in its 64-bit form: where it begins itself.
struct End64Place {
    std::uint32_t disk = 0;
    std::uint64_t offset = 0;
};

bool NeedsEnd64(const EndRecord& end);
Bytes End64(const EndRecord& end);
// The short record; with the place of the 64-bit form, the locator before it.
Bytes End(const EndRecord& end, const std::optional<End64Place>& wide);

// The readers below throw ExitCode::damaged for what is not the record it should be.

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

// Takes one header off the front.
Entry ReadCentralHeader(ByteReader& reader);

EndRecord ReadEnd(ByteView record);
EndRecord ReadEnd64(ByteView record);
// nullopt where the bytes are no locator.
std::optional<End64Place> ReadEnd64Locator(ByteView record);

}  // namespace qvx::archivers
