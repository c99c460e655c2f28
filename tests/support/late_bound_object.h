// An object of a host that is accessed by names, such as a form or an extended control.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <iterator>
#include <map>
#include <optional>
#include <string>

#include "com/untyped_dispatch.h"
#include "com/variant.h"

namespace qvx::test {

class LateBoundObject final : public ComObject<UntypedDispatch> {
  public:
    std::map<std::wstring, Variant> members;
    // The exception that every call returns if this is set; the caller receives its texts.
    std::optional<EXCEPINFO> failure;

    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        const auto found = members.find(names[0]);
        if (found == members.end()) return DISP_E_UNKNOWNNAME;
        *ids = static_cast<DISPID>(std::distance(members.begin(), found)) + 1;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT*) override {
        if (failure) {
            *exception = *failure;
            return DISP_E_EXCEPTION;
        }
        Variant& value = std::next(members.begin(), member - 1)->second;
        if (flags & DISPATCH_PROPERTYPUT) {
            value = Variant(arguments->rgvarg[0]);
        } else {
            *result = Variant(value).detach();
        }
        return S_OK;
    }

  private:
    ~LateBoundObject() override = default;
};

}  // namespace qvx::test
