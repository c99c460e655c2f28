// Rows inserted and deleted from the keyboard: what the grid holds afterwards.
#include "controls/grid/row_commands.h"

#include <gtest/gtest.h>

#include <functional>

#include "common/run_time_error.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::Shown;

class RowCommands : public testing::Test {
  protected:
    flexgrid::Grid grid;
    ControlState state;
    EditHistory history{grid};
};

TEST_F(RowCommands, InsertedRowIsNumberedAndTheRestMovesOn) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"x\tc"});
    state.autoRecordNumber = true;
    grid.MoveTo(2, 1);
    InsertRow(grid, state, history);
    EXPECT_EQ(Shown(grid), "No,A/1,a/2,/3,b/4,c");
    EXPECT_EQ(grid.Row(), 2);
    state.autoRecordNumber = false;
    InsertRow(grid, state, history);
    AppendRows(grid, state, history, 1);
    EXPECT_EQ(Shown(grid), "No,A/1,a/,/2,/3,b/4,c/,");
    grid.MoveTo(0, 1);
    EXPECT_THROW(InsertRow(grid, state, history), RunTimeError);
    EXPECT_EQ(grid.Rows(), 7);
}

TEST_F(RowCommands, AreStepsThatCanBeTakenBackAndDoneAgain) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    state.autoRecordNumber = true;
    std::vector<std::string> states{Shown(grid)};
    const std::pair<int, std::function<void()>> commands[] = {
        {1, [&] { InsertRow(grid, state, history); }},     {2, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 2); }},
        {2, [&] { AppendRows(grid, state, history, 2); }}, {4, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 4); }},
        {2, [&] { DeleteRow(grid, state, history); }},     {2, [&] { DeleteRow(grid, state, history); }},
        {1, [&] { DeleteRow(grid, state, history); }},
    };
    grid.SetTextMatrix(1, 1, u"a");
    for (const auto& [row, command] : commands) {
        grid.MoveTo(row, 1);
        command();
        states.push_back(Shown(grid));
    }
    EXPECT_EQ(states, (std::vector<std::string>{"No,A/1,a/2,b", "No,A/1,/2,a/3,b", "No,A/1,/2,b", "No,A/1,/2,b/3,/4,",
                                                "No,A/1,/2,b/3,", "No,A/1,/2,", "No,A/1,", "No,A/1,"}))
        << "of the last row only the record number stays";
    for (std::size_t i = std::size(commands) - 1; i > 0; --i) {
        EXPECT_TRUE(history.Undo(state));
        EXPECT_EQ(Shown(grid), states[i - 1]);
    }
    EXPECT_FALSE(history.CanUndo());
    for (std::size_t i = 1; i < std::size(commands); ++i) {
        EXPECT_TRUE(history.Redo(state));
        EXPECT_EQ(Shown(grid), states[i]);
    }
}

TEST_F(RowCommands, OfTheLastRowTheTextsComeBack) {
    Fill(grid, {u"No\tA", u"7\tlast"});
    EXPECT_EQ(DeleteRow(grid, state, history), 1);
    EXPECT_EQ(Shown(grid), "No,A/7,");
    history.Undo(state);
    EXPECT_EQ(Shown(grid), "No,A/7,last");
}

TEST_F(RowCommands, RefusedDeletionChangesNothing) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    grid.SetFixedRows(2);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError);
    grid.SetFixedRows(1);
    grid.SetRows(1);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError) << "there is no row 1 to empty";
    EXPECT_EQ(Shown(grid), "No,A");
}

}  // namespace
}  // namespace qvx::grid
