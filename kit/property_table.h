// The persisted properties of a control, in one table: every form of saving and loading runs from it, in its order.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <span>
#include <vector>

#include "common/ole_color.h"
#include "common/property_value.h"
#include "common/text.h"

namespace qvx {

class ControlBase;
class Variant;

// One row. `get` and `set` go straight at the control's state: `set` applies what was read and notifies nobody.
struct PropertyRow {
    const char16_t* key;
    DISPID member;
    // What a store without the key gives; a value equal to it is not written.
    std::function<PropertyValue(ControlBase&)> fallback;
    std::function<PropertyValue(ControlBase&)> get;
    std::function<void(ControlBase&, const PropertyValue&)> set;
};

using PropertyTable = std::vector<PropertyRow>;

// Makes a row of typed functions of the control class C. Each kind of row takes the default (a value, or a function of
// the control for defaults that come from the host), how to read the value off a `C&` and how to apply it.
template <typename C>
class PropertyRows {
  public:
    template <typename Get, typename Set>
    PropertyRows& Bool(const char16_t* key, DISPID member, bool fallback, Get get, Set set) {
        return Add<bool>(
            key, member, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& Long(const char16_t* key, DISPID member, std::int32_t fallback, Get get, Set set) {
        return Add<std::int32_t>(
            key, member, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& Color(const char16_t* key, DISPID member, OleColor fallback, Get get, Set set) {
        return Add<std::int32_t>(
            key, member, [=](C&) { return static_cast<std::int32_t>(fallback); },
            [=](C& control) { return static_cast<std::int32_t>(get(control)); },
            [=](C& control, std::int32_t value) { set(control, static_cast<OleColor>(value)); });
    }
    template <typename Get, typename Set>
    PropertyRows& Double(const char16_t* key, DISPID member, double fallback, Get get, Set set) {
        return Add<double>(
            key, member, [=](C&) { return fallback; }, get, set);
    }
    template <typename Get, typename Set>
    PropertyRows& String(const char16_t* key, DISPID member, const char16_t* fallback, Get get, Set set) {
        return Add<Text>(
            key, member, [=](C&) { return Text(fallback); }, get, set);
    }
    template <typename Fallback, typename Get, typename Set>
    requires std::is_invocable_r_v<Text, Fallback, C&> PropertyRows& String(const char16_t* key, DISPID member,
                                                                            Fallback fallback, Get get, Set set) {
        return Add<Text>(key, member, fallback, get, set);
    }
    template <typename Fallback, typename Get, typename Set>
    PropertyRows& Font(const char16_t* key, DISPID member, Fallback fallback, Get get, Set set) {
        return Add<FontSpec>(key, member, fallback, get, set);
    }
    PropertyTable Done() { return std::move(rows_); }

  private:
    template <typename T, typename Fallback, typename Get, typename Set>
    PropertyRows& Add(const char16_t* key, DISPID member, Fallback fallback, Get get, Set set) {
        rows_.push_back(
            {key, member, [=](ControlBase& base) { return PropertyValue(T(fallback(static_cast<C&>(base)))); },
             [=](ControlBase& base) { return PropertyValue(T(get(static_cast<C&>(base)))); },
             [=](ControlBase& base, const PropertyValue& value) { set(static_cast<C&>(base), std::get<T>(value)); }});
        return *this;
    }
    PropertyTable rows_;
};

// Where values come from: nothing (monostate) for a key that is not there or cannot be read as the kind of `like`.
using PropertySource = std::function<PropertyValue(const PropertyRow& row, const PropertyValue& like)>;

// What a store gave, read as the kind of `like`. Monostate for nothing (Empty), and when it cannot be read so.
PropertyValue FromVariant(const Variant& value, const PropertyValue& like);
// As stores keep it; a font as an object of its own. Empty for no value.
Variant ToVariant(const PropertyValue& value);

// Reads a value kept as another kind as the kind of `like`: numbers as texts and so on. Monostate when it cannot.
PropertyValue ConvertTo(const PropertyValue& like, PropertyValue value);

}  // namespace qvx
