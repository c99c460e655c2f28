// Moments as the system, an archive and its extra fields write them down.
#pragma once

#include <cstdint>

namespace qvx::archivers {

// Units of 100 ns since the first of January 1601, UTC: the system's own measure.
using FileTime = std::int64_t;

constexpr FileTime ticksPerSecond = 10'000'000;

// A day and a time of some time zone; month and day count from 1.
struct CivilTime {
    int year = 1980;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool operator==(const CivilTime&) const = default;
};

// Seconds since 1970, rounded down.
std::int64_t UnixTime(FileTime time);
FileTime FromUnixTime(std::int64_t seconds);

// The date in the upper and the time in the lower 16 bits. Odd seconds are rounded down, so that no file comes from the
// future; what lies before 1980 or after 2107 becomes the nearest moment that can be written.
std::uint32_t DosTime(const CivilTime& local);

// Fields out of their range (a month 0, a second 62) become the nearest ones that are within.
CivilTime FromDosTime(std::uint32_t dos);

// The calendar's own reckoning, for whoever has no time zone.
CivilTime UtcTime(FileTime time);
FileTime FromUtcTime(const CivilTime& utc);

}  // namespace qvx::archivers
