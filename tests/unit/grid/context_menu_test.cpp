// The list of the menu's commands as a host leaves it.
#include "controls/grid/context_menu.h"

#include <gtest/gtest.h>

#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(ContextMenu, ReadsWhatTheHostHasMadeOfIt) {
    const std::pair<TextView, const char*> cases[] = {
        {u";cut;-;paste;", "cut|-|paste|"},
        {u"CUT;stock=Show &stock", "cut|stock!|"},
        {u";-;-;cut;-;-;unknown;-;copy;-;", "cut|-|copy|"},
        {u";=No key;key=;x==y;", "x!|"},
        {u";cut=Remove;", "cut|"},
        {u"", ""},
        {u";;;-;", ""},
    };
    for (const auto& [items, read] : cases) {
        std::string got;
        for (const MenuEntry& entry : ReadMenu(items))
            got += Narrow(entry.key) + (entry.command == MenuCommand::host ? "!|" : "|");
        EXPECT_EQ(got, read) << Narrow(items);
    }
    EXPECT_EQ(ReadMenu(u";cut=Remove;").at(0).caption, u"Remove");
    EXPECT_EQ(ReadMenu(u";x==y;").at(0).caption, u"=y");
    ControlState state;
    EXPECT_EQ(ReadMenu(DefaultMenu(state)).size(), 14u) << "nothing of it is dropped";
    state.filterRow = true;
    EXPECT_EQ(ReadMenu(DefaultMenu(state)).size(), 17u);
}

TEST(ContextMenu, OffersWhatMakesSense) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tA", u"1\tx"});
    ControlState state;
    const auto offered = [&](int col, const MenuFacts& facts) {
        std::string keys;
        for (const MenuEntry& entry : ReadMenu(DefaultMenu(state)))
            if (entry.command != MenuCommand::separator && MayChoose(entry.command, grid, state, col, facts))
                keys += Narrow(entry.key) + " ";
        return keys;
    };
    EXPECT_EQ(offered(0, {}), "cut copy insertrow deleterow ") << "a fixed column is not sorted by";
    state.findBar = true;
    EXPECT_EQ(offered(1, {true, false, true}),
              "cut copy paste undo insertrow deleterow sortascending sortdescending find ");
    EXPECT_EQ(offered(9, {false, true, false}), "cut copy redo insertrow deleterow find ");
    EXPECT_TRUE(MayChoose(MenuCommand::host, grid, state, 9, {}));
    state.filterRow = true;
    EXPECT_EQ(offered(1, {}), "cut copy insertrow deleterow sortascending sortdescending find filter ");
    grid.SetRowFiltered(1, true);
    EXPECT_EQ(offered(9, {false, false, false, true}), "cut copy find showall ") << "no row is seen";
    grid.SetRows(1);
    EXPECT_EQ(offered(1, {false, false, true}).find("paste"), std::string::npos) << "there is no row";
}

}  // namespace
}  // namespace qvx::grid
