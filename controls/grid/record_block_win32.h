// Arrays of fields and records, in the shape that record sets give many records at a time.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <span>

#include "com/variant.h"
#include "controls/grid/binding.h"

namespace qvx::grid {

// An array with two dimensions, locked for reading: the first counts the fields, the second the records.
class RecordBlock {
  public:
    // Refers to the array in the caller's value. Raises error 13 with this text for a value of another shape and for
    // elements that no variant holds.
    RecordBlock(const VARIANT& values, const char16_t* refusal);
    ~RecordBlock() { SafeArrayUnaccessData(array_); }
    RecordBlock(const RecordBlock&) = delete;
    RecordBlock& operator=(const RecordBlock&) = delete;

    bool HoldsVariants() const { return type_ == VT_VARIANT; }
    int Fields() const { return fields_; }
    int Records() const { return records_; }
    // Returns a value that still belongs to the array.
    VARIANT At(int record, int field) const;

  private:
    SAFEARRAY* array_;
    const char* cells_ = nullptr;
    VARTYPE type_ = VT_VARIANT;
    int records_ = 0;
    int fields_ = 0;
};

// The records of an array.
class ArrayRecords final : public RecordSource {
  public:
    explicit ArrayRecords(const VARIANT& values) : block_(values, u"Type mismatch") {}
    std::int64_t Count() override { return block_.Records(); }
    bool AtEnd() override { return at_ == block_.Records(); }
    std::int64_t Position() override { return at_ + 1; }
    void AppendFields(Text& row) override;
    void MoveNext() override { ++at_; }

  private:
    RecordBlock block_;
    int at_ = 0;
};

// Returns the data rows' texts in these columns as such an array of variants, with lower bounds of 0.
Variant ArrayOfRows(const flexgrid::Grid& grid, std::span<const int> columns);

}  // namespace qvx::grid
