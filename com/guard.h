// The boundary between the library's code and its callers: no C++ exception crosses a vtable, a window procedure or an
// export.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <exception>
#include <type_traits>

#include "common/text.h"

namespace qvx {

// A failed system call, on its way to the boundary.
class ComError : public std::exception {
  public:
    explicit ComError(HRESULT result) : result_(result) {}
    HRESULT Result() const noexcept { return result_; }
    const char* what() const noexcept override { return "COM error"; }

  private:
    HRESULT result_;
};

// Throws ComError when the call failed. Otherwise returns the result, for calls with several success codes.
inline HRESULT Check(HRESULT result) {
    if (FAILED(result)) throw ComError(result);
    return result;
}

// The HRESULT of a run-time error at the automation interfaces.
constexpr HRESULT RunTimeErrorCode(int number) {
    return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number & 0xFFFF));
}

// Publishes rich error information (source "Qvx") for the calling thread and returns the code.
HRESULT ReportFailure(HRESULT code, TextView description) noexcept;

// Returns the HRESULT of the exception in flight and publishes its rich error information. For use inside a catch block
// only.
HRESULT FailureInFlight() noexcept;

// Clears the error that an earlier call has left on this thread: a failure without a description of its own would
// otherwise seem to have that one.
void ForgetEarlierFailure() noexcept;

// Runs the body of one interface method. The body returns nothing (S_OK) or an HRESULT, and may throw anything.
template <typename Body>
HRESULT Guard(Body&& body) noexcept {
    ForgetEarlierFailure();
    try {
        if constexpr (std::is_void_v<decltype(body())>) {
            body();
            return S_OK;
        } else {
            return body();
        }
    } catch (...) {
        return FailureInFlight();
    }
}

// Runs code whose failure must not reach its caller, inside a method or outside of any: exceptions end here.
template <typename Body>
void Contain(Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        // There is nobody to report the error to.
    }
}

}  // namespace qvx
