// The About box on a screen.
#include <gtest/gtest.h>

#include <atomic>

#include "dialogs/about_box.h"
#include "dialogs/about_dialog.h"
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

// Mail links lead to a program that is not there, for this process and the length of a scope.
class BrokenMail {
  public:
    BrokenMail() {
        RegCreateKeyExW(HKEY_CURRENT_USER, root, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &classes_,
                        nullptr);
        HKEY key = nullptr;
        RegCreateKeyExW(classes_, L"mailto\\shell\\open\\command", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &key, nullptr);
        RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(command), sizeof command);
        RegCloseKey(key);
        RegSetKeyValueW(classes_, L"mailto", L"URL Protocol", REG_SZ, L"", sizeof(wchar_t));
        RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_);
    }
    ~BrokenMail() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(classes_);
        RegDeleteTreeW(HKEY_CURRENT_USER, root);
    }
    BrokenMail(const BrokenMail&) = delete;
    BrokenMail& operator=(const BrokenMail&) = delete;

  private:
    static constexpr wchar_t root[] = L"Software\\QvxControlTests";
    static constexpr wchar_t command[] = L"C:\\no\\such\\program.exe";
    HKEY classes_ = nullptr;
};

class AboutBoxOnScreen : public test::OwnedDialogTest {
  protected:
    // Returns when the box is closed and the person has done everything.
    void ShowTo(std::function<void()> acts) const {
        const Person person(std::move(acts));
        ShowAboutBox(owner_);
    }
};

TEST_F(AboutBoxOnScreen, AnyKeyClosesItThatIsNotHeldSinceBefore) {
    std::atomic<bool> stays{false};
    ShowTo([&] {
        const HWND about = WaitForWindow(L"QvxAbout");
        test::RepeatAndRelease(about, VK_RETURN);
        stays = about && IsWindow(about);
        TypeKey(VK_F1);
    });
    EXPECT_TRUE(stays);
    EXPECT_EQ(FindWindowW(L"QvxAbout", nullptr), nullptr);
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

TEST_F(AboutBoxOnScreen, AClickOnTheFormClosesItAndAFailingMailLinkIsReported) {
    const BrokenMail mail;
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

// A function with the system's calling convention; lambdas have none of their own on x86.
std::atomic<int> returned;
void CALLBACK ShowAgain(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    ShowAboutBox(window);
    ++returned;
}

TEST_F(AboutBoxOnScreen, ASecondCallOnlyBringsItToTheFront) {
    returned = 0;
    SetTimer(owner_, 7, 200, ShowAgain);
    ShowTo([&] {
        if (!WaitForWindow(L"QvxAbout")) return;
        WaitFor([] { return returned == 1; }, 3000, false);
        TypeKey(VK_ESCAPE);
    });
    EXPECT_EQ(returned, 1);
    EXPECT_EQ(FindWindowW(L"QvxAbout", nullptr), nullptr);
}

}  // namespace
}  // namespace qvx
