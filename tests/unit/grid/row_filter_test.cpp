// Conditions as people type them, the list of a filter, and what keeps away from rows that are filtered out.
#include "controls/grid/row_filter.h"

#include <gtest/gtest.h>

#include <set>

#include "common/keys.h"
#include "common/text_compare.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/filter_strip.h"
#include "controls/grid/invalid_marks.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

FilterHelp Help() {
    FilterHelp help;
    help.appendKey = [](TextView text, std::string& key) {
        // As in German: the letters with dots are among the others.
        for (const char16_t c : text) key += c == u'\u00E4' ? "a~" : std::string(1, static_cast<char>(c));
    };
    help.dateFormat = u"dd.mm.yyyy";
    return help;
}

TEST(CellCondition, MatchesAsTyped) {
    const std::vector<Text> texts{u"",    u" ",         u"Oak",   u"oak tree",     u"OAK|3", u"a*b",
                                  u"a1b", u"\u00C4hre", u"\"q\"", u"a\U0001F600b", u"zed"};
    const std::vector<Text> numbers{u"", u"0", u"9", u"10", u"10.0", u"-3", u"1e1", u"12 kg", u"x"};
    const std::vector<Text> mixed{u"9", u"10", u"2,500", u"pear", u"Plum", u""};
    const std::vector<Text> dates{u"01.02.2024", u"02.01.2024", u"31.12.2023", u"", u"soon"};
    constexpr int noType = noCleaning;
    const struct {
        int type;
        const std::vector<Text>& cells;
        TextView condition;
        TextView matching;  // the numbers of the cells, or "!" for no condition
    } cases[] = {
        {noType, texts, u"oak", u"234"},
        {noType, texts, u" OAK ", u"234"},
        {noType, texts, u"oak*", u"234"},
        {noType, texts, u"*ree", u"3"},
        {noType, texts, u"*A*", u"234569"},
        {noType, texts, u"a?b", u"569"},
        {noType, texts, u"?", u"1"},
        {noType, texts, u"*", u"0123456789:"},
        {noType, texts, u"o*k*e*", u"3"},
        {noType, texts, u"*k*k", u""},
        {noType, texts, u"=oak", u"2"},
        {noType, texts, u"=oak*", u"234"},
        {noType, texts, u"<>oak", u"013456789:"},
        {noType, texts, u"<> oak*", u"0156789:"},
        {noType, texts, u"\"\"", u"01"},
        {noType, texts, u"=", u"01"},
        {noType, texts, u"= \"\"", u"01"},
        {noType, texts, u"<>", u"23456789:"},
        {noType, texts, u"<>\"\"", u"23456789:"},
        {noType, texts, u"=\"oak|3\"|zed", u"4:"},
        {noType, texts, u"\"*\"", u"5"},
        {noType, texts, u"\"\"\"\"", u"8"},
        {noType, texts, u"\"q", u"8"},
        {noType, texts, u"tree | z|", u"3:"},
        {noType, texts, u"|=", u"01"},
        {noType, texts, u"..", u""},
        {noType, texts, u"b..", u""},
        {noType, texts, u"|", u"!"},
        {noType, texts, u"", u"!"},
        {noType, texts, u">", u"!"},
        {noType, texts, u"x|>=\"\"", u"!"},
        {noType, texts, u">=oak", u"234:"},
        {noType, texts, u">oak", u"34:"},
        {noType, texts, u"b..p", u"234"},
        {noType, texts, u"OAK..a", u"25679"},
        {noType, mixed, u">9", u"12"},
        {noType, mixed, u"2500..10", u"12"},
        {noType, mixed, u"10 ..", u"12"},
        {noType, mixed, u">p", u"34"},
        {noType, mixed, u"=10", u"1"},
        {data_type::numerics, numbers, u">9", u"3467"},
        {data_type::numerics, numbers, u"<=0", u"158"},
        {data_type::numerics, numbers, u"=10", u"346"},
        {data_type::numerics, numbers, u"<>10", u"01257 8"},
        {data_type::numerics, numbers, u"=x", u"8"},
        {data_type::numerics, numbers, u"=\"10\"", u"3"},
        {data_type::numerics, numbers, u"10", u"34"},
        {data_type::numerics, numbers, u"-5..9|kg", u"12578"},
        {data_type::numerics, numbers, u"..0", u"158"},
        {data_type::numerics, numbers, u">x", u"!"},
        {data_type::numerics, numbers, u"1..x", u"!"},
        {data_type::digits, numbers, u"> 1,0", u"7"},
        {data_type::date, dates, u">02.01.2024", u"0"},
        {data_type::date, dates, u"<=2.1.2024", u"12"},
        {data_type::date, dates, u"1.1.2024..29.2.2024", u"01"},
        {data_type::date, dates, u"3.1.2024..", u"0"},
        {data_type::date, dates, u"..2.1.2024", u"12"},
        {data_type::date, dates, u"=2.1.24", u"1"},
        {data_type::date, dates, u"<>2.1.24", u"0234"},
        {data_type::date, dates, u"2024", u"01"},
        {data_type::date, dates, u"<tomorrow", u"!"},
    };
    Text scratch;
    for (const auto& c : cases) {
        const auto condition = CellCondition::Read(c.condition, c.type, Help());
        Text matching(condition ? 0 : 1, u'!');
        for (std::size_t i = 0; condition && i < c.cells.size(); ++i) {
            const Text& cell = c.cells[i];
            const bool matches = condition->Matches({cell.data(), cell.size()}, scratch);
            if (matches) matching += static_cast<char16_t>(u'0' + i);
            if (std::any_of(cell.begin(), cell.end(), [](char16_t unit) { return unit > 0xFF; })) continue;
            const std::vector<std::uint8_t> bytes(cell.begin(), cell.end());
            EXPECT_EQ(condition->Matches({bytes.data(), bytes.size()}, scratch), matches) << Narrow(cell);
        }
        Text expected(c.matching);
        std::erase(expected, u' ');
        EXPECT_EQ(Narrow(matching), Narrow(expected)) << c.type << " " << Narrow(c.condition);
    }
    FilterHelp turkish = Help();
    turkish.dotlessI = true;
    const Text cell = u"TI";
    EXPECT_FALSE(CellCondition::Read(u"t*i", noType, turkish)->Matches({cell.data(), cell.size()}, scratch));
    for (const Text& text : texts) {
        const auto same = CellCondition::Read(ConditionFor(text), noType, Help());
        for (const Text& other : texts)
            EXPECT_EQ(same->Matches({other.data(), other.size()}, scratch),
                      EqualNoCase(text, other) || (text.size() < 2 && other.size() < 2))
                << Narrow(text) << " " << Narrow(other);
    }
}

TEST(RowFilter, ReadsAndWritesItsList) {
    const std::pair<TextView, std::vector<FilterItem>> lists[] = {
        {u"", {}},
        {u"[Name]a*,[Qty]>10", {{u"Name", u"a*"}, {u"Qty", u">10"}}},
        {u"[A]a,,b,[B]", {{u"A", u"a,b"}, {u"B", u""}}},
        {u"[A]a,,[x],,,[B]]C]=,,", {{u"A", u"a,[x],"}, {u"B]C", u"=,"}}},
    };
    for (const auto& [list, items] : lists) {
        EXPECT_EQ(ReadFilterItems(list), items) << Narrow(list);
        EXPECT_EQ(FilterItemsText(items), list);
    }
    EXPECT_EQ(ReadFilterItems(u"[A]a, b,"), std::vector<FilterItem>({{u"A", u"a, b,"}}));
    for (const TextView wrong : {u"A", u"[A", u"[A]]", u"[A]x,[B", u",[A]x"}) EXPECT_FALSE(ReadFilterItems(wrong));
}

class FilteredGrid : public EntryGridTest {
  protected:
    FilteredGrid() {
        Fill(grid, {u"No\tName\tQty\tName", u"1\tash\t5\tx", u"2\toak\t10\ty", u"3\tpine\t20\tx", u"4\toak\t7\tx"});
        state.columnsDataType = u";Qty-0;";
    }
    std::string Hidden(TextView list) {
        if (!filter.Replace(grid, state, Help(), list)) return "refused";
        std::string rows;
        if (const auto hide = filter.RowsToHide(grid, state, Help()))
            for (int row = 0; row < grid.Rows(); ++row)
                if ((*hide)[static_cast<std::size_t>(row)]) rows += std::to_string(row);
        return rows;
    }
    // Leaves these rows.
    void Show(std::set<int> rows) {
        for (int row = 1; row < grid.Rows(); ++row) grid.SetRowFiltered(row, !rows.contains(row));
    }
    RowFilter filter;
};

TEST_F(FilteredGrid, ShowsTheRowsThatMeetAllConditions) {
    EXPECT_EQ("13", Hidden(u"[Name]oak"));
    EXPECT_EQ("134", Hidden(u"[name]oak,[QTY]>8"));
    EXPECT_EQ("2", Hidden(u"[Name1]x")) << "the second column of that name, as in ColIndex";
    EXPECT_EQ("[Name1]x", Narrow(filter.List(grid, state, Help())));
    EXPECT_EQ("", Hidden(u"[Name] "));
    EXPECT_TRUE(filter.Empty());
    for (const TextView wrong : {u"[Town]x", u"[Qty]>many", u"Name"}) EXPECT_EQ("refused", Hidden(wrong));
    // What cannot be read while it is typed does not count, and neither does what has lost its column.
    Hidden(u"[Name]oak,[Qty]<9");
    filter.SetCondition(u"QTY", u">");
    EXPECT_EQ(u"[Name]oak", filter.List(grid, state, Help()));
    EXPECT_EQ(u">", filter.ConditionOf(u"qty"));
    grid.SetTextArray(1, u"Tree");
    grid.SetTextArray(3, u"Town");
    EXPECT_FALSE(filter.RowsToHide(grid, state, Help()));
}

TEST_F(FilteredGrid, KeysGoByTheRowsThatAreShown) {
    using Kind = CellStep::Kind;
    state.autoAddNew = true;
    state.markInvalid = true;
    state.requiredFields = u";Name1;Name;";
    Show({1, 3});
    grid.MoveTo(1, 3);
    EXPECT_EQ(StepForward(grid, state, true), (CellStep{Kind::Move, 3, 1}));
    EXPECT_EQ(StepVertically(grid, state, 1), (CellStep{Kind::Move, 3, 3}));
    grid.MoveTo(3, 3);
    EXPECT_EQ(StepForward(grid, state, true), (CellStep{Kind::AddRow, 5, 1})) << "the last row is not empty";
    grid.AddItem(u"");
    EXPECT_EQ(StepForward(grid, state, true), (CellStep{Kind::Move, 5, 1})) << "a new row is shown";
    grid.SetRowFiltered(5, true);
    EXPECT_EQ(StepForward(grid, state, true), (CellStep{Kind::AddRow, 6, 1})) << "an empty row that nobody sees";
    grid.SetTextMatrix(2, 1, u"");
    grid.SetTextMatrix(3, 1, u"");
    EXPECT_EQ(InvalidMarks(grid, state).Next({1, 1}).value().row, 3);
    // A program may put the cursor on a row that is not shown: the keys that move it lead away.
    grid.MoveTo(2, 1);
    EXPECT_EQ(StepBack(grid, state), (CellStep{Kind::Move, 1, 3}));
    const int keys[] = {keys::f2, keys::insert, keys::deleteKey, keys::enter, keys::left, 'V'};
    for (const int key : keys)
        EXPECT_EQ(GridKey::Nothing, DecideGridKey(key, key == 'V' ? keys::controlMask : 0, grid, state)) << key;
    EXPECT_EQ(GridKey::PassOn, DecideGridKey(keys::down, 0, grid, state));
    Show({});
    for (const int key : {keys::down, keys::home, keys::pageUp})
        EXPECT_EQ(GridKey::Nothing, DecideGridKey(key, 0, grid, state)) << key;
    EXPECT_EQ(GridKey::Tab, DecideGridKey(keys::tab, 0, grid, state));
    EXPECT_EQ(StepForward(grid, state, true).kind, Kind::Leave);
    EXPECT_EQ(GridKey::Undo, DecideGridKey('Z', keys::controlMask, grid, state));
}

TEST_F(FilteredGrid, RestoredRowsAreHiddenByTheFilterThatHidThem) {
    for (const bool same : {true, false}) {
        Show({1, 2, 3});
        grid.SetFilteredRows({false, false, false, false, true});
        history.RemoveRows(3, 2, [&] { grid.SetRows(3); });
        if (!same) grid.ShowAllRows();
        ASSERT_TRUE(history.Undo(state));
        EXPECT_FALSE(grid.RowFiltered(3));
        EXPECT_EQ(grid.RowFiltered(4), same);
    }
}

TEST(FilterStrip, HasAFieldOverEachColumnThatScrolls) {
    const std::vector<flexgrid::Span> columns{{0, 1, 61}, {2, 61, 141}, {3, 141, 144}, {5, 144, 200}};
    const std::vector<flexgrid::Span> mirrored{{0, 239, 299}, {2, 159, 239}};
    const auto places = [](const StripLayout& layout) {
        std::string text;
        for (const FilterField& field : layout.fields)
            text += std::to_string(field.col) + ":" + std::to_string(field.area.left) + "-" +
                    std::to_string(field.area.right) + " ";
        return text + std::to_string(layout.count.left) + "-" + std::to_string(layout.count.right);
    };
    const Dpi dpi{96, 96};
    EXPECT_EQ("2:61-140 5:144-199 204-296", places(LayOutStrip(columns, 1, {{300, 25}, dpi, 60, false})));
    EXPECT_EQ("2:61-140 5:144-199 5-57", places(LayOutStrip(columns, 1, {{230, 25}, dpi, 50, false}))) << "the corner";
    EXPECT_EQ("2:61-140 5:144-199 0-0", places(LayOutStrip(columns, 1, {{230, 25}, dpi, 60, false})));
    EXPECT_EQ("2:61-140 5:144-199 0-0", places(LayOutStrip(columns, 1, {{300, 25}, dpi, 0, false})));
    EXPECT_EQ("2:159-238 4-155", places(LayOutStrip(mirrored, 1, {{300, 25}, dpi, 60, true})));
    EXPECT_EQ("0 of 1,234,567", Narrow(ShownRowsText(0, 1'234'567)));
}

TEST_F(FilteredGrid, KeysOfAFieldAndTheFieldsThatTheyGoThrough) {
    grid.SetColWidth(2, 0);
    EXPECT_EQ(NextFilterColumn(grid, 1, 1), 3);
    EXPECT_EQ(NextFilterColumn(grid, 3, 1), 1);
    EXPECT_EQ(NextFilterColumn(grid, 1, -1), 3);
    const int both = keys::controlMask | keys::shiftMask;
    EXPECT_EQ(DecideStripKey(keys::escape, 0), StripKey::Clear);
    EXPECT_EQ(DecideStripKey(keys::down, keys::altMask), StripKey::None);
    EXPECT_EQ(DecideStripKey(keys::tab, keys::shiftMask), StripKey::PreviousField);
    EXPECT_EQ(DecideStripKey('A', keys::controlMask), StripKey::SelectAll);
    EXPECT_EQ(DecideStripKey('L', both), StripKey::ToGrid);
    EXPECT_FALSE(IsFilterKey('L', both, state)) << "without FilterRow";
}

}  // namespace
}  // namespace qvx::grid
