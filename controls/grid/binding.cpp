#include "controls/grid/binding.h"

#include <algorithm>

#include "common/number_text.h"
#include "common/run_time_error.h"

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
