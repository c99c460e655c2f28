#include "designer/document/control_walk.h"

#include <algorithm>
#include <limits>

#include "common/text_compare.h"

namespace qvx::host::designer {

namespace {

void Walk(const Block& container, std::optional<std::size_t> at, std::vector<Visit>& found) {
    for (const Block* block : container.Objects()) {
        if (IsMenu(*block)) continue;
        found.push_back({block, at});
        if (HoldsOthers(block->className)) Walk(*block, found.size() - 1, found);
    }
}

}  // namespace

bool HoldsOthers(TextView className) { return SameName(className, u"Frame"); }

bool IsMenu(const Block& block) { return SameName(block.className, u"Menu"); }

ObjectId IdOf(const Block& block) { return {block.name, std::max(block.IntOf(u"Index", -1), -1)}; }

std::vector<Visit> Walk(const Block& form) {
    std::vector<Visit> found;
    Walk(form, std::nullopt, found);
    return found;
}

const Block* FindControl(const Block& form, const ObjectId& id) {
    for (const Entry& entry : form.entries) {
        const Block* block = entry.block.get();
        if (!block || block->kind != Block::Kind::object || IsMenu(*block)) continue;
        // The index is a property among others, so that it is read last.
        if (SameName(block->name, id.name) && IdOf(*block) == id) return block;
        if (!HoldsOthers(block->className)) continue;
        if (const Block* inner = FindControl(*block, id)) return inner;
    }
    return nullptr;
}

std::vector<int> TabIndexes(const std::vector<Visit>& visits) {
    std::vector<int> indexes;
    int highest = -1;
    for (const Visit& visit : visits) {
        const int next = highest < std::numeric_limits<int>::max() ? highest + 1 : highest;
        indexes.push_back(visit.block->IntOf(u"TabIndex", next));
        highest = std::max(highest, indexes.back());
    }
    return indexes;
}

int NextTabIndex(const std::vector<Visit>& visits) {
    int next = 0;
    for (const int index : TabIndexes(visits)) {
        if (index < std::numeric_limits<int>::max()) next = std::max(next, index + 1);
    }
    return next;
}

}  // namespace qvx::host::designer
