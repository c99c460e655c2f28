// Lists in the form "[Caption]text,[Caption]text", which say something of columns in words of any kind.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::grid {

struct CaptionedText {
    TextView caption;
    TextView text;  // goes up to the next ",["
};

// Takes the first item off a list; nullopt if the list is empty or does not begin with one, and then it stays as it is.
std::optional<CaptionedText> TakeCaptioned(TextView& list);

// Adds an item to a list. Raises error 380 for a caption with "]" and for a text with ",[", which no item can have.
void AppendCaptioned(Text& list, const CaptionedText& item);

// Returns what a list says of a caption, in its first item for it; "" for nothing.
TextView TextForCaption(TextView list, TextView caption);

// Returns the list that says this of a caption; "" removes it. Further items of the caption are removed. Raises error
// 380 for a list that cannot be read, and for a caption or a text that it cannot have.
Text WithTextForCaption(TextView list, TextView caption, TextView text);

// Raises error 380 for a list that cannot be read.
void CheckCaptionList(TextView list);

}  // namespace qvx::grid
