#include "widgets/button/accessible_button.h"

#include <gtest/gtest.h>

namespace qvx::buttons {
namespace {

TEST(AccessibleButton, NameAndShortcutComeFromTheCaption) {
    struct Case {
        const char16_t* caption;
        const char16_t* name;
        const char16_t* key;
    };
    const Case cases[] = {
        {u"&Save", u"Save", u"S"},
        {u"Sa&ve && quit", u"Save & quit", u"v"},
        {u"OK", u"OK", u"O"},
        {u"", u"", u""},
        {u"Trailing&", u"Trailing", u""},
        {u"&&", u"&", u"&"},
        {u"&Änd", u"Änd", u"Ä"},
        {u"A && &B", u"A & B", u"&"},
        {u" leading", u" leading", u" "},
    };
    for (const Case& c : cases) {
        PushLook look;
        look.caption = c.caption;
        EXPECT_EQ(c.name, AccessibleName(look));
        EXPECT_EQ(*c.key ? u"Alt+" + Text(c.key) : Text(), AccessibleShortcut(look).value_or(u""));
        EXPECT_EQ(AccessKey(c.caption), *c.key);
    }
    EXPECT_TRUE(IsAccessKey(u"&Save", u's'));
    EXPECT_TRUE(IsAccessKey(u"&\u00C4nd", u'\u00E4'));
    EXPECT_FALSE(IsAccessKey(u"&Save", u'a'));
    EXPECT_FALSE(IsAccessKey(u"", u'\0'));
}

TEST(AccessibleButton, ADisabledButtonCanDoNothing) {
    namespace state = accessible_state;
    EXPECT_EQ(state::focusable, AccessibleState(true, false, false));
    EXPECT_EQ(state::focusable | state::focused | state::hasPopup, AccessibleState(true, true, true));
    EXPECT_EQ(state::unavailable, AccessibleState(false, true, true));
}

}  // namespace
}  // namespace qvx::buttons
