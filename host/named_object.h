// The base of what scripts see of the host: an object whose members are listed by name, late bound only.
//
//     class Clock final : public NamedObject {
//       public:
//         Clock() {
//             AddReadOnly(u"Hour", [this](const Call&) { return Variant(hour_); });
//             AddMethod(u"Advance", [this](const Call& call) { hour_ += call.Long(0); return Variant(); });
//         }
//     };
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "com/untyped_dispatch.h"
#include "com/variant.h"
#include "common/text.h"

namespace qvx::host {

// One call of a member, in the order of declaration and with by-reference levels taken off. The readers throw
// RunTimeError 449 for an argument that is missing and 13 for one of the wrong type.
struct Call {
    bool put = false;  // the property is being set, to the last argument
    std::vector<Variant> arguments;
    std::vector<VARIANT*> passed;  // the same as the caller passed them

    // Into the caller's variable, where one was passed by reference.
    void Assign(std::size_t index, const Variant& value) const;

    const Variant& At(std::size_t index) const;
    bool Has(std::size_t index) const;
    long Long(std::size_t index) const;
    Text String(std::size_t index) const;
    // The new value of a property that is set.
    const Variant& Value() const;
    long LongValue() const;
    bool BoolValue() const;
    Text StringValue() const;
};

class NamedObject : public ComObject<UntypedDispatch> {
  public:
    // The object of this program that a pointer leads to; null for any other object.
    static ComPtr<NamedObject> From(IUnknown* object);

    // One of the object's own properties, for lists of them.
    struct ListedProperty {
        Text name;
        DISPID id = DISPID_UNKNOWN;
        bool readOnly = false;
        friend bool operator==(const ListedProperty&, const ListedProperty&) = default;
    };
    // In the order in which they were added; methods are left out.
    std::vector<ListedProperty> ListProperties() const;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  protected:
    // The object's own members are numbered from `firstMember` on; lower and higher numbers are free for others.
    explicit NamedObject(DISPID firstMember = 1) : firstMember_(firstMember) {}

    using Body = std::function<Variant(const Call&)>;
    enum class Kind { property, readOnly, method };

    void AddProperty(const char16_t* name, Body body) { Add(Kind::property, name, std::move(body)); }
    void AddReadOnly(const char16_t* name, Body body) { Add(Kind::readOnly, name, std::move(body)); }
    void AddMethod(const char16_t* name, Body body) { Add(Kind::method, name, std::move(body)); }
    // Makes a member that has been added the default one.
    void SetDefaultMember(const char16_t* name);
    // For Each goes over what `elements` gives at its start.
    void AddEnumerator(std::function<std::vector<ComPtr<IDispatch>>()> elements) { elements_ = std::move(elements); }

    // For names and identifiers that are not the object's own. By default there are none.
    virtual HRESULT FindOther(LPOLESTR name, DISPID* id);
    virtual HRESULT InvokeOther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                EXCEPINFO* exception, UINT* argumentInError);

    // What errors name as their source.
    virtual const wchar_t* ErrorSource() const { return L"qvxhost"; }

    ~NamedObject() override = default;

  private:
    struct Member {
        Kind kind;
        const char16_t* name;
        Body body;
    };

    void Add(Kind kind, const char16_t* name, Body body);
    std::optional<std::size_t> FindMember(TextView name) const;
    HRESULT Run(const Member& member, WORD flags, const DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                UINT* argumentInError);

    DISPID firstMember_;
    std::vector<Member> members_;
    std::optional<std::size_t> defaultMember_;
    std::function<std::vector<ComPtr<IDispatch>>()> elements_;
};

// Throws the run-time error that scripts know for a call that cannot be made.
[[noreturn]] void ThrowArgumentMissing();
[[noreturn]] void ThrowTypeMismatch();
[[noreturn]] void ThrowObjectNotSet();

}  // namespace qvx::host
