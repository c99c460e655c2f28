// The ComboGrid's members about rows that differ from their records.
#include "com/bstr.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/record_target_win32.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::get_RowState(long row, GridRowState* result) {
    return Give(result, [&] { return static_cast<GridRowState>(entry_.States().Of(static_cast<int>(row))); });
}

STDMETHODIMP ComboGridControl::get_OriginalText(long row, long col, BSTR* result) {
    return Give(result, [&] { return entry_.States().OriginalText(static_cast<int>(row), static_cast<int>(col)); });
}

STDMETHODIMP ComboGridControl::get_DeletedRows(long* result) {
    return Give(result, [&] { return entry_.States().DeletedCount(); });
}

STDMETHODIMP ComboGridControl::get_DeletedText(long index, long col, BSTR* result) {
    return Give(result, [&] { return entry_.States().DeletedText(static_cast<int>(index), static_cast<int>(col)); });
}

STDMETHODIMP ComboGridControl::AcceptChanges() {
    return Guard([&] {
        const auto keep = ControlBase::KeepAlive();
        entry_.AcceptChanges();
    });
}

STDMETHODIMP ComboGridControl::Apply(IDispatch* records, BSTR keyFields, long* result) {
    const auto keep = ControlBase::KeepAlive();
    return Give(result, [&] {
        entry_.CheckTracked();
        return entry_.Apply(*MakeRecordTarget(records), FromBstr(keyFields));
    });
}

void ComboGridControl::ApplyConflict(const RecordConflict& conflict, bool& overwrite, bool& cancel) {
    Fire(u"ApplyConflict", EventArguments()
                               .In(conflict.row)
                               .In(conflict.index)
                               .In(conflict.field)
                               .In(conflict.ours)
                               .In(conflict.theirs)
                               .InOut(overwrite)
                               .InOut(cancel));
}

}  // namespace qvx::grid
