#include "controls/grid/column_settings.h"

#include <random>

#include "controls/grid/column_order.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(ColumnSettings, AnItemIsChangedAmongTheOthers) {
    constexpr int codes = 3;
    const struct {
        TextView list;
        int form;
        int value;
        const char* changed;
    } cases[] = {
        {u"", item_form::plain, 1, ";Qty;"},
        {u";", item_form::plain, 1, ";Qty;"},
        {u";No;Rate;", item_form::plain, 1, ";No;Rate;Qty;"},
        // Items that count for nothing, for lack of a semicolon, do not begin to.
        {u";No;Rate", item_form::plain, 1, ";No;Qty;Rate"},
        {u"No;", item_form::plain, 1, "No;Qty;"},
        {u"No", item_form::plain, 1, "No;Qty;"},
        {u"No;Rate", item_form::plain, 1, "No;Qty;Rate"},
        {u"Qty;QTY;;No", item_form::plain, 1, "Qty;QTY;;No"},
        {u"Qty;QTY;;No", item_form::plain, 0, "Qty;;No"},
        {u";No;Qty;qty;Rate;", item_form::plain, 0, ";No;Rate;"},
        {u";Qty;", item_form::plain, 0, ""},
        {u";", item_form::plain, 0, ";"},
        {u";No-0;qty-2;Qty-1;Rate-1;", codes, 0, ";No-0;Qty-0;Rate-1;"},
        {u";Qty-7;Qty-01;Qty-;Qty-1-1;", codes, 2, ";Qty-7;Qty-01;Qty-;Qty-1-1;Qty-2;"},
        {u";Qty-7;Qty-1;", codes, -1, ";Qty-7;"},
        {u";No-0;Qty-1", codes, 2, ";No-0;Qty-2;Qty-1"},
        {u";No-5;Qty-40;Rate-5;", item_form::number, 123, ";No-5;Qty-123;Rate-5;"},
        {u";Qty-x;Qty-40;Qty-007;", item_form::number, 0, ";Qty-x;"},
        {u";Qty-007;", item_form::number, 7, ";Qty-007;"},
        {u";A;", codes, codes, "380"},
        {u";A;", codes, -2, "380"},
        {u";A;", item_form::number, -1, "380"},
    };
    for (const auto& c : cases) {
        std::string changed;
        try {
            const Text list = WithListedValue(c.list, u"Qty", c.form, c.value);
            EXPECT_EQ(ListedValue(list, u"Qty", c.form), c.value) << Narrow(list);
            changed = Narrow(list);
        } catch (const RunTimeError& error) {
            changed = std::to_string(error.Number());
        }
        EXPECT_EQ(changed, c.changed) << Narrow(c.list) << " " << c.value;
    }
    EXPECT_THROW(WithListedValue(u"", u"a;b", item_form::plain, 1), RunTimeError);
    EXPECT_EQ(WithListedValue(u";A;", u"", item_form::plain, 1), u";A;;");
    EXPECT_EQ(WithListedValue(u";A;;", u"", item_form::plain, 0), u";A;");
}

// The lists of a grid with the columns No, Qty, Rate, Qty, Item after one of its columns has another caption.
TEST_F(EntryGridTest, ACaptionIsRenamedWhereverItIs) {
    const struct {
        int col;
        TextView caption;
        const char*
            lists;  // required, data type, maximum length, host's check, fields, formats; "" where they are as before
    } cases[] = {
        {2, u"Price", ";Qty;Price;| ;Qty-1;Price-1;Price-4;|Rate-7;Price-20;|;Price;|[Price]r,[Qty]q|[Qty]0,[Price]#"},
        {2, u"RATE", ""},
        {4, u"Other", ""},
        {2, u"Qty", ";Qty;price;| ;Qty-1;|Rate-7;||[Qty]q|[Qty]0"},
        {1, u"Sum",
         ";Qty;Sum;price;Rate;| "
         ";Qty-1;Sum-1;Rate-1;Rate-4;|Rate-7;Rate-20;|;Rate;|[Rate]r,[Sum]q|[Qty]0,[Sum]0,[rate]#"},
        {3, u"Sum",
         ";Qty;Sum;price;Rate;| "
         ";Qty-1;Sum-1;Rate-1;Rate-4;|Rate-7;Rate-20;|;Rate;|[Rate]r,[Qty]q|[Qty]0,[Sum]0,[rate]#"},
        {3, u"Rate", ""},
        {2, u"a;b", "380"},
        {2, u"a]b", "380"},
        {4, u"a]b", ""},
    };
    for (const auto& c : cases) {
        Fill(grid, {u"No\tQty\tRate\tQty\tItem"});
        state.requiredFields = u";Qty;price;Rate;";
        state.columnsDataType = u" ;Qty-1;Rate-1;Rate-4;";
        state.columnsMaxLength = u"Rate-7;Rate-20;";
        state.validateColumns = u";Rate;";
        state.bindFields = u"[Rate]r,[Qty]q";
        state.columnFormats = u"[Qty]0,[rate]#";
        const auto lists = [&] {
            return Narrow(state.requiredFields + u'|' + state.columnsDataType + u'|' + state.columnsMaxLength + u'|' +
                          state.validateColumns + u'|' + state.bindFields + u'|' + state.columnFormats);
        };
        const std::string before = lists();
        std::string after;
        try {
            for (auto& [field, text] : RenamedColumn(grid, state, c.col, c.caption)) state.*field = text;
            after = lists();
        } catch (const RunTimeError& error) {
            after = std::to_string(error.Number());
        }
        EXPECT_EQ(after, *c.lists ? c.lists : before) << c.col << Narrow(c.caption);
    }
}

// Whatever is set, renamed and moved, each column has what was last set for it, or what the lists said from the start.
TEST_F(EntryGridTest, ColumnsKeepTheirSettingsInAnyOrder) {
    std::mt19937 random(4711);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    constexpr int settings = static_cast<int>(ColumnSetting::last) + 1;
    constexpr int values[settings] = {2, 2, 2, 2, 2, 2, 3, 5, 6, 40};
    const TextView odd[] = {u"", u";", u"A;", u";B", u"C", u";A;;B-1;", u"B-1;C-2", u";c-1;a-2;A-3;", u";;"};
    for (int round = 0; round < 100; ++round) {
        Fill(grid, {u"A\tB\tC\tB-1\t\tLast"});
        for (Text ControlState::*list : {&ControlState::requiredFields, &ControlState::columnsDataType,
                                         &ControlState::footer, &ControlState::columnsMaxLength})
            state.*list = odd[below(std::size(odd))];
        std::vector<std::vector<int>> wanted;  // by column
        const auto all = [&] {
            std::vector<std::vector<int>> columns;
            for (int col = 0; col < grid.Cols(); ++col) {
                std::vector<int>& column = columns.emplace_back();
                for (int i = 0; i < settings; ++i)
                    column.push_back(SettingOf(grid, state, col, static_cast<ColumnSetting>(i)));
            }
            return columns;
        };
        wanted = all();
        int names = 0;
        for (int step = 0; step < 30; ++step) {
            const int col = below(grid.Cols());
            const int which = below(settings + 3);
            if (which == settings) {
                const Text caption = u"New-" + Text(1, static_cast<char16_t>(u'a' + names++ % 26)) + u"-1";
                for (auto& [field, text] : RenamedColumn(grid, state, col, caption)) state.*field = text;
                grid.SetTextMatrix(0, col, caption);
            } else if (which > settings) {
                const int to = below(grid.Cols());
                MoveColumn(grid, state, col, to);
                std::vector<int> column = wanted[static_cast<std::size_t>(col)];
                wanted.erase(wanted.begin() + col);
                wanted.insert(wanted.begin() + to, std::move(column));
            } else {
                const auto setting = static_cast<ColumnSetting>(which);
                const bool coded = which >= static_cast<int>(ColumnSetting::dataType) && values[which] < 40;
                const int value = below(values[which] + coded) - coded;
                static constexpr Text ControlState::*lists[settings] = {
                    &ControlState::requiredFields,  &ControlState::nonFocusColumns, &ControlState::inVisibleColumns,
                    &ControlState::inActiveColumns, &ControlState::listColumns,     &ControlState::unChangableColumns,
                    &ControlState::columnsDataType, &ControlState::checkValueFor,   &ControlState::footer,
                    &ControlState::columnsMaxLength};
                state.*lists[which] = WithSetting(grid, state, col, setting, value);
                wanted[static_cast<std::size_t>(col)][static_cast<std::size_t>(which)] = value;
            }
            ASSERT_EQ(all(), wanted) << round << " " << step << " " << col << " " << which;
        }
    }
}

}  // namespace
}  // namespace qvx::grid
