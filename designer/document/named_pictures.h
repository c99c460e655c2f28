// The picture files that a form names.
#pragma once

#include <vector>

#include "common/text.h"
#include "host/form_file.h"

namespace qvx::host::designer {

// Whether a path begins with a drive or a slash.
bool IsRooted(TextView path);
// The last part of a path.
Text FileNameOf(TextView path);

// The picture files below the form's folder that the form and its controls name.
std::vector<Text> PicturesIn(const Block& form);

// The name of a copy: "a.bmp" itself for the number 1, then "a-2.bmp" and so on.
Text NumberedName(const Text& name, int number);

}  // namespace qvx::host::designer
