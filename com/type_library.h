// The type library inside this module, and the information about each interface that late-bound calls need.
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

// Loads the library from the module's own resource, so that no registration is needed. Throws ComError.
ComPtr<ITypeLib> LoadOwnTypeLibrary();
// Returns the type information of an interface or class. Throws ComError.
ComPtr<ITypeInfo> TypeInfoOf(REFGUID id);

// One interface's members as late-bound calls see them, or the events of a source interface.
struct MemberTable {
    struct Member {
        INVOKEKIND kind = INVOKE_FUNC;
        // Types of the parameters from left to right, without the one that returns the result; VT_BYREF is set for
        // pointers.
        std::vector<VARTYPE> parameters;
        std::size_t required = 0;   // how many of them a call must pass; the others are optional
        VARTYPE result = VT_EMPTY;  // of the returned value, if any
    };
    ComPtr<ITypeInfo> info;
    std::map<std::pair<MEMBERID, INVOKEKIND>, Member> members;
    std::map<Text, MEMBERID, std::less<>> numbers;

    // The number of the member that is spelt exactly so; DISPID_UNKNOWN where there is none.
    MEMBERID NumberOf(TextView name) const;
};

// Returns the members of an interface. The table is created at first use and kept until ReleaseTypeLibrary. Throws
// ComError.
std::shared_ptr<const MemberTable> MembersOf(REFIID iid);

// Releases what was loaded; called before the module is unloaded.
void ReleaseTypeLibrary();

}  // namespace qvx
