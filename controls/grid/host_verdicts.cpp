#include "controls/grid/host_verdicts.h"

#include <algorithm>

namespace qvx::grid {

// Returns a number that stands for the texts of a row (FNV-1a).
std::uint64_t HostVerdicts::TextsOf(int row) const {
    std::uint64_t hash = 14695981039346656037U;
    const auto add = [&](char16_t c) { hash = (hash ^ c) * 1099511628211U; };
    const flexgrid::RowView cells = grid_.CellsOf(grid_.IdOf(row));
    Text scratch;
    for (int col = 0; col < cells.Count(); ++col) {
        for (const char16_t c : cells[col].AsWide(scratch)) add(c);
        add(u'\t');
    }
    return hash;
}

const Text* HostVerdicts::Find(int row, int col) const {
    const auto known = rows_.find(grid_.IdOf(row));
    if (known == rows_.end() || known->second.texts != TextsOf(row)) return nullptr;
    const auto& answers = known->second.answers;
    const auto answer = std::find_if(answers.begin(), answers.end(), [&](const auto& a) { return a.first == col; });
    return answer == answers.end() ? nullptr : &answer->second;
}

bool HostVerdicts::Ask(int row, const std::vector<CheckedColumn>& columns, const AskHost& askHost) {
    const std::uint64_t structure = grid_.StructureVersion();
    Row asked;
    for (const CheckedColumn& column : columns) {
        if (!column.asksHost) continue;
        const Text own(VerdictOn(grid_.Cell(row, column.col), column).message);
        asked.answers.emplace_back(column.col, askHost(row, column.col, grid_.TextMatrix(row, column.col), own));
        if (grid_.StructureVersion() != structure) return false;
    }
    // A host that writes into the row while it is asked is not asked again for that.
    asked.texts = TextsOf(row);
    constexpr std::size_t mostRows = 10'000;
    if (rows_.size() >= mostRows) rows_.clear();
    rows_[grid_.IdOf(row)] = std::move(asked);
    return true;
}

}  // namespace qvx::grid
