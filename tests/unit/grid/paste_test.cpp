#include "controls/grid/paste.h"
#include "controls/grid/copied_cells.h"

#include <gtest/gtest.h>

#include "tests/unit/grid/editor_host.h"

namespace qvx::grid {
namespace {

class PasteTest : public EntryGridTest {
  protected:
    PasteTest() {
        Fill(grid, {u"No\tName\tQty\tRate\tItem\tLocked\tKey", u"1\ta\t10\t1.5\tCherry\tx\tk1",
                    u"2\tb\t20\t2.5\t\ty\tk2", u"3\tc\t30\t3.5\tApple\tz\tk3"});
        state.columnsDataType = u";Qty-0;Rate-1;";
        state.unChangableColumns = u";Item;";
        state.inActiveColumns = u";Locked;";
        grid.SetColWidth(key, 0);
        sources.list = [this](int col) {
            EXPECT_EQ(item, col);
            return ListOf({u"Apple", u"Banana", u"Cherry"});
        };
    }
    enum Columns { no, name, qty, rate, item, locked, key };

    void Paste(TextView text) {
        const ClipboardCells cells(text);
        Write(CellRectangle(grid, cells));
    }
    void Write(const CellRectangle& rectangle) {
        CellWriter<EditorHost>(grid, state, history, host, sources).Write(rectangle);
    }
    std::string Row(int row) const {
        std::string out;
        for (int col = 0; col < grid.Cols(); ++col) out += (col > 0 ? "|" : "") + Narrow(grid.TextMatrix(row, col));
        return out;
    }

    EditorHost host{grid};
    CellSources sources;
};

// What comes from the clipboard ends where typing would have, and is cleaned after that.
TEST_F(PasteTest, CutsTextsToTheColumnsLength) {
    state.columnsMaxLength = u";name-3;Qty-2;Item-2;";
    for (const bool listens : {true, false}) {
        host.listens = listens;
        grid.Select(1, name, 1, name);
        Paste(u"abcdef\t1234\t1234\tBanana");
        EXPECT_EQ(Row(1), "1|abc|12|1234|Banana|x|k1");
        Paste(u"ab\U0001F600\t7");
        EXPECT_EQ(Row(1), "1|ab|7|1234|Banana|x|k1") << "half a character is none";
    }
}

TEST_F(PasteTest, ReachesTheCellsFromTheFirstSelectedOneOn) {
    const std::string first = "1,a,10,1.5,Cherry,x,k1/";
    const std::string second = "2,b,20,2.5,,y,k2/";
    const std::string third = "3,c,30,3.5,Apple,z,k3";
    const struct {
        flexgrid::Cursor selected;
        TextView text;
        std::string rows;
    } cases[] = {
        {{1, name, 1, name}, u"x\t5\r\ny", "1,x,5,1.5,Cherry,x,k1/2,y,20,2.5,,y,k2/" + third},
        {{2, qty, 1, name}, u"x\t5\r\n", "1,x,5,1.5,Cherry,x,k1/" + second + third},
        // One value goes everywhere.
        {{1, name, 2, qty}, u"7\n", "1,7,7,1.5,Cherry,x,k1/2,7,7,2.5,,y,k2/" + third},
        // Below the last row and behind the last column nothing is.
        {{3, rate, 3, rate}, u"1\tba\tq\tq\tq\tq\r\n2\tap\r\n", first + second + "3,c,30,1,Banana,z,k3"},
        // Fixed cells keep their texts, and their places in the rectangle.
        {{0, no, 0, no}, u"H\tH\n9\tx\n", "1,x,10,1.5,Cherry,x,k1/" + second + third},
        // Cleaned by their columns: digits, numerics, entries of the list.
        {{2, qty, 2, qty}, u"3.75%\t12abc\tzzz", first + "2,b,375,12,Apple,y,k2/" + third},
        {{1, qty, 1, qty}, u"\t\tzzz", "1,a,0,0,Cherry,x,k1/" + second + third},
        {{2, item, 2, item}, u"\r\nCH", first + second + "3,c,30,3.5,Cherry,z,k3"},
    };
    const std::string headers = "No,Name,Qty,Rate,Item,Locked,Key/";
    for (const auto& c : cases) {
        for (const bool listens : {false, true}) {
            SCOPED_TRACE(Narrow(c.text));
            host.listens = listens;
            grid.Select(c.selected.row, c.selected.col, c.selected.rowSel, c.selected.colSel);
            Paste(c.text);
            EXPECT_EQ(flexgrid::Shown(grid), headers + c.rows);
            EXPECT_TRUE(std::exchange(state.changed, false));
            ASSERT_TRUE(history.Undo(state));
            state.changed = false;
            EXPECT_EQ(flexgrid::Shown(grid), headers + first + second + third) << "one step takes it back";
        }
    }
}

TEST_F(PasteTest, FillsTheSelection) {
    const struct {
        flexgrid::Cursor selected;
        std::function<CellRectangle(const flexgrid::Grid&)> rectangle;
        std::string rows;
    } cases[] = {
        {{1, name, 3, qty}, CellRectangle::FillDown, "1,a,10,1.5,Cherry,x,k1/2,a,10,2.5,,y,k2/3,a,10,3.5,Apple,z,k3"},
        {{2, name, 2, name}, CellRectangle::FillDown, "1,a,10,1.5,Cherry,x,k1/2,a,20,2.5,,y,k2/3,c,30,3.5,Apple,z,k3"},
        {{1, name, 1, name}, CellRectangle::FillDown, {}},
        {{1, name, 2, rate}, CellRectangle::FillRight, "1,a,0,0,Cherry,x,k1/2,b,0,0,,y,k2/3,c,30,3.5,Apple,z,k3"},
        {{3, rate, 3, rate}, CellRectangle::FillRight, "1,a,10,1.5,Cherry,x,k1/2,b,20,2.5,,y,k2/3,c,30,30,Apple,z,k3"},
        {{1, name, 1, name}, CellRectangle::FillRight, {}},
        {{1, qty, 2, rate},
         [](const auto& g) { return CellRectangle(g, u"7%"); },
         "1,a,7,7,Cherry,x,k1/2,b,7,7,,y,k2/3,c,30,3.5,Apple,z,k3"},
    };
    const std::string before = flexgrid::Shown(grid);
    for (const auto& c : cases) {
        for (const bool listens : {false, true}) {
            host.listens = listens;
            grid.Select(c.selected.row, c.selected.col, c.selected.rowSel, c.selected.colSel);
            Write(c.rectangle(grid));
            EXPECT_EQ(flexgrid::Shown(grid), c.rows.empty() ? before : before.substr(0, before.find('/') + 1) + c.rows);
            EXPECT_EQ(history.Undo(state) != nullptr, !c.rows.empty());
            EXPECT_EQ(flexgrid::Shown(grid), before);
        }
    }
    // A handler removes the column that the texts come from.
    host.listens = true;
    host.onAfter = [&](int, bool&) { grid.SetCols(2); };
    grid.Select(1, qty, 3, rate);
    Write(CellRectangle::FillRight(grid));
    EXPECT_EQ(grid.Cols(), 2);
}

TEST_F(PasteTest, PassesOverRowsThatAreFilteredOut) {
    const std::string headers = "No,Name,Qty,Rate,Item,Locked,Key/";
    const std::string first = "1,a,10,1.5,Cherry,x,k1/";
    const std::string second = "2,b,20,2.5,,y,k2/";
    const struct {
        flexgrid::Cursor selected;
        std::function<void()> write;
        std::string rows;
    } cases[] = {
        {{1, name, 1, name}, [&] { Paste(u"x\ny"); }, "1,x,10,1.5,Cherry,x,k1/" + second + "3,y,30,3.5,Apple,z,k3"},
        {{1, name, 1, name},
         [&] { Paste(u"x\ny\nz"); },
         "1,x,10,1.5,Cherry,x,k1/" + second + "3,y,30,3.5,Apple,z,k3/,z,,,,,"},
        {{3, name, 1, name}, [&] { Paste(u"q"); }, "1,q,10,1.5,Cherry,x,k1/" + second + "3,q,30,3.5,Apple,z,k3"},
        {{1, name, 3, name}, [&] { Write(CellRectangle::FillDown(grid)); }, first + second + "3,a,30,3.5,Apple,z,k3"},
        {{3, name, 3, name}, [&] { Write(CellRectangle::FillDown(grid)); }, first + second + "3,a,30,3.5,Apple,z,k3"},
        {{3, name, 2, name}, [&] { Write(CellRectangle::FillDown(grid)); }, first + second + "3,a,30,3.5,Apple,z,k3"},
        {{1, qty, 3, rate},
         [&] { Write(CellRectangle::FillRight(grid)); },
         "1,a,10,10,Cherry,x,k1/" + second + "3,c,30,30,Apple,z,k3"},
        {{1, name, 3, name},
         [&] { Write(CellRectangle(grid)); },
         "1,,10,1.5,Cherry,x,k1/" + second + "3,,30,3.5,Apple,z,k3"},
        {{2, name, 2, name}, [&] { Write(CellRectangle(grid)); }, first + second + "3,c,30,3.5,Apple,z,k3"},
    };
    state.autoAddNew = true;
    for (const auto& c : cases) {
        for (const bool listens : {false, true}) {
            host.listens = listens;
            grid.SetRowFiltered(2, true);
            grid.Select(c.selected);
            c.write();
            EXPECT_EQ(flexgrid::Shown(grid), headers + c.rows);
            history.Undo(state);
        }
    }
    grid.Select(1, qty, 3, qty);
    EXPECT_EQ(u"10\r\n30\r\n", CopiedText(grid));
    grid.Select(2, qty, 2, qty);
    EXPECT_FALSE(CopiedText(grid));
    EXPECT_FALSE(CopiedHtml(grid, state));
    grid.SetRowFiltered(1, true);
    SelectAll(grid);
    EXPECT_EQ(grid.Selection(), (flexgrid::CellRange{3, name, 3, key}));
    grid.SetRowFiltered(3, true);
    grid.MoveTo(1, name);
    SelectColumns(grid);
    EXPECT_EQ(grid.Selection(), (flexgrid::CellRange{1, name, 3, name})) << "nothing is shown";
    Write(CellRectangle(grid, u"x"));
    EXPECT_EQ(flexgrid::Shown(grid), headers + first + second + "3,c,30,3.5,Apple,z,k3");
}

TEST_F(PasteTest, TellsTheHostOfEveryCellInTurn) {
    grid.MoveTo(1, name);
    Paste(u"x\t5\tq\r\ny");
    EXPECT_EQ(
        "before 1,1 'a'\nafter 1,1 'a' 'x'\nbefore 1,2 '10'\nafter 1,2 '10' '5'\nbefore 1,3 '1.5'\n"
        "after 1,3 '1.5' '0'\nbefore 2,1 'b'\nafter 2,1 'b' 'y'\n",
        host.Take());
    const auto step = history.Undo(state);
    NotifyOfStep(grid, state, history, *step, true, host);
    EXPECT_EQ("after 1,1 'x' 'a'\nafter 1,2 '5' '10'\nafter 1,3 '0' '1.5'\nafter 2,1 'y' 'b'\n", host.Take());
    NotifyOfStep(grid, state, history, *history.Redo(state), false, host);
    EXPECT_EQ("after 1,1 'a' 'x'\nafter 1,2 '10' '5'\nafter 1,3 '1.5' '0'\nafter 2,1 'b' 'y'\n", host.Take());
    // Inactive, hidden and fixed cells are not asked about.
    grid.MoveTo(1, item);
    Paste(u"ba\tno\tno");
    EXPECT_EQ("before 1,4 'Cherry'\nafter 1,4 'Cherry' 'Banana'\n", host.Take());
    state.changed = false;
    grid.MoveTo(1, locked);
    Paste(u"no\tno");
    EXPECT_EQ("", host.Take());
    EXPECT_FALSE(state.changed);
}

TEST_F(PasteTest, HostRefusesCellsAndTakesThemBack) {
    host.onBefore = [](int col, bool& cancel) { cancel = col == qty; };
    host.onAfter = [](int col, bool& cancel) { cancel = col == rate; };
    grid.MoveTo(1, name);
    Paste(u"x\t5\t7");
    EXPECT_EQ("1|x|10|1.5|Cherry|x|k1", Row(1));
    EXPECT_EQ("before 1,1 'a'\nafter 1,1 'a' 'x'\nbefore 1,2 '10'\nbefore 1,3 '1.5'\nafter 1,3 '1.5' '7'\n",
              host.Take());
    history.Undo(state);
    EXPECT_EQ("1|a|10|1.5|Cherry|x|k1", Row(1));
}

TEST_F(PasteTest, AddsRowsWhereTheGridMay) {
    for (const bool listens : {true, false}) {
        host.listens = listens;
        state.autoAddNew = true;
        state.autoRecordNumber = true;
        grid.MoveTo(3, name);
        Paste(u"p\r\nq\r\nr\r\n");
        ASSERT_EQ(6, grid.Rows());
        EXPECT_EQ("5|r|||||", Row(5));
        history.Undo(state);
        EXPECT_EQ(4, grid.Rows());
        EXPECT_EQ("3|c|30|3.5|Apple|z|k3", Row(3));
        history.Redo(state);
        EXPECT_EQ("5|r|||||", Row(5));
        history.Undo(state);
    }
}

TEST_F(PasteTest, MoreRowsThanAGridCanHaveAreRefusedBeforeAnythingIsWritten) {
    state.autoAddNew = true;
    grid.MoveTo(1, name);
    grid.SetCols(flexgrid::Grid::maxCols);
    const Text text(flexgrid::Grid::maxCells / flexgrid::Grid::maxCols, u'\n');
    EXPECT_THROW(Paste(text), RunTimeError);
    EXPECT_EQ(4, grid.Rows());
    EXPECT_EQ(u"a", grid.TextMatrix(1, name));
    EXPECT_FALSE(history.CanUndo());
}

TEST_F(PasteTest, HandlersMayTakeRowsAndColumnsAway) {
    const std::pair<const char*, std::function<void(flexgrid::Grid&)>> acts[] = {
        {"Rows", [](auto& g) { g.SetRows(2); }},
        {"no rows", [](auto& g) { g.SetFixedRows(0), g.SetRows(0); }},
        {"Cols", [](auto& g) { g.SetCols(2); }},
        {"no columns", [](auto& g) { g.SetFixedCols(0), g.SetCols(0); }},
        {"RemoveItem", [](auto& g) { g.RemoveItem(1); }},
        {"Clear", [](auto& g) { g.Clear(); }},
        {"AddItem", [](auto& g) { g.AddItem(u"9", 1); }},
    };
    for (const auto& [title, act] : acts) {
        for (const bool early : {true, false}) {
            flexgrid::Grid own;
            Fill(own, {u"No\tName\tQty\tRate", u"1\ta\t1\t1", u"2\tb\t2\t2", u"3\tc\t3\t3"});
            own.MoveTo(1, 1);
            EditHistory ownHistory(own);
            EditorHost wild(own);
            int calls = 0;
            const auto meddle = [&, act = act](int, bool& cancel) {
                if (++calls == 2) act(own);
                cancel = calls == 3;
            };
            (early ? wild.onBefore : wild.onAfter) = meddle;
            const ClipboardCells cells(u"x\ty\tz\nx\ty\tz\nx\ty\tz\n");
            const CellRectangle rectangle(own, cells);
            CellWriter<EditorHost>(own, state, ownHistory, wild, sources).Write(rectangle);
            EXPECT_GE(calls, 2) << title;
            EXPECT_FALSE(ownHistory.CanUndo()) << title;
        }
    }
}

TEST_F(PasteTest, HandlersCannotUndoTheStepTheyAreToldOf) {
    grid.MoveTo(1, name);
    host.onAfter = [&](int, bool&) { EXPECT_FALSE(history.Undo(state) || history.CanUndo()); };
    Paste(u"x\ty");
    const auto step = history.Undo(state);
    NotifyOfStep(grid, state, history, *step, true, host);
    EXPECT_TRUE(history.CanRedo());
}

TEST_F(PasteTest, CopyAndEmptyTheSelection) {
    grid.SetTextMatrix(2, name, u"two\nlines");
    grid.Select(2, locked, 1, name);
    EXPECT_EQ(u"a\t10\t1.5\tCherry\tx\r\n\"two\nlines\"\t20\t2.5\t\ty\r\n", CopiedText(grid));
    // The header's positions are those of the document and of the table in it.
    const std::string html = CopiedHtml(grid, state).value_or("");
    const auto from = [&](const std::string& field) {
        return html.substr(std::stoul(html.substr(html.find(field + ":") + field.size() + 1)));
    };
    const auto between = [&](const std::string& start, const std::string& end) {
        return from(start).substr(0, from(start).size() - from(end).size());
    };
    EXPECT_EQ(0U, from("EndHTML").size());
    EXPECT_EQ("<html><body>\r\n<!--StartFragment-->" + between("StartFragment", "EndFragment") +
                  "<!--EndFragment-->\r\n</body></html>",
              between("StartHTML", "EndHTML"));
    EXPECT_EQ(
        "<table>\r\n<tr><td style=\"text-align:left\">a</td><td style=\"text-align:right\">10</td>"
        "<td style=\"text-align:right\">1.5</td><td style=\"text-align:left\">Cherry</td>"
        "<td style=\"text-align:left\">x</td></tr>\r\n<tr><td style=\"text-align:left\">two<br>lines</td>"
        "<td style=\"text-align:right\">20</td><td style=\"text-align:right\">2.5</td>"
        "<td style=\"text-align:left\"></td><td style=\"text-align:left\">y</td></tr>\r\n</table>",
        between("StartFragment", "EndFragment"));
    host.listens = false;
    Write(CellRectangle(grid));
    EXPECT_EQ("1||0|0|Cherry|x|k1", Row(1)) << "numbers and list entries as an emptied editor leaves them";
    EXPECT_EQ("2||0|0||y|k2", Row(2));
    SelectAll(grid);
    EXPECT_EQ(grid.Selection(), (flexgrid::CellRange{1, name, 3, key}));
}

TEST(MatchGivenEntryTest, TakesAnEntryOrKeepsTheText) {
    std::vector<Text> twelve;
    for (char16_t c = u'a'; c < u'm'; ++c) twelve.push_back(Text(3, c));
    const std::vector<Text> fruits{u"Applesauce", u"Apple", u"Banana"};
    const struct {
        const std::vector<Text>& entries;
        const char16_t* text;
        const char16_t* old;
        const char16_t* result;
    } cases[] = {
        {fruits, u"apple", u"Banana", u"Apple"},
        {fruits, u"zzz", u"Banana", u"Banana"},
        {fruits, u"zzz", u"", u"Applesauce"},
        {fruits, u"", u"Banana", u"Banana"},
        {fruits, u"", u"", u""},
        {twelve, u"k", u"", u"kkk"},
    };
    for (const auto& test : cases)
        EXPECT_EQ(test.result, MatchGivenEntry(ListOf(test.entries), test.text, test.old)) << Narrow(test.text);
    EXPECT_EQ(u"old", MatchGivenEntry(ListOf({}), u"x", u"old"));
}

}  // namespace
}  // namespace qvx::grid
