// Counts of the system's handles that the calling thread and its process use.
#pragma once

namespace qvx::test {

// The number of windows of this thread, including child windows.
long ThreadWindows();
// The number of graphics objects of this process: pens, brushes, fonts, bitmaps, regions, device contexts.
long GdiHandles();

}  // namespace qvx::test
