#include "controls/grid/cell_edit.h"

#include <gtest/gtest.h>

#include <functional>

#include "controls/grid/cell_step.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

// An editor and a host program in one, which write down what happens to them, one line a call.
class Recorder {
  public:
    explicit Recorder(flexgrid::Grid& grid) : grid_(grid) {}

    void MoveFrame(const EditorPlacement& p) {
        Note("frame " + std::to_string(p.frame.left) + "," + std::to_string(p.frame.top) + " " +
             std::to_string(p.frame.width) + "x" + std::to_string(p.frame.height));
    }
    void MoveCombo(const EditorPlacement& p) {
        Note("combo " + std::to_string(p.comboLeft) + "," + std::to_string(p.comboTop) + " " +
             std::to_string(p.comboWidth));
    }
    void BringComboToFront() { Note("front"); }
    void SetComboMaxLength(int length) { maxLength = length; }
    void SetComboText(TextView text) {
        comboText = text;
        list.listIndex = -1;
        Note("text '" + Narrow(text) + "'");
    }
    Text ComboText() const { return comboText; }
    void SetComboTag(TextView text) {
        comboTag = text;
        Note("tag '" + Narrow(text) + "'");
    }
    Text ComboTag() const { return comboTag; }
    void ShowFrame(bool shown) {
        if (failOnShow && shown) throw RunTimeError(5, u"Invalid procedure call or argument");
        Note(shown ? "show" : "hide");
    }
    void SetFrameTag(TextView text) { frameTag = text; }
    Text FrameTag() const { return frameTag; }
    void DropDown() { Note("drop, cell '" + Narrow(grid_.Text()) + "'"); }
    void FocusCombo() { Note("focus, cell '" + Narrow(grid_.Text()) + "'"); }
    ListState List() const { return list; }
    CellBox Cell() const { return {960, 240, 1200, 255}; }
    DateSettings DateSettingsNow() const { return {ShortDateOrder::monthDayYear, 2024, u"/"}; }
    int ScrollBarPixels() const { return 17; }
    int TwipsPerPixelX() const { return 15; }

    void BeforeCellChange(int row, int col, const Text& data, bool& cancel) {
        Note("before " + At(row, col) + " '" + Narrow(data) + "'" + Flag(cancel));
        if (onBefore) onBefore(cancel);
    }
    void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) {
        Note("after " + At(row, col) + " '" + Narrow(oldData) + "' '" + Narrow(newData) + "' cell '" +
             Narrow(grid_.TextMatrix(row, col)) + "'" + Flag(cancel));
        if (onAfter) onAfter(cancel);
    }
    void OnError(int number, TextView description, bool& response) {
        Note("error " + std::to_string(number) + " " + Narrow(description) + Flag(response));
        if (onError) onError(response);
    }
    void ReportError(int number, TextView) { Note("report " + std::to_string(number)); }

    std::string Take() { return std::exchange(log_, {}); }

    int maxLength = -1;
    Text comboText, comboTag, frameTag;
    ListState list;
    bool failOnShow = false;
    std::function<void(bool&)> onBefore, onAfter, onError;

  private:
    static std::string At(int row, int col) { return std::to_string(row) + "," + std::to_string(col); }
    static std::string Flag(bool flag) { return flag ? " flag" : ""; }
    void Note(const std::string& line) { log_ += line + "\n"; }

    flexgrid::Grid& grid_;
    std::string log_;
};

class CellEditTest : public ::testing::Test {
  protected:
    CellEditTest() : host(grid) {
        Fill(grid, {u"No\tName\tQty\tRate\tDate\tItem", u"1\tfirst\t\t\t\tPen", u"2\t\t\t\t\t"});
        grid.SetAppearance(flexgrid::GridAppearance::flat);
        state.columnsDataType = u";Qty-0;Rate-1;Date-2;";
        state.listColumns = u";Item;";
        state.unChangableColumns = u";Item;";
        state.dateFormat = u"mmm/yyyy";
        host.list = ListOf({u"Pen", u"Pencil", u"Ink"});
    }
    bool Open(int row, int col) {
        grid.MoveTo(row, col);
        host.Take();
        return ShowCellEditor(grid, state, host, host, GetActiveList(grid, state) == freeTextEditor);
    }
    void Commit() { CommitEdit(grid, state, history, host, host); }
    std::string Cell(int row, int col) const { return Narrow(grid.TextMatrix(row, col)); }

    flexgrid::Grid grid;
    ControlState state;
    EditHistory history{grid};
    Recorder host;
};

TEST_F(CellEditTest, OnlyWhatStandsInTheCellAfterwardsIsAStep) {
    const auto edit = [&](TextView typed) {
        ASSERT_TRUE(Open(1, 1));
        host.comboText = typed;
        Commit();
    };
    edit(u"first");
    EXPECT_FALSE(history.CanUndo()) << "the same text";
    ASSERT_TRUE(Open(1, 1));
    host.comboText = u"x";
    AbandonEdit(host);
    Commit();
    EXPECT_FALSE(history.CanUndo()) << "abandoned";
    host.onAfter = [](bool& cancel) { cancel = true; };
    edit(u"x");
    EXPECT_FALSE(history.CanUndo()) << "cancelled";
    host.onAfter = [&](bool&) { grid.RemoveItem(2); };
    edit(u"x");
    EXPECT_FALSE(history.CanUndo()) << "its row may be another one";
    host.onAfter = nullptr;
    edit(u"y");
    ASSERT_TRUE(history.CanUndo());
    history.Undo(state);
    EXPECT_EQ("x", Cell(1, 1));
}

TEST_F(CellEditTest, TheEditorTakesAsMuchAsItsColumn) {
    state.columnsMaxLength = u";Name-30;";
    ASSERT_TRUE(Open(1, 1));
    EXPECT_EQ(30, host.maxLength);
    Commit();
    ASSERT_TRUE(Open(1, 2));
    EXPECT_EQ(0, host.maxLength) << "no limit";
}

TEST_F(CellEditTest, OpensFreeTextInThePrescribedOrder) {
    EXPECT_TRUE(Open(1, 1));
    EXPECT_EQ(host.Take(),
              "before 1,1 'first'\nframe 960,240 1200x255\ncombo -30,-30 1515\nfront\ntext ''\ntag 'first'\nshow\n"
              "text 'first'\nfocus, cell ''\n");
    EXPECT_EQ(state.editRow, 1);
    EXPECT_EQ(state.editCol, 1);
    EXPECT_FALSE(state.editing);
}

TEST_F(CellEditTest, InAGridFromRightToLeftTheButtonIsOutOfSightAtTheLeft) {
    grid.SetRightToLeft(true);
    EXPECT_TRUE(Open(1, 1));
    EXPECT_NE(host.Take().find("combo -285,-30 1515\n"), std::string::npos);
    EXPECT_TRUE(Open(1, 5));
    EXPECT_NE(host.Take().find("combo -30,-30 1260\n"), std::string::npos);
}

TEST_F(CellEditTest, OpensAListColumnWithItsButtonInsideAndItsListDown) {
    EXPECT_TRUE(Open(1, 5));
    EXPECT_EQ(host.Take(),
              "before 1,5 'Pen'\nframe 960,240 1200x255\ncombo -30,-30 1260\nfront\ntext ''\ntag 'Pen'\nshow\n"
              "text 'Pen'\ndrop, cell ''\nfocus, cell ''\n");
}

TEST_F(CellEditTest, FrameMovesByTenTwipsWhenAppearanceAndBorderShareABit) {
    using flexgrid::GridAppearance;
    using flexgrid::GridBorder;
    for (const GridAppearance appearance : {GridAppearance::flat, GridAppearance::threeD}) {
        for (const GridBorder border : {GridBorder::none, GridBorder::single}) {
            grid.SetAppearance(appearance);
            grid.SetBorderStyle(border);
            Open(1, 1);
            const bool both = appearance == GridAppearance::threeD && border == GridBorder::single;
            EXPECT_NE(host.Take().find(both ? "frame 950,230 1200x255" : "frame 960,240 1200x255"), std::string::npos);
            Commit();
        }
    }
}

TEST_F(CellEditTest, HiddenColumnIsNeverOpenedNorAskedAbout) {
    grid.SetColWidth(1, 0);
    EXPECT_FALSE(Open(1, 1));
    EXPECT_EQ(host.Take(), "");
    EXPECT_EQ(Cell(1, 1), "first");
}

TEST_F(CellEditTest, RefusedEditLeavesTheCellAlone) {
    host.onBefore = [](bool& cancel) { cancel = true; };
    EXPECT_FALSE(Open(1, 1));
    EXPECT_EQ(host.Take(), "before 1,1 'first'\n");
    EXPECT_EQ(Cell(1, 1), "first");
    EXPECT_EQ(state.editRow, -1);
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_FALSE(state.changed);
}

TEST_F(CellEditTest, EditGoesWhereTheHandlerPutTheCurrentCell) {
    host.onBefore = [this](bool&) { grid.MoveTo(2, 2); };
    EXPECT_TRUE(Open(1, 1));
    EXPECT_EQ(state.editRow, 2);
    EXPECT_EQ(state.editCol, 2);
    host.comboText = u"9";
    host.onBefore = nullptr;
    Commit();
    EXPECT_EQ(Cell(1, 1), "first");
    EXPECT_EQ(Cell(2, 2), "9");
}

TEST_F(CellEditTest, ErrorWhileOpeningIsReportedUnlessTheHostAnswersIt) {
    host.failOnShow = true;
    Open(1, 1);
    std::string log = host.Take();
    EXPECT_NE(log.find("error 5 Invalid procedure call or argument flag\nreport 5\n"), std::string::npos) << log;
    EXPECT_FALSE(state.editing);
    host.onError = [](bool& response) { response = false; };
    Open(1, 1);
    log = host.Take();
    EXPECT_NE(log.find("error 5"), std::string::npos);
    EXPECT_EQ(log.find("report"), std::string::npos);
}

TEST_F(CellEditTest, HandlerThatTakesTheColumnsAwayIsAnError) {
    host.onBefore = [this](bool&) {
        grid.SetFixedCols(0);
        grid.SetCols(0);
    };
    Open(1, 1);
    EXPECT_NE(host.Take().find("report 381"), std::string::npos);
}

TEST_F(CellEditTest, CommitCleansWritesAndTells) {
    struct Case {
        int col;
        TextView typed;
        std::string cell;
    };
    const Case cases[] = {{1, u"45%", "45%"},  {2, u"45%", "45"},  {2, u"3.75", "375"},        {2, u"", "0"},
                          {3, u"12abc", "12"}, {3, u"1,234", "1"}, {4, u"3-2024", "Mar/2024"}, {4, u"soon", ""},
                          {5, u"in", "Ink"},   {5, u"xyz", "Pen"}};
    for (const Case& c : cases) {
        const std::string old = Cell(1, c.col);
        ASSERT_TRUE(Open(1, c.col));
        host.comboText = c.typed;
        host.Take();
        state.changed = false;
        Commit();
        EXPECT_EQ(Cell(1, c.col), c.cell) << Narrow(c.typed);
        const std::string told =
            "after 1," + std::to_string(c.col) + " '" + old + "' '" + c.cell + "' cell '" + c.cell + "'\n";
        const std::string log = host.Take();
        EXPECT_NE(log.find(told), std::string::npos) << log;
        EXPECT_EQ(state.editRow, -1);
        EXPECT_EQ(state.editCol, -1);
        EXPECT_TRUE(state.changed);
        grid.SetTextMatrix(1, 5, u"Pen");
    }
}

TEST_F(CellEditTest, SecondCommitOfAnEditDoesNothing) {
    Open(1, 2);
    host.comboText = u"7";
    Commit();
    host.Take();
    grid.SetTextMatrix(1, 2, u"other");
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_EQ(Cell(1, 2), "other");
}

TEST_F(CellEditTest, CommitFromWithinItsOwnEventDoesNothing) {
    int events = 0;
    host.onAfter = [&](bool&) {
        ++events;
        Commit();
    };
    Open(1, 2);
    host.comboText = u"7";
    Commit();
    EXPECT_EQ(events, 1);
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, EditOpenedInTheEventStaysOpen) {
    host.onAfter = [&](bool&) {
        host.onAfter = nullptr;
        Open(2, 1);
    };
    Open(1, 2);
    host.comboText = u"7";
    Commit();
    EXPECT_EQ(state.editRow, 2);
    EXPECT_EQ(state.editCol, 1);
    host.comboText = u"next";
    Commit();
    EXPECT_EQ(Cell(2, 1), "next");
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, CancelledCommitPutsTheOldTextBackAndStillCountsAsAChange) {
    host.onAfter = [](bool& cancel) { cancel = true; };
    Open(1, 1);
    host.comboText = u"second";
    Commit();
    EXPECT_EQ(Cell(1, 1), "first");
    EXPECT_TRUE(state.changed);
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, HandlerMayRemoveTheRowItIsToldAbout) {
    host.onAfter = [this](bool& cancel) {
        grid.SetRows(2);
        cancel = true;
    };
    Open(2, 1);
    Commit();
    EXPECT_EQ(host.Take().find("report"), std::string::npos);
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, EditWhoseRowIsGoneMovesToTheLastRowAndStaysOpen) {
    Open(2, 2);
    host.comboText = u"9";
    host.Take();
    grid.SetRows(2);
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_EQ(state.editRow, 1);
    EXPECT_EQ(state.editCol, 2);
    EXPECT_FALSE(state.changed);
    EXPECT_EQ(Cell(1, 2), "");
    Commit();
    EXPECT_EQ(Cell(1, 2), "9");
    EXPECT_EQ(state.editRow, -1);
}

TEST_F(CellEditTest, EditWithoutAnyRowLeftEnds) {
    Open(1, 1);
    grid.SetFixedRows(0);
    grid.SetRows(0);
    host.Take();
    Commit();
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_LT(state.editRow, 0);
}

TEST_F(CellEditTest, EditWhoseColumnIsGoneEndsUnwritten) {
    Open(1, 5);
    grid.SetCols(3);
    host.Take();
    Commit();
    EXPECT_EQ(host.Take(), "");
    EXPECT_EQ(state.editRow, -1);
    EXPECT_FALSE(state.changed);
}

TEST_F(CellEditTest, AbandonedEditWritesItsOldTextUncleanedAndUnmatched) {
    grid.SetTextMatrix(2, 2, u"n/a");
    for (const auto& [row, col, old] :
         {std::tuple(1, 1, "first"), {1, 2, ""}, {2, 2, "n/a"}, {2, 5, ""}, {1, 5, "Pen"}}) {
        ASSERT_TRUE(Open(row, col));
        host.comboText = u"99";
        host.list.listIndex = 2;
        host.Take();
        AbandonEdit(host);
        EXPECT_EQ(host.Take(), std::string("text '") + old + "'\nhide\n");
        EXPECT_EQ(host.frameTag, u"ESCAPE");
        Commit();
        EXPECT_EQ(Cell(row, col), old);
        EXPECT_EQ(host.frameTag, u"");
    }
    // The next edit is an ordinary one again.
    Open(1, 2);
    host.comboText = u"5";
    Commit();
    EXPECT_EQ(Cell(1, 2), "5");
}

TEST_F(CellEditTest, ChosenEntryOfAListOnlyColumnWins) {
    Open(2, 5);
    host.comboText = u"Pe";
    host.list.listIndex = 1;
    Commit();
    EXPECT_EQ(Cell(2, 5), "Pencil");
}

TEST_F(CellEditTest, FreeListColumnTakesAnyText) {
    state.unChangableColumns.clear();
    Open(2, 5);
    host.comboText = u"Chalk";
    Commit();
    EXPECT_EQ(Cell(2, 5), "Chalk");
}

}  // namespace
}  // namespace qvx::grid
