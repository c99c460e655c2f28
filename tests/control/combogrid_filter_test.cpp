// Filtering a ComboGrid with real keys and the mouse, and by its members.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"
#include "win/window_text.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridFilter : public ::testing::Test {
  protected:
    ComboGridFilter() {
        form.Fill({{u"pear", u"10"}, {u"Apple", u"9"}, {u"pineapple", u"9"}, {u"plum", u"100"}});
        form.GoTo(1, F::name);
        form.Log();
    }
    HWND Strip() const { return FindWindowExW(form.container.ControlWindow(), nullptr, L"QvxFilterStrip", nullptr); }
    HWND Field() const { return FindWindowExW(Strip(), nullptr, L"EDIT", nullptr); }
    // The data rows that are shown.
    std::string Shown() const {
        std::string rows;
        for (int row = 1; row < form.Number(L"Rows"); ++row)
            if (*Call(form.grid.get(), L"RowShown", {Variant(row)}).ToBool()) rows += std::to_string(row);
        EXPECT_EQ(form.Number(L"FilteredRows"), static_cast<long>(rows.size()));
        return rows;
    }
    std::string List() const { return Narrow(*Call(form.grid.get(), L"Filter").ToText()); }
    void SetFilter(const char16_t* list) { Put(form.grid.get(), L"Filter", {Variant(list)}); }
    void Press(int key, const std::vector<int>& held = {}) {
        EXPECT_FALSE(form.Press(key, held)) << key << " was left to the host";
    }
    void Wait() {
        Sleep(350);  // longer than the pause in typing
        form.Pump();
    }

    F form{{{L"FilterRow", Variant(true)}, {L"ExtendedKeys", Variant(true)}}};
};

TEST_F(ComboGridFilter, TypingFiltersAndKeysGoThroughTheFields) {
    Press('L', {VK_CONTROL, VK_SHIFT});
    ASSERT_EQ(Field(), GetFocus());
    form.Type(L"app");
    EXPECT_EQ("1234", Shown()) << "before the pause";
    Wait();
    EXPECT_EQ("23", Shown());
    EXPECT_EQ("30(2, 4)\n", form.Log());
    EXPECT_EQ("2,1", form.Current()) << "off the row that is hidden";
    EXPECT_EQ(Field(), GetFocus());
    Press(VK_TAB);
    form.Type(L">9");
    Press(VK_RETURN);
    EXPECT_EQ("", Shown());
    EXPECT_EQ("[Name]app,[Qty]>9", List());
    Press(VK_TAB, {VK_SHIFT});
    Press(VK_ESCAPE);
    EXPECT_EQ("14", Shown()) << "the field of the name is empty again";
    EXPECT_EQ("", Narrow(WindowText(Field())));
    form.Type(L"lx");
    Press(VK_BACK);
    Press(VK_DOWN);
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    EXPECT_EQ("4", Shown()) << "without a pause";
    EXPECT_EQ("4,1", form.Current());
    Press('L', {VK_CONTROL, VK_SHIFT});
    Press(VK_TAB);
    Press(VK_ESCAPE);
    form.Type(L">");
    Wait();
    EXPECT_EQ("[Name]l", List()) << "what cannot be read filters nothing";
    EXPECT_EQ("234", Shown());
    Press(VK_ESCAPE);
    Press(VK_ESCAPE);
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    EXPECT_EQ("4,2", form.Current());
    SetFilter(u"[Name]zzz");
    form.Log();
    for (const int key : {VK_DOWN, VK_UP, VK_HOME, VK_F2, VK_DELETE, VK_INSERT, VK_RETURN, VK_NEXT}) Press(key);
    form.Type(L"x");
    Press('V', {VK_CONTROL});
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ("pear/Apple/pineapple/plum/", form.Column(F::name));
    EXPECT_EQ("", form.Log()) << "nothing can be done to rows that nobody sees";
    Put(form.grid.get(), L"FindBar", {Variant(true)});
    Press('L', {VK_CONTROL, VK_SHIFT});
    ASSERT_EQ(Field(), GetFocus());
    Press('F', {VK_CONTROL});
    EXPECT_TRUE(GetFocus() != Field() && GetFocus() != form.InnerGrid()) << "in the bar";
    Press(VK_ESCAPE);
    Put(form.grid.get(), L"FilterRow", {Variant(false)});
    EXPECT_FALSE(Strip());
    EXPECT_TRUE(form.Press('L', {VK_CONTROL, VK_SHIFT}));
}

TEST_F(ComboGridFilter, TheEditorIsOverItsCellAndTheFieldsAreOverTheirColumns) {
    for (const bool rightToLeft : {false, true}) {
        Put(form.Inner().get(), L"RightToLeft", {Variant(rightToLeft)});
        form.Pump();
        EXPECT_EQ(AreaOf(Strip()).bottom, AreaOf(form.InnerGrid()).top);
        form.GoTo(2, F::qty);
        form.Press(VK_F2);
        ASSERT_TRUE(form.Frame());
        EXPECT_NEAR(AreaOf(form.Frame()).top, AreaOf(form.InnerGrid()).top + form.Pixels(L"RowPos", {Variant(2)}), 2);
        form.Type(L"7");
        // A click on a field ends the edit.
        const POINT inside{form.At(0, F::name, 20, 0).x, AreaOf(Strip()).top + 8};
        MoveMouseTo(inside);
        LeftButton(true);
        LeftButton(false);
        form.Pump();
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ(rightToLeft ? "10/977/9/100/" : "10/97/9/100/", form.Column(F::qty));
        EXPECT_EQ(Field(), GetFocus());
        const RECT field = AreaOf(Field());
        EXPECT_TRUE(PtInRect(&field, inside));
        EXPECT_EQ(rightToLeft, (GetWindowLongW(Field(), GWL_EXSTYLE) & WS_EX_RIGHT) != 0);
    }
    Put(form.grid.get(), L"Enabled", {Variant(false)});
    EXPECT_FALSE(IsWindowEnabled(Strip()));
}

TEST_F(ComboGridFilter, EditedRowsStayUntilTheFilterIsAppliedAgain) {
    form.Press(VK_F2);
    form.Type(L"s");
    SetFilter(u"[name]*ppl*|pears");
    EXPECT_FALSE(form.Frame()) << "an open edit is committed first";
    EXPECT_EQ("123", Shown());
    EXPECT_EQ("[Name]*ppl*|pears", List());
    const long height = *Call(form.Inner().get(), L"RowHeight", {Variant(4)}).ToLong();
    EXPECT_EQ(height, *Call(form.Inner().get(), L"RowHeight", {Variant(1)}).ToLong());
    form.SetCell(2, F::name, u"fig");
    Call(form.grid.get(), L"AddItem", {Variant(u"5\tnew")});
    EXPECT_EQ("1235", Shown());
    EXPECT_EQ(128, *Call(form.grid.get(), L"GetSumOf", {Variant(1), Variant(2)}).ToLong()) << "of all rows";
    Call(form.grid.get(), L"RefilterRows");
    EXPECT_EQ("13", Shown());
    Call(form.grid.get(), L"Sort", {Variant(u";Name-1;")});
    EXPECT_EQ("plum/pineapple/pears/new/fig/", form.Column(F::name));
    EXPECT_EQ("23", Shown()) << "hidden rows move too";
    Press('Z', {VK_CONTROL});
    EXPECT_EQ("13", Shown());
    form.GoTo(3, F::name);
    Call(form.grid.get(), L"RemoveItem", {Variant(3)});
    EXPECT_EQ("1,1", form.Current()) << "the nearest row that is shown";
    for (const char16_t* wrong : {u"Name", u"[Colour]x", u"[Qty]>many"})
        EXPECT_EQ(380, ErrorOf(form.grid.get(), L"Filter", DISPATCH_PROPERTYPUT, {Variant(wrong)}));
    EXPECT_EQ("[Name]*ppl*|pears", List());
    Call(form.grid.get(), L"SetCell", {Variant(2), Variant(1), Variant(u""), Variant(true)});
    EXPECT_EQ("12", Shown()) << "the user is led there";
    SetFilter(u"");
    EXPECT_EQ("1234", Shown());
    SetFilter(u"[Name]zzz");
    Call(form.grid.get(), L"RemoveAllRecords");
    EXPECT_EQ("1", Shown());
    EXPECT_EQ("", List());
}

TEST_F(ComboGridFilter, HandlersMayTakeTheFieldsAway) {
    for (const bool close : {false, true}) {
        form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
            if (id != 30) return;
            Put(form.grid.get(), L"FilterRow", {Variant(false)});
            if (close) form.container.Close();
        };
        Put(form.grid.get(), L"FilterRow", {Variant(true)});
        Press('L', {VK_CONTROL, VK_SHIFT});
        form.Type(close ? L"e" : L"l");
        const HWND strip = Strip();
        Press(VK_RETURN);
        EXPECT_FALSE(IsWindow(strip));
    }
}

}  // namespace
}  // namespace qvx::test
