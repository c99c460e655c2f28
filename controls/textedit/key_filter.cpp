#include "controls/textedit/key_filter.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "common/keys.h"
#include "common/numeric_reading.h"

namespace qvx::textedit {
namespace {

constexpr int firstPrintable = 27;

bool IsDigit(int character) { return character >= u'0' && character <= u'9'; }

// Whether CheckInsertion decides on a character.
bool IsInsertion(const KeyRules& rules, int character) {
    if (character < firstPrintable) return false;
    if (rules.dataType == data_type::digits) return IsDigit(character);
    // The numeric test accepts the comma as a digit separator and would let it through.
    return rules.dataType == data_type::numerics && character != u',';
}

bool OutOfBounds(const KeyRules& rules, TextView candidate) {
    const double value = NumericValue(candidate);
    return rules.boundaries && (value > rules.maxValue || value < rules.minValue);
}

KeyAnswer Pass(const TextEntry& entry, int key) { return {key, false, entry.tag}; }
KeyAnswer Refuse(Text tag, bool beep = true) { return {0, beep, std::move(tag)}; }

// Returns the text without the character at the caret; nullopt where there is none. The selection is ignored.
std::optional<Text> WithoutOne(const TextEntry& entry, int key) {
    const std::size_t caret = std::min(entry.selStart, entry.text.size());
    if (key == keys::backspace) {
        if (caret == 0) return std::nullopt;
        return entry.text.substr(0, caret - 1) + entry.text.substr(caret);
    }
    if (caret == entry.text.size()) return std::nullopt;
    return entry.text.substr(0, caret) + entry.text.substr(caret + 1);
}

KeyAnswer CheckDeletion(const KeyRules& rules, const TextEntry& entry, int key) {
    if (entry.locked) return Pass(entry, key);
    // With nothing to delete, the candidate of the previous key is checked once more, as hosts have always seen it.
    Text candidate = WithoutOne(entry, key).value_or(entry.tag);
    if (IsNumeric(candidate) && OutOfBounds(rules, candidate)) return Refuse(std::move(candidate));
    return {key, false, std::move(candidate)};
}

KeyAnswer CheckInsertion(const KeyRules& rules, const TextEntry& entry, int character) {
    if (entry.locked) return Pass(entry, character);
    Text candidate = entry.text;
    candidate.insert(std::min(entry.selStart, candidate.size()), 1, static_cast<char16_t>(character));
    // A minus alone is the start of a number, and counts as 0.
    const bool numeric = IsNumeric(candidate) || candidate == u"-";
    if (!numeric || OutOfBounds(rules, candidate)) return Refuse(std::move(candidate));
    return {character, false, std::move(candidate)};
}

}  // namespace

KeyAnswer FilterKeyDown(const KeyRules& rules, const TextEntry& entry, int key) {
    const bool deletes = key == keys::backspace || key == keys::deleteKey;
    return deletes && rules.dataType == data_type::numerics ? CheckDeletion(rules, entry, key) : Pass(entry, key);
}

TextEntry PrepareForCharacter(const KeyRules& rules, TextEntry entry, int character) {
    if (!IsInsertion(rules, character) || entry.locked) return entry;
    const std::size_t start = std::min(entry.selStart, entry.text.size());
    entry.text.erase(start, entry.selLength);
    entry.selStart = start;
    entry.selLength = 0;
    if (character == u'.' && IsEmptyEntry(entry.text)) {
        entry.text = u"0.";
        entry.selStart = entry.text.size();
    }
    return entry;
}

KeyAnswer FilterCharacter(const KeyRules& rules, const TextEntry& entry, int character) {
    if (IsInsertion(rules, character)) return CheckInsertion(rules, entry, character);
    if (character >= firstPrintable) {
        if (rules.dataType == data_type::digits) return Refuse(entry.tag);
        if (rules.dataType == data_type::numerics) return Refuse(entry.tag, false);
    }
    return character == keys::backspace ? FilterKeyDown(rules, entry, character) : Pass(entry, character);
}

bool KeepsKey(int key, int shift, bool useEnterKey) {
    if (shift & keys::altMask) return false;
    if (key == keys::enter) return useEnterKey;
    if (key == keys::tab || key == keys::escape || (key >= keys::f1 && key <= keys::f24)) return false;
    if ((shift & keys::controlMask) == 0) return true;
    const bool moves = key >= keys::end && key <= keys::down;
    const bool edits = key == keys::insert || key == keys::deleteKey || key == keys::backspace;
    return moves || edits || TextView(u"ACVXZ").find(static_cast<char16_t>(key)) != TextView::npos;
}

bool IsEmptyEntry(TextView text) { return text.find_first_not_of(u' ') == TextView::npos; }

}  // namespace qvx::textedit
