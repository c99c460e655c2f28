// Undo, redo and the clipboard by real keys and as members, and what the host hears of them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sstream>

#include "Qvx.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/message_box.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

std::string Narrow(TextView text) {
    std::string out;
    for (const char16_t c : text) out += c == u'\r' ? '/' : c == u'\n' ? ' ' : c == u'\t' ? '|' : static_cast<char>(c);
    return out;
}

// What the host has been told about cells since the last call.
std::string Notified(F& form) {
    std::ostringstream told;
    for (const auto& event : form.events->events) {
        if (event.id != grid_event::beforeCellChange && event.id != grid_event::afterCellChange) continue;
        told << (event.id == grid_event::beforeCellChange ? "before" : "after");
        for (std::size_t i = 0; i + 1 < event.arguments.size(); ++i)
            told << (i == 1 ? "," : " ") << Narrow(event.arguments[i].ToText().value_or(u"?"));
        told << "\n";
    }
    form.events->events.clear();
    return told.str();
}

class Clipboard {
  public:
    explicit Clipboard(HWND owner) {
        for (int i = 0; i < 50 && !(open_ = OpenClipboard(owner) != FALSE); ++i) Sleep(20);
        EXPECT_TRUE(open_);
    }
    ~Clipboard() { CloseClipboard(); }
    static void Put(F& form, TextView text) {
        const Clipboard clipboard(form.container.Window());
        EmptyClipboard();
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
        auto* units = static_cast<char16_t*>(GlobalLock(memory));
        units[text.copy(units, text.size())] = 0;
        GlobalUnlock(memory);
        SetClipboardData(CF_UNICODETEXT, memory);
    }
    static std::string Get(F& form) {
        const Clipboard clipboard(form.container.Window());
        const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
        if (!memory) return "nothing";
        const std::string text = Narrow(static_cast<const char16_t*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        return text;
    }

  private:
    bool open_ = false;
};

void Select(F& form, int row, int col, int rowSel, int colSel) {
    form.GoTo(row, col);
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    Put(inner.get(), L"RowSel", {Variant(rowSel)});
    Put(inner.get(), L"ColSel", {Variant(colSel)});
    Notified(form);
}

std::string Row(const F& form, int row) {
    std::string cells;
    for (int col = F::name; col <= F::item; ++col) cells += (col > F::name ? "|" : "") + Narrow(form.Cell(row, col));
    return cells;
}

bool Can(const F& form, const wchar_t* property) { return *Call(form.grid.get(), property).ToBool(); }

TEST(ComboGridClipboard, CopiesAndPastesByKeysOneCellAfterTheOther) {
    F form;
    form.SetCell(1, F::name, u"Nut");
    form.SetCell(1, F::qty, u"8");
    Select(form, 1, F::name, 1, F::qty);
    EXPECT_FALSE(form.Press('C', {VK_CONTROL}));
    EXPECT_EQ("Nut|8/ ", Clipboard::Get(form));
    EXPECT_EQ("", Notified(form));
    form.GoTo(2, F::name);
    EXPECT_FALSE(form.Press('V', {VK_CONTROL}));
    EXPECT_EQ("before 2,1 \nafter 2,1  Nut\nbefore 2,2 \nafter 2,2  8\n", Notified(form));
    EXPECT_EQ("Nut|8|||", Row(form, 2));
    EXPECT_TRUE(Can(form, L"Changed"));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after 2,1 Nut \nafter 2,2 8 \n", Notified(form));
    EXPECT_EQ("||||", Row(form, 2));
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ("after 2,1  Nut\nafter 2,2  8\n", Notified(form));
    EXPECT_EQ("2,1", form.Current());
    EXPECT_FALSE(form.Frame());
}

TEST(ComboGridClipboard, HasTheOldKeysAndTheNewOnes) {
    F form;
    const std::vector<std::pair<int, std::vector<int>>> copies{{'C', {VK_CONTROL}}, {VK_INSERT, {VK_CONTROL}}};
    const std::vector<std::pair<int, std::vector<int>>> pastes{{'V', {VK_CONTROL}}, {VK_INSERT, {VK_SHIFT}}};
    const std::vector<std::pair<int, std::vector<int>>> cuts{{'X', {VK_CONTROL}}, {VK_DELETE, {VK_SHIFT}}};
    const std::vector<std::pair<int, std::vector<int>>> redoes{{'Y', {VK_CONTROL}}, {'Z', {VK_CONTROL, VK_SHIFT}}};
    for (std::size_t i = 0; i < 2; ++i) {
        form.SetCell(1, F::name, u"Nut");
        form.SetCell(2, F::name, u"");
        form.GoTo(1, F::name);
        form.Press(copies[i].first, copies[i].second);
        EXPECT_EQ("Nut", Clipboard::Get(form));
        form.GoTo(2, F::name);
        form.Press(pastes[i].first, pastes[i].second);
        EXPECT_EQ(u"Nut", form.Cell(2, F::name));
        Clipboard::Put(form, u"other");
        form.Press(cuts[i].first, cuts[i].second);
        EXPECT_EQ(u"", form.Cell(2, F::name));
        EXPECT_EQ("Nut", Clipboard::Get(form));
        form.Press('Z', {VK_CONTROL});
        EXPECT_EQ(u"Nut", form.Cell(2, F::name));
        form.Press(redoes[i].first, redoes[i].second);
        EXPECT_EQ(u"", form.Cell(2, F::name));
        EXPECT_EQ(3, form.Number(L"Rows")) << "no row was inserted or deleted";
    }
}

TEST(ComboGridClipboard, PastedCellsAreCleanedAndRefusedAsTypedOnesAre) {
    F form({{L"AutoAddNew", Variant(true)}, {L"AutoRecordNumber", Variant(true)}});
    Clipboard::Put(form, u"a\"b\t3.75%\t12abc\t3-2024\tba\tno\tskip\tno\r\n\"two\r\nlines\"\t\t7\r\nlast\r\n");
    form.GoTo(2, F::name);
    form.Press('V', {VK_CONTROL});
    EXPECT_EQ("a\"b|375|12|Mar/2024|Banana", Row(form, 2));
    EXPECT_EQ(u"", form.Cell(2, F::locked));
    EXPECT_EQ(u"skip", form.Cell(2, F::skip));
    EXPECT_EQ(u"", form.Cell(2, F::key));
    EXPECT_EQ("two/ lines|0|7||", Row(form, 3));
    EXPECT_EQ(u"3", form.Cell(3, F::no));
    EXPECT_EQ(5, form.Number(L"Rows"));
    Notified(form);
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after -1,-1  \n", Notified(form)) << "rows have changed as a whole";
    EXPECT_EQ(3, form.Number(L"Rows"));
    EXPECT_EQ("||||", Row(form, 2));
    EXPECT_FALSE(Can(form, L"CanUndo"));
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ("last||||", Row(form, 4));
    EXPECT_EQ(u"4", form.Cell(4, F::no));
}

TEST(ComboGridClipboard, SelectAllTakesAllButTheFixedCells) {
    F form({{L"Rows", Variant(4)}});
    form.SetCell(3, F::name, u"end");
    form.GoTo(2, F::qty);
    form.Press('A', {VK_CONTROL});
    form.Press('C', {VK_CONTROL});
    EXPECT_EQ("|||||||/ |||||||/ end|||||||/ ", Clipboard::Get(form));
}

TEST(ComboGridClipboard, HostMayKeepTheKeysForItself) {
    F form;
    Clipboard::Put(form, u"x");
    form.GoTo(1, F::name);
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == DISPID_KEYDOWN && *arguments.rgvarg[1].piVal == 'V') *arguments.rgvarg[1].piVal = 0;
    };
    form.Press('V', {VK_CONTROL});
    EXPECT_EQ(u"", form.Cell(1, F::name));
    EXPECT_EQ("", Notified(form));
}

TEST(ComboGridClipboard, HostRefusesAPastedCellAndTakesOneBack) {
    F form;
    Clipboard::Put(form, u"x\t5\t7");
    form.GoTo(1, F::name);
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        const long col = arguments.cArgs == 5   ? arguments.rgvarg[3].lVal
                         : arguments.cArgs == 4 ? arguments.rgvarg[2].lVal
                                                : 0;
        if (id == grid_event::beforeCellChange && col == F::qty) Answer(arguments, true);
        if (id == grid_event::afterCellChange && col == F::rate) Answer(arguments, true);
    };
    Call(form.grid.get(), L"Paste");
    EXPECT_EQ("x||||", Row(form, 1));
    Call(form.grid.get(), L"Undo");
    EXPECT_EQ("||||", Row(form, 1));
    EXPECT_FALSE(Can(form, L"CanUndo"));
}

TEST(ComboGridUndo, EditsGoBackOneAfterTheOther) {
    F form;
    EXPECT_FALSE(Can(form, L"CanUndo"));
    form.GoTo(1, F::name);
    form.Type(L"ab");
    form.Press(VK_TAB);
    form.Type(L"8%");
    form.Press(VK_RETURN);
    form.Type(L"9");
    form.Press(VK_ESCAPE);
    Notified(form);
    EXPECT_TRUE(Can(form, L"CanUndo"));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after 1,2 8 \n", Notified(form)) << "the abandoned edit left no step";
    EXPECT_EQ("1,2", form.Current());
    EXPECT_TRUE(Can(form, L"CanRedo"));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after 1,1 ab \n", Notified(form));
    EXPECT_EQ("1,1", form.Current());
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("", Notified(form));
    Call(form.grid.get(), L"Redo");
    form.Press('Z', {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ("after 1,1  ab\nafter 1,2  8\n", Notified(form));
    EXPECT_FALSE(Can(form, L"CanRedo"));
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::afterCellChange) Answer(arguments, true);
    };
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ(u"", form.Cell(1, F::qty)) << "this cannot be cancelled";
}

TEST(ComboGridUndo, AnOpenEditorHasItsOwn) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"ab");
    form.Press(VK_RETURN);
    form.GoTo(2, F::name);
    form.Press(VK_F2);
    form.Type(L"xyz");
    form.Press('Z', {VK_CONTROL});
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ(u"ab", form.Cell(1, F::name)) << "the grid's history waits";
    EXPECT_TRUE(Can(form, L"CanUndo"));
    EXPECT_FALSE(Can(form, L"CanRedo"));
    Call(form.grid.get(), L"Undo");
    EXPECT_EQ(u"ab", form.Cell(1, F::name));
    form.Press(VK_ESCAPE);
    Call(form.grid.get(), L"Undo");
    EXPECT_EQ(u"", form.Cell(1, F::name));
}

TEST(ComboGridUndo, InsertedAndAppendedRowsGoAndComeBack) {
    F form({{L"AutoAddNew", Variant(true)}, {L"AutoRecordNumber", Variant(true)}});
    form.SetCell(1, F::name, u"first");
    form.GoTo(1, F::name);
    form.Press(VK_INSERT);
    EXPECT_EQ(u"first", form.Cell(2, F::name));
    Notified(form);
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after -1,-1  \n", Notified(form));
    EXPECT_EQ(u"first", form.Cell(1, F::name));
    EXPECT_EQ(u"2", form.Cell(2, F::no));
    EXPECT_EQ(3, form.Number(L"Rows"));
    form.GoTo(2, F::item);
    form.Press(VK_TAB);
    EXPECT_EQ(4, form.Number(L"Rows"));
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ(3, form.Number(L"Rows"));
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ(4, form.Number(L"Rows"));
    EXPECT_EQ(u"3", form.Cell(3, F::no));
}

TEST(ComboGridUndo, ADeletedRowComesBackAsItWas) {
    F form({{L"Rows", Variant(4)}, {L"AutoRecordNumber", Variant(true)}});
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    for (int row = 1; row <= 3; ++row) form.SetCell(row, F::name, Text(1, static_cast<char16_t>(u'a' + row)).c_str());
    Put(inner.get(), L"RowHeight", {Variant(2), Variant(600)});
    form.GoTo(1, F::qty);
    form.GoTo(1, F::name);
    const long current = *Call(inner.get(), L"CellForeColor").ToLong();
    Select(form, 2, F::name, 2, F::key);
    {
        const Person person([&] {
            if (const HWND box = WaitForBox()) ClickOn(ButtonOf(box, 1));
        });
        form.Press(VK_DELETE);
        WaitFor([] { return !FindBox(); }, 8000);
    }
    EXPECT_EQ("d||||", Row(form, 2));
    EXPECT_EQ(3, form.Number(L"Rows"));
    Notified(form);
    form.GoTo(1, F::qty);
    Notified(form);
    form.Press('Z', {VK_CONTROL});
    EXPECT_EQ("after -1,-1  \n", Notified(form));
    EXPECT_EQ("c||||", Row(form, 2));
    EXPECT_EQ("d||||", Row(form, 3));
    EXPECT_EQ(u"3", form.Cell(3, F::no));
    EXPECT_EQ(600, *Call(inner.get(), L"RowHeight", {Variant(2)}).ToLong());
    EXPECT_EQ("2,2", form.Current());
    EXPECT_EQ(current, *Call(inner.get(), L"CellForeColor").ToLong())
        << "the look of the current cell is at the new one";
    form.Press('Y', {VK_CONTROL});
    EXPECT_EQ("d||||", Row(form, 2));
}

TEST(ComboGridUndo, RowsThatTheHostMovesBeginItAnew) {
    using Act = std::function<void(IDispatch*, IDispatch*)>;  // on the control or on its inner grid
    const struct {
        const char* what;
        Act run;
        bool remembered = false;
    } acts[] = {
        {"AddItem", [](IDispatch* g, IDispatch*) { Call(g, L"AddItem", {Variant(u"9\tz")}); }},
        {"AddItem above",
         [](IDispatch* g, IDispatch*) {
             Call(g, L"AddItem", {Variant(u"9\tz"), Variant(1)});
         }},
        {"Clear", [](IDispatch* g, IDispatch*) { Call(g, L"Clear"); }},
        {"Rows", [](IDispatch* g, IDispatch*) { Put(g, L"Rows", {Variant(9)}); }},
        {"Cols", [](IDispatch* g, IDispatch*) { Put(g, L"Cols", {Variant(12)}); }},
        {"FixedRows", [](IDispatch* g, IDispatch*) { Put(g, L"FixedRows", {Variant(0)}); }},
        {"FixedCols", [](IDispatch* g, IDispatch*) { Put(g, L"FixedCols", {Variant(0)}); }},
        {"FormatString", [](IDispatch* g, IDispatch*) { Put(g, L"FormatString", {Variant(u"A|B")}); }},
        {"RemoveAllRecords", [](IDispatch* g, IDispatch*) { Call(g, L"RemoveAllRecords"); }},
        {"inner AddItem", [](IDispatch*, IDispatch* i) { Call(i, L"AddItem", {Variant(u"9\tz")}); }},
        {"inner Clear", [](IDispatch*, IDispatch* i) { Call(i, L"Clear"); }},
        {"inner ColPosition",
         [](IDispatch*, IDispatch* i) {
             Put(i, L"ColPosition", {Variant(1), Variant(2)});
         }},
        // Neither moves a row: one has a single row to look at, one is the cells' texts.
        {"inner RowPosition",
         [](IDispatch*, IDispatch* i) {
             Put(i, L"RowPosition", {Variant(1), Variant(1)});
         },
         true},
        {"ClearRow", [](IDispatch* g, IDispatch*) { Call(g, L"ClearRow", {Variant(1)}); }, true},
        {"SetCell",
         [](IDispatch* g, IDispatch*) {
             Call(g, L"SetCell", {Variant(1), Variant(2), Variant(7)});
         },
         true},
        {"RemoveEmptyRows", [](IDispatch* g, IDispatch*) { Call(g, L"RemoveEmptyRows"); }, true},
    };
    F form;
    const auto inner = Call(form.grid.get(), L"Grid").ToObject<IDispatch>();
    // A grid with one row for records, where some have nothing to move.
    for (const auto& act : acts) {
        SCOPED_TRACE(act.what);
        for (const wchar_t* count : {L"FixedRows", L"FixedCols"}) Put(form.grid.get(), count, {Variant(1)});
        Put(form.grid.get(), L"Rows", {Variant(2)});
        Call(form.grid.get(), L"ClearRow", {Variant(1)});
        form.GoTo(1, F::rate);
        form.Type(L"7");
        form.Press(VK_RETURN);
        ASSERT_TRUE(Can(form, L"CanUndo"));
        act.run(form.grid.get(), inner.get());
        EXPECT_EQ(act.remembered, Can(form, L"CanUndo"));
        const Text cell = form.Cell(1, F::rate);
        form.GoTo(1, F::rate);
        form.Press('Z', {VK_CONTROL});
        EXPECT_EQ(act.remembered ? Text() : cell, form.Cell(1, F::rate));
    }
}

TEST(ComboGridClipboard, AHeldClipboardIsAClearErrorAndKeysJustBeep) {
    F form;
    form.SetCell(1, F::name, u"Nut");
    form.GoTo(1, F::name);
    {
        const Clipboard held(form.container.Window());
        for (const wchar_t* method : {L"Copy", L"Cut", L"Paste"}) {
            const auto refused = Invoke(form.grid.get(), method, DISPATCH_METHOD);
            EXPECT_EQ(static_cast<HRESULT>(0x800A0000 + 521), refused.scode) << Narrow(FromWide(method));
        }
        form.Press('X', {VK_CONTROL});
        EXPECT_EQ(u"Nut", form.Cell(1, F::name)) << "what was not copied is not cut";
    }
    Call(form.grid.get(), L"Copy");
    EXPECT_EQ("Nut", Clipboard::Get(form));
}

// Handlers that do what they like while cells are pasted and steps undone.
TEST(ComboGridClipboard, HandlersMayDoAnything) {
    using Act = std::function<void(F&)>;
    const std::pair<const char*, Act> acts[] = {
        {"Rows", [](F& form) { Put(form.grid.get(), L"Rows", {Variant(1)}); }},
        {"Cols", [](F& form) { Put(form.grid.get(), L"Cols", {Variant(2)}); }},
        {"RemoveItem", [](F& form) { Invoke(form.grid.get(), L"RemoveItem", DISPATCH_METHOD, {Variant(1).get()}); }},
        {"Clear", [](F& form) { Call(form.grid.get(), L"Clear"); }},
        {"Undo", [](F& form) { Call(form.grid.get(), L"Undo"); }},
        {"Redo", [](F& form) { Call(form.grid.get(), L"Redo"); }},
        {"InPlaceDeactivate", [](F& form) { Query<IOleInPlaceObject>(form.container.Control())->InPlaceDeactivate(); }},
        {"window", [](F& form) { DestroyWindow(form.container.ControlWindow()); }},
        {"Close", [](F& form) { form.grid.reset(), form.container.Close(); }},
    };
    for (const auto& [title, act] : acts) {
        for (const DISPID when :
             {grid_event::beforeCellChange, grid_event::afterCellChange, -grid_event::afterCellChange}) {
            SCOPED_TRACE(title + std::string(" ") + std::to_string(when));
            F form({{L"Rows", Variant(5)}});
            Clipboard::Put(form, u"a\t1\r\nb\t2\r\nc\t3\r\n");
            form.GoTo(2, F::name);
            const auto grid = form.grid;
            int calls = 0;
            const auto meddle = [&, act = act](DISPID id, DISPPARAMS&) {
                if (id == std::abs(when) && ++calls == 2) act(form);
            };
            if (when > 0) form.events->onEvent = meddle;
            Call(grid.get(), L"Paste");
            form.events->onEvent = meddle;
            if (when < 0) Call(grid.get(), L"Undo");
            EXPECT_GE(calls, 2);
            form.events->onEvent = nullptr;
            form.Pump();
        }
    }
}

}  // namespace
}  // namespace qvx::test
