// Conversion of times between the formats of the system, of an archive and of its extra fields.
#pragma once

#include <cstdint>

namespace qvx::archivers {

// Units of 100 ns since 1 January 1601 UTC: the system's own format.
using FileTime = std::int64_t;

constexpr FileTime ticksPerSecond = 10'000'000;

// A date and time in some time zone; month and day count from 1.
struct CivilTime {
    int year = 1980;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool operator==(const CivilTime&) const = default;
};

// Returns the seconds since 1970, rounded down.
std::int64_t UnixTime(FileTime time);
FileTime FromUnixTime(std::int64_t seconds);

// Returns the date in the upper and the time in the lower 16 bits. Odd seconds are rounded down, so that no file is
// from the future; times before 1980 or after 2107 become the nearest one that can be represented.
std::uint32_t DosTime(const CivilTime& local);

// Fields out of their range (a month 0, a second 62) become the nearest valid values.
CivilTime FromDosTime(std::uint32_t dos);

// Converts to UTC, for callers without a time zone.
CivilTime UtcTime(FileTime time);
FileTime FromUtcTime(const CivilTime& utc);

}  // namespace qvx::archivers
