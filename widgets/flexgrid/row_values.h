// A setting of every row of which few rows have another value than the rest. Values belong to the identity of their row
// and move with it.
#pragma once

#include <utility>

#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

template <class Value>
class RowValues {
  public:
    explicit RowValues(Value shared) : shared_(shared) {}

    Value Of(RowId row) const {
        const Value* own = own_.Find(row);
        return own ? *own : shared_;
    }
    // The value of all rows that have none of their own.
    Value Shared() const { return shared_; }

    // Strong guarantee: unchanged when memory runs out. After Reserve(1) it does not allocate.
    void Set(RowId row, Value value) {
        if (value == shared_) {
            own_.Erase(row);
        } else {
            own_.Set(row, value);
        }
    }
    // Gives all rows this value, those to come as well.
    void SetAll(Value value) noexcept {
        shared_ = value;
        own_.Clear();
    }
    // Makes room for the values of so many more rows.
    void Reserve(std::size_t more) { own_.Reserve(own_.Size() + more); }
    void Erase(RowId row) noexcept { own_.Erase(row); }

    // Calls use(RowId, Value) for each row with a value of its own, in no particular order.
    template <class Use>
    void ForEachOwn(Use&& use) const {
        own_.ForEach(std::forward<Use>(use));
    }
    std::size_t OwnCount() const { return own_.Size(); }

  private:
    Value shared_;
    SparseMap<Value> own_;
};

}  // namespace qvx::flexgrid
