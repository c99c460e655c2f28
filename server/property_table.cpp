#include "server/property_table.h"

#include <cmath>

#include "com/variant.h"

namespace qvx {

namespace {

Variant ToVariant(const PropertyValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return Variant(*boolean);
    if (const auto* number = std::get_if<std::int32_t>(&value)) return Variant(static_cast<long>(*number));
    if (const auto* real = std::get_if<double>(&value)) return Variant(*real);
    if (const auto* text = std::get_if<Text>(&value)) return Variant(*text);
    return Variant();
}

}  // namespace

PropertyValue ConvertTo(const PropertyValue& like, PropertyValue value) {
    if (like.index() == value.index()) return value;
    // A font is no other kind, and no other kind is a font.
    if (std::holds_alternative<FontSpec>(like)) return {};
    const Variant source = ToVariant(value);
    if (source.Empty()) return {};
    if (std::holds_alternative<bool>(like)) {
        if (const auto boolean = source.ToBool()) return *boolean;
    } else if (std::holds_alternative<std::int32_t>(like)) {
        if (const auto number = source.ToLong()) return static_cast<std::int32_t>(*number);
    } else if (std::holds_alternative<double>(like)) {
        if (const auto real = source.ToDouble(); real && std::isfinite(*real)) return *real;
    } else if (std::holds_alternative<Text>(like)) {
        if (auto text = source.ToText()) return std::move(*text);
    }
    return {};
}

}  // namespace qvx
