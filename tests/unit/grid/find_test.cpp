// Searching and replacing in the cells of a grid, and the bar for both.
#include <gtest/gtest.h>

#include <algorithm>

#include "common/keys.h"
#include "common/text_compare.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/find_bar_layout.h"
#include "controls/grid/find_keys.h"
#include "controls/grid/replace_cells.h"
#include "tests/unit/grid/editor_host.h"

namespace qvx::grid {
namespace {

SearchOptions With(const char* letters) {
    SearchOptions options;
    for (const char* letter = letters; *letter; ++letter) {
        options.matchCase = options.matchCase || *letter == 'c';
        options.wholeCell = options.wholeCell || *letter == 'w';
        options.dotlessI = options.dotlessI || *letter == 'i';
    }
    return options;
}

TEST(SearchPattern, MatchesAndReplaces) {
    const struct {
        TextView wanted;
        const char* options;
        TextView cell;
        bool matches;
        TextView replaced = {};  // each occurrence by "<>"
    } cases[] = {
        {u"", "", u"anything", false},
        {u"nut", "", u"Walnut, NUTS", true, u"Wal<>, <>S"},
        {u"nut", "c", u"Walnut, NUTS", true, u"Wal<>, NUTS"},
        {u"Nut", "c", u"Walnut, NUTS", false},
        {u"nut", "w", u"NUT", true, u"<>"},
        {u"nut", "w", u"nuts", false},
        {u"aa", "", u"aAaAa", true, u"<><>a"},
        {u"aab", "", u"aaab", true, u"a<>"},
        {u"10%", "", u"10%", true, u"<>"},
        {u"\u00E9", "", u"CAF\u00C9", true, u"CAF<>"},
        {u"\u00C5", "", u"\u212B \u00E5", true, u"<> <>"},  // the sign for Angstrom
        {u"\u212A", "", u"10 k", true, u"10 <>"},           // that for Kelvin
        {u"\u212A", "c", u"10 k", false},
        {u"STRASSE", "", u"Stra\u00DFe", false},
        {u"\u1E9E", "", u"Stra\u00DFe", true, u"Stra<>e"},
        {u"\u03A3", "", u"\u03BF\u03C2", true, u"\u03BF<>"},
        {u"\u0436\u0438", "", u"\u0416\u0418\u0437", true, u"<>\u0437"},
        {u"\U00010400", "", u"x\U00010428y", true, u"x<>y"},  // letters of two units
        {u"\U00010400", "c", u"x\U00010428y", false},
        {u"\U0001F600", "", u"\U0001F601\U0001F600", true, u"\U0001F601<>"},
        {u"title", "i", u"T\u0130TLE", true, u"<>"},
        {u"title", "i", u"TITLE", false},
        {u"\u0131s", "i", u"IS \u0131\u015F", true, u"<> \u0131\u015F"},
        {u"title", "", u"TITLE", true, u"<>"},
    };
    for (const auto& c : cases) {
        const SearchPattern pattern(c.wanted, With(c.options));
        // Beside a letter that makes the row wide, and without one.
        for (const TextView beside : {TextView(u"b"), TextView(u"\u4E2D")}) {
            flexgrid::Grid grid;
            Fill(grid, {u"No\tName\tMore", u"1\t" + Text(c.cell) + u"\t" + Text(beside)});
            EXPECT_EQ(pattern.Matches(grid.Cell(1, 1)), c.matches) << Narrow(c.wanted) << " in " << Narrow(c.cell);
            grid.ForEachRow(1, 1, [&](int, const flexgrid::RowView& row) {
                EXPECT_TRUE(pattern.MayMatchIn(row) || !c.matches) << Narrow(c.wanted) << " in " << Narrow(c.cell);
            });
        }
        if (c.matches) {
            EXPECT_EQ(pattern.Replaced(c.cell, u"<>"), c.replaced) << Narrow(c.wanted);
        }
    }
    flexgrid::Grid grid;
    Fill(grid, {u"No\tName", u"1\tx", u"2\t"});
    grid.ForEachRow(1, 2, [&](int row, const flexgrid::RowView& cells) {
        EXPECT_EQ(SearchPattern(u"X", {}).MayMatchIn(cells), row == 1);
        EXPECT_FALSE(SearchPattern(u"y", {}).MayMatchIn(cells));
    });
}

class FindTest : public EntryGridTest {
  protected:
    // Many rows, few hits: "x" in some cells, also in the header, in the fixed column and in what is hidden.
    void FillWithHits(int rows, int every) {
        grid.SetRows(rows);
        grid.SetCols(5);
        grid.SetColWidth(3, 0);
        unsigned random = 7;
        for (int row = 0; row < rows; ++row) {
            for (int col = 0; col < 5; ++col) {
                random = random * 1'103'515'245 + 12'345;
                if ((random >> 16) % static_cast<unsigned>(every) == 0) grid.SetTextMatrix(row, col, u"a hit: X");
            }
            if (row % 5 == 2) grid.SetRowHeight(row, 0);
        }
    }
    std::vector<CellPlace> AllHits(int column = SearchOptions::allColumns) const {
        std::vector<CellPlace> hits;
        for (int row = 1; row < grid.Rows(); ++row)
            for (const int col : {1, 2, 4})
                if ((column == SearchOptions::allColumns || col == column) && grid.RowHeight(row) > 0 &&
                    ContainsNoCase(grid.TextMatrix(row, col), u"x"))
                    hits.push_back({row, col});
        return hits;
    }
    Replacements Replace(TextView text, TextView with, const SearchOptions& options = {}) {
        search.Look(text, options);
        return ReplaceCells(grid, state, history, host, sources, search, with);
    }
    std::string Cells() const {
        std::string cells;
        for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
            for (int col = 0; col < grid.Cols(); ++col) cells += Narrow(grid.TextMatrix(row, col)) + "|";
            cells += "\n";
        }
        return cells;
    }

    CellSearch search{grid};
    EditorHost host{grid};
    CellSources sources{{}, [this](int) { return host.List(); }};
};

TEST_F(FindTest, EachHitFollowsThePreviousOne) {
    FillWithHits(5000, 900);
    const CellPlace froms[] = {{0, 0}, {1, 1}, {1, 4}, {1023, 2}, {1024, 0}, {2500, 3}, {4095, 4}, {4999, 4}};
    for (const int column : {SearchOptions::allColumns, 2}) {
        const std::vector<CellPlace> hits = AllHits(column);
        ASSERT_GT(hits.size(), 2U);
        SearchOptions options;
        options.column = column;
        search.Look(u"x", options);
        std::vector<CellPlace> from(std::begin(froms), std::end(froms));
        from.insert(from.end(), hits.begin(), hits.end());
        for (const bool counted : {false, true}) {
            if (counted) search.StartCounting(3000);
            for (const bool known : {false, true}) {
                if (known) search.Count([] { return true; });
                for (const CellPlace at : from) {
                    const auto after = std::upper_bound(hits.begin(), hits.end(), at);
                    const auto before = std::lower_bound(hits.begin(), hits.end(), at);
                    const bool own = before != after;
                    const CellPlace next = after == hits.end() ? hits.front() : *after;
                    const CellPlace previous = before == hits.begin() ? hits.back() : *std::prev(before);
                    EXPECT_EQ(search.Next(at, true).place, next) << at.row << ',' << at.col;
                    EXPECT_EQ(search.Next(at, false).place, previous) << at.row << ',' << at.col;
                    EXPECT_EQ(search.Next(at, true, true).place, own ? at : next);
                    EXPECT_EQ(search.Next(at, true, true, true).known, counted && known);
                    EXPECT_EQ(search.IsHit(at.row, at.col), own);
                    const auto number = search.NumberOf(at);
                    EXPECT_TRUE(number == (own ? before - hits.begin() + 1 : 0) ||
                                (number == 0 && !(counted && known)));
                }
            }
        }
    }
    grid.SetRows(2);
    grid.SetTextMatrix(1, 1, u"the only X");
    grid.SetTextMatrix(1, 2, u"");
    grid.SetTextMatrix(1, 4, u"");
    search.Look(u"x", {});
    for (const bool forward : {false, true}) {
        EXPECT_EQ(search.Next({1, 1}, forward).place, CellPlace(1, 1)) << "around, back to itself";
        search.Look(u"z", {});
        EXPECT_FALSE(search.Next({1, 1}, forward).place);
        search.Look(u"x", {});
    }
    grid.SetRows(1);
    EXPECT_FALSE(search.Next({0, 0}, true).place);
}

TEST_F(FindTest, CountsBlockByBlockAndFollowsChanges) {
    FillWithHits(5000, 50);
    search.Look(u"X", With("c"));
    search.StartCounting(2100);
    EXPECT_FALSE(search.Count([] { return false; }));
    const auto in = [](const std::vector<CellPlace>& hits, int first, int end) {
        return std::count_if(hits.begin(), hits.end(), [&](CellPlace p) { return p.row >= first && p.row < end; });
    };
    EXPECT_EQ(search.Total(), in(AllHits(), 2048, 3072)) << "the block of the row comes first";
    EXPECT_TRUE(search.Next({2100, 1}, true, true, true).known);
    EXPECT_FALSE(search.Next({3071, 4}, true, true, true).known);
    EXPECT_TRUE(search.Count([] { return true; }));
    EXPECT_EQ(search.Total(), static_cast<std::int64_t>(AllHits().size()));
    for (const int row : {1, 1024, 4999}) {
        const bool was = search.IsHit(row, 1);
        grid.SetTextMatrix(row, 1, was ? u"" : u"X");
        search.RowsChanged(row, row);
        EXPECT_FALSE(search.Counted());
        EXPECT_TRUE(search.Count([] { return true; }));
        EXPECT_EQ(search.Total(), static_cast<std::int64_t>(AllHits().size()));
    }
    search.RowsChanged(0, 1'000'000);
    EXPECT_EQ(search.Total(), 0);
    search.StopCounting();
    EXPECT_TRUE(search.Counted());
    search.Look(u"", {});
    search.StartCounting(9);
    EXPECT_TRUE(search.Count([] { return true; }));
    EXPECT_EQ(search.Total(), 0);
}

TEST_F(FindTest, ReplacesByTheRulesOfTheColumns) {
    state.columnsDataType = u";Qty-0;Day-2;";
    state.dateFormat = u"DD/MM/YYYY";
    state.unChangableColumns = u";Item;";
    state.inActiveColumns = u";Locked;";
    state.columnsMaxLength = u";Name-7;";
    const std::vector<TextView> before{u"No\tName\tQty\tItem\tLocked\tKey", u"1\tpen one\t10\tPen\tpen\tpen",
                                       u"2\tnone\t7\t\tpe\tpen", u"3\tPEN PEN\t0\tPencil\tx\tx"};
    const struct {
        TextView text, with;
        const char* options;
        Replacements done;
        const char* cells;
    } cases[] = {
        // "pen one" would be too long, "Pens" is no entry, "Locked" cannot be edited, "Key" is hidden.
        {u"pen", u"Pens", "", {0, 5}, "1|pen one|10|Pen|pen|pen|\n2|none|7||pe|pen|\n3|PEN PEN|0|Pencil|x|x|\n"},
        {u"pen", u"Ink", "c", {1, 1}, "1|Ink one|10|Pen|pen|pen|\n2|none|7||pe|pen|\n3|PEN PEN|0|Pencil|x|x|\n"},
        {u"pen", u"Ink", "w", {1, 1}, "1|pen one|10|Ink|pen|pen|\n2|none|7||pe|pen|\n3|PEN PEN|0|Pencil|x|x|\n"},
        {u"pen", u"", "", {2, 3}, "1| one|10|Pen|pen|pen|\n2|none|7||pe|pen|\n3| |0|Pencil|x|x|\n"},
        {u"7", u"12 kg", "", {1, 0}, "1|pen one|10|Pen|pen|pen|\n2|none|12||pe|pen|\n"},
        {u"1", u"x", "", {1, 0}, "1|pen one|0|Pen|pen|pen|\n"},
        {u"one", u"one", "", {0, 0}, "1|pen one|10|Pen|pen|pen|\n"},
        {u"PEN PEN", u"pen pen", "", {1, 0}, ""},
        {u"", u"x", "", {0, 0}, ""},
    };
    for (const bool listens : {false, true}) {
        host.listens = listens;
        for (const auto& c : cases) {
            Fill(grid, before);
            history.Clear();
            grid.SetColWidth(5, 0);
            const std::string old = Cells();
            const Replacements done = Replace(c.text, c.with, With(c.options));
            EXPECT_EQ(done.replaced, c.done.replaced) << Narrow(c.text) << " by " << Narrow(c.with);
            EXPECT_EQ(done.refused, c.done.refused) << Narrow(c.text) << " by " << Narrow(c.with);
            EXPECT_EQ(Cells().substr(0, std::string(c.cells).size()), c.cells) << Narrow(c.text);
            EXPECT_EQ(history.CanUndo(), c.done.replaced > 0);
            if (history.CanUndo()) history.Undo(state);
            EXPECT_EQ(Cells(), old) << "one step";
            EXPECT_FALSE(history.CanUndo());
        }
    }
}

TEST_F(FindTest, TheHostMayRefuseAndChangeRows) {
    Fill(grid, {u"No\tName", u"1\tab", u"2\tab", u"3\tab", u"4\tab"});
    int calls = 0;
    host.onBefore = [&](int, bool& cancel) { cancel = ++calls == 1; };
    host.onAfter = [&](int, bool& cancel) { cancel = calls == 2; };
    EXPECT_EQ(Replace(u"B", u"c"), (Replacements{2, 2}));
    EXPECT_EQ(Cells(), "1|ab|\n2|ab|\n3|ac|\n4|ac|\n");
    EXPECT_EQ(ReplaceCells(grid, state, history, host, sources, search, u"d", CellPlace{1, 1}), (Replacements{1, 0}));
    EXPECT_EQ(Cells(), "1|ad|\n2|ab|\n3|ac|\n4|ac|\n") << "one cell only";
    host.onAfter = [&](int, bool&) { grid.SetRows(3); };
    EXPECT_EQ(Replace(u"a", u"x"), (Replacements{2, 0}));
    EXPECT_EQ(Cells(), "1|xd|\n2|xb|\n");
    EXPECT_EQ(Replace(u"1", u"2"), Replacements()) << "in a fixed column";
}

TEST(FindKeys, OpenTheBarAndWorkInIt) {
    constexpr int ctrl = keys::controlMask;
    constexpr int shifted = keys::shiftMask;
    using enum FindAction;
    const struct {
        int key, shift;
        FindAction onGrid, inEditor;
        FindAction inText, inReplacement, inChoice, onButton;
        bool kept;  // by the bar
    } cases[] = {
        {'F', ctrl, Find, Find, Find, Find, Find, Find, true},
        {'H', ctrl, FindAction::Replace, None, FindAction::Replace, FindAction::Replace, FindAction::Replace,
         FindAction::Replace, true},
        {keys::f3, 0, Next, Next, Next, Next, Next, Next, true},
        {keys::f3, shifted, Previous, Previous, Previous, Previous, Previous, Previous, true},
        {keys::f3, ctrl, None, None, None, None, None, None, false},
        {'F', ctrl | shifted, None, None, None, None, None, None, false},
        {keys::f2, 0, None, None, None, None, None, None, false},
        {keys::enter, 0, None, None, Next, ReplaceThis, Next, Push, true},
        {keys::enter, shifted, None, None, Previous, Previous, Previous, Previous, true},
        {keys::enter, ctrl, None, None, None, None, None, None, false},
        {keys::escape, 0, None, None, Close, Close, Close, Close, true},
        {keys::tab, 0, None, None, NextField, NextField, NextField, NextField, true},
        {keys::tab, shifted, None, None, PreviousField, PreviousField, PreviousField, PreviousField, true},
        {keys::tab, ctrl, None, None, None, None, None, None, false},
        {'A', ctrl, None, None, SelectAll, SelectAll, None, None, true},
        {'S', ctrl, None, None, None, None, None, None, false},
        {'S', keys::altMask, None, None, None, None, None, None, false},
        {'Q', ctrl | keys::altMask, None, None, None, None, None, None, true},  // "@" on many keyboards
        {'S', shifted, None, None, None, None, None, None, true},
        {keys::left, ctrl, None, None, None, None, None, None, true},
    };
    ControlState off;
    ControlState grid;
    grid.findBar = true;
    ControlState editor = grid;
    editor.editRow = editor.editCol = 1;
    for (const auto& c : cases) {
        EXPECT_EQ(DecideFindKey(c.key, c.shift, off), None);
        EXPECT_EQ(DecideFindKey(c.key, c.shift, grid), c.onGrid) << c.key << " held " << c.shift;
        EXPECT_EQ(DecideFindKey(c.key, c.shift, editor), c.inEditor) << c.key << " held " << c.shift;
        EXPECT_TRUE(c.onGrid == None || KeepsKey(c.key, c.shift, grid));
        EXPECT_EQ(DecideBarKey(c.key, c.shift, BarField::Text), c.inText) << c.key << " held " << c.shift;
        EXPECT_EQ(DecideBarKey(c.key, c.shift, BarField::Replacement), c.inReplacement) << c.key;
        EXPECT_EQ(DecideBarKey(c.key, c.shift, BarField::Choice), c.inChoice) << c.key;
        EXPECT_EQ(DecideBarKey(c.key, c.shift, BarField::Button), c.onButton) << c.key;
        EXPECT_EQ(BarKeepsKey(c.key, c.shift), c.kept) << c.key << " held " << c.shift;
    }
    EXPECT_FALSE(KeepsKey(keys::f3, 0, off) || KeepsKey('F', ctrl, off) || KeepsKey('H', ctrl, editor));
}

TEST(FindBar, PartsFitIntoAnyWidth) {
    BarMeasures m;
    for (std::size_t i = 0; i < barParts; ++i) m.textWidths[static_cast<BarPart>(i)] = 50;
    m.lineHeight = 13;
    m.checkWidth = 13;
    const struct {
        int width, dots;
        bool replaces;
        int lines;
    } cases[] = {{800, 96, false, 1}, {800, 96, true, 2},  {480, 96, false, 2}, {320, 96, false, 2}, {320, 96, true, 4},
                 {200, 96, false, 4}, {800, 192, true, 3}, {60, 96, true, 0},   {0, 96, true, 0}};
    for (const auto& c : cases) {
        m.dpi = {c.dots, c.dots};
        m.replaces = c.replaces;
        const BarLayout layout = LayOutBar(m, c.width);
        const int line = 13 + 12 * c.dots / 96;
        EXPECT_TRUE(c.lines == 0 || layout.height == c.lines * line + 4 * c.dots / 96) << layout.height;
        for (std::size_t i = 0; i < barParts; ++i) {
            const auto part = static_cast<BarPart>(i);
            const Rect& place = layout.places[part];
            EXPECT_TRUE(place.Empty() || place.bottom < layout.height);
            const bool shown = c.replaces || !IsForReplacing(part);
            EXPECT_TRUE(shown || place.Empty());
            if (c.lines == 0) continue;
            EXPECT_TRUE(place.right < c.width && place.Empty() != shown) << i;
            for (std::size_t other = 0; other < i; ++other)
                EXPECT_TRUE(place.Intersect(layout.places[static_cast<BarPart>(other)]).Empty()) << i << ' ' << other;
        }
        EXPECT_EQ(layout.places[BarPart::With].Width(), c.replaces ? layout.places[BarPart::Text].Width() : 0);
    }
}

TEST(FindBar, SaysHowManyHitsThereAre) {
    const struct {
        HitStatus status;
        TextView text;
    } cases[] = {
        {{false, true, 0, 0}, u""},
        {{true, true, 0, 0}, u"No hits"},
        {{true, false, 0, 0}, u"0... hits"},
        {{true, true, 3, 1204}, u"3 of 1,204"},
        {{true, true, 0, 1}, u"1 hit"},
        {{true, false, 999, 1'234'567}, u"999 of 1,234,567..."},
        {{true, true, 0, 1000}, u"1,000 hits"},
    };
    for (const auto& c : cases) EXPECT_EQ(Narrow(HitText(c.status)), Narrow(c.text));
    EXPECT_EQ(ReplacedText({12, 3}), u"12 replaced, 3 refused");
    EXPECT_EQ(ReplacedText({1200, 0}), u"1,200 replaced");
}

}  // namespace
}  // namespace qvx::grid
