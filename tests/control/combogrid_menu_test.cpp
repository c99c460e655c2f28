// The menu of the grid, opened and used by a person.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/input.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridMenu : public ::testing::Test {
  protected:
    ComboGridMenu() {
        form.Fill({{u"b", u"1"}, {u"a", u"2"}});
        form.GoTo(1, F::name);
        form.Log();
    }
    // Opens the menu by the right button on a cell and presses these keys in it.
    void Choose(int row, int col, std::vector<int> keys) {
        MoveMouseTo(form.At(row, col, 6, 6));
        const Person person([&keys] {
            WaitFor([] { return FindWindowW(L"#32768", nullptr) != nullptr; }, 4000);
            Sleep(100);  // until the menu waits
            for (const int key : keys) TypeKey(key);
        });
        mouse_event(MOUSEEVENTF_RIGHTDOWN, 0, 0, 0, 0);
        mouse_event(MOUSEEVENTF_RIGHTUP, 0, 0, 0, 0);
        form.Pump();
    }
    F form{{{L"ContextMenu", Variant(true)}}};
};

TEST_F(ComboGridMenu, CommandsWorkOnTheClickedCell) {
    Choose(2, F::name, {'I'});
    EXPECT_EQ("b//a/", form.Column(F::name)) << "a row is inserted above the clicked one";
    EXPECT_EQ("2,1", form.Current());
    Choose(1, F::qty, {'U'});
    EXPECT_EQ("b/a/", form.Column(F::name));
    form.Log();
    Choose(0, F::name, {'A'});
    EXPECT_EQ("a/b/", form.Column(F::name));
    EXPECT_EQ("1,2", form.Current()) << "a header leaves the cursor where it is, on its record";
    EXPECT_NE(std::string::npos, form.Log().find("25(0, 1, ;cut;copy;paste;"));
}

// The system may take a request to paint from the queue while a menu is open.
TEST_F(ComboGridMenu, LeavesNothingUndrawn) {
    Put(form.grid.get(), L"Footer", {Variant(u";Rate-0;")});
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == 25) SysReAllocString(arguments.rgvarg[1].pbstrVal, L";stock=&Stock;");
        if (id == 26) form.SetCell(1, F::rate, u"9");
    };
    for (const int key : {VK_ESCAPE, int{'S'}}) {
        form.GoTo(1, F::name);
        Choose(2, F::qty, {key});
        const PixelPicture seen = PictureOnScreen(form.InnerGrid());
        Call(form.Inner().get(), L"Refresh");
        EXPECT_TRUE(seen.pixels == PictureOnScreen(form.InnerGrid()).pixels) << key;
    }
}

TEST_F(ComboGridMenu, FiltersByTheClickedValue) {
    Put(form.grid.get(), L"FilterRow", {Variant(true)});
    form.Log();
    Choose(2, F::name, {'V'});
    EXPECT_EQ(u"[Name]=a", Call(form.grid.get(), L"Filter").ToText());
    Choose(2, F::qty, {'H'});
    EXPECT_EQ(2, form.Number(L"FilteredRows"));
    const std::string log = form.Log();
    EXPECT_TRUE(log.find("30(1, 2)") < log.find("30(2, 2)")) << log;
    EXPECT_NE(std::string::npos, log.find("find;-;filter;showall;, False)"));
}

TEST_F(ComboGridMenu, TheHostAddsCommandsAndKeepsItClosed) {
    bool cancel = false;
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id != 25) return;
        SysReAllocString(arguments.rgvarg[1].pbstrVal, L";cut;-;stock=&Stock;");
        *arguments.rgvarg[0].pboolVal = cancel ? VARIANT_TRUE : VARIANT_FALSE;
    };
    Choose(2, F::qty, {'S'});
    EXPECT_NE(std::string::npos, form.Log().find("26(stock, 2)"));
    cancel = true;
    SendMessageW(form.InnerGrid(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(form.InnerGrid()), -1);
    EXPECT_EQ("25(2, 2, ;cut;copy;", form.Log().substr(0, 19)) << "the menu key, on the current cell";
    Put(form.grid.get(), L"ContextMenu", {Variant(false)});
    SendMessageW(form.InnerGrid(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(form.InnerGrid()), -1);
    EXPECT_EQ("", form.Log());
}

}  // namespace
}  // namespace qvx::test
