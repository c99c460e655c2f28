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

// Reads an optional number: nullopt when it was left out. Throws run-time error 13 when it is not a number.
inline std::optional<long> OptionalNumber(const VARIANT& argument) {
    if (IsMissing(argument)) return std::nullopt;
    const auto number = Variant(argument).ToLong();
    if (!number) throw RunTimeError(errors::typeMismatch, u"Type mismatch");
    return *number;
}

}  // namespace qvx
