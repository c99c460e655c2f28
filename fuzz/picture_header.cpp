// Picture files: a file that is passed to a decoder contains what its header promises. The input is the file.
#include "common/picture_header.h"

#include <cstdlib>

#include "fuzz/fuzz_input.h"

void qvx::CheckInput(FuzzInput& input) {
    const std::vector<std::uint8_t> file = input.RestBytes();
    const auto extent = PictureExtent(file);
    if (!MayDecodePicture(file) || !extent) return;
    Require(extent->width > 0 && extent->height != 0, "a picture that may be decoded has an extent");
    Require(extent->width <= 8192 && std::abs(extent->height) <= 8192, "which is not larger than any picture is");
    const bool bitmap = file.size() > 30 && file[0] == 'B' && file[1] == 'M' && file[14] == 40 && file[30] == 0;
    if (!bitmap) return;
    const std::size_t pixels =
        static_cast<std::size_t>(extent->width) * static_cast<std::size_t>(std::abs(extent->height));
    Require(file.size() >= pixels / 8, "and whose pixels are in the file");
}
