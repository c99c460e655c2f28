// Who makes this library, as the About box tells it. All of it is invented.
#pragma once

#include "common/text.h"

namespace qvx::vendor {

constexpr TextView company = u"ORVANE";
constexpr TextView location = u"7 Harbour Row, Larkhaven";
// What the About box shows, and where its link leads: mail is sorted by product behind the address that people know.
constexpr TextView supportAddress = u"support@orvane.example";
constexpr TextView supportLinkAddress = u"qvx-support@orvane.example";

}  // namespace qvx::vendor
