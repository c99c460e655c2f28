// Controls of the designer's document as text, and back.
#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <tuple>

#include "common/text_compare.h"
#include "designer/document/control_walk.h"
#include "designer/document/document.h"
#include "designer/document/form_text.h"
#include "designer/document/placement.h"

namespace qvx::host::designer {

namespace {

constexpr int pasteStep = gridStep;

TwipsRect MovedAside(TwipsRect bounds, int distance) {
    if (distance == 0) return bounds;
    bounds.left = std::min(bounds.left, farthest) + distance;
    bounds.top = std::min(bounds.top, farthest) + distance;
    return bounds;
}

// How far the group has to move to the right and down so that it covers no control of the container exactly.
int FreeDistance(const Block& into, const std::vector<std::unique_ptr<Block>>& group) {
    const auto place = [](const TwipsRect& r) { return std::tuple(r.left, r.top, r.width, r.height); };
    std::set<std::tuple<int, int, int, int>> taken;
    for (const Block* sibling : into.Objects()) {
        if (!IsMenu(*sibling)) taken.insert(place(Document::BoundsOf(*sibling)));
    }
    std::vector<TwipsRect> bounds;
    std::transform(group.begin(), group.end(), std::back_inserter(bounds),
                   [](const auto& block) { return Document::BoundsOf(*block); });
    int distance = 0;
    const auto covers = [&](const TwipsRect& each) { return taken.contains(place(MovedAside(each, distance))); };
    while (distance < farthest && std::any_of(bounds.begin(), bounds.end(), covers)) distance += pasteStep;
    return distance;
}

}  // namespace

Text Document::CopyText(const std::vector<ObjectId>& ids) const {
    Text text;
    const std::vector<Visit> visits = Walk(file_.form);
    const IdTable wanted(ids);
    std::vector<bool> copied(visits.size());
    for (std::size_t i = 0; i < visits.size(); ++i) {
        const bool along = visits[i].container && copied[*visits[i].container];
        copied[i] = along || wanted.Has(IdOf(*visits[i].block));
        if (copied[i] && !along) text += BlockText(*visits[i].block, {}, u"\r\n");
    }
    return text;
}

std::size_t Document::CountIn(TextView text) {
    std::size_t count = 0;
    for (const auto& block : ObjectsIn(text)) {
        count += 1 + Walk(*block).size();
    }
    return count;
}

std::vector<ObjectId> Document::Paste(TextView text, const std::optional<ObjectId>& container, bool asArray) {
    Block& into = Container(container);
    auto objects = ObjectsIn(text);
    Indexes used = UsedNames();
    const auto name = [&](const auto& self, Block& block) -> void {
        const int wanted = IdOf(block).index;
        const bool usable = IsObjectName(block.name);
        auto& taken = used[FoldedText(block.name)];
        const bool array = !taken.empty() && std::find(taken.begin(), taken.end(), -1) == taken.end();
        int index = wanted;
        if (usable && taken.empty()) {
            // The name is free.
        } else if (usable && array && (wanted >= 0 || asArray)) {
            const bool free = wanted >= 0 && std::find(taken.begin(), taken.end(), wanted) == taken.end();
            index = free ? wanted : *std::max_element(taken.begin(), taken.end()) + 1;
        } else if (usable && asArray && Find({block.name, -1}) &&
                   SameName(Find({block.name, -1})->className, block.className)) {
            // The control that has the name becomes the first element.
            Find({block.name, -1})->Set(u"Index", std::int32_t{0});
            taken = {0};
            index = 1;
        } else {
            if (taken.empty()) used.erase(FoldedText(block.name));
            designer::Rename(block, FreshNameIn(used, block.className));
            index = -1;
        }
        used[FoldedText(block.name)].push_back(index);
        if (index >= 0 && index != wanted) block.Set(u"Index", std::int32_t{index});
        if (index < 0) block.Remove(u"Index");
        for (Block* inner : block.Objects()) self(self, *inner);
    };
    const int aside = FreeDistance(into, objects);
    std::vector<ObjectId> order = TabOrder();
    int next = NextTabIndex(Walk(file_.form));
    const auto number = [&](const auto& self, Block& block) -> void {
        block.Set(u"TabIndex", std::int32_t{next});
        if (next < std::numeric_limits<int>::max()) ++next;
        order.push_back(IdOf(block));
        for (Block* inner : block.Objects()) self(self, *inner);
    };
    std::vector<ObjectId> pasted;
    std::vector<std::unique_ptr<Block>> ready;
    for (auto& object : objects) {
        name(name, *object);
        if (aside > 0) {
            const TwipsRect bounds = MovedAside(BoundsOf(*object), aside);
            object->Set(u"Left", std::int32_t{bounds.left});
            object->Set(u"Top", std::int32_t{bounds.top});
        }
        number(number, *object);
        pasted.push_back(IdOf(*object));
        ready.push_back(Reindented(*object, InnerIndent(into), into.begin.lineEnd));
    }
    // Each is inserted before the others, so that the last one goes first and their order stays.
    std::reverse(ready.begin(), ready.end());
    for (auto& object : ready) Insert(into, std::move(object), true);
    KeepTabOrder(order);
    try {
        // The form must not get a text that could not be read again.
        CheckNames(FormFile::Parse(Bytes()).form);
    } catch (const FormFileError& error) {
        Refuse(u"This cannot be pasted here: " + error.Message() + u".");
    }
    return pasted;
}

}  // namespace qvx::host::designer
