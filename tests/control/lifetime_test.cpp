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
// few with the system's own caches; one a round would be a thousand. A heap that begins to manage small blocks in
// another way grows by some hundreds once, and not again when the thousand are repeated.
template <typename Round>
void ExpectNothingLeft(Round round) {
    constexpr long fewBlocks = 100;
    constexpr long fewBytes = 65536;
    const HRESULT idle = ServerUnderTest::Get().CanUnload();
    for (int i = 0; i < 100; ++i) round();
    Pump();
    ResourceCounts before;
    ResourceCounts after;
    for (int attempt = 0; attempt < 3; ++attempt) {
        before = CountResources();
        for (int i = 0; i < 1000; ++i) round();
        Pump();
        after = CountResources();
        if (after.heapBlocks - before.heapBlocks < fewBlocks && after.heapBytes - before.heapBytes < fewBytes) break;
    }
    EXPECT_EQ(before.windows, after.windows);
    EXPECT_EQ(before.gdiObjects, after.gdiObjects);
    EXPECT_EQ(before.userObjects, after.userObjects);
    EXPECT_LT(after.heapBlocks - before.heapBlocks, fewBlocks);
    EXPECT_LT(after.heapBytes - before.heapBytes, fewBytes);
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
