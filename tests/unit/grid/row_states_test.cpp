// Which rows count as new, changed and deleted, whatever is done to a grid.
#include "controls/grid/row_states.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <numeric>
#include <random>

#include "controls/grid/row_commands.h"
#include "controls/grid/row_operations.h"
#include "tests/support/error_of.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

class RowStatesTest : public EntryGridTest {
  public:
    using EntryGridTest::grid, EntryGridTest::state, EntryGridTest::history;

    RowStatesTest() {
        state.autoRecordNumber = true;
        Fill(grid, {u"No\tName\tQty\tId", u"1\ta\t10\tA", u"2\tb\t20\tB", u"3\tc\t30\tC"});
        states.Start();
    }

    void Edit(int row, int col, TextView text) {
        const Text before = grid.TextMatrix(row, col);
        grid.SetTextMatrix(row, col, text);
        history.CellChanged(grid.StructureVersion(), row, col, before, text);
    }
    void Insert(int row) {
        grid.MoveTo(row, 1);
        InsertRow(grid, state, history);
    }
    void Delete(int row) {
        grid.MoveTo(row, 1);
        DeleteRow(grid, state, history);
    }
    void Load(TextView row) {
        const RowStates::Loading loading(states);
        grid.AddItem(row);
    }
    void Reverse() {
        std::vector<std::uint32_t> rows(static_cast<std::size_t>(grid.Rows()) - 1);
        std::iota(rows.rbegin(), rows.rend(), 1);
        history.OrderRows(1, rows, {});
    }
    // For each row its state, with the originals of a changed one and the number of its record; then the deleted rows.
    std::string Seen() const {
        std::string seen;
        for (int row = 1; row < grid.Rows(); ++row) {
            const RowState is = states.Of(row);
            seen += "unc"[static_cast<int>(is)];
            if (const int number = states.RecordNumber(row)) seen += std::to_string(number);
            if (is == RowState::changed)
                seen += '(' + Narrow(states.OriginalText(row, 1)) + ',' + Narrow(states.OriginalText(row, 2)) + ')';
            seen += ' ';
        }
        for (int i = 0; i < states.DeletedCount(); ++i)
            seen += '-' + Narrow(states.DeletedText(i, 1)) + std::to_string(states.Deleted(i).number) + ' ';
        return seen;
    }

    RowStates states{grid, state};
};

TEST_F(RowStatesTest, FollowsEveryKindOfChangeBackAndForth) {
    using T = RowStatesTest;
    struct Case {
        const char* name;
        void (*change)(T& t);
        const char* seen;
        const char* undone = "u1 u2 u3 ";
    };
    const Case cases[] = {
        {"nothing", [](T&) {}, "u1 u2 u3 "},
        {"an edit", [](T& t) { t.Edit(2, 1, u"x"); }, "u1 c2(b,20) u3 "},
        {"two edits keep the first originals",
         [](T& t) {
             t.Edit(2, 1, u"x");
             t.Edit(2, 2, u"y");
             t.Edit(2, 1, u"\u0416");
         },
         "u1 c2(b,20) u3 "},
        {"the old text typed again",
         [](T& t) {
             t.Edit(2, 1, u"x");
             t.Edit(2, 1, u"b");
         },
         "u1 u2 u3 "},
        {"a number is no part of a record", [](T& t) { t.Edit(2, 0, u"7"); }, "u1 u2 u3 "},
        {"an inserted row", [](T& t) { t.Insert(1); }, "n u1 u2 u3 "},
        {"appended rows", [](T& t) { AppendRows(t.grid, t.state, t.history, 2); }, "u1 u2 u3 n n "},
        {"a deleted row", [](T& t) { t.Delete(2); }, "u1 u3 -b2 "},
        {"a changed row is deleted with its originals",
         [](T& t) {
             t.Edit(2, 1, u"x");
             t.Delete(2);
         },
         "u1 u3 -b2 "},
        {"a new row is deleted",
         [](T& t) {
             t.Insert(2);
             t.Edit(2, 1, u"x");
             t.Delete(2);
         },
         "u1 u2 u3 "},
        {"several are deleted in their order",
         [](T& t) {
             t.Delete(3);
             t.Delete(1);
         },
         "u2 -c3 -a1 "},
        {"sorted rows keep theirs",
         [](T& t) {
             t.Edit(1, 2, u"11");
             t.Insert(2);
             t.Reverse();
             t.Delete(1);
         },
         "u2 n c1(a,10) -c3 "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fill(grid, {u"No\tName\tQty\tId", u"1\ta\t10\tA", u"2\tb\t20\tB", u"3\tc\t30\tC"});
        states.Start();
        c.change(*this);
        EXPECT_EQ(c.seen, Seen());
        while (history.CanUndo()) history.Undo(state);
        EXPECT_EQ(c.undone, Seen());
        while (history.CanRedo()) history.Redo(state);
        EXPECT_EQ(c.seen, Seen());
        while (history.CanUndo()) history.Undo(state);
        EXPECT_EQ(c.undone, Seen());
    }
}

TEST_F(RowStatesTest, AcceptsWhatTheRowsAre) {
    Edit(1, 1, u"x");
    Delete(2);
    Insert(1);
    Edit(1, 1, u"first");
    states.Accept();
    EXPECT_EQ("u3 u1 u2 ", Seen()) << "the new record is the last";
    history.Undo(state);
    history.Undo(state);
    EXPECT_EQ("u1 u2 -first3 ", Seen()) << "undoing the insertion deletes the record";
    history.Undo(state);
    EXPECT_EQ("u1 n u2 -first3 ", Seen()) << "a record that is deleted can only be added again";
    history.Undo(state);
    EXPECT_EQ("c1(x,10) n u2 -first3 ", Seen());
    while (history.CanRedo()) history.Redo(state);
    EXPECT_EQ("u3 u1 u2 ", Seen());
    Load(u"4\td");
    Insert(4);
    EXPECT_EQ("u3 u1 u2 n u4 ", Seen());
}

// An edit takes the text out of its cell.
TEST_F(RowStatesTest, MarksARowAsBeforeWhileAnEditIsOpen) {
    for (const bool marked : {false, true}) {
        if (marked) Edit(1, 2, u"x");
        state.editRow = state.editCol = 1;
        state.committing = 0;
        ++state.editNumber;
        grid.SetTextMatrix(1, 1, {});
        EXPECT_EQ(marked, states.IsMarked(1));
        EXPECT_FALSE(states.IsMarked(2));
        state.committing = state.editNumber;
        grid.SetTextMatrix(1, 1, u"new");
        EXPECT_TRUE(states.IsMarked(1));
        grid.SetTextMatrix(1, 1, u"a");
        state.editRow = state.editCol = -1;
        EXPECT_EQ(marked, states.IsMarked(1));
    }
}

TEST_F(RowStatesTest, TakesARowWithoutTextForNoRecord) {
    grid.SetRows(1);
    grid.SetRows(2);
    states.Start();
    EXPECT_EQ("u1 ", Seen());
    EXPECT_FALSE(states.IsMarked(1));
    Edit(1, 1, u"x");
    EXPECT_EQ(RowState::added, states.Of(1));
    EXPECT_TRUE(states.IsMarked(1));
    Edit(1, 1, {});
    EXPECT_EQ(RowState::unchanged, states.Of(1));
    grid.SetRows(3);
    EXPECT_EQ(RowState::added, states.Of(2));
    EXPECT_FALSE(states.IsMarked(2)) << "nothing has been entered yet";
    grid.RemoveItem(1);
    EXPECT_EQ("n ", Seen());
    grid.SetTextMatrix(1, 1, u"x");
    states.Accept();
    grid.SetTextMatrix(1, 1, {});
    EXPECT_EQ("c1(x,) ", Seen());
    grid.SetRows(3);
    grid.SetTextMatrix(2, 1, u"y");
    states.Accept();
    EXPECT_EQ("u u1 ", Seen()) << "the emptied row has no record any more";
}

TEST_F(RowStatesTest, CoversTheCallsOfHosts) {
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { grid.Clear(); }, "c1(a,10) c2(b,20) c3(c,30) "},
        {[&] { grid.SetRows(2); }, "u1 -b2 -c3 "},
        {[&] { grid.RemoveRowsIf([](int row) { return row != 2; }); }, "u2 -a1 -c3 "},
        {[&] { grid.SetRowPosition(3, 1); }, "u3 u1 u2 "},
        {[&] { grid.SetColumn(2, 1, 3, [](const auto&) { return u"20"; }); }, "c1(a,10) u2 c3(c,30) "},
        {[&] {
             grid.SetFillStyle(flexgrid::GridFillStyle::repeat);
             grid.Select(1, 1, 2, 1);
             grid.SetText(u"b");
         },
         "c1(a,10) u2 u3 "},
        {[&] {
             grid.Select(1, 1, 2, 2);
             grid.SetClip(u"a\t10\rx");
         },
         "u1 c2(b,20) u3 "},
        {[&] { grid.SetFormatString(u"|||;|x|y|z|"); }, "u1 u2 u3 n "},
        {[&] { RemoveAllRecords(grid, state, history); }, "c1(a,10) -b2 -c3 "},
        {[&] {
             grid.SetTextMatrix(1, 2, u"x");
             grid.SetColPosition(2, 1);
             grid.RemoveItem(3);
         },
         "c1(10,a) u2 -303 "},
        {[&] {
             grid.SetTextMatrix(1, 2, u"x");
             grid.SetCols(2);
         },
         "u1 u2 u3 "},
        {[&] {
             flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::all);
             grid.SetTextMatrix(1, 1, u"x");
             grid.RemoveItem(2);
             grid.AddItem(u"", 1);
         },
         "u1 u2 u3 "},
    };
    int number = 0;
    for (const auto& [change, seen] : cases) {
        Fill(grid, {u"No\tName\tQty\tId", u"1\ta\t10\tA", u"2\tb\t20\tB", u"3\tc\t30\tC"});
        states.Start();
        change();
        EXPECT_EQ(seen, Seen()) << "case " << number;
        ++number;
    }
    states.Stop();
    grid.AddItem(u"");
    EXPECT_EQ(RowState::unchanged, states.Of(grid.Rows() - 1)) << "nothing is kept while it is off";
}

TEST_F(RowStatesTest, RefusesCellsThatItDoesNotHave) {
    Delete(2);
    const std::pair<std::function<void()>, int> calls[] = {
        {[&] { states.Of(0); }, errors::invalidRowValue},
        {[&] { states.Of(3); }, errors::invalidRowValue},
        {[&] { states.NextChanged(3); }, errors::invalidRowValue},
        {[&] { states.NextChanged(-1); }, errors::invalidRowValue},
        {[&] { states.OriginalText(0, 1); }, errors::invalidRowValue},
        {[&] { states.OriginalText(1, 4); }, errors::invalidColValue},
        {[&] { states.OriginalText(1, -1); }, errors::invalidColValue},
        {[&] { states.DeletedText(1, 1); }, errors::subscriptOutOfRange},
        {[&] { states.DeletedText(-1, 1); }, errors::subscriptOutOfRange},
        {[&] { states.DeletedText(0, 4); }, errors::invalidColValue},
    };
    for (const auto& [call, number] : calls) EXPECT_EQ(number, test::ErrorOf(call));
}

// The states are compared with what the rows show: each record carries its name in a cell that nobody changes.
TEST_F(RowStatesTest, AgreesWithTheRowsAfterAnything) {
    std::mt19937 random(5);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    std::map<Text, std::pair<std::vector<Text>, int>> records;  // by name: texts and number
    int names = 0;
    int nameCol = 3;
    const auto textsOf = [&](int row) {
        return std::vector{grid.TextMatrix(row, 1), grid.TextMatrix(row, 2), grid.TextMatrix(row, 3)};
    };
    const auto accept = [&] {
        std::map<int, int> known;  // rows by number
        std::vector<int> fresh;
        for (int row = 1; row < grid.Rows(); ++row) {
            const auto found = records.find(grid.TextMatrix(row, nameCol));
            if (found != records.end()) {
                known[found->second.second] = row;
                continue;
            }
            grid.SetTextMatrix(row, nameCol, u"N" + Text(1, static_cast<char16_t>(0x4E00 + ++names)));
            fresh.push_back(row);
        }
        records.clear();
        const auto add = [&](int row) {
            const int number = static_cast<int>(records.size()) + 1;
            records[grid.TextMatrix(row, nameCol)] = {textsOf(row), number};
        };
        for (const auto& [number, row] : known) add(row);
        for (const int row : fresh) add(row);
        states.Accept();
    };
    const auto moveColumns = [&] {
        const int from = 1 + below(3);
        const int to = 1 + below(3);
        grid.SetColPosition(from, to);
        const auto moved = [&](int col) {
            if (col == from) return to;
            return col - (from < col && col <= to) + (to <= col && col < from);
        };
        nameCol = moved(nameCol);
        for (auto& [name, record] : records) {
            auto texts = record.first;
            for (int col = 1; col <= 3; ++col)
                record.first[static_cast<std::size_t>(moved(col)) - 1] = texts[static_cast<std::size_t>(col) - 1];
        }
    };
    const auto load = [&] {
        Text name(u"L");
        name += static_cast<char16_t>(0x4E00 + ++names);
        const int last = std::accumulate(records.begin(), records.end(), 0,
                                         [](int most, const auto& r) { return std::max(most, r.second.second); });
        {
            const RowStates::Loading loading(states);
            grid.AddItem(Text(static_cast<std::size_t>(nameCol), u'\t') + name);
        }
        records[name] = {textsOf(grid.Rows() - 1), last + 1};
    };
    accept();
    for (int step = 0; step < 4000; ++step) {
        const int row = 1 + below(grid.Rows() - 1);
        int col = 1 + below(3);
        if (col == nameCol) col = col == 1 ? 2 : 1;
        switch (below(14)) {
            case 0:
                Insert(row);
                break;
            case 1:
                if (grid.Rows() > 3) Delete(row);
                break;
            case 2:
                AppendRows(grid, state, history, 1 + below(2));
                break;
            case 3:
                Reverse();
                break;
            case 4:
                if (below(8) == 0) grid.SetRowPosition(row, 1 + below(grid.Rows() - 1));
                break;
            case 5:
                if (below(8) == 0 && grid.Rows() > 4) grid.RemoveItem(row);
                break;
            case 6:
                if (below(30) == 0) moveColumns();
                break;
            case 7:
                if (below(8) == 0) load();
                break;
            case 8:
                if (below(20) == 0) accept();
                break;
            case 9:
            case 10:
                for (int i = below(6); i > 0; --i) history.Undo(state);
                break;
            case 11:
                for (int i = below(6); i > 0; --i) history.Redo(state);
                break;
            case 12: {
                flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::all);
                grid.AddItem(u"\tx", row);
                if (grid.Rows() > 3) grid.RemoveItem(1 + below(grid.Rows() - 1));
                break;
            }
            default:
                Edit(row, col, below(2) ? Text(1, static_cast<char16_t>(u'a' + below(3))) : Text(u"\u0416"));
                break;
        }
        while (grid.Rows() > 14) grid.RemoveItem(grid.Rows() - 1);
        std::map<Text, int> gone;
        for (const auto& [name, record] : records) gone[name] = record.second;
        for (int r = 1; r < grid.Rows(); ++r) {
            const auto found = records.find(grid.TextMatrix(r, nameCol));
            const RowState expected = found == records.end()              ? RowState::added
                                      : found->second.first == textsOf(r) ? RowState::unchanged
                                                                          : RowState::changed;
            ASSERT_EQ(expected, states.Of(r)) << "step " << step << ", row " << r;
            const bool counts = expected != RowState::unchanged && !states.IsEmpty(r);
            ASSERT_EQ(counts || expected == RowState::changed, states.NextChanged(r - 1) == r) << "step " << step;
            if (expected == RowState::added) continue;
            gone.erase(found->first);
            EXPECT_EQ(found->second.second, states.RecordNumber(r));
            for (int c = 1; c <= 3; ++c)
                EXPECT_EQ(found->second.first[static_cast<std::size_t>(c) - 1], states.OriginalText(r, c));
        }
        ASSERT_EQ(static_cast<int>(gone.size()), states.DeletedCount()) << "step " << step;
        for (int i = 0; i < states.DeletedCount(); ++i)
            ASSERT_EQ(gone[states.DeletedText(i, nameCol)], states.Deleted(i).number);
    }
}

}  // namespace
}  // namespace qvx::grid
