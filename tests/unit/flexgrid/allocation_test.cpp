// The grid without memory: each allocation of each call fails once, alone and with all behind it.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/portable/failing_allocation.h"
#include "tests/support/portable/recording_surface.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/paint.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {
namespace {

using test::ExpectAllOrNothing;

// A grid that has something of everything, with as many data rows.
std::unique_ptr<Grid> Furnished(int rows) {
    auto grid = std::make_unique<Grid>();
    grid->SetFormatString(u"<No|>Amount|^A caption that is long|Last");
    grid->SetRows(rows + 1);
    for (int row = 1; row <= rows; ++row) {
        const TextView wide = row % 5 == 0 ? u"\u03A9mega" : u"plain";
        grid->SetTextMatrix(row, 0, std::u16string(1, static_cast<char16_t>(u'a' + row * 7 % 26)));
        grid->SetTextMatrix(row, 2, wide);
    }
    for (int row = 1; row <= std::min(rows, 6); ++row) {  // so many that one more makes their tables grow
        grid->SetRowHeight(row, 240 * (1 + row));
        grid->SetRowData(row, row);
        grid->SetMergeRow(row, true);
        grid->Select(row, 1, row, 2);
        grid->SetFillStyle(GridFillStyle::repeat);
        grid->SetCellBackColor(0xFF00);
        grid->SetCellFontName(u"A face with a long name");
    }
    if (rows > 0) {
        grid->Select(2, 1, 4, 3);
        grid->SetRowFiltered(3, true);
    }
    return grid;
}

void PaintAll(Grid& grid) {
    RecordingSurface surface;
    Paint(grid, View{{300, 200}, true}, surface, {0, 0, 300, 200});
}

struct Row {
    const char* name;
    void (*call)(Grid& grid);
    int rows = 8;
    void (*prepare)(Grid& grid) = [](Grid&) {};
};

const std::u16string longText(300, u'l');
const std::u16string wideText(20, u'\u0416');

const Row rows[] = {
    {"Rows up", [](Grid& grid) { grid.SetRows(40); }},
    {"Rows up behind a full leaf", [](Grid& grid) { grid.SetRows(513); }, 511},
    {"Rows down", [](Grid& grid) { grid.SetRows(3); }},
    {"Cols up", [](Grid& grid) { grid.SetCols(30); }},
    {"Cols down", [](Grid& grid) { grid.SetCols(2); }},
    {"FixedRows", [](Grid& grid) { grid.SetFixedRows(4); }},
    {"FixedCols", [](Grid& grid) { grid.SetFixedCols(3); }},
    {"AddItem that a fixed row waits for", [](Grid& grid) { grid.AddItem(u"x\ty"); }, 0,
     [](Grid& grid) {
         grid.SetFixedRows(0);
         grid.SetRows(0);
         grid.SetFixedRows(1);
         grid.AddItem(u"header");
     }},
    {"Select", [](Grid& grid) { grid.Select(1, 2, 5, 3); }},
    {"SelectionMode", [](Grid& grid) { grid.SetSelectionMode(GridSelectionMode::byRow); }},
    {"Text", [](Grid& grid) { grid.SetText(longText); }},
    {"TextMatrix long", [](Grid& grid) { grid.SetTextMatrix(3, 1, longText); }},
    {"TextMatrix wide", [](Grid& grid) { grid.SetTextMatrix(3, 1, wideText); }},
    {"TextArray", [](Grid& grid) { grid.SetTextArray(9, u"by index"); }},
    {"Texts",
     [](Grid& grid) {
         grid.SetTexts(3, 1, std::vector<TextView>{u"one", longText, wideText});
     }},
    {"Clip", [](Grid& grid) { grid.SetClip(u"one\ttwo\rthree\tfour\r" + wideText); }},
    {"AddItem", [](Grid& grid) { grid.AddItem(u"one\ttwo\t" + longText, 2); }},
    {"AddItem into a full leaf", [](Grid& grid) { grid.AddItem(u"one\ttwo", 300); }, 511},
    {"AddItems",
     [](Grid& grid) {
         std::u16string block;
         for (int i = 0; i < 600; ++i) {
             block += u"x\ty\rz\r";
         }
         grid.AddItems(block, 3);
     }},
    {"RemoveItem", [](Grid& grid) { grid.RemoveItem(2); }},
    {"RemoveRowsIf", [](Grid& grid) { grid.RemoveRowsIf([](int row) { return row % 2 == 0; }); }},
    {"Clear", [](Grid& grid) { grid.Clear(); }},
    {"RowPosition", [](Grid& grid) { grid.SetRowPosition(1, 5); }},
    {"RowPosition of a row with a height", [](Grid& grid) { grid.SetRowPosition(4, 1); }},
    {"RowPosition across leaves", [](Grid& grid) { grid.SetRowPosition(1, 1100); }, 1200},
    {"ColPosition", [](Grid& grid) { grid.SetColPosition(1, 3); }},
    {"FormatString", [](Grid& grid) { grid.SetFormatString(u"^A|B|C|D|E|F|and one more;|>r1|r2|r3|r4|r5|r6|r7|r8"); }},
    {"ColWidth", [](Grid& grid) { grid.SetColWidth(1, 500); }},
    {"RowHeight", [](Grid& grid) { grid.SetRowHeight(8, 700); }},
    {"RowHeight back", [](Grid& grid) { grid.SetRowHeight(4, -1); }},
    {"RowHeightMin", [](Grid& grid) { grid.SetRowHeightMin(600); }},
    {"RowData", [](Grid& grid) { grid.SetRowData(8, 77); }},
    {"filtered rows",
     [](Grid& grid) {
         std::vector<bool> filtered(static_cast<std::size_t>(grid.Rows()), true);
         filtered[2] = false;
         grid.SetFilteredRows(filtered);
     }},
    {"filtered rows behind", [](Grid& grid) { grid.SetRowFiltered(900, true); }, 1200},
    {"all rows shown", [](Grid& grid) { grid.ShowAllRows(); }},
    {"MergeRow", [](Grid& grid) { grid.SetMergeRow(8, true); }},
    {"the settings of a row", [](Grid& grid) { grid.SetSettings(8, grid.SettingsOf(4)); }},
    {"the settings of a filtered row", [](Grid& grid) { grid.SetSettings(8, grid.SettingsOf(3)); }},
    {"CellBackColor", [](Grid& grid) { grid.SetCellBackColor(0xABCD); }},
    {"CellFontName", [](Grid& grid) { grid.SetCellFontName(u"Another face with a long name"); }},
    {"Font",
     [](Grid& grid) {
         grid.SetFont({u"Some face with a long name", 20});
     }},
    {"TextMetrics", [](Grid& grid) { grid.SetTextMetrics(nullptr); }},
    {"Sort numeric", [](Grid& grid) { grid.Sort(GridSort::numericAscending); }},
    {"Sort string", [](Grid& grid) { grid.Sort(GridSort::stringDescending); }, 8, [](Grid& grid) { grid.SetCol(0); }},
    {"Sort by question", [](Grid& grid) { grid.Sort(GridSort::custom); }},
    // Reading and painting change nothing; what they keep for their speed is no part of the grid.
    {"reading texts",
     [](Grid& grid) {
         EXPECT_GT(grid.Clip().size(), 20U);
         EXPECT_GT(grid.TextMatrix(0, 2).size(), 20U);
     }},
    {"positions",
     [](Grid& grid) {
         EXPECT_EQ(grid.ColAt(0), 0);
         EXPECT_GT(grid.RowTop(grid.Rows()), 0);
     }},
    {"painting", PaintAll},
    {"painting of merged cells", PaintAll, 8, [](Grid& grid) { grid.SetMergeCells(GridMerge::free); }},
};

TEST(GridAllocations, LeaveTheGridAsItWasOrDoAll) {
    for (const Row& row : rows) {
        const auto make = [&] {
            auto grid = Furnished(row.rows);
            row.prepare(*grid);
            return grid;
        };
        ExpectAllOrNothing(row.name, make, row.call, Describe);
    }
}

using Reach = Grid::AllOrNothing::Reach;

TEST(GridAllOrNothing, TakesBackWhateverHasBeenDone) {
    for (const Row& row : rows) {
        // What no Reach covers is the next test's.
        const std::string name = row.name;
        if (name == "Cols down" || name == "Clear" || name == "ColPosition" || name == "Font" ||
            name == "TextMetrics" || name == "SelectionMode") {
            continue;
        }
        const auto grid = Furnished(row.rows);
        row.prepare(*grid);
        const std::string before = Describe(*grid);
        {
            Grid::AllOrNothing whole(*grid, Reach::all);
            grid->AddItem(u"a row more");
            row.call(*grid);
            const Grid::AllOrNothing within(*grid, Reach::texts);
            grid->SetTextMatrix(0, 0, longText);
        }
        EXPECT_EQ(Describe(*grid), before) << name;
        {
            Grid::AllOrNothing whole(*grid, Reach::all);
            row.call(*grid);
            whole.Commit();
        }
        const auto other = Furnished(row.rows);
        row.prepare(*other);
        row.call(*other);
        EXPECT_EQ(Describe(*grid), Describe(*other)) << name;
    }
}

// A listener may do what cannot be taken back. Nothing is then, and the grid works on.
TEST(GridAllOrNothing, IsOverWhereItDoesNotReach) {
    for (const Reach reach : {Reach::texts, Reach::all}) {
        for (void (*meddle)(Grid&) : {+[](Grid& g) { g.Clear(); }, +[](Grid& g) { g.SetColPosition(0, 2); },
                                      +[](Grid& g) { g.SetCols(2); }, +[](Grid& g) { g.SetRows(3); }}) {
            for (const bool commits : {false, true}) {
                const auto grid = Furnished(8);
                {
                    Grid::AllOrNothing whole(*grid, reach);
                    grid->SetTextMatrix(1, 1, longText);
                    const Meddler meddler(*grid, meddle);
                    grid->SetRow(7);
                    EXPECT_LT(grid->Row(), grid->Rows());
                    if (commits) {
                        whole.Commit();
                    }
                }
                grid->AddItems(u"a\tb\rc\td");
                grid->SetTextMatrix(grid->Rows() - 1, 0, wideText);
                EXPECT_EQ(grid->TextMatrix(grid->Rows() - 1, 0), wideText);
                EXPECT_FALSE(Describe(*grid).empty());
            }
        }
    }
}

}  // namespace
}  // namespace qvx::flexgrid
