// What a screen reader gets to know of a form's grid: by walking its objects, and by the events that it is sent.
#include <windows.h>

#include <gtest/gtest.h>
#include <oleacc.h>

#include <functional>
#include <map>

#include "Qvx.h"
#include "tests/control/combogrid_form.h"
#include "tests/control/textedit_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

VARIANT Child(long number) {
    VARIANT child;
    child.vt = VT_I4;
    child.lVal = number;
    return child;
}

// One object, read as a screen reader does.
class Spoken {
  public:
    Spoken() = default;
    explicit Spoken(ComPtr<IAccessible> object) : object_(std::move(object)) {}
    static Spoken Of(HWND window) {
        ComPtr<IAccessible> object;
        EXPECT_EQ(S_OK, AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                                   object.put_void()));
        return Spoken(object);
    }

    IAccessible* operator->() const { return object_.get(); }
    explicit operator bool() const { return static_cast<bool>(object_); }
    std::string Name() const { return Said(&IAccessible::get_accName); }
    std::string Value() const { return Said(&IAccessible::get_accValue); }
    std::string Description() const { return Said(&IAccessible::get_accDescription); }
    std::string Action() const { return Said(&IAccessible::get_accDefaultAction); }
    std::string Shortcut() const { return Said(&IAccessible::get_accKeyboardShortcut); }
    long Role() const { return Number(&IAccessible::get_accRole); }
    long State() const { return Number(&IAccessible::get_accState); }
    // Whether it reports that what it described is gone.
    bool Gone() const {
        Bstr text;
        return object_->get_accName(Child(0), text.put()) == CO_E_OBJNOTCONNECTED;
    }
    long Count() const {
        long count = -1;
        EXPECT_EQ(S_OK, object_->get_accChildCount(&count));
        return count;
    }
    Spoken At(long number) const {
        ComPtr<IDispatch> child;
        object_->get_accChild(Child(number), child.put());
        return Spoken(child.As<IAccessible>());
    }
    RECT Place() const {
        long left = 0;
        long top = 0;
        long width = 0;
        long height = 0;
        EXPECT_EQ(S_OK, object_->accLocation(&left, &top, &width, &height, Child(0)));
        return {left, top, left + width, top + height};
    }
    Spoken Parent() const {
        ComPtr<IDispatch> parent;
        EXPECT_EQ(S_OK, object_->get_accParent(parent.put()));
        return Spoken(parent.As<IAccessible>());
    }
    // What a VARIANT out argument leads to.
    Spoken Found(const std::function<HRESULT(VARIANT*)>& ask) const {
        Variant found;
        if (ask(found.put()) != S_OK) return {};
        if (found.Type() == VT_I4) return found.ToLong() == 0 ? *this : At(*found.ToLong());
        return Spoken(found.ToObject<IAccessible>());
    }
    Spoken Focus() const {
        return Found([this](VARIANT* out) { return object_->get_accFocus(out); });
    }
    Spoken Step(long direction) const {
        return Found([&](VARIANT* out) { return object_->accNavigate(direction, Child(0), out); });
    }

  private:
    std::string Said(HRESULT (STDMETHODCALLTYPE IAccessible::*ask)(VARIANT, BSTR*)) const {
        Bstr text;
        const HRESULT result = (object_.get()->*ask)(Child(0), text.put());
        EXPECT_TRUE(SUCCEEDED(result)) << std::hex << result;
        return Narrow(text.View());
    }
    long Number(HRESULT (STDMETHODCALLTYPE IAccessible::*ask)(VARIANT, VARIANT*)) const {
        Variant number;
        EXPECT_EQ(S_OK, (object_.get()->*ask)(Child(0), number.put()));
        return number.ToLong().value_or(-1);
    }

    ComPtr<IAccessible> object_;
};

Spoken CellOf(const F& form, int row, int col) { return Spoken::Of(form.InnerGrid()).At(row + 1).At(col + 1); }

// The last object that a screen reader meets under a point of the screen.
Spoken ObjectAt(POINT point) {
    Spoken object = Spoken::Of(WindowFromPoint(point));
    for (int depth = 0; depth < 5; ++depth) {
        Variant found;
        if (!object || object->accHitTest(point.x, point.y, found.put()) != S_OK || found.Type() != VT_DISPATCH) break;
        object = Spoken(found.ToObject<IAccessible>());
    }
    return object;
}

// ---- The walk ------------------------------------------------------------------------------------------------------

TEST(Accessibility, ScreenReaderNamesGridHeadersAndCurrentCellBeforeAndAfterAnEdit) {
    F form;
    EXPECT_EQ("Grid", Spoken::Of(form.InnerGrid()).Name());
    const HWND label = CreateWindowW(L"STATIC", L"&Orders", WS_CHILD | WS_VISIBLE, 300, 300, 80, 20,
                                     form.container.Window(), nullptr, nullptr, nullptr);
    SetWindowPos(label, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    form.SetCell(1, F::qty, u"7");
    form.GoTo(1, F::qty);
    const Spoken grid = Spoken::Of(form.InnerGrid());
    EXPECT_EQ("Orders", grid.Name());
    EXPECT_EQ(ROLE_SYSTEM_TABLE, grid.Role());
    std::string headers;
    for (long number = 1; number <= grid.At(1).Count(); ++number) {
        const Spoken header = grid.At(1).At(number);
        EXPECT_EQ(ROLE_SYSTEM_COLUMNHEADER, header.Role());
        headers += header.Name() + " ";
    }
    EXPECT_EQ("No Name Qty Rate Month Item Locked Skip Key ", headers);
    const Spoken cell = grid.Focus();
    ASSERT_TRUE(cell);
    EXPECT_EQ("Qty, Row 1", cell.Name());
    EXPECT_EQ("7", cell.Value());
    EXPECT_EQ(ROLE_SYSTEM_CELL, cell.Role());
    EXPECT_EQ(STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE,
              cell.State());
    EXPECT_EQ("Orders", cell.Parent().Parent().Name());

    form.Type(L"15%");
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ("15%", cell.Value()) << "the text lives in the editor";
    EXPECT_FALSE(grid.Focus()) << "so does the focus";
    const Spoken editor = Spoken::Of(GetFocus());
    EXPECT_EQ("Qty", editor.Name());
    EXPECT_EQ("15%", editor.Value());
    EXPECT_EQ(ROLE_SYSTEM_TEXT, editor.Role());
    form.Press(VK_RETURN);
    EXPECT_EQ("15", cell.Value());
    EXPECT_EQ("Rate, Row 1", grid.Focus().Name());
}

TEST(Accessibility, EditorAndItsListAreCalledByTheColumn) {
    F form;
    form.GoTo(1, F::item);
    form.Type(L"ch");
    ASSERT_TRUE(form.Frame());
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    ASSERT_TRUE(GetComboBoxInfo(GetParent(GetFocus()), &parts));
    for (const HWND part : {GetFocus(), parts.hwndList, parts.hwndCombo}) EXPECT_EQ("Item", Spoken::Of(part).Name());
    for (const HWND part : {GetFocus(), parts.hwndList}) EXPECT_EQ("Cherry", Spoken::Of(part).Value());
    EXPECT_EQ(ROLE_SYSTEM_LIST, Spoken::Of(parts.hwndList).Role());
}

TEST(Accessibility, CellsLieWhereTheyAreFoundAgain) {
    F form;
    Put(form.grid.get(), L"Rows", {Variant(40)});
    Put(form.Inner().get(), L"TopRow", {Variant(20)});
    form.Pump();
    const Spoken cell = CellOf(form, 21, F::item);
    const RECT place = cell.Place();
    const POINT corner = form.At(21, F::item, 0, 0);
    EXPECT_TRUE(corner.x == place.left && corner.y == place.top);
    const Spoken found = ObjectAt({place.left + 2, place.top + 2});
    ASSERT_TRUE(found);
    EXPECT_EQ(cell.Name(), found.Name());
    EXPECT_EQ("Month, Row 21", cell.Step(NAVDIR_LEFT).Name());
}

TEST(Accessibility, AMillionRowsCostNothingUntilTheyAreAskedFor) {
    F form;
    Put(form.grid.get(), L"Rows", {Variant(1'000'001)});
    const Spoken grid = Spoken::Of(form.InnerGrid());
    EXPECT_EQ("Row 1000000", grid.Step(NAVDIR_LASTCHILD).Name());
    Put(form.grid.get(), L"Row", {Variant(1)});
    Put(form.grid.get(), L"Col", {Variant(1)});
    Put(form.Inner().get(), L"RowSel", {Variant(1'000'000)});
    Variant selection;
    ASSERT_EQ(S_OK, grid->get_accSelection(selection.put()));
    const auto all = selection.ToObject<IEnumVARIANT>();
    ASSERT_TRUE(all);
    EXPECT_EQ(S_OK, all->Skip(999'998));
    Variant items[3];
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, all->Next(3, items[0].ptr(), &fetched));
    ASSERT_EQ(2u, fetched);
    EXPECT_EQ("Name, Row 1000000", Spoken(items[1].ToObject<IAccessible>()).Name());
}

// ---- What it may do ------------------------------------------------------------------------------------------------

TEST(Accessibility, AssistiveProgramsEditByTheRulesOfTheGrid) {
    F form;
    form.SetCell(2, F::qty, u"4");
    form.GoTo(1, F::name);
    const Spoken cell = CellOf(form, 2, F::qty);
    EXPECT_EQ("Edit", cell.Action());
    EXPECT_EQ(STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE, cell.State());
    EXPECT_EQ(S_OK, cell->accDoDefaultAction(Child(0)));
    form.Pump();
    EXPECT_TRUE(form.Frame());
    EXPECT_EQ("2,2", form.Current());
    EXPECT_EQ("Qty", Spoken::Of(GetFocus()).Name());
    form.Press(VK_ESCAPE);
    form.Log();
    // A text comes as if typed: cleaned, and told of.
    EXPECT_EQ(S_OK, cell->put_accValue(Child(0), Bstr(u"3.75").get()));
    EXPECT_EQ(u"375", form.Cell(2, F::qty));
    EXPECT_EQ("1(2, 2, 4, False)\n2(2, 2, 4, 375, False)\n", form.Log());
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ("375", cell.Value());
    const Spoken locked = CellOf(form, 2, F::locked);
    EXPECT_EQ("", locked.Action());
    EXPECT_TRUE(locked.State() & STATE_SYSTEM_READONLY);
    EXPECT_TRUE(FAILED(locked->put_accValue(Child(0), Bstr(u"x").get())));
    EXPECT_TRUE(FAILED(locked->accDoDefaultAction(Child(0))));
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == grid_event::beforeCellChange) Answer(arguments, true);
    };
    EXPECT_TRUE(FAILED(cell->put_accValue(Child(0), Bstr(u"1").get()))) << "refused by the host";
    EXPECT_EQ(u"375", form.Cell(2, F::qty));
    EXPECT_EQ(u"", form.Cell(2, F::locked));
    Put(form.Inner().get(), L"Enabled", {Variant(false)});
    EXPECT_EQ("", cell.Action());
}

TEST(Accessibility, SelectingMovesTheCursorAndEndsAnEdit) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"ann");
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ(S_OK, CellOf(form, 2, F::rate)->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(0)));
    EXPECT_EQ("2,3", form.Current());
    EXPECT_EQ(u"ann", form.Cell(1, F::name));
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    EXPECT_EQ(S_OK, CellOf(form, 1, F::qty)->accSelect(SELFLAG_EXTENDSELECTION, Child(0)));
    EXPECT_EQ(2, Call(form.Inner().get(), L"ColSel").ToLong());
    EXPECT_EQ(3, form.Number(L"Col"));
    EXPECT_EQ(E_INVALIDARG, CellOf(form, 1, F::qty)->accSelect(SELFLAG_ADDSELECTION, Child(0)));
}

TEST(Accessibility, ScriptsCallByName) {
    F form;
    form.SetCell(1, F::name, u"ann");
    ComPtr<IDispatch> grid;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(form.InnerGrid(), static_cast<DWORD>(OBJID_CLIENT), __uuidof(IDispatch),
                                               grid.put_void()));
    // Cells by their negative numbers.
    const long cell = -1 - (1 * 9 + F::name);
    EXPECT_EQ(u"ann", Call(grid.get(), L"accValue", {Variant(cell)}).ToText());
}

// ---- Objects that outlive what they tell of ------------------------------------------------------------------------

TEST(Accessibility, ObjectsOutliveRowsAndTheControl) {
    std::vector<Spoken> kept;
    {
        F form;
        Put(form.grid.get(), L"Rows", {Variant(5)});
        form.GoTo(1, F::name);
        form.Type(L"x");
        kept = {Spoken::Of(form.InnerGrid()), Spoken::Of(form.InnerGrid()).At(5), CellOf(form, 4, F::name),
                CellOf(form, 1, F::name), Spoken::Of(GetFocus())};
        form.Press(VK_RETURN);
        Put(form.grid.get(), L"Rows", {Variant(3)});
        EXPECT_TRUE(kept[1].Gone() && kept[2].Gone());
        EXPECT_EQ("Name, Row 1", kept[3].Name());
        Put(form.grid.get(), L"Rows", {Variant(5)});
        EXPECT_EQ("Row 4", kept[1].Name()) << "there is a fourth row again";
        form.container.Close();
    }
    for (const Spoken& object : kept) {
        Variant value;
        ComPtr<IDispatch> other;
        long number[4]{};
        // The system's own object, behind the last one, may still say something.
        const bool systems = &object == &kept.back();
        EXPECT_TRUE(systems || object.Gone());
        for (const HRESULT result :
             {object->get_accRole(Child(0), value.ptr()), object->get_accState(Child(0), value.ptr()),
              object->accLocation(&number[0], &number[1], &number[2], &number[3], Child(0))})
            EXPECT_TRUE(systems || result == CO_E_OBJNOTCONNECTED) << std::hex << result;
        object->get_accParent(other.put());
        object->get_accChildCount(&number[0]);
        object->accDoDefaultAction(Child(0));
        object->accSelect(SELFLAG_TAKEFOCUS, Child(0));
        object->put_accValue(Child(0), Bstr(u"x").get());
    }
}

TEST(Accessibility, HandlersMayTakeTheGridAwayFromUnderAnAction) {
    using Action = HRESULT (*)(const Spoken&);
    constexpr Action edit = [](const Spoken& cell) { return cell->accDoDefaultAction(Child(0)); };
    constexpr Action write = [](const Spoken& cell) { return cell->put_accValue(Child(0), Bstr(u"9").get()); };
    constexpr Action select = [](const Spoken& cell) { return cell->accSelect(SELFLAG_TAKEFOCUS, Child(0)); };
    for (const DISPID at :
         {grid_event::leaveCell, grid_event::enterCell, grid_event::beforeCellChange, grid_event::afterCellChange}) {
        for (const Action action : {edit, write, select}) {
            for (const bool close : {true, false}) {
                F form;
                form.GoTo(1, F::name);
                form.Type(L"a");
                const Spoken cell = CellOf(form, 2, F::qty);
                form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
                    if (id != at) return;
                    form.events->onEvent = nullptr;
                    if (close)
                        form.container.Close();
                    else
                        Put(form.grid.get(), L"Rows", {Variant(1)});
                };
                action(cell);
                form.Pump();
                form.grid.reset();
                form.container.Close();
                EXPECT_TRUE(cell.Gone());
            }
        }
    }
}

// ---- Events --------------------------------------------------------------------------------------------------------

// What the grid's window tells, as names of the objects that are told of.
class Listener {
  public:
    explicit Listener(const F& form) : Listener(form.InnerGrid()) {}
    explicit Listener(HWND window) : window_(window) {
        current = this;
        hook_ = SetWinEventHook(EVENT_OBJECT_REORDER, EVENT_OBJECT_VALUECHANGE, nullptr, &Listener::Heard,
                                GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
        EXPECT_TRUE(hook_);
    }
    ~Listener() {
        UnhookWinEvent(hook_);
        current = nullptr;
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    // Since the last call. The system's own events about the window as a whole are left out.
    std::string Take() {
        Pump();
        static const std::map<DWORD, const char*> kinds{
            {EVENT_OBJECT_REORDER, "reorder"},        {EVENT_OBJECT_FOCUS, "focus"},
            {EVENT_OBJECT_SELECTION, "selection"},    {EVENT_OBJECT_VALUECHANGE, "value"},
            {EVENT_OBJECT_SELECTIONWITHIN, "within"}, {EVENT_OBJECT_NAMECHANGE, "name"}};
        std::string log;
        for (const auto& [event, child] : std::exchange(events_, {})) {
            const auto kind = kinds.find(event);
            if (kind == kinds.end() || (event == EVENT_OBJECT_FOCUS && child == 0)) continue;
            const Spoken object = child != 0 ? Spoken::Of(window_).At(child) : Spoken();
            log += kind->second + (object ? " [" + object.Name() + "] " + object.Value() : "") + "\n";
        }
        return log;
    }

  private:
    static void CALLBACK Heard(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG child, DWORD, DWORD) {
        if (current && window == current->window_ && object == OBJID_CLIENT)
            current->events_.emplace_back(event, child);
    }

    static Listener* current;
    HWND window_;
    HWINEVENTHOOK hook_;
    std::vector<std::pair<DWORD, LONG>> events_;
};
Listener* Listener::current = nullptr;

TEST(Accessibility, EventsFollowTheCursorAndEntries) {
    F form;
    form.GoTo(1, F::name);
    Listener heard(form);
    heard.Take();
    form.Press(VK_TAB);
    EXPECT_EQ("focus [Qty, Row 1] \nselection [Qty, Row 1] \n", heard.Take());
    form.Type(L"8%");
    EXPECT_EQ("", heard.Take()) << "typing is the editor's to tell of";
    form.Press(VK_RETURN);
    EXPECT_EQ("focus [Rate, Row 1] \nselection [Rate, Row 1] \nvalue [Qty, Row 1] 8\n", heard.Take());
    form.Press(VK_DOWN, {VK_SHIFT});
    EXPECT_EQ("within\n", heard.Take());
    form.SetCell(0, F::qty, u"Pieces");
    EXPECT_EQ("name [Pieces] \n", heard.Take()) << "a header's text is its name";
    SetFocus(form.container.Window());
    heard.Take();
    SetFocus(form.InnerGrid());
    EXPECT_EQ("focus [Rate, Row 1] \n", heard.Take());
    for (int i = 0; i < 2000; ++i) Call(form.grid.get(), L"AddItem", {Variant(u"\tann\t1")});
    EXPECT_EQ("reorder\n", heard.Take()) << "a burst of rows is one event";
}

TEST(Accessibility, FieldsOfTheFilterAreNamedAfterTheirColumns) {
    F form{{{L"FilterRow", Variant(true)}}};
    form.GoTo(1, F::name);
    form.Press('L', {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ("Filter Name", Spoken::Of(GetFocus()).Name());
    form.Press(VK_TAB);
    EXPECT_EQ("Filter Qty", Spoken::Of(GetFocus()).Name());
}

TEST(Accessibility, TheFindBarNamesItsFieldsAndTellsOfTheNumberOfHits) {
    F form{{{L"FindBar", Variant(true)}}};
    form.Fill({{u"ann"}, {u"anne"}});
    form.GoTo(1, F::name);
    form.Press('H', {VK_CONTROL});
    const HWND bar = FindWindowExW(form.container.ControlWindow(), nullptr, L"QvxFindBar", nullptr);
    std::string names;
    for (int id = 1; id <= 13; ++id) names += Spoken::Of(GetDlgItem(bar, id)).Name() + "|";
    EXPECT_EQ(
        "Find|Find what|Previous|Next|Match case|Whole cell|This column||Replace|Replace with|Replace|"
        "Replace all|Close|",
        names);
    const HWND hits = GetDlgItem(bar, 8);
    Listener heard(hits);
    form.Type(L"ann");
    EXPECT_EQ("name\n", heard.Take());
    EXPECT_EQ("1 of 2", Spoken::Of(hits).Name());
}

// ---- Buttons -------------------------------------------------------------------------------------------------------

TEST(Accessibility, TextBoxesSayNameAndTextButNoPassword) {
    TextEditForm form;
    form.Set(L"Text", Variant(u"12"));
    form.Focus();
    const Spoken box = Spoken::Of(form.Edit());
    EXPECT_EQ(box.Name(), "TextEdit1");
    EXPECT_EQ(box.Role(), ROLE_SYSTEM_TEXT);
    EXPECT_EQ(box.Value(), "12");
    form.Type("3");
    EXPECT_EQ(box.Value(), "3");
    Put(form.Inner().get(), L"PasswordChar", {Variant(u"*")});
    Bstr value;
    box->get_accValue(Child(0), value.put());
    EXPECT_EQ(value.View(), u"");
}

TEST(Accessibility, CellsThatTheHostRefusesAreMarkedAndDescribed) {
    F form({{L"ValidateColumns", Variant(u";Name;")}});
    form.Fill({{u"a", u"1"}, {u"b", u"2"}, {u"c", u"3"}});
    Text refused = u"b";
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id == 24 && FromBstr(arguments.rgvarg[1].bstrVal) == refused)
            SysReAllocString(arguments.rgvarg[0].pbstrVal, L"Not on stock.");
    };
    const auto description = [&](int row) {
        form.Pump();
        return CellOf(form, row, F::name).Description();
    };
    form.Log();
    EXPECT_EQ("", description(2)) << "no marks, no questions";
    EXPECT_EQ("", form.Log());
    Put(form.grid.get(), L"MarkInvalid", {Variant(true)});
    EXPECT_EQ("Not on stock.", description(2));
    EXPECT_EQ("", description(3));
    EXPECT_EQ("24(1, 1, a, )\n24(2, 1, b, )\n24(3, 1, c, )\n", form.Log());
    form.Enter(2, F::name, L"d");
    EXPECT_EQ("", description(2));
    refused = u"c";
    form.GoTo(1, F::name);
    Put(form.grid.get(), L"ValidateColumns", {Variant(u";Name;Qty;")});
    form.Press(VK_F8);
    EXPECT_EQ("3,1", form.Current());
}

TEST(Accessibility, ButtonsAreNamedAndPressed) {
    Container container(HostInMode(true));
    container.Place(ServerUnderTest::Get().Create(CLSID_Button));
    auto button = container.Automation();
    Put(button.get(), L"Caption", {Variant(u"&Save")});
    const auto recorder = MakeObject<EventRecorder>();
    Connection connection(container.Control(), EventsOf(container.Control()), recorder.get());
    container.Activate();
    const Spoken spoken = Spoken::Of(container.ControlWindow());
    EXPECT_EQ("Save", spoken.Name());
    EXPECT_EQ(ROLE_SYSTEM_PUSHBUTTON, spoken.Role());
    EXPECT_EQ("Alt+S", spoken.Shortcut());
    RECT window = AreaOf(container.ControlWindow());
    const RECT place = spoken.Place();
    EXPECT_TRUE(EqualRect(&window, &place));
    EXPECT_EQ("Save", ObjectAt({place.left + 3, place.top + 3}).Name());
    EXPECT_EQ(S_OK, spoken->accDoDefaultAction(Child(0)));
    EXPECT_EQ(0u, recorder->Count(DISPID_CLICK)) << "the client has its answer first";
    Pump();
    EXPECT_EQ(1u, recorder->Count(DISPID_CLICK));
    Put(button.get(), L"Enabled", {Variant(false)});
    EXPECT_EQ(STATE_SYSTEM_UNAVAILABLE, spoken.State());
    EXPECT_TRUE(FAILED(spoken->accDoDefaultAction(Child(0))));
    connection.Disconnect();
    button.reset();
    container.Close();
    EXPECT_TRUE(spoken.Gone());
}

}  // namespace
}  // namespace qvx::test
