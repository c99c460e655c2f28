#include "com/value_text.h"

#include <oleauto.h>

#include "com/bstr.h"
#include "com/late_bound.h"
#include "com/variant.h"
#include "common/number_text.h"

namespace qvx {

namespace {

// An object whose value is another object is followed, but not for ever.
bool AppendObjectText(const VARIANT& value, Text& text) {
    constexpr int deepest = 8;
    Variant held(value);
    for (int depth = 0; depth < deepest; ++depth) {
        const auto object = held.ToObject<IDispatch>();
        if (!object) return false;
        held = LateMember::Default().Get(object.get());
        if (held.Type() != VT_DISPATCH && held.Type() != VT_UNKNOWN) return AppendValueText(held.get(), text);
    }
    return false;
}

}  // namespace

bool AppendValueText(const VARIANT& value, Text& text) {
    if (value.vt & VT_ARRAY) return false;
    if (value.vt & VT_BYREF) return AppendValueText(Variant(value).get(), text);
    switch (value.vt) {
        case VT_EMPTY:
        case VT_NULL:
            return true;
        case VT_BSTR:
            text.append(FromBstr(value.bstrVal));
            return true;
        case VT_I4:
        case VT_INT:
            text.append(IntegerToText(value.lVal));
            return true;
        case VT_R8:
            text.append(DoubleToText(value.dblVal));
            return true;
        case VT_DATE: {
            Bstr date;
            if (FAILED(VarBstrFromDate(value.date, LOCALE_USER_DEFAULT, 0, date.put()))) return false;
            text.append(date.View());
            return true;
        }
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return AppendObjectText(value, text);
        case VT_ERROR:
            return false;
        default: {
            const auto read = Variant(value).ToText();
            if (read) text.append(*read);
            return read.has_value();
        }
    }
}

}  // namespace qvx
