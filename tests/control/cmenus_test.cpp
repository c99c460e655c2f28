// Pictures on the menus of whole forms: which items get them, how they are drawn, and what else happens to the form.
#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include "Qvx.h"
#include "controls/menus/owned_items_win32.h"
#include "host/menu_window.h"
#include "tests/control/host_form.h"
#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/input.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/menu_pixels.h"
#include "tests/support/resource_counts.h"

namespace qvx::host {
namespace {

using namespace qvx::test;

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 160, 0);
constexpr COLORREF blue = RGB(0, 0, 255);

const std::string formText =
    "Begin Form f\n Caption = \"Menus\"\n ClientWidth = 4000\n ClientHeight = 3000\n"
    " Begin Menu mnuFile\n  Caption = \"&File\"\n"
    "  Begin Menu mnuOpen\n   Caption = \"&Open\"\n   Shortcut = ^O\n  End\n"
    "  Begin Menu mnuSave\n   Caption = \"&Save\"\n   Enabled = 0\n  End\n"
    "  Begin Menu mnuLine\n   Caption = \"-\"\n  End\n"
    "  Begin Menu mnuMore\n   Caption = \"&More\"\n"
    "   Begin Menu mnuOne\n    Caption = \"Item\"\n    Index = 0\n   End\n"
    "   Begin Menu mnuOne\n    Caption = \"Item\"\n    Index = 1\n   End\n"
    "  End\n"
    " End\n"
    " Begin Menu mnuView\n  Caption = \"&View\"\n"
    "  Begin Menu mnuGrid\n   Caption = \"&Grid\"\n   Checked = -1\n  End\n"
    "  Begin Menu mnuPlain\n   Caption = \"&Plain\"\n  End\n"
    "  Begin Menu mnuHidden\n   Caption = \"&Plain\"\n   Visible = 0\n  End\n"
    "  Begin Menu mnuLast\n   Caption = \"&Plain\"\n  End\n"
    " End\n Begin ImageList iml\n End\n Begin Qvx.CMenus mns\n  Left = 0\n  ImageList = \"iml\"\n End\nEnd\n";

menus::ItemState StateOf(HMENU menu, int position) {
    const auto state = menus::ReadItem(menu, position);
    EXPECT_TRUE(state);
    return state.value_or(menus::ItemState{});
}
bool OwnerDrawn(HMENU menu, int position) { return (StateOf(menu, position).type & MFT_OWNERDRAW) != 0; }

class CMenus : public HostFormTest {
  protected:
    // Between making the form and showing it, as a form file would have them.
    void AddPicture(const wchar_t* key, IPictureDisp* picture) {
        const auto control = ComPtr<IDispatch>(form_->FindControl(u"iml")->Extended());
        const auto images = test::Call(control.get(), L"ListImages").ToObject<IDispatch>();
        test::Call(images.get(), L"Add",
                   {Variant::Missing(), Variant(Text(FromWide(key))), Variant(static_cast<IDispatch*>(picture))});
    }
    void Show(TextView script = u"") {
        Load(formText);
        AddPicture(L"mnuOpen", SolidPicture({16, 16}, red).get());
        AddPicture(L"mnuSave", SolidPicture({48, 20}, red).get());
        AddPicture(L"mnuOne(1)", SolidPicture({5, 5}, green).get());
        AddPicture(L"mnuGrid", SolidPicture({1, 1}, blue).get());
        AddPicture(L"mnuPlain", EmptyPicture().get());
        AddPicture(L"mnuLast", SolidPicture({16, 16}, green).get());
        AddPicture(L"mnuGone", SolidPicture({16, 16}, green).get());
        ASSERT_TRUE(Start(script));
        UpdateWindow(Window());
    }
    HWND Window() const { return form_->Handle(); }
    HMENU File() const { return GetSubMenu(GetMenu(Window()), 0); }
    HMENU View() const { return GetSubMenu(GetMenu(Window()), 1); }
    HMENU More() const { return GetSubMenu(File(), 3); }
    void Opens(HMENU menu) const { SendMessageW(Window(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), 0); }
    Size SizeOf(HMENU menu, int position) const { return MeasureItem(Window(), menu, position); }
    PixelPicture Drawn(HMENU menu, int position, UINT state = 0) const {
        return DrawnItem(Window(), menu, position, state);
    }
    // The pixel in the middle of the picture, or of where it would be.
    COLORREF Middle(HMENU menu, int position, UINT state = 0) const { return Drawn(menu, position, state).At(11, 11); }
    COLORREF Ground() const { return GetSysColor(COLOR_MENU); }
    void PutMenu(const char16_t* name, const wchar_t* member, bool value) {
        test::Put(form_->Menus().Automation(*form_->Menus().Find(name)), member, {Variant(value)});
    }
};

TEST_F(CMenus, MakesEveryItemOwnerDrawnButLinesAndTheBar) {
    Show();
    const HMENU bar = GetMenu(Window());
    const std::pair<HMENU, std::vector<bool>> menus[] = {
        {bar, {false, false}}, {File(), {true, true, false, true}}, {More(), {true, true}}};
    for (const auto& [menu, ownerDrawn] : menus) {
        for (int i = 0; i < static_cast<int>(ownerDrawn.size()); ++i) {
            EXPECT_EQ(OwnerDrawn(menu, i), ownerDrawn[static_cast<std::size_t>(i)]) << i;
        }
    }
    // What they were they are still.
    EXPECT_TRUE(StateOf(File(), 2).type & MFT_SEPARATOR);
    EXPECT_TRUE(StateOf(File(), 1).state & MFS_GRAYED);
    EXPECT_TRUE(StateOf(File(), 3).submenu);
    EXPECT_TRUE(StateOf(View(), 0).state & MFS_CHECKED);
    EXPECT_EQ(GetMenuItemID(File(), 0), form_->Menus().Find(u"mnuOpen")->id);
}

TEST_F(CMenus, PicturesAreFoundByNameAndIndexInTheListThatIsNamed) {
    Show();
    EXPECT_EQ(Middle(File(), 0), red);
    EXPECT_EQ(Middle(More(), 0), Ground()) << "the array's other element has none";
    EXPECT_EQ(Middle(View(), 0), blue);
    EXPECT_EQ(Middle(View(), 1), Ground()) << "a picture without an extent is none";
    // Equal captions, one of them hidden: the picture is the last one's.
    EXPECT_EQ(Middle(View(), 2), green);
    // 16 pixels each way, wherever the picture is from.
    const PixelPicture small = Drawn(More(), 1);
    const int top = (SizeOf(More(), 1).height - 16) / 2;
    for (const int corner : {0, 15}) EXPECT_EQ(small.At(3 + corner, top + corner), green);
    for (const int beyond : {-1, 16}) EXPECT_EQ(small.At(3 + beyond, top + beyond), Ground());
    // Without a list, or with one of no use, the menus have their items and no pictures.
    const auto control = ComPtr<IDispatch>(form_->FindControl(u"mns")->Extended());
    for (const char16_t* list : {u"", u"nobody", u"mnuOpen", u"mns", u"IML"}) {
        test::Put(control.get(), L"ImageList", {Variant(list)});
        Opens(File());
        EXPECT_TRUE(OwnerDrawn(File(), 0));
        EXPECT_EQ(Middle(File(), 0), Text(list) == u"IML" ? red : Ground());
    }
}

// The native tests say how; this is whether the states arrive.
TEST_F(CMenus, DrawsTheStatesOfItems) {
    Show();
    EXPECT_EQ(Drawn(File(), 0, ODS_SELECTED).At(60, 1), GetSysColor(COLOR_HIGHLIGHT));
    // Half of the way from the ground to the grey that red is as bright as.
    const COLORREF grey = Middle(File(), 1, ODS_GRAYED | ODS_DISABLED);
    constexpr int bright = 255 * 30 / 100;
    EXPECT_NEAR(GetRValue(grey), (GetRValue(Ground()) + bright) / 2, 3);
    EXPECT_NEAR(GetGValue(grey), (GetGValue(Ground()) + bright) / 2, 3);
    EXPECT_NEAR(GetBValue(grey), (GetBValue(Ground()) + bright) / 2, 3);
    const auto plain = Drawn(View(), 1).pixels;
    EXPECT_NE(Drawn(View(), 1, ODS_NOACCEL).pixels, plain) << "underlined once the keyboard is used";
    const auto checked = Drawn(View(), 1, ODS_CHECKED).pixels;
    EXPECT_NE(checked, plain);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE;
    info.fType = StateOf(View(), 1).type | MFT_RADIOCHECK;
    ASSERT_TRUE(SetMenuItemInfoW(View(), 1, TRUE, &info));
    EXPECT_NE(Drawn(View(), 1, ODS_CHECKED).pixels, checked);
    // Bold, and wider for it.
    const int width = SizeOf(View(), 2).width;
    ASSERT_TRUE(SetMenuDefaultItem(View(), 2, TRUE));
    EXPECT_GT(SizeOf(View(), 2).width, width);
}

// Programs put items into menus, take them out, and have whole menus made anew.
TEST_F(CMenus, FollowsMenusThatChange) {
    Show();
    const HMENU file = File();
    ASSERT_TRUE(InsertMenuW(file, 1, MF_BYPOSITION | MF_STRING, 900, L"New\tCtrl+N"));
    const HMENU inner = CreatePopupMenu();
    ASSERT_TRUE(AppendMenuW(inner, MF_STRING, 901, L"Inner"));
    ASSERT_TRUE(AppendMenuW(file, MF_POPUP, reinterpret_cast<UINT_PTR>(inner), L"Added"));
    Opens(file);
    EXPECT_TRUE(OwnerDrawn(file, 1));
    EXPECT_TRUE(OwnerDrawn(file, 5));
    Opens(inner);
    EXPECT_TRUE(OwnerDrawn(inner, 0));
    EXPECT_EQ(Middle(file, 0), red);
    EXPECT_EQ(Middle(file, 1), Ground());
    EXPECT_GT(SizeOf(file, 1).width, SizeOf(file, 2).width) << "its keys need room";
    // Its text is another one later.
    const int before = SizeOf(inner, 0).width;
    ASSERT_TRUE(ModifyMenuW(inner, 0, MF_BYPOSITION | MF_STRING, 901, L"A much longer text than before"));
    Opens(inner);
    EXPECT_GT(SizeOf(inner, 0).width, before);
    ASSERT_TRUE(DeleteMenu(file, 1, MF_BYPOSITION));
    Opens(file);
    EXPECT_EQ(Middle(file, 0), red);
}

// A menu that a form pops up somewhere has the pictures of the menus it is made of.
TEST_F(CMenus, MenusThatPopUpHavePicturesToo) {
    Show();
    const HMENU popup = CreatePopupMenu();
    AppendMenuW(popup, MF_STRING, 100, L"&Open");
    AppendMenuW(popup, MF_STRING, 901, L"Elsewhere");
    Opens(popup);
    EXPECT_TRUE(OwnerDrawn(popup, 0));
    EXPECT_EQ(Middle(popup, 0), red);
    const HMENU foreign = CreatePopupMenu();
    AppendMenuW(foreign, MF_STRING, 902, L"Undo");
    Opens(foreign);
    EXPECT_FALSE(OwnerDrawn(foreign, 0)) << "a text box's own, for one";
    DestroyMenu(popup);
    DestroyMenu(foreign);
}

LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data) {
    auto& act = *reinterpret_cast<std::function<std::optional<LRESULT>(UINT)>*>(data);
    if (const auto answer = act(message)) return *answer;
    return DefSubclassProc(window, message, wParam, lParam);
}

// A container whose form has a menu, with somebody who sees every message before or after the menus do.
class Watched {
  public:
    Watched() : container_(OptionsOf()) {
        bar_ = CreateMenu();
        file_ = CreatePopupMenu();
        AppendMenuW(file_, MF_STRING, 900, L"&Open\tCtrl+O");
        AppendMenuW(file_, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(file_, MF_STRING | MF_OWNERDRAW, 901, L"own");
        AppendMenuW(bar_, MF_POPUP, reinterpret_cast<UINT_PTR>(file_), L"&File");
        SetMenu(container_.Window(), bar_);
        form_->members[L"hWnd"] = Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(container_.Window())));
        SetWindowSubclass(container_.Window(), Watch, 1, reinterpret_cast<DWORD_PTR>(&act));
        before_ = GetWindowLongPtrW(container_.Window(), GWLP_WNDPROC);
        container_.Place(ServerUnderTest::Get().Create(CLSID_CMenus), [](IUnknown* control) {
            auto bag = MakeObject<MemoryBag>();
            EXPECT_EQ(S_OK, LoadFromBag(control, bag.get()));
        });
    }
    ~Watched() {
        container_.Close();
        if (IsWindow(container_.Window())) RemoveWindowSubclass(container_.Window(), Watch, 1);
    }
    bool Replaced() const { return GetWindowLongPtrW(container_.Window(), GWLP_WNDPROC) != before_; }

    std::function<std::optional<LRESULT>(UINT)> act = [](UINT) { return std::nullopt; };
    ComPtr<LateBoundObject> form_ = MakeObject<LateBoundObject>();
    HMENU bar_ = nullptr;
    HMENU file_ = nullptr;
    Container container_;

  private:
    Container::Options OptionsOf() const {
        const auto extended = MakeObject<LateBoundObject>();
        extended->members[L"Parent"] = Variant(static_cast<IDispatch*>(form_.get()));
        Container::Options options;
        options.ambients = {{DISPID_AMBIENT_USERMODE, Variant(true)}};
        options.extended = extended;
        return options;
    }
    LONG_PTR before_ = 0;
};

TEST(CMenusOnAForm, EverythingElseIsPassedOn) {
    Watched form;
    EXPECT_TRUE(form.Replaced());
    std::vector<UINT> seen;
    form.act = [&](UINT message) {
        seen.push_back(message);
        return message == WM_MEASUREITEM || message == WM_DRAWITEM ? std::optional<LRESULT>(77) : std::nullopt;
    };
    const HWND window = form.container_.Window();
    SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(form.file_), 0);
    EXPECT_TRUE(OwnerDrawn(form.file_, 0));
    // A list's items, and menu items that the program draws itself.
    MEASUREITEMSTRUCT list{};
    list.CtlType = ODT_LISTBOX;
    EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 5, reinterpret_cast<LPARAM>(&list)), 77);
    MEASUREITEMSTRUCT own{};
    own.CtlType = ODT_MENU;
    own.itemID = 901;
    own.itemData = StateOf(form.file_, 2).data;
    EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&own)), 77);
    DRAWITEMSTRUCT button{};
    button.CtlType = ODT_BUTTON;
    EXPECT_EQ(SendMessageW(window, WM_DRAWITEM, 5, reinterpret_cast<LPARAM>(&button)), 77);
    EXPECT_EQ(seen, (std::vector<UINT>{WM_INITMENUPOPUP, WM_MEASUREITEM, WM_MEASUREITEM, WM_DRAWITEM}));
    // The size of ours nobody else is asked for.
    seen.clear();
    EXPECT_GT(MeasureItem(window, form.file_, 0).width, 40);
    EXPECT_TRUE(seen.empty());
}

// What a host's object does in the middle of a call from outside.
class Acting final : public ComObject<UntypedDispatch> {
  public:
    std::function<void()> act;
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override {
        *ids = 1;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        if (act) act();
        return E_FAIL;
    }

  private:
    ~Acting() override = default;
};

// Hosts end controls whenever they like: in peace, in the middle of the very messages that the control waits for, and
// when they are asked for their controls. The menus are what they were before.
TEST(CMenusOnAForm, ItsEndGivesTheMenusBack) {
    constexpr UINT inPeace = 0;
    constexpr UINT whenAsked = 1;
    for (const UINT when : {inPeace, whenAsked, UINT{WM_INITMENUPOPUP}, UINT{WM_COMMAND}, UINT{WM_PAINT},
                            UINT{WM_SETTINGCHANGE}, UINT{WM_MENUCHAR}}) {
        SCOPED_TRACE(when);
        Watched form;
        const HWND window = form.container_.Window();
        const auto opens = [&] { SendMessageW(window, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(form.file_), 0); };
        const auto host = MakeObject<Acting>();
        if (when != WM_INITMENUPOPUP && when != whenAsked) {
            opens();
            EXPECT_TRUE(OwnerDrawn(form.file_, 0));
        }
        form.act = [&](UINT message) {
            if (message == when) form.container_.Close();
            return std::nullopt;
        };
        if (when == inPeace) {
            form.container_.Close();
        } else if (when == whenAsked) {
            host->act = [&] { form.container_.Close(); };
            form.form_->members[L"Controls"] = Variant(static_cast<IDispatch*>(host.get()));
            opens();
        } else if (when == WM_INITMENUPOPUP) {
            opens();
        } else {
            SendMessageW(window, when, 0, when == WM_MENUCHAR ? reinterpret_cast<LPARAM>(form.file_) : 0);
        }
        EXPECT_FALSE(form.Replaced());
        EXPECT_FALSE(OwnerDrawn(form.file_, 0));
        EXPECT_TRUE(OwnerDrawn(form.file_, 2)) << "the program's own";
        EXPECT_EQ(FromWide(StateOf(form.file_, 0).text.c_str()), u"&Open\tCtrl+O");
        host->act = nullptr;
    }
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

TEST(ControlsOfAWindow, LeaveItAloneInADesigner) {
    for (const CLSID& id : {CLSID_CMenus, CLSID_FlatBorder}) {
        Container container(HostInMode(false));
        const LONG_PTR before = GetWindowLongPtrW(container.Window(), GWLP_WNDPROC);
        container.Place(ServerUnderTest::Get().Create(id));
        container.Activate();
        EXPECT_EQ(GetWindowLongPtrW(container.Window(), GWLP_WNDPROC), before);
    }
}

// The font and its size are the system's, and follow it.
TEST_F(CMenus, FollowsTheSystemsFont) {
    Show();
    const Size before = SizeOf(File(), 0);
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ASSERT_TRUE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
    NONCLIENTMETRICSW larger = metrics;
    larger.lfMenuFont.lfHeight = -36;
    ASSERT_TRUE(SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof larger, &larger, 0));
    SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    const Size after = SizeOf(File(), 0);
    SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    SendMessageW(Window(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    EXPECT_GT(after.width, before.width);
    EXPECT_GT(after.height, 36);
    EXPECT_EQ(SizeOf(File(), 0), before);
}

// --- A person at the menus ---

std::function<void()>* duringMenu = nullptr;
void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    if (duringMenu) (*duringMenu)();
}

// Runs something while the File menu is open, and has the menu closed afterwards.
void WhileOpen(HWND window, std::function<void()> act) {
    std::function<void()> all = [&] {
        act();
        EndMenu();
    };
    duringMenu = &all;
    SetTimer(nullptr, 0, 100, OnTimer);
    SendMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, 'f');
    duringMenu = nullptr;
    Pump();
}

TEST_F(CMenus, MenusMayChangeAndTheFormMayGoWhileTheyAreOpen) {
    Show();
    ASSERT_TRUE(BringToFront(Window()));
    const HWND window = Window();
    int acted = 0;
    WhileOpen(window, [&] {
        ++acted;
        EXPECT_TRUE(OwnerDrawn(File(), 0));
        AppendMenuW(File(), MF_STRING, 950, L"Late");
        DeleteMenu(File(), 0, MF_BYPOSITION);
        PutMenu(u"mnuSave", L"Enabled", true);  // made anew, all of it
    });
    WhileOpen(window, [&] {
        ++acted;
        EXPECT_EQ(Middle(File(), 0), red);
        form_.reset();
    });
    EXPECT_EQ(acted, 2);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

TEST_F(CMenus, AMenusOwnEventMayCloseTheForm) {
    Show(u"Sub mnuOpen_Click\n f.Close\nEnd Sub\n");
    ASSERT_TRUE(BringToFront(Window()));
    const HWND window = Window();
    {
        const Person person([] {
            TypeKey('F', {VK_MENU});
            Sleep(300);
            TypeKey('O');
        });
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(window); }));
    }
    form_.reset();
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

TEST_F(CMenus, AThousandMenusLeaveNothingBehind) {
    Show();
    const auto round = [&](int i) {
        PutMenu(u"mnuSave", L"Enabled", i % 2 == 0);
        Opens(File());
        for (const int position : {0, 1, 3}) Drawn(File(), position, ODS_GRAYED);
    };
    ExpectNothingLeftBehind(1000, [&, i = 0]() mutable { round(++i); });
}

}  // namespace
}  // namespace qvx::host
