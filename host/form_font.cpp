#include "host/form_font.h"

namespace qvx::host {

FontSpec DefaultFont() {
    FontSpec font;
    font.face = u"Tahoma";
    return font;
}

bool IsFontBlock(const Block& group) { return group.className.empty() || SameName(group.className, fontClassId); }

FontSpec ReadFont(const Block& block, const FontSpec& base) {
    constexpr int boldest = 1000;
    constexpr double largest = 2048;  // points
    FontSpec font = base;
    font.face = block.TextOf(u"Name", base.face);
    if (const FormValue* size = block.Find(u"Size")) {
        const double* real = std::get_if<double>(size);
        const double points = real ? *real : ValueAsInt(*size, 0);
        if (points >= 1 && points <= largest) font.points = points;
    }
    const int weight = block.IntOf(u"Weight", base.weight);
    if (weight > 0 && weight <= boldest) font.weight = weight;
    const int charset = block.IntOf(u"Charset", base.charset);
    if (charset >= 0 && charset <= 255) font.charset = charset;
    font.italic = block.BoolOf(u"Italic", base.italic);
    font.underline = block.BoolOf(u"Underline", base.underline);
    font.strikeThrough = block.BoolOf(u"Strikethrough", base.strikeThrough);
    return font;
}

std::shared_ptr<SavedGroup> SaveFont(const FontSpec& font) {
    auto group = std::make_shared<SavedGroup>();
    group->classId = fontClassId;
    group->properties.Add(u"Name", font.face);
    group->properties.Add(u"Size", font.points);
    group->properties.Add(u"Charset", std::int32_t{font.charset});
    group->properties.Add(u"Weight", std::int32_t{font.weight});
    group->properties.Add(u"Underline", font.underline);
    group->properties.Add(u"Italic", font.italic);
    group->properties.Add(u"Strikethrough", font.strikeThrough);
    return group;
}

}  // namespace qvx::host
