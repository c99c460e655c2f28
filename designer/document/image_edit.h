// The pictures of an image list as lines that can be edited.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"
#include "host/form_file.h"

namespace qvx::host::designer {

struct ImageLine {
    Text key;
    Text file;  // relative to the form's folder, or a full path
    Text tag;
    // Which of the images that were read it is; none for a new one.
    std::optional<std::size_t> origin;
    friend bool operator==(const ImageLine&, const ImageLine&) = default;
};

std::vector<ImageLine> ReadImages(const Block& imageList);
// Images that stay in their place stay byte for byte.
void WriteImages(Block& imageList, const std::vector<ImageLine>& images);
// The first key that is there twice, if one is.
std::optional<Text> DoubleKey(const std::vector<ImageLine>& images);

}  // namespace qvx::host::designer
