#include "samples/ado/records.h"

#include <algorithm>
#include <new>
#include <numeric>

#include "samples/ado/errors.h"

namespace qvx::ado {

void Records::Open(Table table, bool forwardOnly) {
    table_ = std::move(table);
    forwardOnly_ = forwardOnly;
    open_ = true;
    row_ = 0;
    beforeFirst_ = Rows() == 0;
}

void Records::Close() {
    CheckOpen();
    table_ = {};
    open_ = false;
}

void Records::CheckOpen() const {
    if (!open_) ThrowObjectClosed();
}

void Records::CheckBothWays() const {
    if (forwardOnly_) ThrowNotAllowedHere(u"A forward-only record set moves forward only.");
}

const std::vector<Column>& Records::Columns() const {
    CheckOpen();
    return table_.columns;
}

long Records::Count() const {
    CheckOpen();
    return forwardOnly_ ? -1 : Rows();
}

bool Records::Bof() const {
    CheckOpen();
    return beforeFirst_;
}

bool Records::Eof() const {
    CheckOpen();
    return Rows() == 0 || (!beforeFirst_ && row_ == Rows());
}

long Records::Position() const {
    CheckOpen();
    if (forwardOnly_) return -1;
    if (beforeFirst_) return -2;
    return row_ == Rows() ? -3 : row_ + 1;
}

void Records::MoveFirst() {
    CheckOpen();
    if (Rows() == 0) ThrowNoCurrentRecord();
    beforeFirst_ = false;
    row_ = 0;
}

void Records::MoveLast() {
    CheckOpen();
    CheckBothWays();
    if (Rows() == 0) ThrowNoCurrentRecord();
    beforeFirst_ = false;
    row_ = Rows() - 1;
}

void Records::Move(long by) {
    CheckOpen();
    if (by < 0) CheckBothWays();
    if ((by > 0 && Eof()) || (by < 0 && Bof())) ThrowNoCurrentRecord();
    const long to = (beforeFirst_ ? -1 : row_) + by;
    beforeFirst_ = to < 0;
    row_ = std::max(to, 0L);
}

const Variant& Records::Value(std::size_t column) const {
    CheckOpen();
    if (beforeFirst_ || row_ == Rows()) ThrowNoCurrentRecord();
    return table_.cells[static_cast<std::size_t>(row_) * table_.columns.size() + column];
}

Variant Records::Take(long count) {
    CheckOpen();
    if (Eof() || Bof()) ThrowNoCurrentRecord();
    if (count < -1) ThrowWrongArguments();
    const long left = Rows() - row_;
    const long taken = count < 0 ? left : std::min(count, left);
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(table_.columns.size()), 0}, {static_cast<ULONG>(taken), 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!array) throw std::bad_alloc();
    Variant result;
    result.ptr()->vt = VT_ARRAY | VT_VARIANT;
    result.ptr()->parray = array;
    VARIANT* element = nullptr;
    if (FAILED(SafeArrayAccessData(array, reinterpret_cast<void**>(&element)))) throw std::bad_alloc();
    // The first index runs fastest in memory: record after record.
    for (long i = 0; i < taken; ++i, ++row_) {
        for (std::size_t field = 0; field < table_.columns.size(); ++field) *element++ = Variant(Value(field)).detach();
    }
    SafeArrayUnaccessData(array);
    return result;
}

}  // namespace qvx::ado
