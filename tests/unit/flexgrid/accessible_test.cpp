// A grid as assistive programs see it. A row is 16 pixels high, a column 64 wide.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/narrow.h"
#include "widgets/flexgrid/accessible_events.h"
#include "widgets/flexgrid/accessible_view.h"

namespace qvx::flexgrid {
namespace {

namespace role = accessible_role;
namespace state = accessible_state;

using test::Narrow;

std::string Print(const Rect& r) {
    std::ostringstream out;
    out << r.left << "," << r.top << "," << r.right << "," << r.bottom;
    return out.str();
}

std::string Print(const std::optional<AccessiblePart>& part) {
    return part ? std::to_string(part->row) + "," + std::to_string(part->col) : "none";
}

// Captions No, Name, Qty, and a third column without one; four rows: numbered 1, called "Sum", unnamed, numbered 4.
class AccessibleTest : public ::testing::Test {
  protected:
    AccessibleTest() {
        grid_.SetRows(5);
        grid_.SetCols(4);
        const char16_t* texts[] = {u"No", u"Name", u"Qty", u"", u"1", u"ann", u"7", u"x",  u"Sum", u"",
                                   u"8",  u"",     u"",    u"", u"",  u"",    u"4", u"zo", u"9",   u"y"};
        for (int i = 0; i < 20; ++i) {
            grid_.SetTextArray(i, texts[i]);
        }
        grid_.MoveTo(1, 1);
        view_.client = {300, 200};
        view_.focused = true;
    }

    Grid grid_;
    View view_;
};

TEST_F(AccessibleTest, PartsAreCalledByTheirHeaders) {
    struct Case {
        AccessiblePart part;
        const char* name;
        const char* value;  // nullptr: none
        long role;
    };
    const Case cases[] = {
        {{-1, -1}, "", nullptr, role::table},          {{0, -1}, "Header", nullptr, role::row},
        {{1, -1}, "Row 1", "ann; 7; x", role::row},    {{2, -1}, "Sum", "; 8; ", role::row},
        {{3, -1}, "Row 3", "; ; ", role::row},         {{0, 0}, "No", nullptr, role::columnHeader},
        {{0, 1}, "Name", nullptr, role::columnHeader}, {{0, 3}, "Column 3", nullptr, role::columnHeader},
        {{1, 0}, "1", nullptr, role::rowHeader},       {{3, 0}, "Row 3", nullptr, role::rowHeader},
        {{1, 1}, "Name, Row 1", "ann", role::cell},    {{2, 2}, "Qty, Sum", "8", role::cell},
        {{3, 3}, "Column 3, Row 3", "", role::cell},   {{4, 2}, "Qty, Row 4", "9", role::cell},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(Print(c.part));
        EXPECT_EQ(c.name, Narrow(NameOf(grid_, c.part)));
        EXPECT_EQ(c.value != nullptr, ValueOf(grid_, c.part).has_value());
        EXPECT_EQ(c.value ? c.value : "", Narrow(ValueOf(grid_, c.part).value_or(u"")));
        EXPECT_EQ(c.role, RoleOf(grid_, c.part));
    }
}

TEST_F(AccessibleTest, SeveralHeadersAreSaidOnceEachAndHiddenColumnsAreNotSaidInARow) {
    grid_.SetFixedRows(2);
    EXPECT_EQ("Qty 7", Narrow(ColumnName(grid_, 2)));
    grid_.SetTextMatrix(1, 2, u"Qty");
    EXPECT_EQ("Qty", Narrow(ColumnName(grid_, 2)));
    EXPECT_EQ("Header 2", Narrow(RowName(grid_, 1)));
    grid_.SetFixedRows(0);
    grid_.SetFixedCols(0);
    EXPECT_EQ("Column 3, Row 5", Narrow(NameOf(grid_, {4, 2})));
    grid_.SetColWidth(1, 0);
    EXPECT_EQ("4; 9; y", Narrow(*ValueOf(grid_, {4, -1})));
    grid_.SetFixedRows(1);
    const SortMark marks[] = {{2, true}, {3, false}};
    grid_.SetSortMarks(marks);
    EXPECT_EQ("Qty, sorted descending", Narrow(NameOf(grid_, {0, 2})));
    EXPECT_EQ("Qty, Row 4", Narrow(NameOf(grid_, {4, 2})));
}

TEST_F(AccessibleTest, StatesSayWhatAUserMayDoAndSees) {
    grid_.SetColWidth(3, 0);
    grid_.SetRowHeight(3, 0);
    view_.client = {150, 60};
    grid_.Select(1, 1, 1, 3);
    const long row = state::selectable;
    const long cell = state::selectable | state::focusable;
    const long table = state::focusable | state::multiSelectable | state::extSelectable;
    struct Case {
        AccessiblePart part;
        bool editable;
        long states;
    };
    const Case cases[] = {
        {{-1, -1}, false, table},
        {{0, -1}, false, 0},
        {{1, -1}, false, row | state::selected},
        {{3, -1}, false, row | state::invisible},
        {{1, 1}, true, cell | state::selected | state::focused},
        {{1, 2}, false, cell | state::selected | state::readOnly},
        {{1, 3}, true, cell | state::selected | state::invisible},
        {{2, 1}, true, cell},
        {{0, 1}, true, state::readOnly},
        {{1, 0}, true, state::readOnly},
        {{3, 0}, true, state::readOnly | state::invisible},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.states, StateOf(grid_, view_, c.part, c.editable)) << Print(c.part);
    }
    grid_.SetTopRow(2);
    EXPECT_EQ(cell | state::selected | state::focused | state::offscreen, StateOf(grid_, view_, {1, 1}, true));
    view_.focused = false;
    grid_.SetEnabled(false);
    EXPECT_EQ(state::unavailable, StateOf(grid_, view_, {2, 1}, true));
    EXPECT_EQ(state::unavailable, StateOf(grid_, view_, {-1, -1}, true));
}

TEST_F(AccessibleTest, AreasFollowScrollingHidingMirroringAndTheWindowsEdge) {
    struct Case {
        const char* name;
        Size client;
        int topRow, leftCol, hiddenCol;
        bool mirrored;
        AccessiblePart part;
        const char* area;
    };
    const Case cases[] = {
        {"the grid", {300, 200}, 1, 1, -1, false, {-1, -1}, "0,0,300,200"},
        {"a row in a narrow window", {100, 200}, 1, 1, -1, false, {2, -1}, "0,32,100,48"},
        {"scrolled", {300, 200}, 2, 2, -1, false, {2, 2}, "64,16,128,32"},
        {"a header stays", {300, 200}, 2, 2, -1, false, {0, 0}, "0,0,64,16"},
        {"scrolled away", {300, 200}, 2, 1, -1, false, {1, 1}, "64,0,128,16"},
        {"a row scrolled away", {300, 200}, 2, 1, -1, false, {1, -1}, "0,0,300,16"},
        {"cut at the edge", {150, 40}, 1, 1, -1, false, {2, 2}, "128,32,150,40"},
        {"beyond the edge", {100, 30}, 1, 1, -1, false, {3, 2}, "128,48,192,64"},
        {"behind a hidden column", {300, 200}, 1, 1, 1, false, {2, 2}, "64,32,128,48"},
        {"hidden", {300, 200}, 1, 1, 2, false, {2, 2}, "128,32,128,48"},
        {"mirrored and scrolled", {300, 200}, 1, 2, -1, true, {2, 2}, "172,32,236,48"},
        {"a mirrored row", {300, 200}, 1, 1, -1, true, {2, -1}, "44,32,300,48"},
    };
    for (const Case& c : cases) {
        grid_.SetColWidth(Grid::all, Grid::defaultSize);
        if (c.hiddenCol >= 0) {
            grid_.SetColWidth(c.hiddenCol, 0);
        }
        grid_.SetTopRow(c.topRow);
        grid_.SetLeftCol(c.leftCol);
        grid_.SetRightToLeft(c.mirrored);
        view_.client = c.client;
        EXPECT_EQ(c.area, Print(AreaOf(grid_, view_, c.part))) << c.name;
    }
}

TEST_F(AccessibleTest, AreasAndHitsAgree) {
    grid_.SetColWidth(2, 0);
    grid_.SetTopRow(2);
    for (const bool mirrored : {false, true}) {
        grid_.SetRightToLeft(mirrored);
        for (int row = 0; row < 5; ++row) {
            for (int col = 0; col < 4; ++col) {
                if (row == 1 || col == 2) {
                    continue;
                }
                const Rect area = AreaOf(grid_, view_, {row, col});
                for (const Point point : {Point{area.left, area.top}, Point{area.right - 1, area.bottom - 1}}) {
                    const auto hitRow = PartAt(grid_, view_, {}, point);
                    ASSERT_EQ(std::to_string(row) + ",-1", Print(hitRow));
                    EXPECT_EQ(Print(AccessiblePart{row, col}), Print(PartAt(grid_, view_, *hitRow, point)));
                    EXPECT_EQ(Print(AccessiblePart{row, col}), Print(PartAt(grid_, view_, {row, col}, point)));
                    EXPECT_EQ("none", Print(PartAt(grid_, view_, {row == 0 ? 2 : 0, -1}, point)));
                }
            }
        }
    }
    EXPECT_EQ("-1,-1", Print(PartAt(grid_, view_, {}, {5, 150}))) << "below the last row";
    EXPECT_EQ("none", Print(PartAt(grid_, view_, {}, {300, 0}))) << "outside";
}

TEST_F(AccessibleTest, StepsPassWhatIsHiddenAndGoAsTheEyeDoes) {
    using Step = AccessibleStep;
    grid_.SetColWidth(2, 0);
    grid_.SetRowHeight(2, 0);
    struct Case {
        AccessiblePart from;
        Step step;
        const char* to;
        const char* mirrored;
    };
    const Case cases[] = {
        {{-1, -1}, Step::firstChild, "0,-1", "0,-1"}, {{-1, -1}, Step::lastChild, "4,-1", "4,-1"},
        {{-1, -1}, Step::next, "none", "none"},       {{1, -1}, Step::down, "3,-1", "3,-1"},
        {{1, -1}, Step::next, "2,-1", "2,-1"},        {{0, -1}, Step::up, "none", "none"},
        {{4, -1}, Step::down, "none", "none"},        {{4, -1}, Step::next, "none", "none"},
        {{1, -1}, Step::left, "none", "none"},        {{1, -1}, Step::lastChild, "1,3", "1,3"},
        {{1, 1}, Step::right, "1,3", "1,0"},          {{1, 1}, Step::left, "1,0", "1,3"},
        {{1, 1}, Step::next, "1,2", "1,2"},           {{1, 0}, Step::previous, "none", "none"},
        {{1, 3}, Step::right, "none", "1,1"},         {{3, 1}, Step::up, "1,1", "1,1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(Print(c.from) + " " + std::to_string(static_cast<int>(c.step)));
        for (const bool mirrored : {false, true}) {
            grid_.SetRightToLeft(mirrored);
            EXPECT_EQ(mirrored ? c.mirrored : c.to, Print(StepFrom(grid_, c.from, c.step)));
        }
    }
}

TEST_F(AccessibleTest, EveryPartHasANumberThatLeadsBackToIt) {
    for (int row = 0; row < 5; ++row) {
        for (int col = -1; col < 4; ++col) {
            const AccessiblePart part{row, col};
            EXPECT_EQ(part, ChildOf(grid_, {}, IdInGrid(grid_, part)).value());
        }
    }
    for (const int id : {0, 6, -21, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ("none", Print(ChildOf(grid_, {}, id))) << id;
    }
    EXPECT_EQ("2,3", Print(ChildOf(grid_, {2, -1}, 4)));
    for (const auto& [col, id] : {std::pair{-1, 5}, {-1, -1}, {1, 1}}) {
        EXPECT_EQ("none", Print(ChildOf(grid_, {2, col}, id)));
    }
    // The largest grid of all still has a number for its last cell.
    Grid large;
    large.SetRows(Grid::maxRows);
    large.SetCols(127);
    const AccessiblePart last{Grid::maxRows - 1, 126};
    EXPECT_EQ(last, ChildOf(large, {}, IdInGrid(large, last)).value());
    Grid empty;
    empty.SetFixedRows(0);
    empty.SetRows(0);
    EXPECT_EQ("none", Print(ChildOf(empty, {}, -1)));
    EXPECT_EQ(0, ChildCount(empty, {}));
    EXPECT_EQ("none", Print(StepFrom(empty, {}, AccessibleStep::lastChild)));
}

TEST_F(AccessibleTest, SelectingIsWhatAPressDoes) {
    namespace select = accessible_select;
    struct Case {
        AccessiblePart part;
        long flags;
        std::optional<Cursor> selected;
    };
    const Case cases[] = {
        {{2, 2}, select::takeFocus, Cursor{2, 2, 2, 2}},
        {{2, 2}, select::takeSelection, Cursor{2, 2, 2, 2}},
        {{2, 2}, select::extendSelection, Cursor{1, 1, 2, 2}},
        {{2, -1}, select::takeSelection, Cursor{2, 1, 2, 3}},
        {{3, -1}, select::extendSelection, Cursor{1, 1, 3, 3}},
        {{0, 2}, select::takeSelection, Cursor{1, 2, 4, 2}},
        {{0, 0}, select::takeSelection, Cursor{1, 1, 4, 3}},
        {{-1, -1}, select::takeFocus, Cursor{1, 1, 1, 1}},
        {{-1, -1}, select::takeSelection, {}},
        {{2, -1}, select::takeFocus, {}},
        {{0, 2}, select::takeFocus, {}},
        {{2, 2}, 0, {}},
        {{2, 2}, 8, {}},
        {{2, 2}, select::takeSelection | select::extendSelection, {}},
    };
    for (const Case& c : cases) {
        grid_.MoveTo(1, 1);
        EXPECT_TRUE(SelectPart(grid_, view_, c.part, c.flags) == c.selected) << Print(c.part) << " " << c.flags;
    }
    grid_.SetColWidth(2, 0);
    EXPECT_FALSE(SelectPart(grid_, view_, {2, 2}, select::takeFocus)) << "hidden";
    grid_.SetAllowBigSelection(false);
    EXPECT_FALSE(SelectPart(grid_, view_, {0, 1}, select::takeSelection)) << "no whole columns";
    grid_.SetEnabled(false);
    EXPECT_FALSE(SelectPart(grid_, view_, {2, 1}, select::takeFocus)) << "disabled";
}

TEST_F(AccessibleTest, SelectedPartsAreCountedWithoutBeingMade) {
    grid_.Select(1, 1, 3, 2);
    const auto selected = [this](int row, int col, int at) {
        const SelectedParts parts = SelectedIn(grid_, {row, col});
        return std::to_string(parts.Count()) + (parts.Count() > at ? " " + Print(parts.At(at)) : "");
    };
    EXPECT_EQ("6 2,2", selected(-1, -1, 3));
    EXPECT_EQ("2 2,1", selected(2, -1, 0));
    EXPECT_EQ("0", selected(4, -1, 0));
    EXPECT_EQ("0", selected(2, 1, 0));
    grid_.SetSelectionMode(GridSelectionMode::byRow);
    EXPECT_EQ("3 3,-1", selected(-1, -1, 2));
}

// ---- Events --------------------------------------------------------------------------------------------------------

// A grid that notes what happens as its window does.
class AccessibleEventsTest : public AccessibleTest, private GridListener {
  protected:
    AccessibleEventsTest() {
        grid_.AddListener(this);
        events_.NoteStructure();
        events_.NoteCursor();
        Taken();
    }
    ~AccessibleEventsTest() override { grid_.RemoveListener(this); }

    // Cells by row and column, for the current state of the grid.
    std::string Taken() {
        std::string log;
        for (const AccessibleEvent& event : events_.Take(grid_, view_.focused, edited_)) {
            const char* names[] = {"reorder", "focus", "selection", "within", "value", "name"};
            log += names[static_cast<int>(event.kind)];
            const auto part = ChildOf(grid_, {}, event.childId);
            log += part ? " " + Print(part) + "\n" : "\n";
        }
        EXPECT_FALSE(events_.Pending());
        return log;
    }

    AccessibleEvents events_;
    bool edited_ = false;

  private:
    void RowColChange() override { events_.NoteCursor(); }
    void SelChange() override { events_.NoteCursor(); }
    void Invalidated(GridChange change, const CellRange& range) override {
        if (change == GridChange::texts && AccessibleEvents::Concerned(grid_, range)) {
            events_.NoteTexts(grid_, range);
        } else if (change == GridChange::layout) {
            events_.NoteStructure();
        }
    }
};

TEST_F(AccessibleEventsTest, MovesAreToldOfOnceAndOnlyTheLastOfThem) {
    grid_.MoveTo(2, 2);
    grid_.MoveTo(3, 1);
    EXPECT_TRUE(events_.Pending());
    EXPECT_EQ("focus 3,1\nselection 3,1\n", Taken());
    EXPECT_EQ("", Taken());
    grid_.MoveTo(2, 2);
    grid_.MoveTo(3, 1);
    EXPECT_EQ("", Taken()) << "back where it was";
    grid_.Select(3, 1, 4, 2);
    EXPECT_EQ("within\n", Taken()) << "the cursor stays";
    grid_.MoveTo(3, 1);
    EXPECT_EQ("selection 3,1\n", Taken());
}

TEST_F(AccessibleEventsTest, FocusIsToldOfWhereItIs) {
    view_.focused = false;
    grid_.MoveTo(2, 2);
    EXPECT_EQ("selection 2,2\n", Taken());
    view_.focused = true;
    events_.NoteFocus();
    EXPECT_EQ("focus 2,2\n", Taken());
    grid_.SetFixedRows(0);
    grid_.SetRows(0);
    Taken();
    events_.NoteFocus();
    EXPECT_EQ("focus\n", Taken()) << "the grid itself, without a cell";
}

TEST_F(AccessibleEventsTest, RowsThatComeOrGoAreOneEvent) {
    for (int i = 0; i < 1000; ++i) {
        grid_.AddItem(u"a\tb");
    }
    EXPECT_EQ("reorder\n", Taken());
    grid_.SetColWidth(1, 3000);
    grid_.SetRowHeight(2, 500);
    EXPECT_EQ("", Taken()) << "sizes are no structure";
    grid_.AddItem(u"new", 1);
    EXPECT_EQ("reorder\nfocus 1,1\n", Taken()) << "another row stands under the cursor";
    grid_.SetRows(2);
    EXPECT_EQ("reorder\n", Taken());
    grid_.SetColPosition(1, 2);
    EXPECT_EQ("reorder\n", Taken());
}

TEST_F(AccessibleEventsTest, ValuesOfTheCurrentCellAndOfEntries) {
    grid_.SetTextMatrix(2, 2, u"elsewhere");
    EXPECT_EQ("", Taken());
    grid_.SetTextMatrix(1, 1, u"here");
    EXPECT_EQ("value 1,1\n", Taken());
    grid_.SetCellForeColor(0xFF);
    EXPECT_EQ("", Taken()) << "colours are no value";
    // An open editor has taken the text; its own events tell of typing.
    edited_ = true;
    grid_.SetTextMatrix(1, 1, u"");
    EXPECT_EQ("", Taken());
    // The entry is written, and the cursor goes on at once.
    edited_ = false;
    grid_.SetTextMatrix(1, 1, u"there");
    events_.NoteValue(1, 1);
    events_.NoteValue(1, 1);
    grid_.MoveTo(1, 2);
    EXPECT_EQ("focus 1,2\nselection 1,2\nvalue 1,1\n", Taken());
    events_.NoteValue(4, 1);
    grid_.SetRows(3);
    EXPECT_EQ("reorder\n", Taken()) << "its row is gone";
    for (int i = 0; i < 1000; ++i) {
        events_.NoteValue(1, i % 4);
        events_.NoteValue(2, i % 4);
    }
    EXPECT_LE(Taken().size(), 16U * 10);
}

TEST_F(AccessibleEventsTest, HeadersAreCalledByTheirTexts) {
    grid_.SetTextMatrix(0, 2, u"Pieces");
    grid_.SetTextMatrix(3, 0, u"third");
    grid_.SetTextMatrix(0, 2, u"Amount");
    EXPECT_EQ("name 0,2\nname 3,0\n", Taken());
    grid_.SetColAlignment(2, GridAlignment::rightTop);
    EXPECT_EQ("", Taken()) << "looks are no name";
    grid_.AddItem(u"new", 1);
    grid_.SetTextMatrix(2, 0, u"2");
    EXPECT_EQ("reorder\nfocus 1,1\n", Taken()) << "which has everything read anew";
    grid_.Clear();
    const std::string cleared = Taken();
    EXPECT_NE(cleared.find("name 0,0\n"), std::string::npos);
    EXPECT_LE(cleared.size(), 17U * 10) << "and as few of the many that a program changes at once";
}

}  // namespace
}  // namespace qvx::flexgrid
