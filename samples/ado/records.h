// The records of a record set, the current position, and the record that is being changed or added.
#pragma once

#include <memory>
#include <vector>

#include "com/variant.h"
#include "samples/ado/database.h"
#include "samples/ado/record_writer.h"

namespace qvx::ado {

class Records {
  public:
    bool IsOpen() const { return open_; }
    // With `forwardOnly`, the records know neither their number nor their position.
    void Open(Table table, bool forwardOnly);
    // Makes them writable; raises error 3251 with these words otherwise.
    void WriteThrough(std::unique_ptr<RecordWriter> writer) { writer_ = std::move(writer); }
    void StayAsTheyAre(const char16_t* reason) { readOnlyReason_ = reason; }
    void Close();

    // All of these raise error 3704 while closed.
    const std::vector<Column>& Columns() const;
    long Count() const;  // -1 when it is not known
    bool Bof() const;
    bool Eof() const;
    // Returns the position from 1; -1 when it is not known, -2 before the first record, -3 after the last.
    long Position() const;
    // Moving to another record writes the changes of the current one first.
    void MoveFirst();
    void MoveLast();
    // Moves forward (1) or back (-1), to before the first or after the last record; raises error 3021 beyond that.
    void Move(long by);

    // Returns a value of the current record, or of the one that is being added; raises error 3021 without one.
    Variant Value(std::size_t column) const;
    // Changes the current record, or the one that is being added, until Update writes it.
    void SetValue(std::size_t column, const Variant& value);
    bool IsEdited() const { return !edited_.empty(); }
    void AddNew();
    // An added record is the last and the current one afterwards.
    void Update();
    void CancelUpdate();
    // There is no current record until the next move, which leads to the one after it.
    void Delete();

    // Returns up to `count` records (all for -1) from the current one on, and moves past them: a two-dimensional array
    // of variants with the field as its first index and the record as its second.
    Variant Take(long count);

  private:
    void CheckOpen() const;
    void CheckBothWays() const;
    void CheckWritable() const;
    void CheckCurrent() const;
    long Rows() const { return static_cast<long>(order_.size()); }
    std::size_t FirstCell() const { return order_[static_cast<std::size_t>(row_)] * table_.columns.size(); }
    Values Current() const;

    Table table_;
    std::vector<std::size_t> order_;  // of the rows in the table that are still there
    std::unique_ptr<RecordWriter> writer_;
    const char16_t* readOnlyReason_ = u"";
    bool open_ = false;
    bool forwardOnly_ = false;
    bool beforeFirst_ = false;
    bool deleted_ = false;  // the record in front of row_ was the current one
    long row_ = 0;          // of the current record; the number of rows when after the last
    Values edited_;         // empty, or the values that Update writes
    bool adding_ = false;
};

}  // namespace qvx::ado
