// Synthetic key strokes for the window that has the focus.
#pragma once

namespace qvx {

// Sends the key strokes of KeyStrokes. `key` and `modifier` are virtual keys; a `modifier` of 0 or less means none.
void SendKey(int key, int modifier);

}  // namespace qvx
