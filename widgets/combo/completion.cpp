#include "widgets/combo/completion.h"

#include "common/text_compare.h"

namespace qvx {

int FindBeginningWith(int count, const EntryReader& entry, TextView text) {
    if (text.empty()) return -1;
    for (int index = 0; index < count; ++index)
        if (StartsWithNoCase(entry(index), text)) return index;
    return -1;
}

int FindExactly(int count, const EntryReader& entry, TextView text) {
    for (int index = 0; index < count; ++index)
        if (EqualNoCase(entry(index), text)) return index;
    return -1;
}

Completion CompleteTyping(int count, const EntryReader& entry, TextView text, int caret, bool deleting) {
    if (deleting || caret != static_cast<int>(text.size()))
        return {FindExactly(count, entry, text), Text(text), caret, 0};
    const int found = FindBeginningWith(count, entry, text);
    // If no entry begins with the text, no entry equals it either.
    if (found < 0) return {text.empty() ? FindExactly(count, entry, text) : -1, Text(text), caret, 0};
    Text completed = entry(found);
    const int added = static_cast<int>(completed.size()) - caret;
    return {found, std::move(completed), caret, added};
}

}  // namespace qvx
