#include "designer/document/selection.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qvx::host::designer {
namespace {

ObjectId Id(TextView name) { return {Text(name), -1}; }

// A frame with a button in it and one that sticks out of it; "front" lies over "back".
const Shapes shapes = {
    {Id(u"front"), std::nullopt, {0, 0, 50, 50}, false},    {Id(u"back"), std::nullopt, {20, 20, 80, 80}, false},
    {Id(u"frame"), std::nullopt, {100, 0, 300, 200}, true}, {Id(u"inner"), 2, {110, 10, 150, 30}, false},
    {Id(u"outside"), 2, {280, 10, 350, 30}, false},
};

Text Names(const Selection& selection) {
    Text names;
    for (const ObjectId& id : selection.All()) names += id.name + u" ";
    return names;
}

TEST(IdTables, FindTheFirstOfEqualIds) {
    const std::vector<ObjectId> ids = {{u"Txt", 2}, Id(u"b"), Id(u"A"),   {u"txt", 10},
                                       Id(u"TXT"),  Id(u"a"), {u"txt", 2}};
    const IdTable table(ids);
    for (const ObjectId& id : ids)
        EXPECT_EQ(*table.PositionOf(id), std::find(ids.begin(), ids.end(), id) - ids.begin());
    for (const ObjectId& id : {Id(u"tx"), Id(u"c"), ObjectId{u"txt", 3}}) EXPECT_FALSE(table.Has(id));
}

TEST(Selecting, HitsTheForemostAndInnermost) {
    const struct {
        Point at;
        int shape;
        int container;
    } cases[] = {{{30, 30}, 0, -1}, {{60, 60}, 1, -1},   {{120, 20}, 3, 2}, {{120, 50}, 2, 2},
                 {{290, 20}, 4, 2}, {{320, 20}, -1, -1}, {{90, 90}, -1, -1}};
    for (const auto& c : cases) {
        const auto shape = ShapeAt(shapes, c.at);
        const auto container = ContainerAt(shapes, c.at);
        EXPECT_EQ(shape ? static_cast<int>(*shape) : -1, c.shape) << c.at.x;
        EXPECT_EQ(container ? static_cast<int>(*container) : -1, c.container) << c.at.x;
    }
}

TEST(Selecting, ClicksAndModifiers) {
    Selection selection;
    selection.Press(shapes, 0, false);
    selection.Press(shapes, 1, true);
    EXPECT_EQ(Names(selection), u"front back ");
    selection.Press(shapes, 0, false);
    EXPECT_EQ(Names(selection), u"back front ") << "one that is selected becomes the primary, for a drag of all";
    selection.Press(shapes, 1, true);
    EXPECT_EQ(Names(selection), u"front ");
    selection.Press(shapes, 3, true);
    EXPECT_EQ(Names(selection), u"inner ") << "only what stands in one container is selected together";
    selection.Press(shapes, 2, false);
    EXPECT_EQ(Names(selection), u"frame ");
}

TEST(Selecting, BandsCyclesAndAll) {
    Selection selection;
    selection.Band(shapes, std::nullopt, {40, 40, 120, 60}, false);
    EXPECT_EQ(Names(selection), u"front back frame ");
    selection.Band(shapes, 2, {100, 0, 300, 15}, false);
    EXPECT_EQ(Names(selection), u"inner outside ");
    selection.Band(shapes, std::nullopt, {0, 0, 5, 5}, true);
    EXPECT_EQ(Names(selection), u"front ");
    selection.SelectAll(shapes);
    EXPECT_EQ(Names(selection), u"front back frame ");
    const std::vector<ObjectId> order = {Id(u"back"), Id(u"INNER"), Id(u"front")};
    selection.Set({Id(u"inner")});
    selection.Cycle(order, true);
    EXPECT_EQ(Names(selection), u"front ");
    selection.Cycle(order, true);
    EXPECT_EQ(Names(selection), u"back ");
    selection.Cycle(order, false);
    EXPECT_EQ(Names(selection), u"front ");
    selection.Clear();
    selection.Cycle(order, false);
    EXPECT_EQ(Names(selection), u"front ");
    selection.Set({Id(u"gone"), Id(u"back")});
    selection.Keep(shapes);
    EXPECT_EQ(Names(selection), u"back ");
}

TEST(Selecting, PastesIntoTheFrameOrBesideThePrimary) {
    const struct {
        std::vector<TextView> selected;
        TextView text;
        TextView container;  // empty for the form
    } cases[] = {
        {{}, u"Begin Label x", u""},
        {{u"front"}, u"Begin Label x", u""},
        {{u"frame"}, u"Begin Label x", u"frame"},
        {{u"frame"}, u"Begin Frame x", u""},
        {{u"front", u"frame"}, u"Begin Label x", u""},
        {{u"inner"}, u"Begin Frame x", u"frame"},
        {{u"inner", u"outside"}, u"Begin Label x", u"frame"},
        {{u"gone"}, u"Begin Label x", u""},
    };
    for (const auto& c : cases) {
        std::vector<ObjectId> ids;
        for (const TextView name : c.selected) ids.push_back(Id(name));
        Selection selection;
        selection.Set(ids);
        const auto container = PasteContainer(shapes, selection, c.text);
        EXPECT_EQ(container ? container->name : Text(), c.container) << &c - cases;
    }
}

}  // namespace
}  // namespace qvx::host::designer
