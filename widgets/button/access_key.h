// Access keys: the letter of a caption that clicks its button together with Alt.
#pragma once

#include "common/text.h"

namespace qvx::buttons {

// The character that follows the first "&" of a caption, the first character when there is none, and 0 for a caption
// that is empty or ends with its first "&".
constexpr char16_t AccessKey(TextView caption) {
    const auto mark = caption.find(u'&');
    const auto index = mark == TextView::npos ? 0 : mark + 1;
    return index < caption.size() ? caption[index] : u'\0';
}

// Whether a typed character is the caption's access key; the letter's case does not count. `character` is what the
// keyboard layout makes of the key pressed with Alt.
bool IsAccessKey(TextView caption, char16_t character);

}  // namespace qvx::buttons
