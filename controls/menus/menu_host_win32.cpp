#include "controls/menus/menu_host_win32.h"

#include <algorithm>

#include "com/bstr.h"
#include "com/late_bound.h"
#include "kit/host_services.h"

namespace qvx::menus {

namespace {

// No form has more controls; the count of a larger collection is not trusted.
constexpr long mostControls = 0xFFFF;

bool HasMember(IDispatch* object, const wchar_t* name) { return LateMember::Find(object, name).has_value(); }

// Returns the class name in the object's type information, without the "_" of its interface.
Text ClassName(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    const auto provider = Query<IProvideClassInfo>(object);
    if (!provider || FAILED(provider->GetClassInfo(info.put()))) {
        UINT count = 0;
        if (FAILED(object->GetTypeInfoCount(&count)) || count == 0) return {};
        if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.put())) || !info) return {};
    }
    Bstr name;
    if (!info || FAILED(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr))) return {};
    TextView view = name.View();
    if (!view.empty() && view.front() == u'_') view.remove_prefix(1);
    return Text(view);
}

// Returns the members in the order of the collection's own enumerator, as For Each does, or by number where it has
// none.
std::vector<ComPtr<IDispatch>> Members(IDispatch* collection) {
    std::vector<ComPtr<IDispatch>> members;
    if (!collection) return members;
    Variant enumerator;
    DISPPARAMS none{};
    collection->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                       enumerator.put(), nullptr, nullptr);
    if (const auto each = enumerator.ToObject<IEnumVARIANT>()) {
        for (long i = 0; i < mostControls; ++i) {
            Variant member;
            ULONG count = 0;
            if (each->Next(1, member.put(), &count) != S_OK || count != 1) break;
            if (auto object = member.ToObject<IDispatch>()) members.push_back(std::move(object));
        }
        return members;
    }
    const auto counted = ReadMember(collection, L"Count");
    const long count = std::clamp(counted ? counted->ToLong().value_or(0) : 0L, 0L, mostControls);
    const auto item = LateMember::Find(collection, L"Item");
    if (!item) return members;
    // Forms count their controls from 0, most other collections from 1.
    for (long i = 0; i <= count && static_cast<long>(members.size()) < count; ++i) {
        try {
            if (auto object = item->Get(collection, {Variant(i)}).ToObject<IDispatch>()) {
                members.push_back(std::move(object));
            }
        } catch (const RunTimeError&) {
            continue;
        }
    }
    return members;
}

Text TextOf(IDispatch* object, const wchar_t* name) {
    const auto value = ReadMember(object, name);
    return value ? value->ToText().value_or(Text()) : Text();
}

ComPtr<IDispatch> ListImages(IDispatch* imageList) {
    const auto images = ReadMember(imageList, L"ListImages");
    return images ? images->ToObject<IDispatch>() : nullptr;
}

}  // namespace

bool IsMenuControl(IDispatch* control) {
    if (!control) return false;
    if (ClassName(control) == u"Menu") return true;
    return HasMember(control, L"Caption") && HasMember(control, L"Checked") && !HasMember(control, L"Left");
}

std::vector<MenuControl> MenuControls(IDispatch* controls) {
    std::vector<MenuControl> menus;
    for (const auto& control : Members(controls)) {
        if (!IsMenuControl(control.get())) continue;
        // Only elements of an array have an index; other objects report an error.
        std::optional<std::int32_t> index;
        if (const auto number = ReadMember(control.get(), L"Index")) {
            if (const auto value = number->ToLong(); value && *value >= 0) index = *value;
        }
        const auto visible = ReadMember(control.get(), L"Visible");
        menus.push_back({PictureKey(TextOf(control.get(), L"Name"), index),
                         {TextOf(control.get(), L"Caption"), !visible || visible->ToBool().value_or(true)}});
    }
    return menus;
}

std::vector<KeyedPicture> ReadPictures(IDispatch* imageList) {
    std::vector<KeyedPicture> pictures;
    const ComPtr<IDispatch> images = ListImages(imageList);
    const auto counted = ReadMember(images.get(), L"Count");
    const long count = std::clamp(counted ? counted->ToLong().value_or(0) : 0L, 0L, mostControls);
    const auto item = images ? LateMember::Find(images.get(), L"Item") : std::nullopt;
    for (long i = 1; i <= count && item; ++i) {
        try {
            const auto image = item->Get(images.get(), {Variant(i)}).ToObject<IDispatch>();
            const auto picture = ReadMember(image.get(), L"Picture");
            auto object = picture ? picture->ToObject<IPictureDisp>() : nullptr;
            if (object) pictures.push_back({TextOf(image.get(), L"Key"), std::move(object)});
        } catch (const RunTimeError&) {
            continue;
        }
    }
    return pictures;
}

void StorePictures(IDispatch* imageList, const std::vector<KeyedPicture>& pictures) {
    const ComPtr<IDispatch> images = ListImages(imageList);
    LateMember(images.get(), L"Clear").Get(images.get());
    const LateMember add(images.get(), L"Add");
    for (const KeyedPicture& picture : pictures) {
        add.Get(images.get(),
                {Variant::Missing(), Variant(picture.key), Variant(static_cast<IDispatch*>(picture.picture.get()))});
    }
}

}  // namespace qvx::menus
