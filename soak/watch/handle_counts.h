// What the calling thread and its process hold of the system's handles.
#pragma once

namespace qvx::test {

// The windows of this thread, inner ones included.
long ThreadWindows();
// The graphics objects of this process: pens, brushes, fonts, bitmaps, regions, device contexts.
long GdiHandles();

}  // namespace qvx::test
