// The ComboGrid's members for filtering.
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::get_FilteredRows(long* result) {
    return Give(result, [&] { return Model().Rows() - Model().FixedRows() - Model().FilteredRows(); });
}

STDMETHODIMP ComboGridControl::get_RowShown(long row, VARIANT_BOOL* result) {
    return Give(result, [&] { return !Model().RowFiltered(static_cast<int>(row)); });
}

STDMETHODIMP ComboGridControl::RefilterRows() {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] { entry_.RefilterRows(); });
}

void ComboGridControl::Filtered(long shown, long total) { Fire(u"Filtered", EventArguments().In(shown).In(total)); }

}  // namespace qvx::grid
