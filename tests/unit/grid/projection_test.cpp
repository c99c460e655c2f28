#include "controls/grid/projection.h"

#include <gtest/gtest.h>

#include <functional>

#include "controls/grid/edit_history.h"
#include "controls/grid/row_operations.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

constexpr OleColor selected = Rgb(1, 2, 3);
constexpr OleColor plain = Rgb(4, 5, 6);

// A grid of captions and four rows, followed as the control follows its own.
class ProjectionTest : public EntryGridTest, private flexgrid::GridListener {
  protected:
    ProjectionTest() {
        Fill(grid, {u"No\tName\tQty", u"1\td\t", u"2\tc\t", u"3\tb\t", u"4\t\t"});
        grid.SetForeColor(plain);
        grid.SetForeColorSel(selected);
        state.initialised = true;
        grid.AddListener(this);
    }
    ~ProjectionTest() override { grid.RemoveListener(this); }

    // Every cell in the selection's colour, with "*" when it is bold.
    std::string Projected() const {
        std::string cells;
        for (int row = 0; row < grid.Rows(); ++row) {
            for (int col = 0; col < grid.Cols(); ++col) {
                const flexgrid::CellFormat* format = grid.FormatOf(row, col);
                if (!format || format->foreColor != selected) continue;
                cells += std::to_string(row) + "," + std::to_string(col);
                cells += format->fontBold.value_or(false) ? "* " : " ";
            }
        }
        return cells;
    }

    Projection projection{grid, state};

  private:
    void LeaveCell() override { projection.Leave(); }
    void EnterCell() override { projection.Enter(); }
    void CellsMove() noexcept override { projection.Hold(); }
    void CellsMoved() noexcept override { projection.Release(); }
};

TEST_F(ProjectionTest, PaintsTheCurrentCellAndTakesItBack) {
    struct {
        const char* name;
        bool on, bold, shown;
        const char* projected;
    } const cases[] = {
        {"colour only", true, false, true, "2,1 "},
        {"bold too", true, true, true, "2,1* "},
        {"off", false, true, true, ""},
        {"before the first show", true, true, false, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        grid.Clear();
        state.projectSelection = c.on;
        state.projectionBold = c.bold;
        state.initialised = c.shown;
        grid.MoveTo(1, 1);
        grid.MoveTo(2, 1);
        EXPECT_EQ(Projected(), c.projected);
        // Turned off while the cell is the current one: the bold goes all the same.
        state.projectionBold = false;
        grid.MoveTo(3, 1);
        EXPECT_EQ(Projected(), *c.projected ? "3,1 " : "");
        grid.MoveTo(2, 1);
        EXPECT_FALSE(grid.CellFontBold());
    }
}

TEST_F(ProjectionTest, TurnedOffItFreesTheCurrentCellWithTheNextChange) {
    const std::function<void()> changes[] = {[&] { grid.MoveTo(1, 1); }, [&] { grid.RemoveItem(1); },
                                             [&] { grid.AddItem(u"", 1); }};
    for (const auto& change : changes) {
        state.projectSelection = true;
        grid.MoveTo(2, 1);
        grid.MoveTo(2, 2);
        state.projectSelection = false;
        EXPECT_EQ(Projected(), "2,2 ") << "nothing is painted anew at once";
        change();
        EXPECT_EQ(Projected(), "");
    }
}

TEST_F(ProjectionTest, ExactlyTheCurrentCellHasItWhateverMoves) {
    state.projectionBold = true;
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"a row above goes", [&] { grid.RemoveItem(1); }},
        {"the current row goes", [&] { grid.RemoveItem(3); }},
        {"empty rows go", [&] { RemoveEmptyRows(grid, state, false); }},
        {"a row comes above", [&] { grid.AddItem(u"x", 1); }},
        {"a row comes in the current one's place", [&] { grid.AddItem(u"x", 3); }},
        {"rows come above", [&] { grid.AddItems(u"x\ry", 1); }},
        {"the sort moves all", [&] { grid.Sort(flexgrid::GridSort::stringAscending); }},
        {"a column changes places", [&] { grid.SetColPosition(1, 2); }},
        {"all is cleared", [&] { grid.Clear(); }},
        {"fewer rows", [&] { grid.SetRows(2); }},
        {"more of both", [&] { grid.SetFormatString(u"A|B|C|D;1|2|3|4|5|6"); }},
        {"more fixed columns", [&] { grid.SetFixedCols(2); }},
        {"all records go", [&] { RemoveAllRecords(grid, state, history); }},
    };
    for (const auto& fill : {flexgrid::GridFillStyle::single, flexgrid::GridFillStyle::repeat}) {
        for (const auto& [name, change] : changes) {
            SCOPED_TRACE(name);
            Fill(grid, {u"No\tName\tQty", u"1\td\t", u"2\tc\t", u"3\tb\t", u"4\t\t"});
            grid.Clear();
            grid.SetFillStyle(fill);
            grid.SetTextMatrix(3, 1, u"b");
            grid.Select(3, 2, 3, 1);
            ASSERT_EQ(Projected(), "3,2* ");
            change();
            EXPECT_EQ(Projected(), Current() + "* ");
            grid.MoveTo(grid.Rows() - 1, grid.Cols() - 1);
            grid.MoveTo(grid.FixedRows(), grid.FixedCols());
            EXPECT_EQ(Projected(), Current() + "* ") << "nothing is left over";
            for (int col = 0; col < grid.Cols(); ++col) EXPECT_EQ(grid.FormatOf(0, col), nullptr) << "a header";
        }
    }
}

TEST_F(ProjectionTest, RowsThatTheHistoryKeepsComeBackWithoutIt) {
    grid.MoveTo(3, 1);
    {
        const Projection::Held held(projection);
        history.RemoveRows(3, 1, [&] { grid.RemoveItem(3); });
    }
    grid.MoveTo(1, 1);
    {
        const Projection::Held held(projection);
        ASSERT_TRUE(history.Undo(state));
        EXPECT_EQ(Projected(), "");
    }
    EXPECT_EQ(Projected(), Current() + " ");
    grid.MoveTo(1, 1);
    EXPECT_EQ(Projected(), "1,1 ");
}

TEST_F(ProjectionTest, HeadersAndGridsWithoutCellsHaveNothingToPaint) {
    grid.MoveTo(0, 0);
    EXPECT_EQ(Projected(), "");
    grid.SetFixedCols(0);
    grid.SetCols(0);
    grid.SetFixedRows(0);
    grid.SetRows(0);
    grid.AddItem(u"x");
    EXPECT_EQ(Projected(), "");
}

}  // namespace
}  // namespace qvx::grid
