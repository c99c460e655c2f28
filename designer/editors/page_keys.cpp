#include "designer/editors/page_keys.h"

#include "common/keys.h"

namespace qvx::host::designer {

std::optional<std::size_t> PageAfterKey(int key, int shift, std::size_t current, std::size_t count) {
    const bool leads = key == keys::tab || key == keys::pageDown || key == keys::pageUp;
    if (!leads || !(shift & keys::controlMask)) return std::nullopt;
    const bool back = key == keys::pageUp || (key == keys::tab && (shift & keys::shiftMask));
    return (current + (back ? count - 1 : 1)) % count;
}

}  // namespace qvx::host::designer
