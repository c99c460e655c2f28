// Completion of the text that is typed into a combo with a list.
#pragma once

#include <functional>

#include "common/text.h"

namespace qvx {

// Returns the entries of a list, by index from 0.
using EntryReader = std::function<Text(int index)>;

// Returns the first entry that begins with the text, ignoring case; -1 for none, and for an empty text.
int FindBeginningWith(int count, const EntryReader& entry, TextView text);

// Returns the first entry that equals the text, ignoring case; -1 for none.
int FindExactly(int count, const EntryReader& entry, TextView text);

// The state of an edit field after a character was typed: the chosen entry (-1 for none), and the text completed to it,
// with the added part selected, so that the next character replaces it.
struct Completion {
    int entry = -1;
    Text text;
    int selStart = 0;
    int selLength = 0;
    friend bool operator==(const Completion&, const Completion&) = default;
};

// `text` is the field's text with the caret at `caret`; it is completed only if the caret is at the end, so that
// corrections in the middle are left alone. Deleting characters (`deleting`) completes nothing, as the completion could
// otherwise never be removed; an entry that equals the text is still chosen. The typed part keeps its case only when
// nothing is found.
Completion CompleteTyping(int count, const EntryReader& entry, TextView text, int caret, bool deleting);

}  // namespace qvx
