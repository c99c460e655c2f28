// The enumerator that hosts get as _NewEnum, over values or objects.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/enumerator.h"
#include "com/variant.h"

namespace qvx {

struct CopiedVariant {
    static void Out(const Variant& stored, VARIANT* to) { *to = Variant(stored).detach(); }
};

using VariantEnumerator = Enumerator<IEnumVARIANT, VARIANT, Variant, CopiedVariant>;

}  // namespace qvx
