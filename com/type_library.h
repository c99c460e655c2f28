// The type library inside this module, and what late-bound calls need to know of each interface.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx {

// Loaded from the module's own resource, so that it is there without registration. Throws ComError.
ComPtr<ITypeLib> LoadOwnTypeLibrary();
// The description of an interface or class. Throws ComError.
ComPtr<ITypeInfo> TypeInfoOf(REFGUID id);

// One interface's members as late-bound calls see them, or the events of a source interface.
struct MemberTable {
    struct Member {
        INVOKEKIND kind = INVOKE_FUNC;
        // Of the parameters from left to right, without the one that takes the result; VT_BYREF set for pointers.
        std::vector<VARTYPE> parameters;
        std::size_t required = 0;   // how many of them a call must give; the rest are optional
        VARTYPE result = VT_EMPTY;  // of what the call gives back, if anything
    };
    ComPtr<ITypeInfo> info;
    std::map<std::pair<MEMBERID, INVOKEKIND>, Member> members;
    std::map<Text, MEMBERID, std::less<>> numbers;

    // The number of the member that is spelt exactly so; DISPID_UNKNOWN where there is none.
    MEMBERID NumberOf(TextView name) const;
};

// Made at first use and kept until ReleaseTypeLibrary. Throws ComError.
std::shared_ptr<const MemberTable> MembersOf(REFIID iid);

// Forgets what was loaded; called before the module goes.
void ReleaseTypeLibrary();

}  // namespace qvx
