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
    struct {
        int buttons;
        bool answer;
    } const cases[] = {{1, true}, {2, true}, {3, true}, {6, true}, {10, false}, {11, false}};
    for (const auto& c : cases) {
        const ULONGLONG start = GetTickCount64();
        EXPECT_EQ(Show(c.buttons, 300), c.answer) << c.buttons;
        const ULONGLONG taken = GetTickCount64() - start;
        EXPECT_GE(taken, 280U) << c.buttons;
        EXPECT_LT(taken, 3000U) << c.buttons;
        EXPECT_EQ(FindBox(), nullptr);
    }
}

TEST_F(MessageBoxOnScreen, KeysAnswer) {
    struct {
        const char* name;
        int buttons;
        std::function<void()> keys;
        bool answer;
    } const cases[] = {
        {"O", 1, [] { TypeKey('O'); }, true},
        {"Escape with one button", 1, [] { TypeKey(VK_ESCAPE); }, true},
        {"Space on the focused button", 10, [] { TypeKey(VK_SPACE); }, false},
        {"Enter on the focused button", 10, [] { TypeKey(VK_RETURN); }, false},
        {"Tab moves to the other", 10,
         [] {
             TypeKey(VK_TAB);
             TypeKey(VK_SPACE);
         },
         true},
        {"an arrow key sends Tab", 2,
         [] {
             TypeKey(VK_RIGHT);
             // The Tab it sends comes behind what is typed before it arrives.
             Sleep(300);
             TypeKey(VK_SPACE);
         },
         false},
        {"Alt with the caption's letter", 2, [] { TypeKey('N', {VK_MENU}); }, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Person person([&] {
            if (WaitForBox()) c.keys();
        });
        EXPECT_EQ(Show(c.buttons, 6000), c.answer) << c.name;
    }
}

// As when the box is what the key has brought about.
TEST_F(MessageBoxOnScreen, AKeyHeldSinceBeforeAnswersNothing) {
    for (const int key : {VK_RETURN, VK_SPACE, static_cast<int>('N'), VK_TAB}) {
        std::atomic<bool> stays{false};
        const Person person([&] {
            const HWND box = WaitForBox();
            test::RepeatAndRelease(box, key);
            stays = box && IsWindow(box) && IsWindowVisible(box);
            TypeKey(VK_RETURN);
        });
        EXPECT_TRUE(Show(2, 8000)) << key;
        EXPECT_TRUE(stays) << key;
    }
}

TEST_F(MessageBoxOnScreen, TimeOutAfterTheFocusMoved) {
    const Person person([] {
        if (WaitForBox()) TypeKey(VK_TAB);
    });
    EXPECT_FALSE(Show(2, 1500));
}

TEST_F(MessageBoxOnScreen, MouseAnswers) {
    for (const int number : {1, 2}) {
        const Person person([&] {
            if (const HWND box = WaitForBox()) test::ClickOn(ButtonOf(box, number));
        });
        EXPECT_EQ(Show(2, 6000), number == 1);
    }
}

TEST_F(MessageBoxOnScreen, SizeButtonsAndOutline) {
    const Text prompt = u"Error sending mail. Make sure that you have your email client correctly installed.";
    const Dpi dpi = WindowDpi(owner_);
    BoxLayout expected;
    {
        const WindowDc dc(owner_);
        GdiSurface surface(dc.Get(), dpi);
        expected = LayOut(3, surface.MeasureText(prompt, FontSpec{}, WrapWidth(dpi), textFormat), dpi);
    }
    struct {
        RECT box, ok, cancel;
        int region = ERROR;
        Text title;
        bool ownerEnabled = true;
    } seen;
    const Person person([&] {
        const HWND box = WaitForBox();
        if (!box) return;
        GetWindowRect(box, &seen.box);
        GetWindowRect(ButtonOf(box, 1), &seen.ok);
        GetWindowRect(ButtonOf(box, 2), &seen.cancel);
        const UniqueRegion region(CreateRectRgn(0, 0, 0, 0));
        seen.region = GetWindowRgn(box, region.Get());
        wchar_t title[40]{};
        GetWindowTextW(box, title, 40);
        seen.title = Text(title, title + wcslen(title));
        seen.ownerEnabled = IsWindowEnabled(owner_) != 0;
        TypeKey('O');
    });
    EXPECT_TRUE(Show(3, 6000, prompt));
    EXPECT_EQ(seen.box.right - seen.box.left, TwipsToPixels(expected.size.width, dpi.x));
    EXPECT_EQ(seen.box.bottom - seen.box.top, TwipsToPixels(expected.size.height, dpi.y));
    EXPECT_EQ(seen.ok.left - seen.box.left, TwipsToPixels(expected.ok.left, dpi.x));
    EXPECT_EQ(seen.ok.top - seen.box.top, TwipsToPixels(expected.ok.top, dpi.y));
    EXPECT_EQ(seen.cancel.left - seen.box.left, TwipsToPixels(expected.cancel.left, dpi.x));
    EXPECT_EQ(seen.cancel.right - seen.cancel.left, seen.ok.right - seen.ok.left);
    EXPECT_EQ(seen.region, COMPLEXREGION);
    EXPECT_EQ(seen.title, u"  Test");
    EXPECT_FALSE(seen.ownerEnabled);
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
std::atomic<bool> inner;
void CALLBACK ShowInner(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    inner = ShowMessage(window, u"Inner", 11, {}, icon::notice, false, 300);
}
void CALLBACK DestroyOwner(HWND window, UINT, UINT_PTR, DWORD) { DestroyWindow(window); }
void CALLBACK EndProgram(HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(42); }

TEST_F(MessageBoxOnScreen, NestedBoxesWaitForTheirOwnAnswers) {
    // The second box opens from a timer of the owner's while the first one waits.
    inner = true;
    SetTimer(owner_, 7, 400, ShowInner);
    EXPECT_TRUE(Show(2, 1500));
    EXPECT_FALSE(inner);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

// The outer box closes itself while the inner one is still open: the owner stays closed to input until that one goes.
std::atomic<bool> enabledUnderInner;
void CALLBACK ShowLongInner(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    ShowMessage(window, u"Inner", 2, {}, icon::notice, false, 1500);
}
void CALLBACK LookAtOwner(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    enabledUnderInner = FindBox() == nullptr || IsWindowEnabled(window);
}

TEST_F(MessageBoxOnScreen, AnOuterBoxThatTimesOutLeavesTheOwnerToTheInnerOne) {
    enabledUnderInner = true;
    SetTimer(owner_, 7, 200, ShowLongInner);
    SetTimer(owner_, 8, 1100, LookAtOwner);
    EXPECT_TRUE(Show(2, 500));
    EXPECT_FALSE(enabledUnderInner);
    EXPECT_TRUE(IsWindowEnabled(owner_));
    EXPECT_EQ(owner_, GetActiveWindow());
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
        RECT bounds{};
        GetWindowRect(box, &bounds);
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

TEST_F(MessageBoxOnScreen, NothingStaysBehind) {
    test::ExpectNothingLeftBehind(20, [&] { Show(2, 1); });
}

}  // namespace
}  // namespace qvx::dialogs
