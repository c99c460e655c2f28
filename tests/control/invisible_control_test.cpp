// What holds for every control that is invisible at run time.
#include <gtest/gtest.h>
#include <olectl.h>

#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

class InvisibleControl : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, InvisibleControl, ::testing::ValuesIn(EachInvisibleControlId()), ControlName);

// Containers that know nothing of such controls activate them like any other.
TEST_P(InvisibleControl, IsSeenInDesignersOnly) {
    for (const bool userMode : {true, false}) {
        Container container(HostInMode(userMode));
        container.Place(ServerUnderTest::Get().Create(*GetParam()));
        container.Activate();
        ASSERT_TRUE(container.ControlWindow());
        EXPECT_EQ(!userMode, IsWindowVisible(container.ControlWindow()) != FALSE);
    }
}

TEST_P(InvisibleControl, KeepsItsSize) {
    Container container(HostInMode(false));
    container.Place(ServerUnderTest::Get().Create(*GetParam()));
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

}  // namespace
}  // namespace qvx::test
