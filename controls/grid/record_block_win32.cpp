#include "controls/grid/record_block_win32.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "com/ado.h"
#include "com/bstr.h"
#include "com/safearray.h"
#include "common/run_time_error.h"

namespace qvx::grid {

RecordBlock::RecordBlock(const VARIANT& values, const char16_t* refusal) : array_(ArrayOf(values)) {
    const auto accepts = [&] {
        if (!array_ || SafeArrayGetDim(array_) != 2 || FAILED(SafeArrayGetVartype(array_, &type_))) return false;
        if (type_ == VT_RECORD || SafeArrayGetElemsize(array_) > sizeof(VARIANT)) return false;
        void* data = nullptr;
        if (FAILED(SafeArrayAccessData(array_, &data))) return false;
        cells_ = static_cast<const char*>(data);
        return true;
    };
    if (!accepts()) throw RunTimeError(errors::typeMismatch, refusal);
    // Bounds are stored from the last dimension to the first.
    records_ = static_cast<int>(array_->rgsabound[0].cElements);
    fields_ = static_cast<int>(array_->rgsabound[1].cElements);
}

VARIANT RecordBlock::At(int record, int field) const {
    const std::size_t size = array_->cbElements;
    const char* const cell =
        cells_ +
        (static_cast<std::size_t>(record) * static_cast<std::size_t>(fields_) + static_cast<std::size_t>(field)) * size;
    VARIANT value{};
    if (type_ == VT_VARIANT || type_ == VT_DECIMAL) {
        std::memcpy(&value, cell, size);
    } else {
        std::memcpy(&value.llVal, cell, size);
    }
    if (type_ != VT_VARIANT) value.vt = type_;
    return value;
}

void ArrayRecords::AppendFields(Text& row) {
    for (int field = 0; field < block_.Fields(); ++field) {
        AppendFieldText(block_.At(at_, field), row);
        row += u'\t';
    }
}

Variant ArrayOfRows(const flexgrid::Grid& grid, std::span<const int> columns) {
    const int first = grid.FixedRows();
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(columns.size()), 0}, {static_cast<ULONG>(grid.Rows() - first), 0}};
    SafeArray array(SafeArrayCreate(VT_VARIANT, 2, bounds));
    void* data = nullptr;
    if (!array.get() || FAILED(SafeArrayAccessData(array.get(), &data))) throw std::bad_alloc();
    auto* cell = static_cast<VARIANT*>(data);
    try {
        Text scratch;
        grid.ForEachRow(first, grid.Rows() - 1, [&](int, const flexgrid::RowView& cells) {
            for (const int col : columns) {
                cell->bstrVal = NewBstr(cells[col].AsWide(scratch));
                cell++->vt = VT_BSTR;
            }
        });
    } catch (...) {
        SafeArrayUnaccessData(array.get());
        throw;
    }
    SafeArrayUnaccessData(array.get());
    Variant result;
    result.ptr()->parray = array.detach();
    result.ptr()->vt = VT_ARRAY | VT_VARIANT;
    return result;
}

}  // namespace qvx::grid
