// How a grid arranges and shows its cells: order, merging, sizes, formats, and who is told of a change.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <string>
#include <vector>

#include "tests/unit/flexgrid/grid_texts.h"
#include "widgets/flexgrid/merge.h"

namespace qvx::flexgrid {
namespace {

TEST(GridSort, Orders) {
    struct Case {
        GridSort order;
        const char* sorted;
    };
    const Case cases[] = {
        {GridSort::none, "b1,10,,9x,B2,-3,a,2"},
        {GridSort::genericAscending, "-3,2,10,,9x,a,b1,B2"},
        {GridSort::genericDescending, "B2,b1,a,9x,,10,2,-3"},
        {GridSort::numericAscending, "-3,b1,,B2,a,2,9x,10"},
        {GridSort::numericDescending, "10,9x,2,b1,,B2,a,-3"},
        {GridSort::stringNoCaseAscending, ",-3,10,2,9x,a,b1,B2"},
        {GridSort::stringNoCaseDescending, "B2,b1,a,9x,2,10,-3,"},
        {GridSort::stringAscending, ",-3,10,2,9x,B2,a,b1"},
        {GridSort::stringDescending, "b1,a,B2,9x,2,10,-3,"},
    };
    for (const Case& test : cases) {
        Grid grid;
        Load(grid, 1, 0, 1, u"head\rb1\r10\r\r9x\rB2\r-3\ra\r2");
        grid.Sort(test.order);
        std::string sorted = Shown(grid);
        std::replace(sorted.begin(), sorted.end(), '/', ',');
        EXPECT_EQ(sorted, std::string("head,") + test.sorted) << static_cast<int>(test.order);
    }
}

TEST(GridSort, StableBySelectionAndSeveralColumns) {
    Grid grid;
    Load(grid, 0, 0, 3, u"2\tx\tA\r1\ty\tB\r2\tw\tC\r1\ty\tD\r0\tz\tE");
    grid.Select(0, 0, 3, 0);
    grid.Sort(GridSort::numericAscending);
    EXPECT_EQ(Shown(grid), "1,y,B/1,y,D/2,x,A/2,w,C/0,z,E");
    grid.Select(0, 0, 0, 1);
    grid.Sort(GridSort::stringDescending);
    EXPECT_EQ(Shown(grid), "2,x,A/2,w,C/1,y,B/1,y,D/0,z,E");
}

TEST(GridSort, CustomAsksAndSurvivesContradiction) {
    struct Judge final : GridListener {
        bool Compare(int row1, int row2, int& result) override {
            ++asked;
            result = random ? static_cast<int>(state = state * 1103515245 + 12345) >> 16 : row2 - row1;
            return true;
        }
        bool random = false;
        unsigned state = 1;
        int asked = 0;
    };
    Grid grid;
    Load(grid, 0, 0, 1, u"a\rb\rc\rd\re");
    Judge judge;
    grid.AddListener(&judge);
    grid.Sort(GridSort::custom);
    EXPECT_EQ(Shown(grid), "e/d/c/b/a");
    EXPECT_LE(judge.asked, 15);
    judge.random = true;
    for (int i = 0; i < 50; ++i) {
        grid.Sort(GridSort::custom);
        std::string shown = Shown(grid);
        std::sort(shown.begin(), shown.end());
        EXPECT_EQ(shown, "////abcde");
    }
}

TEST(GridMerge, Modes) {
    // Each cell is shown by a letter for its range, in order of appearance.
    const auto ranges = [](const Grid& grid) {
        std::vector<int> rows(static_cast<std::size_t>(grid.Rows()));
        std::vector<int> cols(static_cast<std::size_t>(grid.Cols()));
        std::iota(rows.begin(), rows.end(), 0);
        std::iota(cols.begin(), cols.end(), 0);
        const MergeMap map(grid, rows, cols);
        std::map<std::pair<int, int>, char> letters;  // by the corner
        std::string shown;
        for (const int row : rows) {
            shown += row > 0 ? "/" : "";
            for (const int col : cols) {
                const CellRange range = map.RangeOf(row, col);
                const auto next = static_cast<char>('A' + letters.size());
                const auto letter = letters.try_emplace({range.top, range.left}, next).first;
                EXPECT_TRUE(range.Contains(row, col) && range.top <= row && range.left <= col);
                shown += letter->second;
            }
        }
        return shown;
    };
    struct Case {
        GridMerge mode;
        bool rows, cols;
        const char* shown;
    };
    // x x y
    // x x y
    // z y y
    // z q q
    const Case cases[] = {
        {GridMerge::never, true, true, "ABC/DEF/GHI/JKL"},
        {GridMerge::free, false, false, "ABC/DEF/GHI/JKL"},
        {GridMerge::free, true, false, "AAB/CCD/EFF/GHH"},
        {GridMerge::free, false, true, "ABC/ABC/DEC/DFG"},
        {GridMerge::free, true, true, "AAB/AAB/CDD/CEE"},
        {GridMerge::restrictRows, true, false, "AAB/CCD/EFG/HIJ"},
        {GridMerge::restrictColumns, false, true, "ABC/ABC/DEF/DGH"},
        {GridMerge::restrictBoth, true, true, "AAB/AAB/CDE/CFG"},
    };
    for (const Case& test : cases) {
        Grid grid;
        Load(grid, 0, 0, 3, u"x\tx\ty\rx\tx\ty\rz\ty\ty\rz\tq\tq");
        grid.SetMergeCells(test.mode);
        grid.SetMergeRow(Grid::all, test.rows);
        grid.SetMergeCol(Grid::all, test.cols);
        EXPECT_EQ(ranges(grid), test.shown) << static_cast<int>(test.mode) << test.rows << test.cols;
    }
    Grid fixed;
    Load(fixed, 1, 1, 3, u"x\tx\tx\rx\tx\tx\rx\t\t");
    fixed.SetMergeCells(GridMerge::free);
    fixed.SetMergeRow(Grid::all, true);
    fixed.SetMergeCol(Grid::all, true);
    EXPECT_EQ(ranges(fixed), "ABB/CDD/CEF");
}

TEST(GridGeometry, HiddenMinimumAndDefaults) {
    Grid grid;
    grid.SetRows(6);
    grid.SetRowHeight(1, 0);
    grid.SetRowHeight(2, 150);
    grid.SetRowHeight(4, 3000);
    for (const auto& [y, row] : {std::pair{-1, -1}, {15, 0}, {16, 2}, {41, 3}, {42, 4}, {241, 4}, {242, 5}, {258, 6}}) {
        EXPECT_EQ(grid.RowAt(y), row) << y;
    }
    grid.SetRowHeightMin(450);
    EXPECT_EQ(grid.RowHeight(1), 0);
    EXPECT_EQ(grid.RowTop(6), 4 * 30 + 200);
    grid.SetRowHeight(Grid::all, Grid::defaultSize);
    EXPECT_EQ(grid.RowTop(6), 6 * 30);
    grid.SetRowHeightMin(0);
    FontSpec font;
    font.points = 16.5;
    grid.SetFont(font);
    EXPECT_EQ(grid.RowHeight(0), 29 * 15);
    const FixedTextMetrics twice(Dpi{192, 192});
    grid.SetTextMetrics(&twice);
    EXPECT_EQ(grid.RowPixels(0), 58);
    EXPECT_EQ(grid.ColPixels(0), 128);
    grid.SetTextMetrics(nullptr);

    grid.SetColWidth(0, 0);
    EXPECT_EQ(grid.ColAt(0), 1);
    EXPECT_EQ(grid.ColAt(64), 2);
    grid.SetColWidth(Grid::all, 300);
    grid.SetCols(3);
    EXPECT_EQ(grid.ColLeft(3), 60);
}

TEST(GridFormats, SelectionFontsAndAlignment) {
    Grid grid;
    Load(grid, 1, 0, 2, u"h\th\r12\tabc\r-1.5\t ");
    EXPECT_EQ(grid.AlignmentOf(1, 0, grid.TextMatrix(1, 0)), GridAlignment::rightCenter);
    EXPECT_EQ(grid.AlignmentOf(1, 1, grid.TextMatrix(1, 1)), GridAlignment::leftCenter);
    EXPECT_EQ(grid.AlignmentOf(2, 0, grid.TextMatrix(2, 0)), GridAlignment::rightCenter);
    grid.SetFixedAlignment(0, GridAlignment::centerTop);
    EXPECT_EQ(grid.AlignmentOf(0, 0, grid.TextMatrix(0, 0)), GridAlignment::centerTop);
    grid.Select(1, 0, 2, 1);
    grid.SetFillStyle(GridFillStyle::repeat);
    grid.SetCellFontBold(true);
    grid.SetCellAlignment(GridAlignment::leftBottom);
    EXPECT_EQ(grid.FontOf(2, 1).weight, 700);
    EXPECT_EQ(grid.FontOf(0, 1).weight, 400);
    EXPECT_EQ(grid.AlignmentOf(2, 0, grid.TextMatrix(2, 0)), GridAlignment::leftBottom);
    FontSpec font;
    font.points = 12;
    grid.SetFont(font);
    EXPECT_EQ(grid.FontOf(2, 1).points, 12);
    EXPECT_EQ(grid.FontOf(2, 1).weight, 700);
    grid.SetCellForeColor(1);
    grid.SetCellForeColor(0);
    EXPECT_EQ(grid.CellForeColor(), 0u);
    grid.Clear();
    EXPECT_EQ(grid.FormatOf(1, 0), nullptr);
}

// Every cell that reads or looks differently after a call lies in a range that the listener has been told.
TEST(GridListening, TellsOfEveryCellThatHasChanged) {
    struct Notified final : GridListener {
        void Invalidated(GridChange change, const CellRange& range) override {
            const bool all = change == GridChange::look || change == GridChange::layout;
            ranges.push_back(all ? CellRange{range.top, range.left, 99, 99} : range);
        }
        std::vector<CellRange> ranges;
    };
    const struct {
        const char* name;
        void (*call)(Grid& grid);
    } cases[] = {
        {"Clear", [](Grid& g) { g.Clear(); }},
        {"Text", [](Grid& g) { g.SetText(u"x"); }},
        {"TextMatrix", [](Grid& g) { g.SetTextMatrix(4, 3, u"x"); }},
        {"Clip", [](Grid& g) { g.SetClip(u"a\tb\rc\td"); }},
        {"repeated Text",
         [](Grid& g) {
             g.SetFillStyle(GridFillStyle::repeat);
             g.SetText(u"x");
             g.SetCellBackColor(0xFF);
         }},
        {"AddItem", [](Grid& g) { g.AddItem(u"x", 3); }},
        {"RemoveItem", [](Grid& g) { g.RemoveItem(2); }},
        {"RowPosition", [](Grid& g) { g.SetRowPosition(1, 4); }},
        {"ColPosition", [](Grid& g) { g.SetColPosition(1, 3); }},
        {"Sort", [](Grid& g) { g.Sort(GridSort::stringDescending); }},
        {"ColWidth", [](Grid& g) { g.SetColWidth(2, 300); }},
        {"ColWidth of all", [](Grid& g) { g.SetColWidth(Grid::all, 300); }},
        {"ColAlignment of all", [](Grid& g) { g.SetColAlignment(Grid::all, GridAlignment::rightTop); }},
        {"RowHeight of all", [](Grid& g) { g.SetRowHeight(Grid::all, 300); }},
    };
    for (const auto& c : cases) {
        Grid grid;
        Load(grid, 1, 1, 4, u"a\tb\tc\td\re\tf\tg\th\ri\tj\tk\tl\rm\tn\to\tp\rq\tr\ts\tt");
        grid.Select(2, 1, 4, 3);
        const auto shown = [&](int row, int col) {
            if (row >= grid.Rows()) return std::tuple<Text, bool, int, int, GridAlignment>();
            const CellFormat* format = grid.FormatOf(row, col);
            const Text text = grid.TextMatrix(row, col);
            return std::tuple(text, format && format->backColor, grid.ColWidth(col), grid.RowHeight(row),
                              grid.AlignmentOf(row, col, text));
        };
        std::vector<decltype(shown(0, 0))> before;
        for (int cell = 0; cell < 24; ++cell) before.push_back(shown(cell / 4, cell % 4));
        Notified told;
        grid.AddListener(&told);
        c.call(grid);
        for (int cell = 0; cell < 24; ++cell) {
            const auto holds = [&](const CellRange& range) { return range.Contains(cell / 4, cell % 4); };
            EXPECT_TRUE(shown(cell / 4, cell % 4) == before[static_cast<std::size_t>(cell)] ||
                        std::any_of(told.ranges.begin(), told.ranges.end(), holds))
                << c.name << " " << cell / 4 << "," << cell % 4;
        }
        grid.RemoveListener(&told);
    }
}

}  // namespace
}  // namespace qvx::flexgrid
