// What the host has said of cells while a grid is being filled in.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "controls/grid/column_checks.h"
#include "controls/grid/validation.h"

namespace qvx::grid {

// An answer counts while its row has the texts that it had then: a rule may look at other cells of the row.
class HostVerdicts {
  public:
    // The grid must outlive this.
    explicit HostVerdicts(const flexgrid::Grid& grid) : grid_(grid) {}

    // Returns what is wrong with a cell of a column about which the host is asked, "" for nothing; null if the host has
    // not been asked yet. Valid until the next call of the others.
    const Text* Find(int row, int col) const;
    // Asks about the cells of a row. Returns false if the host has inserted, removed or moved rows or columns
    // meanwhile: the row's number may then be that of another one.
    bool Ask(int row, const std::vector<CheckedColumn>& columns, const AskHost& askHost);
    // Forgets all answers.
    void Clear() { rows_.clear(); }

  private:
    struct Row {
        std::uint64_t texts = 0;
        std::vector<std::pair<int, Text>> answers;  // by column
    };
    std::uint64_t TextsOf(int row) const;

    const flexgrid::Grid& grid_;
    std::unordered_map<flexgrid::RowId, Row> rows_;
};

}  // namespace qvx::grid
