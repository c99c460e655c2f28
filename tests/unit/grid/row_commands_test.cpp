// Rows inserted and deleted from the keyboard: what the grid holds afterwards.
#include "controls/grid/row_commands.h"

#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

class RowCommands : public testing::Test {
  protected:
    // Column 0, one text a row, behind each other; then column 1.
    std::string Columns() const {
        std::string all;
        for (int col = 0; col < 2; ++col) {
            for (int row = 0; row < grid.Rows(); ++row) all += Narrow(grid.TextMatrix(row, col)) + ",";
            all.back() = ';';
        }
        return all;
    }

    flexgrid::Grid grid;
    ControlState state;
    EditHistory history{grid};
};

TEST_F(RowCommands, InsertedRowIsNumberedAndTheRestMovesOn) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"3\tc", u"x\td", u"5\te"});
    state.autoRecordNumber = true;
    grid.MoveTo(3, 1);
    InsertRow(grid, state, history);
    EXPECT_EQ(Columns(), "No,1,2,3,4,5,6;A,a,b,,c,d,e;");
    EXPECT_EQ(grid.Row(), 3);
    state.autoRecordNumber = false;
    InsertRow(grid, state, history);
    EXPECT_EQ(Columns(), "No,1,2,,3,4,5,6;A,a,b,,,c,d,e;");
    grid.MoveTo(0, 1);
    EXPECT_THROW(InsertRow(grid, state, history), RunTimeError);
    EXPECT_EQ(grid.Rows(), 8);
}

TEST_F(RowCommands, DeletedRowIsTheCurrentOneAndTheLastIsOnlyEmptied) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"7\tc"});
    state.autoRecordNumber = true;
    grid.MoveTo(2, 1);
    EXPECT_EQ(DeleteRow(grid, state, history), 2);
    EXPECT_EQ(Columns(), "No,1,2;A,a,c;");
    EXPECT_EQ(DeleteRow(grid, state, history), 2);
    EXPECT_EQ(DeleteRow(grid, state, history), 1);
    EXPECT_EQ(Columns(), "No,1;A,;") << "the record number stays";
}

TEST_F(RowCommands, AppendedRowsAreNumberedWhenRowsAre) {
    Fill(grid, {u"No\tA", u"1\ta"});
    state.autoRecordNumber = true;
    AppendRows(grid, state, history, 2);
    state.autoRecordNumber = false;
    AppendRows(grid, state, history, 1);
    EXPECT_EQ(Columns(), "No,1,2,3,;A,a,,,;");
}

TEST_F(RowCommands, AreStepsThatCanBeTakenBackAndDoneAgain) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    state.autoRecordNumber = true;
    const auto moveTo = [&](int row) { grid.MoveTo(row, 1); };
    moveTo(1);
    InsertRow(grid, state, history);
    moveTo(2);
    DeleteRow(grid, state, history);
    AppendRows(grid, state, history, 2);
    moveTo(3);
    DeleteRow(grid, state, history);
    const char* const states[] = {"No,1,2;A,a,b;", "No,1,2,3;A,,a,b;", "No,1,2;A,,b;", "No,1,2,3,4;A,,b,,;",
                                  "No,1,2,3;A,,b,;"};
    EXPECT_EQ(Columns(), states[4]);
    for (int i = 3; i >= 0; --i) {
        EXPECT_TRUE(history.Undo(state));
        EXPECT_EQ(Columns(), states[i]);
    }
    EXPECT_FALSE(history.CanUndo());
    for (int i = 1; i <= 4; ++i) {
        EXPECT_TRUE(history.Redo(state));
        EXPECT_EQ(Columns(), states[i]);
    }
    grid.SetRows(2);
    grid.SetTextMatrix(1, 1, u"last");
    DeleteRow(grid, state, history);
    EXPECT_EQ(Columns(), "No,1;A,;");
    history.Undo(state);
    EXPECT_EQ(Columns(), "No,1;A,last;");
}

TEST_F(RowCommands, RefusedDeletionChangesNothing) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    grid.SetFixedRows(2);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError);
    grid.SetFixedRows(1);
    grid.SetRows(1);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError) << "there is no row 1 to empty";
    EXPECT_EQ(Columns(), "No;A;");
}

}  // namespace
}  // namespace qvx::grid
