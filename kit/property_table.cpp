#include "kit/property_table.h"

#include <cmath>

#include "com/font_object.h"
#include "com/variant.h"

namespace qvx {

namespace {

// A colour with the high bit set may be given as a large positive number.
std::int32_t WrapToLong(double number) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(number)));
}

struct VariantOf {
    Variant operator()(std::monostate) const { return {}; }
    Variant operator()(const FontSpec& font) const {
        return Variant(static_cast<IDispatch*>(MakeFontObject(font).get()));
    }
    template <class Plain>
    Variant operator()(const Plain& value) const {
        return Variant(value);
    }
};

}  // namespace

PropertyValue FromVariant(const Variant& value, const PropertyValue& like) {
    if (value.Empty()) return {};
    if (std::holds_alternative<FontSpec>(like)) {
        if (const auto font = value.ToObject<IFont>()) return ReadFontObject(font.get());
    } else if (std::holds_alternative<bool>(like)) {
        if (const auto boolean = value.ToBool()) return *boolean;
    } else if (std::holds_alternative<std::int32_t>(like)) {
        if (const auto number = value.ToLong()) return static_cast<std::int32_t>(*number);
        const auto real = value.ToDouble();
        if (real && *real >= 0x80000000u && *real <= 0xFFFFFFFFu) return WrapToLong(*real);
    } else if (std::holds_alternative<double>(like)) {
        if (const auto real = value.ToDouble(); real && std::isfinite(*real)) return *real;
    } else if (std::holds_alternative<Text>(like)) {
        if (auto text = value.ToText()) return std::move(*text);
    }
    return {};
}

Variant ToVariant(const PropertyValue& value) { return std::visit(VariantOf(), value); }

PropertyValue ConvertTo(const PropertyValue& like, PropertyValue value) {
    if (like.index() == value.index()) return value;
    // A font converts to no other kind, and no other kind to a font.
    if (std::holds_alternative<FontSpec>(value)) return {};
    return FromVariant(ToVariant(value), like);
}

}  // namespace qvx
