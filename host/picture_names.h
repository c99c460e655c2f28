// The names of picture files that a form refers to.
#pragma once

#include "common/text.h"

namespace qvx::host {

// The name of a file for a picture of that list and key, without its suffix: what no file can be called becomes "_".
Text PictureFileName(TextView list, TextView key);
// `file` as a form in that folder names it: relative when it stands there or below.
Text RelativeTo(TextView folder, TextView file);

}  // namespace qvx::host
