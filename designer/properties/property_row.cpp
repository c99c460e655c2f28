#include "designer/properties/property_row.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "designer/properties/system_colors.h"
#include "host/form_value.h"

namespace qvx::host::designer {

namespace {

[[noreturn]] void Mismatch() { throw RunTimeError(errors::typeMismatch, u"Type mismatch"); }
[[noreturn]] void Invalid() { throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value"); }
[[noreturn]] void Overflow() { throw RunTimeError(errors::overflow, u"Overflow"); }

// A number as the form file writes it; error 13 for anything else.
FormValue ParseNumber(TextView typed) {
    const TextView text = Trim(typed);
    bool malformed = false;
    const ValueLine line = ParseValue(text, malformed);
    const bool number = line.value && !malformed && line.remark.empty() && !std::holds_alternative<Text>(*line.value);
    if (text.empty() || !number) Mismatch();
    return *line.value;
}

double ParseReal(TextView typed) {
    const FormValue value = ParseNumber(typed);
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
    if (const auto* real = std::get_if<double>(&value)) return *real;
    Mismatch();
}

std::int32_t ParseInteger(TextView typed) { return RoundToLong(ParseReal(typed)); }

std::int32_t ParseColor(TextView typed) {
    constexpr double colors = 4294967296.0;
    const TextView text = Trim(typed);
    if (const auto system = SystemColorByName(text)) return static_cast<std::int32_t>(*system);
    constexpr std::size_t webLength = 7;  // #RRGGBB
    if (text.size() == webLength && text[0] == u'#') {
        unsigned parts[3]{};
        for (std::size_t i = 1; i < webLength; ++i) {
            const int digit = HexDigitValue(text[i]);
            if (digit < 0) Mismatch();
            parts[(i - 1) / 2] = parts[(i - 1) / 2] * 16 + static_cast<unsigned>(digit);
        }
        return static_cast<std::int32_t>(Rgb(parts[0], parts[1], parts[2]));
    }
    const double number = ParseReal(text);
    if (number != std::floor(number)) Mismatch();
    if (number >= colors || number < std::numeric_limits<std::int32_t>::min()) Overflow();
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(number)));
}

std::optional<PropertyValue> ChoiceByName(const std::vector<PropertyChoice>& choices, TextView typed) {
    for (const PropertyChoice& choice : choices)
        if (EqualNoCase(choice.name, typed)) return choice.value;
    return std::nullopt;
}

// A beginning that fits one choice only is taken for it.
std::optional<PropertyValue> ChoiceByBeginning(const std::vector<PropertyChoice>& choices, TextView typed) {
    std::optional<PropertyValue> found;
    for (const PropertyChoice& choice : choices) {
        if (typed.empty() || !StartsWithNoCase(choice.name, typed)) continue;
        if (found) return std::nullopt;
        found = choice.value;
    }
    return found;
}

PropertyValue ParseChoice(const std::vector<PropertyChoice>& choices, TextView typed) {
    const TextView text = Trim(typed);
    if (auto named = ChoiceByName(choices, text)) return *named;
    // A choice is typed as "2 - grdFocusHeavy" or by its number alone.
    const std::size_t dash = text.find(u" - ");
    const TextView head = Trim(text.substr(0, dash));
    const bool number = !head.empty() && (IsDigit(head[0]) || head[0] == u'-' || head[0] == u'&');
    if (!number) {
        if (auto begun = ChoiceByBeginning(choices, text)) return *begun;
        Mismatch();
    }
    const std::int32_t typedNumber = ParseInteger(head);
    const bool known = std::any_of(choices.begin(), choices.end(), [&](const PropertyChoice& choice) {
        const auto* own = std::get_if<std::int32_t>(&choice.value);
        return own && *own == typedNumber;
    });
    if (!known) Invalid();
    return typedNumber;
}

bool ParseBoolean(TextView typed) {
    static const std::vector<PropertyChoice> words = {{u"True", true}, {u"False", false}, {u"Yes", true},
                                                      {u"No", false},  {u"On", true},     {u"Off", false}};
    const TextView text = Trim(typed);
    if (auto word = ChoiceByName(words, text)) return std::get<bool>(*word);
    if (auto begun = ChoiceByBeginning(words, text)) return std::get<bool>(*begun);
    return ParseReal(text) != 0;
}

PropertyValue ParseVariant(TextView typed, const PropertyValue& current) {
    if (std::holds_alternative<bool>(current)) return ParseBoolean(typed);
    const bool wasNumber = std::holds_alternative<std::int32_t>(current) || std::holds_alternative<double>(current);
    if (wasNumber) {
        try {
            const FormValue value = ParseNumber(typed);
            if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
            if (const auto* real = std::get_if<double>(&value)) return *real;
        } catch (const RunTimeError&) {
            // A text may replace a number.
        }
    }
    const Text* text = std::get_if<Text>(&current);
    return TypedText(typed, text && NeedsEscapes(*text));
}

Text Hex(std::uint32_t value, int digits) {
    Text text(static_cast<std::size_t>(digits), u'0');
    for (int i = digits - 1; i >= 0; --i, value >>= 4)
        text[static_cast<std::size_t>(i)] = u"0123456789ABCDEF"[value & 15];
    return text;
}

bool IsControl(char16_t c) { return c < u' ' || c == 0x7F; }

struct NamedCategory {
    TextView category;
    std::vector<TextView> names;
};

}  // namespace

Text PropertyLabel(const PropertyInfo& info) {
    const bool above = info.kind == PropertyKind::pages || (info.single && SameName(info.name, u"Name"));
    return above ? u"(" + info.name + u")" : info.name;
}

bool IsForUsers(TextView name) { return !SameName(name, u"hWnd") && !SameName(name, u"hDC"); }

Text CategoryOf(TextView name, PropertyKind kind) {
    static const std::vector<NamedCategory> known = {
        {u"Appearance",
         {u"Alignment", u"Appearance", u"BackStyle", u"Behavior", u"BorderStyle", u"Caption", u"FlatBorder",
          u"FocusRect", u"GridLines", u"GridLinesFixed", u"GridLineWidth", u"HighLight", u"TextStyle",
          u"TextStyleFixed"}},
        {u"Behavior",
         {u"AllowUserResizing", u"Cancel", u"Default", u"Enabled", u"Locked", u"MaxButton", u"MaxLength", u"MinButton",
          u"MultiLine", u"PasswordChar", u"RightToLeft", u"ScrollBars", u"SelectionMode", u"TabIndex", u"TabStop",
          u"ToolTipText", u"Visible", u"WordWrap"}},
        {u"Data", {u"DataField", u"DataFormat", u"DataMember", u"DataSource", u"Tag", u"Text", u"Value"}},
        {u"Position",
         {u"ClientHeight", u"ClientWidth", u"Height", u"Left", u"ScaleHeight", u"ScaleWidth", u"Top", u"Width"}},
    };
    for (const auto& [category, names] : known)
        for (const TextView entry : names)
            if (SameName(entry, name)) return Text(category);
    if (kind == PropertyKind::color || kind == PropertyKind::picture) return u"Appearance";
    if (kind == PropertyKind::font) return u"Font";
    return u"Misc";
}

bool NeedsEscapes(TextView text) { return std::any_of(text.begin(), text.end(), IsControl); }

Text ShownText(TextView text) {
    if (!NeedsEscapes(text)) return Text(text);
    Text shown;
    for (const char16_t c : text) {
        if (c == u'\r') {
            shown += u"\\r";
        } else if (c == u'\n') {
            shown += u"\\n";
        } else if (c == u'\t') {
            shown += u"\\t";
        } else if (c == u'\\') {
            shown += u"\\\\";
        } else if (IsControl(c)) {
            shown += u"\\x" + Hex(c, 2);
        } else {
            shown += c;
        }
    }
    return shown;
}

Text TypedText(TextView typed, bool escaped) {
    if (!escaped) return Text(typed);
    Text text;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const char16_t next = typed[i] == u'\\' && i + 1 < typed.size() ? typed[i + 1] : u'\0';
        const int high = next == u'x' && i + 3 < typed.size() ? HexDigitValue(typed[i + 2]) : -1;
        const int low = high >= 0 ? HexDigitValue(typed[i + 3]) : -1;
        if (low >= 0) {
            text += static_cast<char16_t>(high * 16 + low);
            i += 3;
        } else if (next == u'r' || next == u'n' || next == u't' || next == u'\\') {
            text += next == u'r' ? u'\r' : next == u'n' ? u'\n' : next == u't' ? u'\t' : u'\\';
            ++i;
        } else {
            text += typed[i];
        }
    }
    return text;
}

std::vector<PropertyChoice> ChoicesOf(const PropertyInfo& info) {
    if (info.kind == PropertyKind::boolean && info.choices.empty()) return {{u"True", true}, {u"False", false}};
    return info.choices;
}

Text ShowValue(const PropertyInfo& info, const PropertyValue& value) {
    const auto* whole = std::get_if<std::int32_t>(&value);
    if (info.kind == PropertyKind::color && whole) return u"&H" + Hex(static_cast<std::uint32_t>(*whole), 8) + u"&";
    for (const PropertyChoice& choice : info.choices) {
        if (choice.value != value) continue;
        const bool numbered = info.kind == PropertyKind::enumeration && whole;
        return numbered ? IntegerToText(*whole) + u" - " + choice.name : choice.name;
    }
    if (whole) return IntegerToText(*whole);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? u"True" : u"False";
    if (const auto* real = std::get_if<double>(&value)) return DoubleToText(*real);
    if (const auto* text = std::get_if<Text>(&value)) return ShownText(*text);
    if (const auto* font = std::get_if<FontSpec>(&value)) return font->face + u", " + DoubleToText(font->points);
    return info.kind == PropertyKind::font || info.kind == PropertyKind::picture ? u"(None)" : u"";
}

PropertyValue ParseTyped(const PropertyInfo& info, TextView typed, const PropertyValue& current) {
    // The text that is shown for the present value is taken for it.
    if (!std::holds_alternative<std::monostate>(current) && typed == ShowValue(info, current)) return current;
    if (info.optional && Trim(typed).empty()) return {};
    switch (info.kind) {
        case PropertyKind::boolean:
            return ParseBoolean(typed);
        case PropertyKind::enumeration:
            return ParseChoice(info.choices, typed);
        case PropertyKind::color:
            return ParseColor(typed);
        case PropertyKind::integer:
            if (auto named = ChoiceByName(info.choices, Trim(typed))) return *named;
            return ParseInteger(typed);
        case PropertyKind::real:
            if (auto named = ChoiceByName(info.choices, Trim(typed))) return *named;
            return ParseReal(typed);
        case PropertyKind::text:
        case PropertyKind::date: {
            if (auto named = ChoiceByName(info.choices, typed)) return *named;
            const Text* text = std::get_if<Text>(&current);
            return TypedText(typed, text && NeedsEscapes(*text));
        }
        case PropertyKind::variant:
            if (auto named = ChoiceByName(info.choices, typed)) return *named;
            return ParseVariant(typed, current);
        case PropertyKind::font:
        case PropertyKind::picture:
        case PropertyKind::pages:
            break;
    }
    Mismatch();
}

PropertyValue NextChoice(const PropertyInfo& info, const PropertyValue& current, bool forward) {
    const std::vector<PropertyChoice> choices = ChoicesOf(info);
    if (choices.empty()) return {};
    const auto at = std::find_if(choices.begin(), choices.end(), [&](const auto& c) { return c.value == current; });
    if (at == choices.end()) return choices.front().value;
    const std::size_t count = choices.size();
    const auto index = static_cast<std::size_t>(at - choices.begin());
    return choices[(index + (forward ? 1 : count - 1)) % count].value;
}

ValueButton ButtonOf(const PropertyInfo& info, const PropertyValue& value) {
    if (info.kind == PropertyKind::pages) return ValueButton::dialog;
    if (info.readOnly) return ValueButton::none;
    if (info.kind == PropertyKind::font || info.kind == PropertyKind::picture) return ValueButton::dialog;
    if (!ChoicesOf(info).empty() || info.kind == PropertyKind::color) return ValueButton::dropDown;
    if (info.page) return ValueButton::dialog;
    // Texts have a box of several lines, except names.
    const bool text =
        info.kind == PropertyKind::text || (info.kind == PropertyKind::variant && std::holds_alternative<Text>(value));
    return text && !info.single ? ValueButton::dropDown : ValueButton::none;
}

bool IsTyped(PropertyKind kind) {
    return kind != PropertyKind::font && kind != PropertyKind::picture && kind != PropertyKind::pages;
}

}  // namespace qvx::host::designer
