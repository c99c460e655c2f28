#include "controls/grid/cell_step.h"

#include <gtest/gtest.h>

#include "common/keys.h"
#include "controls/grid/editor_return.h"
#include "controls/grid/lifecycle.h"
#include "controls/grid/list_arrows.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using Kind = CellStep::Kind;

// Columns: No (fixed), A, B (hidden), C (inactive), D (non-focus), E; three data rows.
class NavigationTest : public EntryGridTest {
  protected:
    NavigationTest() {
        Fill(grid, {u"No\tA\tB\tC\tD\tE", u"1", u"2", u"3"});
        grid.SetColWidth(2, 0);
        state.inActiveColumns = u";C;";
        state.nonFocusColumns = u";D;";
    }
    CellStep Forward(int row, int col, bool leave = true) {
        grid.MoveTo(row, col);
        return StepForward(grid, state, leave);
    }
};

TEST_F(NavigationTest, ForwardSkipsWhatMayNotBeEnteredAndWraps) {
    const CellStep leave{Kind::Leave, -1, -1};
    const CellStep newRow{Kind::AddRow, 4, 1};
    EXPECT_EQ(Forward(1, 1), (CellStep{Kind::Move, 1, 5}));
    EXPECT_EQ(Forward(1, 5), (CellStep{Kind::Move, 2, 1}));
    EXPECT_EQ(Forward(3, 5), leave);
    EXPECT_EQ(Forward(3, 5, false), CellStep{});
    state.autoAddNew = true;
    EXPECT_EQ(Forward(3, 5), newRow);
    EXPECT_EQ(Forward(3, 5, false), newRow);
    EXPECT_EQ(Forward(2, 5), (CellStep{Kind::Move, 3, 1}));
    // From a last row that is still empty, Tab leads out and nothing adds another row.
    state.autoRecordNumber = true;
    state.columnsDataType = u";E-1;";
    grid.SetTextMatrix(3, 5, u"0");
    EXPECT_EQ(Forward(3, 5), leave);
    EXPECT_EQ(Forward(3, 5, false), CellStep{});
    EXPECT_EQ(StepVertically(grid, state, 1), CellStep{});
    grid.SetTextMatrix(3, 5, u"7");
    EXPECT_EQ(Forward(3, 5), newRow);
    EXPECT_EQ(StepVertically(grid, state, 1), (CellStep{Kind::AddRow, 4, 5}));
    EXPECT_EQ(StepOf(DecideGridKey(keys::down, 0, grid, state), grid, state), (CellStep{Kind::AddRow, 4, 5}));
    grid.MoveTo(2, 5);
    EXPECT_EQ(DecideGridKey(keys::down, 0, grid, state), GridKey::PassOn) << "the inner grid moves within its rows";
    state.inActiveColumns = u";A;C;D;E;";
    EXPECT_EQ(Forward(3, 5), leave) << "nothing could be entered in the new row either";
}

TEST_F(NavigationTest, ForwardPassesHiddenRows) {
    grid.SetRowHeight(2, 0);
    EXPECT_EQ(Forward(1, 5), (CellStep{Kind::Move, 3, 1}));
    grid.SetRowHeight(3, 0);
    EXPECT_EQ(Forward(1, 5), (CellStep{Kind::Leave, -1, -1}));
}

TEST_F(NavigationTest, ArrowsPassHiddenAndNonFocusColumnsButReachInactiveOnes) {
    grid.MoveTo(1, 1);
    EXPECT_EQ(StepSideways(grid, state, -1), CellStep{});
    EXPECT_EQ(StepVertically(grid, state, 1), (CellStep{Kind::Move, 2, 1}));
    EXPECT_EQ(StepVertically(grid, state, -1), CellStep{});
    grid.MoveTo(2, 3);
    for (const bool rightToLeft : {false, true}) {
        grid.SetRightToLeft(rightToLeft);
        EXPECT_EQ(StepOf(GridKey::Left, grid, state), (CellStep{Kind::Move, 2, rightToLeft ? 5 : 1}));
        EXPECT_EQ(StepOf(EditorKey::CommitRight, grid, state), (CellStep{Kind::Move, 2, rightToLeft ? 1 : 5}));
        EXPECT_EQ(StepOf(GridKey::ForwardStay, grid, state), (CellStep{Kind::Move, 2, 5})) << "Enter goes by number";
    }
}

// Programs may put the cursor on a header, and there may be several.
TEST_F(NavigationTest, StepsFromHeadersLeadToWhatScrolls) {
    grid.SetFixedCols(3);
    grid.SetFixedRows(2);
    state.inActiveColumns.clear();
    grid.MoveTo(0, 0);
    EXPECT_EQ(StepForward(grid, state, true), (CellStep{Kind::Move, 0, 3}));
    EXPECT_EQ(StepSideways(grid, state, 1), (CellStep{Kind::Move, 0, 3}));
    EXPECT_EQ(StepVertically(grid, state, 1), (CellStep{Kind::Move, 2, 0}));
}

TEST_F(NavigationTest, GetNextColumnAnswersAtOrBehindItsArgument) {
    // Non-focus columns qualify; a hidden or inactive one starts over at the first column that is not fixed.
    for (const auto& [start, answer] : {std::pair{1, 1}, {2, 1}, {3, 1}, {4, 4}, {5, 5}, {0, 0}, {-1, 1}, {-9, 1}}) {
        int col = start;
        EXPECT_EQ(GetNextColumn(grid, state, col), answer) << start;
        EXPECT_EQ(col, answer) << start;
    }
    int beyond = 6;
    EXPECT_THROW(GetNextColumn(grid, state, beyond), RunTimeError);
    state.inActiveColumns = u";A;C;D;E;";
    int col = 4;
    EXPECT_EQ(GetNextColumn(grid, state, col), 0);
    EXPECT_EQ(col, 1);
}

TEST_F(NavigationTest, ActiveListIsTheColumnOrTheFreeTextEditor) {
    state.listColumns = u";E;";
    for (const auto& [col, list] : {std::pair{5, 5}, {1, 100}}) {
        grid.MoveTo(1, col);
        EXPECT_EQ(GetActiveList(grid, state), list);
    }
}

constexpr int ctrl = keys::controlMask;
constexpr int alt = keys::altMask;
constexpr int shifted = keys::shiftMask;
using Keys = std::vector<std::pair<int, int>>;  // with what is held

TEST(GridKeys, TableOfKeys) {
    const std::pair<GridKey, Keys> plain[] = {
        {GridKey::Tab, {{keys::tab, ctrl}}},
        {GridKey::ForwardStay, {{keys::enter, 0}}},
        {GridKey::OpenEditor, {{keys::f2, 0}}},
        {GridKey::Left, {{keys::left, 0}}},
        {GridKey::Right, {{keys::right, 0}}},
        {GridKey::InsertRow, {{keys::insert, 0}}},
        {GridKey::Paste, {{keys::insert, shifted}, {'V', ctrl}}},
        {GridKey::Copy, {{keys::insert, ctrl}, {'C', ctrl}}},
        {GridKey::Cut, {{keys::deleteKey, shifted}, {'X', ctrl}}},
        {GridKey::Undo, {{'Z', ctrl}}},
        {GridKey::Redo, {{'Y', ctrl}, {'Z', ctrl | shifted}}},
        {GridKey::SelectAll, {{'A', ctrl}}},
        {GridKey::ClearCell, {{keys::deleteKey, 0}}},
        {GridKey::PassOn,
         {{keys::right, shifted},
          {keys::left, ctrl},
          {keys::f2, alt},
          {keys::down, 0},
          {'Z', shifted},
          {keys::insert, alt},
          {keys::deleteKey, ctrl},
          {'D', ctrl},
          {'R', ctrl},
          {keys::space, shifted},
          {keys::space, ctrl},
          {'A', 0},
          {'C', ctrl | alt}}},
    };
    struct Case {
        int key;
        int shift;
        GridKey does;
        int rowSel = 1;
        int colSel = 1;
        flexgrid::GridSelectionMode mode = flexgrid::GridSelectionMode::free;
        int keyColumn = -1;
        bool autoTab = true;
        bool extended = false;
    };
    constexpr auto free = flexgrid::GridSelectionMode::free;
    constexpr auto byRow = flexgrid::GridSelectionMode::byRow;
    constexpr auto byColumn = flexgrid::GridSelectionMode::byColumn;
    std::vector<Case> cases{
        {keys::enter, 0, GridKey::Nothing, 1, 1, free, -1, false},
        {keys::enter, 0, GridKey::EndEntry, 1, 1, free, 2},
        {keys::enter, 0, GridKey::ForwardStay, 1, 1, free, 1},
        {keys::enter, shifted, GridKey::Nothing, 1, 1, free, 2},
        {keys::deleteKey, shifted, GridKey::Cut, 1, 2},
        {keys::deleteKey, 0, GridKey::DeleteRow, 1, 2},
        {keys::deleteKey, 0, GridKey::ClearCell, 2, 1},
        {keys::deleteKey, ctrl, GridKey::PassOn, 1, 2},
        {keys::deleteKey, 0, GridKey::DeleteRow, 1, 1, byRow},
        {keys::deleteKey, 0, GridKey::ClearCell, 2, 1, byRow},
        {keys::deleteKey, 0, GridKey::ClearCell, 1, 2, byColumn},
        {'D', ctrl, GridKey::FillDown, 1, 1, free, -1, true, true},
        {'R', ctrl, GridKey::FillRight, 1, 1, free, -1, true, true},
        {keys::space, shifted, GridKey::SelectRow, 1, 1, free, -1, true, true},
        {keys::space, ctrl, GridKey::SelectColumn, 1, 1, free, -1, true, true},
        {keys::deleteKey, 0, GridKey::DeleteRow, 1, 2, free, -1, true, true},
        {keys::deleteKey, 0, GridKey::ClearCells, 2, 2, free, -1, true, true},
        {keys::deleteKey, 0, GridKey::ClearCells, 2, 1, free, -1, true, true},
        {keys::deleteKey, 0, GridKey::ClearCell, 1, 1, free, -1, true, true},
    };
    for (const auto& [does, pressed] : plain)
        for (const auto& [key, held] : pressed) cases.push_back({key, held, does});
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1\ta\t", u"2\t\t"});
    for (const Case& c : cases) {
        ControlState state;
        state.autoTab = c.autoTab;
        state.keyColumn = c.keyColumn;
        state.extendedKeys = c.extended;
        grid.SetSelectionMode(c.mode);
        grid.Select(1, 1, c.rowSel, c.colSel);
        EXPECT_EQ(DecideGridKey(c.key, c.shift, grid, state), c.does) << c.key << " shift " << c.shift;
    }
    grid.SetSelectionMode(flexgrid::GridSelectionMode::free);
    ControlState state;
    grid.Select(0, 0, 0, 2);
    EXPECT_EQ(DecideGridKey(keys::f8, 0, grid, state), GridKey::PassOn);
    state.markInvalid = true;
    EXPECT_EQ(DecideGridKey(keys::f8, 0, grid, state), GridKey::NextInvalid);
    EXPECT_EQ(DecideGridKey(keys::deleteKey, 0, grid, state), GridKey::ClearCell) << "the header is no row to delete";
    state.keyColumn = 9;
    EXPECT_THROW(DecideGridKey(keys::enter, 0, grid, state), RunTimeError);
    grid.SetFixedRows(0);
    grid.SetRows(0);
    EXPECT_EQ(DecideGridKey(keys::enter, 0, grid, state), GridKey::ForwardStay);
}

TEST(EditorKeys, TableOfKeys) {
    const Caret atStart{0, 0, 3}, inside{1, 0, 3}, atEnd{3, 0, 3}, all{0, 3, 3}, empty{0, 0, 0};
    // Texts of scripts that run from right to left: the start is at the right.
    const Caret hebrewStart{0, 0, 3, true}, hebrewEnd{3, 0, 3, true}, hebrewEmpty{0, 0, 0, true};
    struct Case {
        EditorKey does;
        Keys pressed;
        std::vector<Caret> carets;
        bool list = false;
    };
    const Case cases[] = {
        {EditorKey::CommitLeft, {{keys::left, 0}}, {atStart, hebrewEnd, hebrewEmpty}},
        {EditorKey::CommitLeft, {{keys::left, 0}}, {empty}, true},
        {EditorKey::PassOn, {{keys::left, 0}}, {inside, atEnd, all, hebrewStart}},
        {EditorKey::PassOn, {{keys::left, shifted}}, {atStart}},
        {EditorKey::CommitRight, {{keys::right, 0}}, {empty, hebrewStart, hebrewEmpty}},
        {EditorKey::CommitRight, {{keys::right, 0}}, {atEnd}, true},
        {EditorKey::PassOn, {{keys::right, 0}}, {inside, all, hebrewEnd}},
        {EditorKey::PassOn, {{keys::right, ctrl}}, {atEnd}},
        {EditorKey::CommitUp, {{keys::up, 0}}, {inside}},
        {EditorKey::CommitDown, {{keys::down, 0}}, {inside}},
        {EditorKey::CommitPage, {{keys::pageDown, 0}}, {inside}},
        {EditorKey::PassOn, {{keys::up, 0}, {keys::down, 0}, {keys::pageDown, 0}}, {inside}, true},
        {EditorKey::Nothing, {{keys::down, alt}, {keys::f4, 0}}, {inside}},
        {EditorKey::Abandon, {{keys::escape, 0}}, {inside}, true},
        {EditorKey::CommitForwardStay, {{keys::enter, 0}, {keys::enter, ctrl}}, {inside}},
        {EditorKey::PassOn, {{keys::home, 0}, {keys::deleteKey, 0}, {keys::f2, 0}, {keys::f4, alt}}, {inside}},
    };
    for (const Case& c : cases)
        for (const auto& [key, held] : c.pressed)
            for (const Caret& caret : c.carets)
                EXPECT_EQ(DecideEditorKey(key, held, caret, c.list, {}), c.does)
                    << key << " held " << held << " caret " << caret.start << (c.list ? " list" : "");
    ControlState noAutoTab;
    noAutoTab.autoTab = false;
    EXPECT_EQ(DecideEditorKey(keys::enter, keys::shiftMask, inside, false, noAutoTab), EditorKey::Commit);
    ControlState extended;
    extended.extendedKeys = true;
    EXPECT_EQ(DecideEditorKey(keys::enter, ctrl, inside, true, extended), EditorKey::CommitFill);
    EXPECT_EQ(DecideEditorKey(keys::enter, 0, inside, true, extended), EditorKey::CommitForwardStay);
}

TEST(DoubleClick, MeansTheCurrentCellOnly) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1", u"2"});
    grid.MoveTo(2, 1);
    EXPECT_TRUE(MeansCurrentCell({2, 1}, grid));
    for (const flexgrid::Hit& beside :
         {flexgrid::Hit{2, 2}, {1, 1}, {0, 1, true, false}, {2, 0, false, true}, {-1, 1}, {-1, -1}})
        EXPECT_FALSE(MeansCurrentCell(beside, grid)) << beside.row << "," << beside.col;
    grid.MoveTo(0, 1);
    EXPECT_FALSE(MeansCurrentCell({0, 1, true, false}, grid)) << "a header, where programs may put the cursor";
}

TEST(EditorKeys, CharactersThatOpenTheEditor) {
    for (const char16_t c : {u'a', u' ', u'%', u'-', u'\u00E9', u'\u4E2D', u'\b'}) EXPECT_TRUE(OpensEditor(c));
    for (const char16_t c : {u'\t', u'\r', u'\n', u'\x1B', u'\x7F', u'\x01', u'\0'}) EXPECT_FALSE(OpensEditor(c));
}

TEST(EditorKeys, ThatMeanNothingAloneLeaveTheEditorOutOfSight) {
    for (const int key : {keys::shift, keys::control, keys::alt}) EXPECT_FALSE(BringsEditorBack(key)) << key;
    for (const int key : {keys::space, keys::f2, int{'A'}}) EXPECT_TRUE(BringsEditorBack(key)) << key;
}

TEST_F(NavigationTest, ListsOpenInCellsWithAnArrow) {
    struct Case {
        ListArrows arrows;
        int col;
        int key, shift;
        bool arrow, otherArrow, opens;
    };
    const Case cases[] = {
        {ListArrows::none, 1, keys::f4, 0, false, false, false},
        {ListArrows::currentCell, 1, keys::f4, 0, true, false, true},
        {ListArrows::allCells, 1, keys::down, keys::altMask, true, true, true},
        {ListArrows::allCells, 1, keys::f4, keys::altMask, true, true, false},
        {ListArrows::allCells, 1, keys::down, 0, true, true, false},
        {ListArrows::allCells, 5, keys::f4, 0, false, false, false},  // has no list
        {ListArrows::allCells, 3, keys::f4, 0, false, false, false},  // cannot be edited
        {ListArrows::allCells, 2, keys::f4, 0, false, false, false},  // is hidden
    };
    state.listColumns = u";A;B;C;";
    for (const Case& c : cases) {
        state.listArrows = c.arrows;
        grid.MoveTo(2, c.col);
        EXPECT_EQ(c.arrow, HasListArrow(grid, state, 2, c.col, true)) << c.col;
        EXPECT_EQ(c.otherArrow, HasListArrow(grid, state, 1, c.col, false)) << c.col;
        EXPECT_EQ(c.opens, OpensList(c.key, c.shift, grid, state)) << c.col;
        EXPECT_EQ(c.opens, DecideGridKey(c.key, c.shift, grid, state) == GridKey::OpenEditor) << c.col;
    }
}

TEST(EditorReturn, TheEditorGetsTheFocusUnlessTheUserHasGoneElsewhere) {
    EXPECT_EQ(EditorReturn::Wait, DecideReturn(false, false, false, true));
    EXPECT_EQ(EditorReturn::Stay, DecideReturn(true, true, true, false));
    EXPECT_EQ(EditorReturn::TakeFocus, DecideReturn(true, true, false, true));
    EXPECT_EQ(EditorReturn::Commit, DecideReturn(true, true, false, false));
    EXPECT_EQ(EditorReturn::Commit, DecideReturn(true, false, false, true));
}

TEST(KeepsKey, TellsTheGridsKeysFromItsHosts) {
    const struct {
        bool whileOpen;
        bool whileClosed;
        Keys pressed;
    } cases[] = {
        {true,
         true,
         {{'A', 0}, {keys::down, 0}, {keys::home, ctrl}, {keys::deleteKey, 0}, {keys::enter, 0}, {keys::f2, 0}}},
        {true, false, {{keys::escape, 0}, {keys::f4, 0}, {keys::enter, ctrl}}},
        {false, false, {{keys::f2, shifted}, {keys::f1, 0}, {keys::f24, 0}}},
        // Clipboard and undo work on the grid and in an editor; nearly all else with Ctrl is the host's menus'.
        {true, true, {{'C', ctrl}, {'Z', ctrl}, {'Z', ctrl | shifted}, {keys::insert, ctrl}, {keys::insert, shifted}}},
        {true, false, {{'Z', ctrl | alt}, {keys::backspace, ctrl}}},
        {false, false, {{'S', ctrl}, {'D', ctrl}}},
        {true, false, {{'Q', ctrl | alt}}},  // types "@" on many keyboards
    };
    ControlState open;
    open.editRow = open.editCol = 1;
    ControlState closed;
    for (const auto& c : cases) {
        for (const auto& [key, held] : c.pressed) {
            EXPECT_EQ(KeepsKey(key, held, open), c.whileOpen) << key << " held " << held;
            EXPECT_EQ(KeepsKey(key, held, closed), c.whileClosed) << key << " held " << held;
        }
    }
    EXPECT_FALSE(KeepsKey(keys::f8, 0, closed));
    closed.extendedKeys = true;
    closed.markInvalid = true;
    EXPECT_TRUE(KeepsKey('D', ctrl, closed));
    EXPECT_TRUE(KeepsKey(keys::f8, 0, closed));
}

TEST(CellTip, ShowsTextThatDoesNotFit) {
    ControlState state;
    for (const bool wanted : {false, true}) {
        state.cellToolTip = wanted;
        EXPECT_EQ(CellTipText(state, u"long", true), wanted ? u"long" : u"");
        EXPECT_EQ(CellTipText(state, u"long", false), u"");
    }
}

class LifecycleTest : public EntryGridTest {
  protected:
    LifecycleTest() {
        grid.SetRows(3);
        grid.SetFormatString(u"No|Code|Name|Qty");
        state.listColumns = u";Name;Qty;";
        state.inVisibleColumns = u";Code;";
        state.autoRecordNumber = true;
    }
    std::string Widths() const {
        std::string shown;
        for (int col = 0; col < grid.Cols(); ++col) shown += grid.ColWidth(col) > 0 ? '|' : '.';
        return shown;
    }
};

TEST_F(LifecycleTest, FirstShowInRunModePreparesOnceAndTerminateUnloadsIt) {
    std::string lists;
    const auto load = [&](int col) { lists += "load " + std::to_string(col) + " "; };
    const auto unload = [&](int col) { lists += "unload " + std::to_string(col) + " "; };
    state.changed = true;
    Terminate(grid, state, unload);
    EXPECT_FALSE(state.changed);
    Show(grid, state, false, load);
    EXPECT_EQ(lists, "") << "not while the form is designed";
    EXPECT_EQ(Widths(), "||||");
    EXPECT_THROW(Show(grid, state, true, [](int) { throw RunTimeError(360, u"Object already loaded"); }), RunTimeError);
    EXPECT_FALSE(state.initialised);
    EXPECT_EQ(Widths(), "|.||") << "what came before the error is done";
    EXPECT_EQ(grid.TextMatrix(1, 0), u"");
    Show(grid, state, true, load);
    EXPECT_TRUE(state.initialised);
    EXPECT_EQ(grid.TextMatrix(0, 0), u"No");
    EXPECT_EQ(grid.TextMatrix(2, 0), u"2");
    grid.SetColWidth(1, 500);
    Show(grid, state, true, load);
    EXPECT_EQ(Widths(), "||||");
    state.stringFormat = u"[No]";
    Terminate(grid, state, unload);
    EXPECT_EQ(lists, "load 2 load 3 unload 2 unload 3 ");
    EXPECT_TRUE(state.stringFormat.empty());
}

TEST_F(LifecycleTest, InVisibleColumnsGiveBackTheFormatStringsWidths) {
    const int width = grid.ColWidth(1);
    const std::pair<const char16_t*, const char*> cases[] = {
        {u";code;Qty;", "|.|."}, {u";Qty;", "|||."}, {u"", "||||"}};
    for (const auto& [columns, shown] : cases) {
        state.inVisibleColumns = columns;
        ApplyInVisibleColumns(grid, state);
        EXPECT_EQ(Widths(), shown);
    }
    EXPECT_EQ(grid.ColWidth(1), width);
    EXPECT_EQ(grid.Rows(), 3);
}

TEST_F(LifecycleTest, NumberingStartsAtRowOneWhateverIsFixed) {
    grid.SetRows(5);
    grid.SetFixedRows(2);
    state.autoRecordNumber = false;
    Renumber(grid, state);
    EXPECT_EQ(grid.TextMatrix(1, 0), u"");
    state.autoRecordNumber = true;
    Renumber(grid, state);
    EXPECT_EQ(grid.TextMatrix(1, 0), u"1");
    EXPECT_EQ(grid.TextMatrix(4, 0), u"4");
    grid.SetFixedCols(0);
    grid.SetCols(0);
    EXPECT_NO_THROW(Renumber(grid, state)) << "there is no column for the numbers";
}

}  // namespace
}  // namespace qvx::grid
