#include "controls/grid/edit_step.h"

#include <algorithm>

namespace qvx::grid {

KeptRows KeepRows(const flexgrid::Grid& grid, int at, int count) {
    KeptRows kept;
    if (at < 0 || at >= grid.Rows()) return kept;
    const int last = std::min(at + count, grid.Rows()) - 1;
    kept.rows.reserve(static_cast<std::size_t>(last) - static_cast<std::size_t>(at) + 1);
    grid.ForEachRow(at, last, [&](int row, const flexgrid::RowView& cells) {
        for (int col = 0; col < cells.Count(); ++col) {
            cells[col].AppendTo(kept.texts);
            kept.sizes.push_back(static_cast<std::uint32_t>(cells[col].Size()));
        }
        kept.rows.push_back({static_cast<std::size_t>(cells.Count()), grid.SettingsOf(row)});
    });
    return kept;
}

// ---- Recording -----------------------------------------------------------------------------------------------------

flexgrid::Arena::Address EditStep::Keep(std::span<const std::uint8_t> record) {
    if (record.empty()) return 0;
    const flexgrid::Arena::Address address = records_.Allocate(record.size());
    std::copy(record.begin(), record.end(), records_.At(address));
    return address;
}

void EditStep::AddCell(int row, int col, flexgrid::CellView before, flexgrid::CellView after) {
    const auto old = Keep(builder_.FromCells({&before, 1}));
    changes_.push_back({Kind::cells, row, col, 1, old, Keep(builder_.FromCells({&after, 1}))});
}

void EditStep::AddCells(int row, int col, const flexgrid::RowView& before, const flexgrid::RowView& after, int count) {
    const auto differs = [&](int cell) { return !(before[col + cell] == after[cell]); };
    for (int cell = 0; cell < count;) {
        const int first = cell;
        while (cell < count && differs(cell)) ++cell;
        if (const int changed = cell - first; changed > 0) {
            const auto old = Keep(builder_.FromPart(before, col + first, changed));
            const auto fresh = Keep(builder_.FromPart(after, first, changed));
            changes_.push_back({Kind::cells, row, col + first, changed, old, fresh});
        } else {
            ++cell;
        }
    }
}

std::size_t EditStep::FirstAdjacent(std::size_t change) const {
    for (; change > 0; --change) {
        const Change& left = changes_[change - 1];
        const Change& right = changes_[change];
        if (left.kind != Kind::cells || right.kind != Kind::cells || left.row != right.row ||
            left.col + left.count != right.col) {
            break;
        }
    }
    return change;
}

void EditStep::ReserveChange() {
    const auto reserve = [](auto& list) { list.reserve(list.size() == list.capacity() ? 2 * list.size() + 1 : 0); };
    reserve(changes_);
    reserve(kept_);
    reserve(orders_);
}

void EditStep::AddRowsInserted(int at, int count) {
    changes_.push_back({Kind::rowsInserted, at, 0, count});
    rowsChanged_ = true;
}

void EditStep::AddRowsRemoved(int at, KeptRows rows) {
    const auto count = static_cast<int>(rows.rows.size());
    kept_.push_back(std::move(rows));
    changes_.push_back({Kind::rowsRemoved, at, 0, count});
    rowsChanged_ = true;
}

void EditStep::AddRowsOrdered(int first, std::vector<std::uint32_t> rows, std::vector<flexgrid::SortMark> marks) {
    const auto count = static_cast<int>(rows.size());
    orders_.push_back({std::move(rows), std::move(marks)});
    changes_.push_back({Kind::rowsOrdered, first, 0, count});
    rowsChanged_ = true;
}

void EditStep::AddColumnMoved(int from, int to) { changes_.push_back({Kind::columnMoved, 0, from, to}); }

std::optional<EditStep::ColumnMove> EditStep::MovedColumn() const {
    if (changes_.size() != 1 || changes_.front().kind != Kind::columnMoved) return std::nullopt;
    return ColumnMove{changes_.front().col, changes_.front().count};
}

std::size_t EditStep::Characters() const {
    std::size_t characters = (records_.Used() + changes_.size() * sizeof(Change)) / sizeof(char16_t);
    for (const KeptRows& rows : kept_) characters += rows.Characters();
    for (const KeptOrder& order : orders_)
        characters += (order.rows.size() * sizeof(std::uint32_t) + order.marks.size() * sizeof(flexgrid::SortMark)) /
                      sizeof(char16_t);
    return characters;
}

EditStep::Place EditStep::FirstPlace() const {
    Place first;
    for (const Change& change : changes_) {
        if (change.kind == Kind::rowsOrdered || change.kind == Kind::columnMoved) continue;
        const int col = change.kind == Kind::cells ? change.col : -1;
        const bool above = first.row < 0 || change.row < first.row;
        const bool before = change.row == first.row && col >= 0 && (first.col < 0 || col < first.col);
        if (above || before) first = {change.row, col};
    }
    return first;
}

// ---- Reverting -----------------------------------------------------------------------------------------------------

void EditStep::RevertCells(flexgrid::Grid& grid, const Change& change, EditStep& made) const {
    // Cells can be missing only after an earlier fault; nothing is ever written outside the grid.
    const int count = std::min(change.count, grid.Cols() - change.col);
    if (change.row >= grid.Rows() || count <= 0) return;
    const flexgrid::RowView old = KeptCells(change.before);
    grid.ForEachRow(change.row, change.row, [&](int row, const flexgrid::RowView& cells) {
        made.AddCells(row, change.col, cells, old, count);
    });
    grid.SetCells(change.row, change.col, old, count);
}

KeptRows EditStep::TakeRows(flexgrid::Grid& grid, int at, int count) {
    KeptRows kept = KeepRows(grid, at, count);
    if (at + count >= grid.Rows()) {
        // The row count removes them, because the last row cannot be removed otherwise.
        grid.SetRows(std::min(at, grid.Rows()));
    } else {
        grid.RemoveRowsIf([&](int row) { return row >= at && row < at + count; });
    }
    return kept;
}

void EditStep::PutRows(flexgrid::Grid& grid, int at, const KeptRows& rows) {
    grid.AddItems(Text(rows.rows.size(), u'\r'), at);
    TextView texts = rows.texts;
    auto size = rows.sizes.begin();
    std::vector<TextView> cells;
    for (const KeptRows::Row& row : rows.rows) {
        cells.clear();
        for (std::size_t i = 0; i < row.cells; ++i, ++size) {
            cells.push_back(texts.substr(0, *size));
            texts.remove_prefix(*size);
        }
        if (at >= grid.Rows()) return;
        cells.resize(std::min(cells.size(), static_cast<std::size_t>(grid.Cols())));
        grid.SetTexts(at, 0, cells);
        grid.SetSettings(at, row.settings);
        ++at;
    }
}

void EditStep::PutColumn(flexgrid::Grid& grid, const Change& change, EditStep& made) {
    made.ReserveChange();
    grid.SetColPosition(change.count, change.col);
    made.AddColumnMoved(change.count, change.col);
}

void EditStep::PutOrder(flexgrid::Grid& grid, int first, const KeptOrder& order, EditStep& made) {
    // Rows and columns can be missing only after an earlier fault.
    if (first + static_cast<int>(order.rows.size()) > grid.Rows()) return;
    std::vector<std::uint32_t> back(order.rows.size());
    for (std::size_t i = 0; i < back.size(); ++i)
        back[order.rows[i] - static_cast<std::uint32_t>(first)] =
            static_cast<std::uint32_t>(first) + static_cast<std::uint32_t>(i);
    std::vector<flexgrid::SortMark> marks = order.marks;
    std::erase_if(marks, [&](const flexgrid::SortMark& mark) { return mark.col >= grid.Cols(); });
    std::vector<flexgrid::SortMark> before = grid.SortMarks();
    made.ReserveChange();
    grid.OrderRows(first, back, marks);
    made.AddRowsOrdered(first, std::move(back), std::move(before));
}

}  // namespace qvx::grid
