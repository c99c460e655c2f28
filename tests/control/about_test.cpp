// The About box on a screen.
#include <gtest/gtest.h>
#include <shellapi.h>

#include <atomic>
#include <cwchar>

#include "dialogs/about_box.h"
#include "dialogs/about_dialog.h"
#include "tests/support/import_patch.h"
#include "tests/support/input.h"
#include "tests/support/owned_dialog.h"
#include "win/dpi.h"
#include "win/window_text.h"

namespace qvx {
namespace {

using test::Person;
using test::TypeKey;
using test::WaitFor;
using test::WaitForWindow;

POINT LabelPoint(HWND about, about::Label label) {
    const Rect& twips = about::Labels()[static_cast<std::size_t>(label)].twips;
    const Dpi dpi = WindowDpi(about);
    POINT point{TwipsToPixels(twips.left + 300, dpi.x), TwipsToPixels((twips.top + twips.bottom) / 2, dpi.y)};
    ClientToScreen(about, &point);
    return point;
}

void ClickAt(POINT point) {
    test::MoveMouseTo(point);
    test::LeftButton(true);
    test::LeftButton(false);
    Sleep(300);
}

HINSTANCE WINAPI OpenNothing(HWND, LPCWSTR, LPCWSTR link, LPCWSTR, LPCWSTR, INT) {
    EXPECT_EQ(std::wcsncmp(link, L"mailto:", 7), 0);
    return reinterpret_cast<HINSTANCE>(SE_ERR_NOASSOC);
}

class AboutBoxOnScreen : public test::OwnedDialogTest {
  protected:
    // Returns when the box is closed and the person has done everything.
    void ShowTo(std::function<void()> acts) const {
        const Person person(std::move(acts));
        ShowAboutBox(owner_);
    }
};

// A function with the system's calling convention; lambdas have none of their own on x86.
std::atomic<int> returned;
void CALLBACK ShowAgain(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    ShowAboutBox(window);
    ++returned;
}

// Calling it again meanwhile only brings it to the front.
TEST_F(AboutBoxOnScreen, AnyKeyClosesItThatIsNotHeldSinceBefore) {
    std::atomic<bool> stays{false};
    returned = 0;
    SetTimer(owner_, 7, 200, ShowAgain);
    ShowTo([&] {
        const HWND about = WaitForWindow(L"QvxAbout");
        test::RepeatAndRelease(about, VK_RETURN);
        stays = about && IsWindow(about) && WaitFor([] { return returned == 1; }, 3000, false);
        TypeKey(VK_F1);
    });
    EXPECT_TRUE(stays);
    EXPECT_EQ(FindWindowW(L"QvxAbout", nullptr), nullptr);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

TEST_F(AboutBoxOnScreen, AClickOnTheFormClosesItAndAFailingMailLinkIsReported) {
    const test::ImportPatch mail(GetModuleHandleW(nullptr), "ShellExecuteW", reinterpret_cast<void*>(&OpenNothing));
    ASSERT_TRUE(mail.Found());
    Text title;
    bool openAfterLabel = false;
    bool openAfterMail = false;
    bool openAfterForm = true;
    ShowTo([&] {
        const HWND about = WaitForWindow(L"QvxAbout");
        if (!about) return;
        Sleep(200);
        ClickAt(LabelPoint(about, about::Label::company));
        openAfterLabel = IsWindow(about) != 0;
        ClickAt(LabelPoint(about, about::Label::mail));
        if (const HWND box = WaitForWindow(L"QvxMessageBox")) title = WindowText(box);
        TypeKey('O');
        Sleep(300);
        openAfterMail = IsWindow(about) && IsWindowEnabled(about);
        SetForegroundWindow(about);
        Sleep(100);
        POINT ground{20, 3};
        ClientToScreen(about, &ground);
        ClickAt(ground);
        openAfterForm = IsWindow(about) != 0;
        if (openAfterForm) TypeKey(VK_ESCAPE);
    });
    EXPECT_TRUE(openAfterLabel);
    EXPECT_EQ(title, u"  Send E-mail");
    EXPECT_TRUE(openAfterMail);
    EXPECT_FALSE(openAfterForm);
}

}  // namespace
}  // namespace qvx
