#include "controls/grid/duplicate_rows.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "common/text_compare.h"
#include "controls/grid/row_key.h"
#include "tests/support/error_of.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(FirstDuplicate, WhichPairIsFound) {
    struct {
        const char* name;
        std::vector<TextView> rows;  // under a header
        int firstCol;
        const char* found;
    } const cases[] = {
        {"no row", {}, 0, "none"},
        {"the record number counts", {u"1\ta\tb", u"2\ta\tb"}, 0, "none"},
        {"or does not", {u"1\ta\tb", u"2\ta\tb"}, 1, "1,2"},
        {"a Latin-1 row and one stored wide", {u"\u0416\tmass\tkilo", u"\tmass\tKILO"}, 1, "1,2"},
        {"a Latin-1 letter whose small form is beyond it", {u"\t\u00B5\t", u"\t\u03BC\t"}, 1, "1,2"},
        {"a character in two halves across a border", {u"\t\xD801\xDC00\t", u"\t\xD801\t\xDC28"}, 1, "1,2"},
        {"blanks count", {u"\ta\t", u"\ta \t"}, 1, "none"},
        {"zero characters count", {u"\ta\t", TextView(u"\ta\t\0", 4)}, 1, "none"},
        {"empty rows are equal", {u"\tx\t", u"1\t\t", u"2\t\t"}, 1, "2,3"},
    };
    for (const auto& c : cases) {
        std::vector<TextView> rows{u"N\tName\tQty"};
        rows.insert(rows.end(), c.rows.begin(), c.rows.end());
        flexgrid::Grid grid;
        Fill(grid, rows);
        const auto pair = FirstDuplicate(grid, c.firstCol);
        EXPECT_EQ(pair ? std::to_string(pair->first) + "," + std::to_string(pair->second) : "none", c.found) << c.name;
    }
}

TEST(FirstDuplicate, CellForCellInChosenColumns) {
    flexgrid::Grid grid;
    Fill(grid, {u"N\tName\tQty\tNote", u"1\tab\tc\tx", u"2\ta\tbc\ty", u"3\t\u0416\tBC\tX", u"4\tA\tbc\tz"});
    ControlState state;
    const std::tuple<TextView, RowPair> cases[] = {
        {u"", {}},           {u";Name;Qty;", {2, 4}}, {u";qty;", {2, 3}},
        {u";Note;", {1, 3}}, {u";Name;Note;", {}},    {u";N;Name;", {}},
    };
    for (const auto& [columns, pair] : cases)
        EXPECT_EQ(FirstDuplicateIn(grid, state, columns).value_or(RowPair()), pair) << Narrow(columns);
    EXPECT_EQ(test::ErrorOf([&] { FirstDuplicateIn(grid, state, u";Colour;"); }), 380);
    state.autoRecordNumber = true;
    grid.SetTextMatrix(4, 3, u"Y");
    EXPECT_EQ(FirstDuplicateIn(grid, state, u""), (RowPair{2, 4})) << "the record number does not count";
}

TEST(FirstDuplicate, GridsWithoutCells) {
    flexgrid::Grid grid;
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetCols(0);
    EXPECT_EQ(FirstDuplicate(grid, 1), (RowPair{0, 1})) << "rows without any text are equal";
    grid.SetRows(0);
    EXPECT_EQ(FirstDuplicate(grid, 0), std::nullopt);
}

Text KeyText(const flexgrid::Grid& grid, int row) {
    Text key;
    for (int col = 1; col < grid.Cols(); ++col) key += grid.TextMatrix(row, col);
    return key;
}

// Against every pair compared, over texts that differ late and in length, in short and long grids.
TEST(FirstDuplicate, IsThePairThatComparingAllFinds) {
    std::mt19937 random(1124);
    const TextView pieces[] = {u"a",      u"A",      u"Zz",     u"zZ", u"seven",   u"SEVEN",
                               u"\u00E9", u"\u00C9", u"\u0416", u"",   u"12345678"};
    for (int round = 0; round < 400; ++round) {
        flexgrid::Grid grid;
        Fill(grid, {u"N\tA\tB"});
        const int rows = 2 + static_cast<int>(random() % (round % 10 == 0 ? 150 : 20));
        const int length = 1 + static_cast<int>(random() % 5);
        for (int row = 1; row < rows; ++row) {
            Text item = random() % 2 == 0 ? u"x\t" : u"\u0416\t";  // which stores the whole row wide
            for (int i = 0; i < length; ++i) item += pieces[random() % std::size(pieces)];
            item.insert(2 + random() % (item.size() - 1), u"\t");
            grid.AddItem(item);
        }
        std::optional<RowPair> expected;
        for (int r = grid.FixedRows(); r < grid.Rows() && !expected; ++r)
            for (int r2 = r + 1; r2 < grid.Rows() && !expected; ++r2)
                if (EqualNoCase(KeyText(grid, r), KeyText(grid, r2))) expected = {r, r2};
        EXPECT_EQ(FirstDuplicate(grid, 1), expected) << round;
    }
}

TEST(HashOfKey, TellsTextsApart) {
    std::set<std::uint64_t> hashes;
    std::size_t count = 0;
    for (std::size_t length = 1; length < 20; ++length) {
        for (std::size_t change = 0; change <= length; ++change, ++count) {
            Text text(length + 1, u'\0');
            text[change] = u'b';
            hashes.insert(HashOfKey(flexgrid::CellView(text.data(), length)));
        }
    }
    EXPECT_EQ(hashes.size(), count);
}

// One text, folded or not, in bytes or wide, gives one hash wherever its ASCII runs are cut.
TEST(HashOfKey, IsThatOfTheFoldedText) {
    std::mt19937 random(7);
    const TextView alphabet = u"AbZz@[`{09 \u00DF\u00C0\u00B5\u00FF\u00F7";
    for (int round = 0; round < 2000; ++round) {
        Text text;
        for (auto n = random() % 30; n > 0; --n) text += alphabet[random() % (round % 2 == 0 ? 11 : alphabet.size())];
        std::vector<std::uint8_t> bytes(text.begin(), text.end());
        const Text folded = FoldedText(text);
        const auto hash = HashOfKey(flexgrid::CellView(folded.data(), folded.size()));
        EXPECT_EQ(HashOfKey(flexgrid::CellView(text.data(), text.size())), hash);
        EXPECT_EQ(HashOfKey(flexgrid::CellView(bytes.data(), bytes.size())), hash);
    }
}

}  // namespace
}  // namespace qvx::grid
