#include "archivers/file_time.h"

#include <algorithm>
#include <chrono>

namespace qvx::archivers {

namespace {

constexpr std::int64_t secondsTo1970 = 11'644'473'600;
constexpr std::int64_t secondsPerDay = 86'400;

constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t by) {
    return value / by - (value % by < 0 ? 1 : 0);
}

int DaysOf(int year, int month) {
    using namespace std::chrono;
    const year_month_day_last last{std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) /
                                   std::chrono::last};
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

}  // namespace

std::int64_t UnixTime(FileTime time) { return FloorDivide(time, ticksPerSecond) - secondsTo1970; }

FileTime FromUnixTime(std::int64_t seconds) { return (seconds + secondsTo1970) * ticksPerSecond; }

std::uint32_t DosTime(const CivilTime& local) {
    if (local.year < 1980) return DosTime(CivilTime{});
    if (local.year > 2107) return DosTime(CivilTime{2107, 12, 31, 23, 59, 58});
    const int date = (local.year - 1980) << 9 | local.month << 5 | local.day;
    const int time = local.hour << 11 | local.minute << 5 | local.second / 2;
    return static_cast<std::uint32_t>(date) << 16 | static_cast<std::uint32_t>(time);
}

CivilTime FromDosTime(std::uint32_t dos) {
    const auto field = [dos](int shift, std::uint32_t mask) { return static_cast<int>(dos >> shift & mask); };
    CivilTime civil;
    civil.year = 1980 + field(25, 0x7F);
    civil.month = std::clamp(field(21, 0xF), 1, 12);
    civil.day = std::clamp(field(16, 0x1F), 1, DaysOf(civil.year, civil.month));
    civil.hour = std::min(field(11, 0x1F), 23);
    civil.minute = std::min(field(5, 0x3F), 59);
    civil.second = std::min(field(0, 0x1F) * 2, 59);
    return civil;
}

CivilTime UtcTime(FileTime time) {
    using namespace std::chrono;
    const std::int64_t seconds = UnixTime(time);
    const std::int64_t days = FloorDivide(seconds, secondsPerDay);
    const auto rest = static_cast<int>(seconds - days * secondsPerDay);
    const year_month_day date{sys_days(std::chrono::days(days))};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            rest / 3600,
            rest / 60 % 60,
            rest % 60};
}

FileTime FromUtcTime(const CivilTime& utc) {
    using namespace std::chrono;
    const sys_days day =
        year(utc.year) / month(static_cast<unsigned>(utc.month)) / std::chrono::day(static_cast<unsigned>(utc.day));
    return FromUnixTime(day.time_since_epoch().count() * secondsPerDay + utc.hour * 3600 + utc.minute * 60 +
                        utc.second);
}

}  // namespace qvx::archivers
