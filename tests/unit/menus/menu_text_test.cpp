// Labels, shortcuts and access keys of menu items.
#include "controls/menus/menu_text.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvx::menus {
namespace {

TEST(MenuText, IsSplitAtTheFirstTab) {
    struct Case {
        TextView text;
        TextView label;
        TextView keys;
    };
    const Text longer(400, u'x');
    const Case cases[] = {
        {u"", u"", u""},
        {u"&Open...", u"&Open...", u""},
        {u"&Open\tCtrl+O", u"&Open", u"Ctrl+O"},
        {u"a\tb\tc", u"a", u"b\tc"},
        {u"Help\bF1", u"Help", u"F1"},
        {u"\tF5", u"", u"F5"},
        {u"end\t", u"end", u""},
        {longer, longer, u""},
    };
    for (const Case& c : cases) {
        const MenuText split = SplitMenuText(c.text);
        EXPECT_EQ(split.label, c.label);
        EXPECT_EQ(split.keys, c.keys);
    }
}

TEST(MenuText, AccessKeyIsTheLastMarkedCharacter) {
    struct Case {
        TextView text;
        char16_t key;
    };
    const Case cases[] = {
        {u"", 0},           {u"Open", 0},
        {u"&Open", u'o'},   {u"E&xit\tAlt+F4", u'x'},
        {u"Open\t&K", 0},   {u"A && B", 0},
        {u"A && &B", u'b'}, {u"&One &Two", u't'},
        {u"End&", 0},       {u"&\u00C4rger", u'\u00E4'},
        {u"&&&Save", u's'}, {u"&1 first", u'1'},
    };
    for (const Case& c : cases) EXPECT_EQ(MenuAccessKey(c.text), c.key) << std::string(c.text.begin(), c.text.end());
}

TEST(MenuText, TypedCharactersChoose) {
    using Kind = MenuAnswer::Kind;
    const std::vector<MenuChoice> items{{u"&Open", false}, {u"", false},         {u"&Save", false},
                                        {u"Print", false}, {u"Save &as", false}, {u"Preview", false},
                                        {u"&Post", false}, {u"S&end", false},    {u"&Shut", false}};
    struct Case {
        char16_t typed;
        int selected;
        MenuAnswer expected;
    };
    const Case cases[] = {
        {u'o', -1, {Kind::execute, 0}},
        {u'O', -1, {Kind::execute, 0}},
        {u'e', -1, {Kind::execute, 7}},
        // Of two the first, then the one behind the selected one, and round again.
        {u's', -1, {Kind::select, 2}},
        {u's', 2, {Kind::select, 8}},
        {u's', 8, {Kind::select, 2}},
        {u's', 4, {Kind::select, 8}},
        // An access key comes before the beginnings of others.
        {u'p', -1, {Kind::execute, 6}},
        {u'z', -1, {}},
        {u'\0', -1, {}},
    };
    for (const Case& c : cases) {
        auto now = items;
        if (c.selected >= 0) now[static_cast<std::size_t>(c.selected)].selected = true;
        EXPECT_EQ(ChooseByKey(now, c.typed), c.expected) << static_cast<int>(c.typed) << " at " << c.selected;
    }
    const std::vector<MenuChoice> plain{{u"Copy", true}, {u"Paste", false}, {u"Preview", false}};
    EXPECT_EQ(ChooseByKey(plain, u'p'), (MenuAnswer{Kind::select, 1}));
    EXPECT_EQ(ChooseByKey(plain, u'c'), (MenuAnswer{Kind::execute, 0}));
    const std::vector<MenuChoice> onTheFirst{{u"Copy", true}, {u"Cut", false}};
    EXPECT_EQ(ChooseByKey(onTheFirst, u'c'), (MenuAnswer{Kind::select, 1}));
    const std::vector<MenuChoice> disabled{{u"&Copy", false, true}};
    EXPECT_EQ(ChooseByKey(disabled, u'c'), (MenuAnswer{Kind::select, 0}));
}

}  // namespace
}  // namespace qvx::menus
