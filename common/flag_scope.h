#pragma once

#include <utility>

namespace qvx {

// Sets a variable to another value for the duration of a scope.
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

// Sets a variable to another value, and restores the previous one at the end of the scope unless Done was called.
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

// Sets a flag for the duration of a scope.
class FlagScope : public ValueScope<bool> {
  public:
    explicit FlagScope(bool& flag, bool value = true) : ValueScope(flag, value) {}
};

}  // namespace qvx
