// Blocks of a form file as text of their own: on the clipboard, and new ones that are made.
#pragma once

#include "host/form_file.h"
#include "host/twips_rect.h"

namespace qvx::host::designer {

// What a clipboard may bring at most.
constexpr std::size_t pastedControls = 5000;

// Throws RunTimeError 380 with a sentence for the user.
[[noreturn]] void Refuse(Text sentence);

// The lines of a block with their indentation changed so that it begins with `indent`, each ended by `lineEnd`.
Text BlockText(const Block& block, TextView indent, TextView lineEnd);

// The indentation of what stands in a block, one level deeper than its own line when nothing does yet.
Text InnerIndent(const Block& container);

// The objects in a text such as BlockText gives, or of a whole form file. Throws RunTimeError 380 with a sentence for
// the user when it holds anything else, menus among them, or nothing.
std::vector<std::unique_ptr<Block>> ObjectsIn(TextView text);

// The same block written with another indentation and other line ends. Throws as ObjectsIn does.
std::unique_ptr<Block> Reindented(const Block& block, TextView indent, TextView lineEnd);

// Puts an object into a container: before its first control, behind its last one, or behind everything else where it
// has none.
void Insert(Block& container, std::unique_ptr<Block> object, bool front);

// A new name on the block's first line, whose spacing and remark stay.
void Rename(Block& block, TextView name);

// A control as it is first placed: with the texts a host gives its own ones.
Text NewBlockText(TextView className, TextView name, const TwipsRect& bounds, int tabIndex);

// How large a control is when it is placed by a click.
struct UsualSize {
    int width;
    int height;
};
UsualSize UsualSizeOf(TextView className);

// A letter, then letters, digits and "_", forty at most: what scripts can call an object.
bool IsObjectName(TextView name);

}  // namespace qvx::host::designer
