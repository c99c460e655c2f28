// The ComboGrid's members that manage rows as records and add up cells.
#include <algorithm>
#include <vector>

#include "com/safearray.h"
#include "com/value_text.h"
#include "com/wide_text.h"
#include "common/number_text.h"
#include "controls/grid/aggregates.h"
#include "controls/grid/combogrid_control.h"
#include "controls/grid/duplicate_rows.h"
#include "controls/grid/row_operations.h"

namespace qvx::grid {
namespace {

Text TextOf(const VARIANT& value) {
    Text text;
    if (!IsMissing(value) && !AppendValueText(value, text)) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
    return text;
}

// Scripts whose language lacks the system's arrays pass an object with a length.
std::vector<Variant> ElementsOf(IDispatch* list) {
    const auto length = ReadMember(list, L"length");
    const auto count = length ? length->ToLong() : std::nullopt;
    if (!count) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
    std::vector<Variant> elements;
    for (long i = 0; i < *count; ++i) elements.push_back(ReadMember(list, Wide(IntegerToText(i))).value_or(Variant()));
    return elements;
}

// Returns the elements from number 0 on.
std::vector<Variant> ElementsOf(const VARIANT& list) {
    SAFEARRAY* array = ArrayOf(list);
    if (!array) {
        const auto object = Variant(list).ToObject<IDispatch>();
        if (!object) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
        return ElementsOf(object.get());
    }
    LONG low = 0;
    if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayGetLBound(array, 1, &low)) || low > 0) return {};
    std::vector<Variant> elements = ReadElements(array);
    const std::size_t before = std::min(elements.size(), static_cast<std::size_t>(-static_cast<LONGLONG>(low)));
    elements.erase(elements.begin(), elements.begin() + static_cast<std::ptrdiff_t>(before));
    return elements;
}

std::vector<int> ColumnNumbers(const VARIANT& list) {
    std::vector<int> columns;
    for (const Variant& element : ElementsOf(list)) columns.push_back(ColumnNumber(TextOf(element.get())));
    if (columns.empty()) throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
    return columns;
}

}  // namespace

STDMETHODIMP ComboGridControl::RemoveEmptyRows(VARIANT_BOOL byKeyColumn) {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] {
        entry_.CommitOpenEdit();
        entry_.ChangeRows([&] { grid::RemoveEmptyRows(Model(), State(), byKeyColumn != VARIANT_FALSE); });
    });
}

STDMETHODIMP ComboGridControl::RemoveAllRecords() {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] { entry_.RemoveAllRecords(); });
}

STDMETHODIMP ComboGridControl::Sort(BSTR columns) {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] { entry_.Sort(FromBstr(columns)); });
}

STDMETHODIMP ComboGridControl::SetCell(long row, long col, VARIANT text, VARIANT_BOOL focus) {
    const auto keep = ControlBase::KeepAlive();
    return Guard([&] {
        const Text written = TextOf(text);
        if (!written.empty()) Model().SetTextMatrix(static_cast<int>(row), static_cast<int>(col), written);
        if (focus == VARIANT_FALSE) return;
        FocusCell(static_cast<int>(row), static_cast<int>(col));
    });
}

STDMETHODIMP ComboGridControl::ClearRow(long row, BSTR clearCols, BSTR avoidCols) {
    return Guard([&] { grid::ClearRow(Model(), static_cast<int>(row), FromBstr(clearCols), FromBstr(avoidCols)); });
}

STDMETHODIMP ComboGridControl::DuplicateRecord(long* record, long* matchOn, VARIANT_BOOL response,
                                               VARIANT_BOOL* result) {
    return Reporting([&] {
        *Required(result) = VARIANT_FALSE;
        entry_.CommitOpenEdit();
        if (!HasDataRows(Model())) return;
        const auto rows = FirstDuplicate(Model(), FirstRecordColumn(State()));
        if (matchOn) *matchOn = rows ? rows->second : 0;
        if (!rows) return;
        if (record) *record = rows->first;
        *result = VARIANT_TRUE;
        if (response == VARIANT_FALSE) return;
        const Text prompt = DuplicatesPrompt(*rows);
        if (MayShow(0, prompt)) Say(prompt, dialogs::messages::duplicateRecords);
        FocusCell(rows->second, Model().FixedCols());
        Model().SetColSel(Model().Cols() - 1);
    });
}

STDMETHODIMP ComboGridControl::FindDuplicate(long* record, long* matchOn, BSTR columns, VARIANT_BOOL* result) {
    const auto keep = ControlBase::KeepAlive();
    return Give(result, [&] {
        entry_.CommitOpenEdit();
        const auto rows = FirstDuplicateIn(Model(), State(), FromBstr(columns)).value_or(RowPair());
        if (record) *record = rows.first;
        if (matchOn) *matchOn = rows.second;
        return rows != RowPair();
    });
}

STDMETHODIMP ComboGridControl::GetSumOf(RC rowOrCol, long index, VARIANT* result) {
    return Give(result, [&] {
        const int number = static_cast<int>(index);
        return rowOrCol == gdRow ? SumOfRow(Model(), number) : SumOfColumn(Model(), number);
    });
}

STDMETHODIMP ComboGridControl::GetProductOf(long col2Set, VARIANT* cols, VARIANT* result) {
    return Give(result, [&] {
        // The list is not read before there is a row.
        if (!HasDataRows(Model())) return 0.0;
        return SumOfProducts(Model(), static_cast<int>(col2Set), ColumnNumbers(*Required(cols)));
    });
}

// Gives the focus to the inner grid itself: an editor that is open in the current cell is closed first.
void ComboGridControl::FocusCell(int row, int col) {
    entry_.CommitOpenEdit();
    Model().SetRow(row);
    Model().SetRowFiltered(row, false);  // the user is to see it
    Model().SetCol(col);
    entry_.GridWindow().ScrollIntoView(row, col);
    TakeFocus();
}

}  // namespace qvx::grid
