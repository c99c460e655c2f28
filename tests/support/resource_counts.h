// What the process holds of the system's resources, for tests that repeat something many times and expect nothing to
// stay behind.
#pragma once

#include <cstddef>

namespace qvx::test {

struct ResourceCounts {
    long windows = 0;      // of this thread, inner windows included
    long gdiObjects = 0;   // of this process
    long userObjects = 0;  // of this process, where the system tells; else 0
    long heapBlocks = 0;   // in use, over all heaps of the process
    long heapBytes = 0;
};

ResourceCounts CountResources();

}  // namespace qvx::test
