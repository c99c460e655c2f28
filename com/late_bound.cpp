#include "com/late_bound.h"

#include <objbase.h>
#include <oleauto.h>

#include <algorithm>

#include "com/bstr.h"
#include "com/wide_text.h"

namespace qvx {
namespace {

constexpr int noSuchMember = 438;
constexpr int noObject = 91;
constexpr int noSuchClass = 429;

bool IsNumbered(HRESULT code) { return HRESULT_FACILITY(code) == FACILITY_CONTROL; }

int NumberOf(HRESULT code) {
    switch (code) {
        case DISP_E_MEMBERNOTFOUND:
        case DISP_E_UNKNOWNNAME:
            return noSuchMember;
        case DISP_E_TYPEMISMATCH:
            return errors::typeMismatch;
        case DISP_E_OVERFLOW:
            return errors::overflow;
        case E_OUTOFMEMORY:
            return errors::outOfMemory;
        default:
            return IsNumbered(code) ? HRESULT_CODE(code) : static_cast<int>(code);
    }
}

Text SystemWords(HRESULT code) {
    if (NumberOf(code) == noSuchMember) return u"Object doesn't support this property or method";
    wchar_t words[512];
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(code), 0,
                       words, static_cast<DWORD>(std::size(words)), nullptr);
    Text text(FromWide({words, length}));
    while (!text.empty() && (text.back() == u'\r' || text.back() == u'\n' || text.back() == u' ')) text.pop_back();
    return text.empty() ? Text(u"Automation error") : text;
}

RunTimeError WithWords(HRESULT code, Text words) {
    return {NumberOf(code), words.empty() ? SystemWords(code) : std::move(words)};
}

std::optional<DISPID> IdOf(IDispatch* object, const wchar_t* name, HRESULT& result) {
    DISPID id = DISPID_UNKNOWN;
    auto* spelled = const_cast<wchar_t*>(name);  // the call only reads it
    result = object->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id);
    return SUCCEEDED(result) ? std::optional(id) : std::nullopt;
}

}  // namespace

RunTimeError ForeignError(HRESULT code, const EXCEPINFO* exception) {
    if (code != DISP_E_EXCEPTION || !exception) return WithWords(code, {});
    Text words(FromBstr(exception->bstrDescription));
    if (exception->wCode != 0) return {exception->wCode, words.empty() ? Text(u"Automation error") : std::move(words)};
    return WithWords(exception->scode, std::move(words));
}

RunTimeError ForeignError(HRESULT code, IUnknown* object, REFIID interfaceId) {
    const auto support = Query<ISupportErrorInfo>(object);
    ComPtr<IErrorInfo> info;
    Bstr words;
    if (support && support->InterfaceSupportsErrorInfo(interfaceId) == S_OK && GetErrorInfo(0, info.put()) == S_OK)
        info->GetDescription(words.put());
    return WithWords(code, Text(words.View()));
}

ComPtr<IDispatch> CreateNamedObject(const wchar_t* className) {
    CLSID id{};
    ComPtr<IDispatch> object;
    if (FAILED(CLSIDFromProgID(className, &id)) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void())) || !object) {
        throw RunTimeError(noSuchClass, u"ActiveX component can't create object");
    }
    return object;
}

LateMember::LateMember(IDispatch* object, const wchar_t* name) {
    if (!object) throw RunTimeError(noObject, u"Object variable or With block variable not set");
    HRESULT result = S_OK;
    const auto id = IdOf(object, name, result);
    if (!id) throw ForeignError(result);
    id_ = *id;
}

std::optional<LateMember> LateMember::Find(IDispatch* object, const wchar_t* name) {
    HRESULT result = S_OK;
    const auto id = IdOf(object, name, result);
    return id ? std::optional(LateMember(*id)) : std::nullopt;
}

Variant LateMember::Get(IDispatch* object, std::initializer_list<Variant> arguments) const {
    // Plain copies of the values, which stay the caller's.
    std::vector<VARIANT> reversed;
    reversed.reserve(arguments.size());
    for (const Variant& argument : arguments) reversed.push_back(argument.get());
    std::reverse(reversed.begin(), reversed.end());
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return Invoke(object, DISPATCH_METHOD | DISPATCH_PROPERTYGET, parameters);
}

void LateMember::Put(IDispatch* object, const Variant& value) const {
    VARIANT plain = value.get();
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&plain, &named, 1, 1};
    Invoke(object, DISPATCH_PROPERTYPUT, parameters);
}

Variant LateMember::Invoke(IDispatch* object, WORD flags, DISPPARAMS& parameters) const {
    Variant result;
    EXCEPINFO exception{};
    const HRESULT code =
        object->Invoke(id_, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result.put(), &exception, nullptr);
    if (SUCCEEDED(code)) return result;
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    const RunTimeError error = ForeignError(code, &exception);
    for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile})
        SysFreeString(text);
    throw error;
}

const LateMember& RepeatedMember::Of(const ComPtr<IDispatch>& object) {
    if (!member_ || !(object == object_)) {
        member_.reset();
        member_.emplace(object.get(), name_);
        object_ = object;
    }
    return *member_;
}

Variant RepeatedMember::Get(const ComPtr<IDispatch>& object, std::initializer_list<Variant> arguments) {
    return Of(object).Get(object.get(), arguments);
}

void RepeatedMember::Put(const ComPtr<IDispatch>& object, const Variant& value) { Of(object).Put(object.get(), value); }

}  // namespace qvx
