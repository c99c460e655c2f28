// Doing something some hundred times leaves nothing behind.
#include <gtest/gtest.h>

#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

class Lifetime : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, Lifetime, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(Lifetime, CreateActivatePaintDestroy) {
    Container container(HostInMode(true));
    auto recorder = MakeObject<EventRecorder>();
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    ExpectNothingLeftBehind(150, [&] {
        container.Calls().clear();
        container.Place(ServerUnderTest::Get().Create(*GetParam()));
        const Connection connection(container.Control(), EventsOf(container.Control()), recorder.get());
        container.ActivateUi();
        UpdateWindow(container.ControlWindow());
        container.Close();
        Pump();
    });
    EXPECT_EQ(idle, ServerUnderTest::Get().CanUnload());
}

}  // namespace
}  // namespace qvx::test
