// Comparison of text without regard to case ("text comparison") for all of Unicode, by simple case folding: each
// character folds to at most one other.
//
// The system's own comparison differs where one character is equal to several (it may treat "ß" and "ss" as equal),
// where accents are written as separate characters, and in its order: it sorts as dictionaries do (punctuation first,
// "a" before "B" before "c", accents next to their letter), while this one sorts by the number of the folded character.
// For the texts that people give to columns, keys and lists, both agree on equality.
#pragma once

#include <cstddef>

#include "common/text.h"

namespace qvx {

// Returns the folded form of one character (a Unicode scalar; other values are returned unchanged).
char32_t FoldCase(char32_t character) noexcept;

// Removes the first character from a text that is not empty, and returns it folded. A lone surrogate counts as a
// character of its own.
char32_t TakeFolded(TextView& text) noexcept;

// Returns the whole text folded, for use as a key in tables.
Text FoldedText(TextView text);

// Returns a value below, at or above 0 as the first text sorts before, equal to or after the second.
int CompareTextNoCase(TextView first, TextView second) noexcept;

bool EqualNoCase(TextView first, TextView second) noexcept;

// Returns the index of the first occurrence of `wanted` in `text`, or Text::npos. An empty `wanted` is found at 0.
std::size_t FindNoCase(TextView text, TextView wanted) noexcept;

inline bool ContainsNoCase(TextView text, TextView wanted) noexcept { return FindNoCase(text, wanted) != Text::npos; }

bool StartsWithNoCase(TextView text, TextView prefix) noexcept;

}  // namespace qvx
