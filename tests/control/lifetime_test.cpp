// Doing something some hundred times leaves nothing behind.
#include <gtest/gtest.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

template <typename Round>
void ExpectNothingLeft(Round round) {
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    ExpectNothingLeftBehind(150, [&] {
        round();
        Pump();
    });
    EXPECT_EQ(idle, ServerUnderTest::Get().CanUnload());
}

class Lifetime : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, Lifetime, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(Lifetime, CreateActivatePaintDestroy) {
    Container container(HostInMode(true));
    auto recorder = MakeObject<EventRecorder>();
    ExpectNothingLeft([&] {
        container.Calls().clear();
        container.Place(ServerUnderTest::Get().Create(*GetParam()));
        const Connection connection(container.Control(), EventsOf(container.Control()), recorder.get());
        container.ActivateUi();
        UpdateWindow(container.ControlWindow());
        container.Close();
    });
}

TEST_P(Lifetime, SaveAndLoad) {
    const auto source = ServerUnderTest::Get().Create(*GetParam());
    ASSERT_EQ(S_OK, source.As<IPersistStreamInit>()->InitNew());
    const auto bytes = SaveToStream(source.get());
    const auto bag = SaveToBag(source.get());
    // The source stays: only what the rounds make is counted against the server.
    ExpectNothingLeft([&] {
        const auto control = ServerUnderTest::Get().Create(*GetParam());
        ASSERT_EQ(S_OK, LoadFromStream(control.get(), bytes));
        ASSERT_EQ(S_OK, LoadFromBag(control.get(), bag.get()));
        ASSERT_EQ(bytes, SaveToStream(control.get()));
    });
}

}  // namespace
}  // namespace qvx::test
