#include "com/dispatch.h"

#include <oleauto.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "com/value_text.h"
#include "com/variant.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"

namespace qvx {

namespace {

using Member = MemberTable::Member;

const Member* Find(const MemberTable& table, DISPID member, WORD flags) {
    for (const INVOKEKIND kind : {INVOKE_FUNC, INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT, INVOKE_PROPERTYPUTREF}) {
        if (!(flags & kind)) continue;
        const auto found = table.members.find({member, kind});
        if (found != table.members.end()) return &found->second;
    }
    return nullptr;
}

bool IsPut(const Member& member) { return member.kind == INVOKE_PROPERTYPUT || member.kind == INVOKE_PROPERTYPUTREF; }

// Whether every reference in the call refers to a variable.
bool IsWhole(const DISPPARAMS& call) {
    if ((call.cArgs && !call.rgvarg) || (call.cNamedArgs && !call.rgdispidNamedArgs)) return false;
    return std::all_of(call.rgvarg, call.rgvarg + call.cArgs, [](const VARIANT& argument) {
        const VARIANT* at = &argument;
        while (at->vt == (VT_BYREF | VT_VARIANT) && at->pvarVal) at = at->pvarVal;
        return !(at->vt & VT_BYREF) || at->byref;
    });
}

// Makes an argument refer to `target`.
void PointInto(VARIANT& argument, Variant& target) {
    argument.vt = static_cast<VARTYPE>(target.Type() | VT_BYREF);
    // All members of the value have the same address.
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

// Returns a variable for the method to write into where the caller passed none; optional ones are all 0 by default.
Variant ZeroOf(VARTYPE type) {
    Variant zero;
    zero.ptr()->vt = type;
    return zero;
}

// An argument that replaces the caller's during the call, because the parameter is a typed reference and the caller
// passed something else.
struct StandIn {
    Variant value;   // of the parameter's type
    Variant before;  // the same, as the method received it
    // The argument that was passed: a reference to the variable to write back into, or a mere value; null when nothing
    // was passed.
    const VARIANT* caller = nullptr;

    // Whether the method has left a number unchanged. Writing it back would still change the type of a variable that
    // contains it as text, for instance. A variable that was empty becomes a number.
    bool LeftAlone() const {
        const bool number = value.Type() != VT_BSTR && value.Type() != VT_DISPATCH && value.Type() != VT_UNKNOWN &&
                            value.Type() != VT_VARIANT;
        const VARIANT* held = caller->vt == (VT_BYREF | VT_VARIANT) ? caller->pvarVal : caller;
        return number && held->vt != VT_EMPTY && before.Type() == value.Type() &&
               before.get().llVal == value.get().llVal;
    }
    void WriteBack() const {
        if (caller && !LeftAlone()) StoreThrough(*caller, value);
    }
};

// A call as the system receives it: every argument in the position of its parameter, and of a type that the system
// converts.
class AdaptedCall {
  public:
    // The caller's arguments must outlive this; the member is not used after Adapt.
    AdaptedCall(const Member& member, const DISPPARAMS& caller) : member_(member), caller_(caller) {}

    // Returns S_OK, or the error in the arguments; `wrong` then receives the index of the wrong one.
    HRESULT Adapt(UINT* wrong);
    // For the system's call; valid as long as this.
    DISPPARAMS* Arguments() { return &arguments_; }
    // Returns the index of the caller's argument that corresponds to an argument of the adapted call.
    std::optional<UINT> CallersIndex(UINT index) const;
    void WriteBack() const {
        for (const StandIn& standIn : standIns_) standIn.WriteBack();
    }

  private:
    static constexpr UINT notGiven = static_cast<UINT>(-1);
    // More than any member of the library has. Calls go cell by cell, so that they do not allocate memory for this.
    static constexpr std::size_t mostParameters = 16;

    HRESULT Place(UINT* wrong);
    bool Fit(VARIANT& argument, VARTYPE type, const VARIANT& given);
    void Omit(VARIANT& argument, VARTYPE type);
    StandIn& Stand(Variant value, const VARIANT* caller);

    const Member& member_;
    const DISPPARAMS& caller_;
    std::array<UINT, mostParameters> places_;  // by parameter: the index of the caller's argument
    std::array<VARIANT, mostParameters> values_;
    std::vector<StandIn> standIns_;
    DISPID value_ = DISPID_PROPERTYPUT;
    DISPPARAMS arguments_{};
};

// Arguments are ordered from right to left, named ones first. The system does not check that no parameter is named
// twice and that the member has all of the named parameters.
HRESULT AdaptedCall::Place(UINT* wrong) {
    const std::size_t count = member_.parameters.size();
    const auto refuse = [&](HRESULT result, UINT index) {
        if (wrong) *wrong = index;
        return result;
    };
    if (caller_.cNamedArgs > caller_.cArgs || caller_.cArgs > count || caller_.cArgs < member_.required ||
        count > mostParameters) {
        return DISP_E_BADPARAMCOUNT;
    }
    if (IsPut(member_) && (caller_.cNamedArgs == 0 || caller_.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)) {
        return refuse(DISP_E_PARAMNOTFOUND, 0);
    }
    std::fill_n(places_.begin(), count, notGiven);
    for (UINT i = 0; i < caller_.cArgs; ++i) {
        const bool named = i < caller_.cNamedArgs;
        const bool value = named && IsPut(member_) && caller_.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT;
        const std::size_t parameter = value   ? count - 1
                                      : named ? static_cast<std::size_t>(caller_.rgdispidNamedArgs[i])
                                              : caller_.cArgs - 1 - i;
        if (parameter >= count || places_[parameter] != notGiven) return refuse(DISP_E_PARAMNOTFOUND, i);
        places_[parameter] = i;
    }
    const bool complete = std::all_of(places_.begin(), places_.begin() + static_cast<std::ptrdiff_t>(member_.required),
                                      [](UINT place) { return place != notGiven; });
    return complete ? S_OK : DISP_E_PARAMNOTOPTIONAL;
}

// Converts a value passed for a text parameter. The system would use the user's settings, and write a number that could
// not be read again.
std::optional<Text> TextFor(const VARIANT& value) {
    Text text;
    try {
        return AppendValueText(value, text) ? std::optional(std::move(text)) : std::nullopt;
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

StandIn& AdaptedCall::Stand(Variant value, const VARIANT* caller) {
    Variant before(value);
    // References to earlier ones stay valid.
    if (standIns_.empty()) standIns_.reserve(member_.parameters.size());
    standIns_.push_back({std::move(value), std::move(before), caller});
    return standIns_.back();
}

// Fills an optional parameter that gets no argument. The system cannot create a variable for the method to write into;
// optional ones are all 0 by default.
void AdaptedCall::Omit(VARIANT& argument, VARTYPE type) {
    if (!IsPlainReference(type)) {
        argument = Variant::Missing().detach();
        return;
    }
    PointInto(argument, Stand(ZeroOf(static_cast<VARTYPE>(type & ~VT_BYREF)), nullptr).value);
}

// Returns false when the argument cannot be converted to the parameter's type.
bool AdaptedCall::Fit(VARIANT& argument, VARTYPE type, const VARIANT& given) {
    argument = given;
    const auto target = static_cast<VARTYPE>(type & ~VT_BYREF);
    if (target == VT_VARIANT) {
        // For a mere value passed for a by-reference variant, the method gets a copy, so that the caller's value stays
        // unchanged.
        if ((type & VT_BYREF) && !(given.vt & VT_BYREF)) {
            argument.vt = VT_BYREF | VT_VARIANT;
            argument.pvarVal = Stand(Variant(given), &given).value.ptr();
        }
        return true;
    }
    if (!(type & VT_BYREF)) {
        // For a typed parameter, a borrowed reference to the caller's variable is enough; the system converts it.
        const VARIANT* plain = &given;
        while (plain->vt == (VT_BYREF | VT_VARIANT)) plain = plain->pvarVal;
        const bool isText = (plain->vt & ~VT_BYREF) == VT_BSTR;
        const auto text = type == VT_BSTR && !isText ? TextFor(*plain) : std::nullopt;
        argument = text ? Stand(Variant(*text), nullptr).value.get() : *plain;
        return true;
    }
    if (given.vt == type || !IsPlain(target)) return true;
    Variant plain(given);
    auto converted = plain.Type() == target ? std::optional(std::move(plain)) : plain.To(target);
    // An empty variable passed for an object is Nothing.
    if (!converted && plain.Empty() && (target == VT_DISPATCH || target == VT_UNKNOWN)) {
        converted = target == VT_DISPATCH ? Variant(static_cast<IDispatch*>(nullptr))
                                          : Variant(static_cast<IUnknown*>(nullptr));
    }
    if (!converted) return false;
    PointInto(argument, Stand(std::move(*converted), &given).value);
    return true;
}

HRESULT AdaptedCall::Adapt(UINT* wrong) {
    if (const HRESULT placed = Place(wrong); FAILED(placed)) return placed;
    const std::vector<VARTYPE>& types = member_.parameters;
    // The arguments extend to the last one that is passed or that the method must be able to write into; the system
    // fills in the others.
    std::size_t count = types.size();
    while (count > 0 && places_[count - 1] == notGiven && !IsPlainReference(types[count - 1])) --count;
    for (std::size_t p = 0; p < count; ++p) {
        VARIANT& argument = values_[count - 1 - p];
        const VARIANT* given = places_[p] == notGiven ? nullptr : &caller_.rgvarg[places_[p]];
        const bool missing = !given || (IsMissing(*given) && (types[p] & ~VT_BYREF) != VT_VARIANT);
        HRESULT fits = S_OK;
        if (!missing) {
            fits = Fit(argument, types[p], *given) ? S_OK : DISP_E_TYPEMISMATCH;
        } else if (p < member_.required) {
            fits = DISP_E_PARAMNOTOPTIONAL;
        } else {
            Omit(argument, types[p]);
        }
        if (FAILED(fits)) {
            if (wrong) *wrong = places_[p];
            return fits;
        }
    }
    const bool put = IsPut(member_);
    arguments_ = {values_.data(), put ? &value_ : nullptr, static_cast<UINT>(count), put ? 1u : 0u};
    return S_OK;
}

std::optional<UINT> AdaptedCall::CallersIndex(UINT index) const {
    if (index >= arguments_.cArgs) return std::nullopt;
    const UINT place = places_[arguments_.cArgs - 1 - index];
    return place == notGiven ? std::nullopt : std::optional(place);
}

// A call with arguments of a property that returns an object refers to that object's default member: ColIndex("Qty").
bool MeansDefaultMember(const Member& member, const DISPPARAMS& call) {
    return member.kind == INVOKE_PROPERTYGET && member.parameters.empty() && call.cArgs > 0 &&
           (member.result == VT_DISPATCH || member.result == VT_UNKNOWN);
}

}  // namespace

HRESULT NamesThroughTypeLibrary(const MemberTable& table, LPOLESTR* names, UINT count, DISPID* ids) {
    if (!names || !ids) return E_POINTER;
    if (count == 0 || std::find(names, names + count, nullptr) != names + count) return E_INVALIDARG;
    return table.info->GetIDsOfNames(names, count, ids);
}

HRESULT InvokeThroughTypeLibrary(const MemberTable& table, void* self, DISPID id, WORD flags, DISPPARAMS* arguments,
                                 VARIANT* result, EXCEPINFO* exception, UINT* argumentInError) {
    if (!arguments || !IsWhole(*arguments)) return E_POINTER;
    const Member* member = Find(table, id, flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;
    const bool chained = MeansDefaultMember(*member, *arguments);
    const DISPPARAMS none{};
    AdaptedCall call(*member, chained ? none : *arguments);
    if (const HRESULT adapted = call.Adapt(argumentInError); FAILED(adapted)) return adapted;
    Variant answer;
    VARIANT* const wanted = member->result == VT_EMPTY ? nullptr : answer.put();
    // A handler may release the object, and the table with it.
    const auto kind = static_cast<WORD>(member->kind);
    UINT wrong = static_cast<UINT>(-1);
    HRESULT outcome = table.info->Invoke(self, id, kind, call.Arguments(), wanted, exception, &wrong);
    if (SUCCEEDED(outcome) && chained) {
        const auto object = answer.ToObject<IDispatch>();
        if (!object) return DISP_E_BADPARAMCOUNT;
        answer = {};
        outcome = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, arguments,
                                 answer.put(), exception, argumentInError);
    }
    if (FAILED(outcome)) {
        if (const auto index = call.CallersIndex(wrong); index && argumentInError) *argumentInError = *index;
        return outcome;
    }
    call.WriteBack();
    if (result) *result = answer.detach();
    return outcome;
}

}  // namespace qvx
