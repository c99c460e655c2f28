// The properties of an automation object, from its type information or, for the host's own objects, from their lists.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "designer/properties/property_row.h"

namespace qvx::host::designer {

struct TypeMember {
    PropertyInfo info;
    DISPID id = DISPID_UNKNOWN;
    VARTYPE type = VT_EMPTY;   // of a value that is written; enumerations and aliases are resolved
    bool byReference = false;  // objects are set (putref) rather than put
};

// The properties without arguments that can be read and are meant for a user. Hidden, restricted and non-browsable ones
// are left out, and so are types that the list cannot show (arrays, objects other than fonts and pictures). None for an
// object without type information, or one that fails to give it.
std::vector<TypeMember> ReadTypeMembers(IDispatch* object);

// The same from a description alone.
std::vector<TypeMember> ReadTypeMembers(ITypeInfo* info);

}  // namespace qvx::host::designer
