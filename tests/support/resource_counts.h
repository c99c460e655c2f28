// The resources that the process holds, for tests that repeat something many times and expect that nothing is left
// behind.
#pragma once

#include <gtest/gtest.h>

namespace qvx::test {

struct ResourceCounts {
    long windows = 0;      // of this thread, inner windows included
    long gdiObjects = 0;   // of this process
    long userObjects = 0;  // of this process, if the system reports them; else 0
    long heapBlocks = 0;   // in use, over all heaps of the process
    long heapBytes = 0;
};

ResourceCounts CountResources();
// Executes the rounds once to fill the caches, and then once more: expects that no window and no graphics object is
// left behind, and hardly more than a heap block in ten rounds; except for the graphics objects that the system keeps.
template <typename Round>
void ExpectNothingLeftBehind(int rounds, Round round, long kept = 0) {
    const auto run = [&] {
        for (int i = 0; i < rounds; ++i) round();
        return CountResources();
    };
    const ResourceCounts before = run();
    const ResourceCounts after = run();
    EXPECT_LE(after.windows, before.windows);
    EXPECT_LE(after.gdiObjects, before.gdiObjects + kept);
    EXPECT_LE(after.userObjects, before.userObjects);
    EXPECT_LT(after.heapBlocks - before.heapBlocks, rounds / 10 + 10);
    EXPECT_LT(after.heapBytes - before.heapBytes, 64 * rounds + 4096);
    EXPECT_GT(before.heapBlocks, 0) << "the counting itself works";
}

}  // namespace qvx::test
