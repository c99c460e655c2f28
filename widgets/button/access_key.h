// Access keys: the letter of a caption that clicks its button together with Alt.
#pragma once

#include "common/text.h"

namespace qvx::buttons {

// Returns the character that follows the first "&" of a caption, the first character when there is no "&", and 0 for a
// caption that is empty or ends with its first "&".
constexpr char16_t AccessKey(TextView caption) {
    const auto mark = caption.find(u'&');
    const auto index = mark == TextView::npos ? 0 : mark + 1;
    return index < caption.size() ? caption[index] : u'\0';
}

// Returns whether a typed character is the caption's access key, ignoring case. `character` is the one that the
// keyboard layout produces for the key pressed with Alt.
bool IsAccessKey(TextView caption, char16_t character);

}  // namespace qvx::buttons
