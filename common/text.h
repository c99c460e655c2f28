// The only text type of the rules: UTF-16, like the system's own strings.
#pragma once

#include <string>
#include <string_view>

namespace qvx {

using Text = std::u16string;
using TextView = std::u16string_view;

}  // namespace qvx
