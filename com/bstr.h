// The owner of a BSTR.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cassert>
#include <new>
#include <utility>

#include "com/wide_text.h"

namespace qvx {

class Bstr {
  public:
    Bstr() = default;
    // Throws std::bad_alloc. An empty text becomes an empty string, not null.
    explicit Bstr(TextView text) : text_(SysAllocStringLen(Wide(text).data(), static_cast<UINT>(text.size()))) {
        if (!text_) throw std::bad_alloc();
    }
    Bstr(Bstr&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    Bstr(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const { return text_; }
    TextView View() const { return FromBstr(text_); }
    Text ToText() const { return Text(View()); }
    BSTR* put() {
        assert(!text_);
        return &text_;
    }
    BSTR detach() { return std::exchange(text_, nullptr); }

  private:
    BSTR text_ = nullptr;
};

// Returns a new string for an out parameter; the caller frees it. Throws std::bad_alloc.
inline BSTR NewBstr(TextView text) { return Bstr(text).detach(); }

}  // namespace qvx
