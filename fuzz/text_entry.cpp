// Random keys, deletions, selections and pastes in a validated text box. Whatever they are: no accepted insertion takes
// a bounded value out of its bounds, a refused one adds nothing, and typing adds nothing but digits to a digits box.
#include <cstdint>

#include "common/keys.h"
#include "common/numeric_reading.h"
#include "common/run_time_error.h"
#include "controls/textedit/key_filter.h"
#include "fuzz/fuzz_input.h"

namespace qvx::textedit {
namespace {

void CheckPositions(const TextEntry& entry) {
    Require(entry.selStart <= entry.text.size(), "the caret is in the text");
    Require(entry.selStart + entry.selLength <= entry.text.size(), "the selection is in the text");
}

void Type(const KeyRules& rules, TextEntry& entry, char16_t character) {
    const TextEntry before = entry;
    entry = PrepareForCharacter(rules, entry, character);
    CheckPositions(entry);
    Require(entry.text.size() <= before.text.size() || entry.text == u"0.", "preparing adds at most the leading zero");
    const KeyAnswer answer = FilterCharacter(rules, entry, character);
    entry.tag = answer.tag;
    Require(answer.key == character || answer.key == 0, "a character passes or is refused");
    Require(!answer.beep || answer.key == 0, "only refusals beep");
    if (answer.key < keys::space || entry.locked) return;
    const Text rest = entry.text.substr(0, entry.selStart) + entry.text.substr(entry.selStart + entry.selLength);
    entry.text = rest;
    entry.text.insert(entry.selStart++, 1, character);
    entry.selLength = 0;
    if (rules.dataType == data_type::digits) Require(character >= u'0' && character <= u'9', "digits only");
    if (rules.dataType == data_type::digits || rules.dataType == data_type::numerics) {
        Require(IsNumeric(entry.text) || entry.text == u"-", "what was let in keeps the text a number");
        const double value = NumericValue(entry.text);
        Require(!rules.boundaries || (value >= rules.minValue && value <= rules.maxValue), "within the bounds");
    }
}

void Erase(const KeyRules& rules, TextEntry& entry, int key) {
    const KeyAnswer answer = FilterKeyDown(rules, entry, key);
    Require(answer.key == key || answer.key == 0, "a key passes or is refused");
    Require(answer.key == key || (rules.boundaries && rules.dataType == data_type::numerics), "only bounds refuse");
    entry.tag = answer.tag;
    if (answer.key == 0 || entry.locked) return;
    if (entry.selLength == 0) {
        if (key == keys::backspace && entry.selStart > 0) --entry.selStart;
        entry.selLength = entry.selStart < entry.text.size() ? 1 : 0;
    }
    entry.text.erase(entry.selStart, entry.selLength);
    entry.selLength = 0;
}

void CheckNormalised(const TextEntry& entry, std::int32_t type, std::int16_t places) {
    try {
        const Text once = NormalisedInPlace(entry.text, type, places);
        Require(NormalisedInPlace(once, type, places) == once, "a normalised text is in its normal form");
    } catch (const RunTimeError&) {
        Require(places < 0 && type != data_type::none, "only negative places fail");
    }
}

}  // namespace
}  // namespace qvx::textedit

void qvx::CheckInput(FuzzInput& input) {
    using namespace textedit;
    const std::uint8_t flags = input.Byte();
    const auto places = static_cast<std::int16_t>(input.Below(12)) - 2;
    const KeyRules rules{flags % 3, (flags & 4) != 0, NumericValue(input.Latin(3)), NumericValue(input.Latin(3))};
    TextEntry entry;
    entry.locked = (flags & 0xF8) == 0xF8;
    // A thousand keys are as good as any number of them.
    for (int step = 0; step < 1000 && input.Left() > 0; ++step) {
        const std::uint8_t act = input.Byte();
        if (act < 0x80) {
            Type(rules, entry, act);
        } else if (act < 0xA0) {
            Erase(rules, entry, act & 1 ? keys::backspace : keys::deleteKey);
        } else if (act < 0xC0) {
            entry.selStart = input.Below(entry.text.size() + 1);
            entry.selLength = input.Below(entry.text.size() - entry.selStart + 1);
        } else if (act < 0xD0) {
            // Pasting is not filtered.
            entry.text.replace(entry.selStart, entry.selLength, input.Latin(act & 0x0F));
            entry.selLength = 0;
        } else {
            Type(rules, entry, static_cast<char16_t>(input.Word()));
        }
        CheckPositions(entry);
    }
    CheckNormalised(entry, rules.dataType, places);
}
