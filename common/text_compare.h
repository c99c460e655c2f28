// Text compared without regard to case ("text comparison"), for the whole of Unicode, by simple case folding: each
// character folds to at most one other.
//
// The system's own comparison differs where one character stands for several (it may take "ß" and "ss" as equal), where
// accents are written as separate characters, and in its order: it sorts as dictionaries do (punctuation first, "a"
// before "B" before "c", accents next to their letter), while this orders by the folded character's number. Equality of
// the texts people give to columns, keys and lists is the same.
#pragma once

#include <cstddef>

#include "common/text.h"

namespace qvx {

// The folded form of one character (a Unicode scalar; others come back unchanged).
char32_t FoldCase(char32_t character) noexcept;

// Takes the next character off the front of a text that is not empty, and returns it folded. A lone surrogate stands
// for itself.
char32_t TakeFolded(TextView& text) noexcept;

// The whole text folded, as a key for tables.
Text FoldedText(TextView text);

// Below, at or above 0 as the first text sorts before, with or behind the second.
int CompareTextNoCase(TextView first, TextView second) noexcept;

bool EqualNoCase(TextView first, TextView second) noexcept;

// Index of the first place where `wanted` stands in `text`, or Text::npos. An empty `wanted` is found at 0.
std::size_t FindNoCase(TextView text, TextView wanted) noexcept;

inline bool ContainsNoCase(TextView text, TextView wanted) noexcept { return FindNoCase(text, wanted) != Text::npos; }

bool StartsWithNoCase(TextView text, TextView prefix) noexcept;

}  // namespace qvx
