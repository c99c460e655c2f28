// IDispatch of an object without type information, for late binding only.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/object.h"

namespace qvx {

// An object derives from ComObject<UntypedDispatch> and implements Invoke, and GetIDsOfNames if its members have names.
class UntypedDispatch : public IDispatch {
  public:
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        if (info) *info = nullptr;
        return DISP_E_BADINDEX;
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }

  protected:
    ~UntypedDispatch() = default;
};

template <>
struct InterfaceTraits<UntypedDispatch> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IDispatch); }
};

}  // namespace qvx
