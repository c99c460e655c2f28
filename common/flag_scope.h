#pragma once

namespace qvx {

// Sets a flag for the length of a scope.
class FlagScope {
  public:
    explicit FlagScope(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~FlagScope() { flag_ = before_; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace qvx
