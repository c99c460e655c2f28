#include "kit/host_services.h"

#include <olectl.h>

#include <vector>

#include "com/font_object.h"
#include "com/guard.h"
#include "com/late_bound.h"
#include "com/module.h"
#include "common/text_compare.h"
#include "win/window_text.h"

namespace qvx {

namespace {

std::optional<Variant> Get(IDispatch* object, DISPID member) {
    if (!object) return std::nullopt;
    Variant result;
    DISPPARAMS none{};
    const HRESULT got = object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, result.put(),
                                       nullptr, nullptr);
    if (FAILED(got) || result.Empty()) return std::nullopt;
    return result;
}

std::optional<DISPID> MemberId(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    auto* spelled = const_cast<wchar_t*>(name);  // the call only reads it
    if (!object || FAILED(object->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id))) return std::nullopt;
    return id;
}

ComPtr<IDispatch> ObjectMember(IDispatch* object, const wchar_t* name) {
    const auto value = ReadMember(object, name);
    return value ? value->ToObject<IDispatch>() : nullptr;
}

std::optional<Text> TextMember(IDispatch* object, const wchar_t* name) {
    const auto value = ReadMember(object, name);
    return value ? value->ToText() : std::nullopt;
}

Text ProductName(const Text& path) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(Wide(path), &ignored);
    if (size == 0) return {};
    std::vector<BYTE> block(size);
    if (!GetFileVersionInfoW(Wide(path), 0, size, block.data())) return {};
    struct Translation {
        WORD language;
        WORD codePage;
    };
    Translation* translations = nullptr;
    UINT bytes = 0;
    if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&translations), &bytes)) {
        return {};
    }
    for (UINT i = 0; i < bytes / sizeof(Translation); ++i) {
        wchar_t query[64];
        wsprintfW(query, L"\\StringFileInfo\\%04x%04x\\ProductName", translations[i].language,
                  translations[i].codePage);
        wchar_t* name = nullptr;
        UINT length = 0;
        if (VerQueryValueW(block.data(), query, reinterpret_cast<void**>(&name), &length) && name && *name) {
            return Text(FromWide(name));
        }
    }
    return {};
}

// A host may give any number as a window, so only windows of this process are accepted.
bool IsOurs(HWND window) {
    DWORD process = 0;
    return IsWindow(window) && GetWindowThreadProcessId(window, &process) && process == GetCurrentProcessId();
}

HWND WindowOf(IDispatch* object) {
    const auto value = ReadMember(object, L"hWnd");
    const auto number = value ? value->ToLong() : std::nullopt;
    const auto window = reinterpret_cast<HWND>(static_cast<LONG_PTR>(number.value_or(0)));
    return IsOurs(window) ? window : nullptr;
}

bool FocusIsInside(HWND window) {
    const HWND focus = GetFocus();
    return window && focus && (focus == window || IsChild(window, focus));
}

}  // namespace

std::optional<Variant> ReadMember(IDispatch* object, const wchar_t* name) {
    const auto id = MemberId(object, name);
    return id ? Get(object, *id) : std::nullopt;
}

bool WriteMember(IDispatch* object, const wchar_t* name, const Variant& value) {
    const auto id = MemberId(object, name);
    if (!id) return false;
    Variant copy(value);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS arguments{copy.ptr(), &put, 1, 1};
    return SUCCEEDED(object->Invoke(*id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments, nullptr,
                                    nullptr, nullptr));
}

Text ApplicationTitle() {
    const Text path = ModulePath(nullptr);
    if (Text product = ProductName(path); !product.empty()) return product;
    Text name = path.substr(path.find_last_of(u"\\/") + 1);
    if (const auto dot = name.rfind(u'.'); dot != Text::npos && dot > 0) name.resize(dot);
    return name;
}

void HostServices::SetSite(IOleClientSite* site) {
    site_ = ComPtr<IOleClientSite>(site);
    controlSite_ = site_.As<IOleControlSite>();
    ambients_ = site_.As<IDispatch>();
}

std::optional<Variant> HostServices::Ambient(DISPID property) const {
    const ComPtr<IDispatch> ambients = ambients_;
    return Get(ambients.get(), property);
}

Text HostServices::DisplayName() const {
    if (const auto name = Ambient(DISPID_AMBIENT_DISPLAYNAME)) {
        if (auto text = name->ToText(); text && !text->empty()) return *text;
    }
    return TextMember(Extended().get(), L"Name").value_or(Text());
}

bool HostServices::UserMode() const {
    const auto mode = Ambient(DISPID_AMBIENT_USERMODE);
    return mode ? mode->ToBool().value_or(true) : true;
}

FontSpec HostServices::Font() const {
    const auto font = Ambient(DISPID_AMBIENT_FONT);
    if (!font) return {};
    return ReadFontObject(font->ToObject<IUnknown>().get());
}

OleColor HostServices::BackColor() const {
    const auto color = Ambient(DISPID_AMBIENT_BACKCOLOR);
    const auto number = color ? color->ToLong() : std::nullopt;
    return number ? static_cast<OleColor>(*number) : colors::windowBackground;
}

OleColor HostServices::ForeColor() const {
    const auto color = Ambient(DISPID_AMBIENT_FORECOLOR);
    const auto number = color ? color->ToLong() : std::nullopt;
    return number ? static_cast<OleColor>(*number) : colors::windowText;
}

bool HostServices::UiDead() const {
    const auto dead = Ambient(DISPID_AMBIENT_UIDEAD);
    return dead && dead->ToBool().value_or(false);
}

ComPtr<IDispatch> HostServices::Extended() const {
    ComPtr<IDispatch> extended;
    if (const auto site = ControlSite()) site->GetExtendedControl(extended.put());
    return extended;
}

Text HostServices::Tag() const { return TextMember(Extended().get(), L"Tag").value_or(Text()); }

bool HostServices::SetTag(const Text& tag) const { return WriteMember(Extended().get(), L"Tag", Variant(tag)); }

int HostServices::TabIndex() const {
    const auto index = ReadMember(Extended().get(), L"TabIndex");
    return static_cast<int>(index ? index->ToLong().value_or(-1) : -1);
}

ComPtr<IDispatch> HostServices::Form() const {
    if (auto form = ObjectMember(Extended().get(), L"Parent")) return form;
    // A host without extended controls may still have an object for the whole document.
    ComPtr<IOleContainer> container;
    if (const auto site = Site()) site->GetContainer(container.put());
    return container.As<IDispatch>();
}

Text HostServices::FormCaption(HWND window) const {
    if (auto caption = TextMember(Form().get(), L"Caption")) return *caption;
    if (window) {
        if (Text title = WindowText(GetAncestor(window, GA_ROOT)); !title.empty()) return title;
    }
    return ApplicationTitle();
}

HWND HostServices::ContainerWindow(HWND window) const {
    const ComPtr<IDispatch> extended = Extended();
    const auto container = ObjectMember(extended.get(), L"Container");
    if (const HWND found = WindowOf(container.get())) return found;
    if (!container) {
        if (const HWND found = WindowOf(Form().get())) return found;
    }
    HWND place = nullptr;
    if (const auto site = Site().As<IOleInPlaceSite>()) site->GetWindow(&place);
    if (IsOurs(place)) return place;
    if (const HWND found = WindowOf(Form().get())) return found;
    const HWND parent = window ? GetAncestor(window, GA_PARENT) : nullptr;
    return parent != GetDesktopWindow() && IsOurs(parent) ? parent : nullptr;
}

HWND HostServices::FormWindow(HWND window) const {
    if (const HWND found = WindowOf(Form().get())) return found;
    const HWND container = ContainerWindow(window);
    return container ? GetAncestor(container, GA_ROOT) : nullptr;
}

ComPtr<IDispatch> HostServices::Controls() const { return ObjectMember(Form().get(), L"Controls"); }

ComPtr<IDispatch> HostServices::ActiveControl() const { return ObjectMember(Form().get(), L"ActiveControl"); }

Text HostServices::ActiveControlName(HWND window) const {
    if (auto name = TextMember(ActiveControl().get(), L"Name")) return *name;
    return FocusIsInside(window) ? DisplayName() : Text();
}

bool HostServices::IsActiveControl(HWND window) const {
    const ComPtr<IDispatch> active = ActiveControl();
    const auto name = TextMember(active.get(), L"Name");
    if (!name) return FocusIsInside(window);
    if (!EqualNoCase(*name, DisplayName())) return false;
    // The elements of an array have one name; a control outside one has no index.
    const auto index = TextMember(active.get(), L"Index");
    return !index || index == TextMember(Extended().get(), L"Index");
}

ComPtr<IDispatch> HostServices::ControlNamed(const Text& name) const {
    try {
        const ComPtr<IDispatch> controls = Controls();
        return LateMember(controls.get(), L"Item").Get(controls.get(), {Variant(name)}).ToObject<IDispatch>();
    } catch (const RunTimeError&) {
        return nullptr;
    }
}

}  // namespace qvx
