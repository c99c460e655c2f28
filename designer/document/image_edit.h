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
    // The position among the images that were read; nothing for a new one.
    std::optional<std::size_t> origin;
    friend bool operator==(const ImageLine&, const ImageLine&) = default;
};

std::vector<ImageLine> ReadImages(const Block& imageList);
// Writes the images into the block. An image that keeps its place stays byte for byte.
void WriteImages(Block& imageList, const std::vector<ImageLine>& images);
// The first key that occurs twice; nothing when all differ.
std::optional<Text> DoubleKey(const std::vector<ImageLine>& images);

}  // namespace qvx::host::designer
