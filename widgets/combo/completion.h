// How a combo with a list follows the text that is typed into it.
#pragma once

#include <functional>

#include "common/text.h"

namespace qvx {

// The entries of a list, by index from 0.
using EntryReader = std::function<Text(int index)>;

// The first entry that begins with the text whatever its case; -1 for none, and for an empty text.
int FindBeginningWith(int count, const EntryReader& entry, TextView text);

// The first entry that is the text whatever its case; -1 for none.
int FindExactly(int count, const EntryReader& entry, TextView text);

// What becomes of an edit field after a character was typed: the entry that is chosen (-1 for none), and the text
// completed to it, with what was added selected, so that the next character replaces it.
struct Completion {
    int entry = -1;
    Text text;
    int selStart = 0;
    int selLength = 0;
    friend bool operator==(const Completion&, const Completion&) = default;
};

// `text` is the field's text with the caret at `caret`; only a caret at the end completes, so that corrections in the
// middle are left alone. Taking away characters (`deleting`) completes nothing, else the completion could never be got
// rid of; an entry that the text is all the same is chosen then, too. The typed part keeps its case only when nothing
// is found.
Completion CompleteTyping(int count, const EntryReader& entry, TextView text, int caret, bool deleting);

}  // namespace qvx
