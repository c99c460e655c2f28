// The synthetic key strokes of one SendKey.
#pragma once

#include <vector>

namespace qvx {

struct KeyStroke {
    int key = 0;  // virtual key
    bool up = false;
    friend bool operator==(const KeyStroke&, const KeyStroke&) = default;
};

// The strokes of one SendKey, in order. `key` is taken as one byte; a `modifier` of 0 or less means none.
inline std::vector<KeyStroke> KeyStrokes(int key, int modifier) {
    const int one = key & 0xFF;
    if (modifier <= 0) {
        return {{one, false}, {one, true}};
    }
    return {{modifier & 0xFF, false}, {one, false}, {one, true}, {modifier & 0xFF, true}};
}

}  // namespace qvx
