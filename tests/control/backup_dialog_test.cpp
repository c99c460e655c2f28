// The backup dialog and the password prompt on a screen, with a keyboard and a mouse.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <oleacc.h>

#include <atomic>

#include "com/bstr.h"
#include "com/pointer.h"
#include "common/run_time_error.h"
#include "controls/backup/backup_dialog.h"
#include "controls/backup/dialog_layout.h"
#include "controls/backup/password_dialog.h"
#include "tests/support/beep_count.h"
#include "tests/support/error_of.h"
#include "tests/support/form_window.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/owned_dialog.h"
#include "tests/support/resource_counts.h"
#include "win/dpi.h"
#include "win/handles.h"

namespace qvx::backup {
namespace {

using test::FocusOf;
using test::FormPerson;
using test::TextOf;
using test::TypeKey;
using test::TypeText;
using test::WaitFor;
using test::WaitForForm;

struct Parts {
    explicit Parts(HWND form_)
        : form(form_),
          location(test::ChildrenOf(form_, L"EDIT").at(0)),
          browse(GetDlgItem(form_, 3)),
          email(test::ChildrenOf(form_, L"BUTTON").at(0)),
          groupName(test::ChildrenOf(form_, L"EDIT").at(1)),
          outcome(test::ChildrenOf(form_, L"STATIC").at(1)),
          ok(GetDlgItem(form_, IDOK)),
          cancel(GetDlgItem(form_, IDCANCEL)) {}
    HWND form, location, browse, email, groupName, outcome, ok, cancel;
};

// Returns the name and the value that a screen reader gets; must be asked on the window's thread.
Text Spoken(HWND window) {
    ComPtr<IAccessible> object;
    if (FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                          object.put_void()))) {
        return u"nothing";
    }
    VARIANT self{};
    self.vt = VT_I4;
    Bstr name;
    Bstr value;
    object->get_accName(self, name.put());
    object->get_accValue(self, value.put());
    return name.ToText() + u"=" + value.ToText();
}

class BackupDialogOnScreen : public test::OwnedDialogTest {
  protected:
    // The person does something with the dialog, which is then closed if it is still open.
    void With(Mode mode, const std::function<void(const Parts&)>& acts) {
        BackupDialog dialog(mode);
        dialog_ = &dialog;
        dialog.onBrowse = [this](FormState& form) {
            ++browsed_;
            if (browse_) browse_(form);
        };
        dialog.onRun = [this](FormState& form) {
            ++ran_;
            if (run_) run_(form);
        };
        const FormPerson person([&] {
            const HWND form = WaitForForm(mode == Mode::backup ? L"Backup" : L"Restore");
            if (!form) return;
            acts(Parts(form));
            if (IsWindow(form)) PostMessageW(form, WM_CLOSE, 0, 0);
        });
        dialog.Run(owner_);
        quit_ = test::TakeQuit();
        EXPECT_EQ(nullptr, dialog.Handle());
        EXPECT_TRUE(IsWindowEnabled(owner_));
        WaitForOwner();
    }

    BackupDialog* dialog_ = nullptr;
    std::function<void(FormState&)> browse_;
    std::function<void(FormState&)> run_;
    std::atomic<int> browsed_{0};
    std::atomic<int> ran_{0};
    std::optional<int> quit_;  // what the loop outside hears
};

// Whatever is above is what shows, and what a click reaches unless it is disabled.
void ExpectNothingCovered(const Parts& parts) {
    for (const HWND part : {parts.location, parts.browse, parts.email, parts.ok, parts.cancel}) {
        EXPECT_TRUE(part == parts.ok || part == WindowFromPoint(test::CenterOf(part)));
        const WindowDc dc(part);
        RECT shows{};
        EXPECT_NE(NULLREGION, GetClipBox(dc.Get(), &shows)) << "nothing of it shows";
    }
}

// The dialog drops what is typed before its work is over.
bool Soon(const std::function<bool()>& holds) {
    const bool held = WaitFor(holds, 3000, false);
    Sleep(150);
    return held;
}

TEST_F(BackupDialogOnScreen, ABackupByItsKeys) {
    browse_ = [this](FormState& form) {
        form.location = u"C:\\x";
        dialog_->Refresh(form);
    };
    With(Mode::backup, [&](const Parts& parts) {
        const auto enabled = [&] { return IsWindowEnabled(parts.ok) != 0; };
        ExpectNothingCovered(parts);
        EXPECT_EQ(Wide(Text(form::Caption(form::Item::email, Mode::backup))), TextOf(parts.email));
        EXPECT_FALSE(IsWindowEnabled(owner_));
        EXPECT_EQ(parts.location, FocusOf(parts.form));
        // OK is enabled by a location.
        EXPECT_FALSE(enabled());
        TypeText(L"  ");
        TypeKey(VK_RETURN);
        Sleep(100);
        EXPECT_FALSE(enabled());
        TypeText(L"x");
        EXPECT_TRUE(Soon(enabled));
        EXPECT_EQ(0, ran_);
        TypeKey(VK_RETURN);
        EXPECT_TRUE(Soon([&] { return ran_ == 1; }));
        TypeKey('A', {VK_CONTROL});
        TypeKey(VK_DELETE);
        EXPECT_TRUE(Soon([&] { return !enabled(); }));
        TypeKey('W', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return TextOf(parts.location) == L"C:\\x"; }));
        // Enter presses the button with the focus, and OK from anywhere else.
        TypeKey(VK_RETURN);
        EXPECT_TRUE(Soon([&] { return browsed_ == 2; }));
        EXPECT_EQ(1, ran_);
        TypeKey('E', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return SendMessageW(parts.email, BM_GETCHECK, 0, 0) == BST_CHECKED; }));
        EXPECT_EQ(parts.email, FocusOf(parts.form));
        EXPECT_FALSE(IsWindowVisible(parts.groupName));
        TypeKey(VK_RETURN);
        EXPECT_TRUE(Soon([&] { return ran_ == 2; }));
        // Nothing is typed on a check box, so the letter alone will do.
        TypeKey('B');
        EXPECT_TRUE(Soon([&] { return ran_ == 3; }));
        TypeKey('B', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return ran_ == 4; }));
        TypeKey(VK_ESCAPE);
        EXPECT_TRUE(Soon([&] { return !IsWindow(parts.form); }));
    });
    EXPECT_EQ(2, browsed_);
    EXPECT_EQ(4, ran_);
}

Text TipOf(HWND form) {
    Text tip;
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, TOOLTIPS_CLASSW, nullptr)) != nullptr;) {
        if (GetWindow(window, GW_OWNER) != form) continue;
        wchar_t text[200]{};
        TTTOOLINFOW info{};
        info.cbSize = TTTOOLINFOW_V1_SIZE;
        info.lpszText = text;
        if (SendMessageW(window, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&info))) tip = FromWide(text);
    }
    return tip;
}

TEST_F(BackupDialogOnScreen, ARestoreByItsKeys) {
    constexpr int dots = 192;
    const DpiOverride resolution({dots, dots});
    test::BeepCount beeps(GetModuleHandleW(nullptr));
    ASSERT_TRUE(beeps.Listening());
    Text spoken;
    browse_ = [&](FormState&) {
        const Parts parts(dialog_->Handle());
        spoken = Spoken(parts.location) + u"|" + Spoken(parts.groupName);
    };
    Text given;
    run_ = [&](FormState& form) {
        given = form.location + u"|" + (form.email ? u"group" : u"") + u"|" + form.groupName;
        form.outcome = u"Completed & done.";
        form.outcomeTip = u"The archiver ended with exit code 3.";
        dialog_->Refresh(form);
    };
    With(Mode::restore, [&](const Parts& parts) {
        ExpectNothingCovered(parts);
        const auto rightToLeft = [&] { return (GetWindowLongW(parts.location, GWL_EXSTYLE) & WS_EX_RTLREADING) != 0; };
        TypeText(L"\x05D0\x05D1");
        EXPECT_TRUE(Soon(rightToLeft)) << "a text runs its own way";
        TypeKey('A', {VK_CONTROL});
        TypeText(L"C:\\a|b");
        EXPECT_TRUE(Soon([&] { return TextOf(parts.location) == L"C:\\a|b"; })) << "a path is not a name";
        EXPECT_FALSE(rightToLeft());
        EXPECT_EQ(0, beeps.Take());
        TypeKey('W', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return browsed_ == 1; }));
        for (const bool group : {false, true}) {
            SCOPED_TRACE(group);
            if (group) TypeKey('S', {VK_MENU});
            EXPECT_TRUE(Soon([&] { return (IsWindowVisible(parts.groupName) != 0) == group; }));
            const RECT bounds = test::AreaOf(parts.form);
            EXPECT_EQ(TwipsToPixels(group ? 2550 : 2145, dots), bounds.bottom - bounds.top);
            while (FocusOf(parts.form) != parts.location) {
                TypeKey(VK_TAB);
                Sleep(100);
            }
            std::vector<HWND> expected{parts.browse, parts.email,  parts.groupName,
                                       parts.ok,     parts.cancel, parts.location};
            if (!group) expected.erase(expected.begin() + 2);
            for (const HWND next : expected) {
                TypeKey(VK_TAB);
                EXPECT_TRUE(Soon([&] { return FocusOf(parts.form) == next; }));
            }
            // A field that is entered by Tab is selected, to be written over.
            TypeText(L"path");
            EXPECT_TRUE(Soon([&] { return TextOf(parts.location) == L"path"; }));
            TypeKey(VK_TAB, {VK_SHIFT});
            EXPECT_TRUE(Soon([&] { return FocusOf(parts.form) == parts.cancel; }));
        }
        // A name refuses what files refuse.
        TypeKey('N', {VK_MENU});
        TypeText(L"a\"*/:b<>?\\|c d");
        EXPECT_TRUE(Soon([&] { return TextOf(parts.groupName) == L"abc d"; }));
        EXPECT_EQ(9, beeps.Take());
        TypeKey('R', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return TextOf(parts.outcome) == L"Completed & done."; }));
        EXPECT_EQ(u"path|group|abc d", given);
        EXPECT_EQ(u"The archiver ended with exit code 3.", TipOf(parts.form));
        TypeKey('C', {VK_MENU});
        EXPECT_TRUE(Soon([&] { return !IsWindow(parts.form); }));
    });
    EXPECT_EQ(u"Restore From=C:\\a|b|Group name :=", spoken) << "to screen readers";
}

// What is typed while the work goes on, on something that looks as it did before, is for nobody. When the program ends
// meanwhile, the dialog closes and the host's own loop hears of it, although what was typed is dropped.
TEST_F(BackupDialogOnScreen, TakesNoInputMeanwhileAndLetsTheProgramEnd) {
    run_ = [&](FormState&) {
        if (ran_ == 2) {
            PostQuitMessage(42);
            return;
        }
        SendMessageW(dialog_->Handle(), WM_CLOSE, 0, 0);
        SendMessageW(GetDlgItem(dialog_->Handle(), IDOK), WM_SYSCHAR, 'b', 0);
        TypeKey(VK_RETURN);
        TypeKey(VK_ESCAPE);
        Sleep(200);
    };
    bool closed = false;
    With(Mode::backup, [&](const Parts& parts) {
        TypeText(L"path");
        TypeKey(VK_RETURN);
        Sleep(800);
        EXPECT_TRUE(IsWindow(parts.form));
        EXPECT_EQ(1, ran_);
        // And afterwards it does again.
        TypeKey(VK_RETURN);
        closed = Soon([&] { return !IsWindow(parts.form); });
    });
    EXPECT_TRUE(closed);
    EXPECT_EQ(quit_, 42);
}

TEST_F(BackupDialogOnScreen, TheOwnerGoesMeanwhile) {
    BackupDialog dialog(Mode::backup);
    dialog.onBrowse = [this](FormState&) { DestroyWindow(owner_); };
    const FormPerson person([] {
        if (WaitForForm(L"Backup")) TypeKey('W', {VK_MENU});
    });
    dialog.Run(owner_);
    EXPECT_EQ(nullptr, dialog.Handle());
}

void CALLBACK CloseForm(HWND window, UINT, UINT_PTR id, DWORD) {
    KillTimer(window, id);
    PostMessageW(test::FindForm(nullptr), WM_CLOSE, 0, 0);
}

TEST_F(BackupDialogOnScreen, NothingStaysBehind) {
    test::ExpectNothingLeftBehind(30, [&] {
        SetTimer(owner_, 7, 50, CloseForm);
        BackupDialog dialog(Mode::restore);
        dialog.Run(owner_);
    });
}

// ---- The password prompt -------------------------------------------------------------------------------------------

class PasswordPromptOnScreen : public test::OwnedDialogTest {
  protected:
    bool Ask(PasswordSource source, const std::function<void(HWND)>& acts) {
        const FormPerson person([&] {
            if (const HWND form = WaitForForm(L"Password")) acts(form);
        });
        PasswordDialog prompt(std::move(source));
        const bool accepted = prompt.Run(owner_);
        EXPECT_TRUE(prompt.Handle()) << "hidden until it is closed";
        EXPECT_FALSE(IsWindowVisible(prompt.Handle()));
        EXPECT_EQ(L"", TextOf(test::ChildrenOf(prompt.Handle(), L"EDIT").at(0)));
        EXPECT_TRUE(IsWindowEnabled(owner_));
        WaitForOwner();
        return accepted;
    }
    static std::optional<Text> Secret() { return Text(u"Secret"); }
};

// A message about a wrong password closes itself; then the next try can be typed at once.
TEST_F(PasswordPromptOnScreen, TakesTheRightPasswordOnly) {
    std::atomic<int> asked{0};
    Text spoken;
    bool hidden = false;
    const auto source = [&] {
        ++asked;
        const HWND field = test::ChildrenOf(test::FindForm(L"Password"), L"EDIT").at(0);
        spoken = Spoken(field);
        hidden = SendMessageW(field, EM_GETPASSWORDCHAR, 0, 0) != 0;
        return Secret();
    };
    EXPECT_TRUE(Ask(source, [&](HWND form) {
        const HWND field = test::ChildrenOf(form, L"EDIT").at(0);
        for (const int key : {static_cast<int>('X'), VK_RETURN, VK_SPACE}) test::RepeatAndRelease(form, key);
        EXPECT_EQ(L"", TextOf(field)) << "keys held since before";
        EXPECT_EQ(0, asked);
        // By the label's access key, from the button.
        TypeKey(VK_TAB);
        Sleep(100);
        TypeKey('P', {VK_MENU});
        Sleep(100);
        TypeText(L"secret");
        TypeKey(VK_RETURN);
        const HWND box = test::WaitForBox();
        EXPECT_EQ(L"  Error:Password", TextOf(box));
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box) && FocusOf(form) == field; }, 5000, false));
        Sleep(200);
        TypeText(L"Secret");  // in the place of the other, which is selected
        TypeKey('O', {VK_MENU});
    }));
    EXPECT_EQ(2, asked);
    EXPECT_TRUE(hidden);
    EXPECT_EQ(u"Password :=", spoken) << "it is read out by nobody";
}

TEST_F(PasswordPromptOnScreen, GivingUpIsNoPassword) {
    const std::function<void(HWND)> ways[] = {
        [](HWND) { TypeKey(VK_ESCAPE); },
        [](HWND) { TypeKey('C', {VK_MENU}); },
        [](HWND form) { test::ClickOn(GetDlgItem(form, IDCANCEL)); },
        [](HWND form) { PostMessageW(form, WM_SYSCOMMAND, SC_CLOSE, 0); },
    };
    for (const auto& way : ways) {
        EXPECT_FALSE(Ask(Secret, [&](HWND form) {
            TypeText(L"Secret");
            way(form);
        }));
    }
}

TEST_F(PasswordPromptOnScreen, AnErrorOfTheDatabaseEndsIt) {
    const auto source = []() -> std::optional<Text> { throw RunTimeError(3021, u"No current record."); };
    const FormPerson person([] {
        if (WaitForForm(L"Password")) TypeKey(VK_RETURN);
    });
    PasswordDialog prompt(source);
    EXPECT_EQ(3021, test::ErrorOf([&] { prompt.Run(owner_); }));
    EXPECT_FALSE(IsWindowVisible(prompt.Handle()));
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

}  // namespace
}  // namespace qvx::backup
