#include "controls/grid/column_draft.h"

#include <sstream>

#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::GridAlignment;

constexpr TextView format = u">No|<Qty|Rate;|First|Second";
constexpr TextView fields = u"[Qty]q,[Rate]r";

// No, Qty and Rate as a form has loaded them: column 0 has a width and an alignment of its own.
void Start(flexgrid::Grid& grid, ColumnDraft& draft, int firstWidth = 330) {
    grid.SetCols(3);
    grid.SetFormatString(format.substr(0, format.find(u';')));
    grid.SetColAlignment(0, GridAlignment::leftTop);
    ControlState& state = draft.State();
    state.requiredFields = u";Qty;Rate;";
    state.columnsDataType = u";Qty-1;No-0;";
    state.validateColumns = u";Qty;";
    state.bindFields = fields;
    state.keyColumn = 1;
    draft.Start(format, 1, firstWidth);
}

Text Wide(const std::string& text) { return Text(text.begin(), text.end()); }

// Executes what somebody does: a letter for the change, a column, and a value after "=".
void Execute(ColumnDraft& draft, const std::string& steps) {
    std::istringstream words(steps);
    for (std::string word; std::getline(words, word, ' ');) {
        const int col = word[1] - '0';
        const std::string value = word.size() > 3 ? word.substr(3) : std::string();
        const int number = std::atoi(value.c_str());
        switch (word[0]) {
            case 'i':
                draft.Insert(col);
                break;
            case 'd':
                draft.Duplicate(col);
                break;
            case 'x':
                draft.Remove(col);
                break;
            case 'm':
                draft.Move(col, number);
                break;
            case 'n':
                draft.Rename(col, Wide(value));
                break;
            case 'w':
                draft.SetWidth(col, number);
                break;
            case 's':
                draft.SetSide(col, static_cast<ColumnSide>(number));
                break;
            case 'r':
                draft.Set(col, ColumnSetting::required, number);
                break;
            case 'h':
                draft.Set(col, ColumnSetting::invisible, number);
                break;
            default:
                draft.SetField(col, Wide(value));
        }
    }
}

TEST(ColumnDraft, WritesWhatAFormKeeps) {
    const std::string same = ">No|<Qty|Rate;|First|Second";
    const std::string lists = " ;Qty;Rate; ;Qty-1;No-0; ;Qty; [Qty]q,[Rate]r";
    const struct {
        const char* steps;
        std::string written;  // format string
        std::string lists;    // required, data type, host's check, fields
        const char* first;    // width of column 0, and its alignment and the key column
    } cases[] = {
        {"", same, lists, "330 0 1"},
        {"r2=0 r0=1", same, " ;Qty;No; ;Qty-1;No-0; ;Qty; [Qty]q,[Rate]r", "330 0 1"},
        {"i0", "Column 1|<No|<Qty|Rate;|First|Second", lists, "825 9 2"},
        {"i3", ">No|<Qty|Rate|Column 1;|First|Second", lists, "330 0 1"},
        {"i1 i1", ">No|Column 2|Column 1|<Qty|Rate;|First|Second", lists, "330 0 3"},
        {"d1", ">No|<Qty|<Qty 2|Rate;|First|Second",
         " ;Qty;Qty 2;Rate; ;Qty-1;Qty 2-1;No-0; ;Qty;Qty 2; [Qty]q,[Rate]r", "330 0 1"},
        {"d1 d2", ">No|<Qty|<Qty 2|<Qty 2 2|Rate;|First|Second",
         " ;Qty;Qty 2;Qty 2 2;Rate; ;Qty-1;Qty 2-1;Qty 2 2-1;No-0; ;Qty;Qty 2;Qty 2 2; [Qty]q,[Rate]r", "330 0 1"},
        {"x1", ">No|Rate;|First|Second", " ;Rate; ;No-0;  [Rate]r", "330 0 -1"},
        {"x0", "<Qty|Rate;|First|Second", " ;Qty;Rate; ;Qty-1; ;Qty; [Qty]q,[Rate]r", "375 1 0"},
        // Of two columns with one caption, either has the settings.
        {"n2=qty x1", ">No|qty;|First|Second", " ;Qty; ;Qty-1;No-0; ;Qty; [Qty]q", "330 0 -1"},
        {"m0=2", "<Qty|Rate|<No;|First|Second", lists, "375 1 0"},
        {"m0=2 m2=0", "<No|<Qty|Rate;|First|Second", lists, "285 1 1"},
        {"m2=1 m1=1", ">No|Rate|<Qty;|First|Second", lists, "330 0 2"},
        {"n1=Pieces", ">No|<Pieces|Rate;|First|Second", " ;Pieces;Rate; ;Pieces-1;No-0; ;Pieces; [Pieces]q,[Rate]r",
         "330 0 1"},
        {"n1=a|b;c", ">No|<abc|Rate;|First|Second", " ;abc;Rate; ;abc-1;No-0; ;abc; [abc]q,[Rate]r", "330 0 1"},
        // Column 0 follows its caption once its width is the caption's.
        {"n0=Number", ">Number|<Qty|Rate;|First|Second", " ;Qty;Rate; ;Qty-1;Number-0; ;Qty; [Qty]q,[Rate]r",
         "330 0 1"},
        {"w0=285 n0=Nr.", ">Nr.|<Qty|Rate;|First|Second", " ;Qty;Rate; ;Qty-1;Nr.-0; ;Qty; [Qty]q,[Rate]r", "375 0 1"},
        // A caption that begins as an alignment does needs one before it.
        {"n2=<b", ">No|<Qty|<<b;|First|Second", " ;Qty;<b; ;Qty-1;No-0; ;Qty; [Qty]q,[<b]r", "330 0 1"},
        {"s1=3 s2=2 s0=1", ">No|>Qty|^Rate;|First|Second", lists, "330 0 1"},
        {"s0=2 s1=0", "^No|Qty|Rate;|First|Second", lists, "330 4 1"},
        {"s0=0", "No|<Qty|Rate;|First|Second", lists, "330 9 1"},
        {"w1=500 w0=1000", ">No|<Qty  |Rate;|First|Second", " ;Qty  ;Rate; ;Qty  -1;No-0; ;Qty  ; [Qty  ]q,[Rate]r",
         "1000 0 1"},
        {"w1=500 w1=0 w0=-5 w2=10", same, lists, "0 0 1"},
        {"n1= w1=960", ">No|<|Rate;|First|Second", " ;;Rate; ;-1;No-0; ;; []q,[Rate]r", "330 0 1"},
        {"f0=nr f1=", same, " ;Qty;Rate; ;Qty-1;No-0; ;Qty; [Rate]r,[No]nr", "330 0 1"},
        {"f1=a[b f2=c]", same, " ;Qty;Rate; ;Qty-1;No-0; ;Qty; [Qty]a[b,[Rate]c]", "330 0 1"},
        {"h0=1 h1=1", same, lists, "330 0 1"},
        {"h0=1 h0=0", same, lists, "330 0 1"},
        {"n1= w1=280", ">No|<  |Rate;|First|Second", " ;  ;Rate; ;  -1;No-0; ;  ; [  ]q,[Rate]r", "330 0 1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.steps);
        flexgrid::Grid grid;
        ColumnDraft draft(grid);
        Start(grid, draft);
        Execute(draft, c.steps);
        const ControlState& state = draft.State();
        const bool written = draft.FormatString() == format;
        EXPECT_EQ(Narrow(draft.FormatString()), c.written);
        EXPECT_EQ(' ' + Narrow(state.requiredFields + u' ' + state.columnsDataType + u' ' + state.validateColumns +
                               u' ' + state.bindFields),
                  c.lists);
        EXPECT_EQ(std::to_string(draft.Width(0)) + ' ' + std::to_string(static_cast<int>(grid.ColAlignment(0))) + ' ' +
                      std::to_string(state.keyColumn),
                  c.first);
        EXPECT_EQ(written, c.written == same);
        // What is shown is what a grid makes of the result.
        flexgrid::Grid loaded;
        loaded.SetFixedCols(0);
        loaded.SetCols(draft.Count());
        loaded.SetFormatString(draft.FormatString().substr(0, draft.FormatString().find(u';')));
        for (int col = 1; col < draft.Count(); ++col) {
            EXPECT_EQ(draft.Caption(col), loaded.TextMatrix(0, col));
            EXPECT_EQ(draft.Width(col), loaded.ColWidth(col)) << col;
            EXPECT_EQ(grid.ColWidth(col), draft.Setting(col, ColumnSetting::invisible) ? 0 : loaded.ColWidth(col));
            EXPECT_EQ(grid.ColAlignment(col), loaded.ColAlignment(col)) << col;
        }
    }
}

TEST(ColumnDraft, RefusesWhatTheListsCannotHave) {
    flexgrid::Grid grid;
    ColumnDraft draft(grid);
    EXPECT_FALSE(draft.CanRemove());
    draft.Start(u"", 0, 0);
    EXPECT_EQ(draft.FormatString(), u"");
    draft.Insert(0);
    EXPECT_TRUE(draft.CanRemove()) << "nothing is fixed";
    draft.Remove(0);
    EXPECT_EQ(draft.Count(), 0);
    Start(grid, draft);
    EXPECT_TRUE(draft.CanRemove());
    for (const char* step : {"n1=a]b", "f1=a,[b"}) {
        EXPECT_THROW(Execute(draft, step), RunTimeError) << step;
        EXPECT_EQ(draft.Caption(1), u"Qty");
        EXPECT_EQ(draft.State().bindFields, fields);
    }
    Execute(draft, "n0=a]b");
    EXPECT_THROW(draft.SetField(0, u"x"), RunTimeError);
    draft.State().bindFields = u"Qty=q";
    EXPECT_EQ(draft.Field(1), u"");
    EXPECT_THROW(draft.SetField(1, u"x"), RunTimeError);
    draft.Remove(2);
    EXPECT_FALSE(draft.CanRemove()) << "a fixed column and one more stay";
}

// A column 0 that its width hides is shown again with the width of its caption.
TEST(ColumnDraft, ShowsAColumnWithoutAWidth) {
    flexgrid::Grid grid;
    ColumnDraft draft(grid);
    draft.State().inVisibleColumns = u";No;";
    Start(grid, draft, 0);
    EXPECT_EQ(grid.ColWidth(0), 0);
    draft.Set(0, ColumnSetting::invisible, 0);
    EXPECT_EQ(grid.ColWidth(0), grid.WidthFor(u"No"));
    EXPECT_EQ(draft.FormatString(), format);
    EXPECT_EQ(grid.TextMatrix(1, 1), u"12.50") << "an example of its data type";
}

TEST(ColumnDraft, ShowsFormatsInItsExampleAndFreezesFromTheStart) {
    flexgrid::Grid grid;
    ColumnDraft draft(grid);
    draft.State().columnFormats = u"[Rate]#,##0.00";
    Start(grid, draft);
    const auto example = [&](int col) {
        Text scratch;
        return Narrow(grid.ShownText(1, col, grid.TextMatrix(1, col), scratch));
    };
    EXPECT_EQ(example(2), "1,234.50");
    draft.SetFormat(2, u"0 kg");
    EXPECT_EQ(example(2), "1235 kg");
    draft.SetFormat(1, u"d mmm yyyy");
    EXPECT_EQ(example(1), "31 Jan 2026");
    EXPECT_EQ(draft.State().columnFormats, u"[Rate]0 kg,[Qty]d mmm yyyy");
    EXPECT_THROW(draft.SetFormat(1, u"0,[0"), RunTimeError);
    draft.Rename(2, u"Weight");
    EXPECT_EQ(draft.Format(2), u"0 kg");
    draft.Remove(2);
    EXPECT_EQ(draft.State().columnFormats, u"[Qty]d mmm yyyy");
    EXPECT_FALSE(draft.CanFreeze(0));
    const std::tuple<int, bool, int> steps[] = {{0, true, 0}, {1, true, 1}, {2, true, 2}, {1, true, 2}, {1, false, 0}};
    for (const auto& [col, frozen, count] : steps) {
        draft.SetFrozen(col, frozen);
        EXPECT_EQ(draft.FrozenCols(), count) << col;
        EXPECT_EQ(draft.Frozen(col), frozen && col > 0) << col;
    }
}

}  // namespace
}  // namespace qvx::grid
