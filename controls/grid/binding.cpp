#include "controls/grid/binding.h"

#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::grid {

void LoadRecords(flexgrid::Grid& grid, const ControlState& state, RecordSource& records,
                 const std::function<bool()>& wanted, const std::function<bool(std::int64_t loaded)>& goOn) {
    if (state.bindFrom < 0) throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
    Text row;
    for (std::int64_t loaded = 0; wanted() && !records.AtEnd();) {
        row.clear();
        if (state.autoRecordNumber) row = IntegerToText(records.Position());
        row.append(static_cast<std::size_t>(state.bindFrom), u'\t');
        records.AppendFields(row);
        if (!wanted()) return;
        grid.AddItem(row);
        if (!wanted()) return;
        records.MoveNext();
        if (!goOn(++loaded)) return;
    }
}

}  // namespace qvx::grid
