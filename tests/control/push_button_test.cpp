// What holds for both push buttons.
#include "tests/control/push_button_form.h"

#include "Qvx.h"

namespace qvx::test {
namespace {

class PushButton : public PushButtonForm, public ::testing::WithParamInterface<const CLSID*> {
  protected:
    PushButton() : PushButtonForm(*GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Controls, PushButton, ::testing::Values(&CLSID_Button, &CLSID_RButton),
                         [](const auto& parameter) { return parameter.param == &CLSID_Button ? "Button" : "RButton"; });

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
