// IDispatch of a dual interface, implemented with the type library: an object derives from Dispatch<_Thing> and
// implements only the interface's own methods.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "com/guard.h"
#include "com/object.h"
#include "com/type_library.h"

namespace qvx {

// Makes a late-bound call of `self` (a pointer to the dual interface). By-reference variants, which scripts always
// pass, are converted for typed parameters, and what the method wrote is copied back into the caller's variable if the
// call has succeeded. A call whose arguments do not fit the member's parameters in number, name or kind reaches neither
// the method nor the system's own call, which does not check all of them. `result` is written only on success. Throws
// ComError, std::bad_alloc.
HRESULT InvokeThroughTypeLibrary(const MemberTable& members, void* self, DISPID member, WORD flags,
                                 DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception, UINT* argumentInError);
// Returns the numbers of a member and its parameters. Returns E_POINTER or E_INVALIDARG when the names, or the space
// for the numbers, are missing.
HRESULT NamesThroughTypeLibrary(const MemberTable& members, LPOLESTR* names, UINT count, DISPID* ids);

template <typename I>
class Dispatch : public I {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        if (index != 0) return DISP_E_BADINDEX;
        return Guard([&] { *info = Members().info.copy(); });
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return Guard([&] { return NamesThroughTypeLibrary(Members(), names, count, ids); });
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override {
        if (result) VariantInit(result);
        return Guard([&] {
            return InvokeThroughTypeLibrary(Members(), static_cast<I*>(this), member, flags, arguments, result,
                                            exception, argumentInError);
        });
    }

  protected:
    ~Dispatch() = default;

  private:
    const MemberTable& Members() {
        if (!members_) members_ = MembersOf(__uuidof(I));
        return *members_;
    }

    std::shared_ptr<const MemberTable> members_;
};

template <typename I>
struct InterfaceTraits<Dispatch<I>> {
    static bool Answers(REFIID iid) { return iid == __uuidof(I) || iid == __uuidof(IDispatch); }
};

// Declares that methods of the given interface provide rich error information.
template <typename I>
class ErrorInfoSupport : public ISupportErrorInfo {
  public:
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(I) || iid == __uuidof(IDispatch) ? S_OK : S_FALSE;
    }

  protected:
    ~ErrorInfoSupport() = default;
};

template <typename I>
struct InterfaceTraits<ErrorInfoSupport<I>> {
    static bool Answers(REFIID iid) { return iid == __uuidof(ISupportErrorInfo); }
};

}  // namespace qvx
