// The keys that lead from one property page to the next.
#pragma once

#include <cstddef>
#include <optional>

namespace qvx::host::designer {

// The page to show after `current` of `count`: Ctrl with Tab or Page Down leads on, with Shift+Tab or Page Up back, and
// round the end. Nothing for another key.
std::optional<std::size_t> PageAfterKey(int key, int shift, std::size_t current, std::size_t count);

}  // namespace qvx::host::designer
