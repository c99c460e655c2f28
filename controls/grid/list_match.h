// The entry that a list-only column takes when an edit is committed.
#pragma once

#include "common/text.h"
#include "widgets/combo/completion.h"

namespace qvx::grid {

// The state of the combo's list at the commit. Entries are read only when needed: hardly any of a long list.
struct ListState {
    int count = 0;
    EntryReader entry;
    int listIndex = -1;  // -1: nothing is selected
    int topIndex = 0;    // the first entry in view
};

// If there are more entries than this from the top one on, the drop-down has scrolled its match to the top.
constexpr int listRowsInView = 8;

// Returns the text for the cell: the selected entry's; else that of the first entry from the top on that begins with
// the typed text, which is searched only when at most 8 entries are left there, while in a longer list the top entry is
// taken without a comparison; else the old text, or the top entry when the old text is empty. An index outside the list
// reads as "".
Text MatchListEntry(const ListState& list, TextView typed, TextView oldText);

// Returns the text for a cell whose text comes from elsewhere, without a drop-down that has followed the typing: the
// entry equal to it, else the first that begins with it; the old text when there is none, or the first entry when the
// old text is empty as well. An empty text changes nothing, unless it is an entry.
Text MatchGivenEntry(const ListState& list, TextView text, TextView oldText);

}  // namespace qvx::grid
