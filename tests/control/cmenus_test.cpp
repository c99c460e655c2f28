// Pictures on the menus of whole forms: which items get them, how they are drawn, and what else happens to the form.
#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include "Qvx.h"
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

std::string FormWith(const std::string& properties, const std::string& menus = "") {
    return "Begin Form f\n Caption = \"Menus\"\n ClientWidth = 4000\n ClientHeight = 3000\n"
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
           " End\n" +
           menus + " Begin ImageList iml\n End\n Begin Qvx.CMenus mns\n  Left = 0\n" + properties + " End\nEnd\n";
}
const std::string withList = "  ImageList = \"iml\"\n";

struct ItemInfo {
    UINT type = 0;
    UINT state = 0;
    UINT id = 0;
    HMENU submenu = nullptr;
    ULONG_PTR data = 0;
    bool OwnerDrawn() const { return (type & MFT_OWNERDRAW) != 0; }
};

ItemInfo InfoOf(HMENU menu, int position) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_DATA;
    EXPECT_TRUE(GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info));
    return {info.fType, info.fState, info.wID, info.hSubMenu, info.dwItemData};
}

class CMenus : public HostFormTest {
  protected:
    // Between making the form and showing it, as a form file would have them.
    void AddPicture(const wchar_t* key, IPictureDisp* picture) {
        const auto control = ComPtr<IDispatch>(form_->FindControl(u"iml")->Extended());
        const auto images = test::Call(control.get(), L"ListImages").ToObject<IDispatch>();
        test::Call(images.get(), L"Add",
                   {Variant::Missing(), Variant(Text(FromWide(key))), Variant(static_cast<IDispatch*>(picture))});
    }
    void Show(const std::string& text = FormWith(withList), TextView script = u"") {
        Load(text);
        AddPicture(L"mnuOpen", SolidPicture({16, 16}, red).get());
        AddPicture(L"mnuSave", SolidPicture({48, 20}, red).get());
        AddPicture(L"mnuOne(1)", SolidPicture({5, 5}, green).get());
        AddPicture(L"mnuGrid", SolidPicture({16, 16}, blue).get());
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
    EXPECT_FALSE(InfoOf(bar, 0).OwnerDrawn());
    EXPECT_FALSE(InfoOf(bar, 1).OwnerDrawn());
    for (const int position : {0, 1, 3}) EXPECT_TRUE(InfoOf(File(), position).OwnerDrawn()) << position;
    EXPECT_FALSE(InfoOf(File(), 2).OwnerDrawn());
    EXPECT_TRUE(InfoOf(File(), 2).type & MFT_SEPARATOR);
    for (const int position : {0, 1}) EXPECT_TRUE(InfoOf(More(), position).OwnerDrawn());
    // What they were they are still.
    EXPECT_TRUE(InfoOf(File(), 1).state & MFS_GRAYED);
    EXPECT_TRUE(InfoOf(File(), 3).submenu);
    EXPECT_TRUE(InfoOf(View(), 0).state & MFS_CHECKED);
    EXPECT_EQ(InfoOf(File(), 0).id, form_->Menus().Find(u"mnuOpen")->id);
}

TEST_F(CMenus, PicturesAreFoundByNameAndIndex) {
    Show();
    EXPECT_EQ(Middle(File(), 0), red);
    EXPECT_EQ(Middle(More(), 1), green);
    EXPECT_EQ(Middle(More(), 0), Ground()) << "the array's other element has none";
    EXPECT_EQ(Middle(View(), 0), blue);
    EXPECT_EQ(Middle(View(), 1), Ground());
    // Equal captions, one of them hidden: the picture is the last one's.
    EXPECT_EQ(Middle(View(), 2), green);
}

// 16 pixels each way, wherever the picture is from.
TEST_F(CMenus, PicturesHaveOnePlaceAndSize) {
    Show();
    const auto edges = [&](HMENU menu, int position, COLORREF color) {
        const PixelPicture picture = Drawn(menu, position);
        Rect found{picture.size.width, picture.size.height, 0, 0};
        for (int y = 0; y < picture.size.height; ++y) {
            for (int x = 0; x < picture.size.width; ++x) {
                if (picture.At(x, y) != color) continue;
                found = {std::min(found.left, x), std::min(found.top, y), std::max(found.right, x + 1),
                         std::max(found.bottom, y + 1)};
            }
        }
        return found;
    };
    const int top = (SizeOf(File(), 0).height - 16) / 2;
    EXPECT_EQ(edges(File(), 0, red), (Rect{3, top, 19, top + 16}));
    EXPECT_EQ(edges(More(), 1, green), (Rect{3, top, 19, top + 16}));
}

TEST_F(CMenus, DrawsTheStatesOfItems) {
    Show();
    const PixelPicture selected = Drawn(File(), 0, ODS_SELECTED);
    EXPECT_EQ(selected.At(60, 1), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(selected.At(11, 11), red);
    // Half of the way from the ground to the grey that red is as bright as.
    const COLORREF grey = Middle(File(), 1, ODS_GRAYED | ODS_DISABLED);
    constexpr int bright = 255 * 30 / 100;
    EXPECT_NEAR(GetRValue(grey), (GetRValue(Ground()) + bright) / 2, 3);
    EXPECT_NEAR(GetGValue(grey), (GetGValue(Ground()) + bright) / 2, 3);
    EXPECT_NEAR(GetBValue(grey), (GetBValue(Ground()) + bright) / 2, 3);
    // A frame around a checked item's picture, a mark in place of one.
    EXPECT_NE(Drawn(View(), 0, ODS_CHECKED).At(1, 11), Ground());
    EXPECT_EQ(Drawn(View(), 0).At(1, 11), Ground());
    EXPECT_EQ(Middle(View(), 0, ODS_CHECKED), blue);
    const auto ink = [&](UINT state) {
        const PixelPicture picture = Drawn(View(), 1, state);
        int count = 0;
        for (int y = 0; y < picture.size.height; ++y) {
            for (int x = 0; x < 22; ++x) count += picture.At(x, y) == GetSysColor(COLOR_MENUTEXT) ? 1 : 0;
        }
        return count;
    };
    EXPECT_EQ(ink(0), 0);
    EXPECT_EQ(ink(ODS_CHECKED), 21);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE;
    info.fType = InfoOf(View(), 1).type | MFT_RADIOCHECK;
    ASSERT_TRUE(SetMenuItemInfoW(View(), 1, TRUE, &info));
    EXPECT_NE(ink(ODS_CHECKED), 21);
    EXPECT_GT(ink(ODS_CHECKED), 30);
    // Bold, and wider for it.
    const int width = SizeOf(View(), 2).width;
    ASSERT_TRUE(SetMenuDefaultItem(View(), 2, TRUE));
    EXPECT_GT(SizeOf(View(), 2).width, width);
}

TEST_F(CMenus, AccessKeysAreUnderlinedOnceTheKeyboardIsUsed) {
    Show();
    const PixelPicture hidden = Drawn(View(), 1, ODS_NOACCEL);
    const PixelPicture shown = Drawn(View(), 1);
    EXPECT_NE(hidden.pixels, shown.pixels);
}

TEST_F(CMenus, TypedCharactersChooseItems) {
    Show();
    const auto typed = [&](HMENU menu, char16_t key) {
        return SendMessageW(Window(), WM_MENUCHAR, MAKEWPARAM(key, MF_POPUP), reinterpret_cast<LPARAM>(menu));
    };
    EXPECT_EQ(typed(File(), u'o'), MAKELRESULT(0, MNC_EXECUTE));
    EXPECT_EQ(typed(File(), u'M'), MAKELRESULT(3, MNC_EXECUTE));
    EXPECT_EQ(typed(File(), u's'), MAKELRESULT(1, MNC_SELECT)) << "disabled";
    EXPECT_EQ(HIWORD(typed(GetMenu(Window()), u'f')), MNC_IGNORE) << "the bar is the system's";
}

// Without a list, or with one of no use, the menus have their items and no pictures.
TEST_F(CMenus, ListsThatAreNoneGiveNoPictures) {
    for (const std::string list :
         {"", "  ImageList = \"nobody\"\n", "  ImageList = \"mnuOpen\"\n", "  ImageList = \"mns\"\n"}) {
        SCOPED_TRACE(list);
        Show(FormWith(list));
        EXPECT_TRUE(InfoOf(File(), 0).OwnerDrawn());
        EXPECT_EQ(Middle(File(), 0), Ground());
        EXPECT_EQ(InfoOf(File(), 2).type & MFT_OWNERDRAW, 0u);
        form_.reset();
    }
    Load(FormWith(withList));
    ASSERT_TRUE(Start(u""));
    UpdateWindow(Window());
    EXPECT_TRUE(InfoOf(File(), 0).OwnerDrawn());
    EXPECT_EQ(Middle(File(), 0), Ground());
}

TEST_F(CMenus, PicturesWithoutAnExtentAreNone) {
    Load(FormWith(withList));
    AddPicture(L"mnuOpen", EmptyPicture().get());
    AddPicture(L"mnuGrid", SolidPicture({1, 1}, blue).get());
    ASSERT_TRUE(Start(u""));
    UpdateWindow(Window());
    EXPECT_EQ(Middle(File(), 0), Ground());
    EXPECT_EQ(Middle(View(), 0), blue);
}

// The list and its name may change while the form runs; what is seen next is the new one.
TEST_F(CMenus, FollowsTheListThatIsNamed) {
    Show();
    const auto control = ComPtr<IDispatch>(form_->FindControl(u"mns")->Extended());
    test::Put(control.get(), L"ImageList", {Variant(u"")});
    Opens(File());
    EXPECT_EQ(Middle(File(), 0), Ground());
    test::Put(control.get(), L"ImageList", {Variant(u"IML")});
    Opens(File());
    EXPECT_EQ(Middle(File(), 0), red);
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
    EXPECT_TRUE(InfoOf(file, 1).OwnerDrawn());
    EXPECT_TRUE(InfoOf(file, 5).OwnerDrawn());
    Opens(inner);
    EXPECT_TRUE(InfoOf(inner, 0).OwnerDrawn());
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
    // The host makes its menus anew for every change of an item.
    PutMenu(u"mnuSave", L"Enabled", true);
    EXPECT_FALSE(IsMenu(file));
    Opens(File());
    EXPECT_TRUE(InfoOf(File(), 0).OwnerDrawn());
    EXPECT_EQ(Middle(File(), 0), red);
    EXPECT_EQ(Middle(File(), 1), red);
}

// A menu that a form pops up somewhere has the pictures of the menus it is made of.
TEST_F(CMenus, MenusThatPopUpHavePicturesToo) {
    Show();
    const HMENU popup = CreatePopupMenu();
    AppendMenuW(popup, MF_STRING, 100, L"&Open");
    AppendMenuW(popup, MF_STRING, 901, L"Elsewhere");
    Opens(popup);
    EXPECT_TRUE(InfoOf(popup, 0).OwnerDrawn());
    EXPECT_EQ(Middle(popup, 0), red);
    const HMENU foreign = CreatePopupMenu();
    AppendMenuW(foreign, MF_STRING, 902, L"Undo");
    Opens(foreign);
    EXPECT_FALSE(InfoOf(foreign, 0).OwnerDrawn()) << "a text box's own, for one";
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
    EXPECT_TRUE(InfoOf(form.file_, 0).OwnerDrawn());
    // A list's items, and menu items that the program draws itself.
    MEASUREITEMSTRUCT list{};
    list.CtlType = ODT_LISTBOX;
    EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 5, reinterpret_cast<LPARAM>(&list)), 77);
    MEASUREITEMSTRUCT own{};
    own.CtlType = ODT_MENU;
    own.itemID = 901;
    own.itemData = InfoOf(form.file_, 2).data;
    EXPECT_EQ(SendMessageW(window, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&own)), 77);
    DRAWITEMSTRUCT button{};
    button.CtlType = ODT_BUTTON;
    EXPECT_EQ(SendMessageW(window, WM_DRAWITEM, 5, reinterpret_cast<LPARAM>(&button)), 77);
    for (const UINT message : {static_cast<UINT>(WM_INITMENUPOPUP), static_cast<UINT>(WM_MEASUREITEM)}) {
        EXPECT_TRUE(std::find(seen.begin(), seen.end(), message) != seen.end());
    }
    // The size of ours nobody else is asked for.
    seen.clear();
    EXPECT_GT(MeasureItem(window, form.file_, 0).width, 40);
    EXPECT_TRUE(seen.empty());
}

TEST(CMenusOnAForm, ItsEndGivesTheMenusBack) {
    Watched form;
    SendMessageW(form.container_.Window(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(form.file_), 0);
    EXPECT_TRUE(InfoOf(form.file_, 0).OwnerDrawn());
    form.container_.Close();
    EXPECT_FALSE(form.Replaced());
    EXPECT_FALSE(InfoOf(form.file_, 0).OwnerDrawn());
    EXPECT_TRUE(InfoOf(form.file_, 2).OwnerDrawn());
    wchar_t text[40]{};
    GetMenuStringW(form.file_, 0, text, 40, MF_BYPOSITION);
    EXPECT_STREQ(text, L"&Open\tCtrl+O");
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

// Hosts end controls whenever they like: here in the middle of the very messages that the control waits for.
TEST(CMenusOnAForm, MayEndInTheMiddleOfAMessage) {
    for (const UINT when : {WM_INITMENUPOPUP, WM_COMMAND, WM_PAINT, WM_SETTINGCHANGE, WM_MENUCHAR}) {
        SCOPED_TRACE(when);
        Watched form;
        form.act = [&](UINT message) {
            if (message == when) form.container_.Close();
            return std::nullopt;
        };
        SendMessageW(form.container_.Window(), when,
                     when == WM_INITMENUPOPUP ? reinterpret_cast<WPARAM>(form.file_) : 0,
                     when == WM_MENUCHAR ? reinterpret_cast<LPARAM>(form.file_) : 0);
        EXPECT_FALSE(form.Replaced());
        EXPECT_FALSE(InfoOf(form.file_, 0).OwnerDrawn());
    }
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

// The host is asked for its controls while a menu opens, and ends the control then.
TEST(CMenusOnAForm, MayEndWhileItAsksTheHost) {
    class Ending final : public ComObject<UntypedDispatch> {
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
        ~Ending() override = default;
    };
    Watched form;
    const auto controls = MakeObject<Ending>();
    controls->act = [&] { form.container_.Close(); };
    form.form_->members[L"Controls"] = Variant(static_cast<IDispatch*>(controls.get()));
    SendMessageW(form.container_.Window(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(form.file_), 0);
    EXPECT_FALSE(form.Replaced());
    EXPECT_FALSE(InfoOf(form.file_, 0).OwnerDrawn());
    controls->act = nullptr;
}

TEST(CMenusOnAForm, NothingHappensInADesigner) {
    Container::Options options;
    options.ambients = {{DISPID_AMBIENT_USERMODE, Variant(false)}};
    Container container(options);
    const LONG_PTR before = GetWindowLongPtrW(container.Window(), GWLP_WNDPROC);
    container.Place(ServerUnderTest::Get().Create(CLSID_CMenus));
    container.Activate();
    EXPECT_EQ(GetWindowLongPtrW(container.Window(), GWLP_WNDPROC), before);
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

TEST_F(CMenus, MenusMayChangeWhileTheyAreOpen) {
    Show();
    ASSERT_TRUE(BringToFront(Window()));
    bool acted = false;
    WhileOpen(Window(), [&] {
        acted = true;
        EXPECT_TRUE(InfoOf(File(), 0).OwnerDrawn());
        AppendMenuW(File(), MF_STRING, 950, L"Late");
        DeleteMenu(File(), 0, MF_BYPOSITION);
        PutMenu(u"mnuSave", L"Enabled", true);  // made anew, all of it
    });
    EXPECT_TRUE(acted);
    WhileOpen(Window(), [&] { EXPECT_EQ(Middle(File(), 0), red); });
}

TEST_F(CMenus, TheFormMayGoWhileAMenuIsOpen) {
    Show();
    ASSERT_TRUE(BringToFront(Window()));
    const HWND window = Window();
    bool acted = false;
    WhileOpen(window, [&] {
        acted = true;
        form_.reset();
    });
    EXPECT_TRUE(acted);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

TEST_F(CMenus, AMenusOwnEventMayCloseTheForm) {
    Show(FormWith(withList), u"Sub mnuOpen_Click\n f.Close\nEnd Sub\n");
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
