#include "com/variant.h"

#include <new>
#include <utility>

#include "com/guard.h"

namespace qvx {

namespace {
// The cross-compiler's headers declare sources as not constant; the calls only read them.
VARIANT* Source(const VARIANT& value) { return const_cast<VARIANT*>(&value); }
}  // namespace

Variant::Variant(const VARIANT& value) : Variant() { Check(VariantCopyInd(&value_, Source(value))); }

Variant Variant::Missing() {
    Variant missing;
    missing.value_.vt = VT_ERROR;
    missing.value_.scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

std::optional<Variant> Variant::To(VARTYPE type) const {
    Variant converted;
    const HRESULT result = VariantChangeTypeEx(converted.put(), Source(value_), LOCALE_INVARIANT, 0, type);
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) return std::nullopt;
    return converted;
}

std::optional<long> Variant::ToLong() const {
    const auto converted = To(VT_I4);
    return converted ? std::optional(static_cast<long>(converted->get().lVal)) : std::nullopt;
}

std::optional<bool> Variant::ToBool() const {
    const auto converted = To(VT_BOOL);
    return converted ? std::optional(converted->get().boolVal != VARIANT_FALSE) : std::nullopt;
}

std::optional<double> Variant::ToDouble() const {
    const auto converted = To(VT_R8);
    return converted ? std::optional(converted->get().dblVal) : std::nullopt;
}

std::optional<Text> Variant::ToText() const {
    if (value_.vt == VT_BSTR) return Text(FromBstr(value_.bstrVal));
    if (value_.vt == VT_EMPTY || value_.vt == VT_NULL || IsMissing(value_)) return Text();
    // In the invariant locale, the system writes a Boolean as a number; hosts expect words.
    if (value_.vt == VT_BOOL) return Text(value_.boolVal ? u"True" : u"False");
    const auto converted = To(VT_BSTR);
    return converted ? std::optional(Text(FromBstr(converted->get().bstrVal))) : std::nullopt;
}

bool IsMissing(const VARIANT& value) {
    const VARIANT* plain = &value;
    while (plain->vt == (VT_BYREF | VT_VARIANT)) plain = plain->pvarVal;
    return plain->vt == VT_ERROR && plain->scode == DISP_E_PARAMNOTFOUND;
}

bool StoreThrough(const VARIANT& reference, const Variant& value) {
    if (!(reference.vt & VT_BYREF) || !reference.byref) return false;
    const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
    if (type == VT_VARIANT) {
        VARIANT& variable = *reference.pvarVal;
        if (variable.vt & VT_BYREF) return StoreThrough(variable, value);
        return SUCCEEDED(VariantCopy(&variable, Source(value.get())));
    }
    auto converted = value.Type() == type ? std::optional(value) : value.To(type);
    if (!converted) return false;
    const VARIANT& from = converted->get();
    switch (type) {
        case VT_I1:
        case VT_UI1:
            *reference.pbVal = from.bVal;
            return true;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            *reference.piVal = from.iVal;
            return true;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_ERROR:
            *reference.plVal = from.lVal;
            return true;
        case VT_R4:
            *reference.pfltVal = from.fltVal;
            return true;
        case VT_R8:
        case VT_DATE:
            *reference.pdblVal = from.dblVal;
            return true;
        case VT_I8:
        case VT_UI8:
            *reference.pllVal = from.llVal;
            return true;
        case VT_CY:
            *reference.pcyVal = from.cyVal;
            return true;
        // These types own memory: the variable takes it over, and its former value is freed.
        case VT_BSTR:
            SysFreeString(std::exchange(*reference.pbstrVal, converted->detach().bstrVal));
            return true;
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if (IUnknown* former = std::exchange(*reference.ppunkVal, converted->detach().punkVal)) former->Release();
            return true;
        default:
            return false;
    }
}

}  // namespace qvx
