#include "designer/properties/object_properties_win32.h"

#include <olectl.h>

#include <algorithm>
#include <set>

#include "com/bstr.h"
#include "com/font_object.h"
#include "com/guard.h"
#include "com/late_bound.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"

namespace qvx::host::designer {

namespace {

// A longer list is broken.
constexpr ULONG mostStrings = 4096;

[[noreturn]] void Mismatch() { throw RunTimeError(errors::typeMismatch, u"Type mismatch"); }

// One late-bound call. An exception that the object must not let out counts as a failure like any other.
Variant InvokeMember(IDispatch* object, DISPID id, WORD flags, Variant* argument) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{argument ? argument->ptr() : nullptr, argument ? &put : nullptr, argument ? 1U : 0U,
                          argument ? 1U : 0U};
    VARIANT given;
    VariantInit(&given);
    EXCEPINFO exception{};
    HRESULT code = E_UNEXPECTED;
    try {
        code = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, argument ? nullptr : &given,
                              &exception, nullptr);
    } catch (...) {
        code = E_UNEXPECTED;
    }
    if (FAILED(code)) {
        VariantClear(&given);
        if (code == DISP_E_EXCEPTION && exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
        const RunTimeError error = ForeignError(code, &exception);
        for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile})
            SysFreeString(text);
        throw error;
    }
    // Some objects give a reference to their own variable.
    if (!(given.vt & VT_BYREF)) {
        Variant plain;
        *plain.ptr() = given;
        return plain;
    }
    return Variant(given);
}

// A whole number of any type; colours are numbers without a sign.
PropertyValue WholeNumber(const Variant& value) {
    const auto real = value.ToDouble();
    constexpr double lowest = -2147483648.0;
    constexpr double beyond = 4294967296.0;
    if (!real || *real < lowest || *real >= beyond) return {};
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(*real)));
}

PropertyValue PlainValue(const Variant& value) {
    switch (value.Type()) {
        case VT_EMPTY:
        case VT_NULL:
            return Text();
        case VT_BOOL:
            return value.get().boolVal != VARIANT_FALSE;
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_INT:
        case VT_UI1:
        case VT_UI2:
            if (const auto number = value.ToLong()) return static_cast<std::int32_t>(*number);
            return {};
        case VT_UI4:
        case VT_UINT:
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DECIMAL:
        case VT_I8:
        case VT_UI8:
            if (const auto number = value.ToDouble()) return *number;
            return {};
        default:
            if (auto text = value.ToText()) return std::move(*text);
            return {};
    }
}

Variant ToUserText(const Variant& date) {
    Variant text;
    VariantChangeTypeEx(text.put(), const_cast<VARIANT*>(date.ptr()), LOCALE_USER_DEFAULT, 0, VT_BSTR);
    return text;
}

// The value in the property's kind; nothing when the object gave a value of another kind.
PropertyValue ValueOfKind(PropertyKind kind, const Variant& value) {
    switch (kind) {
        case PropertyKind::boolean:
            if (const auto flag = value.ToBool()) return *flag;
            return {};
        case PropertyKind::integer:
        case PropertyKind::enumeration:
        case PropertyKind::color:
            return WholeNumber(value);
        case PropertyKind::real:
            if (const auto number = value.ToDouble()) return *number;
            return {};
        case PropertyKind::date:
            if (auto text = ToUserText(value).ToText()) return std::move(*text);
            return {};
        case PropertyKind::font:
            if (const auto font = value.ToObject<IFont>()) return ReadFontObject(font.get());
            return {};
        case PropertyKind::text:
            if (auto text = value.ToText()) return std::move(*text);
            return {};
        case PropertyKind::variant:
            return PlainValue(value);
        case PropertyKind::picture:
        case PropertyKind::pages:
            break;
    }
    return {};
}

Text PictureWords(const Variant& value) {
    const auto picture = value.ToObject<IPicture>();
    SHORT type = PICTYPE_NONE;
    if (!picture || FAILED(picture->get_Type(&type))) return u"(None)";
    switch (type) {
        case PICTYPE_BITMAP:
            return u"(Bitmap)";
        case PICTYPE_ICON:
            return u"(Icon)";
        case PICTYPE_METAFILE:
        case PICTYPE_ENHMETAFILE:
            return u"(Metafile)";
        default:
            return u"(None)";
    }
}

bool IsObject(PropertyKind kind) { return kind == PropertyKind::font || kind == PropertyKind::picture; }

struct ToVariantOf {
    VARTYPE type;
    Variant operator()(std::monostate) const { return {}; }
    Variant operator()(bool value) const { return Variant(value); }
    Variant operator()(std::int32_t value) const {
        Variant number(static_cast<long>(value));
        // A colour of the system is a large number, which only the declared type can hold.
        if (type == VT_UI4 || type == VT_UINT) number.ptr()->vt = type;
        return number;
    }
    Variant operator()(double value) const { return Variant(value); }
    Variant operator()(const Text& value) const {
        if (type != VT_DATE) return Variant(value);
        Variant text(value);
        Variant date;
        if (FAILED(VariantChangeTypeEx(date.put(), text.ptr(), LOCALE_USER_DEFAULT, 0, VT_DATE))) Mismatch();
        return date;
    }
    Variant operator()(const FontSpec& value) const {
        return Variant(static_cast<IDispatch*>(MakeFontObject(value).get()));
    }
};

// The strings and their cookies as the object lends them.
class PredefinedStrings {
  public:
    PredefinedStrings(IPerPropertyBrowsing* browsing, DISPID id) {
        if (FAILED(browsing->GetPredefinedStrings(id, &names_, &cookies_))) names_ = {}, cookies_ = {};
    }
    ~PredefinedStrings() {
        for (ULONG i = 0; names_.pElems && i < names_.cElems; ++i) CoTaskMemFree(names_.pElems[i]);
        CoTaskMemFree(names_.pElems);
        CoTaskMemFree(cookies_.pElems);
    }
    PredefinedStrings(const PredefinedStrings&) = delete;
    PredefinedStrings& operator=(const PredefinedStrings&) = delete;
    ULONG Count() const {
        if (!names_.pElems || !cookies_.pElems) return 0;
        return std::min({names_.cElems, cookies_.cElems, mostStrings});
    }
    Text Name(ULONG index) const { return Text(FromWide(names_.pElems[index])); }
    DWORD Cookie(ULONG index) const { return cookies_.pElems[index]; }

  private:
    CALPOLESTR names_{};
    CADWORD cookies_{};
};

}  // namespace

ObjectProperties::ObjectProperties(const ComPtr<IDispatch>& extended, const ComPtr<IDispatch>& own,
                                   const ComPtr<IUnknown>& control, TypeMemberReader& reader) {
    Add(extended, false, reader);
    // The form refuses other controls what it adds to some kinds of controls only.
    std::erase_if(members_, [this](const Member& member) { return Denied(member); });
    if (!(own == extended)) Add(own, true, reader);
    browsing_ = control ? control.As<IPerPropertyBrowsing>() : own ? own.As<IPerPropertyBrowsing>() : nullptr;
    AskForMore();
    if (const auto pages = Query<ISpecifyPropertyPages>(control.get())) {
        CAUUID ids{};
        hasPages_ = SUCCEEDED(pages->GetPages(&ids)) && ids.cElems > 0;
        CoTaskMemFree(ids.pElems);
    }
}

std::vector<const PropertyInfo*> ObjectProperties::Infos() const {
    std::vector<const PropertyInfo*> infos;
    for (const Member& member : members_) infos.push_back(&member.type->info);
    return infos;
}

void ObjectProperties::Add(const ComPtr<IDispatch>& object, bool own, TypeMemberReader& reader) {
    std::set<Text> names;
    for (const Member& member : members_) names.insert(FoldedText(member.type->info.name));
    for (auto& type : reader.Read(object.get()))
        if (names.insert(FoldedText(type->info.name)).second) members_.push_back({object, std::move(type), own});
}

void ObjectProperties::AskForMore() {
    if (!browsing_) return;
    for (Member& member : members_) {
        if (!member.own) continue;
        const PropertyInfo& info = member.type->info;
        CLSID id{};
        const bool page = SUCCEEDED(browsing_->MapPropertyToPage(member.type->id, &id)) && id != CLSID{};
        std::vector<PropertyChoice> choices =
            IsObject(info.kind) ? std::vector<PropertyChoice>() : AskForChoices(member);
        if (!page && choices.empty()) continue;
        auto own = std::make_shared<TypeMember>(*member.type);
        own->info.page = page;
        if (!choices.empty()) own->info.choices = std::move(choices);
        member.type = std::move(own);
    }
}

std::vector<PropertyChoice> ObjectProperties::AskForChoices(const Member& member) const {
    const PredefinedStrings strings(browsing_.get(), member.type->id);
    std::vector<PropertyChoice> choices;
    for (ULONG i = 0; i < strings.Count(); ++i) {
        VARIANT given;
        VariantInit(&given);
        if (FAILED(browsing_->GetPredefinedValue(member.type->id, strings.Cookie(i), &given))) continue;
        Variant value;
        *value.ptr() = given;
        try {
            choices.push_back({strings.Name(i), ValueOfKind(member.type->info.kind, Variant(value.get()))});
        } catch (const ComError&) {
            // A value that cannot be copied is no choice.
        }
    }
    return choices;
}

Variant ObjectProperties::Get(const Member& member) {
    return InvokeMember(member.object.get(), member.type->id, DISPATCH_PROPERTYGET, nullptr);
}

bool ObjectProperties::Denied(const Member& member) {
    try {
        Get(member);
        return false;
    } catch (const RunTimeError& error) {
        constexpr int noSuchMember = 438;
        return error.Number() == noSuchMember;
    } catch (const ComError&) {
        return false;
    }
}

PropertyReading ObjectProperties::Read(std::size_t place) const {
    // The object may drop its last reference while it is asked.
    const Member member = members_[place];
    const PropertyInfo& info = member.type->info;
    PropertyReading unreadable;
    unreadable.readable = false;
    try {
        const Variant value = Get(member);
        PropertyReading reading;
        if (info.kind == PropertyKind::picture) {
            reading.text = PictureWords(value);
            return reading;
        }
        if (info.optional && value.Empty()) return reading;
        reading.value = ValueOfKind(info.kind, value);
        const bool empty = std::holds_alternative<std::monostate>(reading.value);
        if (empty && !IsObject(info.kind)) return unreadable;
        reading.text = ShowValue(info, reading.value);
        Bstr words;
        const bool hasWords = member.own && browsing_ && !IsObject(info.kind) && info.kind != PropertyKind::color &&
                              browsing_->GetDisplayString(member.type->id, words.put()) == S_OK;
        if (hasWords && !words.View().empty()) reading.text = ShownText(words.View());
        return reading;
    } catch (const RunTimeError&) {
        return unreadable;
    } catch (const ComError&) {
        return unreadable;
    }
}

void ObjectProperties::Put(const Member& member, Variant value) {
    if (member.type->info.readOnly) throw RunTimeError(errors::setNotPermitted, u"Set not permitted");
    const WORD flags = member.type->byReference ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT;
    InvokeMember(member.object.get(), member.type->id, flags, &value);
}

void ObjectProperties::Write(std::size_t place, const PropertyValue& value) const {
    const Member member = members_[place];
    Put(member, std::visit(ToVariantOf{member.type->type}, value));
}

void ObjectProperties::WritePicture(std::size_t place, IPictureDisp* picture) const {
    const Member member = members_[place];
    if (member.type->info.kind != PropertyKind::picture) Mismatch();
    Put(member, Variant(static_cast<IDispatch*>(picture)));
}

}  // namespace qvx::host::designer
