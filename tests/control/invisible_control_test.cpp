// What holds for every control that is invisible at run time.
#include <gtest/gtest.h>
#include <olectl.h>

#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

class InvisibleControl : public ::testing::TestWithParam<const CLSID*> {
  protected:
    static Container::Options Mode(bool userMode) {
        Container::Options options;
        options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(userMode));
        return options;
    }
    static ComPtr<IUnknown> New() { return ServerUnderTest::Get().Create(*GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Controls, InvisibleControl, ::testing::ValuesIn(EachInvisibleControlId()), ControlName);

// Containers that know nothing of such controls activate them like any other.
TEST_P(InvisibleControl, IsSeenInDesignersOnly) {
    for (const bool userMode : {true, false}) {
        Container container(Mode(userMode));
        container.Place(New());
        container.Activate();
        ASSERT_TRUE(container.ControlWindow());
        EXPECT_EQ(!userMode, IsWindowVisible(container.ControlWindow()) != FALSE);
    }
}

TEST_P(InvisibleControl, KeepsItsSize) {
    Container container(Mode(false));
    container.Place(New());
    container.Activate();
    const auto size = [&] {
        RECT area{};
        GetClientRect(container.ControlWindow(), &area);
        return SIZE{area.right, area.bottom};
    };
    const SIZE own = size();
    EXPECT_GT(own.cx, 8);
    EXPECT_LT(own.cx, 40);
    for (const RECT& bounds : {RECT{30, 40, 180, 90}, RECT{0, 0, 1, 1}}) {
        container.MoveTo(bounds);
        EXPECT_EQ(own.cx, size().cx);
        EXPECT_EQ(own.cy, size().cy);
    }
}

TEST_P(InvisibleControl, OutlivesItsHostsWindow) {
    const auto control = New();
    {
        Container container(Mode(true));
        container.Place(control);
        container.Activate();
        DestroyWindow(container.Window());
        EXPECT_EQ(nullptr, container.ControlWindow());
    }
    Container other(Mode(true));
    other.Place(control, [](IUnknown*) {});
    other.Activate();
    EXPECT_TRUE(other.ControlWindow());
}

TEST_P(InvisibleControl, WorksInAHostThatOffersNothing) {
    Container::Options bare;
    bare.controlSite = false;
    Container container(bare);
    container.Place(New());
    container.Activate();
    EXPECT_FALSE(SaveToStream(container.Control()).empty());
    container.Close();
    // No window, no site: a host that only stores it.
    const auto control = New();
    EXPECT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    EXPECT_FALSE(SaveToStream(control.get()).empty());
}

}  // namespace
}  // namespace qvx::test
