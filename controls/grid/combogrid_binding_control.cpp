// The ComboGrid's records: loaded from a record set, checked before they are saved.
#include <algorithm>
#include <vector>

#include "common/text_compare.h"
#include "controls/grid/column_order.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/record_block_win32.h"
#include "controls/grid/record_source_win32.h"

namespace qvx::grid {

// A grid that did not have the focus does not take it.
void ComboGridControl::FocusAgain() {
    const Text name = Host().DisplayName();
    if (WindowHandle() && !name.empty() && EqualNoCase(Host().ActiveControlName(WindowHandle()), name)) TakeFocus();
}

STDMETHODIMP ComboGridControl::Bind(IDispatch** recSet) {
    return Reporting([&] {
        // This reference keeps the record set alive, because a handler may release it meanwhile.
        const auto records = MakeRecordSource(*Required(recSet));
        entry_.Bind(*records);
        FocusAgain();
    });
}

STDMETHODIMP ComboGridControl::Append(IDispatch* records) {
    return Reporting([&] {
        const auto source = MakeRecordSource(records);
        entry_.Append(*source);
        FocusAgain();
    });
}

STDMETHODIMP ComboGridControl::LoadArray(VARIANT records) {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] {
        ArrayRecords source(records);
        entry_.Bind(source);
        FocusAgain();
    });
}

STDMETHODIMP ComboGridControl::ToArray(VARIANT* result) {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] {
        VARIANT& array = *Required(result);
        entry_.CommitOpenEdit();
        std::vector<int> columns;
        for (int place = std::max(State().bindFrom, 0); place < Model().Cols(); ++place)
            columns.push_back(ColumnAtPlace(Model(), State(), place));
        array = ArrayOfRows(Model(), columns).detach();
    });
}

STDMETHODIMP ComboGridControl::ValidateEntry(VARIANT_BOOL* result) {
    return Reporting([&] {
        *Required(result) = VARIANT_FALSE;
        entry_.CommitOpenEdit();
        const auto invalid = FindInvalidCell(Model(), State(), {}, HostCheck());
        if (!invalid) return;
        // The result is set before anything else can fail: a grid with an invalid cell must not be saved.
        *result = VARIANT_TRUE;
        if (MayShow(0, invalid->message)) Say(invalid->message, dialogs::messages::entryCheck);
        int start = invalid->col - 1;
        const int col = grid::GetNextColumn(Model(), State(), start);
        FocusCell(invalid->row, col);
    });
}

AskHost ComboGridControl::HostCheck() {
    if (State().validateColumns.empty() || !HasListeners()) return {};
    return [this](int row, int col, const Text& text, Text message) {
        Fire(u"ValidateCell", EventArguments().In(row).In(col).In(text).InOut(message));
        return message;
    };
}

STDMETHODIMP ComboGridControl::FindInvalid(long* row, long* col, VARIANT_BOOL rowOnly, long* rule, BSTR* result) {
    const auto keep = ControlBase::KeepAlive();
    return Give(result, [&] {
        entry_.CommitOpenEdit();
        const CheckStart start = StartAfter(Model(), row ? *row : 0, col ? *col : 0, rowOnly != VARIANT_FALSE);
        const InvalidCell cell = FindInvalidCell(Model(), State(), start, HostCheck()).value_or(InvalidCell());
        if (row) *row = cell.row;
        if (col) *col = cell.col;
        if (rule) *rule = static_cast<long>(cell.rule);
        return cell.message;
    });
}

bool ComboGridControl::MayShow(int number, TextView description) {
    bool response = true;
    if (State().onErrorFirst) OnError(number, description, response);
    return response;
}

}  // namespace qvx::grid
