// Values as text and back, choices, and the headings of properties.
#include "designer/properties/property_row.h"

#include <gtest/gtest.h>

#include "designer/properties/host_members.h"
#include "tests/support/error_of.h"

namespace qvx::host::designer {
namespace {

using Whole = std::int32_t;

PropertyInfo Info(PropertyKind kind, std::vector<PropertyChoice> choices = {}) {
    PropertyInfo info;
    info.name = u"Any";
    info.kind = kind;
    info.choices = std::move(choices);
    return info;
}

const std::vector<PropertyChoice> borders = {
    {u"bNone", Whole{0}}, {u"bSingle", Whole{1}}, {u"bSingleHeavy", Whole{2}}, {u"bOther", Whole{-5}}};

int ErrorOf(const PropertyInfo& info, TextView typed, const PropertyValue& current) {
    return test::ErrorOf([&] { ParseTyped(info, typed, current); });
}

TEST(PropertyRow, TypedTextBecomesAValue) {
    const PropertyValue none;
    struct Case {
        PropertyInfo info;
        TextView typed;
        PropertyValue current;
        PropertyValue expected;
    };
    const PropertyInfo fields = Info(PropertyKind::text, {{u"First", u"fld_1"}, {u"Second", u"fld_2"}});
    const Case cases[] = {
        {Info(PropertyKind::text), u" as it is ", none, Text(u" as it is ")},
        {Info(PropertyKind::text), u"C:\\new", Text(u"C:\\old"), Text(u"C:\\new")},
        {Info(PropertyKind::text), u"a\\r\\nb\\\\c", Text(u"x\ny"), Text(u"a\r\nb\\c")},
        {fields, u"second", none, Text(u"fld_2")},
        {Info(PropertyKind::boolean), u"true", false, true},
        {Info(PropertyKind::boolean), u"F", true, false},
        {Info(PropertyKind::boolean), u"-1", false, true},
        {Info(PropertyKind::boolean), u"0", true, false},
        {Info(PropertyKind::boolean), u"Yes", false, true},
        {Info(PropertyKind::boolean), u"off", true, false},
        {Info(PropertyKind::integer), u" 120 ", none, Whole{120}},
        {Info(PropertyKind::integer), u"-7", none, Whole{-7}},
        {Info(PropertyKind::integer), u"2.5", none, Whole{2}},
        {Info(PropertyKind::integer), u"&HFF&", none, Whole{255}},
        {Info(PropertyKind::real), u"8.25", none, 8.25},
        {Info(PropertyKind::enumeration, borders), u"1", none, Whole{1}},
        {Info(PropertyKind::enumeration, borders), u"bsingle", none, Whole{1}},
        {Info(PropertyKind::enumeration, borders), u"2 - anything", none, Whole{2}},
        {Info(PropertyKind::enumeration, borders), u"bN", none, Whole{0}},
        {Info(PropertyKind::enumeration, borders), u"-5", none, Whole{-5}},
        {Info(PropertyKind::enumeration, borders), u"77", Whole{77}, Whole{77}},  // left as it was
        {Info(PropertyKind::color), u"&H8000000F&", none, static_cast<Whole>(0x8000000F)},
        {Info(PropertyKind::color), u"Button Face", none, static_cast<Whole>(0x8000000F)},
        {Info(PropertyKind::color), u"buttonface", none, static_cast<Whole>(0x8000000F)},
        {Info(PropertyKind::color), u"2147483663", none, static_cast<Whole>(0x8000000F)},
        {Info(PropertyKind::color), u"#FF8000", none, Whole{0x0080FF}},
        {Info(PropertyKind::variant), u"12", Whole{3}, Whole{12}},
        {Info(PropertyKind::variant), u"twelve", Whole{3}, Text(u"twelve")},
        {Info(PropertyKind::variant), u"12", Text(u"x"), Text(u"12")},
        {Info(PropertyKind::variant), u"False", true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "kind " << static_cast<int>(c.info.kind) << ": "
                                          << std::string(c.typed.begin(), c.typed.end()));
        EXPECT_EQ(ErrorOf(c.info, c.typed, c.current), 0);
        EXPECT_TRUE(ParseTyped(c.info, c.typed, c.current) == c.expected);
    }
    PropertyInfo index = Info(PropertyKind::integer);
    index.optional = true;
    EXPECT_TRUE(ParseTyped(index, u" ", Whole{3}) == PropertyValue());
}

TEST(PropertyRow, WhatCannotBeIsRefused) {
    struct Case {
        PropertyInfo info;
        TextView typed;
        int error;
    };
    const Case cases[] = {
        {Info(PropertyKind::integer), u"12x", errors::typeMismatch},
        {Info(PropertyKind::integer), u"\"12\"", errors::typeMismatch},
        {Info(PropertyKind::integer), u"9999999999", errors::overflow},
        {Info(PropertyKind::boolean), u"maybe", errors::typeMismatch},
        {Info(PropertyKind::enumeration, borders), u"9", errors::invalidPropertyValue},
        {Info(PropertyKind::enumeration, borders), u"bS", errors::typeMismatch},  // two begin so
        {Info(PropertyKind::enumeration, borders), u"", errors::typeMismatch},
        {Info(PropertyKind::enumeration), u"0", errors::invalidPropertyValue},
        {Info(PropertyKind::color), u"reddish", errors::typeMismatch},
        {Info(PropertyKind::color), u"#12345G", errors::typeMismatch},
        {Info(PropertyKind::color), u"4294967296", errors::overflow},
        {Info(PropertyKind::color), u"1.5", errors::typeMismatch},
        {Info(PropertyKind::font), u"Tahoma", errors::typeMismatch},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ErrorOf(c.info, c.typed, {}), c.error)
            << static_cast<int>(c.info.kind) << ": " << std::string(c.typed.begin(), c.typed.end());
}

TEST(PropertyRow, ValuesAreShown) {
    FontSpec font;
    font.face = u"Tahoma";
    struct Case {
        PropertyInfo info;
        PropertyValue value;
        TextView shown;
    };
    const Case cases[] = {
        {Info(PropertyKind::text), Text(u"C:\\new"), u"C:\\new"},
        {Info(PropertyKind::text), Text(u"a\r\n\tb\\\x01"), u"a\\r\\n\\tb\\\\\\x01"},
        {Info(PropertyKind::boolean), true, u"True"},
        {Info(PropertyKind::real), 8.25, u"8.25"},
        {Info(PropertyKind::enumeration, borders), Whole{1}, u"1 - bSingle"},
        {Info(PropertyKind::enumeration, borders), Whole{40}, u"40"},
        {Info(PropertyKind::text, {{u"First", u"fld_1"}}), Text(u"fld_1"), u"First"},
        {Info(PropertyKind::color), static_cast<Whole>(0x8000000F), u"&H8000000F&"},
        {Info(PropertyKind::font), font, u"Tahoma, 8.25"},
        {Info(PropertyKind::font), {}, u"(None)"},
        {Info(PropertyKind::integer), {}, u""},
    };
    for (const Case& c : cases) EXPECT_TRUE(ShowValue(c.info, c.value) == c.shown) << static_cast<int>(c.info.kind);
}

TEST(PropertyRow, ChoicesGoRound) {
    const PropertyInfo list = Info(PropertyKind::enumeration, borders);
    EXPECT_TRUE(NextChoice(list, Whole{0}) == PropertyValue(Whole{1}));
    EXPECT_TRUE(NextChoice(list, Whole{-5}) == PropertyValue(Whole{0}));
    EXPECT_TRUE(NextChoice(list, Whole{0}, false) == PropertyValue(Whole{-5}));
    EXPECT_TRUE(NextChoice(list, Whole{99}) == PropertyValue(Whole{0}));
    EXPECT_TRUE(NextChoice(Info(PropertyKind::boolean), true) == PropertyValue(false));
    EXPECT_TRUE(NextChoice(Info(PropertyKind::text), Text(u"x")) == PropertyValue());
}

TEST(PropertyRow, ButtonsOpenWhatThereIsToOpen) {
    PropertyInfo name = Info(PropertyKind::text);
    name.single = true;
    PropertyInfo readOnly = Info(PropertyKind::enumeration, borders);
    readOnly.readOnly = true;
    PropertyInfo paged = Info(PropertyKind::integer);
    paged.page = true;
    struct Case {
        PropertyInfo info;
        PropertyValue value;
        ValueButton expected;
    };
    const Case cases[] = {
        {Info(PropertyKind::text), Text(u"x"), ValueButton::dropDown},
        {name, Text(u"cmdOk"), ValueButton::none},
        {Info(PropertyKind::integer), Whole{1}, ValueButton::none},
        {paged, Whole{1}, ValueButton::dialog},
        {Info(PropertyKind::boolean), true, ValueButton::dropDown},
        {readOnly, Whole{1}, ValueButton::none},
        {Info(PropertyKind::color), Whole{1}, ValueButton::dropDown},
        {Info(PropertyKind::font), {}, ValueButton::dialog},
        {Info(PropertyKind::variant), Text(u"x"), ValueButton::dropDown},
        {Info(PropertyKind::variant), Whole{1}, ValueButton::none},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(ButtonOf(cases[i].info, cases[i].value), cases[i].expected) << i;
}

TEST(PropertyRow, HostMembersAreDescribed) {
    const auto border = [](HostObjectKind kind) { return DescribeHostMember(u"borderstyle", kind)->choices.size(); };
    EXPECT_EQ(border(HostObjectKind::control), 2u);
    EXPECT_EQ(border(HostObjectKind::frame), 3u);
    EXPECT_EQ(border(HostObjectKind::form), 4u);
    EXPECT_EQ(DescribeHostMember(u"Left", HostObjectKind::control)->category, u"Position");
    EXPECT_EQ(DescribeHostMember(u"BackColor", HostObjectKind::control)->kind, PropertyKind::color);
    EXPECT_TRUE(DescribeHostMember(u"Index", HostObjectKind::control)->optional);
    EXPECT_FALSE(DescribeHostMember(u"hWnd", HostObjectKind::control));
    EXPECT_FALSE(DescribeHostMember(u"ActiveControl", HostObjectKind::form));
    EXPECT_EQ(PropertyLabel(*DescribeHostMember(u"Name", HostObjectKind::form)), u"(Name)");
    EXPECT_EQ(CategoryOf(u"MouseIcon", PropertyKind::picture), u"Appearance");
    EXPECT_EQ(CategoryOf(u"HeadFont", PropertyKind::font), u"Font");
    EXPECT_EQ(CategoryOf(u"SpecialWord", PropertyKind::text), u"Misc");
}

}  // namespace
}  // namespace qvx::host::designer
