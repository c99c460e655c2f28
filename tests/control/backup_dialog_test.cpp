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

// As a screen reader gets them; must be asked on the window's thread.
struct Spoken {
    explicit Spoken(HWND window) {
        ComPtr<IAccessible> object;
        if (FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                              object.put_void()))) {
            return;
        }
        VARIANT self{};
        self.vt = VT_I4;
        Bstr text;
        if (object->get_accName(self, text.put()) == S_OK) name = text.ToText();
        Bstr second;
        if (object->get_accValue(self, second.put()) == S_OK) value = second.ToText();
    }
    Text name;
    Text value;
};

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

TEST_F(BackupDialogOnScreen, OpensWithNothingCovered) {
    for (const Mode mode : {Mode::backup, Mode::restore}) {
        With(mode, [&](const Parts& parts) {
            EXPECT_EQ(Wide(Text(form::Caption(form::Item::email, mode))), TextOf(parts.email));
            EXPECT_FALSE(IsWindowEnabled(owner_));
            EXPECT_EQ(parts.location, FocusOf(parts.form));
            // Whoever is above is what shows, and what a click reaches unless it is disabled.
            for (const HWND part : {parts.location, parts.browse, parts.email, parts.ok, parts.cancel}) {
                EXPECT_TRUE(part == parts.ok || part == WindowFromPoint(test::CenterOf(part)));
                const WindowDc dc(part);
                RECT shows{};
                EXPECT_NE(NULLREGION, GetClipBox(dc.Get(), &shows)) << "nothing of it shows";
            }
        });
    }
}

TEST_F(BackupDialogOnScreen, OkIsEnabledByALocation) {
    With(Mode::backup, [&](const Parts& parts) {
        EXPECT_FALSE(IsWindowEnabled(parts.ok));
        TypeText(L"  ");
        EXPECT_FALSE(IsWindowEnabled(parts.ok));
        TypeKey(VK_RETURN);
        TypeText(L"x");
        EXPECT_TRUE(IsWindowEnabled(parts.ok));
        EXPECT_EQ(0, ran_);
        TypeKey(VK_RETURN);
        Sleep(300);
        EXPECT_EQ(1, ran_);
        TypeKey('A', {VK_CONTROL});
        TypeKey(VK_DELETE);
        Sleep(100);
        EXPECT_FALSE(IsWindowEnabled(parts.ok));
    });
}

TEST_F(BackupDialogOnScreen, AccessKeysReachEverything) {
    for (const Mode mode : {Mode::backup, Mode::restore}) {
        browsed_ = ran_ = 0;
        browse_ = [this](FormState& form) {
            form.location = u"C:\\x";
            dialog_->Refresh(form);
        };
        With(mode, [&](const Parts& parts) {
            TypeKey('W', {VK_MENU});
            Sleep(300);
            EXPECT_EQ(1, browsed_);
            EXPECT_EQ(L"C:\\x", TextOf(parts.location));
            TypeKey(mode == Mode::backup ? 'E' : 'S', {VK_MENU});
            Sleep(200);
            EXPECT_EQ(BST_CHECKED, SendMessageW(parts.email, BM_GETCHECK, 0, 0));
            EXPECT_EQ(parts.email, FocusOf(parts.form));
            // Nothing is typed on a check box, so the letter alone will do.
            TypeKey(mode == Mode::backup ? 'B' : 'R');
            Sleep(300);
            EXPECT_EQ(1, ran_);
            TypeKey(mode == Mode::backup ? 'B' : 'R', {VK_MENU});
            Sleep(300);
            EXPECT_EQ(2, ran_);
            TypeKey('C', {VK_MENU});
            EXPECT_TRUE(WaitFor([&] { return !IsWindow(parts.form); }, 3000, false));
        });
    }
}

TEST_F(BackupDialogOnScreen, TabGoesRound) {
    for (const bool group : {false, true}) {
        With(Mode::restore, [&](const Parts& parts) {
            if (group) TypeKey('S', {VK_MENU});
            Sleep(200);
            PostMessageW(parts.form, WM_NEXTDLGCTL, 0, 0);
            while (FocusOf(parts.form) != parts.location) {
                TypeKey(VK_TAB);
                Sleep(100);
            }
            TypeText(L"path");
            std::vector<HWND> expected{parts.browse, parts.email,  parts.groupName,
                                       parts.ok,     parts.cancel, parts.location};
            if (!group) expected.erase(expected.begin() + 2);
            for (const HWND next : expected) {
                TypeKey(VK_TAB);
                Sleep(100);
                EXPECT_EQ(next, FocusOf(parts.form));
            }
            // A field that is entered by Tab is selected, to be written over.
            TypeText(L"other");
            EXPECT_EQ(L"other", TextOf(parts.location));
            TypeKey(VK_TAB, {VK_SHIFT});
            Sleep(100);
            EXPECT_EQ(parts.cancel, FocusOf(parts.form));
        });
    }
}

// Enter presses the button with the focus; Escape cancels from anywhere.
TEST_F(BackupDialogOnScreen, EnterAndEscape) {
    With(Mode::backup, [&](const Parts& parts) {
        TypeText(L"path");
        TypeKey(VK_TAB);
        Sleep(100);
        TypeKey(VK_RETURN);
        Sleep(300);
        EXPECT_EQ(1, browsed_);
        EXPECT_EQ(0, ran_);
        TypeKey(VK_TAB);
        Sleep(100);
        TypeKey(VK_RETURN);  // on the check box
        Sleep(300);
        EXPECT_EQ(1, ran_);
        TypeKey(VK_ESCAPE);
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(parts.form); }, 3000, false));
    });
}

int HeightOf(HWND window) {
    RECT bounds{};
    GetWindowRect(window, &bounds);
    return static_cast<int>(bounds.bottom - bounds.top);
}

TEST_F(BackupDialogOnScreen, IsAsHighAsItsContent) {
    for (const int dots : {96, 192}) {
        const DpiOverride resolution({dots, dots});
        With(Mode::restore, [&](const Parts& parts) {
            EXPECT_EQ(TwipsToPixels(2145, dots), HeightOf(parts.form));
            EXPECT_FALSE(IsWindowVisible(parts.groupName));
            TypeKey('S', {VK_MENU});
            Sleep(200);
            EXPECT_EQ(TwipsToPixels(2550, dots), HeightOf(parts.form));
            EXPECT_TRUE(IsWindowVisible(parts.groupName));
            RECT client{};
            RECT field{};
            GetClientRect(parts.form, &client);
            GetWindowRect(parts.groupName, &field);
            MapWindowPoints(nullptr, parts.form, reinterpret_cast<POINT*>(&field), 2);
            EXPECT_LE(field.bottom, client.bottom);
            TypeKey('S', {VK_MENU});
            Sleep(200);
            EXPECT_EQ(TwipsToPixels(2145, dots), HeightOf(parts.form));
            EXPECT_FALSE(GetWindowLongW(parts.groupName, GWL_STYLE) & WS_TABSTOP);
        });
        With(Mode::backup, [&](const Parts& parts) {
            TypeKey('E', {VK_MENU});
            Sleep(200);
            EXPECT_EQ(TwipsToPixels(2145, dots), HeightOf(parts.form));
            EXPECT_FALSE(IsWindowVisible(parts.groupName));
        });
    }
}

TEST_F(BackupDialogOnScreen, NamesRefuseWhatFilesRefuse) {
    test::BeepCount beeps(GetModuleHandleW(nullptr));
    ASSERT_TRUE(beeps.Listening());
    With(Mode::restore, [&](const Parts& parts) {
        TypeText(L"C:\\a|b");
        EXPECT_EQ(L"C:\\a|b", TextOf(parts.location)) << "a path is not a name";
        EXPECT_EQ(0, beeps.Take());
        TypeKey('S', {VK_MENU});
        Sleep(100);
        TypeKey(VK_TAB);
        TypeText(L"a\"*/:b<>?\\|c d");
        EXPECT_EQ(L"abc d", TextOf(parts.groupName));
        EXPECT_EQ(9, beeps.Take());
    });
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

TEST_F(BackupDialogOnScreen, TellsHowItWent) {
    Text given;
    run_ = [&](FormState& form) {
        given = form.location + u"|" + (form.email ? u"mail" : u"") + u"|" + form.groupName;
        form.outcome = u"Completed & done.";
        form.outcomeTip = u"The archiver ended with exit code 3.";
        dialog_->Refresh(form);
    };
    With(Mode::restore, [&](const Parts& parts) {
        TypeText(L"path");
        TypeKey('S', {VK_MENU});
        Sleep(100);
        TypeKey('N', {VK_MENU});
        TypeText(L"name");
        TypeKey(VK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return TextOf(parts.outcome) == L"Completed & done."; }, 3000, false));
        EXPECT_EQ(u"path|mail|name", given);
        EXPECT_EQ(u"The archiver ended with exit code 3.", TipOf(parts.form));
    });
}

// What is typed while the work goes on, on something that looks as it did before, is for nobody.
TEST_F(BackupDialogOnScreen, TakesNoInputMeanwhile) {
    run_ = [&](FormState&) {
        SendMessageW(dialog_->Handle(), WM_CLOSE, 0, 0);
        SendMessageW(GetDlgItem(dialog_->Handle(), IDOK), WM_SYSCHAR, 'b', 0);
        TypeKey(VK_RETURN);
        TypeKey(VK_ESCAPE);
        Sleep(200);
    };
    With(Mode::backup, [&](const Parts& parts) {
        TypeText(L"path");
        TypeKey(VK_RETURN);
        Sleep(800);
        EXPECT_TRUE(IsWindow(parts.form));
        EXPECT_EQ(1, ran_);
        // And afterwards it does again.
        TypeKey(VK_RETURN);
        Sleep(800);
        EXPECT_EQ(2, ran_);
    });
}

// The dialog closes and the host's own loop hears of it, although what was typed meanwhile is dropped.
TEST_F(BackupDialogOnScreen, TheProgramEndsMeanwhile) {
    run_ = [](FormState&) { PostQuitMessage(42); };
    bool closed = false;
    With(Mode::backup, [&](const Parts& parts) {
        TypeText(L"path");
        TypeKey(VK_RETURN);
        closed = WaitFor([&] { return !IsWindow(parts.form); }, 3000, false);
    });
    EXPECT_TRUE(closed);
    EXPECT_EQ(quit_, 42);
}

TEST_F(BackupDialogOnScreen, ScreenReadersLearnWhatTheFieldsAre) {
    Text location;
    Text group;
    browse_ = [&](FormState&) {
        const Parts parts(dialog_->Handle());
        location = Spoken(parts.location).name;
        group = Spoken(parts.groupName).name;
    };
    With(Mode::restore, [&](const Parts&) {
        TypeKey('W', {VK_MENU});
        Sleep(500);
    });
    EXPECT_EQ(u"Restore From", location);
    EXPECT_EQ(u"Group name :", group);
}

TEST_F(BackupDialogOnScreen, TextsRunTheirOwnWay) {
    With(Mode::restore, [&](const Parts& parts) {
        const auto rightToLeft = [&] { return (GetWindowLongW(parts.location, GWL_EXSTYLE) & WS_EX_RTLREADING) != 0; };
        TypeText(L"\x05D0\x05D1");
        EXPECT_TRUE(rightToLeft());
        TypeKey('A', {VK_CONTROL});
        TypeText(L"C:");
        EXPECT_FALSE(rightToLeft());
    });
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

TEST_F(PasswordPromptOnScreen, KeysHeldSinceBeforeTypeAndPressNothing) {
    for (const int key : {static_cast<int>('X'), VK_RETURN, VK_SPACE}) {
        int asked = 0;
        const auto source = [&] {
            ++asked;
            return Secret();
        };
        EXPECT_TRUE(Ask(source, [&](HWND form) {
            test::RepeatAndRelease(form, key);
            EXPECT_EQ(L"", TextOf(test::ChildrenOf(form, L"EDIT").at(0))) << key;
            TypeText(L"Secret");
            TypeKey(VK_RETURN);
        })) << key;
        EXPECT_EQ(1, asked) << key;
    }
}

// The message closes itself; then the next try can be typed at once.
TEST_F(PasswordPromptOnScreen, RefusesAnotherCaseAndAsksAgain) {
    std::atomic<int> asked{0};
    const auto source = [&] {
        ++asked;
        return Secret();
    };
    EXPECT_TRUE(Ask(source, [&](HWND form) {
        TypeText(L"secret");
        TypeKey(VK_RETURN);
        const HWND box = test::WaitForBox();
        EXPECT_EQ(L"  Error:Password", TextOf(box));
        EXPECT_TRUE(WaitFor([&] { return !IsWindow(box) && GetForegroundWindow() == form; }, 5000, false));
        Sleep(200);
        const HWND field = test::ChildrenOf(form, L"EDIT").at(0);
        EXPECT_EQ(field, FocusOf(form));
        DWORD start = 9;
        DWORD end = 9;
        SendMessageW(field, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        EXPECT_EQ(0u, start);
        EXPECT_EQ(6u, end);
        TypeText(L"Secret");
        TypeKey('O', {VK_MENU});
    }));
    EXPECT_EQ(2, asked);
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

TEST_F(PasswordPromptOnScreen, IsReadOutByNobody) {
    Text name;
    Text value = u"not asked";
    bool hidden = false;
    const auto source = [&] {
        const HWND field = test::ChildrenOf(test::FindForm(L"Password"), L"EDIT").at(0);
        const Spoken spoken(field);
        name = spoken.name;
        value = spoken.value;
        hidden = SendMessageW(field, EM_GETPASSWORDCHAR, 0, 0) != 0;
        return Secret();
    };
    EXPECT_TRUE(Ask(source, [](HWND) {
        // By the label's access key, from the button.
        TypeKey(VK_TAB);
        Sleep(100);
        TypeKey('P', {VK_MENU});
        Sleep(100);
        TypeText(L"Secret");
        TypeKey(VK_RETURN);
    }));
    EXPECT_EQ(Text::npos, name.find(u"Secret"));
    EXPECT_EQ(u"", value);
    EXPECT_TRUE(hidden);
}

}  // namespace
}  // namespace qvx::backup
