// The message box as a person meets it: on a screen, with a keyboard, a mouse and a clock.
#include <gtest/gtest.h>

#include <atomic>

#include "dialogs/message_box_layout.h"
#include "dialogs/show_message_dialog.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/owned_dialog.h"
#include "tests/support/resource_counts.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx::dialogs {
namespace {

using test::ButtonOf;
using test::FindBox;
using test::Person;
using test::TakeQuit;
using test::TypeKey;
using test::WaitFor;
using test::WaitForBox;

class MessageBoxOnScreen : public test::OwnedDialogTest {
  protected:
    bool Show(int buttons, int timeOut = 0, TextView prompt = u"Delete selected item?") const {
        const bool answer = ShowMessage(owner_, prompt, buttons, Text(u"Test"), icon::question, false, timeOut);
        WaitForOwner();
        return answer;
    }
};

TEST_F(MessageBoxOnScreen, TimeOutAnswersWithTheFocusedButton) {
    for (const int buttons : {2, 10}) {
        const ULONGLONG start = GetTickCount64();
        EXPECT_EQ(Show(buttons, 300), buttons == 2);
        const ULONGLONG taken = GetTickCount64() - start;
        EXPECT_GE(taken, 280U) << buttons;
        EXPECT_LT(taken, 3000U) << buttons;
        EXPECT_EQ(FindBox(), nullptr);
    }
    const Person person([] {
        if (WaitForBox()) TypeKey(VK_TAB);
    });
    EXPECT_FALSE(Show(2, 1500)) << "after the focus moved";
}

TEST_F(MessageBoxOnScreen, KeysAndTheMouseAnswer) {
    struct {
        const char* name;
        int buttons;
        std::function<void(HWND)> act;
        bool answer;
    } const cases[] = {
        {"O", 1, [](HWND) { TypeKey('O'); }, true},
        {"Escape with one button", 1, [](HWND) { TypeKey(VK_ESCAPE); }, true},
        {"Space on the focused button", 10, [](HWND) { TypeKey(VK_SPACE); }, false},
        {"Enter on the focused button", 10, [](HWND) { TypeKey(VK_RETURN); }, false},
        {"Tab moves to the other", 10, [](HWND) { TypeKey(VK_TAB), TypeKey(VK_SPACE); }, true},
        // The Tab that an arrow key sends comes after what is typed before it arrives.
        {"an arrow key sends Tab", 2, [](HWND) { TypeKey(VK_RIGHT), Sleep(300), TypeKey(VK_SPACE); }, false},
        {"Alt with the caption's letter", 2, [](HWND) { TypeKey('N', {VK_MENU}); }, false},
        {"a click", 2, [](HWND box) { test::ClickOn(ButtonOf(box, 2)); }, false},
        // As when the box is what the key has brought about.
        {"keys held since before answer nothing", 2,
         [](HWND box) {
             for (const int key : {VK_RETURN, VK_SPACE, static_cast<int>('N'), VK_TAB}) {
                 test::RepeatAndRelease(box, key);
                 EXPECT_TRUE(IsWindow(box) && IsWindowVisible(box)) << key;
             }
             TypeKey(VK_RETURN);
         },
         true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Person person([&] {
            if (const HWND box = WaitForBox()) c.act(box);
        });
        EXPECT_EQ(Show(c.buttons, 8000), c.answer) << c.name;
    }
}

TEST_F(MessageBoxOnScreen, SizeTitleAndOutline) {
    const Text prompt = u"Error sending mail. Make sure that you have your email client correctly installed.";
    const Dpi dpi = WindowDpi(owner_);
    BoxLayout expected;
    {
        const WindowDc dc(owner_);
        GdiSurface surface(dc.Get(), dpi);
        expected = LayOut(3, surface.MeasureText(prompt, FontSpec{}, WrapWidth(dpi), textFormat), dpi);
    }
    RECT box{};
    int region = ERROR;
    Text title;
    bool ownerEnabled = true;
    const Person person([&] {
        const HWND window = WaitForBox();
        if (!window) return;
        GetWindowRect(window, &box);
        const UniqueRegion shape(CreateRectRgn(0, 0, 0, 0));
        region = GetWindowRgn(window, shape.Get());
        title = WindowText(window);
        ownerEnabled = IsWindowEnabled(owner_) != 0;
        TypeKey('O');
    });
    EXPECT_TRUE(Show(3, 6000, prompt));
    EXPECT_EQ(box.right - box.left, TwipsToPixels(expected.size.width, dpi.x));
    EXPECT_EQ(box.bottom - box.top, TwipsToPixels(expected.size.height, dpi.y));
    EXPECT_EQ(region, COMPLEXREGION);
    EXPECT_EQ(title, u"  Test");
    EXPECT_FALSE(ownerEnabled);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

TEST_F(MessageBoxOnScreen, TheIconBlinks) {
    std::atomic<int> changes{0};
    const Person person([&] {
        const HWND box = WaitForBox();
        if (!box) return;
        const Dpi dpi = WindowDpi(box);
        const auto color = [&] {
            const WindowDc dc(box);
            return GetPixel(dc.Get(), TwipsToPixels(design::icon.left + 60, dpi.x),
                            TwipsToPixels((design::icon.top + design::icon.bottom) / 2, dpi.y));
        };
        COLORREF last = color();
        for (int i = 0; i < 150; ++i) {
            Sleep(10);
            if (const COLORREF now = color(); now != last) {
                ++changes;
                last = now;
            }
        }
        TypeKey('O');
    });
    EXPECT_TRUE(ShowMessage(owner_, u"Look", 1, {}, icon::warning, true, 8000));
    EXPECT_GE(changes, 3) << "a change every 300 ms";
    EXPECT_LE(changes, 7);
}

// What the owner's timer does while a box is open. Functions, because the system's calling convention on x86 is not
// that of lambdas.
int innerTime = 0;
std::atomic<bool> inner;
std::atomic<bool> enabledUnderInner;
void CALLBACK ShowInner(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    inner = ShowMessage(window, u"Inner", 11, {}, icon::notice, false, innerTime);
}
void CALLBACK LookAtOwner(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    enabledUnderInner = FindBox() == nullptr || IsWindowEnabled(window);
}
void CALLBACK DestroyOwner(HWND window, UINT, UINT_PTR, DWORD) { DestroyWindow(window); }
void CALLBACK EndProgram(HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(42); }

// Where the outer box closes itself while the inner one is still open, the owner stays closed to input until that one
// goes.
TEST_F(MessageBoxOnScreen, NestedBoxesWaitForTheirOwnAnswers) {
    for (const bool outerGoesFirst : {false, true}) {
        SCOPED_TRACE(outerGoesFirst);
        inner = enabledUnderInner = true;
        innerTime = outerGoesFirst ? 1500 : 300;
        SetTimer(owner_, 7, 200, ShowInner);
        if (outerGoesFirst) SetTimer(owner_, 8, 1100, LookAtOwner);
        EXPECT_TRUE(Show(2, outerGoesFirst ? 500 : 1500));
        EXPECT_FALSE(inner);
        EXPECT_NE(enabledUnderInner, outerGoesFirst);
        EXPECT_TRUE(IsWindowEnabled(owner_));
        EXPECT_EQ(owner_, GetActiveWindow());
    }
}

TEST_F(MessageBoxOnScreen, TheOwnerGoesMeanwhile) {
    SetTimer(owner_, 7, 300, DestroyOwner);
    EXPECT_FALSE(Show(2));
    EXPECT_EQ(FindBox(), nullptr);
}

TEST_F(MessageBoxOnScreen, TheProgramEndsMeanwhile) {
    SetTimer(owner_, 7, 300, EndProgram);
    EXPECT_FALSE(Show(2));
    EXPECT_EQ(TakeQuit(), 42) << "the loop outside must hear of it";
}

// How often a window procedure of this thread was told that its caption is pressed.
std::atomic<int> captionPresses{0};

LRESULT CALLBACK CountCaptionPresses(int code, WPARAM wParam, LPARAM lParam) {
    const auto* sent = reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent->message == WM_NCLBUTTONDOWN && sent->wParam == HTCAPTION &&
        sent->hwnd == FindBox()) {
        ++captionPresses;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Any point of the box is its caption to the system, which then moves the window with the mouse. (Synthetic input does
// not reach the window managers that do the moving on some displays, so the way itself is not measured.)
TEST_F(MessageBoxOnScreen, DraggedByAnyPoint) {
    captionPresses = 0;
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, CountCaptionPresses, nullptr, GetCurrentThreadId());
    const Person person([&] {
        const HWND box = WaitForBox();
        if (!box) return;
        const RECT bounds = test::AreaOf(box);
        test::MoveMouseTo({bounds.left + 20, bounds.bottom - 12});
        test::LeftButton(true);
        Sleep(100);
        test::LeftButton(false);
        Sleep(300);
        TypeKey('Y');
    });
    EXPECT_TRUE(Show(2, 8000));
    UnhookWindowsHookEx(hook);
    EXPECT_EQ(captionPresses, 1);
}

// How many graphics objects the system itself keeps of as many windows with a shape, when they have gone.
long KeptOfShapedWindows(int count) {
    const long before = test::CountResources().gdiObjects;
    for (int i = 0; i < count; ++i) {
        const HWND window =
            CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
        SetWindowRgn(window, CreateRoundRectRgn(0, 0, 50, 50, 9, 9), TRUE);
        test::Settle(20);
        DestroyWindow(window);
    }
    return std::max(0L, test::CountResources().gdiObjects - before);
}

TEST_F(MessageBoxOnScreen, NothingStaysBehind) {
    KeptOfShapedWindows(1);
    const long kept = KeptOfShapedWindows(20);
    test::ExpectNothingLeftBehind(
        20, [&] { Show(2, 1); }, kept);
}

}  // namespace
}  // namespace qvx::dialogs
