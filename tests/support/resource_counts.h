// What the process holds of the system's resources, for tests that repeat something many times and expect nothing to
// stay behind.
#pragma once

#include <gtest/gtest.h>

namespace qvx::test {

struct ResourceCounts {
    long windows = 0;      // of this thread, inner windows included
    long gdiObjects = 0;   // of this process
    long userObjects = 0;  // of this process, where the system tells; else 0
    long heapBlocks = 0;   // in use, over all heaps of the process
    long heapBytes = 0;
};

ResourceCounts CountResources();
// Runs it for the caches to fill, and then as often again: no window and no graphics object stays, and a heap block for
// one round in ten at most.
template <typename Round>
void ExpectNothingLeftBehind(int rounds, Round round) {
    const auto run = [&] {
        for (int i = 0; i < rounds; ++i) round();
        return CountResources();
    };
    const ResourceCounts before = run();
    const ResourceCounts after = run();
    EXPECT_LE(after.windows, before.windows);
    EXPECT_LE(after.gdiObjects, before.gdiObjects);
    EXPECT_LE(after.userObjects, before.userObjects);
    EXPECT_LT(after.heapBlocks - before.heapBlocks, rounds / 10 + 10);
    EXPECT_LT(after.heapBytes - before.heapBytes, 64 * rounds + 4096);
    EXPECT_GT(before.heapBlocks, 0) << "the counting itself works";
}

}  // namespace qvx::test
