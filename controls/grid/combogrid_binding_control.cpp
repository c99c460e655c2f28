// The ComboGrid's records: filled from a record set, checked before they are saved.
#include "common/text_compare.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/record_source_win32.h"
#include "controls/grid/validation.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::Bind(IDispatch** recSet) {
    return Reporting([&] {
        // Held here: a handler may let go of it meanwhile.
        const auto records = MakeRecordSource(*Required(recSet));
        entry_.Bind(*records);
        // A grid that had the focus has it again, and one that had not does not take it.
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
        // Before anything else can fail: a grid that was found wanting is not to be saved.
        *result = VARIANT_TRUE;
        Say(invalid->message, dialogs::messages::entryCheck);
        int start = invalid->col - 1;
        const int col = grid::GetNextColumn(Model(), State(), start);
        FocusCell(invalid->row, col);
    });
}

}  // namespace qvx::grid
