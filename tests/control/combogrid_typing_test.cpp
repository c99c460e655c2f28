// Entries typed into a ComboGrid with real keys: what the cells hold afterwards and what the host is told.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

TEST(ComboGridTyping, EntriesAreCleanedByTheirColumn) {
    struct Case {
        int col;
        const wchar_t* typed;
        const char* cell;
    };
    const Case cases[] = {
        {F::name, L"Any text 1%", "Any text 1%"},
        {F::qty, L"45%", "45"},
        {F::qty, L"3.75", "375"},
        {F::rate, L"12abc", "12"},
        {F::rate, L"1,234", "1"},
        {F::rate, L"-0.5", "-0.5"},
        {F::month, L"3-2024", "Mar/2024"},
        {F::month, L"soon", ""},
        {F::item, L"ban", "Banana"},
        {F::item, L"C", "Cherry"},
        {F::item, L"xyz", "Apple"},
        {F::skip, L"a", "a"},
    };
    for (const Case& c : cases) {
        F form;
        form.GoTo(1, c.col);
        form.Type(c.typed);
        EXPECT_TRUE(form.Frame());
        EXPECT_EQ(u"", form.Cell(1, c.col)) << "the text lives in the editor";
        form.Press(VK_RETURN);
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ(c.cell, Narrow(form.Cell(1, c.col)));
        const std::string at = "1, " + std::to_string(c.col) + ", ";
        EXPECT_EQ("1(" + at + ", False)\n2(" + at + ", " + c.cell + ", False)\n", form.Log());
        EXPECT_NE(0, form.Number(L"Changed"));
    }
}

TEST(ComboGridTyping, AColumnTakesAsManyCharactersAsItsLength) {
    F form({{L"ColumnsMaxLength", Variant(u";Name-4;Item-2;")}});
    form.SetCell(1, F::name, u"longer");
    form.GoTo(1, F::name);
    form.Press(VK_F2);
    form.Type(L"x");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"longer", form.Cell(1, F::name)) << "what is there already stays";
    form.GoTo(1, F::name);
    form.Type(L"abcdefg");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"abcd", form.Cell(1, F::name));
    form.GoTo(1, F::item);
    form.Type(L"ban");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"Banana", form.Cell(1, F::item)) << "an entry of the list comes whole";
    form.GoTo(1, F::qty);
    form.Type(L"123456");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"123456", form.Cell(1, F::qty));
}

TEST(ComboGridTyping, FirstCharacterAppearsOnceAndReplacesTheText) {
    F form;
    form.SetCell(1, F::name, u"before");
    form.GoTo(1, F::name);
    form.Type(L"x");
    form.Press(VK_TAB);
    EXPECT_EQ(u"x", form.Cell(1, F::name));
    EXPECT_EQ("1(1, 1, before, False)\n2(1, 1, before, x, False)\n", form.Log());
}

TEST(ComboGridTyping, F2AndDoubleClickGoOnWithTheText) {
    F form;
    form.SetCell(1, F::name, u"be");
    form.GoTo(1, F::name);
    form.Press(VK_F2);
    ASSERT_TRUE(form.Frame());
    form.Type(L"st");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"best", form.Cell(1, F::name));
    form.Click(1, F::name, true);
    ASSERT_TRUE(form.Frame());
    form.Type(L"!");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"best!", form.Cell(1, F::name));
}

TEST(ComboGridTyping, ADoubleClickBesideTheCurrentCellLeavesTheViewAlone) {
    F form({{L"Rows", Variant(60)}, {L"AllowUserResizing", Variant(1)}});
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    struct Case {
        int row;
        int col;
        int pixelsIn;
    };
    for (const Case& c : {Case{0, F::qty, 6}, {0, F::qty, 0}, {0, F::no, 6}, {25, F::no, 6}}) {
        form.GoTo(1, F::name);
        Put(inner.get(), L"TopRow", {Variant(20)});
        form.Click(c.row, c.col, true, c.pixelsIn);
        EXPECT_EQ(20, Call(inner.get(), L"TopRow").ToLong()) << c.row << "," << c.col << " " << c.pixelsIn;
        EXPECT_FALSE(form.Frame());
    }
}

TEST(ComboGridTyping, BackspaceEmptiesTheCellAndDeleteInTheEditorRemoves) {
    F form;
    form.SetCell(1, F::name, u"old");
    form.GoTo(1, F::name);
    form.Press(VK_BACK);
    ASSERT_TRUE(form.Frame());
    form.Press(VK_RETURN);
    EXPECT_EQ(u"", form.Cell(1, F::name));
}

TEST(ComboGridTyping, HostMayRefuseTheEdit) {
    F form;
    form.SetCell(1, F::name, u"kept");
    form.GoTo(1, F::name);
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::beforeCellChange) Answer(arguments, true);
    };
    form.Type(L"x");
    form.Press(VK_F2);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(u"kept", form.Cell(1, F::name));
    EXPECT_EQ(0, form.Number(L"Changed"));
}

TEST(ComboGridTyping, HostMayTakeTheChangeBack) {
    F form;
    form.SetCell(1, F::qty, u"7");
    form.GoTo(1, F::qty);
    Text written;
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id != grid_event::afterCellChange) return;
        written = form.Cell(1, F::qty);
        Answer(arguments, true);
    };
    form.Type(L"9");
    form.Press(VK_TAB);
    EXPECT_EQ(u"9", written) << "the cell is written before the host is asked";
    EXPECT_EQ(u"7", form.Cell(1, F::qty));
    EXPECT_NE(0, form.Number(L"Changed"));
}

TEST(ComboGridTyping, HostMayRefuseTheKey) {
    F form;
    form.GoTo(1, F::name);
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == DISPID_KEYDOWN) *arguments.rgvarg[1].piVal = 0;
    };
    form.Type(L"x");
    form.Press(VK_F2);
    form.Press(VK_RETURN);
    form.Press(VK_TAB);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ("1,1", form.Current());
}

TEST(ComboGridTyping, InvisibleAndInactiveColumnsNeverOpen) {
    for (const int col : {F::key, F::locked}) {
        F form;
        form.SetCell(1, col, u"k");
        form.GoTo(1, col);
        form.Type(L"x");
        form.Press(VK_F2);
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ("", form.Log());
        EXPECT_EQ(u"k", form.Cell(1, col));
    }
}

TEST(ComboGridTyping, EscapeGivesTheOldTextBack) {
    struct Case {
        int col;
        const char16_t* old;
    };
    for (const Case& c :
         {Case{F::name, u"old"}, {F::qty, u""}, {F::qty, u"12"}, {F::item, u""}, {F::item, u"Cherry"}}) {
        F form;
        form.SetCell(1, c.col, c.old);
        form.GoTo(1, c.col);
        form.Type(L"ba");
        form.Press(VK_ESCAPE);
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ(c.old, form.Cell(1, c.col));
        EXPECT_EQ("1," + std::to_string(c.col), form.Current());
        EXPECT_EQ(form.InnerGrid(), GetFocus());
        // The next entry is an ordinary one.
        form.Type(c.col == F::item ? L"ap" : L"5");
        form.Press(VK_RETURN);
        EXPECT_EQ(c.col == F::item ? u"Apple" : u"5", form.Cell(1, c.col));
    }
}

TEST(ComboGridTyping, EscapeWithoutAnEditIsTheContainers) {
    F form;
    form.GoTo(1, F::name);
    EXPECT_TRUE(form.Press(VK_ESCAPE));
    form.Type(L"x");
    EXPECT_FALSE(form.Press(VK_ESCAPE));
}

TEST(ComboGridTyping, TabAndEnterGoOnByColumnsThatMayBeEntered) {
    F form;
    form.GoTo(1, F::name);
    std::string way;
    for (int i = 0; i < 7; ++i) {
        EXPECT_FALSE(form.Press(i % 2 == 0 ? VK_TAB : VK_RETURN));
        way += form.Current() + " ";
    }
    EXPECT_EQ("1,2 1,3 1,4 1,5 2,1 2,2 2,3 ", way);
    way.clear();
    for (int i = 0; i < 4; ++i) {
        EXPECT_FALSE(form.Press(VK_TAB, {VK_SHIFT}));
        way += form.Current() + " ";
    }
    EXPECT_EQ("2,2 2,1 1,5 1,4 ", way);
    // In the editor Enter is Enter, whatever is held; on the grid other commands may have it with that.
    for (const int held : {VK_SHIFT, VK_CONTROL}) {
        form.GoTo(1, F::name);
        form.Type(L"a");
        EXPECT_FALSE(form.Press(VK_RETURN, {held}));
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ("1,2", form.Current());
        form.Press(VK_RETURN, {held});
        EXPECT_EQ("1,2", form.Current());
    }
}

TEST(ComboGridTyping, TabBehindTheLastCellLeavesTheGridWithTheEntryWritten) {
    F form;
    form.GoTo(2, F::item);
    EXPECT_TRUE(form.Press(VK_TAB));
    form.Type(L"ch");
    EXPECT_TRUE(form.Press(VK_TAB));
    EXPECT_EQ(u"Cherry", form.Cell(2, F::item));
    EXPECT_EQ("2,5", form.Current());
    form.GoTo(1, F::name);
    EXPECT_TRUE(form.Press(VK_TAB, {VK_SHIFT}));
    // Enter never leaves.
    form.GoTo(2, F::item);
    EXPECT_FALSE(form.Press(VK_RETURN));
    EXPECT_EQ("2,5", form.Current());
}

TEST(ComboGridTyping, AutoAddNewAppendsANumberedRow) {
    F form({{L"AutoAddNew", Variant(true)}, {L"AutoRecordNumber", Variant(true)}});
    EXPECT_EQ(u"2", form.Cell(2, F::no));
    form.GoTo(2, F::item);
    form.Type(L"ap");
    EXPECT_FALSE(form.Press(VK_TAB));
    EXPECT_EQ("3,1", form.Current());
    EXPECT_EQ(4, form.Number(L"Rows"));
    EXPECT_EQ(u"3", form.Cell(3, F::no));
    EXPECT_EQ(u"Apple", form.Cell(2, F::item));
}

TEST(ComboGridTyping, WithoutAutoTabEnterStaysAndTabLeaves) {
    F form({{L"AutoTab", Variant(false)}});
    form.GoTo(1, F::name);
    form.Type(L"a");
    EXPECT_FALSE(form.Press(VK_RETURN));
    EXPECT_EQ(u"a", form.Cell(1, F::name));
    EXPECT_EQ("1,1", form.Current());
    form.Type(L"b");
    EXPECT_TRUE(form.Press(VK_TAB));
    EXPECT_EQ(u"b", form.Cell(1, F::name));
    EXPECT_EQ("1,1", form.Current());
}

TEST(ComboGridTyping, ArrowsInTheEditorLeaveAtTheEndsOfTheText) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"ab");
    form.Press(VK_LEFT);
    form.Press(VK_LEFT);
    EXPECT_TRUE(form.Frame());
    form.Type(L"x");
    form.Press(VK_RIGHT);
    form.Press(VK_RIGHT);
    EXPECT_TRUE(form.Frame());
    form.Press(VK_RIGHT);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(u"xab", form.Cell(1, F::name));
    EXPECT_EQ("1,2", form.Current());
    form.Type(L"7");
    form.Press(VK_DOWN);
    EXPECT_EQ(u"7", form.Cell(1, F::qty));
    EXPECT_EQ("2,2", form.Current());
    form.Type(L"8");
    form.Press(VK_UP);
    EXPECT_EQ("1,2", form.Current());
}

TEST(ComboGridTyping, ArrowsPassHiddenAndNonFocusColumns) {
    F form;
    form.GoTo(1, F::item);
    form.Press(VK_RIGHT);
    EXPECT_EQ("1,6", form.Current()) << "an inactive column can be reached";
    form.Press(VK_RIGHT);
    EXPECT_EQ("1,6", form.Current()) << "there is nothing but non-focus and hidden columns behind it";
    form.Press(VK_LEFT);
    EXPECT_EQ("1,5", form.Current());
}

TEST(ComboGridTyping, VerticalArrowsWalkTheList) {
    F form;
    form.GoTo(1, F::item);
    form.Press(VK_F2);
    EXPECT_NE(0, SendMessageW(GetParent(GetFocus()), CB_GETDROPPEDSTATE, 0, 0));
    form.Press(VK_DOWN);
    form.Press(VK_DOWN);
    EXPECT_EQ("1(1, 5, , False)\n5(1, 5, Apple)\n5(1, 5, Banana)\n", form.Log());
    form.Press(VK_RETURN);
    EXPECT_EQ(u"Banana", form.Cell(1, F::item));
    EXPECT_EQ("2,1", form.Current());
}

TEST(ComboGridTyping, HostHearsOfEveryChangeOfTheEditorsText) {
    F form;
    form.GoTo(1, F::rate);
    form.Type(L"1x");
    form.Press(VK_RETURN);
    EXPECT_EQ("1(1, 3, , False)\n4(1, 3, 1)\n4(1, 3, 1x)\n4(1, 3, 1)\n2(1, 3, , 1, False)\n4(-1, -1, 1x)\n",
              form.Log({grid_event::enterCell, grid_event::leaveCell, DISPID_KEYDOWN}));
}

TEST(ComboGridTyping, HandlerThatMovesTheCurrentCellDecidesWhereToGoOn) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"a");
    form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
        if (id != grid_event::afterCellChange) return;
        Put(form.grid.get(), L"Row", {Variant(2)});
        Put(form.grid.get(), L"Col", {Variant(int{F::month})});
    };
    form.Press(VK_RETURN);
    EXPECT_EQ("2,4", form.Current());
}

TEST(ComboGridTyping, EditorLiesExactlyOnTheCell) {
    F form;
    for (const int col : {F::name, F::item}) {
        form.GoTo(2, col);
        form.Press(VK_F2);
        ASSERT_TRUE(form.Frame());
        const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
        const HDC dc = GetDC(nullptr);
        const int dpiX = GetDeviceCaps(dc, LOGPIXELSX);
        const int dpiY = GetDeviceCaps(dc, LOGPIXELSY);
        ReleaseDC(nullptr, dc);
        const auto pixels = [&](const wchar_t* member, int dpi) {
            return MulDiv(static_cast<int>(*Call(inner.get(), member).ToLong()), dpi, 1440);
        };
        RECT frame{};
        RECT outer{};
        GetWindowRect(form.Frame(), &frame);
        GetWindowRect(form.InnerGrid(), &outer);
        EXPECT_EQ(pixels(L"CellLeft", dpiX), frame.left - outer.left);
        EXPECT_EQ(pixels(L"CellTop", dpiY), frame.top - outer.top);
        EXPECT_EQ(pixels(L"CellWidth", dpiX), frame.right - frame.left);
        EXPECT_EQ(pixels(L"CellHeight", dpiY), frame.bottom - frame.top);
        form.Press(VK_ESCAPE);
    }
}

}  // namespace
}  // namespace qvx::test
