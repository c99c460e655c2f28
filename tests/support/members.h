// The members of a control's interface, as its type library has them.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "com/bstr.h"
#include "com/pointer.h"

namespace qvx::test {

struct Member {
    std::wstring name;
    DISPID id;
    INVOKEKIND kind;
    int parameters;     // with the result
    std::size_t place;  // in the vtable
};

inline std::vector<Member> MembersOfInterface(IDispatch* object) {
    std::vector<Member> members;
    ComPtr<ITypeInfo> late;
    ComPtr<ITypeInfo> early;
    HREFTYPE reference = 0;
    // The vtable's side of the dual interface.
    if (FAILED(object->GetTypeInfo(0, LOCALE_NEUTRAL, late.put())) ||
        FAILED(late->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference)) ||
        FAILED(late->GetRefTypeInfo(reference, early.put())))
        return members;
    FUNCDESC* function = nullptr;
    for (UINT i = 0; SUCCEEDED(early->GetFuncDesc(i, &function)); ++i) {
        Bstr name;
        early->GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr);
        members.push_back({std::wstring(Wide(name.View())), function->memid, function->invkind, function->cParams,
                           static_cast<std::size_t>(function->oVft) / sizeof(void*)});
        early->ReleaseFuncDesc(function);
    }
    return members;
}

}  // namespace qvx::test
