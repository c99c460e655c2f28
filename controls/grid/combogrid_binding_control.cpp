// The ComboGrid's records: loaded from a record set, checked before they are saved.
#include "common/text_compare.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/record_source_win32.h"
#include "controls/grid/validation.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::Bind(IDispatch** recSet) {
    return Reporting([&] {
        // This reference keeps the record set alive, because a handler may release it meanwhile.
        const auto records = MakeRecordSource(*Required(recSet));
        entry_.Bind(*records);
        // A grid that had the focus gets it again, and one that did not have it does not take it.
        const Text name = Host().DisplayName();
        if (WindowHandle() && !name.empty() && EqualNoCase(Host().ActiveControlName(WindowHandle()), name)) TakeFocus();
    });
}

STDMETHODIMP ComboGridControl::ValidateEntry(VARIANT_BOOL* result) {
    return Reporting([&] {
        *Required(result) = VARIANT_FALSE;
        entry_.CommitOpenEdit();
        const auto invalid = FindInvalidCell(Model(), State());
        if (!invalid) return;
        // The result is set before anything else can fail: a grid with an invalid cell must not be saved.
        *result = VARIANT_TRUE;
        Say(invalid->message, dialogs::messages::entryCheck);
        int start = invalid->col - 1;
        const int col = grid::GetNextColumn(Model(), State(), start);
        FocusCell(invalid->row, col);
    });
}

}  // namespace qvx::grid
