#include "widgets/flexgrid/grid.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/flexgrid/grid_texts.h"

namespace qvx::flexgrid {
namespace {

// Writes down what it is told.
class Recorder final : public GridListener {
  public:
    explicit Recorder(Grid& grid) : grid_(grid) { grid_.AddListener(this); }
    void LeaveCell() override { Note("leave"); }
    void EnterCell() override { Note("enter"); }
    void RowColChange() override { Note("rowcol"); }
    void SelChange() override { Note("sel"); }
    std::string Take() { return std::exchange(log_, {}); }

  private:
    void Note(const char* what) {
        log_ += std::string(what) + " " + std::to_string(grid_.Row()) + "," + std::to_string(grid_.Col()) + ";";
    }
    Grid& grid_;
    std::string log_;
};

TEST(GridCounts, RowsMayGoDownToTheFixedOnesAndTheCursorComesBack) {
    Grid grid;
    grid.SetTextMatrix(0, 1, u"Header");
    const auto below = [&](auto add) {
        grid.SetRows(1);
        EXPECT_EQ(grid.Row(), 0);
        add();
        return grid.Row();
    };
    EXPECT_EQ(below([&] { grid.AddItem(u"a\tb"); }), 1);
    EXPECT_EQ(below([&] { grid.SetRows(4); }), 1);
    EXPECT_EQ(below([&] { grid.AddItems(u"x\ry"); }), 1);
    EXPECT_EQ(Shown(grid), ",Header/x,/y,");
    grid.SetRow(0);
    grid.AddItem(u"c");
    EXPECT_EQ(grid.Row(), 0) << "put there by the program";
}

TEST(GridCounts, Refusals) {
    struct Case {
        const char* what;
        int error;
        void (*call)(Grid&);
    };
    const Case cases[] = {
        {"negative fixed rows", 380, [](Grid& g) { g.SetFixedRows(-1); }},
        {"negative fixed columns", 380, [](Grid& g) { g.SetFixedCols(-1); }},
        {"too many rows", 30006, [](Grid& g) { g.SetRows(Grid::maxRows + 1); }},
        {"too many columns", 30006, [](Grid& g) { g.SetCols(Grid::maxCols + 1); }},
        {"far row at Rows", 30009, [](Grid& g) { g.SetRowSel(2); }},
        {"far column at Cols", 30010, [](Grid& g) { g.SetColSel(2); }},
        {"top row fixed", 30009, [](Grid& g) { g.SetTopRow(0); }},
        {"left column past the end", 30010, [](Grid& g) { g.SetLeftCol(2); }},
        {"text index past the end", 381, [](Grid& g) { (void)g.TextArray(4); }},
        {"text index below 0", 381, [](Grid& g) { g.SetTextArray(-1, u"x"); }},
        {"the last row removed", 30015, [](Grid& g) { g.RemoveItem(1); }},
        {"width below -1", 380, [](Grid& g) { g.SetColWidth(0, -2); }},
        {"height below -1", 380, [](Grid& g) { g.SetRowHeight(0, -2); }},
        {"width of no column", 30010, [](Grid& g) { g.SetColWidth(2, 100); }},
        {"font of no size", 380, [](Grid& g) { g.SetCellFontSize(0); }},
        {"row moved away", 30009, [](Grid& g) { g.SetRowPosition(0, 2); }},
        {"column moved away", 30010, [](Grid& g) { g.SetColPosition(2, 0); }},
    };
    for (const Case& test : cases) {
        Grid grid;
        grid.SetTextMatrix(1, 1, u"kept");
        EXPECT_EQ(ErrorOf([&] { test.call(grid); }), test.error) << test.what;
        EXPECT_EQ(Shown(grid), ",/,kept") << test.what;
        EXPECT_EQ(grid.FixedRows() + grid.FixedCols(), 2) << test.what;
    }
    Grid grid;
    EXPECT_EQ(test::RaisedBy([&] { grid.SetRow(9); }).words, u"Invalid Row value.");
    EXPECT_EQ(test::RaisedBy([&] { grid.SetCol(9); }).words, u"Invalid Col value.");
}

TEST(GridCounts, FixedCountWaitsForColumnsAndRows) {
    Grid grid;
    grid.SetFixedCols(0);
    grid.SetCols(0);
    grid.SetFixedCols(1);
    EXPECT_EQ(ErrorOf([&] { grid.SetFixedCols(2); }), 30001) << "which leaves the waiting one alone";
    EXPECT_EQ(grid.FixedCols(), 0);
    grid.SetCols(1);
    EXPECT_EQ(grid.FixedCols(), 0);
    grid.SetFormatString(u"A|B|C");
    EXPECT_EQ(grid.FixedCols(), 1);
    EXPECT_EQ(grid.Col(), 1);

    Grid other;
    other.SetFixedCols(0);
    other.SetCols(0);
    other.SetFixedCols(1);
    other.SetFixedCols(0);
    other.SetCols(4);
    EXPECT_EQ(other.FixedCols(), 0) << "not wanted any more";
    other.SetFixedRows(0);
    other.SetRows(0);
    other.SetFixedRows(1);
    EXPECT_EQ(other.FixedRows(), 0);
    EXPECT_EQ(other.WantedFixedRows(), 1);
    other.AddItem(u"head");
    EXPECT_EQ(other.FixedRows(), 1) << "there may be nothing but headers";
    EXPECT_EQ(other.Row(), 0);
    other.AddItem(u"body");
    EXPECT_EQ(other.FixedRows(), 1);
    EXPECT_EQ(other.Row(), 1);
    other.SetRows(1);
    other.SetCols(0);
    other.SetRows(3);
    EXPECT_EQ(other.Row(), 1) << "rows leave the header without any column as well";
}

TEST(GridCursor, MovesTellLeaveThenEnter) {
    Grid grid;
    grid.SetRows(5);
    grid.SetCols(4);
    Recorder recorder(grid);
    grid.SetRow(3);
    EXPECT_EQ(recorder.Take(), "leave 1,1;enter 3,1;rowcol 3,1;sel 3,1;");
    grid.SetRow(3);
    EXPECT_EQ(recorder.Take(), "");
    grid.SetColSel(3);
    EXPECT_EQ(recorder.Take(), "sel 3,1;");
    grid.SetRow(3);
    EXPECT_EQ(recorder.Take(), "sel 3,1;");
    EXPECT_EQ(grid.ColSel(), 1);
    grid.Select(2, 2, 4, 3);
    EXPECT_EQ(recorder.Take(), "leave 3,1;enter 2,2;rowcol 2,2;sel 2,2;");
    grid.SetRows(2);
    EXPECT_EQ(recorder.Take(), "leave 2,2;enter 1,2;rowcol 1,2;sel 1,2;");
    EXPECT_EQ(grid.RowSel(), 1);
    grid.SetFixedCols(3);
    EXPECT_EQ(recorder.Take(), "leave 1,2;enter 1,3;rowcol 1,3;sel 1,3;");
}

TEST(GridCursor, SelectionByMode) {
    Grid grid;
    grid.SetRows(6);
    grid.SetCols(5);
    grid.Select(4, 3, 2, 2);
    EXPECT_EQ(grid.Selection(), (CellRange{2, 2, 4, 3}));
    grid.SetSelectionMode(GridSelectionMode::byRow);
    EXPECT_EQ(grid.Selection(), (CellRange{2, 1, 4, 4}));
    grid.SetSelectionMode(GridSelectionMode::byColumn);
    EXPECT_EQ(grid.Selection(), (CellRange{1, 2, 5, 3}));
}

TEST(GridText, FillAndClip) {
    Grid grid;
    Load(grid, 0, 0, 3, u"a\tb\tc\rd\te\tf\rg\th\ti");
    grid.Select(2, 2, 1, 1);
    EXPECT_EQ(grid.Clip(), u"e\tf\rh\ti");
    grid.SetText(u"x");
    EXPECT_EQ(Shown(grid), "a,b,c/d,e,f/g,h,x");
    struct Case {
        const char16_t* clip;
        const char* shown;
    };
    const Case cases[] = {
        {u"1\t2\r3\t4", "a,b,c/d,1,2/g,3,4"},
        {u"1\t2\t9\r\n3\t4\t9\r9", "a,b,c/d,1,2/g,3,4"},
        {u"1", "a,b,c/d,1,f/g,h,i"},
        {u"\t2\r\r9", "a,b,c/d,,2/g,,i"},
        {u"", "a,b,c/d,,f/g,h,i"},
        {u"1\r\n", "a,b,c/d,1,f/g,h,i"},
    };
    for (const Case& test : cases) {
        Grid pasted;
        Load(pasted, 0, 0, 3, u"a\tb\tc\rd\te\tf\rg\th\ti");
        pasted.Select(1, 1, 2, 2);
        pasted.SetClip(test.clip);
        EXPECT_EQ(Shown(pasted), test.shown);
    }
}

TEST(GridFormatString, Cases) {
    struct Case {
        const char16_t* format;
        const char* shown;
        std::vector<int> widths;  // twips; a character is 90, margins and line 105
        std::vector<int> alignments;
    };
    const Case cases[] = {
        {u"", ",/,", {960, 960}, {9, 9}},
        {u"<Ab|^Cde  |>", "Ab,Cde  ,/,,", {285, 555, 960}, {1, 4, 7}},
        {u"A||C", "A,,C/,,", {195, 960, 195}, {9, 9, 9}},
        {u";|One|Three", ",/One,/Three,", {555, 960}, {9, 9}},
        {u"H|I;|R", "H,I/R,", {195, 195}, {9, 9}},
        {u"|I;<|Row;x", ",I/Row;x,", {555, 195}, {1, 9}},
    };
    for (const Case& test : cases) {
        Grid grid;
        grid.SetFormatString(test.format);
        EXPECT_EQ(Shown(grid), test.shown);
        EXPECT_EQ(grid.FormatString(), test.format);
        for (std::size_t col = 0; col < test.widths.size(); ++col) {
            EXPECT_EQ(grid.ColWidth(static_cast<int>(col)), test.widths[col]) << test.shown << " " << col;
            EXPECT_EQ(static_cast<int>(grid.ColAlignment(static_cast<int>(col))), test.alignments[col]) << test.shown;
        }
    }
    Grid grid;
    grid.SetFormatString(u"A|B|C|D");
    grid.SetColWidth(1, 0);
    grid.SetFormatString(grid.FormatString());
    EXPECT_EQ(grid.ColWidth(1), 195);
    grid.SetFormatString(u"X");
    EXPECT_EQ(Shown(grid), "X,B,C,D/,,,");
    EXPECT_EQ(ErrorOf([&] { grid.SetFormatString(Text(Grid::maxCols, u'|')); }), 30006);
    EXPECT_EQ(grid.FormatString(), u"X");
}

}  // namespace
}  // namespace qvx::flexgrid
