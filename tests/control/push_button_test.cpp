// What holds for both push buttons.
#include "tests/control/push_button_form.h"

#include "Qvx.h"
#include "tests/support/each_control.h"

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

// Every property as it is saved, in its order, with a value that is not the one of a new control.
TEST(PushButtons, SaveInTheirOrder) {
    const std::pair<const CLSID*, TextView> cases[] = {
        {&CLSID_Button,
         u"Caption=&Save\nForeColor=1\nBackColor=2\nBorderColor=3\nFocusRect=False\nBehavior=0\nDropDown=True\n"
         u"Enabled=False\n"},
        {&CLSID_RButton,
         u"Caption=&Post\nValue=True\nBorderColor=1\nUpTopColor=2\nUpBottomColor=3\nDownTopColor=4\n"
         u"DownBottomColor=5\nMaskColor=6\nForeColor=7\nBackColor=8\nEnabled=False\nFocusRect=False\n"}};
    for (const auto& [id, saved] : cases) {
        Container container(HostInMode(true));
        container.Place(ServerUnderTest::Get().Create(*id));
        EXPECT_EQ(SaveToBag(container.Control())->Print(), u"");
        for (std::size_t at = 0; at < saved.size(); at = saved.find(u'\n', at) + 1) {
            const Text line(saved.substr(at, saved.find(u'\n', at) - at));
            const std::size_t equals = line.find(u'=');
            Put(container.Automation().get(), Wide(line.substr(0, equals)), {Variant(line.substr(equals + 1))});
        }
        EXPECT_EQ(SaveToBag(container.Control())->Print(), saved);
    }
}

TEST_P(PushButton, SpaceClicksWhenItComesUpAndValueAtOnce) {
    Activate();
    Focus();
    KeyDown(VK_SPACE);
    Settle();
    EXPECT_EQ(Clicks(), 0U);
    KeyUp(VK_SPACE);
    EXPECT_TRUE(WaitFor([&] { return Clicks() == 1; }));
    EXPECT_EQ(GetCapture(), nullptr);
    // A trigger, not a state.
    for (const bool value : {true, true, false}) Put(button_.get(), L"Value", {Variant(value)});
    EXPECT_EQ(Clicks(), 3U);
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

TEST_P(PushButton, AMouseClicksOnceUnlessItIsReleasedOutside) {
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
        EXPECT_EQ(GetFocus(), window_);
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
    EXPECT_EQ(Mnemonic('P'), S_OK);
    EXPECT_EQ(Clicks(), 1U);
    EXPECT_EQ(GetFocus(), window_);
    Put(button_.get(), L"Enabled", {Variant(false)});
    Mnemonic('P');
    ClickOn(window_);
    Settle();
    EXPECT_EQ(Clicks(), 1U);
    CONTROLINFO info{};
    info.cb = sizeof info;
    Query<IOleControl>(container_->Control())->GetControlInfo(&info);
    EXPECT_EQ(info.cAccel, 0);
}

}  // namespace
}  // namespace qvx::test
