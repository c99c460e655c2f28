// What is drawn of the property list, and above a form under design.
#include <gtest/gtest.h>

#include <algorithm>

#include "designer/canvas/adorners.h"
#include "designer/properties/rows_painter.h"
#include "tests/support/portable/recording_surface.h"

namespace qvx::host::designer {
namespace {

ListedProperties Table() {
    const auto info = [](TextView name, PropertyKind kind, TextView category) {
        PropertyInfo described;
        described.name = name;
        described.kind = kind;
        described.category = category;
        return described;
    };
    ListedProperties table;
    table.SetProperties({info(u"BackColor", PropertyKind::color, u"Look"),
                         info(u"Caption", PropertyKind::text, u"Look"),
                         info(u"Width", PropertyKind::integer, u"Place")});
    table.SetReading(0, {std::int32_t{0xFF}, u"red", true});
    table.SetReading(1, {Text(u"OK"), u"OK", true});
    table.SetReading(2, {std::int32_t{5}, u"5", true});
    return table;
}

RowsLook LookAt(const ListedProperties& table, int current) {
    RowsLook look;
    look.table = &table;
    look.view = {{200, 100}, 20, static_cast<int>(table.Lines().size()), 0, 80};
    look.current = current;
    look.buttonWidth = 16;
    return look;
}

std::string Drawn(const RowsLook& look) {
    RecordingSurface surface;
    PaintRows(surface, look);
    return surface.Log();
}

bool Has(const std::string& log, const std::string& part) { return log.find(part) != std::string::npos; }

TEST(RowsPainter, TheFieldLeavesRoomForSwatchAndButton) {
    const ListedProperties table = Table();
    EXPECT_EQ(LookAt(table, 0).ButtonArea(), (Rect{184, 0, 200, 19}));
    EXPECT_EQ(LookAt(table, 0).EditArea(13), (Rect{104, 3, 183, 19}));
    EXPECT_EQ(LookAt(table, 1).EditArea(13), (Rect{84, 23, 183, 39}));
    EXPECT_TRUE(LookAt(table, 2).ButtonArea().Empty());
    EXPECT_EQ(LookAt(table, 2).EditArea(13), (Rect{84, 43, 199, 59}));
    EXPECT_TRUE(LookAt(table, -1).ButtonArea().Empty());
}

TEST(RowsPainter, DrawsWhatShowsAndNoValueBelowTheField) {
    ListedProperties table = Table();
    RowsLook look = LookAt(table, 1);
    const std::string still = Drawn(look);
    for (const char* part : {"\"BackColor\"", "\"red\"", "\"Caption\"", "\"OK\"", "\"5\""})
        EXPECT_TRUE(Has(still, part)) << part << "\n" << still;
    RecordingSurface swatch;
    swatch.FillRect({84, 2, 100, 17}, 0xFF);
    swatch.FrameRect({84, 2, 100, 17}, colors::windowText);
    EXPECT_TRUE(Has(still, swatch.Log())) << still;
    look.editing = true;
    const std::string edited = Drawn(look);
    EXPECT_FALSE(Has(edited, "\"OK\"")) << edited;
    EXPECT_TRUE(Has(edited, "\"Caption\"")) << edited;
    look.view.client.height = 39;
    EXPECT_FALSE(Has(Drawn(look), "\"Width\""));
    look.view.top = 1;
    EXPECT_FALSE(Has(Drawn(look), "\"BackColor\""));
}

TEST(RowsPainter, HeadingsShowWhetherTheyAreOpen) {
    ListedProperties table = Table();
    table.SetOrder(PropertyOrder::categorized);
    ASSERT_TRUE(table.Lines()[0].IsHeading());
    const std::string open = Drawn(LookAt(table, -1));
    table.Toggle(0);
    const std::string closed = Drawn(LookAt(table, -1));
    EXPECT_TRUE(Has(open, "\"Look\"") && Has(open, "\"Caption\"")) << open;
    EXPECT_TRUE(Has(closed, "\"Look\"") && !Has(closed, "\"Caption\"")) << closed;
    // The sign's upright: it makes a plus of the minus.
    RecordingSurface upright;
    upright.DrawLine({8, 7}, {8, 12}, colors::buttonText, 1);
    EXPECT_FALSE(Has(open, upright.Log())) << open;
    EXPECT_TRUE(Has(closed, upright.Log())) << closed;
}

const Shapes shapes = {{{u"a", -1}, std::nullopt, {0, 0, 40, 20}, false},
                       {{u"b", -1}, std::nullopt, {50, 0, 90, 20}, false},
                       {{u"c", -1}, std::nullopt, {0, 50, 40, 70}, false}};

TEST(Marks, ThePrimaryHasEightHandlesAndTheOthersFour) {
    Selection selection;
    selection.Set({{u"a", -1}, {u"b", -1}});
    const auto count = [&](bool focus, Adorner::Look look) {
        const std::vector<Adorner> all = SelectionAdorners(shapes, selection, focus, 6);
        return std::count_if(all.begin(), all.end(), [&](const Adorner& adorner) { return adorner.look == look; });
    };
    EXPECT_EQ(count(true, Adorner::Look::handle), 4);
    EXPECT_EQ(count(true, Adorner::Look::primaryHandle), 8);
    EXPECT_EQ(count(false, Adorner::Look::weakHandle), 12);
    EXPECT_TRUE(SelectionAdorners(shapes, {}, true, 6).empty());
}

TEST(Marks, BadgesCountTheTabOrder) {
    const std::vector<Adorner> adorners =
        TabOrderAdorners(shapes, {{u"c", -1}, {u"a", -1}, {u"b", -1}}, {{u"c", -1}}, Dpi{192, 192});
    ASSERT_EQ(adorners.size(), 3u);
    EXPECT_EQ(adorners[0].text, u"1");
    EXPECT_EQ(adorners[1].text, u"2");
    EXPECT_EQ(adorners[2].text, u"0");
    EXPECT_EQ(adorners[1].look, Adorner::Look::badge);
    EXPECT_EQ(adorners[2].look, Adorner::Look::doneBadge);
    EXPECT_EQ(adorners[2].area, (Rect{0, 50, 36, 86}));
}

TEST(Marks, OnlyTheSidesOfAnOutlineAreCovered) {
    const std::vector<Rect> parts =
        PartsOf({{Adorner::Look::outline, {10, 10, 50, 40}, {}}, {Adorner::Look::handle, {0, 0, 6, 6}, {}}}, 2);
    EXPECT_EQ(parts, (std::vector<Rect>{
                         {10, 10, 50, 12}, {10, 38, 50, 40}, {10, 12, 12, 38}, {48, 12, 50, 38}, {0, 0, 6, 6}}));
}

}  // namespace
}  // namespace qvx::host::designer
