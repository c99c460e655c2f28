// The part of a text that a single-line box accepts when the text is dropped on it; the same as for a pasted text.
#pragma once

#include <algorithm>
#include <cstddef>

#include "common/text.h"

namespace qvx {

// Returns the first line, as far as there is room. `length` and `selected` are in characters of the box's present text;
// `maxLength` 0 means no limit. A surrogate pair is not split.
inline TextView DroppedText(TextView text, std::size_t length, std::size_t selected, std::size_t maxLength) {
    text = text.substr(0, text.find_first_of(TextView(u"\r\n\0", 3)));
    if (maxLength == 0) return text;
    const std::size_t kept = length - std::min(selected, length);
    const std::size_t room = maxLength - std::min(kept, maxLength);
    if (text.size() <= room) return text;
    const bool splits = room > 0 && (text[room - 1] & 0xFC00) == 0xD800;
    return text.substr(0, splits ? room - 1 : room);
}

}  // namespace qvx
