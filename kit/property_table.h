// The persisted properties of a control, in one table that every form of saving and loading follows, in its order.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <span>
#include <type_traits>
#include <vector>

#include "common/checked_enum.h"
#include "common/ole_color.h"
#include "common/property_value.h"
#include "common/text.h"

namespace qvx {

class ControlBase;
class Variant;

// A row of the table. `get` and `set` access the control's state directly: `set` applies what was read and notifies no
// one.
struct PropertyRow {
    // The property's name; "0" is appended if it has an index, and only the value for index 0 is kept.
    const char16_t* key;
    // The value that applies when a store lacks the key; a value equal to it is not written.
    std::function<PropertyValue(ControlBase&)> fallback;
    std::function<PropertyValue(ControlBase&)> get;
    std::function<void(ControlBase&, const PropertyValue&)> set;
};

using PropertyTable = std::vector<PropertyRow>;

// The type in which a value is stored: enumerations, colours and short numbers as 32-bit numbers.
template <class Value>
using StoredAs =
    std::conditional_t<std::is_enum_v<Value> || (std::is_integral_v<Value> && !std::is_same_v<Value, bool>),
                       std::int32_t, Value>;

// Converts a stored value to the type of a parameter or a field. Throws run-time error 380 for a number that the
// enumeration does not have.
template <class Value>
Value FromStore(const StoredAs<Value>& stored) {
    if constexpr (std::is_enum_v<Value>) {
        return CheckedEnum<Value>(stored);
    } else {
        return static_cast<Value>(stored);
    }
}

// Makes rows for the control class C. Field and Member take what com/members.h takes for a property's getter and
// setter, and read the default from a newly made part unless it is given. Each other kind of row takes the default (a
// value, or a function of the control for defaults that come from the host), how to read the value from a `C&` and how
// to apply it.
template <typename C>
class PropertyRows {
    // The class of the part that has a member of the class Part, which may be a base of it.
    template <class Part, class Control = C>
    using Whole = std::remove_reference_t<decltype(std::declval<Control&>().PartOf(std::type_identity<Part>()))>;

  public:
    template <class Part, class Value>
    PropertyRows& Field(const char16_t* key, Value Part::*field) {
        using Stored = StoredAs<Value>;
        return Add<Stored>(
            key, [fallback = static_cast<Stored>(Whole<Part>{}.*field)](C&) { return fallback; },
            [=](C& control) { return static_cast<Stored>(PartOf<Part>(control).*field); },
            [=](C& control, const Stored& value) { PartOf<Part>(control).*field = FromStore<Value>(value); });
    }
    template <class Part, class Value, class Parameter>
    PropertyRows& Member(const char16_t* key, Value (Part::*getter)() const, void (Part::*setter)(Parameter)) {
        return Member(key, (Whole<Part>{}.*getter)(), getter, setter);
    }
    template <class Part, class Value, class Parameter>
    PropertyRows& Member(const char16_t* key, std::type_identity_t<std::remove_cvref_t<Value>> fallback,
                         Value (Part::*getter)() const, void (Part::*setter)(Parameter)) {
        using Given = std::remove_cvref_t<Parameter>;
        using Stored = StoredAs<std::remove_cvref_t<Value>>;
        return Add<Stored>(
            key, [fallback = static_cast<Stored>(fallback)](C&) { return fallback; },
            [=](C& control) { return static_cast<Stored>((PartOf<Part>(control).*getter)()); },
            [=](C& control, const Stored& value) { (PartOf<Part>(control).*setter)(FromStore<Given>(value)); });
    }
    template <typename Get, typename Set>
    PropertyRows& Bool(const char16_t* key, bool fallback, Get get, Set set) {
        return Add<bool>(
            key, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& Long(const char16_t* key, std::int32_t fallback, Get get, Set set) {
        return Add<std::int32_t>(
            key, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& Color(const char16_t* key, OleColor fallback, Get get, Set set) {
        return Add<std::int32_t>(
            key, [=](C&) { return static_cast<std::int32_t>(fallback); },
            [=](C& control) { return static_cast<std::int32_t>(get(control)); },
            [=](C& control, std::int32_t value) { set(control, static_cast<OleColor>(value)); });
    }
    template <typename Get, typename Set>
    PropertyRows& Double(const char16_t* key, double fallback, Get get, Set set) {
        return Add<double>(
            key, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& String(const char16_t* key, const char16_t* fallback, Get get, Set set) {
        return Add<Text>(
            key, [=](C&) { return Text(fallback); }, get, set);
    }
    template <typename Fallback, typename Get, typename Set>
    requires std::is_invocable_r_v<Text, Fallback, C&> PropertyRows& String(const char16_t* key, Fallback fallback,
                                                                            Get get, Set set) {
        return Add<Text>(key, fallback, get, set);
    }
    template <typename Fallback, typename Get, typename Set>
    PropertyRows& Font(const char16_t* key, Fallback fallback, Get get, Set set) {
        return Add<FontSpec>(key, fallback, get, set);
    }
    PropertyTable Done() { return std::move(rows_); }

  private:
    template <class Part>
    static auto& PartOf(C& control) {
        return control.PartOf(std::type_identity<Part>());
    }
    template <typename T, typename Fallback, typename Get, typename Set>
    PropertyRows& Add(const char16_t* key, Fallback fallback, Get get, Set set) {
        rows_.push_back(
            {key, [=](ControlBase& base) { return PropertyValue(T(fallback(static_cast<C&>(base)))); },
             [=](ControlBase& base) { return PropertyValue(T(get(static_cast<C&>(base)))); },
             [=](ControlBase& base, const PropertyValue& value) { set(static_cast<C&>(base), std::get<T>(value)); }});
        return *this;
    }
    PropertyTable rows_;
};

// Returns the stored value of a row; nothing (monostate) for a key that is missing or cannot be read as the kind of
// `like`.
using PropertySource = std::function<PropertyValue(const PropertyRow& row, const PropertyValue& like)>;

// Converts what a store returned to the kind of `like`. Monostate for nothing (Empty), and when it cannot be converted.
PropertyValue FromVariant(const Variant& value, const PropertyValue& like);
// Converts a value to the form that stores keep; a font becomes an object of its own. Empty for no value.
Variant ToVariant(const PropertyValue& value);

// Converts a value that was stored as another kind to the kind of `like`, for example a number from a text. Monostate
// when this is impossible.
PropertyValue ConvertTo(const PropertyValue& like, PropertyValue value);

}  // namespace qvx
