#include "com/type_library.h"

#include <oleauto.h>

#include <cstring>
#include <mutex>

#include "com/guard.h"
#include "com/module.h"
#include "com/text.h"

namespace qvx {

namespace {

struct GuidOrder {
    bool operator()(const GUID& a, const GUID& b) const { return std::memcmp(&a, &b, sizeof a) < 0; }
};

struct Cache {
    std::mutex mutex;
    ComPtr<ITypeLib> library;
    std::map<GUID, std::shared_ptr<const MemberTable>, GuidOrder> tables;
};

// Never destroyed: at process end the system's automation library may be gone before us.
Cache& TheCache() {
    static Cache* cache = new Cache;
    return *cache;
}

VARTYPE ParameterType(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_PTR: {
            // A pointer to an object's interface is an object by value, a pointer to that one by reference.
            const VARTYPE target = ParameterType(info, *type.lptdesc);
            if (type.lptdesc->vt == VT_USERDEFINED && (target == VT_DISPATCH || target == VT_UNKNOWN)) return target;
            return static_cast<VARTYPE>(target | VT_BYREF);
        }
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> user;
            if (FAILED(info.GetRefTypeInfo(type.hreftype, user.put()))) return VT_UNKNOWN;
            TYPEATTR* attributes = nullptr;
            if (FAILED(user->GetTypeAttr(&attributes))) return VT_UNKNOWN;
            VARTYPE result = VT_UNKNOWN;
            if (attributes->typekind == TKIND_ENUM) result = VT_I4;
            if (attributes->typekind == TKIND_DISPATCH) result = VT_DISPATCH;
            if (attributes->typekind == TKIND_ALIAS) result = ParameterType(*user.get(), attributes->tdescAlias);
            user->ReleaseTypeAttr(attributes);
            return result;
        }
        case VT_SAFEARRAY:
            return static_cast<VARTYPE>(ParameterType(info, *type.lptdesc) | VT_ARRAY);
        case VT_INT:
            return VT_I4;
        case VT_UINT:
            return VT_UI4;
        default:
            return type.vt;
    }
}

std::shared_ptr<const MemberTable> Describe(const ComPtr<ITypeInfo>& info) {
    auto table = std::make_shared<MemberTable>();
    table->info = info;
    TYPEATTR* attributes = nullptr;
    Check(info->GetTypeAttr(&attributes));
    const UINT count = attributes->cFuncs;
    info->ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        Check(info->GetFuncDesc(i, &function));
        std::vector<VARTYPE> types;
        size_t required = 0;
        for (SHORT p = 0; p < function->cParams; ++p) {
            const ELEMDESC& parameter = function->lprgelemdescParam[p];
            if (!(parameter.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID))) {
                types.push_back(ParameterType(*info.get(), parameter.tdesc));
                if (!(parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT)) required = types.size();
            }
        }
        table->required.emplace(std::pair(function->memid, function->invkind), required);
        table->parameters.emplace(std::pair(function->memid, function->invkind), std::move(types));
        info->ReleaseFuncDesc(function);
    }
    return table;
}

ComPtr<ITypeLib> Library(Cache& cache) {
    if (!cache.library) {
        Check(LoadTypeLibEx(Wide(ModulePath(ThisModule())), REGKIND_NONE, cache.library.put()));
    }
    return cache.library;
}

}  // namespace

ComPtr<ITypeLib> LoadOwnTypeLibrary() {
    Cache& cache = TheCache();
    const std::scoped_lock lock(cache.mutex);
    return Library(cache);
}

ComPtr<ITypeInfo> TypeInfoOf(REFGUID id) {
    ComPtr<ITypeInfo> info;
    Check(LoadOwnTypeLibrary()->GetTypeInfoOfGuid(id, info.put()));
    return info;
}

std::shared_ptr<const MemberTable> MembersOf(REFIID iid) {
    Cache& cache = TheCache();
    const std::scoped_lock lock(cache.mutex);
    auto& table = cache.tables[iid];
    if (!table) {
        ComPtr<ITypeInfo> info;
        Check(Library(cache)->GetTypeInfoOfGuid(iid, info.put()));
        table = Describe(info);
    }
    return table;
}

void ReleaseTypeLibrary() {
    Cache& cache = TheCache();
    const std::scoped_lock lock(cache.mutex);
    cache.tables.clear();
    cache.library.reset();
}

}  // namespace qvx
