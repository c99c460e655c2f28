// What a form does with a control, on whatever thread it has its windows.
#pragma once

#include <olectl.h>

#include "Qvx.h"
#include "tests/control/module/apartment.h"
#include "tests/support/each_control.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {

// A bar with one menu of one item, which a CMenus control draws.
class FormMenu {
  public:
    explicit FormMenu(HWND form) : form_(form), bar_(CreateMenu()), menu_(CreatePopupMenu()) {
        AppendMenuW(menu_, MF_STRING, 1, L"&Open");
        AppendMenuW(bar_, MF_POPUP, reinterpret_cast<UINT_PTR>(menu_), L"&File");
        SetMenu(form, bar_);
    }
    ~FormMenu() {
        SetMenu(form_, nullptr);
        DestroyMenu(bar_);
    }
    FormMenu(const FormMenu&) = delete;
    FormMenu& operator=(const FormMenu&) = delete;

    // The item's data, when it is drawn by somebody else than the system.
    ULONG_PTR DrawnBySomebody() const {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_DATA;
        GetMenuItemInfoW(menu_, 0, TRUE, &info);
        return info.fType & MFT_OWNERDRAW ? info.dwItemData : 0;
    }
    // As the system does before it shows the menu.
    void Open() const { SendMessageW(form_, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu_), 0); }
    bool IsMeasured() const {
        MEASUREITEMSTRUCT request{ODT_MENU, 0, 1, 0, 0, DrawnBySomebody()};
        return SendMessageW(form_, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&request)) && request.itemWidth > 0;
    }

  private:
    HWND form_;
    HMENU bar_;
    HMENU menu_;
};

// A form on which one control after the other is shown.
class Form {
  public:
    Form() : container_(HostInMode(true)), menu_(container_.Window()) {}

    // A new control, with input, saved, and made to do what has a module keep something: windows and fonts, the type
    // library, an error, an event.
    void UseControl(REFCLSID id) {
        container_.Place(CreateByClass(id));
        ASSERT_TRUE(container_.Control());
        Use(container_.Automation().get(), id == CLSID_CMenus);
        container_.Close();
        container_.Calls() = {};  // what the test itself keeps would be counted
        EXPECT_EQ(0u, menu_.DrawnBySomebody()) << "the menu is the system's again";
        Pump();
    }

  private:
    void Use(IDispatch* control, bool drawsMenus) {
        const auto recorder = MakeObject<EventRecorder>();
        const Connection connection(control, EventsOf(control), recorder.get());
        container_.ActivateUi();
        menu_.Open();
        EXPECT_EQ(drawsMenus, menu_.DrawnBySomebody() != 0);
        EXPECT_EQ(drawsMenus, menu_.DrawnBySomebody() && menu_.IsMeasured());
        SetWindowTextW(container_.Window(), L"A frame that is painted anew");
        const HWND window = container_.ControlWindow();
        const HWND first = GetWindow(window, GW_CHILD);
        const HWND inner = first ? first : window;
        for (const wchar_t character : {L'1', L'2', L'.', L'x', L' '}) SendMessageW(inner, WM_CHAR, character, 1);
        for (const UINT button : {WM_LBUTTONDOWN, WM_LBUTTONUP}) SendMessageW(inner, button, 0, MAKELPARAM(9, 9));
        UpdateWindow(window);
        EXPECT_TRUE(FAILED(Invoke(control, L"NoSuchMember", DISPATCH_METHOD).result));
        EXPECT_FALSE(SaveToStream(control).empty());
    }

    Container container_;
    FormMenu menu_;
};

}  // namespace qvx::test
