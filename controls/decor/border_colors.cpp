#include "controls/decor/border_colors.h"

#include "common/number_text.h"

namespace qvx::decor {

namespace {
constexpr int innerWidth = 3;
constexpr int outerWidth = 1;
}  // namespace

std::array<BorderBand, 2> BorderBands(const BorderColors& colors) {
    return {{{colors.inner, innerWidth}, {colors.outer, outerWidth}}};
}

Text WindowKey(std::int32_t window) { return IntegerToText(window) + u"_"; }

void BorderTable::Set(std::int32_t window, const BorderColors& colors) {
    Remove(window);
    if (Empty()) {
        inner_.emplace();
        outer_.emplace();
    }
    const Text key = WindowKey(window);
    inner_->Add(colors.inner, key);
    outer_->Add(colors.outer, key);
}

void BorderTable::Remove(std::int32_t window) {
    const Text key = WindowKey(window);
    if (Empty() || !inner_->Contains(key)) return;
    inner_->Remove(key);
    outer_->Remove(key);
    if (inner_->Count() > 0) return;
    inner_.reset();
    outer_.reset();
}

std::optional<BorderColors> BorderTable::Find(std::int32_t window) const {
    if (Empty()) return std::nullopt;
    const Text key = WindowKey(window);
    const OleColor* inner = inner_->Find(key);
    const OleColor* outer = outer_->Find(key);
    if (!inner || !outer) return std::nullopt;
    return BorderColors{*inner, *outer};
}

}  // namespace qvx::decor
