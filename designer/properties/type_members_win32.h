// The properties of an automation object, from its type information or, for the host's own objects, from their lists.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>
#include <utility>
#include <vector>

#include "designer/properties/property_row.h"
#include "host/named_object.h"

namespace qvx::host::designer {

struct TypeMember {
    PropertyInfo info;
    DISPID id = DISPID_UNKNOWN;
    VARTYPE type = VT_EMPTY;   // of a value that is written; enumerations and aliases are resolved
    bool byReference = false;  // objects are set (putref) rather than put
};

using TypeMembers = std::vector<std::shared_ptr<const TypeMember>>;

// Reads the members of many objects. Those of one type are read once and shared.
class TypeMemberReader {
  public:
    // The properties without arguments that can be read and are meant for a user. Hidden, restricted and non-browsable
    // ones are left out, and so are types that the list cannot show (arrays, objects other than fonts and pictures).
    // None for an object without type information, or one that fails to give it.
    TypeMembers Read(IDispatch* object);

  private:
    using Listing = std::vector<NamedObject::ListedProperty>;

    TypeMembers ReadListed(const NamedObject& object);
    TypeMembers ReadDescribed(ITypeInfo* info);

    std::vector<std::pair<Listing, TypeMembers>> listed_;
    std::vector<std::pair<GUID, TypeMembers>> described_;  // by the type's own identifier
};

}  // namespace qvx::host::designer
