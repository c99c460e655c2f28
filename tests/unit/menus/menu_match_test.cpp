// Which menu object an item belongs to, and what pictures are kept under.
#include "controls/menus/menu_match.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <span>

namespace qvx::menus {
namespace {

TEST(MenuKeys, AreNamesAndNumbers) {
    EXPECT_EQ(PictureKey(u"mnuOpen", std::nullopt), u"mnuOpen");
    EXPECT_EQ(PictureKey(u"mnuRecent", 0), u"mnuRecent(0)");
    EXPECT_EQ(PictureKey(u"mnuRecent", 12), u"mnuRecent(12)");
    EXPECT_EQ(NumberKey(1), u"1_");
    EXPECT_EQ(NumberKey(120), u"120_");
}

// Captions of objects, "!" in front of an invisible one, and of entries; both separated by blanks.
struct Case {
    const char* what;
    std::u16string objects;
    std::u16string entries;
    std::vector<int> expected;
};

std::vector<Text> Words(const std::u16string& text) {
    std::vector<Text> words;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = std::min(text.find(u' ', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

std::vector<int> Matched(const std::u16string& objects, const std::u16string& entries) {
    std::vector<MenuObject> all;
    for (Text& word : Words(objects)) {
        const bool visible = word.front() != u'!';
        all.push_back({visible ? word : word.substr(1), visible});
    }
    std::vector<MenuEntry> items;
    for (Text& word : Words(entries)) {
        const bool line = word == u"-";
        items.push_back({line ? Text() : word, line});
    }
    return MatchMenus(all, items);
}

TEST(MatchMenus, FindsTheObjectOfEachEntry) {
    const Case cases[] = {
        {"nothing", u"", u"", {}},
        {"no objects", u"", u"File Open", {0, 0}},
        {"no entries", u"File Open", u"", {}},
        {"all in their places", u"File Open - Exit Help", u"File Open - Exit Help", {1, 2, 3, 4, 5}},
        {"keys behind a tab do not count", u"File &Open", u"File &Open\tCtrl+O", {1, 2}},
        {"a dividing line is none of the captions", u"File -", u"File -x", {1, 0}},
        {"an invisible object", u"File !Open Exit", u"File Exit", {1, 3}},
        {"an invisible object does not take another's entry", u"File !Exit Exit", u"File Exit", {1, 3}},
        {"what is in an invisible menu", u"File Open !Edit Copy Paste Help", u"File Open Help", {1, 2, 6}},
        {"the program's own entries", u"File Open Help", u"File Open a.txt b.txt Help", {1, 2, 0, 0, 3}},
        {"both", u"File Open !Edit Copy Help", u"File Open Recent Help", {1, 2, 0, 5}},
        {"equal captions in the order they come", u"File Close Edit Close", u"File Close Edit Close", {1, 2, 3, 4}},
        {"of equal ones the first", u"Copy Copy", u"Copy", {1}},
        {"captions that changed", u"File Open Exit", u"File Load Exit", {1, 0, 3}},
        {"all different", u"a b c", u"x y", {0, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Matched(c.objects, c.entries), c.expected);
    }
}

// How many entries can have an object of their caption when neither side changes its order.
std::size_t MostMatches(std::span<const Text> objects, std::span<const Text> entries) {
    if (objects.empty() || entries.empty()) return 0;
    const std::size_t without = MostMatches(objects.subspan(1), entries);
    const auto at = std::find(entries.begin(), entries.end(), objects.front());
    if (at == entries.end()) return without;
    return std::max(without, 1 + MostMatches(objects.subspan(1), {at + 1, entries.end()}));
}

TEST(MatchMenus, FindsAsManyAsCanBeFound) {
    std::mt19937 random(1);
    const auto letters = [&] {
        std::u16string text;
        for (auto count = random() % 8; count > 0; --count) text += {static_cast<char16_t>(u'a' + random() % 4), u' '};
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        const std::u16string objects = letters();
        const std::u16string entries = letters();
        const std::vector<Text> captions = Words(objects);
        const std::vector<Text> texts = Words(entries);
        std::size_t found = 0;
        int last = 0;
        const std::vector<int> numbers = Matched(objects, entries);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (numbers[i] == 0) continue;
            ++found;
            EXPECT_GT(numbers[i], last);
            last = numbers[i];
            EXPECT_EQ(captions.at(static_cast<std::size_t>(last) - 1), texts[i]);
        }
        EXPECT_EQ(found, MostMatches(captions, texts));
    }
}

// Beyond the size of an exact search the next object that fits is taken; the ends are found all the same.
TEST(MatchMenus, EndlessMenusAreMatchedToo) {
    constexpr int count = 5000;
    std::vector<MenuObject> objects(count, {u"a", true});
    std::vector<MenuEntry> entries(count, {u"a", false});
    objects.front().caption = u"x";
    entries.back().text = u"y";
    const auto numbers = MatchMenus(objects, entries);
    EXPECT_EQ(numbers.front(), 2);
    EXPECT_EQ(numbers[count - 2], count);
    EXPECT_EQ(numbers.back(), 0);
}

}  // namespace
}  // namespace qvx::menus
