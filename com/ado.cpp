#include "com/ado.h"

#include <oleauto.h>

#include <optional>

#include "com/bstr.h"
#include "com/variant.h"
#include "common/number_text.h"

namespace qvx {

namespace {

// Identifiers of the data objects' family differ in their beginning only.
constexpr IID FamilyId(unsigned long first) {
    return {first, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
}

// Both ages of an interface have the same beginning.
template <typename Interface>
constexpr IID identifiers[2] = {};
template <>
constexpr IID identifiers<AdoRecordset>[2] = {FamilyId(0x150E), FamilyId(0x050E)};
template <>
constexpr IID identifiers<AdoConnection>[2] = {FamilyId(0x1515), FamilyId(0x0515)};

[[noreturn]] void RefuseValue() {
    throw RunTimeError(errors::typeMismatch,
                       u"Type mismatch: a field holds binary data or an object, which has no text.");
}

}  // namespace

template <typename Interface>
AdoInterface<Interface>::AdoInterface(IUnknown* object) {
    for (const IID& iid : identifiers<Interface>) {
        ComPtr<Interface> found;
        if (!object || FAILED(object->QueryInterface(iid, reinterpret_cast<void**>(found.put()))) || !found) continue;
        object_ = std::move(found);
        iid_ = iid;
        return;
    }
}

template class AdoInterface<AdoRecordset>;
template class AdoInterface<AdoConnection>;

void AppendFieldText(const VARIANT& value, Text& text) {
    switch (value.vt) {
        case VT_EMPTY:
        case VT_NULL:
            return;
        case VT_BSTR:
            text.append(FromBstr(value.bstrVal));
            return;
        case VT_I4:
        case VT_INT:
            text.append(IntegerToText(value.lVal));
            return;
        case VT_R8:
            text.append(DoubleToText(value.dblVal));
            return;
        case VT_DATE: {
            Bstr date;
            if (FAILED(VarBstrFromDate(value.date, LOCALE_USER_DEFAULT, 0, date.put()))) RefuseValue();
            text.append(date.View());
            return;
        }
        default:
            break;
    }
    const bool plain = !(value.vt & (VT_ARRAY | VT_BYREF)) && value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN &&
                       value.vt != VT_ERROR;
    const auto read = plain ? Variant(value).ToText() : std::nullopt;
    if (!read) RefuseValue();
    text.append(*read);
}

}  // namespace qvx
