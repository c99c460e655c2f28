#include "widgets/combo/list_order.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qvx {

int ListOrder::EntryAt(int position) const {
    if (Own()) return position;
    return position >= 0 && position < static_cast<int>(entries.size())
               ? static_cast<int>(entries[static_cast<std::size_t>(position)])
               : -1;
}

int ListOrder::PositionOf(int entry) const {
    if (Own()) return entry;
    const auto found = std::find(entries.begin(), entries.end(), static_cast<std::uint32_t>(entry));
    return found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
}

ListOrder OrderByMatch(std::span<const Text> entries, TextView text) {
    if (text.empty()) return {};
    enum : std::uint8_t { begins, contains, others, kinds };
    std::vector<std::uint8_t> kindOf(entries.size());
    std::array<std::size_t, kinds> counts{};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::size_t at = FindNoCase(entries[i], text);
        kindOf[i] = at == 0 ? begins : at != Text::npos ? contains : others;
        ++counts[kindOf[i]];
    }
    if (counts[others] == entries.size()) return {};
    ListOrder order;
    order.matches = static_cast<int>(counts[begins] + counts[contains]);
    order.entries.resize(entries.size());
    std::array<std::size_t, kinds> next{0, counts[begins], counts[begins] + counts[contains]};
    for (std::size_t i = 0; i < entries.size(); ++i) order.entries[next[kindOf[i]]++] = static_cast<std::uint32_t>(i);
    return order;
}

Completion CompleteInOrder(std::span<const Text> entries, const ListOrder& order, TextView text, int caret,
                           bool deleting) {
    const auto entry = [&](int index) { return TextView(entries[static_cast<std::size_t>(index)]); };
    const int first = order.matches > 0 ? order.EntryAt(0) : -1;
    const bool completes = first >= 0 && StartsWithNoCase(entry(first), text);
    if (completes && !deleting && caret == static_cast<int>(text.size())) {
        const Text completed(entry(first));
        return {first, completed, caret, static_cast<int>(completed.size()) - caret};
    }
    const int exact = FindExactly(static_cast<int>(entries.size()), entry, text);
    return {exact >= 0 ? exact : first, Text(text), caret, 0};
}

}  // namespace qvx
