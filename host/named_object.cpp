#include "host/named_object.h"

#include "com/enumerator.h"
#include "com/guard.h"
#include "common/run_time_error.h"
#include "host/form_value.h"

namespace qvx::host {

namespace {

constexpr int argumentNotOptional = 449;
constexpr int objectNotSet = 91;

// Not an interface, but a key that only this program has: asking for it gives the object itself.
constexpr GUID namedObjectId = {0x8A1F32C6, 0x5B0E, 0x4D83, {0x9C, 0x47, 0x2E, 0x61, 0xD0, 0xB7, 0x35, 0xFA}};

struct CopyVariant {
    static void Out(const ComPtr<IDispatch>& object, VARIANT* to) { *to = Variant(object.get()).detach(); }
};

// Rich error information for a late-bound caller, from the exception in flight.
HRESULT FillException(const wchar_t* source, EXCEPINFO* exception) {
    int number = 0;
    Text description;
    try {
        throw;
    } catch (const RunTimeError& error) {
        number = error.Number();
        description = error.Description();
    } catch (...) {
        return FailureInFlight();
    }
    if (!exception) return RunTimeErrorCode(number);
    *exception = {};
    exception->scode = RunTimeErrorCode(number);
    exception->bstrSource = SysAllocString(source);
    exception->bstrDescription = SysAllocStringLen(Wide(description), static_cast<UINT>(description.size()));
    return DISP_E_EXCEPTION;
}

}  // namespace

void ThrowArgumentMissing() { throw RunTimeError(argumentNotOptional, u"Argument not optional"); }
void ThrowTypeMismatch() { throw RunTimeError(errors::typeMismatch, u"Type mismatch"); }
void ThrowObjectNotSet() { throw RunTimeError(objectNotSet, u"Object variable not set"); }

bool Call::Has(std::size_t index) const {
    const std::size_t count = arguments.size() - (put ? 1 : 0);
    return index < count && !IsMissing(arguments[index].get());
}

const Variant& Call::At(std::size_t index) const {
    if (!Has(index)) ThrowArgumentMissing();
    return arguments[index];
}

void Call::Assign(std::size_t index, const Variant& value) const {
    if (Has(index)) StoreThrough(*passed[index], value);
}

const Variant& Call::Value() const { return arguments.back(); }

namespace {

template <typename T>
T OrMismatch(std::optional<T> value) {
    if (!value) ThrowTypeMismatch();
    return std::move(*value);
}

}  // namespace

long Call::Long(std::size_t index) const { return OrMismatch(At(index).ToLong()); }
Text Call::String(std::size_t index) const { return OrMismatch(At(index).ToText()); }
long Call::LongValue() const { return OrMismatch(Value().ToLong()); }
bool Call::BoolValue() const { return OrMismatch(Value().ToBool()); }
Text Call::StringValue() const { return OrMismatch(Value().ToText()); }

void NamedObject::Add(Kind kind, const char16_t* name, Body body) { members_.push_back({kind, name, std::move(body)}); }

ComPtr<NamedObject> NamedObject::From(IUnknown* object) {
    ComPtr<NamedObject> own;
    if (object) object->QueryInterface(namedObjectId, own.put_void());
    return own;
}

std::vector<NamedObject::ListedProperty> NamedObject::ListProperties() const {
    std::vector<ListedProperty> properties;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        const Member& member = members_[i];
        if (member.kind == Kind::method) continue;
        properties.push_back({member.name, firstMember_ + static_cast<DISPID>(i), member.kind == Kind::readOnly});
    }
    return properties;
}

STDMETHODIMP NamedObject::QueryInterface(REFIID iid, void** object) {
    if (!object || iid != namedObjectId) return ComObject::QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
}

void NamedObject::SetDefaultMember(const char16_t* name) { defaultMember_ = FindMember(name); }

std::optional<std::size_t> NamedObject::FindMember(TextView name) const {
    for (std::size_t i = 0; i < members_.size(); ++i) {
        if (SameName(members_[i].name, name)) return i;
    }
    return std::nullopt;
}

HRESULT NamedObject::FindOther(LPOLESTR, DISPID*) { return DISP_E_UNKNOWNNAME; }

HRESULT NamedObject::InvokeOther(DISPID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    return DISP_E_MEMBERNOTFOUND;
}

STDMETHODIMP NamedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    return Guard([&]() -> HRESULT {
        if (!names || !ids || count == 0) return E_INVALIDARG;
        for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;
        ids[0] = DISPID_UNKNOWN;
        if (const auto own = FindMember(FromWide(names[0]))) {
            ids[0] = firstMember_ + static_cast<DISPID>(*own);
        } else {
            const HRESULT found = FindOther(names[0], &ids[0]);
            if (FAILED(found)) return found;
        }
        return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;  // arguments have no names here
    });
}

STDMETHODIMP NamedObject::Invoke(DISPID member, REFIID, LCID locale, WORD flags, DISPPARAMS* parameters,
                                 VARIANT* result, EXCEPINFO* exception, UINT* argumentInError) {
    return Guard([&]() -> HRESULT {
        if (!parameters) return E_POINTER;
        // A handler may remove the control whose object this is.
        const ComPtr<IDispatch> alive(this);
        if (member == DISPID_VALUE && defaultMember_) {
            return Run(members_[*defaultMember_], flags, parameters, result, exception, argumentInError);
        }
        if (member == DISPID_NEWENUM && elements_) {
            if (!result) return E_POINTER;
            using Elements = Enumerator<IEnumVARIANT, VARIANT, ComPtr<IDispatch>, CopyVariant>;
            *result = Variant(static_cast<IUnknown*>(MakeObject<Elements>(elements_()).get())).detach();
            return S_OK;
        }
        const auto index = static_cast<std::size_t>(member - firstMember_);
        if (member < firstMember_ || index >= members_.size()) {
            return InvokeOther(member, locale, flags, parameters, result, exception, argumentInError);
        }
        return Run(members_[index], flags, parameters, result, exception, argumentInError);
    });
}

HRESULT NamedObject::Run(const Member& member, WORD flags, const DISPPARAMS* parameters, VARIANT* result,
                         EXCEPINFO* exception, UINT*) {
    Call call;
    call.put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if (call.put && member.kind != Kind::property) return DISP_E_MEMBERNOTFOUND;
    const UINT named = parameters->cNamedArgs;
    if (named > (call.put ? 1u : 0u) || (call.put && parameters->cArgs == 0)) return DISP_E_NONAMEDARGS;
    try {
        for (UINT i = parameters->cArgs; i > 0; --i) {
            call.passed.push_back(&parameters->rgvarg[i - 1]);
            call.arguments.emplace_back(parameters->rgvarg[i - 1]);
        }
        Variant answer = member.body(call);
        if (result) *result = answer.detach();
        return S_OK;
    } catch (...) {
        return FillException(ErrorSource(), exception);
    }
}

}  // namespace qvx::host
