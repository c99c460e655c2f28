#include "widgets/combo/completion.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvx {
namespace {

class CompletionTest : public ::testing::Test {
  protected:
    Completion Complete(TextView text, int caret, bool deleting = false) const {
        return CompleteTyping(static_cast<int>(entries.size()), entry, text, caret, deleting);
    }
    const std::vector<Text> entries = {u"Pencil", u"Pen", u"Ink", u"ink blue"};
    const EntryReader entry = [this](int index) { return entries.at(static_cast<std::size_t>(index)); };
};

TEST_F(CompletionTest, TypingTakesTheFirstEntryThatBeginsSo) {
    EXPECT_EQ(Complete(u"p", 1), (Completion{0, u"Pencil", 1, 5}));
    EXPECT_EQ(Complete(u"PEN", 3), (Completion{0, u"Pencil", 3, 3}));
    EXPECT_EQ(Complete(u"ink b", 5), (Completion{3, u"ink blue", 5, 3}));
    EXPECT_EQ(Complete(u"ink", 3), (Completion{2, u"Ink", 3, 0}));
}

TEST_F(CompletionTest, NothingIsAddedWithoutAMatchOrInsideTheTextOrWhileDeleting) {
    EXPECT_EQ(Complete(u"x", 1), (Completion{-1, u"x", 1, 0}));
    EXPECT_EQ(Complete(u"", 0), (Completion{-1, u"", 0, 0}));
    EXPECT_EQ(Complete(u"pe", 1), (Completion{-1, u"pe", 1, 0}));
    EXPECT_EQ(Complete(u"pe", 2, true), (Completion{-1, u"pe", 2, 0}));
    // A whole entry is chosen all the same.
    EXPECT_EQ(Complete(u"pen", 3, true), (Completion{1, u"pen", 3, 0}));
    EXPECT_EQ(Complete(u"pencil", 3), (Completion{0, u"pencil", 3, 0}));
    EXPECT_EQ(Complete(u"INK", 1), (Completion{2, u"INK", 1, 0}));
}

TEST(CompletionOfEveryScript, HalfACharacterChoosesNothing) {
    const std::vector<Text> entries = {u"\U0001F600 smile", u"\U0001F601 grin", u"\U00010400x", u"e\u0301t\u00E9"};
    const EntryReader entry = [&](int index) { return entries.at(static_cast<std::size_t>(index)); };
    const auto complete = [&](TextView text) {
        return CompleteTyping(4, entry, text, static_cast<int>(text.size()), false);
    };
    EXPECT_EQ(complete(u"\xD83D"), (Completion{-1, u"\xD83D", 1, 0})) << "the other half is on its way";
    EXPECT_EQ(complete(u"\U0001F601"), (Completion{1, u"\U0001F601 grin", 2, 5}));
    EXPECT_EQ(complete(u"\U00010428"), (Completion{2, u"\U00010400x", 2, 1})) << "Deseret has two cases";
    EXPECT_EQ(complete(u"e\u0301"), (Completion{3, u"e\u0301t\u00E9", 2, 2}));
}

TEST_F(CompletionTest, ExactEntryIsFoundBehindALongerOne) {
    EXPECT_EQ(FindExactly(4, entry, u"pen"), 1);
    EXPECT_EQ(FindBeginningWith(4, entry, u"pen"), 0);
    EXPECT_EQ(FindExactly(4, entry, u"pens"), -1);
    EXPECT_EQ(FindBeginningWith(4, entry, u""), -1);
    EXPECT_EQ(FindBeginningWith(4, entry, u"x"), -1);
}

}  // namespace
}  // namespace qvx
