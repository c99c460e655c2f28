#include "com/safearray.h"

#include "com/guard.h"

namespace qvx {

SafeArray SafeArray::OfVariants(const std::vector<Variant>& elements) {
    SafeArray array(SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size())));
    if (!array.get()) throw std::bad_alloc();
    for (LONG i = 0; i < static_cast<LONG>(elements.size()); ++i) {
        // The array copies the element; the system's prototype declares the source as not constant.
        Check(SafeArrayPutElement(array.get(), &i, const_cast<VARIANT*>(elements[static_cast<size_t>(i)].ptr())));
    }
    return array;
}

std::vector<Variant> ReadElements(SAFEARRAY* array) {
    std::vector<Variant> elements;
    if (!array) return elements;
    if (SafeArrayGetDim(array) != 1) throw ComError(DISP_E_BADINDEX);
    VARTYPE type = VT_EMPTY;
    Check(SafeArrayGetVartype(array, &type));
    LONG low = 0;
    LONG high = -1;
    Check(SafeArrayGetLBound(array, 1, &low));
    Check(SafeArrayGetUBound(array, 1, &high));
    for (LONG i = low; i <= high; ++i) {
        Variant element;
        if (type == VT_VARIANT) {
            Check(SafeArrayGetElement(array, &i, element.put()));
            element = Variant(element.get());
        } else {
            // The value part of a variant is at the same address for every type that fits in it.
            switch (type) {
                case VT_I1:
                case VT_UI1:
                case VT_I2:
                case VT_UI2:
                case VT_I4:
                case VT_UI4:
                case VT_INT:
                case VT_UINT:
                case VT_R4:
                case VT_R8:
                case VT_CY:
                case VT_DATE:
                case VT_BOOL:
                case VT_ERROR:
                case VT_BSTR:
                case VT_DISPATCH:
                case VT_UNKNOWN:
                case VT_I8:
                case VT_UI8:
                    break;
                default:
                    throw ComError(DISP_E_TYPEMISMATCH);
            }
            Check(SafeArrayGetElement(array, &i, &element.ptr()->llVal));
            element.ptr()->vt = type;
        }
        elements.push_back(std::move(element));
    }
    return elements;
}

SAFEARRAY* ArrayOf(const VARIANT& value) {
    const VARIANT* plain = &value;
    while (plain->vt == (VT_BYREF | VT_VARIANT)) plain = plain->pvarVal;
    if (!(plain->vt & VT_ARRAY)) return nullptr;
    return plain->vt & VT_BYREF ? *plain->pparray : plain->parray;
}

}  // namespace qvx
