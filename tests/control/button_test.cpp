// The Button control in containers: what it answers and shows.
#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/control/push_button_form.h"
#include "tests/support/drawn_picture.h"

namespace qvx::test {
namespace {

class Button : public PushButtonForm {
  protected:
    Button() : PushButtonForm(CLSID_Button) {}
};

// What the form does when the focus moves to the button: validation that fails disables or hides it.
TEST_F(Button, MayBeDisabledByTheFocusThatAPressBrings) {
    Put(button_.get(), L"Caption", {Variant(u"&Save")});
    Activate();
    onCall_ = [&](const std::string& call) {
        if (call == "OnFocus(True)") Put(button_.get(), L"Enabled", {Variant(false)});
    };
    for (const bool byKey : {false, true}) {
        SCOPED_TRACE(byKey ? "access key" : "mouse");
        Put(button_.get(), L"Enabled", {Variant(true)});
        SetFocus(container_->Window());
        if (byKey) {
            EXPECT_EQ(Mnemonic('S'), S_OK);
        } else {
            PressDirectly();
            EXPECT_NE(GetCapture(), window_);
            ReleaseDirectly();
        }
        EXPECT_EQ(Call(button_.get(), L"Enabled").ToBool(), false);
        EXPECT_EQ(Clicks(), 0U);
    }
}

// A host whose program is halted wants no input taken, but a press that it called off is over.
TEST_F(Button, TakesNoInputWhileTheHostIsDeadToIt) {
    Put(button_.get(), L"Caption", {Variant(u"&Save")});
    Activate();
    PressDirectly();
    container_->SetAmbient(DISPID_AMBIENT_UIDEAD, Variant(true));
    SetCapture(container_->Window());
    ReleaseCapture();
    EXPECT_EQ(Mnemonic('S'), S_OK);
    EXPECT_EQ(Clicks(), 0U);
    container_->SetAmbient(DISPID_AMBIENT_UIDEAD, Variant(false));
    ReleaseDirectly();
    EXPECT_EQ(Clicks(), 0U);
    EXPECT_EQ(Mnemonic('S'), S_OK);
    EXPECT_EQ(Clicks(), 1U);
}

// Frames with windows of their own beside the form close those to input, too.
TEST_F(Button, TellsTheFrameOfItsDialogs) {
    Activate();
    container_->Calls().clear();
    const Person person([] {
        if (const HWND about = WaitForWindow(L"QvxAbout")) PostMessageW(about, WM_CLOSE, 0, 0);
    });
    Call(button_.get(), L"ShowAbout");
    std::vector<std::string> told;
    for (const auto& call : container_->Calls()) {
        if (call.find("EnableModeless") == 0) told.push_back(call);
    }
    EXPECT_EQ(told, (std::vector<std::string>{"EnableModeless(False)", "EnableModeless(True)"}));
}

TEST_F(Button, IsDrawnByItsProgram) {
    Put(button_.get(), L"BorderColor", {Variant(0x0000FF)});
    Put(button_.get(), L"Behavior", {Variant(0)});
    Activate();
    const auto corner = [&] { return PictureOnScreen(window_).At(0, 0); };
    EXPECT_EQ(corner(), RGB(255, 0, 0)) << "the frame of the flat styles";
    Call(button_.get(), L"DRAWBUTTON", {Variant(2)});
    EXPECT_EQ(corner(), GetSysColor(COLOR_BTNSHADOW)) << "pressed";
    Call(button_.get(), L"DRAWBUTTON", {Variant(1)});
    EXPECT_EQ(corner(), GetSysColor(COLOR_BTNHIGHLIGHT)) << "the raised border goes over the pressed face";
    Call(button_.get(), L"DRAWBUTTON");
    EXPECT_EQ(corner(), RGB(255, 0, 0)) << "without an argument at rest";
    Put(button_.get(), L"Focus", {Variant(true)});
    EXPECT_EQ(Call(button_.get(), L"Focus").ToBool(), true);
    EXPECT_NE(Call(button_.get(), L"hDC").ToText(), u"0");
    EXPECT_EQ(Call(button_.get(), L"hWnd").ToText(),
              Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(window_))).ToText());
}

}  // namespace
}  // namespace qvx::test
