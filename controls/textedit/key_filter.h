// Decides which keys a validated text box accepts. Every decision is made when the key is pressed; the only later
// correction is the normalisation when the focus leaves the box.
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

// The state of a text box between two keys. Positions are in characters, within the text.
struct TextEntry {
    Text text;
    std::size_t selStart = 0;
    std::size_t selLength = 0;
    bool locked = false;
    // The text to which the last checked key would have led.
    Text tag;

    friend bool operator==(const TextEntry&, const TextEntry&) = default;
};

// The result of checking a key.
struct KeyAnswer {
    int key = 0;  // 0 means refused
    bool beep = false;
    Text tag;  // the new value of the box's tag

    friend bool operator==(const KeyAnswer&, const KeyAnswer&) = default;
};

// Checks a key that goes down, after the host has been notified. `key` is a virtual key.
KeyAnswer FilterKeyDown(const KeyRules& rules, const TextEntry& entry, int key);

// Returns the state of the box in which a character, a UTF-16 unit, is checked: the selection is deleted first, whether
// or not the character is then accepted, and a point typed into an empty box gives "0.".
TextEntry PrepareForCharacter(const KeyRules& rules, TextEntry entry, int character);

// Checks a character that is about to be inserted (or one of the control characters, 1 to 26) into a box prepared for
// it.
KeyAnswer FilterCharacter(const KeyRules& rules, const TextEntry& entry, int character);

// Whether the box handles a key that goes down before its host may use the key, to move the focus or as a shortcut.
// `shift`: bits of common/keys.h.
bool KeepsKey(int key, int shift, bool useEnterKey);

// Whether a text counts as no entry: empty, or only blanks.
bool IsEmptyEntry(TextView text);

}  // namespace qvx::textedit
