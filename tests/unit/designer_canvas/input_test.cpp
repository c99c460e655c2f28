// Keys and presses of the mouse on a form under design.
#include <gtest/gtest.h>

#include "common/keys.h"
#include "designer/canvas/canvas_keys.h"
#include "designer/canvas/press.h"

namespace qvx::host::designer {
namespace {

TEST(CanvasInput, KeysMeanWhatTheStateAllows) {
    using enum CanvasAction;
    const struct {
        int key, shift;
        CanvasKeyState state;  // dragging, armed, ordersTabs, selected
        CanvasAction action;
    } cases[] = {
        {keys::left, 0, {false, false, false, true}, nudge},
        {keys::down, keys::shiftMask, {false, true, true, true}, nudge},
        {keys::left, 0, {false, false, false, false}, idle},
        {keys::left, 0, {true, false, false, true}, idle},
        {keys::tab, 0, {}, selectNext},
        {keys::tab, keys::shiftMask, {}, selectPrevious},
        {keys::tab, keys::controlMask, {}, none},
        {keys::escape, 0, {true, true, true, true}, cancelDrag},
        {keys::escape, 0, {false, true, true, true}, disarm},
        {keys::escape, 0, {false, false, true, true}, endTabOrder},
        {keys::escape, 0, {false, false, false, true}, selectContainer},
        {keys::escape, 0, {}, idle},
        {keys::enter, 0, {false, true, false, true}, placeTool},
        {keys::enter, 0, {false, false, false, true}, showPages},
        {keys::enter, 0, {}, idle},
        {keys::space, 0, {false, false, false, true}, none},
    };
    for (const auto& c : cases) EXPECT_EQ(CanvasActionOf(c.key, c.shift, c.state), c.action) << c.key << " " << c.shift;
}

TEST(CanvasInput, ArrowsNudge) {
    constexpr Dpi dpi{96, 144};
    const std::vector<TwipsRect> start = {{10, 10, 1000, 1000}, {130, 250, 310, 430}};
    const struct {
        int key, shift;
        TwipsRect primary;
    } cases[] = {
        {keys::right, 0, {240, 250, 310, 430}},
        {keys::up, keys::controlMask, {130, 240, 310, 430}},
        {keys::left, keys::controlMask, {115, 250, 310, 430}},
        {keys::right, keys::shiftMask, {130, 250, 470, 430}},
        {keys::up, keys::shiftMask, {130, 250, 310, 350}},
        {keys::down, keys::shiftMask | keys::controlMask, {130, 250, 310, 440}},
    };
    for (const auto& c : cases) {
        const std::vector<TwipsRect> nudged = Nudged(start, NudgeOf(c.key, c.shift, dpi));
        ASSERT_EQ(nudged.size(), 2u);
        EXPECT_EQ(nudged[1], c.primary) << c.key << " " << c.shift;
    }
    EXPECT_EQ(Nudged(start, NudgeOf(keys::left, 0, dpi))[0], (TwipsRect{-120, 10, 1000, 1000}));
    EXPECT_TRUE(Nudged({}, NudgeOf(keys::left, 0, dpi)).empty());
}

TEST(CanvasInput, PressesBeginWhatIsUnderThem) {
    const Shapes shapes = {{{u"frame", -1}, std::nullopt, {100, 100, 300, 300}, true},
                           {{u"inner", -1}, 0, {120, 120, 160, 140}, false},
                           {{u"alone", -1}, std::nullopt, {0, 0, 40, 20}, false}};
    using Kind = Press::Kind;
    constexpr PressState plain{false, false, false, false, 6}, armed{false, true, false, false, 6},
        orders{true, true, false, false, 6}, shift{false, false, true, false, 6}, control{false, false, false, true, 6};
    constexpr int none = -1;
    const struct {
        const char16_t* selected;
        Point at;
        PressState state;
        Kind kind;
        int shape, container;
    } cases[] = {
        {u"", {130, 130}, plain, Kind::move, 1, 0},           {u"", {10, 10}, plain, Kind::move, 2, none},
        {u"", {500, 500}, plain, Kind::band, none, none},     {u"", {200, 200}, plain, Kind::move, 0, none},
        {u"", {200, 200}, control, Kind::band, 0, 0},         {u"", {200, 200}, shift, Kind::toggle, 0, none},
        {u"", {130, 130}, control, Kind::toggle, 1, 0},       {u"inner", {163, 143}, plain, Kind::size, 1, 0},
        {u"inner", {163, 143}, shift, Kind::toggle, 0, none}, {u"alone", {163, 143}, plain, Kind::move, 0, none},
        {u"inner", {163, 143}, armed, Kind::place, 0, 0},     {u"", {130, 130}, armed, Kind::place, 1, 0},
        {u"", {500, 500}, armed, Kind::place, none, none},    {u"", {130, 130}, orders, Kind::orderTab, 1, none},
        {u"", {500, 500}, orders, Kind::idle, none, none},
    };
    for (const auto& c : cases) {
        Selection selection;
        if (*c.selected) selection.Set({{c.selected, -1}});
        const Press press = PressAt(shapes, selection, c.at, c.state);
        const auto number = [](std::optional<std::size_t> at) { return at ? static_cast<int>(*at) : none; };
        EXPECT_EQ(press.kind, c.kind) << c.at.x << " " << static_cast<int>(c.kind);
        EXPECT_EQ(number(press.shape), c.shape) << c.at.x << " " << static_cast<int>(c.kind);
        EXPECT_EQ(number(press.container), c.container) << c.at.x << " " << static_cast<int>(c.kind);
        EXPECT_TRUE(c.kind != Kind::size || press.grip == Grip::bottomRight);
    }
}

}  // namespace
}  // namespace qvx::host::designer
