#include "widgets/button/accessible_button.h"

#include <gtest/gtest.h>

namespace qvx::buttons {
namespace {

TEST(AccessibleButton, NameAndShortcutComeFromTheCaption) {
    struct Case {
        const char16_t* caption;
        const char16_t* name;
        const char16_t* shortcut;
    };
    const Case cases[] = {
        {u"Sa&ve all", u"Save all", u"Alt+v"},
        {u"R&&D", u"R&D", u"Alt+&"},
        {u"", u"", u""},
    };
    for (const Case& c : cases) {
        PushLook look;
        look.caption = c.caption;
        EXPECT_EQ(c.name, AccessibleName(look));
        EXPECT_EQ(c.shortcut, AccessibleShortcut(look).value_or(u""));
    }
}

TEST(AccessibleButton, ADisabledButtonCanDoNothing) {
    namespace state = accessible_state;
    EXPECT_EQ(state::focusable, AccessibleState(true, false, false));
    EXPECT_EQ(state::focusable | state::focused | state::hasPopup, AccessibleState(true, true, true));
    EXPECT_EQ(state::unavailable, AccessibleState(false, true, true));
}

}  // namespace
}  // namespace qvx::buttons
