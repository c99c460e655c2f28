// What keys do to a validated text box, key by key.
#include "controls/textedit/key_filter.h"

#include <gtest/gtest.h>

#include "common/keys.h"

namespace qvx::textedit {
namespace {

// A box that takes keys as the system's edit control does: the key goes down, then its character comes.
class Typist {
  public:
    Typist(const KeyRules& rules, TextEntry entry) : rules_(rules), entry_(std::move(entry)) {}

    const TextEntry& Entry() const { return entry_; }
    int Beeps() const { return beeps_; }

    void Type(char16_t character) {
        entry_ = PrepareForCharacter(rules_, entry_, character);
        const KeyAnswer answer = Take(FilterCharacter(rules_, entry_, character));
        if (answer.key >= keys::space && !entry_.locked) Insert(static_cast<char16_t>(answer.key));
    }
    void Backspace() {
        Take(FilterKeyDown(rules_, entry_, keys::backspace));
        // The character comes whatever became of the key.
        const KeyAnswer answer = Take(FilterCharacter(rules_, entry_, keys::backspace));
        if (answer.key == 0 || entry_.locked) return;
        if (entry_.selLength == 0 && entry_.selStart > 0) {
            --entry_.selStart;
            entry_.selLength = 1;
        }
        DeleteSelection();
    }
    void Delete() {
        const KeyAnswer answer = Take(FilterKeyDown(rules_, entry_, keys::deleteKey));
        if (answer.key == 0 || entry_.locked) return;
        if (entry_.selLength == 0 && entry_.selStart < entry_.text.size()) entry_.selLength = 1;
        DeleteSelection();
    }

  private:
    KeyAnswer Take(KeyAnswer answer) {
        entry_.tag = answer.tag;
        beeps_ += answer.beep ? 1 : 0;
        return answer;
    }
    void DeleteSelection() {
        entry_.text.erase(entry_.selStart, entry_.selLength);
        entry_.selLength = 0;
    }
    void Insert(char16_t character) {
        DeleteSelection();
        entry_.text.insert(entry_.selStart++, 1, character);
    }

    KeyRules rules_;
    TextEntry entry_;
    int beeps_ = 0;
};

constexpr KeyRules digits{data_type::digits};
constexpr KeyRules numerics{data_type::numerics};
constexpr KeyRules percent{data_type::numerics, true, 0, 100};
constexpr KeyRules fromTen{data_type::numerics, true, 10, 50};
constexpr KeyRules upsideDown{data_type::numerics, true, 5, 1};

TextEntry Box(TextView text, std::size_t start, std::size_t length = 0) {
    return {Text(text), start, length, false, {}};
}
TextEntry Locked(TextView text) { return {Text(text), 0, text.size(), true, u"before"}; }

TEST(KeyFilter, Sequences) {
    // "<" is Backspace, ">" is Delete.
    struct {
        const char* name;
        KeyRules rules;
        TextEntry start;
        TextView keys;
        TextView expected;
        int beeps;
    } const cases[] = {
        {"digits only", digits, Box(u"", 0),
         u"a7-.\x1B"
         u"8\xE9",
         u"78", 5},
        {"every digit and none of its neighbours", digits, Box(u"", 0), u"/0123456789:", u"0123456789", 2},
        {"a digits box may lose its digits", digits, Box(u"12", 2), u"<<<", u"", 0},
        {"bounds hold for digits too", {data_type::digits, true, 0, 9}, Box(u"", 0), u"123", u"1", 2},
        {"deleting is free in a digits box", {data_type::digits, true, 10, 99}, Box(u"10", 2), u"<", u"1", 0},
        {"a comma goes without a sound", numerics, Box(u"", 0), u"1,2", u"12", 0},
        {"a minus begins a number", numerics, Box(u"", 0), u"-5", u"-5", 0},
        {"a minus behind a number passes", numerics, Box(u"1", 1), u"-", u"1-", 0},
        {"two do not", numerics, Box(u"", 0), u"--", u"-", 1},
        {"an exponent cannot be begun", numerics, Box(u"", 0), u"1e5", u"15", 1},
        {"its mark is the E, put between digits", numerics, Box(u"15", 1), u"dDe", u"1e5", 2},
        {"but its digits can change", numerics, Box(u"1e5", 3), u"0", u"1e50", 0},
        {"a point into nothing", numerics, Box(u"", 0), u".", u"0.", 1},
        {"a point over everything", numerics, Box(u"12", 0, 2), u".5", u"0.5", 1},
        {"a second point", numerics, Box(u"1.5", 3), u".", u"1.5", 1},
        {"a refused letter still takes the selection", numerics, Box(u"123", 0, 3), u"x", u"", 1},
        {"up to the bound", percent, Box(u"", 0), u"1000", u"100", 1},
        {"below it again", percent, Box(u"100", 3), u"<", u"10", 0},
        {"a minus counts as 0", percent, Box(u"100", 0, 3), u"-", u"-", 0},
        {"but what follows does not", percent, Box(u"", 0), u"-1", u"-", 1},
        {"a lower bound cannot be reached by typing", fromTen, Box(u"", 0), u"5", u"", 1},
        {"Backspace at a bound beeps twice", fromTen, Box(u"50", 2), u"<", u"50", 2},
        {"Delete at a bound beeps once", fromTen, Box(u"50", 0), u">", u"50", 1},
        {"emptying is always allowed", fromTen, Box(u"5", 1), u"<", u"", 0},
        {"one character counts, whatever is selected", fromTen, Box(u"1234", 1, 3), u">", u"1234", 1},
        {"the candidate at the start is the stale one", fromTen, Box(u"50", 0), u">9<", u"50", 4},
        {"nothing fits between bounds upside down", upsideDown, Box(u"", 0), u"3-", u"", 2},
        {"free text", {data_type::none, true, 1, 2}, Box(u"", 0), u"a,9.-\x1B", u"a,9.-", 0},
        {"an unknown type is free text", {7, true, 1, 2}, Box(u"", 0), u"x", u"x", 0},
    };
    for (const auto& c : cases) {
        Typist typist(c.rules, c.start);
        for (const char16_t key : c.keys) {
            if (key == u'<')
                typist.Backspace();
            else if (key == u'>')
                typist.Delete();
            else
                typist.Type(key);
        }
        EXPECT_EQ(typist.Entry().text, c.expected) << c.name;
        EXPECT_EQ(typist.Beeps(), c.beeps) << c.name;
    }
}

TEST(KeyFilter, ALockedBoxIsLeftAlone) {
    Typist typist(fromTen, Locked(u"50"));
    for (const char16_t key : {u'1', u'.', u'x', u','}) typist.Type(key);
    typist.Backspace();
    typist.Delete();
    EXPECT_EQ(typist.Entry(), Locked(u"50"));
    EXPECT_EQ(typist.Beeps(), 0);
}

TEST(KeyFilter, OtherKeysPass) {
    const TextEntry entry = Box(u"50", 2);
    for (const int key : {keys::enter, keys::left, keys::insert, static_cast<int>(u'A')}) {
        EXPECT_EQ(FilterKeyDown(fromTen, entry, key), (KeyAnswer{key, false, u""})) << key;
    }
    // Ctrl+C, Ctrl+V, Enter, Ctrl+Z
    for (const int character : {3, 22, 13, 26}) {
        EXPECT_EQ(FilterCharacter(fromTen, entry, character), (KeyAnswer{character, false, u""})) << character;
        EXPECT_EQ(PrepareForCharacter(fromTen, entry, character), entry) << character;
    }
    EXPECT_EQ(FilterCharacter(fromTen, entry, 27), (KeyAnswer{0, true, u"50\x1B"})) << "the first that is judged";
}

TEST(KeyFilter, KeysThatTheHostGetsFirst) {
    struct {
        int key;
        int shift;
        bool useEnterKey;
        bool kept;
    } const cases[] = {
        {u'X', 0, false, true},
        {u'S', keys::controlMask, false, false},
        {u'V', keys::controlMask, false, true},
        {u'X', keys::controlMask | keys::altMask, false, false},
        {keys::deleteKey, keys::controlMask, false, true},
        {keys::tab, 0, true, false},
        {keys::f24, 0, false, false},
        {keys::f24 + 1, 0, false, true},
        {keys::enter, 0, false, false},
        {keys::enter, 0, true, true},
    };
    for (const auto& c : cases) EXPECT_EQ(KeepsKey(c.key, c.shift, c.useEnterKey), c.kept) << c.key << " " << c.shift;
}

TEST(KeyFilter, EmptyEntries) {
    EXPECT_TRUE(IsEmptyEntry(u""));
    EXPECT_TRUE(IsEmptyEntry(u"   "));
    EXPECT_FALSE(IsEmptyEntry(u" \t "));
    EXPECT_FALSE(IsEmptyEntry(u" 0"));
}

}  // namespace
}  // namespace qvx::textedit
