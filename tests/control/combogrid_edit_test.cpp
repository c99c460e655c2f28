// What happens to an open edit when the ground moves under it.
#include <gtest/gtest.h>

#include <functional>

#include "Qvx.h"
#include "com/font_object.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

TEST(ComboGridOpenEdit, IsCommittedOnceByWhateverEndsIt) {
    struct Case {
        const char* what;
        void (*end)(F&);
        const char* cursor;  // afterwards; null when the control is gone
        bool moves;          // the host hears of that after the commit
        bool focus;          // on the grid afterwards
    };
    const Case cases[] = {
        {"a click elsewhere", [](F& f) { f.Click(2, F::name); }, "2,1", true, true},
        {"another current row", [](F& f) { Put(f.grid.get(), L"Row", {Variant(2)}); }, "2,2", true, true},
        {"the focus elsewhere",
         [](F& f) {
             SetFocus(CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE, 300, 300, 80, 20, f.container.Window(),
                                    nullptr, nullptr, nullptr));
             f.Pump();
         },
         "1,2", false, false},
        {"deactivation",
         [](F& f) { EXPECT_EQ(S_OK, Query<IOleInPlaceObject>(f.container.Control())->InPlaceDeactivate()); }, "1,2",
         false, false},
        {"the end of the control", [](F& f) { f.grid.reset(), f.container.Close(); }, nullptr, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        F form;
        form.GoTo(1, F::qty);
        form.Type(L"8%");
        form.Log();
        c.end(form);
        EXPECT_EQ(std::string("2(1, 2, , 8, False)\n") + (c.moves ? "8()\n7()\n" : ""),
                  form.Log({grid_event::listChange, DISPID_KEYDOWN}));
        if (!c.cursor) continue;
        EXPECT_EQ(u"8", form.Cell(1, F::qty));
        EXPECT_EQ(c.cursor, form.Current());
        EXPECT_FALSE(form.Frame());
        EXPECT_EQ(c.focus, GetFocus() == form.InnerGrid());
    }
}

TEST(ComboGridOpenEdit, HostMayDestroyItsWindowAndMakeAnother) {
    F form;
    constexpr long yellow = 0x00FFFF;
    Put(form.grid.get(), L"BackColor", {Variant(yellow)});
    form.GoTo(1, F::item);
    form.Press(VK_F2);
    form.Press(VK_ESCAPE);
    form.GoTo(1, F::qty);
    form.Type(L"8");
    form.Log();
    const ComPtr<IUnknown> control(form.container.Control());
    DestroyWindow(form.container.ControlWindow());
    form.Pump();
    EXPECT_EQ("2(1, 2, , 8, False)\n", form.Log());
    form.container.Activate();
    form.GoTo(1, F::item);
    form.Press(VK_F2);
    EXPECT_TRUE(form.Frame());
    EXPECT_EQ(yellow, *Call(form.List(F::item).get(), L"BackColor").ToLong()) << "as in the old window";
    DestroyWindow(form.container.ControlWindow());
    EXPECT_EQ(0u, form.ReferencesWhenClosed(control)) << "the frame has let go of the active object, too";
}

TEST(ComboGridOpenEdit, StaysOpenWhileRowsGo) {
    for (const bool itsOwn : {true, false}) {
        F form({{L"Rows", Variant(5)}});
        form.GoTo(itsOwn ? 4 : 3, F::qty);
        form.Type(L"8");
        form.Log();
        if (itsOwn)
            Put(form.grid.get(), L"Rows", {Variant(3)});
        else
            Call(form.grid.get(), L"RemoveItem", {Variant(1)});
        EXPECT_EQ("", form.Log()) << "rows that go commit nothing";
        EXPECT_TRUE(form.Frame());
        form.Press(VK_RETURN);
        // Validated, an edit without a row moves to the last one; losing the focus then ends it there.
        EXPECT_EQ(itsOwn ? "2(2, 2, , 8, False)\n" : "2(3, 2, , 8, False)\n", form.Log());
        EXPECT_FALSE(form.Frame());
    }
}

TEST(ComboGridOpenEdit, ErrorWhileOpeningIsTheHostsToAnswer) {
    F form;
    form.GoTo(1, F::name);
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::beforeCellChange) {
            Put(form.grid.get(), L"FixedCols", {Variant(0)});
            Put(form.grid.get(), L"Cols", {Variant(0)});
        } else if (id == grid_event::onError) {
            Answer(arguments, false);
        }
    };
    form.Press(VK_F2);
    EXPECT_EQ("1(1, 1, , False)\n3(381, Subscript out of range, True)\n", form.Log());
    EXPECT_EQ(0, form.Number(L"Cols"));
}

// As in a spreadsheet: one looks at other rows, and the entry goes on where it was.
TEST(ComboGridOpenEdit, TheWheelScrollsTheGridUnderIt) {
    for (const int col : {F::name, F::item}) {
        F form({{L"Rows", Variant(60)}});
        form.GoTo(5, col);
        form.Type(col == F::item ? L"ba" : L"a");
        const auto inner = form.Inner();
        const auto topRow = [&] { return *Call(inner.get(), L"TopRow").ToLong(); };
        const int rowHeight = form.Pixels(L"RowPos", {Variant(6)}) - form.Pixels(L"RowPos", {Variant(5)});
        const auto turn = [&](int notches) {
            const auto movement = static_cast<WPARAM>(static_cast<DWORD>(notches * WHEEL_DELTA) << 16);
            SendMessageW(GetFocus(), WM_MOUSEWHEEL, movement, 0);
            form.Pump();
        };
        if (col == F::item) {
            turn(-1);
            EXPECT_EQ(1, topRow()) << "the open list has the wheel";
            SendMessageW(GetParent(GetFocus()), CB_SHOWDROPDOWN, FALSE, 0);
        }
        const LONG before = AreaOf(form.Frame()).top;
        turn(-1);
        EXPECT_EQ(4, topRow());
        EXPECT_EQ(3 * rowHeight, before - AreaOf(form.Frame()).top) << "it follows its cell";
        turn(-10);
        EXPECT_EQ(34, topRow());
        EXPECT_TRUE(form.Frame()) << "out of sight, but open";
        form.Type(col == F::item ? L"n" : L"b");
        EXPECT_GE(5, topRow()) << "typing brings it back into view";
        EXPECT_LT(0, AreaOf(form.Frame()).left);
        form.Press(VK_RETURN);
        EXPECT_EQ(col == F::item ? u"Banana" : u"ab", form.Cell(5, col));
    }
}

TEST(ComboGridOpenEdit, HandlerThatTakesTheFocusAwayCommitsNothingTwice) {
    F form;
    const HWND other = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE, 300, 300, 80, 20, form.container.Window(),
                                     nullptr, nullptr, nullptr);
    form.GoTo(1, F::qty);
    form.Type(L"8");
    form.Log();
    form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
        if (id == grid_event::afterCellChange) SetFocus(other);
    };
    form.Press(VK_RETURN);
    EXPECT_EQ("2(1, 2, , 8, False)\n", form.Log());
    EXPECT_EQ(other, GetFocus()) << "the handler's choice stands";
    EXPECT_FALSE(form.Frame());
}

// Where the editor's windows are: its frame, the combo in it, and the field in that.
std::string EditorPlaces(const F& form) {
    std::string places;
    RECT origin{};
    GetWindowRect(form.InnerGrid(), &origin);
    for (HWND window = GetFocus(); window && window != form.container.ControlWindow(); window = GetParent(window)) {
        RECT at{};
        GetWindowRect(window, &at);
        OffsetRect(&at, -origin.left, -origin.top);
        for (const LONG edge : {at.left, at.top, at.right, at.bottom}) places += std::to_string(edge) + " ";
    }
    return places;
}

TEST(ComboGridOpenEdit, OpensWhereANewEditorOpens) {
    const auto setHeight = [](F& f, long twips) { Put(f.Inner().get(), L"RowHeight", {Variant(1), Variant(twips)}); };
    const std::pair<const char*, std::function<void(F&)>> changes[] = {
        {"nothing", [](F&) {}},
        {"a wider column",
         [](F& f) {
             Put(f.grid.get(), L"ColWidth", {Variant(int{F::name}), Variant(1400)});
         }},
        {"a higher row", [&](F& f) { setHeight(f, 900); }},
        {"a larger font",
         [](F& f) {
             Put(f.Inner().get(), L"Font", {Variant(static_cast<IDispatch*>(MakeFontObject({u"Tahoma", 18}).get()))});
         }},
        {"another direction", [](F& f) { Put(f.Inner().get(), L"RightToLeft", {Variant(true)}); }},
    };
    for (const auto& [what, change] : changes) {
        for (const int col : {int{F::name}, int{F::item}}) {
            SCOPED_TRACE(std::string(what) + ", column " + std::to_string(col));
            const auto open = [&](F& form) {
                form.GoTo(1, col);
                form.Press(VK_F2);
                EXPECT_TRUE(form.Frame());
                return EditorPlaces(form);
            };
            std::string expected;
            {
                F fresh;
                setHeight(fresh, 600);
                change(fresh);
                expected = open(fresh);
            }
            F form;
            setHeight(form, 600);  // so that another font does not change it
            open(form);
            form.Press(VK_F4);  // a list that was open has had another height
            form.Press(VK_F4);
            form.Press(VK_ESCAPE);
            form.Press(VK_ESCAPE);
            change(form);
            EXPECT_EQ(open(form), expected);
        }
    }
}

}  // namespace
}  // namespace qvx::test
