#pragma once

#include <utility>

namespace qvx {

// Gives a variable another value for the length of a scope.
template <class Value>
class ValueScope {
  public:
    ValueScope(Value& variable, Value value) : variable_(variable), before_(std::exchange(variable, value)) {}
    ~ValueScope() { variable_ = before_; }
    ValueScope(const ValueScope&) = delete;
    ValueScope& operator=(const ValueScope&) = delete;

  private:
    Value& variable_;
    Value before_;
};

// Gives a variable another value, and its former one back at the end of the scope unless what goes with it is done.
template <class Value>
class TentativeValue {
  public:
    TentativeValue(Value& variable, Value value)
        : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
    ~TentativeValue() {
        if (!done_) variable_ = std::move(before_);
    }
    TentativeValue(const TentativeValue&) = delete;
    TentativeValue& operator=(const TentativeValue&) = delete;
    void Done() { done_ = true; }

  private:
    Value& variable_;
    Value before_;
    bool done_ = false;
};

// Sets a flag for the length of a scope.
class FlagScope : public ValueScope<bool> {
  public:
    explicit FlagScope(bool& flag, bool value = true) : ValueScope(flag, value) {}
};

}  // namespace qvx
