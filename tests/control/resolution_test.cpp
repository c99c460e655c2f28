// Windows that come to a monitor of another resolution: they become what they would have been there from the start, and
// what they were when they come back.
#include <gtest/gtest.h>

#include <map>

#include "Qvx.h"
#include "com/bstr.h"
#include "controls/backup/password_dialog.h"
#include "controls/grid/column_page_object.h"
#include "designer/editors/image_editor_dialog.h"
#include "designer/editors/menu_editor_dialog.h"
#include "designer/editors/property_frame_dialog.h"
#include "dialogs/about_dialog.h"
#include "dialogs/show_message_dialog.h"
#include "tests/control/designer_form.h"
#include "tests/support/form_window.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/owned_dialog.h"
#include "tests/support/resolution.h"

namespace qvx {
namespace {

using test::LookOf;
using test::Monitor;

constexpr int resolutions[] = {96, 144, 192};

// ---- Dialogs -------------------------------------------------------------------------------------------------------

// What somebody sees of one.
struct Seen {
    std::string look;
    test::PixelPicture picture;

    explicit Seen(HWND dialog) : look(LookOf(dialog)), picture(test::PictureOnScreen(dialog)) {}
    Seen() = default;
};

struct Dialog {
    const char* name;
    std::function<void(HWND owner)> show;
    std::function<HWND()> wait;  // from the person's thread
    bool still;                  // nothing blinks in it or was measured where it opened
};

class Resolution : public test::OwnedDialogTest, public ::testing::WithParamInterface<Dialog> {
  protected:
    void SetUp() override {
        test::OwnedDialogTest::SetUp();
        // Off the buttons, which rise under it.
        test::MoveMouseTo({1, 1});
    }
    void With(const std::function<void(HWND dialog)>& acts) {
        const test::Person person([&] {
            const HWND dialog = GetParam().wait();
            if (!dialog) return;
            acts(dialog);
            // By the close box, which no key that went astray can press.
            PostMessageW(dialog, WM_CLOSE, 0, 0);
        });
        GetParam().show(owner_);
        WaitForOwner();
    }
    static Seen Look(HWND dialog) {
        UpdateWindow(dialog);
        Sleep(300);
        return Seen(dialog);
    }
};

TEST_P(Resolution, ADialogFollowsItsMonitor) {
    std::map<int, Seen> fresh;
    for (const int dots : resolutions) {
        const Monitor monitor(dots);
        With([&](HWND dialog) { fresh[dots] = Look(dialog); });
    }
    EXPECT_NE(fresh[96].look, fresh[192].look);
    Monitor monitor(96);
    With([&](HWND dialog) {
        for (const int dots : {192, 96, 144, 192, 144, 96}) {
            const Rect suggested = monitor.Become(dots, dialog);
            RECT place{};
            // A late word of the window manager on the step before may move it for a moment.
            test::WaitFor([&] { return GetWindowRect(dialog, &place) && place.left == suggested.left; }, 2000);
            EXPECT_EQ(place.left, suggested.left) << dots;
            EXPECT_EQ(place.top, suggested.top) << dots;
            const Seen now = Look(dialog);
            EXPECT_EQ(now.look, fresh[dots].look) << dots;
            if (GetParam().still) {
                EXPECT_TRUE(now.picture.pixels == fresh[dots].picture.pixels) << dots;
            }
        }
    });
}

// A grid and its page, both of this very program.
void ShowColumnPage(HWND owner) {
    ComPtr<IClassFactory> factory;
    ComPtr<IUnknown> grid;
    DWORD cookie = 0;
    ASSERT_EQ(DllGetClassObject(CLSID_ComboGrid, IID_IClassFactory, factory.put_void()), S_OK);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, grid.put_void()), S_OK);
    Query<_ComboGrid>(grid.get())->put_FormatString(Bstr(u"No|<Article   |>Price").get());
    factory = nullptr;
    ASSERT_EQ(DllGetClassObject(grid::CLSID_prpctlColumns, IID_IClassFactory, factory.put_void()), S_OK);
    CoRegisterClassObject(grid::CLSID_prpctlColumns, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    const host::ClassSource classes;
    host::designer::PropertyFrame::Make(owner, u"grd", grid.get(), {grid::CLSID_prpctlColumns}, classes)->Ask(owner);
    CoRevokeClassObject(cookie);
}

const Dialog dialogs[] = {
    {"MessageBox",
     [](HWND owner) {
         dialogs::ShowMessage(owner, u"Error sending mail. Make sure that you have your email client.", 3,
                              Text(u"Send E-mail"), 7, false, 0);
     },
     &test::WaitForBox, true},
    {"AboutBox", [](HWND owner) { ShowAboutBox(owner); }, [] { return test::WaitForWindow(L"QvxAbout"); }, true},
    {"PasswordPrompt",
     [](HWND owner) { backup::PasswordDialog([]() -> std::optional<Text> { return u"x"; }).Run(owner); },
     [] { return test::WaitForForm(L"Password"); }, false},
    {"MenuEditor",
     [](HWND owner) {
         const auto file = host::FormFile::Parse("Begin Form f\nBegin Menu m\nCaption = \"M\"\nEnd\nEnd\n");
         host::designer::MenuEditor(file.form).Ask(owner);
     },
     &host::designer::WaitForEditor, false},
    {"ColumnPage", &ShowColumnPage, &host::designer::WaitForEditor, false},
    {"ImageListEditor", [](HWND owner) { host::designer::ImageEditor({}, u"", nullptr).Ask(owner); },
     &host::designer::WaitForEditor, false},
};

INSTANTIATE_TEST_SUITE_P(Dialogs, Resolution, ::testing::ValuesIn(dialogs),
                         [](const ::testing::TestParamInfo<Dialog>& parameter) {
                             return std::string(parameter.param.name);
                         });

// ---- Forms and controls --------------------------------------------------------------------------------------------

class FormResolution : public host::HostFormTest {
  protected:
    // With components of this very program, whose resolution the tests give.
    void Open() {
        const std::pair<const char16_t*, const CLSID*> components[] = {
            {u"Qvx.TextEdit", &CLSID_TextEdit}, {u"Qvx.RButton", &CLSID_RButton}, {u"Qvx.ComboGrid", &CLSID_ComboGrid}};
        for (const auto& [name, id] : components) {
            ComPtr<IClassFactory> factory;
            ASSERT_EQ(DllGetClassObject(*id, IID_IClassFactory, factory.put_void()), S_OK);
            ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, source_.objects[name].put_void()), S_OK);
        }
        Load(text_, u"");
        test::WaitFor([] { return false; }, 50);
        source_.objects.clear();
    }

    const std::string text_ =
        "Begin Form f\r\n  Caption = \"Fields\"\r\n  ClientWidth = 6015\r\n  ClientHeight = 3015\r\n"
        "  Begin Label lblFirst\r\n    Caption = \"First\"\r\n    Left = 105\r\n    Top = 105\r\n    Width = 915\r\n"
        "    Height = 255\r\n  End\r\n"
        "  Begin Qvx.TextEdit txtFirst\r\n    Left = 1095\r\n    Top = 105\r\n    Width = 1215\r\n"
        "    Height = 375\r\n  End\r\n"
        "  Begin Frame fraBox\r\n    Left = 2505\r\n    Top = 105\r\n    Width = 2010\r\n    Height = 1005\r\n"
        "    Begin TextBox txtIn\r\n      Left = 105\r\n      Top = 255\r\n      Width = 900\r\n      Height = 285\r\n"
        "    End\r\n  End\r\n"
        "  Begin Qvx.RButton cmdGo\r\n    Left = 105\r\n    Top = 1200\r\n    Width = 1215\r\n    Height = 375\r\n"
        "  End\r\n"
        "  Begin Qvx.ComboGrid grd\r\n    Left = 1500\r\n    Top = 1200\r\n    Width = 3000\r\n    Height = 1500\r\n"
        "    Cols = 3\r\n    FormatString = \"No|Name|Qty\"\r\n    FilterRow = -1\r\n  End\r\nEnd\r\n";
};

TEST_F(FormResolution, AFormAndItsControlsFollowTheirMonitor) {
    std::map<int, std::string> fresh;
    for (const int dots : resolutions) {
        const Monitor monitor(dots);
        Open();
        fresh[dots] = LookOf(form_->Handle());
        form_.reset();
    }
    EXPECT_NE(fresh[96], fresh[192]);
    Monitor monitor(96);
    Open();
    const std::string saved = SavedBytes();
    for (const int dots : {192, 96, 144, 192, 144, 96}) {
        monitor.Become(dots, form_->Handle());
        EXPECT_EQ(LookOf(form_->Handle()), fresh[dots]) << dots;
        EXPECT_EQ(form_->Look().clientWidth, 6015) << dots;
        EXPECT_EQ(form_->Look().clientHeight, 3015) << dots;
        // Nobody has changed anything.
        EXPECT_EQ(SavedBytes(), saved) << dots;
    }
    DeleteFileW(Wide(SavedPath()));
}

// Before Windows 10 the system told top-level windows alone, and a host then sized its controls.
TEST_F(FormResolution, ATextEditFollowsAHostThatOnlySizesIt) {
    std::map<int, std::string> fresh;
    for (const int dots : resolutions) {
        const Monitor monitor(dots);
        Open();
        fresh[dots] = LookOf(form_->FindControl(u"txtFirst")->Window());
        form_.reset();
    }
    const Monitor monitor(96);
    Open();
    host::FormControl* box = form_->FindControl(u"txtFirst");
    for (const int dots : {192, 96, 144}) {
        const DpiOverride told(Dpi{dots, dots});
        box->FollowResolution();
        EXPECT_EQ(LookOf(box->Window()), fresh[dots]) << dots;
    }
}

}  // namespace
}  // namespace qvx

namespace qvx::host::designer {
namespace {

TEST_F(DesignerTest, TheDesignerFollowsItsMonitor) {
    std::map<int, std::string> fresh;
    for (const int dots : {96, 144, 192}) {
        const test::Monitor monitor(dots);
        Open(formText);
        fresh[dots] = test::LookOf(designer_->Session().Picture().Handle());
    }
    test::Monitor monitor(96);
    Open(formText);
    for (const int dots : {192, 96, 144, 96}) {
        designer_->Session().Select({});
        const Rect suggested = monitor.Become(dots, designer_->Handle());
        Settle();
        const RECT place = test::AreaOf(designer_->Handle());
        EXPECT_EQ(place.left, suggested.left) << dots;
        EXPECT_EQ(place.top, suggested.top) << dots;
        EXPECT_EQ(test::LookOf(designer_->Session().Picture().Handle()), fresh[dots]) << dots;
        EXPECT_EQ(SendMessageW(designer_->Views().Toolbox().List(), LB_GETITEMHEIGHT, 0, 0), 24 * dots / 96) << dots;
        EXPECT_EQ(designer_->Session().Form().Bytes(), formText) << dots;
        // Shapes are where they are drawn.
        Click(At(840, 420));
        ASSERT_TRUE(designer_->Session().Selected().Primary()) << dots;
        EXPECT_EQ(designer_->Session().Selected().Primary()->name, u"cmdOk") << dots;
        EXPECT_FALSE(designer_->Session().Form().Dirty()) << dots;
    }
}

}  // namespace
}  // namespace qvx::host::designer
