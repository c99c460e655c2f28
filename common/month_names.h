// English names of months and weekdays; their short forms are the first three letters.
#pragma once

#include <array>

#include "common/text.h"

namespace qvx {

inline constexpr std::array<TextView, 12> monthNames = {u"January",   u"February", u"March",    u"April",
                                                        u"May",       u"June",     u"July",     u"August",
                                                        u"September", u"October",  u"November", u"December"};
inline constexpr std::array<TextView, 7> weekdayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                         u"Thursday", u"Friday", u"Saturday"};

constexpr TextView ShortName(TextView name) { return name.substr(0, 3); }

}  // namespace qvx
