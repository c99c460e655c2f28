// The type library inside this module, and what late-bound calls need to know of each interface.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "com/pointer.h"

namespace qvx {

// Loaded from the module's own resource, so that it is there without registration. Throws ComError.
ComPtr<ITypeLib> LoadOwnTypeLibrary();
// The description of an interface or class. Throws ComError.
ComPtr<ITypeInfo> TypeInfoOf(REFGUID id);

// One interface's members as late-bound calls see them: for each member and kind of call (INVOKE_FUNC and so on) the
// parameters' types from left to right, VT_BYREF set for pointers.
struct MemberTable {
    ComPtr<ITypeInfo> info;
    std::map<std::pair<MEMBERID, INVOKEKIND>, std::vector<VARTYPE>> parameters;
    // How many of them a call must give; the rest are optional.
    std::map<std::pair<MEMBERID, INVOKEKIND>, size_t> required;
};

// Made at first use and kept until ReleaseTypeLibrary. Throws ComError.
std::shared_ptr<const MemberTable> MembersOf(REFIID iid);

// Forgets what was loaded; called before the module goes.
void ReleaseTypeLibrary();

}  // namespace qvx
