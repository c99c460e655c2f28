// Completion of the text that is typed into a combo with a list.
#pragma once

#include <functional>
#include <utility>

#include "common/text.h"
#include "common/text_compare.h"

namespace qvx {

// Returns the entries of a list, by index from 0. The functions below also take readers that return a TextView.
using EntryReader = std::function<Text(int index)>;

// Returns the first entry that begins with the text, ignoring case; -1 for none, and for an empty text.
template <class Entry>
int FindBeginningWith(int count, const Entry& entry, TextView text) {
    for (int index = 0; index < count && !text.empty(); ++index)
        if (StartsWithNoCase(entry(index), text)) return index;
    return -1;
}

// Returns the first entry that equals the text, ignoring case; -1 for none.
template <class Entry>
int FindExactly(int count, const Entry& entry, TextView text) {
    for (int index = 0; index < count; ++index)
        if (EqualNoCase(entry(index), text)) return index;
    return -1;
}

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
template <class Entry>
Completion CompleteTyping(int count, const Entry& entry, TextView text, int caret, bool deleting) {
    if (deleting || caret != static_cast<int>(text.size()))
        return {FindExactly(count, entry, text), Text(text), caret, 0};
    const int found = FindBeginningWith(count, entry, text);
    // If no entry begins with the text, no entry equals it either.
    if (found < 0) return {text.empty() ? FindExactly(count, entry, text) : -1, Text(text), caret, 0};
    Text completed(entry(found));
    const int added = static_cast<int>(completed.size()) - caret;
    return {found, std::move(completed), caret, added};
}

}  // namespace qvx
