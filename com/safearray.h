// Safe arrays: an owner for new ones of variants, and a reader for the one-dimensional arrays that hosts pass.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>
#include <vector>

#include "com/variant.h"

namespace qvx {

class SafeArray {
  public:
    SafeArray() = default;
    explicit SafeArray(SAFEARRAY* array) : array_(array) {}
    SafeArray(SafeArray&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
    SafeArray& operator=(SafeArray&& other) noexcept {
        std::swap(array_, other.array_);
        return *this;
    }
    SafeArray(const SafeArray&) = delete;
    ~SafeArray() {
        if (array_) SafeArrayDestroy(array_);
    }

    // Creates a zero-based array of variants. Throws std::bad_alloc, ComError.
    static SafeArray OfVariants(const std::vector<Variant>& elements);

    SAFEARRAY* get() const { return array_; }
    SAFEARRAY* detach() { return std::exchange(array_, nullptr); }

  private:
    SAFEARRAY* array_ = nullptr;
};

// Returns the elements of a one-dimensional array of any element type, from its lower bound up, each as a plain
// variant. Null gives no elements. Throws ComError for more dimensions and for element types that no variant can hold.
std::vector<Variant> ReadElements(SAFEARRAY* array);

// Returns the array inside a variant, whether passed by value or by any level of reference; null when there is none.
SAFEARRAY* ArrayOf(const VARIANT& value);

}  // namespace qvx
