#include "controls/grid/column_sort.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <string_view>

#include "common/text_compare.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/date_column.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {
namespace {

struct SortEnded {};

// Asks now and then whether to go on, and throws SortEnded if not.
class Patience {
  public:
    explicit Patience(const std::function<bool()>& goOn) : goOn_(goOn) {}
    void Step(unsigned work) {
        if ((done_ += work) < often) return;
        done_ = 0;
        if (goOn_ && !goOn_()) throw SortEnded();
    }

  private:
    static constexpr unsigned often = 65'536;
    const std::function<bool()>& goOn_;
    unsigned done_ = 0;
};

// A row with the sort key of one of its cells. The rank grows with a number or a date, or contains the first bytes of a
// text's key; it decides most comparisons.
struct Item {
    std::uint64_t rank = 0;
    std::uint32_t row = 0;
    bool last = false;  // whatever the direction
};

// The cells of one column as sort keys.
class ColumnKeys {
  public:
    ColumnKeys(const flexgrid::Grid& grid, const ControlState& state, int col, const SortHelp& help, Patience& patience)
        : first_(static_cast<std::uint32_t>(grid.FixedRows())),
          code_(CleaningCode(state.columnsDataType, CaptionOf(grid, col))),
          dates_(state.dateFormat, help.dates) {
        const auto count = static_cast<std::size_t>(grid.Rows() - grid.FixedRows());
        items_.reserve(count);
        if (code_ == noCleaning) starts_.reserve(count + 1);
        grid.ForEachCellInColumn(col, grid.FixedRows(), grid.Rows() - 1, [&](int row, flexgrid::CellView cell) {
            Add(static_cast<std::uint32_t>(row), cell, help);
            constexpr unsigned work = 64;  // as much as so many comparisons
            patience.Step(work);
        });
        if (code_ == noCleaning) {
            starts_.push_back(pool_.size());
            RankTexts();
        }
    }

    // Sorts rows by the column; rows that are equal stay in their order.
    void Sort(std::vector<std::uint32_t>& rows, bool descending, Patience& patience) const {
        std::vector<Item> sorted;
        sorted.reserve(rows.size());
        std::vector<std::uint32_t> last;
        for (const std::uint32_t row : rows) {
            const Item& item = items_[row - first_];
            if (item.last) {
                last.push_back(row);
            } else {
                sorted.push_back({descending ? ~item.rank : item.rank, row, false});
            }
        }
        const bool texts = code_ == noCleaning;
        std::stable_sort(sorted.begin(), sorted.end(), [&](const Item& a, const Item& b) {
            patience.Step(1);
            if (a.rank != b.rank || !texts) return a.rank < b.rank;
            return descending ? KeyOf(b.row) < KeyOf(a.row) : KeyOf(a.row) < KeyOf(b.row);
        });
        auto to = std::transform(sorted.begin(), sorted.end(), rows.begin(), [](const Item& item) { return item.row; });
        std::copy(last.begin(), last.end(), to);
    }

  private:
    std::string_view KeyOf(std::uint32_t row) const {
        const std::size_t at = row - first_;
        return std::string_view(pool_).substr(starts_[at], starts_[at + 1] - starts_[at]);
    }

    void Add(std::uint32_t row, flexgrid::CellView cell, const SortHelp& help) {
        Item item{0, row, IsBlank(cell)};
        if (code_ == noCleaning) starts_.push_back(pool_.size());
        if (!item.last) {
            if (code_ == noCleaning) {
                help.appendKey(cell.AsWide(scratch_), pool_);
            } else if (code_ == data_type::date) {
                const std::optional<Date> date = dates_.Read(cell.AsWide(scratch_));
                item.last = !date;
                if (date) item.rank = DateColumn::RankOf(*date);
            } else {
                item.rank = RankOf(NumberIn(cell));
            }
        }
        items_.push_back(item);
    }
    // The ranks are of the first bytes after those that all keys have in common: many columns are of texts like "Item
    // 1".
    void RankTexts() {
        std::optional<std::string_view> common;
        for (const Item& item : items_) {
            if (item.last) continue;
            const std::string_view key = KeyOf(item.row);
            if (!common) common = key;
            const auto end = std::mismatch(common->begin(), common->end(), key.begin(), key.end()).first;
            common = common->substr(0, static_cast<std::size_t>(end - common->begin()));
        }
        for (Item& item : items_) {
            if (item.last) continue;
            const std::string_view key = KeyOf(item.row).substr(common->size());
            for (std::size_t i = 0; i < sizeof item.rank; ++i)
                item.rank = item.rank << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
        }
    }
    static std::uint64_t RankOf(double number) {
        const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);  // both zeros are equal
        return (bits >> 63) != 0 ? ~bits : bits | std::uint64_t{1} << 63;
    }

    std::uint32_t first_;
    int code_;
    DateColumn dates_;
    std::vector<Item> items_;          // in the order of the rows
    std::vector<std::size_t> starts_;  // of the keys in the pool, for texts, and the end of the last
    std::string pool_;
    Text scratch_;
};

std::vector<std::uint32_t> SortedDataRows(const flexgrid::Grid& grid, const ControlState& state,
                                          const SortColumns& columns, const SortHelp& help) {
    std::vector<std::uint32_t> rows(static_cast<std::size_t>(grid.Rows() - grid.FixedRows()));
    std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(grid.FixedRows()));
    Patience patience(help.goOn);
    // Every sort keeps the order of equal rows, so that the most important column comes last.
    for (auto column = columns.rbegin(); column != columns.rend(); ++column)
        ColumnKeys(grid, state, column->col, help, patience).Sort(rows, column->descending, patience);
    return rows;
}

int ColumnWithCaption(const flexgrid::Grid& grid, TextView caption) {
    for (int col = 0; grid.Rows() > 0 && col < grid.Cols(); ++col)
        if (EqualNoCase(CaptionOf(grid, col), caption)) return col;
    return -1;
}

bool Has(const SortColumns& columns, int col) {
    return std::any_of(columns.begin(), columns.end(), [=](const auto& column) { return column.col == col; });
}

}  // namespace

std::optional<SortColumns> ReadSortColumns(const flexgrid::Grid& grid, TextView list) {
    SortColumns columns;
    if (list.empty()) return columns;
    if (list.front() != u';' || list.back() != u';' || list.size() == 1) return std::nullopt;
    list.remove_prefix(1);
    while (!list.empty()) {
        const TextView item = list.substr(0, list.find(u';'));
        list.remove_prefix(item.size() + 1);
        if (item.size() < 2 || item[item.size() - 2] != u'-') return std::nullopt;
        const int col = ColumnWithCaption(grid, item.substr(0, item.size() - 2));
        const char16_t code = item.back();
        if (col < 0 || (code != u'0' && code != u'1')) return std::nullopt;
        if (!Has(columns, col)) columns.push_back({col, code == u'1'});
    }
    return columns;
}

Text SortColumnsText(const flexgrid::Grid& grid, const SortColumns& columns) {
    Text list;
    if (grid.Rows() == 0) return list;
    for (const auto& [col, descending] : columns) {
        if (list.empty()) list += u';';
        list.append(CaptionOf(grid, col)).append(descending ? u"-1;" : u"-0;");
    }
    return list;
}

SortColumns ClickedSortColumns(const flexgrid::Grid& grid, int col, bool add) {
    SortColumns columns = grid.SortMarks();
    const auto found =
        std::find_if(columns.begin(), columns.end(), [=](const auto& column) { return column.col == col; });
    const bool descending = found != columns.end() && !found->descending;
    if (!add) return {{col, descending}};
    if (found != columns.end()) {
        found->descending = descending;
    } else {
        columns.push_back({col, false});
    }
    return columns;
}

bool SortRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, const SortColumns& columns,
              const SortHelp& help) {
    if (columns.empty()) {
        grid.ClearSortMarks();
        return true;
    }
    std::vector<std::uint32_t> rows;
    try {
        rows = SortedDataRows(grid, state, columns, help);
    } catch (const SortEnded&) {
        return false;
    }
    if (rows.size() < 2) {
        grid.SetSortMarks(columns);
        return true;
    }
    if (!state.autoRecordNumber) {
        history.OrderRows(grid.FixedRows(), std::move(rows), columns);
        return true;
    }
    EditHistory::WholeGroup whole(history, flexgrid::Grid::AllOrNothing::Reach::all);
    history.OrderRows(grid.FixedRows(), std::move(rows), columns);
    Renumber(grid, state);
    whole.Commit();
    return true;
}

}  // namespace qvx::grid
