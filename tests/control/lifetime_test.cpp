// Doing something a thousand times leaves nothing behind.
#include <gtest/gtest.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/each_control.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

// Runs it a hundred times for caches to fill, then a thousand times, and compares. Heap blocks may come and go by a
// few with the system's own caches; one a round would be a thousand.
template <typename Round>
void ExpectNothingLeft(Round round) {
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    for (int i = 0; i < 100; ++i) round();
    Pump();
    const ResourceCounts before = CountResources();
    for (int i = 0; i < 1000; ++i) round();
    Pump();
    const ResourceCounts after = CountResources();
    EXPECT_EQ(before.windows, after.windows);
    EXPECT_EQ(before.gdiObjects, after.gdiObjects);
    EXPECT_EQ(before.userObjects, after.userObjects);
    EXPECT_LT(after.heapBlocks - before.heapBlocks, 100);
    EXPECT_LT(after.heapBytes - before.heapBytes, 65536);
    EXPECT_GT(before.heapBlocks, 0) << "the counting itself works";
    std::printf("windows %ld, graphics objects %ld -> %ld, heap blocks %ld -> %ld, bytes %ld -> %ld\n", after.windows,
                before.gdiObjects, after.gdiObjects, before.heapBlocks, after.heapBlocks, before.heapBytes,
                after.heapBytes);
    EXPECT_EQ(idle, ServerUnderTest::Get().CanUnload());
}

class Lifetime : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, Lifetime, ::testing::ValuesIn(EachControlId()), ControlName);

TEST_P(Lifetime, CreateActivatePaintDestroy) {
    Container::Options options;
    options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(true));
    Container container(options);
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
    {
        // The source stays: only what the rounds make is counted against the server.
        const auto rounds = [&](int count) {
            for (int i = 0; i < count; ++i) {
                const auto control = ServerUnderTest::Get().Create(*GetParam());
                ASSERT_EQ(S_OK, LoadFromStream(control.get(), bytes));
                ASSERT_EQ(S_OK, LoadFromBag(control.get(), bag.get()));
                ASSERT_EQ(bytes, SaveToStream(control.get()));
            }
        };
        rounds(100);
        const ResourceCounts before = CountResources();
        rounds(1000);
        const ResourceCounts after = CountResources();
        EXPECT_EQ(before.windows, after.windows);
        EXPECT_EQ(before.gdiObjects, after.gdiObjects);
        EXPECT_LT(after.heapBlocks - before.heapBlocks, 100);
    }
}

}  // namespace
}  // namespace qvx::test
