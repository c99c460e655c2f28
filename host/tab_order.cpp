#include "host/tab_order.h"

#include <algorithm>
#include <numeric>

#include "common/ascii.h"
#include "common/text_compare.h"

namespace qvx::host {

namespace {

// Positions by tab index; equal ones keep their order.
template <typename Stop>
std::vector<std::size_t> Ordered(const std::vector<Stop>& stops) {
    std::vector<std::size_t> order(stops.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return stops[a].tabIndex < stops[b].tabIndex; });
    return order;
}

// The first position that `accepts`, walking on from `from` once around and ending with `from` itself.
template <typename Accepts>
std::optional<std::size_t> Walk(std::vector<std::size_t> order, std::optional<std::size_t> from, Accepts accepts) {
    auto start = order.begin();
    if (from) {
        start = std::find(order.begin(), order.end(), *from);
        if (start != order.end()) ++start;
    }
    std::rotate(order.begin(), start, order.end());
    const auto found = std::find_if(order.begin(), order.end(), accepts);
    if (found == order.end()) return std::nullopt;
    return *found;
}

}  // namespace

std::optional<std::size_t> NextTabStop(const std::vector<TabStop>& stops, std::optional<std::size_t> from,
                                       bool forward) {
    std::vector<std::size_t> order = Ordered(stops);
    if (!forward) std::reverse(order.begin(), order.end());
    return Walk(std::move(order), from, [&](std::size_t i) { return stops[i].reachable; });
}

char16_t AccessKey(TextView caption) {
    for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != u'&') continue;
        if (caption[i + 1] != u'&') return LowerAscii(caption[i + 1]);
        ++i;
    }
    return 0;
}

std::optional<std::size_t> FindAccessKey(const std::vector<AccessStop>& stops, char16_t key,
                                         std::optional<std::size_t> from) {
    if (key == 0) return std::nullopt;
    const char32_t wanted = FoldCase(key);
    return Walk(Ordered(stops), from, [&](std::size_t i) {
        const Text& keys = stops[i].keys;
        return stops[i].available &&
               std::any_of(keys.begin(), keys.end(), [&](char16_t own) { return FoldCase(own) == wanted; });
    });
}

}  // namespace qvx::host
