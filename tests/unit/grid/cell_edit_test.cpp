#include "controls/grid/cell_edit.h"

#include <gtest/gtest.h>

#include "controls/grid/cell_step.h"
#include "tests/unit/grid/editor_host.h"

namespace qvx::grid {
namespace {

using flexgrid::GridAppearance;
using flexgrid::GridBorder;

class CellEditTest : public EntryGridTest {
  protected:
    CellEditTest() { Prepare(); }
    void Prepare() {
        Fill(grid, {u"No\tName\tQty\tRate\tDate\tItem", u"1\tfirst\t\t\t\tPen", u"2\t\t\t\t\t"});
        grid.SetAppearance(GridAppearance::flat);
        state = {};
        state.columnsDataType = u";Qty-0;Rate-1;Date-2;";
        state.listColumns = u";Item;";
        state.unChangableColumns = u";Item;";
        state.dateFormat = u"mmm/yyyy";
        state.columnsMaxLength = u";Name-30;";
    }
    bool Open(int row, int col) {
        grid.MoveTo(row, col);
        host.Take();
        return ShowCellEditor(grid, state, host, host, GetActiveList(grid, state) == freeTextEditor);
    }
    void Commit() { CommitEdit(grid, state, history, host, host); }
    // A whole edit, as far as nobody prevents it.
    void Edit(int row, int col, TextView typed) {
        ASSERT_TRUE(Open(row, col));
        host.comboText = typed;
        Commit();
    }
    std::string Cell(int row, int col) const { return Narrow(grid.TextMatrix(row, col)); }
    std::string Edited() const { return std::to_string(state.editRow) + "," + std::to_string(state.editCol); }

    EditorHost host{grid};
};

TEST_F(CellEditTest, OnlyWhatStandsInTheCellAfterwardsIsAStep) {
    Edit(1, 1, u"first");
    EXPECT_FALSE(history.CanUndo()) << "the same text";
    ASSERT_TRUE(Open(1, 1));
    host.comboText = u"x";
    AbandonEdit(host);
    Commit();
    EXPECT_FALSE(history.CanUndo()) << "abandoned";
    host.onAfter = [](int, bool& cancel) { cancel = true; };
    Edit(1, 1, u"x");
    EXPECT_FALSE(history.CanUndo()) << "cancelled";
    EXPECT_EQ(Cell(1, 1), "first");
    EXPECT_TRUE(state.changed) << "it counts as a change all the same";
    host.onAfter = [&](int, bool&) { grid.RemoveItem(2); };
    Edit(1, 1, u"x");
    EXPECT_FALSE(history.CanUndo()) << "its row may be another one";
    host.onAfter = nullptr;
    Edit(1, 1, u"y");
    ASSERT_TRUE(history.CanUndo());
    history.Undo(state);
    EXPECT_EQ("x", Cell(1, 1));
}

TEST_F(CellEditTest, UnchangedCellKeepsItsTextWhereItMay) {
    for (const bool keeps : {false, true}) {
        Prepare();
        state.keepUnchanged = keeps;
        Edit(1, 2, u"");
        EXPECT_EQ(Cell(1, 2), keeps ? "" : "0") << "digits make an empty text a zero";
        EXPECT_EQ(state.changed, !keeps);
        EXPECT_EQ(host.Take().find("after") == std::string::npos, keeps);
        EXPECT_EQ(Edited(), "-1,-1");
        Edit(1, 2, u"5%");
        EXPECT_EQ(Cell(1, 2), "5");
        EXPECT_TRUE(state.changed);
    }
}

TEST_F(CellEditTest, OpensInThePrescribedOrder) {
    struct Case {
        const char* what;
        int col;
        std::string log;
        std::function<void()> prepare = [] {};
    };
    const std::string freeText = "front\nmost 30\ntext ''\nshow\ntext 'first'\nfocus, cell ''\n";
    const std::string usual = "before 1,1 'first'\nframe 960,240 1200x255\ncombo -30,-30 1515\n" + freeText;
    const Case cases[] = {
        {"free text", 1, usual},
        {"a list has its button inside", 5,
         "before 1,5 'Pen'\nframe 960,240 1200x255\ncombo -30,-30 1260\nfront\nmost 0\ntext ''\nshow\ntext 'Pen'\n"
         "drop, cell ''\nfocus, cell ''\n"},
        {"from right to left the button is out of sight at the left", 1,
         "before 1,1 'first'\nframe 960,240 1200x255\ncombo -285,-30 1515\n" + freeText,
         [&] { grid.SetRightToLeft(true); }},
        {"ten twips off where appearance and border share a bit", 1,
         "before 1,1 'first'\nframe 950,230 1200x255\ncombo -30,-30 1515\n" + freeText,
         [&] { grid.SetAppearance(GridAppearance::threeD); }},
        {"no border", 1, usual,
         [&] {
             grid.SetAppearance(GridAppearance::threeD);
             grid.SetBorderStyle(GridBorder::none);
         }},
        {"a hidden column is not even asked about", 1, "", [&] { grid.SetColWidth(1, 0); }},
        {"refused", 1, "before 1,1 'first'\n", [&] { host.onBefore = [](int, bool& cancel) { cancel = true; }; }},
        {"no columns left", 1,
         "before 1,1 'first'\nframe 960,240 1200x255\ncombo -30,-30 1515\nfront\nhide\n"
         "error 381 Subscript out of range flag\nreport 381\n",
         [&] {
             host.onBefore = [&](int, bool&) {
                 grid.SetFixedCols(0);
                 grid.SetCols(0);
             };
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        grid.SetColWidth(flexgrid::Grid::all, 960);
        grid.SetRightToLeft(false);
        Prepare();
        c.prepare();
        const bool opens = c.log.find("focus") != std::string::npos;
        EXPECT_EQ(Open(1, c.col), opens);
        EXPECT_EQ(Edited(), opens ? "1," + std::to_string(c.col) : "-1,-1");
        EXPECT_FALSE(state.editing);
        EXPECT_EQ(host.Take(), c.log);
        Commit();
        if (!opens) {
            EXPECT_FALSE(state.changed);
        }
    }
}

TEST_F(CellEditTest, ErrorWhileOpeningIsReportedUnlessTheHostAnswersIt) {
    host.failOnShow = true;
    for (const bool reports : {true, false}) {
        host.reports = reports;
        EXPECT_FALSE(Open(1, 1));
        EXPECT_FALSE(state.editing);
        const std::string log = host.Take();
        const std::string report = reports ? "report 5\n" : "";
        EXPECT_TRUE(log.ends_with("error 5 Invalid procedure call or argument flag\n" + report)) << log;
    }
}

TEST_F(CellEditTest, EditGoesWhereTheHandlerPutTheCurrentCell) {
    host.onBefore = [this](int, bool&) { grid.MoveTo(2, 2); };
    EXPECT_TRUE(Open(1, 1));
    EXPECT_EQ(Edited(), "2,2");
    host.comboText = u"9";
    Commit();
    EXPECT_EQ(Cell(1, 1), "first");
    EXPECT_EQ(Cell(2, 2), "9");
}

TEST_F(CellEditTest, CommitCleansWritesAndTells) {
    struct Case {
        int col;
        TextView typed;
        std::string cell;
        int chosen = -1;
        bool listOnly = true;
    };
    const Case cases[] = {{1, u"45%", "45%"},   {2, u"3.75", "375"},
                          {2, u"", "0"},        {3, u"12abc", "12"},
                          {4, u"soon", ""},     {5, u"in", "Ink"},
                          {5, u"xyz", "Pen"},   {4, u"3-2024", "Mar/2024"},
                          {5, u"Pe", "Ink", 2}, {5, u"Chalk", "Chalk", -1, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(Narrow(c.typed));
        Prepare();
        if (!c.listOnly) state.unChangableColumns.clear();
        const std::string old = Cell(1, c.col);
        ASSERT_TRUE(Open(1, c.col));
        host.comboText = c.typed;
        host.list.listIndex = c.chosen;
        host.onAfter = [&](int col, bool&) {
            EXPECT_EQ(Cell(1, col), c.cell) << "written before the host is notified";
        };
        Commit();
        const std::string told = "after 1," + std::to_string(c.col) + " '" + old + "' '" + c.cell + "'\n";
        const std::string log = host.Take();
        EXPECT_NE(log.find(told), std::string::npos) << log;
        if (c.col == 5) {
            EXPECT_EQ(host.comboText, c.typed) << "the pick list keeps what was typed";
        }
        EXPECT_EQ(Edited(), "-1,-1");
        EXPECT_TRUE(state.changed);
        // Losing the focus commits once more.
        grid.SetTextMatrix(1, c.col, u"other");
        Commit();
        EXPECT_EQ(host.Take(), "");
        EXPECT_EQ(Cell(1, c.col), "other");
    }
}

TEST_F(CellEditTest, HandlersMayCommitOpenTheNextEditOrRemoveTheRow) {
    int events = 0;
    host.onAfter = [&](int, bool&) {
        ++events;
        Commit();
        EXPECT_EQ(events, 1);
        Open(2, 1);
    };
    Edit(1, 2, u"7");
    EXPECT_EQ(Edited(), "2,1") << "the new edit stays open";
    host.onAfter = [this](int, bool& cancel) {
        grid.SetRows(2);
        cancel = true;
    };
    host.comboText = u"next";
    Commit();
    EXPECT_EQ(host.Take().find("report"), std::string::npos);
    EXPECT_EQ(Edited(), "-1,-1");
}

TEST_F(CellEditTest, EditWhoseRowIsGoneMovesToTheLastRowAndStaysOpen) {
    Open(2, 2);
    host.comboText = u"9";
    host.Take();
    grid.SetRows(2);
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_EQ(Edited(), "1,2");
    EXPECT_FALSE(state.changed);
    EXPECT_EQ(Cell(1, 2), "");
    Commit();
    EXPECT_EQ(Cell(1, 2), "9");
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, EditWithoutARowOrItsColumnEndsUnwritten) {
    Open(1, 5);
    grid.SetCols(3);
    host.Take();
    Commit();
    EXPECT_EQ(state.editRow, -1);
    EXPECT_FALSE(state.changed);
    Open(1, 1);
    grid.SetFixedRows(0);
    grid.SetRows(0);
    host.Take();
    Commit();
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_LT(state.editRow, 0);
}

TEST_F(CellEditTest, AbandonedEditWritesItsOldTextUncleanedAndUnmatched) {
    grid.SetTextMatrix(2, 2, u"n/a");
    for (const auto& [row, col, old] : {std::tuple(1, 1, "first"), {1, 2, ""}, {2, 2, "n/a"}, {2, 5, ""}}) {
        ASSERT_TRUE(Open(row, col));
        host.comboText = u"99";
        host.list.listIndex = 2;
        host.Take();
        AbandonEdit(host);
        EXPECT_EQ(host.Take(), std::string("text '") + old + "'\nhide\n");
        Commit();
        EXPECT_EQ(Cell(row, col), old);
    }
    Edit(1, 2, u"5");
    EXPECT_EQ(Cell(1, 2), "5") << "the next edit is an ordinary one again";
}

}  // namespace
}  // namespace qvx::grid
