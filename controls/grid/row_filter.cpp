#include "controls/grid/row_filter.h"

#include <algorithm>
#include <list>
#include <utility>

#include "common/text_compare.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/column_index.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {
namespace {

// Appends a text in which a character is doubled.
void AppendDoubled(Text& to, TextView text, char16_t doubled) {
    for (const char16_t c : text) to.append(c == doubled ? 2 : 1, c);
}

std::optional<CellCondition> ReadConditionOf(const flexgrid::Grid& grid, const ControlState& state,
                                             const FilterHelp& help, int col, TextView text) {
    return CellCondition::Read(text, CleaningCode(state.columnsDataType, CaptionOf(grid, col)), help);
}

// Returns the column with that key; -1 for none.
int ColumnWithKey(const std::vector<Text>& keys, TextView key) {
    const auto found = std::find_if(keys.begin(), keys.end(), [&](const Text& k) { return EqualNoCase(k, key); });
    return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

}  // namespace

[[gnu::cold]] std::vector<Text> ColumnKeys(const flexgrid::Grid& grid) {
    std::vector<Text> keys;
    for (auto& [key, col] : RefreshColIndex(grid).entries) keys.push_back(std::move(key));
    return keys;
}

// ---- The list ------------------------------------------------------------------------------------------------------

[[gnu::cold]] std::optional<std::vector<FilterItem>> ReadFilterItems(TextView list) {
    std::vector<FilterItem> items;
    while (!list.empty()) {
        if (list.front() != u'[') return std::nullopt;
        FilterItem item;
        std::size_t i = 1;
        for (; i < list.size(); ++i) {
            if (list[i] == u']' && !(i + 1 < list.size() && list[i + 1] == u']')) break;
            if (list[i] == u']') ++i;
            item.column += list[i];
        }
        if (i++ >= list.size()) return std::nullopt;
        bool ends = false;
        for (; i < list.size() && !ends; ++i) {
            const char16_t next = i + 1 < list.size() ? list[i + 1] : u'\0';
            ends = list[i] == u',' && next == u'[';
            if (!ends) item.condition += list[i];
            if (list[i] == u',' && next == u',') ++i;
        }
        items.push_back(std::move(item));
        list.remove_prefix(i);
    }
    return items;
}

[[gnu::cold]] Text FilterItemsText(std::span<const FilterItem> items) {
    Text list;
    for (const FilterItem& item : items) {
        list.append(list.empty() ? u"[" : u",[");
        AppendDoubled(list, item.column, u']');
        list += u']';
        AppendDoubled(list, item.condition, u',');
    }
    return list;
}

// ---- The filter ----------------------------------------------------------------------------------------------------

TextView RowFilter::ConditionOf(TextView column) const {
    for (const FilterItem& item : items_)
        if (EqualNoCase(item.column, column)) return item.condition;
    return {};
}

[[gnu::cold]] void RowFilter::SetCondition(TextView column, TextView condition) {
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [&](const FilterItem& item) { return EqualNoCase(item.column, column); });
    if (IsBlank(condition)) {
        if (found != items_.end()) items_.erase(found);
    } else if (found != items_.end()) {
        found->condition = condition;
    } else {
        items_.push_back({Text(column), Text(condition)});
    }
}

void RowFilter::FollowKeys(const std::vector<Text>& before, const std::vector<Text>& now) {
    std::vector<FilterItem> items = items_;
    for (FilterItem& item : items)
        if (const int col = ColumnWithKey(before, item.column); col >= 0)
            item.column = now[static_cast<std::size_t>(col)];
    items_ = std::move(items);
}

[[gnu::cold]] bool RowFilter::Replace(const flexgrid::Grid& grid, const ControlState& state, const FilterHelp& help,
                                      TextView list) {
    const auto items = ReadFilterItems(list);
    if (!items) return false;
    const std::vector<Text> keys = ColumnKeys(grid);
    RowFilter fresh;
    for (const FilterItem& item : *items) {
        const int col = ColumnWithKey(keys, item.column);
        if (col < 0 || !IsCondition(grid, state, help, col, item.condition)) return false;
        fresh.SetCondition(keys[static_cast<std::size_t>(col)], item.condition);
    }
    items_ = std::move(fresh.items_);
    return true;
}

[[gnu::cold]] Text RowFilter::List(const flexgrid::Grid& grid, const ControlState& state,
                                   const FilterHelp& help) const {
    const std::vector<Text> keys = ColumnKeys(grid);
    std::vector<FilterItem> applied;
    for (const FilterItem& item : items_) {
        const int col = ColumnWithKey(keys, item.column);
        if (col >= 0 && IsCondition(grid, state, help, col, item.condition)) applied.push_back(item);
    }
    return FilterItemsText(applied);
}

std::optional<std::vector<bool>> RowFilter::RowsToHide(const flexgrid::Grid& grid, const ControlState& state,
                                                       const FilterHelp& help) const {
    const std::vector<Text> keys = ColumnKeys(grid);
    std::list<std::pair<int, CellCondition>> conditions;
    for (const FilterItem& item : items_) {
        const int col = ColumnWithKey(keys, item.column);
        if (col < 0) continue;
        if (auto condition = ReadConditionOf(grid, state, help, col, item.condition))
            conditions.emplace_back(col, std::move(*condition));
    }
    if (conditions.empty()) return std::nullopt;
    std::vector<bool> hide(static_cast<std::size_t>(grid.Rows()));
    Text scratch;
    grid.ForEachRow(grid.FixedRows(), grid.Rows() - 1, [&](int row, const flexgrid::RowView& cells) {
        for (const auto& [col, condition] : conditions) {
            if (condition.Matches(cells[col], scratch)) continue;
            hide[static_cast<std::size_t>(row)] = true;
            break;
        }
    });
    return hide;
}

[[gnu::cold]] bool IsCondition(const flexgrid::Grid& grid, const ControlState& state, const FilterHelp& help, int col,
                               TextView text) {
    return IsBlank(text) || ReadConditionOf(grid, state, help, col, text).has_value();
}

}  // namespace qvx::grid
