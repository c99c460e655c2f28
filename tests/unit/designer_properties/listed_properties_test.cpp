// The order of rows, what several objects have in common, searching, and where lines are in the window.
#include "designer/properties/listed_properties.h"

#include <gtest/gtest.h>

#include "designer/properties/rows_view.h"

namespace qvx::host::designer {
namespace {

PropertyInfo Info(TextView name, PropertyKind kind = PropertyKind::text, TextView category = u"Misc") {
    PropertyInfo info;
    info.name = name;
    info.kind = kind;
    info.category = category;
    return info;
}

// The lines as a text: headings in brackets, closed ones with a plus.
Text Lines(const ListedProperties& table) {
    Text all;
    for (std::size_t i = 0; i < table.Lines().size(); ++i) {
        const ListedProperties::Line& line = table.Lines()[i];
        const PropertyRow* row = table.RowAt(i);
        all += row ? PropertyLabel(row->info) : u"[" + line.heading + (line.open ? u"]" : u"+]");
        all += u' ';
    }
    return all;
}

ListedProperties Sample() {
    PropertyInfo name = Info(u"Name");
    name.single = true;
    ListedProperties table;
    table.SetProperties({Info(u"Text", PropertyKind::text, u"Data"), Info(u"TabStop"), Info(u"BackColor"),
                         Info(u"TabIndex"), Info(u"Tag", PropertyKind::text, u"Data"), name,
                         Info(u"Custom", PropertyKind::pages)});
    return table;
}

TEST(ListedProperties, RowsAreSortedByNameOrByCategory) {
    ListedProperties table = Sample();
    EXPECT_EQ(Lines(table), u"(Custom) (Name) BackColor TabIndex TabStop Tag Text ");
    table.SetOrder(PropertyOrder::categorized);
    EXPECT_EQ(Lines(table), u"[Data] Tag Text [Misc] (Custom) (Name) BackColor TabIndex TabStop ");
    table.Toggle(0);
    EXPECT_EQ(Lines(table), u"[Data+] [Misc] (Custom) (Name) BackColor TabIndex TabStop ");
    EXPECT_FALSE(table.LineOf(u"Tag"));
    EXPECT_TRUE(table.FindRow(u"tag"));
    table.Toggle(3);  // a row, not a heading
    table.Toggle(99);
    EXPECT_EQ(Lines(table), u"[Data+] [Misc] (Custom) (Name) BackColor TabIndex TabStop ");
    table.Toggle(0);
    EXPECT_EQ(*table.LineOf(u"TABSTOP"), 8u);
    EXPECT_EQ(table.RowAt(0), nullptr);
    EXPECT_EQ(table.RowAt(9), nullptr);
}

TEST(ListedProperties, SeveralObjectsShowWhatTheyHaveInCommon) {
    PropertyInfo border = Info(u"Border", PropertyKind::enumeration);
    border.choices = {{u"none", std::int32_t{0}}};
    PropertyInfo otherBorder = border;
    otherBorder.choices.push_back({u"single", std::int32_t{1}});
    PropertyInfo name = Info(u"Name");
    name.single = true;
    PropertyInfo fixed = Info(u"Tag");
    fixed.readOnly = true;
    const std::vector<PropertyInfo> first = {name,
                                             Info(u"Tag"),
                                             Info(u"Width", PropertyKind::integer),
                                             border,
                                             Info(u"Value", PropertyKind::boolean),
                                             Info(u"Only")};
    const std::vector<PropertyInfo> second = {Info(u"WIDTH", PropertyKind::integer), otherBorder, fixed, name,
                                              Info(u"Value", PropertyKind::integer)};
    const auto all = [](const std::vector<PropertyInfo>& infos) {
        std::vector<const PropertyInfo*> pointers;
        for (const PropertyInfo& info : infos) pointers.push_back(&info);
        return pointers;
    };
    EXPECT_EQ(CommonProperties({all(first)}).size(), first.size());
    EXPECT_EQ(CommonProperties({all(first), all(first)}).size(), first.size() - 1) << "of one type, all but the name";
    EXPECT_TRUE(CommonProperties({}).empty());
    const auto common = CommonProperties({all(first), all(second)});
    ASSERT_EQ(common.size(), 2u);
    EXPECT_EQ(common[0].info.name, u"Tag");
    EXPECT_TRUE(common[0].info.readOnly);
    EXPECT_EQ(common[0].places, (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(common[1].info.name, u"Width");
    EXPECT_EQ(common[1].places, (std::vector<std::size_t>{2, 0}));
}

TEST(ListedProperties, AValueIsShownWhereItIsTheSame) {
    const PropertyReading five{std::int32_t{5}, u"5"};
    const PropertyReading six{std::int32_t{6}, u"6"};
    const PropertyReading refused{{}, {}, false};
    struct Case {
        std::vector<PropertyReading> readings;
        PropertyReading common;
        std::size_t asked;  // objects, until the others make no difference
    };
    const Case cases[] = {{{}, {}, 0},
                          {{five, five, five}, five, 3},
                          {{five, six, five}, {}, 2},
                          {{five, refused, five}, {}, 2},
                          {{refused, five, five}, {}, 2},
                          {{refused, refused}, refused, 2}};
    for (const Case& c : cases) {
        CommonReading reading;
        std::size_t asked = 0;
        while (asked < c.readings.size() && reading.Add(c.readings[asked++])) {
        }
        EXPECT_EQ(reading.Result(), c.common) << &c - cases;
        EXPECT_EQ(asked, c.asked) << &c - cases;
    }
}

TEST(ListedProperties, NamesAreFoundByTheirFirstLetters) {
    ListedProperties table = Sample();
    const std::pair<TextView, TextView> cases[] = {
        {u"t", u"TabIndex"}, {u"tabs", u"TabStop"}, {u"te", u"Text"}, {u"ttt", u"Tag"}, {u"n", u"Name"}};
    for (const auto& [typed, found] : cases) {
        TypedSearch search;
        std::size_t line = 0;
        unsigned long long time = 5000;
        for (const char16_t letter : typed) line = search.Type(table, line, letter, time += 100).value_or(line);
        EXPECT_TRUE(table.RowAt(line)->info.name == found) << std::string(typed.begin(), typed.end());
    }
    TypedSearch search;
    EXPECT_EQ(search.Type(table, 0, u't', 5000), 3u);
    EXPECT_EQ(search.Type(table, 3, u'b', 9000), 2u) << "a pause begins anew";
    EXPECT_FALSE(search.Type(table, 2, u'q', 9100));
    EXPECT_FALSE(TypedSearch().Type(ListedProperties(), 0, u'a', 0));
}

TEST(RowsView, LinesAreWhereTheyAreShown) {
    RowsView view{{200, 105}, 20, 12, 3, 80};
    EXPECT_EQ(view.Page(), 5);
    EXPECT_EQ(view.LastTop(), 7);
    EXPECT_EQ(view.ClampTop(-4), 0);
    EXPECT_EQ(view.ClampTop(100), 7);
    EXPECT_EQ(view.TopShowing(1), 1);
    EXPECT_EQ(view.TopShowing(5), 3);
    EXPECT_EQ(view.TopShowing(11), 7);
    EXPECT_EQ(view.LineAt({10, 0}), 3);
    EXPECT_EQ(view.LineAt({10, 104}), 8);
    EXPECT_FALSE(view.LineAt({10, -1}));
    EXPECT_FALSE(view.LineAt({200, 10}));
    view.top = 9;
    EXPECT_FALSE(view.LineAt({10, 70})) << "below the last line";
    EXPECT_EQ(view.ValueArea(10), (Rect{81, 20, 200, 39}));
    const struct {
        int from;
        RowStep step;
        int to;
    } cases[] = {{0, RowStep::previous, 0}, {0, RowStep::next, 1},       {0, RowStep::pageDown, 4},
                 {6, RowStep::pageUp, 2},   {11, RowStep::pageDown, 11}, {6, RowStep::first, 0},
                 {6, RowStep::last, 11},    {-1, RowStep::next, 0}};
    for (const auto& c : cases) EXPECT_EQ(view.Step(c.from, c.step), c.to);
    view.count = 0;
    EXPECT_EQ(view.Step(3, RowStep::next), -1);
    EXPECT_EQ(view.LastTop(), 0);
}

TEST(RowsView, DividerAndBoxesStayInside) {
    EXPECT_EQ(DividerAt(200, 0.45, 40), 90);
    EXPECT_EQ(DividerAt(200, 0.0, 40), 40);
    EXPECT_EQ(DividerAt(200, 1.0, 40), 160);
    EXPECT_EQ(DividerAt(60, 0.9, 40), 30);
    const Rect work{0, 0, 1000, 800};
    EXPECT_EQ(PlaceBelow({100, 100, 200, 120}, {150, 90}, work), (Rect{50, 120, 200, 210}));
    EXPECT_EQ(PlaceBelow({100, 750, 200, 770}, {100, 90}, work), (Rect{100, 660, 200, 750})) << "above";
    EXPECT_EQ(PlaceBelow({0, 10, 50, 30}, {150, 790}, work), (Rect{0, 10, 150, 800})) << "no room on either side";
}

}  // namespace
}  // namespace qvx::host::designer
