// Finding and replacing in a ComboGrid with real keys.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"
#include "win/window_text.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridFind : public ::testing::Test {
  protected:
    ComboGridFind() {
        form.Fill({{u"pear", u"10", u"", u"", u"Apple"}, {u"Apple", u"9"}, {u"pineapple", u"9"}, {u"plum", u"100"}});
        form.SetCell(3, F::locked, u"apple");
        form.GoTo(1, F::name);
    }
    HWND Bar() const {
        const HWND bar = FindWindowExW(form.container.ControlWindow(), nullptr, L"QvxFindBar", nullptr);
        return bar && IsWindowVisible(bar) ? bar : nullptr;
    }
    // The parts in their order; those for replacing begin at 8.
    HWND Part(int number) const { return GetDlgItem(Bar(), number + 1); }
    std::string Status() {
        Sleep(30);  // longer than the bar's timer
        form.Pump();
        return Narrow(WindowText(Part(7)));
    }
    void Press(int key, const std::vector<int>& held = {}) {
        EXPECT_FALSE(form.Press(key, held)) << key << " was left to the host";
    }

    F form{{{L"FindBar", Variant(true)}}};
};

TEST_F(ComboGridFind, TypingFindsAndKeysGoFromHitToHit) {
    Press('F', {VK_CONTROL});
    ASSERT_TRUE(Bar());
    EXPECT_EQ(Part(1), GetFocus());
    form.Type(L"app");
    EXPECT_EQ("1 of 4", Status());
    EXPECT_EQ("1,5", form.Current());
    Press(VK_RETURN);
    EXPECT_EQ("2,1", form.Current());
    Press(VK_F3);
    EXPECT_EQ("3 of 4", Status());
    Press(VK_F3);
    Press(VK_F3);
    EXPECT_EQ("1,5", form.Current()) << "after the last one the first";
    Press(VK_RETURN, {VK_SHIFT});
    EXPECT_EQ("4 of 4", Status());
    form.SetCell(4, F::name, u"apple pie");
    EXPECT_EQ("4 of 5", Status());
    form.Type(L"x");
    EXPECT_EQ("No hits", Status());
    Press(VK_BACK);
    // The choices, by Tab and Space; only whole cells are left, then only those in the column.
    for (int tab = 0; tab < 4; ++tab) Press(VK_TAB);
    Press(VK_SPACE);
    EXPECT_EQ("No hits", Status());
    Press(VK_TAB, {VK_SHIFT});
    Press(VK_TAB);
    Press(VK_SPACE);
    Press(VK_TAB);
    Press(VK_SPACE);
    EXPECT_EQ("1 of 1", Status()) << "locked";
    Press(VK_ESCAPE);
    EXPECT_FALSE(Bar());
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    form.GoTo(1, F::name);
    Press(VK_F3);
    EXPECT_EQ("2,1", form.Current()) << "without the bar, in this column";
    Press(VK_F3, {VK_SHIFT});
    EXPECT_EQ("4,1", form.Current());
    EXPECT_TRUE(form.Press('G', {VK_CONTROL}));
}

TEST_F(ComboGridFind, ReplacesByTheRulesOfTypingAsOneStep) {
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        // Row 3 is refused; arguments come from right to left.
        if (id == grid_event::beforeCellChange && arguments.rgvarg[3].lVal == 3) Answer(arguments, true);
    };
    Press('H', {VK_CONTROL});
    ASSERT_TRUE(Bar());
    form.Type(L"apple");
    form.Log();
    for (int tab = 0; tab < 6; ++tab) Press(VK_TAB);
    EXPECT_EQ(Part(9), GetFocus());
    form.Type(L"ban");
    for (int tab = 0; tab < 2; ++tab) Press(VK_TAB);
    Press(VK_RETURN);
    EXPECT_EQ("2 replaced, 2 refused", Status());
    EXPECT_EQ("pear/ban/pineapple/plum/", form.Column(F::name));
    EXPECT_EQ("Banana///%/"[0], form.Column(F::item)[0]) << "an entry of the list";
    EXPECT_EQ(
        "1(1, 5, Apple, False)\n2(1, 5, Apple, Banana, False)\n1(2, 1, Apple, False)\n"
        "2(2, 1, Apple, ban, False)\n1(3, 1, pineapple, False)\n",
        form.Log());
    Press(VK_ESCAPE);
    Press('Z', {VK_CONTROL});
    EXPECT_EQ("pear/Apple/pineapple/plum/", form.Column(F::name));
    EXPECT_EQ("Apple////", form.Column(F::item));
    // One by one: the cell, then the next one.
    form.events->onEvent = nullptr;
    form.GoTo(2, F::name);
    Press('H', {VK_CONTROL});
    EXPECT_EQ(Part(9), GetFocus()) << "the text is there already";
    Press(VK_RETURN);
    EXPECT_EQ("pear/ban/pineapple/plum/", form.Column(F::name));
    EXPECT_EQ("3,1", form.Current());
}

TEST_F(ComboGridFind, MethodsForPrograms) {
    const auto find = [&](const char16_t* text, int options, bool forward) {
        return Call(form.grid.get(), L"Find", {Variant(text), Variant(options), Variant(forward)}).ToBool().value();
    };
    EXPECT_TRUE(find(u"APPLE", 0, true));
    EXPECT_EQ("1,5", form.Current());
    EXPECT_TRUE(find(u"apple", 2 | 4, true)) << "itself only";
    EXPECT_EQ("1,5", form.Current());
    EXPECT_FALSE(find(u"apple", 1 | 4, true));
    EXPECT_TRUE(find(u"apple", 1, false));
    EXPECT_EQ("3,6", form.Current());
    EXPECT_EQ(4, *Call(form.grid.get(), L"FindCount", {Variant(u"apple")}).ToLong());
    EXPECT_EQ(0, *Call(form.grid.get(), L"FindCount", {Variant(u"")}).ToLong());
    form.GoTo(2, F::name);
    form.Press(VK_F2);
    EXPECT_EQ(2, *Call(form.grid.get(), L"ReplaceAll", {Variant(u"apple"), Variant(u"fig"), Variant(4)}).ToLong());
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ("pear/fig/pinefig/plum/", form.Column(F::name));
    EXPECT_FALSE(Bar());
}

TEST_F(ComboGridFind, TheBarLastsAsLongAsTheGridCanBeUsed) {
    Press(VK_F2);
    form.Type(L"ish");
    Press('F', {VK_CONTROL});
    EXPECT_EQ("pearish/Apple/pineapple/plum/", form.Column(F::name)) << "an open edit is committed";
    ASSERT_TRUE(Bar());
    EXPECT_EQ(AreaOf(Bar()).top, AreaOf(form.InnerGrid()).bottom);
    form.Type(L"p");
    Put(form.Inner().get(), L"RightToLeft", {Variant(true)});
    EXPECT_EQ("1 of 6", Status()) << "in new windows";
    EXPECT_TRUE(GetWindowLongW(Bar(), GWL_EXSTYLE) & WS_EX_LAYOUTRTL);
    Put(form.grid.get(), L"Enabled", {Variant(false)});
    EXPECT_FALSE(Bar());
    Put(form.grid.get(), L"Enabled", {Variant(true)});
    form.GoTo(1, F::name);
    Press('F', {VK_CONTROL});
    EXPECT_EQ("1 of 6", Status()) << "with the last text";
    Put(form.grid.get(), L"FindBar", {Variant(false)});
    EXPECT_FALSE(Bar());
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    EXPECT_TRUE(form.Press(VK_F3) && form.Press('F', {VK_CONTROL}) && form.Press('H', {VK_CONTROL}));
    Put(form.grid.get(), L"FindBar", {Variant(true)});
    Press('F', {VK_CONTROL});
    bool closed = false;
    form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
        if (id != grid_event::rowColChange) return;
        form.container.Close();
        closed = true;
    };
    form.Type(L"l");
    EXPECT_TRUE(closed) << "while a hit was found";
}

}  // namespace
}  // namespace qvx::test
