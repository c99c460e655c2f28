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
    Variant value;     // of the parameter's type
    Variant before;    // the same, as the method got it
    VARIANT caller{};  // what was passed: a reference to the variable to write back into, or a mere value
    UINT index = 0;    // of the argument in the call

    // A number that the method has left as it was. Written back, it would still change the kind of a variable that
    // holds it as a text, for instance. One that held nothing at all becomes a number.
    bool LeftAlone() const {
        const bool number = value.Type() != VT_BSTR && value.Type() != VT_DISPATCH && value.Type() != VT_UNKNOWN &&
                            value.Type() != VT_VARIANT;
        const VARIANT* held = caller.vt == (VT_BYREF | VT_VARIANT) ? caller.pvarVal : &caller;
        return number && held->vt != VT_EMPTY && before.Type() == value.Type() &&
               before.get().llVal == value.get().llVal;
    }
};

struct Parameters {
    const std::vector<VARTYPE>* types = nullptr;  // null for a member that has none
    size_t required = 0;
};

Parameters ParametersOf(const MemberTable& members, DISPID member, WORD flags) {
    for (const INVOKEKIND kind : {INVOKE_FUNC, INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF}) {
        if (!(flags & kind)) continue;
        const auto found = members.parameters.find({member, kind});
        if (found != members.parameters.end()) return {&found->second, members.required.at({member, kind})};
    }
    return {};
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

bool IsPlainReference(VARTYPE type) { return (type & VT_BYREF) && IsPlain(static_cast<VARTYPE>(type & ~VT_BYREF)); }

// A variable for the method to write into where the caller gave none; optional ones are all 0 by default.
Variant ZeroOf(VARTYPE type) {
    Variant zero;
    zero.ptr()->vt = type;
    return zero;
}

// How many arguments are to be added at the end so that the method gets a variable for each optional reference. The
// system cannot make one up.
UINT MissingReferences(const DISPPARAMS& call, const Parameters& parameters) {
    size_t wanted = call.cArgs;
    if (call.cNamedArgs > 0 || wanted < parameters.required) return 0;
    for (size_t p = wanted; p < parameters.types->size(); ++p)
        if (IsPlainReference((*parameters.types)[p])) wanted = p + 1;
    return static_cast<UINT>(wanted - call.cArgs);
}

// Rewrites the arguments for the method's parameters. Returns the index of an argument that cannot be read as its
// parameter's type.
std::optional<UINT> Adapt(std::vector<VARIANT>& arguments, const DISPPARAMS& call, const Parameters& parameters,
                          std::vector<StandIn>& standIns) {
    const std::vector<VARTYPE>& types = *parameters.types;
    for (UINT i = 0; i < call.cArgs; ++i) {
        const size_t parameter = ParameterIndex(call, i, types.size());
        if (parameter >= types.size()) continue;
        const VARTYPE type = types[parameter];
        const auto target = static_cast<VARTYPE>(type & ~VT_BYREF);
        if (IsMissing(arguments[i])) {
            if (parameter >= parameters.required && IsPlainReference(type))
                standIns.push_back({ZeroOf(target), {}, VARIANT{}, i});
            continue;
        }
        VARIANT& argument = arguments[i];
        if (target == VT_VARIANT) {
            // A mere value for a variant that may be written: the method gets a copy, so that the caller's stays whole.
            if ((type & VT_BYREF) && !(argument.vt & VT_BYREF))
                standIns.push_back({Variant(argument), {}, argument, i});
            continue;
        }
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
        Variant before(*converted);
        standIns.push_back({std::move(*converted), std::move(before), argument, i});
    }
    // Only now, when the list no longer grows.
    for (StandIn& standIn : standIns) {
        VARIANT& argument = arguments[standIn.index];
        const size_t parameter = ParameterIndex(call, standIn.index, types.size());
        if (types[parameter] == (VT_BYREF | VT_VARIANT)) {
            argument.vt = VT_BYREF | VT_VARIANT;
            argument.pvarVal = standIn.value.ptr();
        } else {
            PointInto(argument, standIn.value, standIn.value.Type());
        }
    }
    return std::nullopt;
}

}  // namespace

HRESULT InvokeThroughTypeLibrary(const MemberTable& members, void* self, DISPID member, WORD flags,
                                 DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argumentInError) noexcept {
    return Guard([&]() -> HRESULT {
        if (!arguments) return E_POINTER;
        SetErrorInfo(0, nullptr);
        const Parameters parameters = ParametersOf(members, member, flags);
        const UINT added = parameters.types ? MissingReferences(*arguments, parameters) : 0;
        // Arguments stand right to left.
        std::vector<VARIANT> adapted(added, Variant::Missing().get());
        adapted.insert(adapted.end(), arguments->rgvarg, arguments->rgvarg + arguments->cArgs);
        DISPPARAMS call = *arguments;
        call.rgvarg = adapted.data();
        call.cArgs += added;
        std::vector<StandIn> standIns;
        if (parameters.types && !parameters.types->empty()) {
            if (const auto wrong = Adapt(adapted, call, parameters, standIns)) {
                if (argumentInError) *argumentInError = *wrong - added;
                return DISP_E_TYPEMISMATCH;
            }
        }
        const HRESULT outcome = members.info->Invoke(self, member, flags, &call, result, exception, argumentInError);
        if (FAILED(outcome) && argumentInError && *argumentInError >= added) *argumentInError -= added;
        for (const StandIn& standIn : standIns) {
            if (!standIn.LeftAlone()) StoreThrough(standIn.caller, standIn.value);
        }
        return outcome;
    });
}

}  // namespace qvx
