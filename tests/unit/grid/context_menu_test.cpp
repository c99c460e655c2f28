// The list of the menu's commands as a host leaves it.
#include "controls/grid/context_menu.h"

#include <gtest/gtest.h>

#include "tests/support/narrow.h"

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
            got += test::Narrow(entry.key) + (entry.command == MenuCommand::host ? "!|" : "|");
        EXPECT_EQ(got, read) << test::Narrow(items);
    }
    EXPECT_EQ(ReadMenu(u";cut=Remove;").at(0).caption, u"Remove");
    EXPECT_EQ(ReadMenu(u";x==y;").at(0).caption, u"=y");
    EXPECT_EQ(ReadMenu(DefaultMenu()).size(), 14u) << "nothing of it is dropped";
}

}  // namespace
}  // namespace qvx::grid
