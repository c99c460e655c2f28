#include "controls/backup/password.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qvx::backup {
namespace {

std::optional<SecretText> Stored(const char16_t* text) {
    return text ? std::optional<SecretText>(SecretText(Text(text))) : std::nullopt;
}

TEST(Password, OnlyTheSameTextIsAccepted) {
    const struct {
        const char16_t* stored;
        const char16_t* typed;
        bool accepted;
    } cases[] = {
        {u"Secret", u"Secret", true},
        {u"Secret", u"secret", false},
        {u"Secret", u"Secret ", false},
        {u"Secret", u"", false},
        {u"", u"", true},
        {u"", u"x", false},
        {u"\u00E9", u"e\u0301", false},  // the same to the eye, not to the bytes
        {u"I", u"\u0131", false},
        {nullptr, u"", true},
        {nullptr, u"anything", true},
    };
    for (const auto& c : cases) EXPECT_EQ(PasswordAccepted(Stored(c.stored), c.typed), c.accepted);
}

TEST(Password, NothingOfItStaysInItsMemory) {
    for (const std::size_t length : {std::size_t{3}, std::size_t{50}}) {
        Text text(length + 20, u'x');
        text.resize(length);  // the characters after the end are still there
        const char16_t* memory = text.data();
        const std::size_t capacity = text.capacity();
        SecretText::Overwrite(text);
        EXPECT_TRUE(text.empty());
        ASSERT_EQ(text.data(), memory);
        EXPECT_TRUE(std::all_of(memory, memory + capacity, [](char16_t c) { return c == u'\0'; }));
    }
    // Short enough to lie in the object itself.
    Text text(u"abc");
    const SecretText moved(std::move(text));
    EXPECT_EQ(moved.View(), u"abc");
    EXPECT_TRUE(std::all_of(text.data(), text.data() + 3, [](char16_t c) { return c == u'\0'; }));
}

}  // namespace
}  // namespace qvx::backup
