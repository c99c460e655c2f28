// Loading of pictures from files, decoded by the system.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx {

// Loads the picture from a file of any format that the system reads. Throws RunTimeError 53 for a file that cannot be
// read, 481 "Invalid picture" for one that no decoder should get, and ComError for one that contains no picture.
ComPtr<IPictureDisp> LoadPictureFile(const Text& path);

}  // namespace qvx
