// Whole grids checked: which cell fails first, and with which words.
#include "controls/grid/validation.h"

#include <gtest/gtest.h>

#include "common/number_text.h"
#include "controls/grid/invalid_marks.h"
#include "dialogs/messages.h"
#include "tests/support/error_of.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

std::string Report(const std::optional<InvalidCell>& found) {
    if (!found) return "passes";
    return std::to_string(found->row) + "," + std::to_string(found->col) + " " + Narrow(found->message);
}

TEST(Validation, OneCellAgainstTheRulesOfItsColumn) {
    constexpr const char* less = "1,1 Value should be less than zero.";
    constexpr const char* atMost = "1,1 Value should be less than or equal to zero.";
    constexpr const char* greater = "1,1 Value should be greater than zero.";
    constexpr const char* atLeast = "1,1 Value should be greater than or equal to zero.";
    constexpr const char* notZero = "1,1 Value should not be zero.";
    constexpr const char* required = "1,1 You must enter a valid data.";
    constexpr const char* passes = "passes";
    struct Case {
        TextView cell;
        TextView required;
        TextView rules;
        const char* verdict;
    };
    const Case cases[] = {
        {u"-1", u"", u";A-0;", passes},     {u"0", u"", u";A-0;", less},         {u"", u"", u";A-0;", less},
        {u"0", u"", u";a-1;", passes},      {u"0.01", u"", u";A-1;", atMost},    {u"2 kg", u"", u";A-2;", passes},
        {u"kg", u"", u";A-2;", greater},    {u"", u"", u";A-2;", greater},       {u"", u"", u";A-3;", passes},
        {u"-0.5", u"", u";A-3;", atLeast},  {u"", u"", u";A-4;", notZero},       {u"1,250", u"", u";A-4;", passes},
        {u"0", u"", u";A-3;A-4;", notZero}, {u"-1", u"", u";A-4;A-3;", atLeast}, {u"5", u"", u"A-0;", passes},
        {u"x", u";A;", u"", passes},        {u" ", u";a;", u"", required},       {u"\t", u";A;", u"", passes},
        {u"", u";A;", u";A-2;", required},  {u"0", u";A;", u";A-2;", greater},   {u"", u";B;", u";B-2;", passes},
    };
    for (const Case& c : cases) {
        // However the row is kept: as short as most, with characters outside Latin-1, long.
        for (const Text& other : {Text(), Text(u"\u20AC"), Text(300, u'x')}) {
            flexgrid::Grid grid;
            Fill(grid, {u"No\tA\tZ", u"1\t\t"});
            grid.SetTextMatrix(1, 1, c.cell);
            grid.SetTextMatrix(1, 2, other);
            ControlState state;
            state.requiredFields = c.required;
            state.checkValueFor = c.rules;
            EXPECT_EQ(Report(FindInvalidCell(grid, state)), c.verdict)
                << Narrow(c.cell) << " " << Narrow(c.rules) << " beside " << other.size();
        }
    }
}

TEST(Validation, TheFirstCellRowByRowFixedColumnsAndRowsBelowTheFirstIncluded) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1\t\t5", u"2\t\t0", u"\t\t1"});
    grid.SetFixedRows(2);
    ControlState state;
    state.requiredFields = u";A;No;";
    state.checkValueFor = u";B-2;";
    // What is found, and what corrects it.
    const std::tuple<const char*, int, int> faults[] = {{"1,1 You must enter a valid data.", 1, 1},
                                                        {"2,1 You must enter a valid data.", 2, 1},
                                                        {"2,2 Value should be greater than zero.", 2, 2},
                                                        {"3,0 You must enter a valid data.", 3, 0}};
    for (const auto& [report, row, col] : faults) {
        EXPECT_EQ(Report(FindInvalidCell(grid, state)), report);
        grid.SetTextMatrix(row, col, u"1");
    }
    grid.SetRows(2);
    EXPECT_EQ(Report(FindInvalidCell(grid, state)), "passes");
}

TEST(Validation, StartsAnywhereAndAsksTheHost) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1\t\t5", u"2\tx\t0", u"\tx\t0"});
    ControlState state;
    state.requiredFields = u";A;";
    state.checkValueFor = u";B-2;";
    state.validateColumns = u";No;A;";
    std::string asked;
    const AskHost host = [&](int row, int col, const Text& text, const Text& message) {
        asked += std::to_string(row) + "," + std::to_string(col) + Narrow(text) + (message.empty() ? " " : "! ");
        if (row == 1) return Text();                             // accepts what the grid does not
        if (row == 3 && col == 1) grid.SetRows(2);               // and goes on with what is left
        return text == u"2" ? Text(u"Not a number.") : message;  // a rule of its own
    };
    const struct {
        CheckStart start;
        bool ask;
        const char* report;
        CellRule rule;
        const char* asked;
    } cases[] = {
        {{1, 0}, false, "1,1 You must enter a valid data.", CellRule::required, ""},
        {{1, 2}, false, "2,2 Value should be greater than zero.", CellRule::sign, ""},
        {{2, 3}, false, "3,2 Value should be greater than zero.", CellRule::sign, ""},
        {{1, 2, true}, false, "passes", CellRule::none, ""},
        {{9, 0, true}, false, "passes", CellRule::none, ""},
        {{1, 0}, true, "2,0 Not a number.", CellRule::host, "1,01 1,1! 2,02 "},
        {{2, 1, true}, true, "2,2 Value should be greater than zero.", CellRule::sign, "2,1x "},
        {{3, 0}, true, "passes", CellRule::none, "3,0 3,1x "},
    };
    for (const auto& c : cases) {
        asked.clear();
        const auto found = FindInvalidCell(grid, state, c.start, c.ask ? host : AskHost());
        EXPECT_EQ(Report(found), c.report);
        EXPECT_EQ(found.value_or(InvalidCell()).rule, c.rule) << c.report;
        EXPECT_EQ(asked, c.asked);
    }
}

TEST(Validation, StartsAfterACellOfTheGrid) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA", u"1\t"});
    const std::tuple<long, long, int, int> starts[] = {{0, 0, 1, 0}, {0, 1, 1, 0}, {1, -1, 1, 0}, {1, 1, 1, 2}};
    for (const auto& [row, col, startRow, startCol] : starts) {
        EXPECT_EQ(StartAfter(grid, row, col, true).row, startRow) << row << "," << col;
        EXPECT_EQ(StartAfter(grid, row, col, true).col, startCol) << row << "," << col;
    }
    const std::tuple<long, long, int> refused[] = {{-1, 0, 30009}, {2, 0, 30009}, {1, -2, 30010}, {0, 2, 30010}};
    for (const auto& [row, col, error] : refused)
        EXPECT_EQ(test::ErrorOf([&] { StartAfter(grid, row, col, false); }), error) << row << "," << col;
    grid.SetFixedRows(0);
    grid.SetRows(0);
    EXPECT_EQ(StartAfter(grid, 0, 0, false).row, 1);
}

TEST(Validation, MarksInvalidCellsButNotThoseOfEmptyRows) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1\t\t5", u"2\t\t", u"3\tx\t0"});
    ControlState state;
    state.autoRecordNumber = true;
    state.requiredFields = u";A;";
    state.checkValueFor = u";B-2;";
    InvalidMarks marks(grid, state);
    EXPECT_FALSE(marks.IsMarked(1, 1)) << "before the first drawing";
    marks.Prepare();
    std::string marked;
    for (int row = 1; row < grid.Rows(); ++row)
        for (int col = 0; col < grid.Cols(); ++col)
            if (marks.IsMarked(row, col)) marked += std::to_string(row) + "," + std::to_string(col) + " ";
    EXPECT_EQ(marked, "1,1 3,2 ");
    EXPECT_EQ(marks.MessageOf(3, 2), u"Value should be greater than zero.");
    for (const auto& [row, col] : {std::pair{0, 1}, {2, 1}, {9, 1}, {1, 9}}) EXPECT_EQ(marks.MessageOf(row, col), u"");
    EXPECT_EQ(marks.Next({1, 0}), (CellPlace{1, 1}));
    EXPECT_EQ(marks.Next({1, 1}), (CellPlace{3, 2}));
    EXPECT_EQ(marks.Next({3, 2}), (CellPlace{1, 1}));
    grid.SetTextMatrix(1, 1, u"y");
    EXPECT_EQ(marks.Next({3, 2}), std::nullopt) << "the only one";
    EXPECT_EQ(marks.Next({3, 1}), (CellPlace{3, 2}));
}

// The host refuses "x" in column A unless B has something, and writes the number of its answers into column No.
TEST(Validation, AsksTheHostAboutMarksOnceForEachText) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA\tB", u"1\tx\t", u"2\tx\t5", u"\t\t", u"4\ty\t"});
    ControlState state;
    state.validateColumns = u";A;";
    state.checkValueFor = u";A-4;";
    InvalidMarks marks(grid, state);
    int asked = 0;
    const AskHost host = [&](int row, int, const Text& text, const Text& message) {
        EXPECT_EQ(message, dialogs::messages::zeroValuePrompt);
        grid.SetTextMatrix(row, 0, IntegerToText(++asked));
        return text == u"x" && grid.TextMatrix(row, 2).empty() ? Text(u"no x") : Text();
    };
    const auto marked = [&] {
        std::string rows;
        marks.Prepare();
        for (int row = 1; row < grid.Rows(); ++row)
            if (marks.IsMarked(row, 1)) rows += std::to_string(row);
        return rows;
    };
    EXPECT_EQ(marked(), "124") << "what the column's rule says";
    EXPECT_TRUE(marks.Waits());
    EXPECT_TRUE(marks.Ask(host));
    EXPECT_EQ(marked(), "1");
    EXPECT_FALSE(marks.Waits()) << "although the host has written into the rows";
    EXPECT_EQ(asked, 3) << "not about an empty row";
    EXPECT_EQ(marks.MessageOf(1, 1), u"no x");
    grid.SetTextMatrix(1, 2, u"7");
    EXPECT_EQ(marks.MessageOf(1, 1), dialogs::messages::zeroValuePrompt) << "until it is asked again";
    EXPECT_TRUE(marks.Ask(host));
    EXPECT_EQ(marked(), "");
    EXPECT_EQ(asked, 4);
    grid.SetTextMatrix(4, 1, u"x");
    EXPECT_EQ(marks.Next({1, 1}, host), (CellPlace{4, 1})) << "F8 asks by itself";
    EXPECT_EQ(asked, 5);
    marks.Forget();
    marks.Prepare();
    EXPECT_TRUE(marks.IsMarked(2, 1));
    grid.AddItem(u"9", 1);
    EXPECT_FALSE(marks.Ask(host)) << "rows have moved since";
    EXPECT_EQ(asked, 5);
    marked();
    EXPECT_TRUE(marks.Ask([&](int, int, const Text&, const Text&) {
        grid.SetRows(2);
        return Text();
    }));
    EXPECT_EQ(marks.Next({0, 0},
                         [&](int, int, const Text&, const Text&) {
                             grid.SetRows(1);
                             return Text(u"gone");
                         }),
              std::nullopt);
}

}  // namespace
}  // namespace qvx::grid
