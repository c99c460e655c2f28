#include "tests/control/combogrid_form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Qvx.h"
#include "com/wide_text.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"
#include "win/dpi.h"

namespace qvx::test {
namespace {

Container::Options OptionsFor(bool userMode, const ComboGridForm& form) {
    Container::Options options;
    options.usesKey = [&form](const MSG& message, DWORD modifiers) {
        return form.usesKey && form.usesKey(message, modifiers);
    };
    options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(userMode));
    options.bounds = {0, 0, 480, 300};
    return options;
}

// Events that the inner grid's are passed on as; they would drown the others.
bool PassedOn(DISPID event) {
    constexpr DISPID passedOn[] = {DISPID_CLICK,          DISPID_DBLCLICK,   DISPID_KEYPRESS, DISPID_KEYUP,
                                   DISPID_MOUSEDOWN,      DISPID_MOUSEMOVE,  DISPID_MOUSEUP,  grid_event::rowColChange,
                                   grid_event::selChange, grid_event::scroll};
    return std::find(std::begin(passedOn), std::end(passedOn), event) != std::end(passedOn);
}

}  // namespace

int ErrorOf(IDispatch* object, const wchar_t* member, WORD flags, const std::vector<Variant>& arguments) {
    std::vector<VARIANT> raw;
    for (const Variant& argument : arguments) raw.push_back(argument.get());
    return Invoke(object, member, flags, raw).scode & 0xFFFF;
}

void Answer(DISPPARAMS& arguments, bool value) {
    // Arguments come from right to left.
    VARIANT& last = arguments.rgvarg[0];
    ASSERT_EQ(VT_BYREF | VT_BOOL, last.vt);
    *last.pboolVal = ToVariantBool(value);
}

ComboGridForm::ComboGridForm(const std::vector<std::pair<std::wstring, Variant>>& changes, bool userMode)
    : container(OptionsFor(userMode, *this)), events(MakeObject<EventRecorder>()) {
    const auto bag = MakeObject<MemoryBag>();
    bag->Set(L"Cols", Variant(9));
    bag->Set(L"FormatString", Variant(u"No|Name|Qty|Rate|Month|Item|Locked|Skip|Key"));
    bag->Set(L"TextArray0", Variant(u"No"));
    bag->Set(L"ColWidth0", Variant(600));
    bag->Set(L"ColumnsDataType", Variant(u";Qty-0;Rate-1;Month-2;"));
    bag->Set(L"DateFormat", Variant(u"mmm/yyyy"));
    bag->Set(L"ListColumns", Variant(u";Item;"));
    bag->Set(L"UnChangableColumns", Variant(u";Item;"));
    bag->Set(L"InActiveColumns", Variant(u";Locked;"));
    bag->Set(L"NonFocusColumns", Variant(u";Skip;"));
    bag->Set(L"InVisibleColumns", Variant(u";Key;"));
    for (const auto& [property, value] : changes) bag->Set(property, value);
    container.Place(ServerUnderTest::Get().Create(CLSID_ComboGrid),
                    [&](IUnknown* control) { EXPECT_EQ(S_OK, LoadFromBag(control, bag.get())); });
    grid = container.Automation();
    connection = new Connection(container.Control(), DIID___ComboGrid, events.get());
    if (!userMode) return;
    if (Number(L"Cols") > item) {
        for (int col = name; col <= skip; ++col)
            Put(grid.get(), L"ColWidth", {Variant(col), Variant(col == locked || col == skip ? 300 : 720)});
        for (const char16_t* entry : {u"Apple", u"Banana", u"Cherry"})
            Call(List(item).get(), L"AddItem", {Variant(entry)});
    }
    container.Activate();
    SetForegroundWindow(container.Window());
    WaitFor([&] { return GetForegroundWindow() == container.Window(); }, 2000);
    container.ActivateUi();
    Pump();
    Log();
}

ComboGridForm::~ComboGridForm() {
    grid.reset();
    delete connection;
}

void ComboGridForm::Pump() {
    const auto active = Query<IOleInPlaceActiveObject>(container.Control());
    MSG message;
    for (int round = 0; round < 3; ++round) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            const bool typed = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
            if (typed && active && asksForKeys) {
                if (active->TranslateAccelerator(&message) == S_OK) continue;
                if (message.message == WM_KEYDOWN) {
                    leftToContainer_ = true;
                    if (!deliversKeysLeft) continue;
                }
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(1);
    }
}

void ComboGridForm::Send(int virtualKey, bool down) {
    keybd_event(static_cast<BYTE>(virtualKey), static_cast<BYTE>(MapVirtualKeyW(static_cast<UINT>(virtualKey), 0)),
                down ? 0 : KEYEVENTF_KEYUP, 0);
    Pump();
}

bool ComboGridForm::Press(int virtualKey, const std::vector<int>& held) {
    leftToContainer_ = false;
    for (int modifier : held) Send(modifier, true);
    leftToContainer_ = false;
    Send(virtualKey, true);
    Send(virtualKey, false);
    for (int modifier : held) Send(modifier, false);
    return leftToContainer_;
}

void ComboGridForm::Type(const std::wstring& text) {
    for (wchar_t character : text) {
        const SHORT scan = VkKeyScanW(character);
        ASSERT_NE(-1, scan) << "no key for character " << static_cast<int>(character);
        std::vector<int> held;
        if (HIBYTE(scan) & 1) held.push_back(VK_SHIFT);
        Press(LOBYTE(scan), held);
    }
}

void ComboGridForm::GoTo(int row, int col) {
    Put(grid.get(), L"Row", {Variant(row)});
    Put(grid.get(), L"Col", {Variant(col)});
    SetFocus(InnerGrid());
    Pump();
    Log();
}

void ComboGridForm::Enter(int row, int col, const std::wstring& text) {
    GoTo(row, col);
    Type(text);
    Press(VK_RETURN);
}

POINT ComboGridForm::At(int row, int col, int right, int down) const {
    const RECT outer = AreaOf(InnerGrid());
    return {outer.left + Pixels(L"ColPos", {Variant(col)}) + right,
            outer.top + Pixels(L"RowPos", {Variant(row)}) + down};
}

void ComboGridForm::Click(int row, int col, bool twice, int pixelsIn) {
    MoveMouseTo(At(row, col, pixelsIn, pixelsIn));
    for (int press = 0; press < (twice ? 2 : 1); ++press) {
        LeftButton(true);
        LeftButton(false);
    }
    Pump();
}

Text ComboGridForm::Cell(int row, int col) const {
    return *Call(grid.get(), L"TextMatrix", {Variant(row), Variant(col)}).ToText();
}

void ComboGridForm::SetCell(int row, int col, const char16_t* text) {
    Put(grid.get(), L"TextMatrix", {Variant(row), Variant(col), Variant(text)});
}

void ComboGridForm::Fill(const std::vector<std::vector<const char16_t*>>& rows) {
    Put(grid.get(), L"Rows", {Variant(static_cast<long>(rows.size()) + 1)});
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t col = 0; col < rows[row].size(); ++col)
            SetCell(static_cast<int>(row) + 1, name + static_cast<int>(col), rows[row][col]);
}

std::string ComboGridForm::Column(int col) const {
    std::string cells;
    for (long row = 1; row < Number(L"Rows"); ++row) {
        cells += Narrow(Cell(static_cast<int>(row), col));
        cells += '/';
    }
    return cells;
}

long ComboGridForm::Number(const wchar_t* property) const { return *Call(grid.get(), property).ToLong(); }

std::string ComboGridForm::Current() const {
    return std::to_string(Number(L"Row")) + "," + std::to_string(Number(L"Col"));
}

ComPtr<IDispatch> ComboGridForm::List(int col) const {
    return Call(grid.get(), L"Lists", {Variant(col)}).ToObject<IDispatch>();
}

ComPtr<IDispatch> ComboGridForm::Inner() const { return Call(grid.get(), L"Grid").ToObject<IDispatch>(); }

int ComboGridForm::Pixels(const wchar_t* member, const std::vector<Variant>& arguments) const {
    return TwipsToPixels(static_cast<int>(*Call(Inner().get(), member, arguments).ToLong()), ScreenDpi().x);
}

ULONG ComboGridForm::ReferencesWhenClosed(const ComPtr<IUnknown>& control) {
    grid.reset();
    container.Close();
    delete std::exchange(connection, nullptr);
    control->AddRef();
    return control->Release() - 1;
}

HWND ComboGridForm::Frame() const {
    if (!container.ControlWindow()) return nullptr;
    const HWND frame = FindWindowExW(container.ControlWindow(), nullptr, L"QvxEditorFrame", nullptr);
    return frame && IsWindowVisible(frame) ? frame : nullptr;
}

HWND ComboGridForm::InnerGrid() const {
    HWND child = nullptr;
    while ((child = FindWindowExW(container.ControlWindow(), child, nullptr, nullptr)) != nullptr) {
        wchar_t className[64]{};
        GetClassNameW(child, className, 64);
        if (std::wstring(className) == L"QvxFlexGrid") return child;
    }
    return nullptr;
}

std::string ComboGridForm::Log(const std::vector<DISPID>& without) {
    std::ostringstream log;
    for (const auto& event : events->events) {
        if (PassedOn(event.id) || std::find(without.begin(), without.end(), event.id) != without.end()) continue;
        log << event.id << "(";
        const char* separator = "";
        for (const Variant& argument : event.arguments) {
            log << separator << Narrow(argument.ToText().value_or(u"?"));
            separator = ", ";
        }
        log << ")\n";
    }
    events->events.clear();
    return log.str();
}

}  // namespace qvx::test
