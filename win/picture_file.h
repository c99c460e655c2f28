// Pictures out of files, decoded by the system.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx {

// The picture in a file of any format the system reads. Throws RunTimeError 53 for a file that cannot be read, 481
// "Invalid picture" for one that no decoder should be given, and ComError for one that holds no picture.
ComPtr<IPictureDisp> LoadPictureFile(const Text& path);

}  // namespace qvx
