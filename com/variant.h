// The owner of a VARIANT, and conversions of values from scripts and property bags.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cassert>
#include <optional>

#include "com/bstr.h"
#include "com/pointer.h"
#include "com/wide_text.h"

namespace qvx {

constexpr VARIANT_BOOL ToVariantBool(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }

class Variant {
  public:
    Variant() { VariantInit(&value_); }
    explicit Variant(bool value) : Variant() {
        value_.vt = VT_BOOL;
        value_.boolVal = ToVariantBool(value);
    }
    explicit Variant(short value) : Variant() {
        value_.vt = VT_I2;
        value_.iVal = value;
    }
    explicit Variant(long value) : Variant() {
        value_.vt = VT_I4;
        value_.lVal = value;
    }
    explicit Variant(int value) : Variant(static_cast<long>(value)) {}
    explicit Variant(double value) : Variant() {
        value_.vt = VT_R8;
        value_.dblVal = value;
    }
    explicit Variant(TextView value) : Variant() {
        value_.bstrVal = NewBstr(value);
        value_.vt = VT_BSTR;
    }
    explicit Variant(const Text& value) : Variant(TextView(value)) {}
    explicit Variant(const char16_t* value) : Variant(TextView(value)) {}
    // Shares the object.
    explicit Variant(IDispatch* object) : Variant() {
        value_.vt = VT_DISPATCH;
        value_.pdispVal = ComPtr<IDispatch>(object).detach();
    }
    explicit Variant(IUnknown* object) : Variant() {
        value_.vt = VT_UNKNOWN;
        value_.punkVal = ComPtr<IUnknown>(object).detach();
    }
    // Copies the value with every by-reference level removed. Throws ComError.
    explicit Variant(const VARIANT& value);
    // The value of an optional argument that a late-bound call omits.
    static Variant Missing();

    Variant(const Variant& other) : Variant(other.value_) {}
    Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    Variant& operator=(Variant other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Variant() { VariantClear(&value_); }

    VARTYPE Type() const { return value_.vt; }
    bool Empty() const { return value_.vt == VT_EMPTY; }
    const VARIANT& get() const { return value_; }
    VARIANT* ptr() { return &value_; }
    const VARIANT* ptr() const { return &value_; }
    VARIANT* put() {
        assert(value_.vt == VT_EMPTY);
        return &value_;
    }
    VARIANT detach() {
        const VARIANT value = value_;
        VariantInit(&value_);
        return value;
    }
    // Converts with the system's conversions in the invariant locale; nullopt when the value cannot be converted.
    std::optional<Variant> To(VARTYPE type) const;
    std::optional<long> ToLong() const;
    std::optional<bool> ToBool() const;
    std::optional<double> ToDouble() const;
    // Empty, Null and Missing give "". Returns nullopt for objects without a value and for arrays.
    std::optional<Text> ToText() const;
    // Returns another interface of the object inside; null when there is none.
    template <typename T>
    ComPtr<T> ToObject() const {
        if (value_.vt != VT_DISPATCH && value_.vt != VT_UNKNOWN) return nullptr;
        return Query<T>(value_.punkVal);
    }

  private:
    VARIANT value_;
};

// Whether an optional VARIANT argument was left out by the caller.
bool IsMissing(const VARIANT& value);

// Stores a value in the caller's variable to which `reference` refers, directly or through any number of variants,
// converted to the variable's own type. Returns false, with the variable unchanged, when that is impossible or
// `reference` is not a reference.
bool StoreThrough(const VARIANT& reference, const Variant& value);

}  // namespace qvx
