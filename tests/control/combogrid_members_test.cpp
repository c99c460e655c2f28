// A ComboGrid's properties, methods and saved form.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "Qvx.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/control/golden.h"
#include "tests/control/grid_counts.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

ComPtr<IUnknown> New() { return ServerUnderTest::Get().Create(CLSID_ComboGrid); }

ComPtr<IDispatch> Loaded(const std::vector<std::pair<std::wstring, Variant>>& values) {
    const auto bag = MakeObject<MemoryBag>();
    for (const auto& [key, value] : values) bag->Set(key, value);
    const auto control = New();
    EXPECT_EQ(S_OK, LoadFromBag(control.get(), bag.get()));
    return control.As<IDispatch>();
}

TEST(ComboGridSaving, AnEmptyBagGivesThreeRowsAndAFixedColumnThatWaits) {
    const auto grid = Loaded({});
    EXPECT_EQ("3 1 0 0 ", CountsOf(grid.get()));
    EXPECT_EQ(u"", Call(grid.get(), L"StringFormat").ToText());
    EXPECT_EQ(0, Call(Call(grid.get(), L"ColIndex").ToObject<IDispatch>().get(), L"Count").ToLong());
    EXPECT_TRUE(SaveToBag(Query<IUnknown>(grid.get()).get())->entries.empty()) << "every value is its default";
    Put(grid.get(), L"FormatString", {Variant(u"No|Name|Qty")});
    EXPECT_EQ("3 1 3 1 ", CountsOf(grid.get()));
}

TEST(ComboGridSaving, EveryCombinationOfCountsComesBack) {
    for (const bool userMode : {false, true}) {
        Container::Options options;
        options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(userMode));
        Container container(options);
        const auto check = [&](const GridCounts& counts) {
            container.Place(New());
            const auto grid = container.Automation();
            SetCounts(grid.get(), counts);
            const std::string shown = CountsOf(grid.get());
            SCOPED_TRACE(shown + (userMode ? "running" : "designed"));
            const auto bag = SaveToBag(container.Control());
            const auto stream = SaveToStream(container.Control());
            const std::string grown = CountsWhenGrown(grid.get());
            container.Close();
            for (const bool fromBag : {true, false}) {
                container.Place(New(), [&](IUnknown* control) {
                    EXPECT_EQ(S_OK, fromBag ? LoadFromBag(control, bag.get()) : LoadFromStream(control, stream));
                });
                EXPECT_EQ(shown, CountsOf(container.Automation().get()));
                EXPECT_EQ(Narrow(bag->Print()), Narrow(SaveToBag(container.Control())->Print()));
                EXPECT_EQ(grown, CountsWhenGrown(container.Automation().get()));
                container.Close();
            }
        };
        for (int rows = 0; rows <= 3; ++rows)
            for (int fixedRows = 0; fixedRows <= std::max(rows, 1); ++fixedRows)
                for (int cols = 0; cols <= 3; ++cols)
                    for (int fixedCols = 0; fixedCols <= std::max(cols - 1, 1); ++fixedCols)
                        check({rows, fixedRows, cols, fixedCols});
    }
}

// Every key once, in its order: the file has a value for each property other than its default.
TEST(ComboGridSaving, KeysAndTheirOrderAreFixed) {
    const auto bag = MakeObject<MemoryBag>();
    std::istringstream lines(GoldenText("combogrid_bag.txt"));
    for (std::string line; std::getline(lines, line);) {
        const Text text(line.begin(), line.end());
        const auto mark = text.find(u'=');
        bag->Set(Wide(text.substr(0, mark)), Variant(text.substr(mark + 1)));
    }
    EXPECT_EQ(48u, bag->entries.size());
    const auto control = New();
    ASSERT_EQ(S_OK, LoadFromBag(control.get(), bag.get()));
    ExpectGolden("combogrid_bag.txt", Narrow(SaveToBag(control.get())->Print()));
    for (const auto& [key, value] : bag->entries) {
        if (!key.ends_with(L"0")) {
            EXPECT_EQ(value.ToText(), Call(control.As<IDispatch>().get(), key.c_str()).ToText());
        }
    }
}

TEST(ComboGridSaving, OnlyIndexZeroOfIndexedMembersIsKept) {
    const auto grid = Loaded({{L"FormatString", Variant(u"A|B|C")}, {L"ColWidth0", Variant(1200)}});
    EXPECT_EQ(1200, Call(grid.get(), L"ColWidth", {Variant(0)}).ToLong());
    Put(grid.get(), L"ColWidth", {Variant(2), Variant(777)});
    const auto bag = SaveToBag(Query<IUnknown>(grid.get()).get());
    EXPECT_EQ(1200, bag->Find(L"ColWidth0")->ToLong());
    EXPECT_EQ(nullptr, bag->Find(L"ColWidth2"));
    const auto hidden = Loaded({{L"FormatString", Variant(u"A|B|C")}});
    EXPECT_EQ(0, Call(hidden.get(), L"ColWidth", {Variant(0)}).ToLong()) << "column 0 is hidden without its key";
}

// A form that is half there has no handlers yet, whoever reads it a second time.
TEST(ComboGridMembers, NobodyHearsOfTheCursorWhileItIsRead) {
    F form({{L"Rows", Variant(2)}});
    const auto bag = SaveToBag(form.container.Control());
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    const auto innerEvents = MakeObject<EventRecorder>();
    const Connection connection(inner.get(), __uuidof(__FlexGrid), innerEvents.get());
    const auto control = Query<IOleControl>(form.container.Control());
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"bag", [&] { EXPECT_EQ(S_OK, LoadFromBag(form.container.Control(), bag.get())); }},
        {"frozen",
         [&] {
             control->FreezeEvents(TRUE);
             Put(form.grid.get(), L"Row", {Variant(1)});
             control->FreezeEvents(FALSE);
         }},
    };
    for (const auto& [what, run] : cases) {
        SCOPED_TRACE(what);
        Put(form.grid.get(), L"Rows", {Variant(4)});
        form.GoTo(3, F::rate);
        EXPECT_NE(0u, innerEvents->events.size());
        innerEvents->events.clear();
        run();
        EXPECT_EQ(1, form.Number(L"Row")) << "the cursor has moved";
        EXPECT_EQ(0u, form.events->events.size());
        EXPECT_EQ(0u, innerEvents->events.size());
    }
}

// Some hosts turn from designing to running, and back, without making the controls of their forms anew.
TEST(ComboGridMembers, IsPreparedWhenItsHostTurnsToRunning) {
    F form({{L"AutoRecordNumber", Variant(true)}}, false);
    form.container.Activate();
    EXPECT_EQ(nullptr, form.InnerGrid());
    EXPECT_EQ(u"", form.Cell(1, F::no));
    EXPECT_EQ(u"", Call(form.grid.get(), L"StringFormat").ToText());
    const auto keyWidth = [&] { return Call(form.grid.get(), L"ColWidth", {Variant(int{F::key})}).ToLong(); };
    EXPECT_NE(0, keyWidth());
    EXPECT_EQ(340, ErrorOf(form.grid.get(), L"Lists", DISPATCH_PROPERTYGET, {Variant(int{F::item})}));
    for (const bool again : {false, true}) {
        form.container.SetAmbient(DISPID_AMBIENT_USERMODE, Variant(true));
        ASSERT_NE(nullptr, form.InnerGrid());
        RECT control{}, inner{};
        GetClientRect(form.container.ControlWindow(), &control);
        GetWindowRect(form.InnerGrid(), &inner);
        EXPECT_EQ(control.right, inner.right - inner.left);
        EXPECT_EQ(u"1", form.Cell(1, F::no));
        EXPECT_EQ(0, keyWidth());
        EXPECT_EQ(u"[No],[Name],[Qty],[Rate],[Month],[Item],[Locked],[Skip],[Key]",
                  Call(form.grid.get(), L"StringFormat").ToText());
        EXPECT_EQ(0, Call(form.List(F::item).get(), L"ListCount").ToLong());
        Put(form.grid.get(), L"Row", {Variant(1)});
        Put(form.grid.get(), L"Col", {Variant(int{F::name})});
        SetFocus(form.InnerGrid());
        SendMessageW(form.InnerGrid(), WM_CHAR, again ? 'b' : 'a', 0);
        ASSERT_NE(nullptr, form.Frame());
        form.container.SetAmbient(DISPID_AMBIENT_USERMODE, Variant(false));
        EXPECT_EQ(again ? u"b" : u"a", form.Cell(1, F::name)) << "what was being typed is kept";
        EXPECT_EQ(nullptr, form.InnerGrid());
    }
}

TEST(ComboGridMembers, ListsIsForListColumnsOnly) {
    F form;
    EXPECT_EQ(3, Call(form.List(F::item).get(), L"ListCount").ToLong());
    for (const int col : {0, int{F::name}, 999, -1}) {
        const CallResult result = Invoke(form.grid.get(), L"Lists", DISPATCH_PROPERTYGET, {Variant(col).get()});
        EXPECT_EQ(static_cast<HRESULT>(0x800A0000 + 9), result.scode) << col;
        EXPECT_EQ(u"Not a valid ListColum Index.", result.description);
        EXPECT_EQ(u"Qvx", result.source);
    }
    form.GoTo(1, F::item);
    EXPECT_EQ(5, Call(form.grid.get(), L"GetActiveList").ToLong());
    // A column listed later has no list before the next load.
    Put(form.grid.get(), L"ListColumns", {Variant(u";Name;Item;")});
    EXPECT_EQ(340, ErrorOf(form.grid.get(), L"Lists", DISPATCH_PROPERTYGET, {Variant(int{F::name})}));
    form.Enter(1, F::name, L"free");
    EXPECT_EQ(u"free", form.Cell(1, F::name));
}

TEST(ComboGridMembers, PickListHasTheMembersHostsKnow) {
    F form;
    const auto list = form.List(F::item);
    IDispatch* combo = list.get();
    Call(combo, L"AddItem", {Variant(u"Avocado"), Variant(1)});
    EXPECT_EQ(1, Call(combo, L"NewIndex").ToLong());
    EXPECT_EQ(u"Avocado", Call(combo, L"List", {Variant(1)}).ToText());
    EXPECT_EQ(u"", Call(combo, L"List", {Variant(9)}).ToText());
    Put(combo, L"ItemData", {Variant(1), Variant(4711)});
    Put(combo, L"List", {Variant(1), Variant(u"Apricot")});
    EXPECT_EQ(4711, Call(combo, L"ItemData", {Variant(1)}).ToLong());
    form.Log();
    Put(combo, L"ListIndex", {Variant(1)});
    EXPECT_EQ(u"Apricot", Call(combo, L"Text").ToText());
    EXPECT_EQ("5(-1, -1, Apricot)\n", form.Log({}));
    Put(combo, L"Text", {Variant(u"Apri")});
    EXPECT_EQ(-1, Call(combo, L"ListIndex").ToLong()) << "a text is no choice";
    EXPECT_EQ("4(-1, -1, Apri)\n", form.Log({}));
    Put(combo, L"SelStart", {Variant(1)});
    Put(combo, L"SelLength", {Variant(2)});
    EXPECT_EQ(u"pr", Call(combo, L"SelText").ToText());
    Put(combo, L"SelText", {Variant(u"XYZ")});
    EXPECT_EQ(u"AXYZi", Call(combo, L"Text").ToText());
    Call(combo, L"RemoveItem", {Variant(0)});
    EXPECT_EQ(u"Apricot", Call(combo, L"List", {Variant(0)}).ToText());
    EXPECT_NE(0, Call(combo, L"hWnd").ToLong());
    const auto font = Call(combo, L"Font").ToObject<IFont>();
    ASSERT_TRUE(font);
    EXPECT_EQ(S_OK, font->put_Bold(TRUE));
    Call(combo, L"Clear");
    EXPECT_EQ(0, Call(combo, L"ListCount").ToLong());
    EXPECT_EQ(u"", Call(combo, L"Text").ToText());
}

TEST(ComboGridMembers, ColIndexFindsColumnsByCaption) {
    F form(
        {{L"FormatString", Variant(u"No|Code|Qty|Name|Qty")}, {L"Cols", Variant(5)}, {L"ListColumns", Variant(u"")}});
    const auto find = [&](const Variant& caption) {
        const auto index = Call(form.grid.get(), L"ColIndex").ToObject<IDispatch>();
        const CallResult found = Invoke(index.get(), L"Item", DISPATCH_PROPERTYGET, {caption.get()});
        return FAILED(found.result) ? -(found.scode & 0xFFFF) : found.value.ToLong().value_or(-1);
    };
    EXPECT_EQ(4, find(Variant(u"qty1")));
    EXPECT_EQ(0, find(Variant(1))) << "by place";
    Put(form.grid.get(), L"TextMatrix", {Variant(0), Variant(1), Variant(u"Number")});
    EXPECT_EQ(-5, find(Variant(u"number")));
    Call(form.grid.get(), L"RefreshColIndex");
    EXPECT_EQ(u"[No],[Number],[Qty],[Name],[Qty1]", Call(form.grid.get(), L"StringFormat").ToText());
    EXPECT_EQ(1, find(Variant(u"number")));
}

TEST(ComboGridMembers, ForwardedPropertiesReachTheInnerGridAndTheHost) {
    F form;
    const auto listener = MakeObject<PropertyListener>();
    const Connection connection(form.container.Control(), IID_IPropertyNotifySink, listener.get());
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    Put(form.grid.get(), L"GridColor", {Variant(0x112233)});
    EXPECT_EQ(0x112233, Call(inner.get(), L"GridColor").ToLong());
    EXPECT_EQ(1u, listener->changed.size());
    EXPECT_EQ(S_OK, Query<IPersistStreamInit>(form.container.Control())->IsDirty());
    EXPECT_NE(Call(form.grid.get(), L"hWnd").ToLong(), Call(inner.get(), L"hWnd").ToLong());
    EXPECT_NE(0, Call(form.grid.get(), L"hDC").ToLong());
    for (const char16_t* columns : {u";Qty;", u""}) {
        Put(form.grid.get(), L"InVisibleColumns", {Variant(columns)});
        EXPECT_EQ(*columns == 0, Call(form.grid.get(), L"ColWidth", {Variant(int{F::qty})}).ToLong() != 0);
    }
}

TEST(ComboGridMembers, RowsAreAddedAndRemovedWithTheirNumbers) {
    F form({{L"AutoRecordNumber", Variant(true)}});
    Call(form.grid.get(), L"AddItem", {Variant(u"x\tthird\t3")});
    EXPECT_EQ(u"x", form.Cell(3, F::no)) << "AddItem numbers nothing";
    Call(form.grid.get(), L"AddItem", {Variant(u"y\tfirst"), Variant(1)});
    EXPECT_EQ(u"first", form.Cell(1, F::name));
    Call(form.grid.get(), L"RemoveItem", {Variant(2)});
    for (int row = 1; row < form.Number(L"Rows"); ++row) EXPECT_EQ(std::to_string(row), Narrow(form.Cell(row, F::no)));
    EXPECT_EQ(u"third", form.Cell(3, F::name));
    EXPECT_NE(0, ErrorOf(form.grid.get(), L"AddItem", DISPATCH_METHOD, {Variant(u"z"), Variant(-1)}));
}

// Which cell is projected when which event comes is the rules'.
TEST(ComboGridMembers, TheCurrentCellIsProjectedWhoeverMovesRows) {
    F form({{L"Rows", Variant(5)}, {L"ForeColorSel", Variant(0x030201)}});
    const auto inner = form.Inner();
    const auto looksSelected = [&] { return Call(inner.get(), L"CellForeColor").ToLong() == 0x030201; };
    for (IDispatch* grid : {form.grid.get(), inner.get()}) {
        form.GoTo(3, F::name);
        Call(grid, L"RemoveItem", {Variant(1)});
        EXPECT_TRUE(looksSelected());
        Put(form.grid.get(), L"ProjectSelection", {Variant(false)});
        for (const int row : {1, 2, 3}) {
            Put(form.grid.get(), L"Row", {Variant(row)});
            EXPECT_FALSE(looksSelected()) << "nothing is left over in row " << row;
        }
        Put(form.grid.get(), L"ProjectSelection", {Variant(true)});
        Call(grid, L"AddItem", {Variant(u"x"), Variant(1)});
    }
}

}  // namespace
}  // namespace qvx::test
