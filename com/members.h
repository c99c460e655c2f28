// Conversion of the arguments of automation methods between the interface's types and a model's.
#pragma once

#include <windows.h>

#include <optional>
#include <type_traits>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/variant.h"
#include "common/checked_enum.h"
#include "common/run_time_error.h"
#include "common/text.h"

namespace qvx {

// Dereferences an out argument. Throws ComError E_POINTER for null.
template <class T>
T* Required(T* pointer) {
    if (!pointer) throw ComError(E_POINTER);
    return pointer;
}

// Converts a model's value to the interface's type.
template <class Result, class Value>
Result ToHost(const Value& value) {
    if constexpr (std::is_same_v<Result, BSTR>) {
        return NewBstr(value);
    } else if constexpr (std::is_same_v<Result, VARIANT>) {
        return Variant(value).detach();
    } else if constexpr (std::is_same_v<Value, bool>) {
        return ToVariantBool(value);
    } else {
        return static_cast<Result>(value);
    }
}

// The body of a getter: returns what `body` returns. The result is E_POINTER for a null `result`; where the body fails,
// the host finds 0, null or Empty there.
template <class Result, class Body>
HRESULT Give(Result* result, Body&& body) noexcept {
    return Guard([&] {
        *Required(result) = Result{};
        *result = ToHost<Result>(body());
    });
}

// Converts a value from a host to the model's type, that of a method's parameter or a field. Throws run-time error 380
// for a number that an enumeration does not have. Texts are borrowed.
template <class Parameter, class Given>
auto FromHost(const Given& given) {
    using Value = std::remove_cvref_t<Parameter>;
    if constexpr (std::is_same_v<Value, TextView> || std::is_same_v<Value, Text>) {
        return FromBstr(given);
    } else if constexpr (std::is_same_v<Value, bool>) {
        return given != VARIANT_FALSE;
    } else if constexpr (std::is_enum_v<Value>) {
        return CheckedEnum<Value>(static_cast<int>(given));
    } else {
        return static_cast<Value>(given);
    }
}

// Members that do no more than hand on to a part of the object. `Self` derives from it and has
//
//     Part& PartOf(std::type_identity<Part>);                          // for each class of part, and for its bases
//     template <class Apply> HRESULT Put(TextView name, Apply apply);  // the whole of a setter, or of a method
//
template <class Self>
class MemberAccess {
  protected:
    template <class Result, class Part, class Value>
    requires std::is_object_v<Value> HRESULT GetMember(Result* result, Value Part::*field) {
        return Give(result, [&]() -> const Value& { return PartOf<Part>().*field; });
    }
    template <class Result, class Part, class Value, class... Parameters, class... Given>
    HRESULT GetMember(Result* result, Value (Part::*getter)(Parameters...) const, Given... given) {
        return Give(result, [&] { return (PartOf<Part>().*getter)(FromHost<Parameters>(given)...); });
    }
    template <class Part, class Value, class Given>
    requires std::is_object_v<Value> HRESULT PutMember(TextView name, Value Part::*field, Given given) {
        return self().Put(name, [&] { PartOf<Part>().*field = FromHost<Value>(given); });
    }
    template <class Part, class... Parameters, class... Given>
    HRESULT PutMember(TextView name, void (Part::*setter)(Parameters...), Given... given) {
        return self().Put(name, [&] { (PartOf<Part>().*setter)(FromHost<Parameters>(given)...); });
    }

  private:
    Self& self() { return static_cast<Self&>(*this); }
    template <class Part>
    auto& PartOf() {
        return self().PartOf(std::type_identity<Part>());
    }
};

// A property of the dual interface in one line: getter and setter of a value that is kept in the field, as in
// QVX_FIELD(BSTR, DateFormat, ControlState::dateFormat), or that a class of part has under the same name, with the
// setter SetName, as in QVX_PROPERTY(OLE_COLOR, BackColor, Grid).
#define QVX_FIELD(Type, Name, Field)                                                           \
    STDMETHODIMP get_##Name(Type* result) override { return this->GetMember(result, &Field); } \
    STDMETHODIMP put_##Name(Type value) override { return this->PutMember(u## #Name, &Field, value); }
#define QVX_PROPERTY(Type, Name, Part)                                                              \
    STDMETHODIMP get_##Name(Type* result) override { return this->GetMember(result, &Part::Name); } \
    STDMETHODIMP put_##Name(Type value) override { return this->PutMember(u## #Name, &Part::Set##Name, value); }
// The same with an index, which names a row or a column.
#define QVX_INDEXED_PROPERTY(Type, Name, Part)                                                                         \
    STDMETHODIMP get_##Name(long index, Type* result) override { return this->GetMember(result, &Part::Name, index); } \
    STDMETHODIMP put_##Name(long index, Type value) override {                                                         \
        return this->PutMember(u## #Name, &Part::Set##Name, index, value);                                             \
    }

// Reads an optional number: nullopt when it was left out. Throws run-time error 13 when it is not a number.
inline std::optional<long> OptionalNumber(const VARIANT& argument) {
    if (IsMissing(argument)) return std::nullopt;
    const auto number = Variant(argument).ToLong();
    if (!number) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
    return *number;
}

}  // namespace qvx
