// Tables on the screen in a Windows process: the grid's window, the system's list view, and the floor.
#pragma once

namespace qvx::bench {

// The works of paint_works.h by the grid, the floor and the list view over owner data.
void RunScreens();
// Frames of the grid in processor time, for the quick watch: their elapsed time varies by more than a change costs.
void RunWatchedScreen();
// The same by the list view in report mode, which takes long to fill.
void RunSlowScreen();
// Frames of the grid and the floor in a window of 3840 by 2160 pixels, with cells and letters as at 192 dots per inch.
void RunLargeScreens();

}  // namespace qvx::bench
