// The names of picture files that a form refers to.
#pragma once

#include "common/text.h"

namespace qvx::host {

// The name of a file, without its suffix, for a picture of that list and key. Characters that cannot be in a file's
// name become "_".
Text PictureFileName(TextView list, TextView key);
// `file` as a form in that folder names it: relative when it is there or below.
Text RelativeTo(TextView folder, TextView file);

}  // namespace qvx::host
