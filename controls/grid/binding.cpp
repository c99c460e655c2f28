#include "controls/grid/binding.h"

#include <algorithm>
#include <utility>

#include "common/number_text.h"
#include "common/run_time_error.h"
#include "controls/grid/column_order.h"

namespace qvx::grid {
namespace {

// Reads the texts of the columns that the map gives fields; `cells` holds the record's number first. A field may have
// tabs of its own, which would begin other cells.
[[gnu::cold, gnu::noinline]] void ReadMapped(const FieldMap& map, RecordSource& records, std::vector<Text>& cells) {
    cells.resize(static_cast<std::size_t>(std::max(map.Columns(), 1)));
    for (int col = 0; col < map.Columns(); ++col) {
        if (const auto field = map.FieldOf(col)) {
            Text& cell = cells[static_cast<std::size_t>(col)];
            cell.clear();
            records.AppendField(*field, cell);
        }
    }
}

[[gnu::cold, gnu::noinline]] void AddMapped(flexgrid::Grid& grid, const std::vector<Text>& cells) {
    grid.AddItem({});
    std::vector<TextView> texts(cells.begin(), cells.end());
    texts.resize(std::min(texts.size(), static_cast<std::size_t>(grid.Cols())));
    grid.SetTexts(grid.Rows() - 1, 0, texts);
}

// Puts the cells of a row, which are in the order that the columns had before the user moved any, into theirs.
void OrderCells(const flexgrid::Grid& grid, const ControlState& state, Text& row) {
    std::vector<TextView> cells;
    for (TextView rest = row; !rest.empty();) {
        const std::size_t end = std::min(rest.find(u'\t'), rest.size());
        cells.push_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    Text ordered;
    for (int col = 0; col < grid.Cols(); ++col) {
        const auto place = static_cast<std::size_t>(FieldPlaceOf(grid, state, col));
        if (place < cells.size()) ordered += cells[place];
        ordered += u'\t';
    }
    row = std::move(ordered);
}

}  // namespace

void LoadRecords(flexgrid::Grid& grid, const ControlState& state, RowStates& states, const FieldMap& map,
                 RecordSource& records, const std::function<bool()>& wanted,
                 const std::function<bool(std::int64_t loaded)>& goOn) {
    if (state.bindFrom < 0 && !map.ByName())
        throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
    Text row;
    std::vector<Text> cells(1);
    for (std::int64_t loaded = 0; wanted() && !records.AtEnd();) {
        row.clear();
        if (state.autoRecordNumber) row = IntegerToText(records.Position());
        if (map.ByName()) {
            cells[0].swap(row);
            ReadMapped(map, records, cells);
        } else {
            row.append(static_cast<std::size_t>(state.bindFrom), u'\t');
            records.AppendFields(row);
            if (ColumnsAreMoved(grid, state)) OrderCells(grid, state, row);
        }
        if (!wanted()) return;
        {
            const RowStates::Loading loading(states);
            if (map.ByName()) {
                AddMapped(grid, cells);
            } else {
                grid.AddItem(row);
            }
        }
        if (!wanted()) return;
        records.MoveNext();
        if (!goOn(++loaded)) return;
    }
}

}  // namespace qvx::grid
