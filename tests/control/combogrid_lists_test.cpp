// Pick lists, columns fitted to their texts, and a cell that stays open in another program, with real keys and mouse.
#include <gtest/gtest.h>

#include <string>

#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

HWND Combo(const F& form) {
    const HWND edit = GetFocus();
    return form.Frame() && IsChild(form.Frame(), edit) ? GetParent(edit) : nullptr;
}

bool ListIsOpen(const F& form) { return Combo(form) && SendMessageW(Combo(form), CB_GETDROPPEDSTATE, 0, 0) != 0; }

HWND ListWindow(const F& form) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(Combo(form), &info);
    return info.hwndList;
}

// The screen position `pixels` before the end of a cell that its text runs towards.
POINT BeforeEnd(const F& form, int row, int col, int pixels) {
    const bool mirrored = Call(form.Inner().get(), L"RightToLeft").ToLong() != 0;
    return form.At(row, col, mirrored ? pixels : form.Pixels(L"ColWidth", {Variant(col)}) - pixels, 6);
}

void ClickAt(F& form, POINT at, int times = 1) {
    MoveMouseTo(at);
    for (; times > 0; --times) {
        LeftButton(true);
        LeftButton(false);
    }
    form.Pump();
}

TEST(ComboGridLists, ArrowsOpenTheListOfTheirCell) {
    struct Case {
        long arrows;
        bool rightToLeft;
        int row, col;
        int twips;  // width of the column
        bool opens;
    };
    const Case cases[] = {
        {0, false, 1, F::item, 1500, false}, {1, false, 1, F::item, 1500, true},  {1, false, 2, F::item, 1500, false},
        {2, false, 2, F::item, 1500, true},  {2, true, 2, F::item, 1500, true},   {2, false, 2, F::item, 300, false},
        {2, false, 2, F::name, 1500, false}, {2, false, 0, F::item, 1500, false},
    };
    for (const Case& c : cases) {
        F form({{L"ListArrows", Variant(c.arrows)}});
        Put(form.Inner().get(), L"RightToLeft", {Variant(c.rightToLeft)});
        Put(form.grid.get(), L"ColWidth", {Variant(c.col), Variant(c.twips)});
        form.GoTo(1, F::item);
        MoveMouseTo(BeforeEnd(form, c.row, c.col, 8));
        LeftButton(true);
        form.Pump();
        EXPECT_FALSE(form.Frame()) << "the release opens it";
        LeftButton(false);
        form.Pump();
        EXPECT_EQ(c.opens, ListIsOpen(form)) << c.arrows << " " << c.row << "," << c.col << " " << c.twips;
        EXPECT_EQ(c.row == 0 ? "1,5" : std::to_string(c.row) + "," + std::to_string(c.col), form.Current());
    }
}

TEST(ComboGridLists, ReleasingElsewhereOpensNothing) {
    F form({{L"ListArrows", Variant(2)}});
    form.GoTo(1, F::item);
    MoveMouseTo(BeforeEnd(form, 1, F::item, 8));
    LeftButton(true);
    form.Pump();
    MoveMouseTo(BeforeEnd(form, 2, F::item, 30));
    form.Pump();
    LeftButton(false);
    form.Pump();
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ("1,5", form.Current());
}

TEST(ComboGridLists, KeysOpenAndCloseTheListOfAGridWithArrows) {
    for (const bool arrows : {false, true}) {
        F form({{L"ListArrows", Variant(arrows ? 1 : 0)}});
        form.GoTo(1, F::item);
        for (const auto& held : {std::vector<int>{}, std::vector<int>{VK_MENU}}) {
            EXPECT_EQ(!arrows && held.empty(), form.Press(held.empty() ? VK_F4 : VK_DOWN, held));
            EXPECT_EQ(arrows, ListIsOpen(form));
            if (!arrows) continue;
            form.Press(held.empty() ? VK_F4 : VK_UP, held);
            EXPECT_TRUE(Combo(form));
            EXPECT_FALSE(ListIsOpen(form));
            form.Press(VK_ESCAPE);
        }
        form.GoTo(1, F::name);
        EXPECT_TRUE(form.Press(VK_F4)) << "not a list column";
    }
}

// Which entries come first is a rule's.
TEST(ComboGridLists, TypingFindsPartsAndShowsThemFirst) {
    F form({{L"ListMatch", Variant(1)}});
    form.GoTo(1, F::item);
    form.Type(L"r");
    ASSERT_TRUE(ListIsOpen(form));
    std::string shown;
    for (WPARAM at = 0; at < 3; ++at) {
        wchar_t text[32]{};
        SendMessageW(ListWindow(form), LB_GETTEXT, at, reinterpret_cast<LPARAM>(text));
        shown += Narrow(FromWide(text)) + "/";
    }
    EXPECT_EQ("Cherry/Apple/Banana/", shown);
    EXPECT_EQ(u"Banana", Call(form.List(F::item).get(), L"List", {Variant(1)}).ToText()) << "hosts see no order";
    form.Press(VK_RETURN);
    EXPECT_EQ(u"Cherry", form.Cell(1, F::item));
    form.GoTo(1, F::item);
    form.Type(L"r");
    form.Press(VK_DOWN);
    form.Press(VK_RETURN);
    EXPECT_EQ(u"Apple", form.Cell(1, F::item)) << "Down goes on from the match";
}

TEST(ComboGridLists, EntriesAddedByMessagesAreFound) {
    F form;
    form.GoTo(1, F::item);
    form.Press(VK_F2);
    SendMessageW(Combo(form), CB_DELETESTRING, 0, 0);
    SendMessageW(Combo(form), CB_INSERTSTRING, 0, reinterpret_cast<LPARAM>(L"Date"));
    form.Type(L"d");
    form.Press(VK_RETURN);
    EXPECT_EQ(u"Date", form.Cell(1, F::item));
}

TEST(ComboGridLists, AClickedEntryMayEndTheEdit) {
    for (const bool commits : {false, true}) {
        F form({{L"ListClickCommits", Variant(commits)}});
        form.GoTo(1, F::item);
        form.Press(VK_F2);
        ASSERT_TRUE(ListIsOpen(form));
        RECT entry{};
        SendMessageW(ListWindow(form), LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&entry));
        MapWindowPoints(ListWindow(form), nullptr, reinterpret_cast<POINT*>(&entry), 2);
        ClickAt(form, {entry.left + 5, entry.top + 3});
        EXPECT_EQ(!commits, form.Frame() != nullptr);
        EXPECT_EQ(commits ? "Banana" : "", Narrow(form.Cell(1, F::item)));
        EXPECT_EQ(commits ? "1(1, 5, , False)\n5(1, 5, Banana)\n2(1, 5, , Banana, False)\n"
                          : "1(1, 5, , False)\n5(1, 5, Banana)\n",
                  form.Log());
        EXPECT_EQ(commits, form.InnerGrid() == GetFocus());
    }
}

TEST(ComboGridLists, ADoubleClickOnABorderFitsTheColumn) {
    for (const bool rightToLeft : {false, true}) {
        F form({{L"AllowUserResizing", Variant(1)}, {L"FitColumns", Variant(true)}});
        Put(form.Inner().get(), L"RightToLeft", {Variant(rightToLeft)});
        form.Fill({{u"a long name that is cut", u"1"}, {u"b", u"2"}});
        const auto width = [&](int col) { return *Call(form.grid.get(), L"ColWidth", {Variant(col)}).ToLong(); };
        form.GoTo(1, F::name);
        ClickAt(form, BeforeEnd(form, 0, F::name, 1), 2);
        EXPECT_GT(width(F::name), 1500);
        EXPECT_EQ(720, width(F::qty));
        Put(form.grid.get(), L"Col", {Variant(F::name)});
        Put(form.Inner().get(), L"RowSel", {Variant(2)});
        Put(form.Inner().get(), L"ColSel", {Variant(F::qty)});
        ClickAt(form, BeforeEnd(form, 0, F::qty, 1), 2);
        EXPECT_LT(width(F::qty), 720) << "a whole column among several";
        Put(form.grid.get(), L"FitColumns", {Variant(false)});
        Put(form.grid.get(), L"ColWidth", {Variant(F::name), Variant(900)});
        ClickAt(form, BeforeEnd(form, 0, F::name, 1), 2);
        EXPECT_LT(width(F::name), 1000);
    }
}

// Another program with a window, which ends with this object.
class OtherProgram {
  public:
    OtherProgram() {
        STARTUPINFOW start{};
        start.cb = sizeof start;
        wchar_t command[] = L"notepad.exe";
        EXPECT_TRUE(CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process_));
        WaitFor([&] { return (window = FindWindowW(L"Notepad", nullptr)) && IsWindowVisible(window); }, 10000);
    }
    ~OtherProgram() {
        TerminateProcess(process_.hProcess, 0);
        WaitForSingleObject(process_.hProcess, 5000);
        CloseHandle(process_.hProcess);
        CloseHandle(process_.hThread);
    }
    HWND window = nullptr;

  private:
    PROCESS_INFORMATION process_{};
};

TEST(ComboGridLists, ACellMayStayOpenInAnotherProgram) {
    for (const bool keeps : {false, true}) {
        F form({{L"KeepEditing", Variant(keeps)}});
        form.GoTo(1, F::name);
        form.Type(L"abc");
        form.Press(VK_LEFT);
        const HWND edit = GetFocus();
        {
            const OtherProgram other;
            ASSERT_TRUE(WaitFor([&] {
                SetForegroundWindow(other.window);
                return GetForegroundWindow() == other.window && !GetFocus();
            }));
            Settle();
            EXPECT_EQ(keeps, form.Frame() != nullptr);
            EXPECT_EQ(keeps ? "" : "abc", Narrow(form.Cell(1, F::name)));
        }
        ASSERT_TRUE(BringToFront(form.container.Window()));
        Settle(400);
        EXPECT_EQ(keeps, GetFocus() == edit);
        if (!keeps) continue;
        form.Type(L"x");
        form.Press(VK_RETURN);
        EXPECT_EQ(u"abxc", form.Cell(1, F::name));
        EXPECT_EQ("1(1, 1, , False)\n2(1, 1, , abxc, False)\n", form.Log());
    }
}

}  // namespace
}  // namespace qvx::test
