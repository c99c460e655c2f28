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

// Containers that know nothing of such controls activate and size them like any other.
TEST_P(InvisibleControl, IsSeenInDesignersOnlyAndKeepsItsSize) {
    for (const bool userMode : {true, false}) {
        Container container(HostInMode(userMode));
        container.Place(ServerUnderTest::Get().Create(*GetParam()));
        container.Activate();
        ASSERT_TRUE(container.ControlWindow());
        EXPECT_EQ(!userMode, IsWindowVisible(container.ControlWindow()) != FALSE);
        RECT own{};
        GetClientRect(container.ControlWindow(), &own);
        EXPECT_GT(own.right, 8);
        EXPECT_LT(own.right, 40);
        for (const RECT& bounds : {RECT{30, 40, 180, 90}, RECT{0, 0, 1, 1}}) {
            container.MoveTo(bounds);
            RECT now{};
            GetClientRect(container.ControlWindow(), &now);
            EXPECT_TRUE(EqualRect(&own, &now));
        }
    }
}

}  // namespace
}  // namespace qvx::test
