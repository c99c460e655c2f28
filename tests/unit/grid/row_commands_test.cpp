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
};

TEST_F(RowCommands, InsertedRowIsNumberedAndTheRestMovesOn) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"3\tc", u"x\td", u"5\te"});
    state.autoRecordNumber = true;
    grid.MoveTo(3, 1);
    InsertRow(grid, state);
    EXPECT_EQ(Columns(), "No,1,2,3,4,5,6;A,a,b,,c,d,e;");
    EXPECT_EQ(grid.Row(), 3);
    state.autoRecordNumber = false;
    InsertRow(grid, state);
    EXPECT_EQ(Columns(), "No,1,2,,3,4,5,6;A,a,b,,,c,d,e;");
    grid.MoveTo(0, 1);
    EXPECT_THROW(InsertRow(grid, state), RunTimeError);
    EXPECT_EQ(grid.Rows(), 8);
}

TEST_F(RowCommands, DeletedRowIsTheCurrentOneAndTheLastIsOnlyEmptied) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"7\tc"});
    state.autoRecordNumber = true;
    grid.MoveTo(2, 1);
    EXPECT_EQ(DeleteRow(grid, state), 2);
    EXPECT_EQ(Columns(), "No,1,2;A,a,c;");
    EXPECT_EQ(DeleteRow(grid, state), 2);
    EXPECT_EQ(DeleteRow(grid, state), 1);
    EXPECT_EQ(Columns(), "No,1;A,;") << "the record number stays";
}

TEST_F(RowCommands, RefusedDeletionChangesNothing) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    grid.SetFixedRows(2);
    EXPECT_THROW(DeleteRow(grid, state), RunTimeError);
    grid.SetFixedRows(1);
    grid.SetRows(1);
    EXPECT_THROW(DeleteRow(grid, state), RunTimeError) << "there is no row 1 to empty";
    EXPECT_EQ(Columns(), "No;A;");
}

}  // namespace
}  // namespace qvx::grid
