// What holds for both push buttons.
#include "tests/control/push_button_form.h"

#include <algorithm>

#include "Qvx.h"

namespace qvx::test {
namespace {

class PushButton : public PushButtonForm, public ::testing::WithParamInterface<const CLSID*> {
  protected:
    explicit PushButton(bool userMode = true) : PushButtonForm(*GetParam(), userMode) {}
};

class PushButtonInDesigner : public PushButton {
  protected:
    PushButtonInDesigner() : PushButton(false) {}
};

std::string NameOf(const ::testing::TestParamInfo<const CLSID*>& parameter) {
    return parameter.param == &CLSID_Button ? "Button" : "RButton";
}
INSTANTIATE_TEST_SUITE_P(Controls, PushButton, ::testing::Values(&CLSID_Button, &CLSID_RButton), NameOf);
INSTANTIATE_TEST_SUITE_P(Controls, PushButtonInDesigner, ::testing::Values(&CLSID_Button, &CLSID_RButton), NameOf);

TEST_P(PushButton, AMouseClicksOnce) {
    Activate();
    ClickOn(window_);
    EXPECT_TRUE(WaitFor([&] { return Clicks() == 1; }));
    Settle();
    EXPECT_EQ(Clicks(), 1U);
    EXPECT_EQ(GetFocus(), window_);
}

TEST_P(PushButton, SpaceClicksWhenItComesUp) {
    Activate();
    Focus();
    KeyDown(VK_SPACE);
    Settle();
    EXPECT_EQ(Clicks(), 0U);
    KeyUp(VK_SPACE);
    EXPECT_TRUE(WaitFor([&] { return Clicks() == 1; }));
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_P(PushButtonInDesigner, ValueIsRefusedAndInputIgnored) {
    const CallResult refused = Invoke(button_.get(), L"Value", DISPATCH_PROPERTYPUT, {Variant(true).get()});
    EXPECT_EQ(refused.scode, setRefused);
    EXPECT_EQ(refused.source, u"Qvx");
    Activate();
    ClickOn(window_);
    Settle();
    EXPECT_EQ(Clicks(), 0U);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_P(PushButton, ReleasedOutsideIsNoClickUnlessItCameBack) {
    Activate();
    for (const bool back : {false, true}) {
        SCOPED_TRACE(back);
        MoveMouseTo(At(50, 12));
        LeftButton(true);
        EXPECT_TRUE(WaitFor([&] { return GetCapture() == window_; }));
        MoveMouseTo(At(160, 60));
        Settle();
        if (back) {
            MoveMouseTo(At(50, 12));
            Settle();
        }
        LeftButton(false);
        Settle();
        EXPECT_EQ(Clicks(), back ? 1U : 0U);
        MoveMouseTo(At(160, 60));
        EXPECT_TRUE(WaitFor([&] { return GetCapture() == nullptr; }));
    }
}

// The mouse is captured while it is over the button, and nothing may leave it so.
TEST_P(PushButton, MouseOverItIsCapturedUntilItLeavesOrTheButtonGoes) {
    struct {
        const char* name;
        void (*end)(PushButton&);
    } const cases[] = {
        {"the mouse leaves", [](PushButton& t) { MoveMouseTo(t.At(160, 60)); }},
        {"disabled", [](PushButton& t) { Put(t.button_.get(), L"Enabled", {Variant(false)}); }},
        {"hidden", [](PushButton& t) { Query<IOleInPlaceObject>(t.container_->Control())->InPlaceDeactivate(); }},
        {"window destroyed", [](PushButton& t) { DestroyWindow(t.window_); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Put(button_.get(), L"Enabled", {Variant(true)});
        Activate();
        MoveMouseTo(At(50, 12));
        ASSERT_TRUE(WaitFor([&] { return GetCapture() == window_; }));
        c.end(*this);
        EXPECT_TRUE(WaitFor([&] { return GetCapture() == nullptr; }));
        EXPECT_EQ(Clicks(), 0U);
    }
}

TEST_P(PushButton, AccessKeyClicksUnlessDisabled) {
    Put(button_.get(), L"Caption", {Variant(u"&Post")});
    Activate();
    CONTROLINFO info{};
    info.cb = sizeof info;
    const auto control = Query<IOleControl>(container_->Control());
    ASSERT_EQ(control->GetControlInfo(&info), S_OK);
    ACCEL keys[4]{};
    const int count = CopyAcceleratorTableW(info.hAccel, keys, 4);
    EXPECT_TRUE(std::any_of(keys, keys + count, [](const ACCEL& key) { return (key.key | 0x20) == 'p'; }));
    EXPECT_EQ(Mnemonic('P'), S_OK);
    EXPECT_EQ(Clicks(), 1U);
    EXPECT_EQ(GetFocus(), window_);
    Put(button_.get(), L"Enabled", {Variant(false)});
    Mnemonic('P');
    ClickOn(window_);
    Settle();
    EXPECT_EQ(Clicks(), 1U);
    control->GetControlInfo(&info);
    EXPECT_EQ(info.cAccel, 0);
}

// A handler may end the control's life.
TEST_P(PushButton, SurvivesBeingClosedInItsClick) {
    Activate();
    recorder_->onEvent = [&](DISPID, DISPPARAMS&) {
        connection_.reset();
        button_.reset();
        container_->Close();
    };
    ClickOn(window_);
    EXPECT_TRUE(WaitFor([&] { return recorder_->events.size() == 1; }));
    Settle();
    EXPECT_FALSE(IsWindow(window_) && IsWindowVisible(window_));
}

}  // namespace
}  // namespace qvx::test
