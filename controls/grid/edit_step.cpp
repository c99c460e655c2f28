#include "controls/grid/edit_step.h"

#include <algorithm>

namespace qvx::grid {

KeptRows KeepRows(const flexgrid::Grid& grid, int at, int count) {
    KeptRows kept;
    if (at < 0 || at >= grid.Rows()) return kept;
    const int last = std::min(at + count, grid.Rows()) - 1;
    kept.rows.reserve(static_cast<std::size_t>(last - at + 1));
    grid.ForEachRow(at, last, [&](int row, const flexgrid::RowView& cells) {
        for (int col = 0; col < cells.Count(); ++col) {
            cells[col].AppendTo(kept.texts);
            kept.sizes.push_back(static_cast<std::uint32_t>(cells[col].Size()));
        }
        kept.rows.push_back({static_cast<std::size_t>(cells.Count()), grid.SettingsOf(row)});
    });
    return kept;
}

void EditStep::AddCell(int row, int col, flexgrid::CellView before, TextView after) {
    before.AppendTo(texts_);
    texts_ += after;
    changes_.push_back(
        {Kind::cell, row, col, static_cast<std::uint32_t>(before.Size()), static_cast<std::uint32_t>(after.size())});
}

void EditStep::AddRowsInserted(int at, int count) {
    changes_.push_back({Kind::rowsInserted, at, count, 0, 0});
    rowsChanged_ = true;
}

void EditStep::AddRowsRemoved(int at, KeptRows rows) {
    const auto count = static_cast<int>(rows.rows.size());
    kept_.push_back(std::move(rows));
    changes_.push_back({Kind::rowsRemoved, at, count, 0, 0});
    rowsChanged_ = true;
}

std::size_t EditStep::Characters() const {
    std::size_t characters = texts_.size() + changes_.size() * (sizeof(Change) / sizeof(char16_t));
    for (const KeptRows& rows : kept_) characters += rows.Characters();
    return characters;
}

EditStep::Place EditStep::FirstPlace() const {
    Place first;
    for (const Change& change : changes_) {
        const int col = change.kind == Kind::cell ? change.col : -1;
        const bool above = first.row < 0 || change.row < first.row;
        const bool before = change.row == first.row && col >= 0 && (first.col < 0 || col < first.col);
        if (above || before) first = {change.row, col};
    }
    return first;
}

std::size_t EditStep::RunEndingAt(std::size_t last) const {
    std::size_t first = last;
    int step = 0;
    while (first > 0) {
        const Change& here = changes_[first];
        const Change& next = changes_[first - 1];
        if (next.kind != Kind::cell || next.row != here.row) break;
        const int apart = next.col - here.col;
        if ((apart != 1 && apart != -1) || (step != 0 && apart != step)) break;
        step = apart;
        --first;
    }
    return first;
}

void EditStep::RevertCells(flexgrid::Grid& grid, std::size_t first, std::size_t last, std::size_t& textEnd,
                           EditStep& made) const {
    const int row = changes_[last].row;
    std::vector<TextView> texts;
    texts.reserve(last - first + 1);
    int left = changes_[last].col;
    for (std::size_t i = last + 1; i-- > first;) {
        const Change& change = changes_[i];
        textEnd -= std::size_t{change.before} + change.after;
        // There is no such cell only when something has gone wrong before; nothing is ever written beside the grid.
        if (change.row >= grid.Rows() || change.col >= grid.Cols()) continue;
        const TextView text = TextView(texts_).substr(textEnd, change.before);
        made.AddCell(row, change.col, grid.Cell(row, change.col), text);
        texts.push_back(text);
        left = std::min(left, change.col);
    }
    if (changes_[first].col < changes_[last].col) std::reverse(texts.begin(), texts.end());
    grid.SetTexts(row, left, texts);
}

KeptRows EditStep::TakeRows(flexgrid::Grid& grid, int at, int count) {
    KeptRows kept = KeepRows(grid, at, count);
    if (at + count >= grid.Rows()) {
        // By their number, since the last row of all does not go otherwise.
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

}  // namespace qvx::grid
