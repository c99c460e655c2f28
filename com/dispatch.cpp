#include "com/dispatch.h"

#include <oleauto.h>

#include <algorithm>

#include "com/text.h"
#include "com/variant.h"

namespace qvx {

namespace {

// An argument that stands in for the caller's during the call, because the parameter is a typed reference and the
// caller passed something else.
struct StandIn {
    Variant value;              // of the parameter's type
    VARIANT* caller = nullptr;  // the variable to write back into; null for arguments by value
    UINT index = 0;             // of the argument in the call
};

const std::vector<VARTYPE>* ParametersOf(const MemberTable& members, DISPID member, WORD flags) {
    for (const INVOKEKIND kind : {INVOKE_FUNC, INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF}) {
        if (!(flags & kind)) continue;
        const auto found = members.parameters.find({member, kind});
        if (found != members.parameters.end()) return &found->second;
    }
    return nullptr;
}

// The number of the parameter that argument `index` of the call is for; arguments stand right to left, named ones
// first.
size_t ParameterIndex(const DISPPARAMS& arguments, UINT index, size_t parameters) {
    if (index < arguments.cNamedArgs) {
        const DISPID name = arguments.rgdispidNamedArgs[index];
        return name == DISPID_PROPERTYPUT ? parameters - 1 : static_cast<size_t>(name);
    }
    return arguments.cArgs - 1 - index;
}

void PointInto(VARIANT& argument, Variant& target, VARTYPE type) {
    argument.vt = static_cast<VARTYPE>(type | VT_BYREF);
    // Every member of the value lies at the same place.
    argument.byref = &target.ptr()->llVal;
}

bool IsPlain(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
        case VT_I2:
        case VT_UI2:
        case VT_I4:
        case VT_UI4:
        case VT_I8:
        case VT_UI8:
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_BOOL:
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return true;
        default:
            return false;
    }
}

// Rewrites the arguments for the method's parameters. Returns the index of an argument that cannot be read as its
// parameter's type.
std::optional<UINT> Adapt(std::vector<VARIANT>& arguments, const DISPPARAMS& call, const std::vector<VARTYPE>& types,
                          std::vector<StandIn>& standIns) {
    for (UINT i = 0; i < call.cArgs; ++i) {
        const size_t parameter = ParameterIndex(call, i, types.size());
        if (parameter >= types.size() || IsMissing(arguments[i])) continue;
        const VARTYPE type = types[parameter];
        const auto target = static_cast<VARTYPE>(type & ~VT_BYREF);
        VARIANT& argument = arguments[i];
        const bool variantReference = argument.vt == (VT_BYREF | VT_VARIANT);
        if (target == VT_VARIANT) continue;
        if (!(type & VT_BYREF)) {
            // A typed value: a borrowed look at the caller's variable is enough, the system converts it.
            while (argument.vt == (VT_BYREF | VT_VARIANT)) {
                const VARIANT* inner = argument.pvarVal;
                argument = *inner;
            }
            continue;
        }
        if (argument.vt == type || !IsPlain(target)) continue;
        Variant plain(argument);
        auto converted = plain.Type() == target ? std::optional(std::move(plain)) : plain.To(target);
        // An empty variable passed for an object is Nothing.
        if (!converted && plain.Empty() && (target == VT_DISPATCH || target == VT_UNKNOWN)) {
            converted = target == VT_DISPATCH ? Variant(static_cast<IDispatch*>(nullptr))
                                              : Variant(static_cast<IUnknown*>(nullptr));
        }
        if (!converted) return i;
        standIns.push_back({std::move(*converted), variantReference ? argument.pvarVal : nullptr, i});
    }
    // Only now, when the list no longer grows.
    for (StandIn& standIn : standIns) PointInto(arguments[standIn.index], standIn.value, standIn.value.Type());
    return std::nullopt;
}

void WriteBack(std::vector<StandIn>& standIns) {
    for (StandIn& standIn : standIns) {
        VARIANT* caller = standIn.caller;
        while (caller && caller->vt == (VT_BYREF | VT_VARIANT)) caller = caller->pvarVal;
        if (!caller) continue;
        if (!(caller->vt & VT_BYREF)) {
            VariantCopy(caller, standIn.value.ptr());
            continue;
        }
        // A variant that refers on to a typed variable of the caller's.
        const auto converted = standIn.value.To(static_cast<VARTYPE>(caller->vt & ~VT_BYREF));
        if (!converted) continue;
        const VARIANT& value = converted->get();
        switch (caller->vt & ~VT_BYREF) {
            case VT_I2:
                *caller->piVal = value.iVal;
                break;
            case VT_I4:
                *caller->plVal = value.lVal;
                break;
            case VT_BOOL:
                *caller->pboolVal = value.boolVal;
                break;
            case VT_R4:
                *caller->pfltVal = value.fltVal;
                break;
            case VT_R8:
                *caller->pdblVal = value.dblVal;
                break;
            case VT_BSTR:
                SysReAllocStringLen(caller->pbstrVal, value.bstrVal, SysStringLen(value.bstrVal));
                break;
            default:
                break;
        }
    }
}

}  // namespace

HRESULT InvokeThroughTypeLibrary(const MemberTable& members, void* self, DISPID member, WORD flags,
                                 DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argumentInError) noexcept {
    return Guard([&]() -> HRESULT {
        if (!arguments) return E_POINTER;
        SetErrorInfo(0, nullptr);
        std::vector<VARIANT> adapted(arguments->rgvarg, arguments->rgvarg + arguments->cArgs);
        std::vector<StandIn> standIns;
        if (const auto* types = ParametersOf(members, member, flags); types && !types->empty()) {
            if (const auto wrong = Adapt(adapted, *arguments, *types, standIns)) {
                if (argumentInError) *argumentInError = *wrong;
                return DISP_E_TYPEMISMATCH;
            }
        }
        DISPPARAMS call = *arguments;
        call.rgvarg = adapted.data();
        const HRESULT outcome = members.info->Invoke(self, member, flags, &call, result, exception, argumentInError);
        WriteBack(standIns);
        return outcome;
    });
}

}  // namespace qvx
