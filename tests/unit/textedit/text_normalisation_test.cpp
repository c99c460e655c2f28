#include "controls/textedit/text_normalisation.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/error_of.h"
#include "tests/support/portable/failing_allocation.h"

namespace qvx::textedit {
namespace {

TEST(TextNormalisation, Texts) {
    using namespace data_type;
    struct {
        std::int32_t type;
        std::int16_t places;
        TextView text;
        TextView expected;
    } const cases[] = {
        {none, 2, u"  as it is ", u"  as it is "},
        {digits, 2, u"TextEdit1", u"0"},
        {digits, 2, u"7.25", u"7.25"},
        {digits, 2, u"012345678901234", u"12345678901234"},
        {digits, 2, u"123456789012345", u"123456789012345"},
        {digits, 2, u"1234567890123456", u"1.23456789012346E+15"},
        {digits, 2, u"1 250 kg", u"1250"},
        {numerics, 2, u"TextEdit1", u"0.00"},
        {numerics, 2, u"", u"0.00"},
        {numerics, 2, u"1,234.5", u"1.00"},
        {numerics, 2, u"12.3456", u"12.35"},
        {numerics, 2, u"-.005", u"-0.01"},
        {numerics, 2, u"1e5", u"100000.00"},
        {numerics, 0, u"-2.5", u"-3"},
        {numerics, 1, u"1e999", u"1.0"},
        {7, 2, u"12.3456", u"12.3456"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NormalisedText(c.text, c.type, c.places), c.expected);
        EXPECT_EQ(NormalisedInPlace(c.text, c.type, c.places), c.expected);
    }
}

TEST(TextNormalisation, NegativePlacesFailWhereThePatternIsBuilt) {
    struct {
        std::int32_t type;
        bool setFails;
        bool inPlaceFails;
    } const cases[] = {{data_type::none, false, false},
                       {data_type::digits, false, true},
                       {data_type::numerics, true, true},
                       {7, false, true}};
    for (const auto& c : cases) {
        constexpr int fails = errors::invalidProcedureCall;
        EXPECT_EQ(test::ErrorOf([&] { NormalisedText(u"5", c.type, -1); }), c.setFails ? fails : 0) << c.type;
        EXPECT_EQ(test::ErrorOf([&] { NormalisedInPlace(u"5", c.type, -1); }), c.inPlaceFails ? fails : 0) << c.type;
    }
}

TEST(TextNormalisation, ExtremeLengths) {
    const Text most = NormalisedText(u"1.5", data_type::numerics, 32767);
    EXPECT_EQ(most.size(), 2u + 32767u);
    EXPECT_EQ(most.substr(0, 4), u"1.50");
    EXPECT_EQ(NormalisedText(Text(1'000'000, u'0') + u"7", data_type::digits, 0), u"7");
}

TEST(TextNormalisation, NeedsNoMemoryButItsOwn) {
    for (const std::int32_t type : {data_type::none, data_type::digits, data_type::numerics}) {
        test::ExpectAllOrNothing(std::to_string(type), [&] { return NormalisedText(u" 1234567.254", type, 20); });
    }
}

}  // namespace
}  // namespace qvx::textedit
