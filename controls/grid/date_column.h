// Dates as DateFormat writes them, whatever the system's own order.
#pragma once

#include <cstdint>
#include <optional>

#include "common/dates.h"
#include "common/text.h"

namespace qvx::grid {

class DateColumn {
  public:
    DateColumn(TextView format, const DateSettings& settings);
    std::optional<Date> Read(TextView text) const;
    // Returns a number that grows with the date and its time.
    static std::uint64_t RankOf(const Date& date) {
        const int day = (date.year * 12 + date.month - 1) * 31 + date.day;
        return static_cast<std::uint64_t>(day) * 86'400 + static_cast<std::uint64_t>(date.secondOfDay);
    }

  private:
    DateSettings settings_;
    bool dayless_ = false;
};

}  // namespace qvx::grid
