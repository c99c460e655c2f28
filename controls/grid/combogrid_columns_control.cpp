// What the objects of columns change: the same properties that name columns by caption.
#include <iterator>

#include "com/bstr.h"
#include "common/flag_scope.h"
#include "controls/grid/column_page_object.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {

HRESULT ComboGridControl::SetColumn(int col, ColumnSetting setting, int value) {
    using C = ComboGridControl;
    // In the order of ColumnSetting.
    static constexpr HRESULT (STDMETHODCALLTYPE C::*setters[])(BSTR) = {
        &C::put_RequiredFields, &C::put_NonFocusColumns,    &C::put_InVisibleColumns, &C::put_InActiveColumns,
        &C::put_ListColumns,    &C::put_UnChangableColumns, &C::put_ColumnsDataType,  &C::put_CheckValueFor,
        &C::put_Footer,         &C::put_ColumnsMaxLength};
    static_assert(std::size(setters) == static_cast<std::size_t>(ColumnSetting::last) + 1);
    const Bstr list(WithSetting(Model(), State(), col, setting, value));
    return (this->*setters[static_cast<std::size_t>(setting)])(list.get());
}

// The property gives all columns the widths of the format string, which the object of one column must not do.
HRESULT ComboGridControl::ShowColumn(int col, bool shown) {
    return Put(u"InVisibleColumns", [&] {
        TentativeValue columns(State().inVisibleColumns,
                               WithSetting(Model(), State(), col, ColumnSetting::invisible, shown ? 0 : 1));
        entry_.ShowColumn(col, shown);
        columns.Done();
    });
}

std::span<const CLSID> ComboGridControl::PropertyPages() const {
    static const CLSID pages[] = {CLSID_prpctlColumns};
    return pages;
}

HRESULT ComboGridControl::RenameColumn(int col, TextView caption) {
    return Put(u"TextMatrix", [&] { entry_.RenameColumn(col, caption); });
}

}  // namespace qvx::grid
