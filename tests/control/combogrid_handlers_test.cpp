// Hosts may do anything in a handler, and the grid has to be there when they return: everything that can be taken away
// from it, in every event. Freed memory is overwritten while these tests run, so that its use ends them.
#include <gtest/gtest.h>

#include <functional>
#include <span>

#include "tests/control/combogrid_form.h"
#include "tests/support/dialog_closer.h"
#include "tests/support/message_box.h"
#include "tests/support/script_records.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

struct Act {
    const char* what;
    std::function<void(F&)> run;
};

// Calls that fail are part of it: an act may come when there is nothing left to act on.
void Try(F& form, const wchar_t* member, std::vector<VARIANT> arguments, WORD flags = DISPATCH_METHOD) {
    Invoke(form.grid.get(), member, flags, arguments);
}

const Act acts[] = {
    {"Rows = 1", [](F& f) { Try(f, L"Rows", {Variant(1).get()}, DISPATCH_PROPERTYPUT); }},
    {"Cols = 2", [](F& f) { Try(f, L"Cols", {Variant(2).get()}, DISPATCH_PROPERTYPUT); }},
    {"RemoveItem", [](F& f) { Try(f, L"RemoveItem", {Variant(1).get()}); }},
    {"Clear", [](F& f) { Try(f, L"Clear", {}); }},
    {"Bind",
     [](F& f) {
         const auto records = MakeObject<ScriptRecords>();
         records->records.assign(3, {Variant(u"value")});
         Try(f, L"Bind", {Variant(static_cast<IDispatch*>(records.get())).get()});
     }},
    {"Undo", [](F& f) { Try(f, L"Undo", {}); }},
    {"Redo", [](F& f) { Try(f, L"Redo", {}); }},
    {"AddItem", [](F& f) { Try(f, L"AddItem", {Variant(u"x\ty").get()}); }},
    {"the form hidden", [](F& f) { ShowWindow(f.container.Window(), SW_HIDE); }},
    {"the control deactivated", [](F& f) { Query<IOleInPlaceObject>(f.container.Control())->InPlaceDeactivate(); }},
    {"the control's window destroyed", [](F& f) { DestroyWindow(f.container.ControlWindow()); }},
    {"the control closed", [](F& f) { f.container.Close(); }},
};

const Act letGo[] = {{"nobody holding the control", [](F& f) { f.grid.reset(), f.container.Close(); }}};

// What a person does to a grid, with the messages that a host would have to answer.
void Use(F& form) {
    form.Enter(1, F::name, L"ab");
    form.Press(VK_INSERT);
    form.Press('Z', {VK_CONTROL});
    form.Press(VK_F2);
    form.Click(0, F::name);
    form.Press(VK_DELETE);
}

TEST(ComboGridHandlers, MayTakeEverythingAwayInEveryEvent) {
    struct Case {
        DISPID event;
        int call;  // at the second, in the middle of what the first has begun
    };
    const Case cases[] = {
        {grid_event::beforeCellChange, 2},
        {grid_event::afterCellChange, 1},
        {grid_event::enterCell, 2},
        {grid_event::leaveCell, 2},
        {grid_event::listChange, 2},
        {DISPID_KEYDOWN, 2},
        {DISPID_KEYPRESS, 2},
        {DISPID_MOUSEDOWN, 1},
        {DISPID_CLICK, 1},
    };
    const DialogCloser closer;
    for (const auto& [event, call] : cases) {
        int acted = 0;
        for (const Act& act : acts) {
            SCOPED_TRACE(std::string(act.what) + " in event " + std::to_string(event));
            F form;
            int calls = 0;
            form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
                if (id != event || ++calls != call) return;
                ++acted;
                act.run(form);
            };
            const ComPtr<IUnknown> control(form.container.Control());
            Use(form);
            form.events->onEvent = nullptr;
            form.Pump();
            EXPECT_EQ(0u, form.ReferencesWhenClosed(control)) << "everybody but the test has let go of it";
            EXPECT_NE(FALSE, HeapValidate(GetProcessHeap(), 0, nullptr));
        }
        EXPECT_EQ(acted, static_cast<int>(std::size(acts))) << "event " << event << " was raised";
    }
}

// What is done in one call, which raises its events by itself.
TEST(ComboGridHandlers, MayTakeEverythingAwayFromUnderACall) {
    const auto select = [](F& form, int rowSel) {
        Put(form.grid.get(), L"Rows", {Variant(5)});
        form.GoTo(2, F::name);
        Put(form.Inner().get(), L"RowSel", {Variant(rowSel)});
        Put(form.Inner().get(), L"ColSel", {Variant(int{F::key})});
    };
    const auto paste = [&](F& form) {
        select(form, 4);
        Call(form.grid.get(), L"Copy");
    };
    const auto pasted = [&](F& form) {
        paste(form);
        Call(form.grid.get(), L"Paste");
    };
    const auto at = [](int row) {
        return [row](F& form) {
            Put(form.grid.get(), L"Rows", {Variant(100)});
            Put(form.Inner().get(), L"ColWidth", {Variant(-1), Variant(3000)});
            form.GoTo(row, F::name);
        };
    };
    const auto press = [](int key) { return [key](F& form) { form.Press(key); }; };
    const auto call = [](const wchar_t* method) { return [method](F& form) { Call(form.grid.get(), method); }; };
    const auto put = [](const wchar_t* name, int value) {
        return [=](F& form) { Put(form.Inner().get(), name, {Variant(value)}); };
    };
    const struct {
        const char* what;
        std::function<void(F&)> prepare;
        std::function<void(F&)> run;
        DISPID event;
        int call = 1;
        bool closesOnly = true;
    } cases[] = {
        {"deleting", [&](F& f) { select(f, 2); }, press(VK_DELETE), grid_event::onDelete, 1, false},
        {"deleting", [&](F& f) { select(f, 2); }, press(VK_DELETE), grid_event::afterCellChange, 1, false},
        {"pasting", paste, call(L"Paste"), grid_event::beforeCellChange, 2, false},
        {"pasting", paste, call(L"Paste"), grid_event::afterCellChange, 2, false},
        {"undoing", pasted, call(L"Undo"), grid_event::afterCellChange, 2, false},
        {"leaving by a key", at(1), press(VK_DOWN), grid_event::leaveCell},
        {"entering by a key", at(1), press(VK_DOWN), grid_event::enterCell},
        {"scrolling by a key", at(1), press(VK_NEXT), grid_event::scroll},
        {"leaving by program", at(1), put(L"Row", 2), grid_event::leaveCell},
        {"entering by program", at(1), put(L"Row", 2), grid_event::enterCell},
        {"leaving a row that goes", at(99), put(L"Rows", 2), grid_event::leaveCell},
        {"entering after the last row went", at(99),
         [](F& form) { Call(form.Inner().get(), L"RemoveItem", {Variant(99)}); }, grid_event::enterCell},
        {"scrolling down by program", at(1), put(L"TopRow", 5), grid_event::scroll},
        {"scrolling across by program", at(1), put(L"LeftCol", 2), grid_event::scroll},
        {"scrolling to the cell that is asked for", at(99), [](F& form) { Call(form.Inner().get(), L"CellTop"); },
         grid_event::scroll},
    };
    for (const auto& c : cases) {
        for (const Act& act : c.closesOnly ? std::span<const Act>(letGo) : acts) {
            SCOPED_TRACE(std::string(act.what) + " while " + c.what + ", event " + std::to_string(c.event));
            F form;
            const auto inner = form.Inner();
            c.prepare(form);
            int calls = 0;
            form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
                if (id == c.event && ++calls == c.call) act.run(form);
            };
            {
                const Person person([&] {
                    if (std::string_view(c.what) == "deleting" && WaitForBox()) TypeKey('Y');
                });
                c.run(form);
            }
            EXPECT_GE(calls, c.call);
            form.events->onEvent = nullptr;
            form.Pump();
            EXPECT_NE(FALSE, HeapValidate(GetProcessHeap(), 0, nullptr));
            if (c.closesOnly) {
                EXPECT_EQ(ErrorOf(inner.get(), L"Rows", DISPATCH_PROPERTYGET), 364) << "still held";
            }
        }
    }
}

TEST(ComboGridHandlers, HearOfTheInnerGridsEvents) {
    F form;
    form.GoTo(1, F::name);
    form.events->events.clear();
    form.Click(2, F::rate);
    form.Click(2, F::rate);
    std::vector<DISPID> heard;
    for (const auto& event : form.events->events)
        if (event.id != DISPID_MOUSEMOVE && event.id != grid_event::beforeCellChange) heard.push_back(event.id);
    const std::vector<DISPID> clicked{
        DISPID_MOUSEDOWN, grid_event::leaveCell, grid_event::enterCell, grid_event::rowColChange, grid_event::selChange,
        DISPID_MOUSEUP,   DISPID_CLICK,          DISPID_MOUSEDOWN,      DISPID_DBLCLICK};
    heard.resize(clicked.size());
    EXPECT_EQ(heard, clicked);
    EXPECT_EQ(form.Current(), "2,3");
    ASSERT_TRUE(form.Frame()) << "the host was told before the editor opened";
    form.Press(VK_ESCAPE);
    form.events->events.clear();
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == DISPID_KEYPRESS) *arguments.rgvarg[0].piVal = *arguments.rgvarg[0].piVal == L'a' ? L'b' : 0;
    };
    form.Type(L"x");
    EXPECT_FALSE(form.Frame()) << "refused";
    form.Type(L"a");
    EXPECT_TRUE(form.Frame());
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Cell(2, F::rate), u"0");
    EXPECT_EQ(form.events->Count(DISPID_KEYPRESS), 2U);
    EXPECT_GE(form.events->Count(DISPID_KEYUP), 1U);
}

}  // namespace
}  // namespace qvx::test
