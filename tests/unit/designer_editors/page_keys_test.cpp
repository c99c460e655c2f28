#include "designer/editors/page_keys.h"

#include <gtest/gtest.h>

#include "common/keys.h"

namespace qvx::host::designer {
namespace {

TEST(PageKeys, CtrlLeadsRoundThePages) {
    constexpr int none = -1;
    const struct {
        int key, shift, current, next;
    } cases[] = {
        {keys::tab, keys::controlMask, 0, 1},
        {keys::tab, keys::controlMask, 2, 0},
        {keys::tab, keys::controlMask | keys::shiftMask, 0, 2},
        {keys::pageDown, keys::controlMask, 1, 2},
        {keys::pageDown, keys::controlMask | keys::shiftMask, 1, 2},
        {keys::pageUp, keys::controlMask, 1, 0},
        {keys::tab, keys::shiftMask, 1, none},
        {keys::pageUp, 0, 1, none},
        {keys::down, keys::controlMask, 1, none},
    };
    for (const auto& c : cases) {
        const auto next = PageAfterKey(c.key, c.shift, static_cast<std::size_t>(c.current), 3);
        EXPECT_EQ(next ? static_cast<int>(*next) : none, c.next) << c.key << " " << c.shift;
    }
}

}  // namespace
}  // namespace qvx::host::designer
