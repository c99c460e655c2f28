// Hosts may do anything in a handler, and the grid has to be there when they return: everything that can be taken away
// from it, in every event. Freed memory is overwritten while these tests run, so that its use ends them.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>

#include "com/late_bound.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/message_box.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

// One field, some records; everything by name.
class FewRecords final : public ComObject<IDispatch> {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        static const wchar_t* const known[] = {L"EOF",   L"MoveNext", L"Fields",     L"Item",
                                               L"Value", L"Count",    L"RecordCount"};
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(known)); ++i)
            if (std::wstring(known[i]) == names[0]) return *ids = i, S_OK;
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        constexpr long count = 3;
        Variant answer;
        if (member == 0) answer = Variant(read_ >= count);
        if (member == 1) ++read_;
        if (member == 2 || member == 3) answer = Variant(static_cast<IDispatch*>(this));
        if (member == 4) answer = Variant(u"value");
        if (member == 5) answer = Variant(1);
        if (member == 6) answer = Variant(count);
        if (result) *result = answer.detach();
        return S_OK;
    }

  private:
    ~FewRecords() override = default;
    long read_ = 0;
};

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
         const auto records = MakeObject<FewRecords>();
         Try(f, L"Bind", {Variant(static_cast<IDispatch*>(records.get())).get()});
     }},
    {"Undo", [](F& f) { Try(f, L"Undo", {}); }},
    {"AddItem", [](F& f) { Try(f, L"AddItem", {Variant(u"x\ty").get()}); }},
    {"the form hidden", [](F& f) { ShowWindow(f.container.Window(), SW_HIDE); }},
    {"the control's window destroyed", [](F& f) { DestroyWindow(f.container.ControlWindow()); }},
    {"the control closed", [](F& f) { f.container.Close(); }},
};

// Somebody who closes every box that tells of an error, for as long as the scope lasts.
class Closer {
  public:
    ~Closer() { done_ = true; }

  private:
    std::atomic<bool> done_ = false;
    Person person_{[this] {
        while (!done_) {
            if (const HWND box = FindBox()) PostMessageW(box, WM_KEYDOWN, VK_RETURN, 0);
            Sleep(50);
        }
    }};
};

// What a person does to a grid, with the messages that a host would have to answer.
void Use(F& form) {
    form.GoTo(1, F::name);
    form.Type(L"ab");
    form.Press(VK_RETURN);
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
    const Closer closer;
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
            Use(form);
            form.events->onEvent = nullptr;
            EXPECT_NE(FALSE, HeapValidate(GetProcessHeap(), 0, nullptr));
        }
        EXPECT_EQ(acted, static_cast<int>(std::size(acts))) << "event " << event << " was raised";
    }
}

TEST(ComboGridHandlers, MayTakeEverythingAwayWhenARowIsDeleted) {
    for (const DISPID event : {grid_event::onDelete, grid_event::afterCellChange}) {
        for (const Act& act : acts) {
            SCOPED_TRACE(std::string(act.what) + " in event " + std::to_string(event));
            F form;
            bool acted = false;
            form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
                if (id == event && !std::exchange(acted, true)) act.run(form);
            };
            const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
            Put(inner.get(), L"Row", {Variant(1)});
            Put(inner.get(), L"Col", {Variant(1)});
            Put(inner.get(), L"ColSel", {Variant(8)});
            {
                const Person person([] {
                    if (WaitForBox()) TypeKey('Y');
                });
                SetFocus(form.InnerGrid());
                form.Press(VK_DELETE);
            }
            EXPECT_TRUE(acted);
            form.events->onEvent = nullptr;
            EXPECT_NE(FALSE, HeapValidate(GetProcessHeap(), 0, nullptr));
        }
    }
}

TEST(ComboGridHandlers, HearOfTheInnerGridsEvents) {
    F form;
    form.GoTo(1, F::name);
    form.events->events.clear();
    form.Click(2, F::rate);
    const DISPID clicked[] = {
        DISPID_MOUSEDOWN,      grid_event::leaveCell, grid_event::enterCell, grid_event::rowColChange,
        grid_event::selChange, DISPID_MOUSEUP,        DISPID_CLICK};
    for (const DISPID id : clicked) EXPECT_EQ(form.events->Count(id), 1U) << id;
    // At once again, after the program has gone elsewhere: a press like any other, and a double click as well.
    form.GoTo(1, F::name);
    form.events->events.clear();
    form.Click(2, F::rate);
    const DISPID clickedTwice[] = {DISPID_MOUSEDOWN, grid_event::leaveCell, grid_event::enterCell, DISPID_DBLCLICK};
    for (const DISPID id : clickedTwice) EXPECT_EQ(form.events->Count(id), 1U) << id;
    EXPECT_EQ(form.events->Count(DISPID_CLICK), 0U);
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
