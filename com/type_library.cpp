#include "com/type_library.h"

#include <oleauto.h>

#include <cstring>
#include <memory>
#include <mutex>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/lock.h"
#include "com/module.h"
#include "com/wide_text.h"

namespace qvx {

namespace {

struct GuidOrder {
    bool operator()(const GUID& a, const GUID& b) const { return std::memcmp(&a, &b, sizeof a) < 0; }
};

struct Cache {
    Lock access;
    ComPtr<ITypeLib> library;
    std::map<GUID, std::shared_ptr<const MemberTable>, GuidOrder> tables;
};

VARTYPE ParameterType(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
        case VT_PTR: {
            // A pointer to an object's interface is an object by value, and a pointer to that pointer is one by
            // reference.
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
        auto release = [&](FUNCDESC* described) { info->ReleaseFuncDesc(described); };
        const std::unique_ptr<FUNCDESC, decltype(release)> owner(function, release);
        MemberTable::Member member;
        member.kind = function->invkind;
        const TYPEDESC& result = function->elemdescFunc.tdesc;
        if (result.vt != VT_VOID && result.vt != VT_HRESULT) member.result = ParameterType(*info.get(), result);
        for (SHORT p = 0; p < function->cParams; ++p) {
            const ELEMDESC& parameter = function->lprgelemdescParam[p];
            if (!(parameter.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FLCID))) {
                member.parameters.push_back(ParameterType(*info.get(), parameter.tdesc));
                if (!(parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT)) member.required = member.parameters.size();
            }
        }
        table->members.emplace(std::pair(function->memid, function->invkind), std::move(member));
        Bstr name;
        UINT names = 0;
        Check(info->GetNames(function->memid, name.put(), 1, &names));
        table->numbers.emplace(FromBstr(name.get()), function->memid);
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

MEMBERID MemberTable::NumberOf(TextView name) const {
    const auto found = numbers.find(name);
    return found == numbers.end() ? DISPID_UNKNOWN : found->second;
}

ComPtr<ITypeLib> LoadOwnTypeLibrary() {
    auto& cache = OfModule<Cache>();
    const std::scoped_lock lock(cache.access);
    return Library(cache);
}

ComPtr<ITypeInfo> TypeInfoOf(REFGUID id) {
    ComPtr<ITypeInfo> info;
    Check(LoadOwnTypeLibrary()->GetTypeInfoOfGuid(id, info.put()));
    return info;
}

std::shared_ptr<const MemberTable> MembersOf(REFIID iid) {
    auto& cache = OfModule<Cache>();
    const std::scoped_lock lock(cache.access);
    auto& table = cache.tables[iid];
    if (!table) {
        ComPtr<ITypeInfo> info;
        Check(Library(cache)->GetTypeInfoOfGuid(iid, info.put()));
        table = Describe(info);
    }
    return table;
}

void ReleaseTypeLibrary() {
    auto& cache = OfModule<Cache>();
    const std::scoped_lock lock(cache.access);
    cache.tables.clear();
    cache.library.reset();
}

}  // namespace qvx
