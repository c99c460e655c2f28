// The records of a record set and the current position.
#pragma once

#include <vector>

#include "com/variant.h"
#include "samples/ado/database.h"

namespace qvx::ado {

class Records {
  public:
    bool IsOpen() const { return open_; }
    // With `forwardOnly`, the records know neither their number nor their position.
    void Open(Table table, bool forwardOnly);
    void Close();

    // All of these raise error 3704 while closed.
    const std::vector<Column>& Columns() const;
    long Count() const;  // -1 when it is not known
    bool Bof() const;
    bool Eof() const;
    // Returns the position from 1; -1 when it is not known, -2 before the first record, -3 after the last.
    long Position() const;
    void MoveFirst();
    void MoveLast();
    // Moves forward (1) or back (-1), to before the first or after the last record; raises error 3021 beyond that.
    void Move(long by);

    // Returns a value of the current record; raises error 3021 without one.
    const Variant& Value(std::size_t column) const;

    // Returns up to `count` records (all for -1) from the current one on, and moves past them: a two-dimensional array
    // of variants with the field as its first index and the record as its second.
    Variant Take(long count);

  private:
    void CheckOpen() const;
    void CheckBothWays() const;
    long Rows() const { return static_cast<long>(table_.Rows()); }

    Table table_;
    bool open_ = false;
    bool forwardOnly_ = false;
    bool beforeFirst_ = false;
    long row_ = 0;  // of the current record; the number of rows when after the last
};

}  // namespace qvx::ado
