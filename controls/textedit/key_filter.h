// Which keys a validated text box lets through. Every decision falls on the key itself; nothing is corrected later but
// by the normalisation when the box is left.
#pragma once

#include <cstddef>
#include <cstdint>

#include "common/text.h"
#include "controls/textedit/text_normalisation.h"

namespace qvx::textedit {

struct KeyRules {
    std::int32_t dataType = data_type::none;
    bool boundaries = false;  // whether a value outside minValue to maxValue (both allowed) is refused
    double minValue = 0;
    double maxValue = 0;
};

// A text box between two keys. Positions are in characters, within the text.
struct TextEntry {
    Text text;
    std::size_t selStart = 0;
    std::size_t selLength = 0;
    bool locked = false;
    // The text that the last checked key would have led to.
    Text tag;

    friend bool operator==(const TextEntry&, const TextEntry&) = default;
};

// What is left of a key.
struct KeyAnswer {
    int key = 0;  // 0: refused
    bool beep = false;
    Text tag;  // the box's from now on

    friend bool operator==(const KeyAnswer&, const KeyAnswer&) = default;
};

// A key goes down, after the host has heard of it. `key` is a virtual key.
KeyAnswer FilterKeyDown(const KeyRules& rules, const TextEntry& entry, int key);

// The box as it is when a character, a UTF-16 unit, comes to be judged: what is selected goes first, whether or not the
// character is then let in, and a point typed into an empty box brings "0.".
TextEntry PrepareForCharacter(const KeyRules& rules, TextEntry entry, int character);

// A character is about to be inserted (or is one of the control characters, 1 to 26) into a box prepared for it.
KeyAnswer FilterCharacter(const KeyRules& rules, const TextEntry& entry, int character);

// Whether a key that goes down belongs to the box before its host may use it, for moving the focus and for shortcuts of
// its own. `shift`: bits of common/keys.h.
bool KeepsKey(int key, int shift, bool useEnterKey);

// Whether a text counts as no entry at all: nothing, or only blanks.
bool IsEmptyEntry(TextView text);

}  // namespace qvx::textedit
