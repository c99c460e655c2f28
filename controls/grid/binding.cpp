#include "controls/grid/binding.h"

#include <utility>

#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::grid {
namespace {

// Appends the cells of a row from the fields that the map gives them, each followed by a tab. Returns whether a field
// has a tab of its own, which would begin another cell.
[[gnu::noinline]] bool AppendMapped(const FieldMap& map, RecordSource& records, std::vector<Text>& cells, Text& row) {
    bool tabs = false;
    cells.resize(static_cast<std::size_t>(map.Columns()));
    for (int col = 0; col < map.Columns(); ++col) {
        Text& cell = cells[static_cast<std::size_t>(col)];
        if (const auto field = map.FieldOf(col)) {
            cell.clear();
            records.AppendField(*field, cell);
        }
        tabs = tabs || cell.find(u'\t') != Text::npos;
        row.append(cell).append(1, u'\t');
    }
    return tabs;
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
        bool tabs = false;
        if (map.ByName()) {
            cells[0] = std::exchange(row, {});
            tabs = AppendMapped(map, records, cells, row);
        } else {
            row.append(static_cast<std::size_t>(state.bindFrom), u'\t');
            records.AppendFields(row);
        }
        if (!wanted()) return;
        {
            const RowStates::Loading loading(states);
            grid.AddItem(tabs ? TextView() : TextView(row));
            if (tabs) grid.SetTexts(grid.Rows() - 1, 0, std::vector<TextView>(cells.begin(), cells.end()));
        }
        if (!wanted()) return;
        records.MoveNext();
        if (!goOn(++loaded)) return;
    }
}

}  // namespace qvx::grid
