// The order in which a list shows its entries while something is typed: those that match come first.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/text.h"
#include "widgets/combo/completion.h"

namespace qvx {

struct ListOrder {
    std::vector<std::uint32_t> entries;  // the entry at each position; empty for the list's own order
    int matches = 0;                     // so many entries match, and come first

    bool Own() const { return entries.empty(); }
    // The entry at a position of the list; -1 outside.
    int EntryAt(int position) const;
    // The position of an entry; -1 outside.
    int PositionOf(int entry) const;
};

// Puts the entries that begin with the text first, then those that contain it, then all others, each group in the
// list's own order. Case is ignored. An empty text, and one that no entry contains, leave the list in its own order.
ListOrder OrderByMatch(std::span<const Text> entries, TextView text);

// Completes what was typed as CompleteTyping does, in a list in that order. Where no entry begins with the text, the
// first one that contains it is chosen, and the text stays as it is; so it does while characters are deleted.
Completion CompleteInOrder(std::span<const Text> entries, const ListOrder& order, TextView text, int caret,
                           bool deleting);

}  // namespace qvx
