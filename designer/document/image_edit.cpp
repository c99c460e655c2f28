#include "designer/document/image_edit.h"

#include <algorithm>
#include <set>

#include "common/number_text.h"
#include "common/text_compare.h"

namespace qvx::host::designer {

namespace {

std::vector<const Block*> ImageBlocks(const Block& imageList) {
    std::vector<const Block*> blocks;
    const Block* group = imageList.FindGroup(u"Images");
    if (!group) return blocks;
    for (const Entry& entry : group->entries) {
        if (entry.block && entry.block->kind == Block::Kind::propertyGroup) blocks.push_back(entry.block.get());
    }
    return blocks;
}

void Store(Block& block, TextView name, const Text& value) {
    if (block.TextOf(name) == value) return;
    if (value.empty()) {
        block.Remove(name);
    } else {
        block.Set(name, value);
    }
}

}  // namespace

std::vector<ImageLine> ReadImages(const Block& imageList) {
    std::vector<ImageLine> images;
    for (const Block* block : ImageBlocks(imageList)) {
        images.push_back({block->TextOf(u"Key"), block->TextOf(u"Picture"), block->TextOf(u"Tag"), images.size()});
    }
    return images;
}

void WriteImages(Block& imageList, const std::vector<ImageLine>& images) {
    if (images == ReadImages(imageList)) return;
    if (images.empty()) {
        imageList.Remove(u"Images");
        return;
    }
    Block& group = imageList.Group(u"Images", {});
    const std::size_t before = ImageBlocks(imageList).size();
    // The groups stay and are filled anew, since their names are numbered.
    for (std::size_t i = images.size(); i < before; ++i) {
        const Text last = ImageBlocks(imageList).back()->name;
        if (!group.Remove(last)) break;
    }
    for (std::size_t i = 0; i < images.size(); ++i) {
        const std::vector<const Block*> blocks = ImageBlocks(imageList);
        const Text fresh = u"ListImage" + IntegerToText(static_cast<int>(i) + 1);
        Block& image = i < blocks.size() ? const_cast<Block&>(*blocks[i]) : group.Group(fresh, {});
        Store(image, u"Key", images[i].key);
        Store(image, u"Tag", images[i].tag);
        Store(image, u"Picture", images[i].file);
    }
}

std::optional<Text> DoubleKey(const std::vector<ImageLine>& images) {
    std::set<Text> used;
    for (const ImageLine& image : images) {
        if (!image.key.empty() && !used.insert(FoldedText(image.key)).second) return image.key;
    }
    return std::nullopt;
}

}  // namespace qvx::host::designer
