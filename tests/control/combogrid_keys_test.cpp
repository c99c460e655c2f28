// The ComboGrid's commands on the keyboard: rows inserted and deleted, cells cleared, entry ended. With real keys.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

void SelectRow(const F& form, int row) {
    const auto inner = form.Inner();
    Put(inner.get(), L"Row", {Variant(row)});
    Put(inner.get(), L"Col", {Variant(1)});
    Put(inner.get(), L"ColSel", {Variant(8)});
}

TEST(ComboGridKeys, InactiveCellsAreNeitherClearedNorEdited) {
    F form;
    form.SetCell(1, F::locked, u"kept");
    form.GoTo(1, F::locked);
    for (const int key : {VK_DELETE, int{'X'}, VK_F2}) form.Press(key);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(form.Cell(1, F::locked), u"kept");
    EXPECT_EQ(form.Log(), "");
}

TEST(ComboGridKeys, DeleteOfASelectedRowAsksFirst) {
    struct Case {
        int rows;
        int row;
        bool yes;
        const char* names;
        const char* numbers;
        const char* events;
    };
    const Case cases[] = {
        {3, 2, true, "a/c/", "1/2/", "6(2)\n2(-1, -1, , , False)\n"},
        {3, 2, false, "a/b/c/", "1/2/3/", ""},
        {1, 1, true, "/", "1/", "6(1)\n2(-1, -1, , , False)\n"},
    };
    for (const Case& c : cases) {
        F form({{L"AutoRecordNumber", Variant(true)}, {L"Rows", Variant(c.rows + 1)}});
        for (int row = 1; row <= c.rows; ++row)
            form.SetCell(row, F::name, Text(1, static_cast<char16_t>(u'a' + row - 1)).c_str());
        form.GoTo(c.row, F::name);
        SelectRow(form, c.row);
        form.Log();
        {
            const Person person([&] {
                if (const HWND box = WaitForBox()) ClickOn(ButtonOf(box, c.yes ? 1 : 2));
            });
            form.Press(VK_DELETE);
            WaitFor([] { return !FindBox(); }, 8000);
        }
        EXPECT_EQ(form.Column(F::name), c.names);
        EXPECT_EQ(form.Log(), c.events);
        EXPECT_EQ(form.Number(L"Changed") != 0, c.yes);
        EXPECT_EQ(form.Column(F::no), c.numbers);
        form.Press('Z', {VK_CONTROL});
        EXPECT_EQ(form.Column(F::name), c.rows == 1 ? "a/" : "a/b/c/");
    }
}

TEST(ComboGridKeys, FillAndSelectAsInSpreadsheets) {
    F form({{L"ExtendedKeys", Variant(true)}, {L"Rows", Variant(4)}});
    const auto inner = form.Inner();
    const auto select = [&](int row, int rowSel) {
        form.GoTo(row, F::name);
        Put(inner.get(), L"RowSel", {Variant(rowSel)});
    };
    form.SetCell(1, F::name, u"a");
    select(1, 3);
    form.Press('D', {VK_CONTROL});
    EXPECT_EQ(form.Column(F::name), "a/a/a/");
    select(2, 3);
    form.Type(L"b");
    form.Press(VK_RETURN, {VK_CONTROL});
    EXPECT_EQ(form.Column(F::name), "a/b/b/");
    EXPECT_FALSE(form.Frame());
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ(form.Column(F::name), "a/a/a/") << "the entry and the filling are one step";
    select(1, 2);
    form.Press(VK_DELETE);
    EXPECT_EQ(form.Column(F::name), "//a/");
    form.Press(VK_SPACE, {VK_SHIFT});
    EXPECT_FALSE(form.Frame()) << "the space is not typed";
    EXPECT_EQ(Call(inner.get(), L"ColSel").ToLong(), F::key);
    EXPECT_EQ(Call(inner.get(), L"RowSel").ToLong(), 2);
}

TEST(ComboGridKeys, TabLeavesALastRowThatIsStillEmpty) {
    F form({{L"AutoAddNew", Variant(true)}, {L"AutoRecordNumber", Variant(true)}, {L"Rows", Variant(2)}});
    form.GoTo(1, F::item);
    EXPECT_TRUE(form.Press(VK_TAB)) << "the container is left to move the focus on";
    EXPECT_EQ(form.Number(L"Rows"), 2);
    form.Press(VK_DOWN);
    EXPECT_EQ(form.Number(L"Rows"), 2);
    form.SetCell(1, F::name, u"a");
    form.Press(VK_DOWN);
    EXPECT_EQ(form.Current(), "2,5");
    EXPECT_EQ(form.Column(F::no), "1/2/");
}

TEST(ComboGridKeys, EnterInARowWithoutItsKeyLeavesTheGrid) {
    F form({{L"KeyColumn", Variant(F::name)}});
    form.GoTo(1, F::qty);
    EXPECT_TRUE(form.Press(VK_RETURN)) << "the container is left to move the focus on";
    EXPECT_EQ(form.Current(), "1,2");
    form.SetCell(1, F::name, u"x");
    EXPECT_FALSE(form.Press(VK_RETURN));
    EXPECT_EQ(form.Current(), "1,3");
    // A key column that is not there is an error, which is told.
    Put(form.grid.get(), L"KeyColumn", {Variant(44)});
    const Person person([] {
        if (WaitForBox()) TypeKey(VK_RETURN);
    });
    form.Press(VK_RETURN);
    WaitFor([] { return !FindBox(); }, 8000);
    EXPECT_EQ(form.Current(), "1,3");
}

// Whoever moves the focus: the container itself, its site when the control asks, or the order of the dialog.
TEST(ComboGridKeys, TabsLeaveTheGridInEveryContainer) {
    enum class Kind { deliversOnly, deliversOnlyWithSite, asks, asksAndDelivers };
    struct Case {
        int key;
        bool open;
        std::vector<int> held;
    };
    const Case cases[] = {
        {VK_TAB, false, {}},          {VK_TAB, true, {}},     {VK_TAB, false, {VK_CONTROL}},
        {VK_TAB, true, {VK_CONTROL}}, {VK_RETURN, false, {}},  // in a row without its key
    };
    for (const Kind kind : {Kind::deliversOnly, Kind::deliversOnlyWithSite, Kind::asks, Kind::asksAndDelivers}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << "container " << static_cast<int>(kind) << " key " << c.key
                                            << (c.open ? " open" : "") << (c.held.empty() ? "" : " with Ctrl"));
            F form({{L"KeyColumn", Variant(F::name)}});
            const HWND next = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 300, 320, 80, 20,
                                            form.container.Window(), nullptr, nullptr, nullptr);
            form.GoTo(2, F::item);
            if (c.open) form.Type(L"ch");
            form.asksForKeys = kind == Kind::asks || kind == Kind::asksAndDelivers;
            form.deliversKeysLeft = kind == Kind::asksAndDelivers;
            int siteAsked = 0;
            form.usesKey = [&](const MSG& message, DWORD modifiers) {
                const bool moves = message.wParam == VK_TAB && modifiers == 0 && kind != Kind::asksAndDelivers;
                if (message.wParam == VK_TAB && modifiers == 0) ++siteAsked;
                if (moves && kind != Kind::deliversOnly) SetFocus(next);
                return moves && kind != Kind::deliversOnly;
            };
            form.Press(c.key, c.held);
            form.Pump();
            const bool containersOwn = kind == Kind::asks && !c.held.empty();
            EXPECT_EQ(GetFocus() == next, !containersOwn);
            EXPECT_EQ(siteAsked, containersOwn ? 0 : 1) << "a container is asked once";
            EXPECT_EQ(form.Cell(2, F::item), c.open ? u"Cherry" : u"");
            EXPECT_EQ(form.Current(), "2,5");
            DestroyWindow(next);
        }
    }
}

TEST(ComboGridKeys, HostsMayRefuseAndChangeKeys) {
    F form;
    form.Fill({{u"a"}, {u"b"}, {u"c"}});
    short becomes = 0;
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == DISPID_KEYDOWN) *arguments.rgvarg[1].piVal = becomes;
    };
    for (const int key : {VK_INSERT, VK_DELETE, VK_RETURN, VK_DOWN, int{'X'}}) {
        form.GoTo(2, F::name);
        SelectRow(form, 2);
        form.Press(key);
        EXPECT_EQ(form.Column(F::name), "a/b/c/") << key;
        EXPECT_EQ(form.Current(), "2,1") << key;
        EXPECT_FALSE(FindBox() || form.Frame()) << key;
    }
    becomes = VK_INSERT;
    form.Press(VK_HOME);
    EXPECT_EQ(form.Column(F::name), "a//b/c/") << "the key that the host has put in its place";
    becomes = VK_UP;
    form.GoTo(3, F::qty);
    form.Press(VK_DOWN);
    EXPECT_EQ(form.Current(), "2,2");
}

}  // namespace
}  // namespace qvx::test
