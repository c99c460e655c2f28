#include "com/ado.h"

#include <oleauto.h>

#include "com/value_text.h"

namespace qvx {

namespace {

// The identifiers of the data objects' interfaces differ only in their first part.
constexpr IID FamilyId(unsigned long first) {
    return {first, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
}

// Both versions of an interface begin with the same methods.
template <typename Interface>
constexpr IID identifiers[2] = {};
template <>
constexpr IID identifiers<AdoRecordset>[2] = {FamilyId(0x150E), FamilyId(0x050E)};
template <>
constexpr IID identifiers<AdoConnection>[2] = {FamilyId(0x1550), FamilyId(0x0550)};

[[noreturn]] void RefuseValue() {
    throw RunTimeError(errors::typeMismatch, u"Type mismatch: a field holds binary data, which has no text.");
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
    if (!AppendValueText(value, text)) RefuseValue();
}

}  // namespace qvx
