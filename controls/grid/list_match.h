// Which entry of its list a list-only column takes when an edit is committed.
#pragma once

#include "common/text.h"
#include "widgets/combo/completion.h"

namespace qvx::grid {

// The combo's list as it stands at the commit. Entries are read as they are needed: of a long list hardly any is.
struct ListState {
    int count = 0;
    EntryReader entry;
    int listIndex = -1;  // -1: nothing is selected
    int topIndex = 0;    // the first entry in view
};

// More entries than this behind the top one mean that the drop-down has scrolled its match to the top.
constexpr int listRowsInView = 8;

// The text that the cell gets: the selected entry's; else that of the first entry from the top on that begins with the
// typed text, looked for only when at most 8 entries are left there, while in a longer list the top entry is taken
// unseen; else the old text, or the top entry when there was none. An index past the list reads as "".
Text MatchListEntry(const ListState& list, TextView typed, TextView oldText);

// The text that a cell gets when a text comes from elsewhere, without a drop-down that has followed the typing: the
// entry that it is or else the first that begins with it; the old text when there is none, or the first entry when
// there was none, either. An empty text changes nothing, unless it is an entry.
Text MatchGivenEntry(const ListState& list, TextView text, TextView oldText);

}  // namespace qvx::grid
