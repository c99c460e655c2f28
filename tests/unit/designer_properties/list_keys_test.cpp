#include "designer/properties/list_keys.h"

#include <gtest/gtest.h>

#include "common/keys.h"
#include "designer/properties/system_colors.h"

namespace qvx::host::designer {
namespace {

constexpr int jump = keys::controlMask | keys::shiftMask;

TEST(ListKeys, InTheRows) {
    constexpr RowKeyState row, picture{false, false, true}, open{true, true, false}, closed{true, false, false};
    const struct {
        ListKey key;
        RowKeyState state;
        RowAction action;
    } cases[] = {
        {{keys::f4}, row, RowAction::pressButton},
        {{keys::down, keys::altMask, true}, row, RowAction::pressButton},
        {{keys::f4, keys::altMask, true}, row, RowAction::none},
        {{'A', jump}, row, RowAction::jump},
        {{'Z', jump}, open, RowAction::jump},
        {{'A', keys::controlMask}, row, RowAction::none},
        {{'A', keys::shiftMask}, row, RowAction::none},
        {{'1', jump}, row, RowAction::none},
        {{keys::tab}, row, RowAction::editOrLeave},
        {{keys::tab, keys::shiftMask}, row, RowAction::leaveBackwards},
        {{keys::f2}, row, RowAction::edit},
        {{keys::enter}, row, RowAction::editOrPress},
        {{keys::deleteKey}, picture, RowAction::clearPicture},
        {{keys::deleteKey}, row, RowAction::none},
        {{keys::enter}, open, RowAction::toggle},
        {{keys::left}, open, RowAction::toggle},
        {{keys::left}, closed, RowAction::idle},
        {{keys::right}, open, RowAction::idle},
        {{keys::right}, closed, RowAction::toggle},
    };
    for (const auto& c : cases) EXPECT_EQ(RowKeyOf(c.key, c.state).action, c.action) << c.key.key << " " << c.key.shift;
}

TEST(ListKeys, WalkInTheRowsAndMostlyInTheField) {
    const struct {
        int key;
        RowStep step;
        bool inField;
    } cases[] = {
        {keys::up, RowStep::previous, true},   {keys::down, RowStep::next, true},
        {keys::pageUp, RowStep::pageUp, true}, {keys::pageDown, RowStep::pageDown, true},
        {keys::home, RowStep::first, false},   {keys::end, RowStep::last, false},
    };
    for (const auto& c : cases) {
        const RowKeyMeaning row = RowKeyOf({c.key}, {});
        EXPECT_EQ(row.action, RowAction::walk) << c.key;
        EXPECT_EQ(row.step, c.step) << c.key;
        const FieldKeyMeaning field = FieldKeyOf({c.key}, false);
        EXPECT_EQ(field.action, c.inField ? FieldAction::walk : FieldAction::none) << c.key;
        EXPECT_TRUE(!c.inField || field.step == c.step) << c.key;
    }
}

TEST(ListKeys, InTheField) {
    const struct {
        ListKey key;
        bool changed;
        FieldAction action;
    } cases[] = {
        {{keys::f4}, false, FieldAction::pressButton},
        {{keys::down, keys::altMask, true}, true, FieldAction::pressButton},
        {{'C', jump}, false, FieldAction::jump},
        {{'C'}, false, FieldAction::none},
        {{keys::enter}, true, FieldAction::apply},
        {{keys::escape}, true, FieldAction::restore},
        {{keys::escape}, false, FieldAction::close},
        {{keys::tab}, true, FieldAction::leave},
        {{keys::tab, keys::shiftMask}, true, FieldAction::applyToRows},
    };
    for (const auto& c : cases) EXPECT_EQ(FieldKeyOf(c.key, c.changed).action, c.action) << c.key.key;
}

TEST(ListKeys, InTheBoxes) {
    constexpr BoxPart parts[] = {BoxPart::choices, BoxPart::text, BoxPart::palette, BoxPart::colors,
                                 BoxPart::otherColor};
    using enum BoxAction;
    const struct {
        ListKey key;
        BoxAction actions[5];  // in the order of the parts
    } cases[] = {
        {{keys::escape}, {close, close, close, close, close}},
        {{keys::f4}, {close, close, close, close, close}},
        {{keys::up, keys::altMask, true}, {close, close, close, close, close}},
        {{keys::f4, keys::altMask, true}, {none, none, none, none, none}},
        {{keys::enter}, {accept, none, accept, accept, accept}},
        {{keys::enter, keys::controlMask}, {accept, accept, accept, accept, accept}},
        {{keys::space}, {none, none, accept, accept, none}},
        {{keys::tab}, {none, none, nextPart, nextPart, nextPart}},
        {{keys::tab, keys::shiftMask}, {none, none, previousPart, previousPart, previousPart}},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < 5; ++i) EXPECT_EQ(BoxActionOf(parts[i], c.key), c.actions[i]) << c.key.key << " " << i;
    }
}

TEST(ListKeys, ArrowsStayInThePalette) {
    constexpr int last = static_cast<int>(paletteCells) - 1;
    const struct {
        int key, from, to;
    } cases[] = {{keys::right, -1, 0},
                 {keys::left, 0, 0},
                 {keys::down, 3, 3 + paletteColumns},
                 {keys::up, 3, 3},
                 {keys::up, 3 + paletteColumns, 3},
                 {keys::right, last, last},
                 {keys::down, last - 1, last - 1}};
    for (const auto& c : cases) EXPECT_EQ(PaletteCellAfter(c.key, c.from), c.to) << c.key << " " << c.from;
    EXPECT_FALSE(PaletteCellAfter(keys::home, 3));
}

}  // namespace
}  // namespace qvx::host::designer
