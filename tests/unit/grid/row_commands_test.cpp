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

TEST_F(RowCommands, DeletedRowIsTheCurrentOneAndTheLastIsOnlyEmptied) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    state.autoRecordNumber = true;
    const std::tuple<int, std::function<void()>, const char*> commands[] = {
        {1, [&] { InsertRow(grid, state, history); }, "No,A/1,/2,a/3,b"},
        {2, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 2); }, "No,A/1,/2,b"},
        {2, [&] { AppendRows(grid, state, history, 2); }, "No,A/1,/2,b/3,/4,"},
        {4, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 4); }, "No,A/1,/2,b/3,"},
        {1, [&] { DeleteRow(grid, state, history); }, "No,A/1,b/2,"},
        {2, [&] { DeleteRow(grid, state, history); }, "No,A/1,b"},
        {1, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 1); }, "No,A/1,"},
    };
    for (const auto& [row, command, shown] : commands) {
        grid.MoveTo(row, 1);
        command();
        EXPECT_EQ(Shown(grid), shown) << "of the last row only the record number stays";
    }
    history.Undo(state);
    EXPECT_EQ(Shown(grid), "No,A/1,b");
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
