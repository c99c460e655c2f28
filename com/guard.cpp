#include "com/guard.h"

#include <oleauto.h>

#include <cstring>
#include <new>

#include "com/pointer.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"

namespace qvx {

HRESULT ReportFailure(HRESULT code, TextView description) noexcept {
    try {
        ComPtr<ICreateErrorInfo> creator;
        if (FAILED(CreateErrorInfo(creator.put()))) return code;
        Text copy(description);
        wchar_t source[] = L"Qvx";
        creator->SetGUID(GUID_NULL);
        creator->SetSource(source);
        creator->SetDescription(WideBuffer(copy));
        if (const auto info = creator.As<IErrorInfo>()) SetErrorInfo(0, info.get());
    } catch (...) {
        // Without memory for its description, the code alone must do.
    }
    return code;
}

void ForgetEarlierFailure() noexcept { SetErrorInfo(0, nullptr); }

HRESULT FailureInFlight() noexcept {
    try {
        throw;
    } catch (const RunTimeError& error) {
        return ReportFailure(RunTimeErrorCode(error.Number()), error.Description());
    } catch (const ComError& error) {
        return error.Result();
    } catch (const std::bad_alloc&) {
        return ReportFailure(E_OUTOFMEMORY, u"Out of memory");
    } catch (const std::exception& error) {
        constexpr int internalError = 51;
        const char* what = error.what();
        try {
            // The library's own messages are plain ASCII.
            return ReportFailure(RunTimeErrorCode(internalError),
                                 u"Internal error: " + Text(what, what + std::strlen(what)));
        } catch (const std::bad_alloc&) {
            return ReportFailure(RunTimeErrorCode(internalError), u"Internal error");
        }
    } catch (...) {
        return ReportFailure(E_UNEXPECTED, u"Internal error");
    }
}

}  // namespace qvx
