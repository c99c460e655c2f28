#include "controls/grid/column_lists.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "common/text_compare.h"

namespace qvx::grid {
namespace {

std::optional<int> ReadDigits(TextView digits) {
    if (digits.empty()) return std::nullopt;
    constexpr std::int64_t largest = std::numeric_limits<int>::max();
    std::int64_t number = 0;
    for (const char16_t c : digits) {
        if (c < u'0' || c > u'9') return std::nullopt;
        number = std::min(number * 10 + (c - u'0'), largest);
    }
    return static_cast<int>(number);
}

}  // namespace

bool IsListedColumn(TextView list, TextView caption) {
    Text item;
    item.reserve(caption.size() + 2);
    item.append(1, u';').append(caption).append(1, u';');
    return ContainsNoCase(list, item);
}

bool HasColumnCode(TextView list, TextView caption, int code) {
    Text item;
    item.reserve(caption.size() + 4);
    item.append(1, u';').append(caption).append(1, u'-').append(1, static_cast<char16_t>(u'0' + code)).append(1, u';');
    return ContainsNoCase(list, item);
}

int ColumnNumber(TextView list, TextView caption) {
    Text item;
    item.reserve(caption.size() + 2);
    item.append(1, u';').append(caption).append(1, u'-');
    for (std::size_t at = FindNoCase(list, item); at != Text::npos; at = FindNoCase(list, item)) {
        list.remove_prefix(at + item.size());
        const std::size_t end = list.find(u';');
        if (end == Text::npos) break;
        if (const auto number = ReadDigits(list.substr(0, end))) return *number;
    }
    return 0;
}

Text CaptionOf(const flexgrid::Grid& grid, int col) {
    return grid.Rows() == 0 && col >= 0 && col < grid.Cols() ? Text() : grid.TextArray(col);
}

bool IsListedColumn(const flexgrid::Grid& grid, TextView list, int col) {
    return IsListedColumn(list, CaptionOf(grid, col));
}

bool HasColumnCode(const flexgrid::Grid& grid, TextView list, int col, int code) {
    return HasColumnCode(list, CaptionOf(grid, col), code);
}

}  // namespace qvx::grid
