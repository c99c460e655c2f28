#include "samples/ado/records.h"

#include <algorithm>
#include <new>
#include <numeric>

#include "samples/ado/errors.h"
#include "samples/ado/field_value.h"

namespace qvx::ado {

void Records::Open(Table table, bool forwardOnly) {
    table_ = std::move(table);
    order_.resize(table_.Rows());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    writer_.reset();
    CancelUpdate();
    forwardOnly_ = forwardOnly;
    open_ = true;
    deleted_ = false;
    row_ = 0;
    beforeFirst_ = Rows() == 0;
}

void Records::Close() {
    CheckOpen();
    if (IsEdited()) ThrowNotAllowedHere(u"A record is being changed.");
    table_ = {};
    order_.clear();
    writer_.reset();
    open_ = false;
}

void Records::CheckOpen() const {
    if (!open_) ThrowObjectClosed();
}

void Records::CheckWritable() const {
    CheckOpen();
    if (!writer_) ThrowNotUpdatable(readOnlyReason_);
}

void Records::CheckCurrent() const {
    CheckOpen();
    if (beforeFirst_ || deleted_ || row_ == Rows()) ThrowNoCurrentRecord();
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
    return beforeFirst_ && !adding_;
}

bool Records::Eof() const {
    CheckOpen();
    return !adding_ && !deleted_ && (Rows() == 0 || (!beforeFirst_ && row_ == Rows()));
}

long Records::Position() const {
    CheckOpen();
    if (forwardOnly_) return -1;
    if (beforeFirst_) return -2;
    return row_ == Rows() ? -3 : row_ + 1;
}

void Records::MoveFirst() {
    CheckOpen();
    Update();
    if (Rows() == 0) ThrowNoCurrentRecord();
    beforeFirst_ = deleted_ = false;
    row_ = 0;
}

void Records::MoveLast() {
    CheckOpen();
    CheckBothWays();
    Update();
    if (Rows() == 0) ThrowNoCurrentRecord();
    beforeFirst_ = deleted_ = false;
    row_ = Rows() - 1;
}

void Records::Move(long by) {
    CheckOpen();
    if (by < 0) CheckBothWays();
    Update();
    if ((by > 0 && Eof()) || (by < 0 && Bof())) ThrowNoCurrentRecord();
    const long to = (beforeFirst_ ? -1 : row_) + by - (deleted_ && by > 0 ? 1 : 0);
    deleted_ = false;
    beforeFirst_ = to < 0;
    row_ = std::max(to, 0L);
}

Variant Records::Value(std::size_t column) const {
    CheckOpen();
    if (IsEdited() && edited_[column]) return *edited_[column];
    if (adding_) return NullValue();
    CheckCurrent();
    return table_.cells[FirstCell() + column];
}

void Records::SetValue(std::size_t column, const Variant& value) {
    CheckWritable();
    if (!adding_) CheckCurrent();
    if (!writer_->CanWrite(column)) ThrowNotUpdatable(u"the field is computed.");
    Variant converted = ValueOfKind(table_.columns[column].kind, value);
    edited_.resize(table_.columns.size());
    edited_[column] = std::move(converted);
}

void Records::AddNew() {
    CheckWritable();
    Update();
    edited_.resize(table_.columns.size());
    adding_ = true;
}

void Records::Update() {
    CheckOpen();
    if (!IsEdited()) return;
    const auto known = adding_ ? writer_->Insert(edited_) : writer_->Update(Current(), edited_);
    if (adding_) {
        order_.push_back(table_.Rows());
        table_.cells.resize(table_.cells.size() + table_.columns.size(), NullValue());
        row_ = Rows() - 1;
        beforeFirst_ = deleted_ = false;
    }
    const Values& values = known ? *known : edited_;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!values[i]) continue;
        table_.cells[FirstCell() + i] = *values[i];
        table_.spelled.erase(FirstCell() + i);
    }
    CancelUpdate();
}

void Records::CancelUpdate() {
    edited_.clear();
    adding_ = false;
}

void Records::Delete() {
    CheckWritable();
    if (adding_) ThrowNotAllowedHere(u"A record is being added.");
    CheckCurrent();
    writer_->Delete(Current());
    CancelUpdate();
    order_.erase(order_.begin() + row_);
    deleted_ = true;
}

Values Records::Current() const {
    Values values;
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        const auto spelled = table_.spelled.find(FirstCell() + i);
        values.emplace_back(spelled == table_.spelled.end() ? table_.cells[FirstCell() + i] : Variant(spelled->second));
    }
    return values;
}

Variant Records::Take(long count) {
    CheckOpen();
    Update();
    if (Eof() || Bof() || deleted_) ThrowNoCurrentRecord();
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
