// The controls in a container that this project did not write: the system's control host window.
#include <windows.h>

#include <gtest/gtest.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/input.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

class SystemContainer : public ::testing::TestWithParam<const CLSID*> {
  protected:
    void SetUp() override {
        library_ = LoadLibraryW(L"atl100.dll");
        if (!library_) GTEST_SKIP() << "the system's container library is not installed";
        const auto init = reinterpret_cast<BOOL(WINAPI*)()>(GetProcAddress(library_, "AtlAxWinInit"));
        createControl_ = reinterpret_cast<Create*>(GetProcAddress(library_, "AtlAxCreateControl"));
        getControl_ = reinterpret_cast<GetControl*>(GetProcAddress(library_, "AtlAxGetControl"));
        ASSERT_TRUE(init && createControl_ && getControl_);
        static const bool classesRegistered = init() != FALSE;
        ASSERT_TRUE(classesRegistered);
        top_ = CreateWindowW(L"#32770", L"System container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 30, 30, 400, 300,
                             nullptr, nullptr, nullptr, nullptr);
        ASSERT_TRUE(top_);
    }
    void TearDown() override {
        if (top_) DestroyWindow(top_);
    }

    HWND Host(const std::wstring& controlClass) {
        const HWND host = CreateWindowW(L"AtlAxWin100", L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 10, 10, 200, 100,
                                        top_, nullptr, nullptr, nullptr);
        EXPECT_TRUE(host);
        ComPtr<IUnknown> container;
        EXPECT_EQ(S_OK, createControl_(controlClass.c_str(), host, nullptr, container.put()));
        return host;
    }
    ComPtr<IUnknown> ControlIn(HWND host) {
        ComPtr<IUnknown> control;
        EXPECT_EQ(S_OK, getControl_(host, control.put()));
        return control;
    }
    static HWND WindowOf(IUnknown* control) {
        HWND window = nullptr;
        Query<IOleInPlaceObject>(control)->GetWindow(&window);
        return window;
    }

    using Create = HRESULT WINAPI(LPCOLESTR, HWND, IStream*, IUnknown**);
    using GetControl = HRESULT WINAPI(HWND, IUnknown**);
    HMODULE library_ = nullptr;
    Create* createControl_ = nullptr;
    GetControl* getControl_ = nullptr;
    HWND top_ = nullptr;
    CreatableClasses classes_;
};

INSTANTIATE_TEST_SUITE_P(Controls, SystemContainer, ::testing::ValuesIn(EachVisibleControlId()), ControlName);

TEST_P(SystemContainer, ActivatesResizesAndTakesTheFocus) {
    const HWND host = Host(Spell(*GetParam()));
    auto control = ControlIn(host);
    ASSERT_TRUE(control);
    const HWND window = WindowOf(control.get());
    ASSERT_TRUE(window);
    EXPECT_TRUE(IsWindowVisible(window));
    RECT area = AreaOf(window);
    EXPECT_EQ(200, area.right - area.left);
    SetWindowPos(host, nullptr, 0, 0, 320, 150, SWP_NOMOVE | SWP_NOZORDER);
    GetWindowRect(window, &area);
    EXPECT_EQ(320, area.right - area.left);
    EXPECT_EQ(*GetParam() != CLSID_TextEdit, area.bottom - area.top == 150) << "a text box is as high as its text";
    UpdateWindow(window);
    // A click brings the focus.
    SetForegroundWindow(top_);
    SetFocus(top_);
    SendMessageW(window, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(top_), MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
    const HWND focus = GetFocus();
    EXPECT_TRUE(focus == window || IsChild(window, focus));
    DestroyWindow(host);
    EXPECT_FALSE(IsWindowVisible(window));
    control.reset();
    EXPECT_FALSE(IsWindow(window)) << "the container held the last reference but ours";
}

// The Tab key as a dialog handles it, into the control, out of it again and back.
TEST_P(SystemContainer, TabGoesInAndOut) {
    const HWND host = Host(Spell(*GetParam()));
    SetWindowLongW(host, GWL_STYLE, GetWindowLongW(host, GWL_STYLE) | WS_TABSTOP);
    const auto control = ControlIn(host);
    const HWND window = WindowOf(control.get());
    const HWND other = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 150, 100, 20, top_, nullptr,
                                     nullptr, nullptr);
    SetForegroundWindow(top_);
    SetFocus(other);
    const auto tab = [&] {
        MSG message{GetFocus(), WM_KEYDOWN, VK_TAB, 0, 0, {}};
        return IsDialogMessageW(top_, &message) != FALSE;
    };
    const auto inside = [&] {
        // Wine's host keeps the focus for itself where the system's activates its control.
        if (GetFocus() == host) {
            const auto object = control.As<IOleObject>();
            ComPtr<IOleClientSite> site;
            object->GetClientSite(site.put());
            RECT area{};
            GetClientRect(host, &area);
            object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, site.get(), 0, host, &area);
        }
        return GetFocus() == window || IsChild(window, GetFocus());
    };
    EXPECT_TRUE(tab());
    EXPECT_TRUE(inside());
    if (*GetParam() == CLSID_ComboGrid) return;  // keeps the key for its columns
    EXPECT_TRUE(tab());
    EXPECT_EQ(GetFocus(), other);
    EXPECT_TRUE(tab());
    EXPECT_TRUE(inside());
}

}  // namespace
}  // namespace qvx::test
