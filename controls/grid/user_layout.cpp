#include "controls/grid/user_layout.h"

#include <algorithm>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/text_compare.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {
namespace {

constexpr TextView layoutVersion = u"1";
constexpr TextView reserved = u"%|=*";
constexpr TextView sortName = u"*sort";
constexpr TextView filterName = u"*filter";
constexpr int widest = 1'000'000;  // twips; wider than any screen

void AppendEscaped(Text& to, TextView text) {
    constexpr TextView digits = u"0123456789ABCDEF";
    for (const char16_t c : text) {
        if (reserved.find(c) == TextView::npos)
            to += c;
        else
            to.append({u'%', digits[c / 16], digits[c % 16]});
    }
}

std::optional<Text> Unescaped(TextView text) {
    Text plain;
    for (; !text.empty(); text.remove_prefix(1)) {
        if (text.front() != u'%') {
            plain += text.front();
            continue;
        }
        if (text.size() < 3) return std::nullopt;
        const auto high = static_cast<unsigned>(HexDigitValue(text[1]));
        const auto low = static_cast<unsigned>(HexDigitValue(text[2]));
        if (high > 0xF || low > 0xF) return std::nullopt;
        plain += static_cast<char16_t>(16 * high + low);
        text.remove_prefix(2);
    }
    return plain;
}

std::optional<int> ReadWidth(TextView text) {
    if (text.empty()) return std::nullopt;
    int width = 0;
    for (const char16_t c : text) {
        if (!IsDigit(c)) return std::nullopt;
        width = std::min(width * 10 + (c - u'0'), widest);
    }
    return width;
}

// Removes the first part from the text and returns it.
TextView TakePart(TextView& text) {
    const auto end = std::min(text.find(u'|'), text.size());
    const TextView part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

}  // namespace

Text WriteLayout(const UserLayout& layout) {
    Text text(layoutVersion);
    for (const UserLayout::Column& column : layout.columns) {
        text += u'|';
        AppendEscaped(text, column.caption);
        text += u'=' + IntegerToText(column.width);
    }
    const auto add = [&](TextView name, const Text& value) {
        if (value.empty()) return;
        text.append(u"|").append(name).append(u"=");
        AppendEscaped(text, value);
    };
    add(sortName, layout.sort);
    add(filterName, layout.filter);
    return text;
}

std::optional<UserLayout> ReadLayout(TextView text) {
    UserLayout layout;
    if (TakePart(text) != layoutVersion) return std::nullopt;
    while (!text.empty()) {
        const TextView part = TakePart(text);
        const auto equals = part.find(u'=');
        if (equals == TextView::npos) return std::nullopt;
        const TextView name = part.substr(0, equals);
        const TextView value = part.substr(equals + 1);
        if (name.starts_with(u'*')) {
            const auto plain = Unescaped(value);
            if (!plain) return std::nullopt;
            if (name == sortName) layout.sort = *plain;
            if (name == filterName) layout.filter = *plain;
            continue;
        }
        auto caption = Unescaped(name);
        const auto width = ReadWidth(value);
        if (!caption || !width) return std::nullopt;
        layout.columns.push_back({std::move(*caption), *width});
    }
    return layout;
}

std::vector<UserLayout::Column> LayoutColumns(const flexgrid::Grid& grid) {
    std::vector<UserLayout::Column> columns;
    columns.reserve(static_cast<std::size_t>(grid.Cols()));
    for (int col = 0; col < grid.Cols(); ++col) columns.push_back({CaptionOf(grid, col), grid.ColWidth(col)});
    return columns;
}

void ApplyLayoutColumns(flexgrid::Grid& grid, const ControlState& state, const std::vector<UserLayout::Column>& columns,
                        int firstMovable, const std::function<void(int from, int to)>& move) {
    // The columns as they are now, and for each its place among those of the layout.
    const int none = static_cast<int>(columns.size());
    std::vector<int> places(static_cast<std::size_t>(grid.Cols()), none);
    for (int place = 0; place < none; ++place) {
        const UserLayout::Column& wanted = columns[static_cast<std::size_t>(place)];
        for (int col = 0; col < grid.Cols(); ++col) {
            int& found = places[static_cast<std::size_t>(col)];
            if (found != none || !EqualNoCase(CaptionOf(grid, col), wanted.caption)) continue;
            found = place;
            if (!IsListedColumn(grid, state.inVisibleColumns, col)) grid.SetColWidth(col, wanted.width);
            break;
        }
    }
    for (auto to = places.begin() + std::min(firstMovable, grid.Cols()); to != places.end(); ++to) {
        const auto from = std::min_element(to, places.end());
        if (*from == *to) continue;
        move(static_cast<int>(from - places.begin()), static_cast<int>(to - places.begin()));
        std::rotate(to, from, from + 1);
    }
}

}  // namespace qvx::grid
