// Blocks of a form file as text of their own: on the clipboard, and for new controls.
#pragma once

#include "host/form_file.h"
#include "host/twips_rect.h"

namespace qvx::host::designer {

// The most controls that are pasted at once.
constexpr std::size_t pastedControls = 5000;

// Throws RunTimeError 380 with a sentence for the user.
[[noreturn]] void Refuse(Text sentence);

// The lines of a block with their indentation changed so that it begins with `indent`, each ended by `lineEnd`.
Text BlockText(const Block& block, TextView indent, TextView lineEnd);

// The indentation of a block's contents; one level more than its own when it is empty.
Text InnerIndent(const Block& container);

// The objects in a text from BlockText, or in a whole form file. Throws RunTimeError 380 with a sentence for the user
// when there are none, or anything else, menus included.
std::vector<std::unique_ptr<Block>> ObjectsIn(TextView text);

// The same block written with another indentation and other line ends. Throws as ObjectsIn does.
std::unique_ptr<Block> Reindented(const Block& block, TextView indent, TextView lineEnd);

// Inserts an object into a container before its first control or after its last one; after everything else when it has
// none.
void Insert(Block& container, std::unique_ptr<Block> object, bool front);

// Changes the name on the block's first line, whose spacing and remark stay.
void Rename(Block& block, TextView name);

// The block of a new control, with the texts that a host gives its own controls.
Text NewBlockText(TextView className, TextView name, const TwipsRect& bounds, int tabIndex);

// The size of a control that is placed by a click.
struct UsualSize {
    int width;
    int height;
};
UsualSize UsualSizeOf(TextView className);

// Whether scripts can call an object so: a letter, then letters, digits and "_", forty at most.
bool IsObjectName(TextView name);

}  // namespace qvx::host::designer
