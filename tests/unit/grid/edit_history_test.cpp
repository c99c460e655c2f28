#include "controls/grid/edit_history.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>

#include "controls/grid/column_order.h"
#include "controls/grid/lifecycle.h"
#include "controls/grid/row_commands.h"
#include "tests/support/portable/failing_allocation.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::Shown;

class EditHistoryTest : public EntryGridTest {
  protected:
    EditHistoryTest() {
        Fill(grid, {u"No\tName\tQty", u"1\ta\t10", u"2\tb\t20", u"3\tc\t30"});
        state.autoRecordNumber = true;
    }

    // What a committed edit does.
    void Edit(int row, int col, TextView text) { Edit(row, col, text, history); }
    void Edit(int row, int col, TextView text, EditHistory& recording) {
        const Text before = grid.TextMatrix(row, col);
        grid.SetTextMatrix(row, col, text);
        recording.CellChanged(grid.StructureVersion(), row, col, before, text);
    }
    // The cells that a step has changed, as hosts are told.
    static std::string Report(const EditHistory::Step& step, bool backwards) {
        if (!step) return "nothing";
        std::string out = step->RowsChanged() ? "rows " : "";
        step->ForEachCell(backwards, [&](int row, int col, TextView before, TextView after) {
            out += std::to_string(row) + "," + std::to_string(col) + " " + Narrow(before) + ">" + Narrow(after) + " ";
        });
        return out;
    }
};

TEST_F(EditHistoryTest, EditsGoBackAndForth) {
    EXPECT_EQ("nothing", Report(history.Undo(state), true));
    Edit(1, 1, u"x");
    Edit(2, 2, u"");
    grid.MoveTo(3, 1);
    EXPECT_EQ("2,2 >20 ", Report(history.Undo(state), true));
    EXPECT_EQ("2,2", Current());
    EXPECT_TRUE(state.changed);
    EXPECT_EQ("1,1 x>a ", Report(history.Undo(state), true));
    EXPECT_EQ("1,1", Current());
    EXPECT_FALSE(history.CanUndo());
    grid.SetTextMatrix(1, 1, u"host");
    EXPECT_EQ("1,1 host>x ", Report(history.Redo(state), false)) << "what the host has written is overwritten";
    EXPECT_EQ("1,1 x>host ", Report(history.Undo(state), true)) << "and comes back";
    history.Redo(state);
    EXPECT_TRUE(history.CanRedo());
    Edit(3, 1, u"new");
    EXPECT_FALSE(history.CanRedo()) << "what is new ends what was undone";
    history.Undo(state);
    EXPECT_EQ("No,Name,Qty/1,x,10/2,b,20/3,c,30", Shown(grid));
}

// Random commands and groups of edits, taken back and done again in any order, beside what the grid was in between.
TEST_F(EditHistoryTest, GoesBackAndForthThroughAnything) {
    std::mt19937 random(11);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto picture = [&] {
        const std::string all = flexgrid::Describe(grid);
        return all.substr(all.find('\n'));  // without the cursor
    };
    int edits = 0;
    const auto edit = [&](int row, int col) {
        const Text kinds[] = {u"", u"\u20AC\xD83D\xDE00", Text(63, u'\xFF'), Text(64, u'x'), Text(1, u'\0')};
        Text text = kinds[below(5)] + Text(1, static_cast<char16_t>(u'a' + ++edits));
        if (below(90) == 0) text.resize(20'000, u'\u0416');
        Edit(row, col, text);
    };
    for (const int row : {1, 3}) {
        grid.SetRowHeight(row, 400 + row);
        grid.SetRowData(row, row);
        grid.MoveTo(row, 1);
        grid.SetCellForeColor(0xFF);
    }
    std::vector<std::string> pictures{picture()};
    std::size_t at = 0;
    for (int step = 0; step < 500; ++step) {
        grid.MoveTo(1 + below(grid.Rows() - 1), 1 + below(2));
        ASSERT_EQ(history.CanUndo(), at > 0);
        ASSERT_EQ(history.CanRedo(), at + 1 < pictures.size());
        const int kind = below(10);
        if (kind < 3) {
            at -= history.Undo(state) ? 1 : 0;
        } else if (kind < 5) {
            at += history.Redo(state) ? 1 : 0;
        } else {
            if (kind == 5 && below(2) == 0) {
                std::vector<std::uint32_t> rows(static_cast<std::size_t>(grid.Rows() - 1));
                std::iota(rows.begin(), rows.end(), 1U);
                std::shuffle(rows.begin(), rows.end(), random);
                const EditHistory::Group group(history);
                history.OrderRows(1, std::move(rows), {});
                Renumber(grid, state);
                edit(1, 1);
            } else if (kind == 5 && grid.Rows() > 2) {
                DeleteRow(grid, state, history);
            } else if (kind == 6 && grid.Rows() < 30) {
                InsertRow(grid, state, history);
            } else if (kind == 7 && grid.Rows() < 30) {
                const EditHistory::Group group(history);
                AppendRows(grid, state, history, 2);
                edit(grid.Rows() - 2, 2);
                edit(grid.Rows() - 1, 1);
                EXPECT_FALSE(history.CanUndo()) << "not while it is made";
            } else {
                const EditHistory::Group group(history);
                for (int i = below(6); i >= 0; --i) edit(1 + below(grid.Rows() - 1), 1 + below(2));
            }
            pictures.resize(++at);
            pictures.push_back(picture());
        }
        ASSERT_EQ(picture(), pictures[at]) << "step " << step;
    }
    EXPECT_GT(pictures.size(), 20U);
}

TEST_F(EditHistoryTest, AVeryLongTextComesBack) {
    const Text before(9'000'000, u'y');
    grid.SetTextMatrix(1, 1, before);
    Edit(1, 1, u"short");
    history.Undo(state);
    EXPECT_TRUE(grid.TextMatrix(1, 1) == before);
}

TEST_F(EditHistoryTest, WhatTheHostWroteIntoAnInsertedRowComesBackWithIt) {
    grid.SetRows(1);
    grid.AddItem(u"1");
    InsertRow(grid, state, history);
    grid.SetTextMatrix(1, 1, u"by the host");
    EXPECT_EQ("rows ", Report(history.Undo(state), true));
    EXPECT_EQ("No,Name,Qty/1,,", Shown(grid));
    history.Redo(state);
    EXPECT_EQ("No,Name,Qty/1,by the host,/2,,", Shown(grid));
    EXPECT_EQ(1, grid.Row());
}

TEST_F(EditHistoryTest, AColumnThatTheUserMovesTakesItsNumberEverywhereAndBack) {
    grid.SetCols(4);
    grid.SetFixedCols(1);
    state.keyColumn = 2;
    Edit(2, 2, u"x");
    state.changed = false;
    grid.Select({1, 1, 3, 2});
    MoveColumn(grid, state, history, 1, 3);
    EXPECT_EQ("No,Qty,,Name/1,10,,a/2,x,,b/3,30,,c", Shown(grid));
    EXPECT_EQ(flexgrid::Cursor({1, 3, 1, 3}), grid.CurrentCursor()) << "a selection of which one column has left";
    EXPECT_EQ(1, state.keyColumn);
    const auto fields = [&] {
        std::string columns;
        for (int col = 0; col < grid.Cols(); ++col) columns += std::to_string(ColumnAtPlace(grid, state, col));
        return columns;
    };
    EXPECT_EQ("0312", fields());
    MoveColumn(grid, state, history, 2, 1);
    EXPECT_EQ("0321", fields());
    Edit(1, 3, u"y");

    EXPECT_EQ("1,3 y>a ", Report(history.Undo(state), true));
    state.changed = false;
    for (int i = 0; i < 2; ++i) {
        const auto move = history.Undo(state)->MovedColumn();
        ASSERT_TRUE(move);
        FollowColumn(grid, state, move->from, move->to);
    }
    EXPECT_EQ("No,Name,Qty,/1,a,10,/2,b,x,/3,c,30,", Shown(grid));
    EXPECT_EQ("0123", fields());
    EXPECT_EQ(2, state.keyColumn);
    EXPECT_EQ("1,1", Current());
    EXPECT_FALSE(state.changed) << "the order of columns is not part of the data";
    EXPECT_EQ("2,2 x>20 ", Report(history.Undo(state), true));
    history.Redo(state);
    const auto again = history.Redo(state)->MovedColumn();
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->from == 1 && again->to == 3);
    EXPECT_EQ("No,Qty,,Name/1,10,,a/2,x,,b/3,30,,c", Shown(grid));
    grid.SetCols(3);
    EXPECT_EQ(2, ColumnAtPlace(grid, state, 2)) << "another number of columns has its own order";
}

TEST_F(EditHistoryTest, RowsAndColumnsMovedByTheHostBeginItAnew) {
    using Act = std::function<void(flexgrid::Grid&)>;
    const std::pair<const char*, Act> acts[] = {
        {"AddItem", [](auto& g) { g.AddItem(u"9"); }},
        {"RemoveItem", [](auto& g) { g.RemoveItem(1); }},
        {"Rows", [](auto& g) { g.SetRows(2); }},
        {"Cols", [](auto& g) { g.SetCols(2); }},
        {"FixedRows", [](auto& g) { g.SetFixedRows(0); }},
        {"Clear", [](auto& g) { g.Clear(); }},
        {"FormatString", [](auto& g) { g.SetFormatString(u"A|B|C"); }},
        {"RemoveRowsIf", [](auto& g) { g.RemoveRowsIf([](int row) { return row == 2; }); }},
        {"Sort", [](auto& g) { g.Sort(flexgrid::GridSort::numericDescending); }},
        {"RowPosition", [](auto& g) { g.SetRowPosition(1, 2); }},
        {"ColPosition", [](auto& g) { g.SetColPosition(1, 2); }},
    };
    for (const auto& [name, act] : acts) {
        flexgrid::Grid own;
        Fill(own, {u"No\tName\tQty", u"1\ta\t10", u"2\tb\t20", u"3\tc\t30"});
        EditHistory subject(own);
        for (int i = 0; i < 2; ++i) {
            own.SetTextMatrix(3, 1, i == 0 ? u"x" : u"y");
            subject.CellChanged(own.StructureVersion(), 3, 1, i == 0 ? u"c" : u"x", i == 0 ? u"x" : u"y");
        }
        subject.Undo(state);
        EXPECT_TRUE(subject.CanUndo() && subject.CanRedo()) << name;
        const std::uint64_t then = own.StructureVersion();
        act(own);
        EXPECT_FALSE(subject.CanUndo() || subject.CanRedo()) << name;
        EXPECT_FALSE(subject.Undo(state) || subject.Redo(state)) << name;
        subject.CellChanged(then, 0, 0, u"", u"old");
        EXPECT_FALSE(subject.CanUndo()) << name << ": an edit whose row has moved meanwhile leaves no step";
        subject.CellChanged(own.StructureVersion(), 0, 0, u"", u"new");
        EXPECT_TRUE(subject.CanUndo()) << name << ": later edits are remembered";
    }
}

TEST_F(EditHistoryTest, AGroupThatTheHostMeddlesWithLeavesNoStep) {
    const std::function<void()> meddles[] = {[&] { grid.RemoveItem(2); }, [&] { history.Clear(); }};
    for (const auto& meddle : meddles) {
        Edit(1, 1, u"x");
        {
            const EditHistory::Group group(history);
            Edit(1, 2, u"1");
            meddle();
            Edit(1, 2, u"2");
        }
        EXPECT_FALSE(history.CanUndo());
        Edit(1, 1, u"y");
        EXPECT_TRUE(history.CanUndo());
    }
}

TEST_F(EditHistoryTest, HandlersMayTakeRowsAwayWhileItWorks) {
    Edit(3, 1, u"x");
    AppendRows(grid, state, history, 3);
    grid.MoveTo(6, 1);
    const auto takeRows = [left = 1](flexgrid::Grid& g) mutable {
        if (left-- > 0) g.SetRows(2);
    };
    {
        const flexgrid::Meddler meddler(grid, takeRows);
        history.Undo(state);  // the cursor has to leave its row
    }
    EXPECT_FALSE(history.CanUndo() || history.CanRedo());

    grid.SetRows(4);
    Edit(3, 1, u"x");
    grid.MoveTo(1, 1);
    const flexgrid::Meddler meddler(grid, takeRows);
    history.Undo(state);  // the cursor goes to where the change was
    EXPECT_EQ(2, grid.Rows());
    EXPECT_FALSE(history.CanUndo() || history.CanRedo());
}

TEST_F(EditHistoryTest, IsBoundedByStepsAndByCharacters) {
    EditHistory limited(grid, EditHistory::Limits{3, 1000});
    const auto edit = [&](int row, TextView text) { Edit(row, 1, text, limited); };
    for (const TextView text : {u"1", u"2", u"3", u"4", u"5"}) edit(1, text);
    int undone = 0;
    while (limited.Undo(state)) ++undone;
    EXPECT_EQ(3, undone);
    EXPECT_EQ(u"2", grid.TextMatrix(1, 1));
    while (limited.Redo(state)) --undone;
    EXPECT_EQ(0, undone);

    edit(1, Text(600, u'x'));
    EXPECT_TRUE(limited.CanUndo());
    edit(2, Text(5000, u'y'));
    limited.Undo(state);
    EXPECT_EQ(u"b", grid.TextMatrix(2, 1));
    EXPECT_FALSE(limited.CanUndo()) << "too large, it is kept alone";
    EXPECT_TRUE(limited.CanRedo());
}

TEST_F(EditHistoryTest, APauseRecordsAndUndoesNothing) {
    Edit(1, 1, u"x");
    {
        const EditHistory::Pause pause(history);
        EXPECT_FALSE(history.CanUndo());
        EXPECT_FALSE(history.Undo(state));
        Edit(1, 2, u"1");
    }
    EXPECT_EQ("1,1 x>a ", Report(history.Undo(state), true));
    EXPECT_FALSE(history.CanUndo());
}

// What came before could no longer be taken back in its order.
TEST_F(EditHistoryTest, AChangeThatThereIsNoMemoryForEndsTheHistory) {
    Edit(1, 1, u"x");
    grid.SetTextMatrix(1, 2, u"11");
    {
        const test::FailingAllocation failing(0, test::Starvation::forGood);
        history.CellChanged(grid.StructureVersion(), 1, 2, u"10", TextView(u"11"));
    }
    EXPECT_FALSE(history.CanUndo());
}

}  // namespace
}  // namespace qvx::grid
