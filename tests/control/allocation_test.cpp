// Hosts that have run out of memory: each allocation that the server makes in a call fails once, alone and with all
// behind it. The call says so and has changed nothing, or it does its work; nothing crashes and nothing stays behind.
#include <gtest/gtest.h>
#include <olectl.h>

#include <functional>
#include <string>

#include "Qvx.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/container.h"
#include "tests/support/dialog_closer.h"
#include "tests/support/dual_interfaces.h"
#include "tests/support/each_control.h"
#include "tests/support/narrow.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_allocations.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

bool OutOfMemory(HRESULT code) { return code == E_OUTOFMEMORY || code == static_cast<HRESULT>(0x800A0007); }

std::string CellsOf(IDispatch* grid) {
    std::string cells;
    const long rows = Call(grid, L"Rows").ToLong().value_or(0);
    const long cols = Call(grid, L"Cols").ToLong().value_or(0);
    for (long row = 0; row < rows; ++row) {
        for (long col = 0; col < cols; ++col) {
            const auto cell = Call(grid, L"TextMatrix", {Variant(row), Variant(col)});
            cells += '|' + Narrow(cell.ToText().value_or(Text()));
        }
        cells += '\n';
    }
    return cells;
}

// What a control holds: all that it saves, what is in a grid and its lists, and what is selected in a text box.
std::string StateOf(IUnknown* control) {
    const auto bytes = SaveToStream(control);
    std::string state(bytes.begin(), bytes.end());
    if (const auto edit = Query<_TextEdit>(control)) {
        const auto box = Call(edit.get(), L"TextBox").ToObject<IDispatch>();
        for (const wchar_t* member : {L"SelStart", L"SelLength"})
            state += '\n' + std::to_string(Call(box.get(), member).ToLong().value_or(-1));
    }
    if (const auto grid = Query<_ComboGrid>(control)) {
        // A column has one as long as its caption is what it was.
        const Variant column(1);
        const auto list =
            Invoke(grid.get(), L"Lists", DISPATCH_PROPERTYGET, {column.get()}).value.ToObject<IDispatch>();
        const long count = list ? Call(list.get(), L"ListCount").ToLong().value_or(0) : 0;
        for (long i = 0; i < count; ++i) {
            state += '\n' + Narrow(Call(list.get(), L"List", {Variant(i)}).ToText().value_or(Text()));
        }
        state += '\n' + CellsOf(grid.get());
    }
    return state;
}

class Allocations : public ::testing::TestWithParam<const CLSID*> {
  protected:
    ServerAllocations allocations;
    DialogCloser closer;
};

INSTANTIATE_TEST_SUITE_P(Controls, Allocations, ::testing::ValuesIn(EachControlId()), ControlName);

// A control that could not be made, sited or shown goes like any other.
TEST_P(Allocations, OfALife) {
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    Container container(HostInMode(true));
    const auto live = [&](int passing, bool forGood) {
        container.Calls().clear();
        const ServerAllocations::Failure failure(passing, forGood);
        ComPtr<IClassFactory> factory;
        ComPtr<IUnknown> control;
        if (SUCCEEDED(ServerUnderTest::Get().ClassObject(*GetParam(), IID_IClassFactory, factory.put_void())) &&
            SUCCEEDED(factory->CreateInstance(nullptr, IID_IUnknown, control.put_void()))) {
            container.PutIn(control);
            Query<IPersistStreamInit>(control.get())->InitNew();
            Query<IOleObject>(control.get())->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, container.Window(), nullptr);
            if (container.ControlWindow()) UpdateWindow(container.ControlWindow());
            container.Close();
        }
        return failure.Happened();
    };
    ExpectNothingLeftBehind(1, [&] {
        ServerAllocations::ForEach(live);
        Pump();
    });
    EXPECT_EQ(idle, ServerUnderTest::Get().CanUnload());
}

// A control whose loading has failed can be loaded again; one whose saving has failed is what it was.
TEST_P(Allocations, OfSavingAndLoading) {
    Container container(HostInMode(true));
    container.Place(ServerUnderTest::Get().Create(*GetParam()));
    const auto bytes = SaveToStream(container.Control());
    const auto bag = SaveToBag(container.Control());
    const auto persist = Query<IPersistStreamInit>(container.Control());
    const auto persistBag = Query<IPersistPropertyBag>(container.Control());
    const std::pair<const char*, std::function<HRESULT()>> rows[] = {
        {"loading a stream", [&] { return persist->Load(StreamOf(bytes).get()); }},
        {"loading a bag", [&] { return persistBag->Load(bag.get(), nullptr); }},
        {"saving to a stream", [&] { return persist->Save(StreamOf({}).get(), FALSE); }},
        {"saving to a bag", [&] { return persistBag->Save(MakeObject<MemoryBag>().get(), FALSE, FALSE); }},
    };
    for (const auto& [name, call] : rows) {
        ServerAllocations::ForEach([&](int passing, bool forGood) {
            SCOPED_TRACE(name + (", allocation " + std::to_string(passing)));
            bool happened = false;
            HRESULT result = S_OK;
            {
                const ServerAllocations::Failure failure(passing, forGood);
                result = call();
                happened = failure.Happened();
            }
            EXPECT_TRUE(result == S_OK || (happened && result == E_OUTOFMEMORY)) << std::hex << result;
            if (result != S_OK) {
                EXPECT_EQ(S_OK, LoadFromStream(container.Control(), bytes));
            }
            EXPECT_EQ(bytes, SaveToStream(container.Control()));
            return happened;
        });
    }
}

TEST_P(Allocations, OfPainting) {
    if (IsInvisible(GetParam())) return;
    Container container(HostInMode(true));
    container.Place(ServerUnderTest::Get().Create(*GetParam()));
    container.ActivateUi();
    ExpectNothingLeftBehind(1, [&] {
        ServerAllocations::ForEach([&](int passing, bool forGood) {
            const ServerAllocations::Failure failure(passing, forGood);
            RedrawWindow(container.ControlWindow(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            return failure.Happened();
        });
    });
    EXPECT_FALSE(GetUpdateRect(container.ControlWindow(), nullptr, FALSE)) << "painting is not asked for for ever";
}

// Runs out of memory in each allocation of the member's call: the call tells so and has left the control as it was, or
// it ends as it does with memory enough.
// `subject` is as new before and afterwards.
void StarveMember(const Interface& face, const Function& function, Subject& subject) {
    const auto arguments = PlausibleArguments(function);
    const std::string before = StateOf(subject.container->Control());
    const LateResult usual = CallLate(subject.object.get(), function, arguments);
    const std::string after = StateOf(subject.container->Control());
    if (before != after) subject = Make(face);
    ServerAllocations::ForEach([&](int passing, bool forGood) {
        SCOPED_TRACE("allocation " + std::to_string(passing) + (forGood ? " and all behind it" : ""));
        LateResult late;
        bool happened = false;
        {
            const ServerAllocations::Failure failure(passing, forGood);
            late = CallLate(subject.object.get(), function, arguments);
            happened = failure.Happened();
        }
        const HRESULT code = late.result == DISP_E_EXCEPTION ? late.scode : late.result;
        const bool starved = happened && OutOfMemory(code);
        const std::string state = StateOf(subject.container->Control());
        EXPECT_TRUE(starved || late.result == usual.result) << std::hex << late.result << ' ' << late.scode;
        EXPECT_TRUE(state == (starved ? before : after)) << (starved ? "half done" : "not done");
        if (state != before) subject = Make(face);
        return happened;
    });
}

TEST(MemberAllocations, OfAll) {
    const ServerAllocations allocations;
    const DialogCloser closer;
    for (const Interface& face : DualInterfaces()) {
        Subject subject = Make(face);
        ASSERT_TRUE(subject.object) << face.name;
        for (const Function& function : face.functions) {
            SCOPED_TRACE(face.name + "." + function.name + " as " + std::to_string(function.kind));
            StarveMember(face, function, subject);
        }
    }
}

// ---- The grid as its user meets it ----------------------------------------------------------------------------------

class GridAllocations : public ::testing::Test {
  protected:
    GridAllocations() {
        form.SetCell(1, ComboGridForm::name, u"a name that is long enough");
        form.GoTo(1, ComboGridForm::name);
    }
    bool Can(const wchar_t* what) const { return *Call(form.grid.get(), what).ToBool(); }
    void Do(const wchar_t* method) { Invoke(form.grid.get(), method, DISPATCH_METHOD); }

    const ServerAllocations allocations;
    const DialogCloser closer;
    ComboGridForm form{{{L"AutoRecordNumber", Variant(true)}}};
};

// Whatever fails, the rows are whole, and what the command has done is left and taken back as a whole.
TEST_F(GridAllocations, OfCommands) {
    const auto send = [&](UINT message, WPARAM key) {
        return [this, message, key] { SendMessageW(form.InnerGrid(), message, key, 0); };
    };
    const std::pair<const char*, std::function<void()>> commands[] = {
        {"Insert", send(WM_KEYDOWN, VK_INSERT)}, {"Delete", send(WM_KEYDOWN, VK_DELETE)},
        {"Enter", send(WM_KEYDOWN, VK_RETURN)},  {"Down", send(WM_KEYDOWN, VK_DOWN)},
        {"End", send(WM_KEYDOWN, VK_END)},       {"F2", send(WM_KEYDOWN, VK_F2)},
        {"a letter", send(WM_CHAR, 'x')},        {"Undo", [&] { Do(L"Undo"); }},
        {"Redo", [&] { Do(L"Redo"); }},
    };
    const std::string before = CellsOf(form.grid.get());
    Do(L"Copy");
    for (const auto& [name, command] : commands) {
        ServerAllocations::ForEach([&](int passing, bool forGood) {
            // A step to take back and one to do again.
            Put(form.grid.get(), L"Row", {Variant(2)});
            for (const wchar_t* method : {L"Paste", L"Cut", L"Undo"}) Do(method);
            Put(form.grid.get(), L"Row", {Variant(1)});
            EXPECT_TRUE(Can(L"CanUndo") && Can(L"CanRedo"));
            bool happened = false;
            {
                const ServerAllocations::Failure failure(passing, forGood);
                command();
                happened = failure.Happened();
            }
            Pump();
            for (int i = 0; i < 2; ++i) SendMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
            EXPECT_FALSE(form.Frame());
            while (Can(L"CanUndo")) Do(L"Undo");
            EXPECT_EQ(before, CellsOf(form.grid.get())) << name << ", allocation " << passing;
            Put(form.grid.get(), L"Col", {Variant(ComboGridForm::name)});
            return happened && before == CellsOf(form.grid.get());
        });
    }
}

}  // namespace
}  // namespace qvx::test
