// Entries typed into a ComboGrid with real keys: what the cells hold afterwards and what the host is told.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

// One of each kind of column; what else becomes of a text is the rules'.
TEST(ComboGridTyping, EntriesReplaceTheTextAndAreCleanedByTheirColumn) {
    struct Case {
        int col;
        const char16_t* before;
        const wchar_t* typed;
        const char* cell;
    };
    const Case cases[] = {
        {F::name, u"before", L"x%", "x%"},      {F::name, u"before", L"\b", ""},  {F::qty, u"", L"3.75", "375"},
        {F::month, u"", L"3-2024", "Mar/2024"}, {F::item, u"", L"ban", "Banana"},
    };
    for (const Case& c : cases) {
        F form;
        form.SetCell(1, c.col, c.before);
        form.GoTo(1, c.col);
        form.Type(c.typed);
        EXPECT_TRUE(form.Frame());
        EXPECT_EQ(u"", form.Cell(1, c.col)) << "the text lives in the editor";
        form.Press(VK_RETURN);
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ(c.cell, Narrow(form.Cell(1, c.col)));
        const std::string at = "1, " + std::to_string(c.col) + ", " + Narrow(c.before) + ", ";
        EXPECT_EQ("1(" + at + "False)\n2(" + at + c.cell + ", False)\n", form.Log());
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
    form.Enter(1, F::item, L"ban");
    EXPECT_EQ("longer//", form.Column(F::name)) << "what is there already stays";
    EXPECT_EQ("Banana//", form.Column(F::item)) << "an entry of the list comes whole";
    form.Enter(2, F::name, L"abcdefg");
    EXPECT_EQ("longer/abcd/", form.Column(F::name));
}

TEST(ComboGridTyping, F2AndDoubleClickGoOnWithTheTextAndDeleteEmptiesIt) {
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
    form.GoTo(1, F::name);
    form.Press(VK_DELETE);
    ASSERT_TRUE(form.Frame());
    form.Press(VK_RETURN);
    EXPECT_EQ("1(1, 1, best!, False)\n2(1, 1, best!, , False)\n", form.Log());
}

TEST(ComboGridTyping, ADoubleClickBesideTheCurrentCellLeavesTheViewAlone) {
    F form({{L"Rows", Variant(60)}, {L"AllowUserResizing", Variant(1)}});
    for (const int pixelsIn : {6, 0}) {
        form.GoTo(1, F::name);
        Put(form.Inner().get(), L"TopRow", {Variant(20)});
        form.Click(0, F::qty, true, pixelsIn);
        EXPECT_EQ(20, Call(form.Inner().get(), L"TopRow").ToLong()) << pixelsIn;
        EXPECT_FALSE(form.Frame());
    }
}

TEST(ComboGridTyping, EscapeGivesTheOldTextBackAndWithoutAnEditIsTheContainers) {
    F form;
    form.SetCell(1, F::item, u"Cherry");
    form.GoTo(1, F::item);
    EXPECT_TRUE(form.Press(VK_ESCAPE));
    form.Type(L"ba");
    EXPECT_FALSE(form.Press(VK_ESCAPE));
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(u"Cherry", form.Cell(1, F::item));
    EXPECT_EQ("1,5", form.Current());
    EXPECT_EQ(form.InnerGrid(), GetFocus());
}

TEST(ComboGridTyping, ArrowsInTheEditorLeaveAtTheEndsOfTheText) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"a");
    form.Press(VK_LEFT);
    form.Type(L"x");
    form.Press(VK_RIGHT);
    EXPECT_TRUE(form.Frame());
    form.Press(VK_RIGHT);
    EXPECT_EQ(u"xa", form.Cell(1, F::name));
    EXPECT_EQ("1,2", form.Current());
    form.Type(L"7");
    form.Press(VK_DOWN);
    EXPECT_EQ(u"7", form.Cell(1, F::qty));
    EXPECT_EQ("2,2", form.Current());
}

TEST(ComboGridTyping, VerticalArrowsWalkTheList) {
    F form;
    form.GoTo(1, F::item);
    form.Press(VK_F2);
    EXPECT_NE(0, SendMessageW(GetParent(GetFocus()), CB_GETDROPPEDSTATE, 0, 0));
    form.Press(VK_DOWN);
    form.Press(VK_DOWN);
    form.Press(VK_RETURN);
    EXPECT_EQ("1(1, 5, , False)\n5(1, 5, Apple)\n5(1, 5, Banana)\n2(1, 5, , Banana, False)\n", form.Log());
}

TEST(ComboGridTyping, HostHearsOfEveryChangeOfTheEditorsText) {
    F form;
    form.Enter(1, F::rate, L"1x");
    EXPECT_EQ("1(1, 3, , False)\n4(1, 3, 1)\n4(1, 3, 1x)\n4(1, 3, 1)\n2(1, 3, , 1, False)\n4(-1, -1, 1x)\n",
              form.Log({grid_event::enterCell, grid_event::leaveCell, DISPID_KEYDOWN}));
}

TEST(ComboGridTyping, HandlersMoveTheCurrentCellAndTakeEntriesBack) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"a");
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id != grid_event::afterCellChange) return;
        Put(form.grid.get(), L"Row", {Variant(2)});
        Put(form.grid.get(), L"Col", {Variant(int{F::month})});
        Answer(arguments, true);
    };
    form.Press(VK_RETURN);
    EXPECT_EQ("2,4", form.Current());
    EXPECT_EQ(u"", form.Cell(1, F::name)) << "taken back";
}

}  // namespace
}  // namespace qvx::test
