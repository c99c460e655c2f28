#include "widgets/flexgrid/column_fit.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "tests/support/portable/recording_surface.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {
namespace {

// Buttons in all cells of column 2.
class SecondColumn final : public CellButtons {
  public:
    bool HasButton(int, int col, bool) const override { return col == 2; }
};

class ColumnFitTest : public ::testing::Test {
  protected:
    ColumnFitTest() {
        grid.SetCols(4);
        grid.SetRows(1);
        grid.SetTexts(0, 0, std::array<TextView, 3>{u"No", u"name", u"type"});
        grid.AddItems(u"1\tfour\tx\r2\tsix ty    \ty\r3\tone\tz");
        view.client = {300, 100};
        view.buttonWidth = 17;
    }
    // In pixels. Texts have 6 pixels a character, and there are 3 on both sides and a line of 1.
    int Fitted(int col, int rows = 100) {
        RecordingSurface surface;
        return FittedWidth(grid, view, surface, col, rows) / 15;
    }

    Grid grid;
    View view;
    SecondColumn buttons;
};

TEST_F(ColumnFitTest, TheWidestTextShownFits) {
    EXPECT_EQ(6 * 6 + 7, Fitted(1)) << "blanks at the end are not shown";
    EXPECT_EQ(4 * 6 + 7, Fitted(2)) << "the header";
    EXPECT_EQ(64, Fitted(3)) << "nothing in it";
    const SortMark mark[] = {{2, false}};
    grid.SetSortMarks(mark);
    EXPECT_EQ(4 * 6 + 7 + 13, Fitted(2));
    grid.SetRowHeight(2, 0);
    EXPECT_EQ(4 * 6 + 7, Fitted(1)) << "a hidden row";
    grid.SetTextMatrix(3, 1, u"one\r\neleven char\n");
    EXPECT_EQ(11 * 6 + 7, Fitted(1)) << "the longest line";
    grid.MoveTo(3, 1);
    grid.SetCellFontSize(16.5);
    EXPECT_EQ(11 * 12 + 7, Fitted(1));
    grid.SetTextMatrix(3, 1, Text(100, u'w'));
    EXPECT_EQ(300, Fitted(1)) << "no wider than the window";
    grid.SetTextMatrix(3, 2, Text(100, u'w'));
    grid.SetMergeCells(GridMerge::free);
    grid.SetMergeRow(3, true);
    EXPECT_EQ(4 * 6 + 7, Fitted(1)) << "drawn over two columns";
}

TEST_F(ColumnFitTest, ButtonsTakeRoomAndFarRowsAreLeftOut) {
    view.buttons = &buttons;
    grid.SetTextMatrix(2, 2, u"ten chars.");
    EXPECT_EQ(10 * 6 + 17 + 7, Fitted(2));
    view.client.height = 30;
    EXPECT_EQ(4 * 6 + 7, Fitted(1, 1)) << "only the first row, and those in the window";
}

TEST_F(ColumnFitTest, SeveralWholeColumnsAreFittedTogether) {
    struct Case {
        Cursor selection;
        int pressed;
        CellRange fitted;
    };
    const Case cases[] = {
        {{1, 1, 3, 2}, 2, {1, 1, 3, 2}},
        {{1, 1, 3, 2}, 3, {1, 3, 3, 3}},
        {{1, 1, 2, 2}, 2, {1, 2, 2, 2}},
        {{1, 1, 3, 1}, 1, {1, 1, 3, 1}},
    };
    for (const Case& c : cases) {
        grid.Select(c.selection);
        const CellRange fitted = ColumnsToFit(grid, c.pressed);
        EXPECT_EQ(c.fitted.left, fitted.left);
        EXPECT_EQ(c.fitted.right, fitted.right);
    }
    EXPECT_GT(RowsToFit({1, 1, 9, 1}), RowsToFit({1, 1, 9, 4}));
}

TEST_F(ColumnFitTest, ButtonsAreDrawnAtTheEndOfCellsThatAreWideEnough) {
    view.buttons = &buttons;
    view.pressedRow = 1;
    view.pressedCol = 2;
    const auto drawn = [&](Rect cell) {
        RecordingSurface surface;
        Paint(grid, view, surface, cell);
        std::string kept;
        std::istringstream all(surface.Log());
        for (std::string line; std::getline(all, line);)
            if (line.rfind("control", 0) == 0 || line.rfind("cell", 0) == 0)
                kept += line.substr(0, line.find(" 8.25")) + "\n";
        return kept;
    };
    EXPECT_EQ("control (174,16,191,31) kind 3 state 517\ncell \"x\" at 131,17 in (128,16,174,31)\n",
              drawn({128, 16, 192, 32}));
    grid.SetEnabled(false);
    EXPECT_EQ("control (174,32,191,47) kind 3 state 261\ncell \"y\" at 131,33 in (128,32,174,47)\n",
              drawn({128, 32, 192, 48}));
    grid.SetRightToLeft(true);
    EXPECT_EQ("control (109,32,126,47) kind 3 state 261\ncell \"y\" at 163,33 in (126,32,172,47)\n",
              drawn({108, 32, 172, 48}));
    EXPECT_EQ((Rect{109, 32, 126, 47}), ButtonArea(grid, view, 2, 2));
    grid.SetColWidth(2, 33 * 15);
    EXPECT_TRUE(ButtonArea(grid, view, 2, 2).Empty()) << "too narrow";
    EXPECT_TRUE(ButtonArea(grid, view, 0, 2).Empty());
}

}  // namespace
}  // namespace qvx::flexgrid
