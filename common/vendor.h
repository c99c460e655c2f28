// The vendor's details for the About box. All of them are fictitious.
#pragma once

#include "common/text.h"

namespace qvx::vendor {

constexpr TextView company = u"ORVANE";
constexpr TextView location = u"7 Harbour Row, Larkhaven";
// The address that the About box shows, and the one that its link opens: the vendor sorts mail by a separate address
// per product.
constexpr TextView supportAddress = u"support@orvane.example";
constexpr TextView supportLinkAddress = u"qvx-support@orvane.example";

}  // namespace qvx::vendor
