// Grids that run from right to left, and texts of every script, with real keys.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/form_window.h"
#include "tests/support/input.h"
#include "tests/support/thread_windows.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

// The parts of the open editor, on the screen.
struct Parts {
    RECT frame{};
    RECT field{};
    RECT button{};
    explicit Parts(const F& form) : frame(AreaOf(form.Frame())) {
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        const HWND combo = GetParent(GetFocus());
        EXPECT_TRUE(GetComboBoxInfo(combo, &info));
        field = AreaOf(info.hwndItem);
        button = info.rcButton;
        MapWindowPoints(combo, nullptr, reinterpret_cast<POINT*>(&button), 2);
    }
};

TEST(ComboGridRightToLeft, EditorLiesOnItsCellWithTheButtonAtTheLeft) {
    F form;
    Put(form.grid.get(), L"Rows", {Variant(40)});
    const auto inner = form.Inner();
    for (const bool mirrored : {true, false, true}) {
        Put(inner.get(), L"RightToLeft", {Variant(mirrored)});
        form.Pump();
        for (const int col : {F::name, F::item}) {
            form.GoTo(2, col);
            form.Press(VK_F2);
            ASSERT_TRUE(form.Frame());
            const Parts parts(form);
            const RECT outer = AreaOf(form.InnerGrid());
            EXPECT_EQ(form.Pixels(L"CellLeft"), parts.frame.left - outer.left);
            EXPECT_EQ(form.Pixels(L"CellTop"), parts.frame.top - outer.top);
            EXPECT_EQ(form.Pixels(L"CellWidth"), parts.frame.right - parts.frame.left);
            EXPECT_EQ(form.Pixels(L"CellHeight"), parts.frame.bottom - parts.frame.top);
            EXPECT_GE(parts.field.left, parts.frame.left);
            EXPECT_LE(parts.field.right, parts.frame.right);
            if (mirrored) {
                EXPECT_EQ(3, parts.frame.right - parts.field.right) << "the margin of the cells' texts";
                EXPECT_LE(parts.button.right, parts.field.left);
            } else {
                EXPECT_EQ(3, parts.field.left - parts.frame.left);
                EXPECT_GE(parts.button.left, parts.field.right);
            }
            const bool seen = parts.button.left < parts.frame.right - 1 && parts.button.right > parts.frame.left + 1;
            EXPECT_EQ(col == F::item, seen) << "the button of a list column";
            const LONG_PTR style = GetWindowLongPtrW(GetFocus(), GWL_EXSTYLE);
            EXPECT_EQ(mirrored, (style & (WS_EX_RTLREADING | WS_EX_LAYOUTRTL)) != 0);
            form.Press(VK_ESCAPE);
        }
        EXPECT_EQ(3, Call(form.List(F::item).get(), L"ListCount").ToLong()) << "lists hold what they held before";
    }
}

// The flags of the tool tip's entry for a window; 0 while there is none.
UINT TipFlagsFor(HWND window) {
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.hwnd = window;
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    for (const HWND tip : ThreadWindows(TOOLTIPS_CLASSW))
        if (SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool))) return tool.uFlags;
    return 0;
}

TEST(ComboGridRightToLeft, TipsReadAsTheGridDoes) {
    F form({{L"CellToolTip", Variant(true)}});
    for (const bool mirrored : {false, true, false}) {
        Put(form.Inner().get(), L"RightToLeft", {Variant(mirrored)});
        SendMessageW(form.InnerGrid(), WM_MOUSEMOVE, 0, MAKELPARAM(100, 20));
        const auto has = [&](UINT flag) { return (TipFlagsFor(form.InnerGrid()) & flag) != 0; };
        ASSERT_TRUE(test::WaitFor([&] { return has(TTF_IDISHWND); })) << "there is a tip";
        EXPECT_EQ(mirrored, has(TTF_RTLREADING));
    }
}

TEST(ComboGridText, EveryScriptGoesThroughEditorCommitAndClip) {
    const Text texts[] = {
        u"\u65E5\u672C\u8A9E",                      // Japanese
        u"\U0001F600 ok \U0001D49C",                // outside the basic plane
        u"e\u0301a\u0308\u0323",                    // combining marks
        u"\u05E9\u05DC\u05D5\u05DD abc 12 \u05D0",  // directions mixed
        u"abc \u0645\u0631\u062D\u0628\u0627 (x)",
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467",  // one picture of several joined ones
    };
    F form;
    const auto inner = form.Inner();
    for (const bool mirrored : {false, true}) {
        Put(inner.get(), L"RightToLeft", {Variant(mirrored)});
        for (const Text& text : texts) {
            form.SetCell(1, F::name, u"before");
            form.GoTo(1, F::name);
            TypeText(Wide(text));  // as input methods and emoji panels send it
            form.Pump();
            ASSERT_TRUE(form.Frame());
            form.Press(VK_RETURN);
            EXPECT_EQ(text, form.Cell(1, F::name));
            form.GoTo(1, F::name);
            EXPECT_EQ(text, Call(inner.get(), L"Clip").ToText());
        }
    }
}

}  // namespace
}  // namespace qvx::test
