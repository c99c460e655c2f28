// The records of a record set and the place in them.
#pragma once

#include <vector>

#include "com/variant.h"
#include "samples/ado/database.h"

namespace qvx::ado {

class Records {
  public:
    bool IsOpen() const { return open_; }
    // Records that only go forward know neither their number nor their place.
    void Open(Table table, bool forwardOnly);
    void Close();

    // All of these raise error 3704 while closed.
    const std::vector<Column>& Columns() const;
    long Count() const;  // -1 when it is not known
    bool Bof() const;
    bool Eof() const;
    // From 1; -1 when it is not known, -2 before the first record, -3 behind the last.
    long Position() const;
    void MoveFirst();
    void MoveLast();
    // One on (1) or back (-1), to the one before the first or behind the last; error 3021 beyond that.
    void Move(long by);

    // Of the current record; error 3021 without one.
    const Variant& Value(std::size_t column) const;

    // Up to `count` records (all for -1) from the current one on, and moves behind them: a two-dimensional array of
    // variants, its first index the field, its second the record.
    Variant Take(long count);

  private:
    void CheckOpen() const;
    void CheckBothWays() const;
    long Rows() const { return static_cast<long>(table_.Rows()); }

    Table table_;
    bool open_ = false;
    bool forwardOnly_ = false;
    bool beforeFirst_ = false;
    long row_ = 0;  // of the current record; the number of rows when behind the last
};

}  // namespace qvx::ado
