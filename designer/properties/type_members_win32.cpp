#include "designer/properties/type_members_win32.h"

#include <ocidl.h>

#include <algorithm>
#include <map>
#include <optional>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/late_bound.h"
#include "com/pointer.h"
#include "com/variant.h"
#include "designer/properties/host_members.h"

namespace qvx::host::designer {

namespace {

// Descriptions refer to others; a deeper chain is broken.
constexpr int deepest = 16;
// More rows or choices are of no use; a description that claims more is broken.
constexpr UINT mostMembers = 10000;
constexpr UINT mostChoices = 2000;

constexpr GUID oleColor = {0x66504301, 0xBE0F, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};
constexpr GUID fontClass = {0x0BE35203, 0x8F91, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}};
constexpr GUID pictureClass = {0x0BE35204, 0x8F91, 0x11CE, {0x9D, 0xE3, 0x00, 0xAA, 0x00, 0x4B, 0xB8, 0x51}};

// A structure that a description lends, which is returned at the end of a scope.
template <class T, void (STDMETHODCALLTYPE ITypeInfo::*giveBack)(T*)>
class Lent {
  public:
    explicit Lent(ITypeInfo* info) : info_(info) {}
    ~Lent() {
        if (data_) (info_->*giveBack)(data_);
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    T** put() { return &data_; }
    T* operator->() const { return data_; }
    explicit operator bool() const { return data_ != nullptr; }

  private:
    ITypeInfo* info_;
    T* data_ = nullptr;
};
using LentAttributes = Lent<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using LentFunction = Lent<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using LentVariable = Lent<VARDESC, &ITypeInfo::ReleaseVarDesc>;

struct ValueType {
    PropertyKind kind = PropertyKind::text;
    VARTYPE type = VT_EMPTY;
    std::vector<PropertyChoice> choices{};
};

std::vector<PropertyChoice> ReadEnumeration(ITypeInfo* info, UINT count) {
    std::vector<PropertyChoice> choices;
    for (UINT i = 0; i < std::min(count, mostChoices); ++i) {
        LentVariable member(info);
        if (FAILED(info->GetVarDesc(i, member.put())) || !member) continue;
        if (member->varkind != VAR_CONST || !member->lpvarValue || (member->wVarFlags & VARFLAG_FHIDDEN)) continue;
        Bstr name;
        UINT names = 0;
        const auto number = Variant(*member->lpvarValue).ToLong();
        if (!number || FAILED(info->GetNames(member->memid, name.put(), 1, &names))) continue;
        choices.push_back({name.ToText(), static_cast<std::int32_t>(*number)});
    }
    return choices;
}

std::optional<ValueType> Resolve(ITypeInfo* info, const TYPEDESC& type, int depth = 0);

std::optional<ValueType> ResolveReference(ITypeInfo* info, HREFTYPE reference, int depth) {
    ComPtr<ITypeInfo> other;
    if (FAILED(info->GetRefTypeInfo(reference, other.put())) || !other) return std::nullopt;
    LentAttributes attributes(other.get());
    if (FAILED(other->GetTypeAttr(attributes.put())) || !attributes) return std::nullopt;
    const GUID& id = attributes->guid;
    switch (attributes->typekind) {
        case TKIND_ENUM:
            return ValueType{PropertyKind::enumeration, VT_I4, ReadEnumeration(other.get(), attributes->cVars)};
        case TKIND_ALIAS: {
            auto resolved = Resolve(other.get(), attributes->tdescAlias, depth + 1);
            Bstr name;
            other->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
            const bool color = id == oleColor || name.View() == u"OLE_COLOR";
            if (resolved && color) resolved->kind = PropertyKind::color;
            return resolved;
        }
        case TKIND_DISPATCH:
        case TKIND_INTERFACE:
        case TKIND_COCLASS:
            if (id == IID_IFontDisp || id == IID_IFont || id == fontClass)
                return ValueType{PropertyKind::font, VT_DISPATCH};
            if (id == IID_IPictureDisp || id == IID_IPicture || id == pictureClass)
                return ValueType{PropertyKind::picture, VT_DISPATCH};
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<ValueType> Resolve(ITypeInfo* info, const TYPEDESC& type, int depth) {
    if (depth > deepest) return std::nullopt;
    switch (type.vt) {
        case VT_PTR:
            return type.lptdesc ? Resolve(info, *type.lptdesc, depth + 1) : std::nullopt;
        case VT_USERDEFINED:
            return ResolveReference(info, type.hreftype, depth);
        case VT_BSTR:
            return ValueType{PropertyKind::text, VT_BSTR};
        case VT_BOOL:
            return ValueType{PropertyKind::boolean, VT_BOOL};
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_I8:
        case VT_INT:
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_UI8:
        case VT_UINT:
            return ValueType{PropertyKind::integer, type.vt};
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DECIMAL:
            return ValueType{PropertyKind::real, type.vt};
        case VT_DATE:
            return ValueType{PropertyKind::date, VT_DATE};
        case VT_VARIANT:
            return ValueType{PropertyKind::variant, VT_VARIANT};
        default:
            return std::nullopt;
    }
}

// The properties of one description, gathered from the calls that read and write them.
class Collector {
  public:
    explicit Collector(ITypeInfo* info) : info_(info) {}

    std::vector<TypeMember> Collect() {
        LentAttributes attributes(info_);
        if (FAILED(info_->GetTypeAttr(attributes.put())) || !attributes) return {};
        for (UINT i = 0; i < std::min<UINT>(attributes->cFuncs, mostMembers); ++i) AddFunction(i);
        for (UINT i = 0; i < std::min<UINT>(attributes->cVars, mostMembers); ++i) AddVariable(i);
        std::vector<TypeMember> readable;
        for (const MEMBERID id : order_) {
            Found& found = found_[id];
            if (!found.get || found.hidden || !Name(found)) continue;
            found.member.info.readOnly = !found.put && !found.putRef;
            found.member.byReference = !found.put && found.putRef;
            readable.push_back(std::move(found.member));
        }
        return readable;
    }

  private:
    struct Found {
        TypeMember member;
        bool get = false;
        bool put = false;
        bool putRef = false;
        bool hidden = false;
    };

    Found& At(MEMBERID id) {
        const auto [place, added] = found_.try_emplace(id);
        if (added) order_.push_back(id), place->second.member.id = id;
        return place->second;
    }

    void AddFunction(UINT index) {
        LentFunction function(info_);
        if (FAILED(info_->GetFuncDesc(index, function.put())) || !function) return;
        constexpr WORD notForUsers = FUNCFLAG_FRESTRICTED | FUNCFLAG_FHIDDEN | FUNCFLAG_FNONBROWSABLE;
        const bool hidden = (function->wFuncFlags & notForUsers) != 0;
        const bool plainGet = function->invkind == INVOKE_PROPERTYGET && function->cParams == 0;
        const bool plainPut =
            (function->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) && function->cParams == 1;
        if (plainGet) {
            const auto type = Resolve(info_, function->elemdescFunc.tdesc);
            if (!type) return;
            Found& found = At(function->memid);
            Take(found, *type);
            found.hidden |= hidden;
        } else if (plainPut) {
            Found& found = At(function->memid);
            (function->invkind == INVOKE_PROPERTYPUT ? found.put : found.putRef) = true;
            found.hidden |= hidden;
        }
    }

    void AddVariable(UINT index) {
        LentVariable variable(info_);
        if (FAILED(info_->GetVarDesc(index, variable.put())) || !variable || variable->varkind != VAR_DISPATCH) return;
        const auto type = Resolve(info_, variable->elemdescVar.tdesc);
        if (!type) return;
        constexpr WORD notForUsers = VARFLAG_FRESTRICTED | VARFLAG_FHIDDEN | VARFLAG_FNONBROWSABLE;
        Found& found = At(variable->memid);
        Take(found, *type);
        found.put = !(variable->wVarFlags & VARFLAG_FREADONLY);
        found.hidden |= (variable->wVarFlags & notForUsers) != 0;
    }

    static void Take(Found& found, const ValueType& type) {
        found.get = true;
        found.member.info.kind = type.kind;
        found.member.info.choices = type.choices;
        found.member.type = type.type;
    }

    // False when the description does not even name it.
    bool Name(Found& found) {
        Bstr name;
        Bstr help;
        if (FAILED(info_->GetDocumentation(found.member.id, name.put(), help.put(), nullptr, nullptr))) return false;
        PropertyInfo& info = found.member.info;
        info.name = name.ToText();
        info.help = help.ToText();
        info.category = CategoryOf(info.name, info.kind);
        return !info.name.empty() && IsForUsers(info.name);
    }

    ITypeInfo* info_;
    std::map<MEMBERID, Found> found_;
    std::vector<MEMBERID> order_;
};

// The interface that late-bound calls go to, from the description of the object's class.
ComPtr<ITypeInfo> DefaultInterface(IDispatch* object) {
    const auto provider = Query<IProvideClassInfo>(object);
    ComPtr<ITypeInfo> classInfo;
    if (!provider || FAILED(provider->GetClassInfo(classInfo.put())) || !classInfo) return nullptr;
    LentAttributes attributes(classInfo.get());
    if (FAILED(classInfo->GetTypeAttr(attributes.put())) || !attributes) return nullptr;
    for (UINT i = 0; i < attributes->cImplTypes; ++i) {
        INT flags = 0;
        HREFTYPE reference = 0;
        ComPtr<ITypeInfo> info;
        if (FAILED(classInfo->GetImplTypeFlags(i, &flags))) continue;
        const bool wanted = (flags & IMPLTYPEFLAG_FDEFAULT) && !(flags & IMPLTYPEFLAG_FSOURCE);
        if (wanted && SUCCEEDED(classInfo->GetRefTypeOfImplType(i, &reference)) &&
            SUCCEEDED(classInfo->GetRefTypeInfo(reference, info.put())))
            return info;
    }
    return nullptr;
}

std::vector<TypeMember> DescribeListed(const std::vector<NamedObject::ListedProperty>& listed) {
    const auto has = [&](TextView name) {
        return std::any_of(listed.begin(), listed.end(), [&](const auto& property) { return property.name == name; });
    };
    // A frame is the one with a border and no text to align in it.
    const HostObjectKind kind = has(u"Controls")    ? HostObjectKind::form
                                : has(u"Alignment") ? HostObjectKind::control
                                                    : HostObjectKind::frame;
    std::vector<TypeMember> members;
    for (const auto& property : listed) {
        auto info = DescribeHostMember(property.name, kind);
        if (!info) continue;
        info->readOnly = property.readOnly;
        const bool object_ = info->kind == PropertyKind::font || info->kind == PropertyKind::picture;
        members.push_back({std::move(*info), property.id, static_cast<VARTYPE>(object_ ? VT_DISPATCH : VT_VARIANT)});
    }
    return members;
}

TypeMembers Shared(std::vector<TypeMember> members) {
    TypeMembers shared;
    for (TypeMember& member : members) shared.push_back(std::make_shared<const TypeMember>(std::move(member)));
    return shared;
}

}  // namespace

TypeMembers TypeMemberReader::ReadListed(const NamedObject& object) {
    Listing listing = object.ListProperties();
    for (const auto& [known, members] : listed_) {
        if (known == listing) return members;
    }
    TypeMembers members = Shared(DescribeListed(listing));
    listed_.emplace_back(std::move(listing), members);
    return members;
}

TypeMembers TypeMemberReader::ReadDescribed(ITypeInfo* info) {
    GUID id{};
    if (LentAttributes attributes(info); SUCCEEDED(info->GetTypeAttr(attributes.put())) && attributes) {
        id = attributes->guid;
    }
    for (const auto& [known, members] : described_) {
        if (known == id) return members;
    }
    TypeMembers members = Shared(Collector(info).Collect());
    // A type without an identifier is like no other.
    if (id != GUID{}) described_.emplace_back(id, members);
    return members;
}

TypeMembers TypeMemberReader::Read(IDispatch* object) {
    if (!object) return {};
    try {
        if (const auto own = NamedObject::From(object)) return ReadListed(*own);
        ComPtr<ITypeInfo> info;
        if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) || !info) info = DefaultInterface(object);
        return info ? ReadDescribed(info.get()) : TypeMembers();
    } catch (...) {
        // An object that fails in the middle of its description counts as not described.
        return {};
    }
}

}  // namespace qvx::host::designer
