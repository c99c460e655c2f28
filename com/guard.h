// The fence between our code and its callers: no C++ exception leaves through a vtable, a window procedure or an
// export.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <exception>
#include <type_traits>

#include "common/text.h"

namespace qvx {

// A failed call of the system, on its way to the fence.
class ComError : public std::exception {
  public:
    explicit ComError(HRESULT result) : result_(result) {}
    HRESULT Result() const noexcept { return result_; }
    const char* what() const noexcept override { return "COM error"; }

  private:
    HRESULT result_;
};

// Throws ComError when the call failed. Returns the result for calls with several kinds of success.
inline HRESULT Check(HRESULT result) {
    if (FAILED(result)) throw ComError(result);
    return result;
}

// What a run-time error is called at the automation edge.
constexpr HRESULT RunTimeErrorCode(int number) {
    return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number & 0xFFFF));
}

// Publishes rich error information (source "Qvx") for the calling thread and returns the code.
HRESULT ReportFailure(HRESULT code, TextView description) noexcept;

// Inside a catch block only: the HRESULT of the exception in flight, with its rich error information published.
HRESULT FailureInFlight() noexcept;

// Takes away what an earlier call of this thread has left as its error, which a failure without a description of its
// own would seem to say otherwise.
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

// Runs what must not fail its caller, in the middle of a method or outside of any: whatever it throws ends here.
template <typename Body>
void Contain(Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        // Nobody is to be told.
    }
}

}  // namespace qvx
