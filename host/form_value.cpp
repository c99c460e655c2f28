#include "host/form_value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::host {

namespace {

// Every letter of the basic plane is allowed, but no half of a surrogate pair, since a file may not hold one alone.
constexpr bool IsLetter(char16_t c) {
    if (c >= 0xA0) return (c < 0xD800 || c > 0xDFFF) && c != 0xFEFF;
    return IsAsciiLetter(c);
}

std::optional<FormValue> ReadHex(TextView text) {
    text.remove_prefix(2);
    const bool closed = !text.empty() && text.back() == u'&';
    if (closed) text.remove_suffix(1);
    if (text.empty() || text.size() > 8) return std::nullopt;
    std::uint32_t number = 0;
    for (const char16_t c : text) {
        const int digit = HexDigitValue(c);
        if (digit < 0) return std::nullopt;
        number = number << 4 | static_cast<std::uint32_t>(digit);
    }
    if (!closed && text.size() <= 4) return FormValue(std::int32_t{static_cast<std::int16_t>(number)});
    return FormValue(static_cast<std::int32_t>(number));
}

std::optional<FormValue> ReadNumber(TextView text) {
    std::string ascii;
    for (const char16_t c : text) {
        if (c >= 0x80) return std::nullopt;
        ascii.push_back(static_cast<char>(c));
    }
    if (!ascii.empty() && ascii.front() == '+') ascii.erase(0, 1);
    // from_chars would also read names such as "inf".
    for (const char c : ascii) {
        if (!IsDigit(static_cast<unsigned char>(c)) && c != '.' && c != '-' && c != '+' && c != 'E' && c != 'e') {
            return std::nullopt;
        }
    }
    const char* const end = ascii.data() + ascii.size();
    std::int32_t whole = 0;
    if (const auto read = std::from_chars(ascii.data(), end, whole); read.ec == std::errc() && read.ptr == end) {
        return FormValue(whole);
    }
    double number = 0;
    if (const auto read = std::from_chars(ascii.data(), end, number);
        read.ec == std::errc() && read.ptr == end && std::isfinite(number)) {
        return FormValue(number);
    }
    return std::nullopt;
}

// Reads `"..." & Chr(13) & ...` from the start of `text`; `length` receives the length of what was read.
std::optional<Text> ReadText(TextView text, std::size_t& length) {
    Text value;
    std::size_t i = 0;
    const auto skipBlanks = [&](std::size_t at) {
        while (at < text.size() && IsBlank(text[at])) ++at;
        return at;
    };
    for (;;) {
        if (i < text.size() && text[i] == u'"') {
            for (++i;; ++i) {
                if (i >= text.size()) return std::nullopt;
                if (text[i] == u'"') {
                    if (i + 1 >= text.size() || text[i + 1] != u'"') break;
                    ++i;
                }
                value.push_back(text[i]);
            }
            ++i;
        } else if (SameName(text.substr(i, 4), u"Chr(")) {
            i += 4;
            unsigned code = 0;
            const std::size_t first = i;
            for (; i < text.size() && IsDigit(text[i]) && i - first < 5; ++i) code = code * 10 + (text[i] - u'0');
            if (i == first || code > 0xFFFF || i >= text.size() || text[i] != u')') return std::nullopt;
            ++i;
            value.push_back(static_cast<char16_t>(code));
        } else {
            return std::nullopt;
        }
        length = i;
        const std::size_t join = skipBlanks(i);
        if (join >= text.size() || text[join] != u'&') return value;
        i = skipBlanks(join + 1);
    }
}

bool StartsText(TextView text) {
    return !text.empty() && (text.front() == u'"' || SameName(text.substr(0, 4), u"Chr("));
}

// Characters that would end the line, be lost in the file's encoding, or be invisible in an editor.
bool NeedsCode(TextView text, std::size_t i) {
    const char16_t c = text[i];
    if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0xFEFF) return c != u'\t';
    if (c >= 0xD800 && c <= 0xDBFF) return i + 1 >= text.size() || text[i + 1] < 0xDC00 || text[i + 1] > 0xDFFF;
    if (c >= 0xDC00 && c <= 0xDFFF) return i == 0 || text[i - 1] < 0xD800 || text[i - 1] > 0xDBFF;
    return false;
}

Text FormatText(TextView text) {
    if (text.empty()) return u"\"\"";
    Text line;
    bool open = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool coded = NeedsCode(text, i);
        if (coded || !open) {
            if (open) line += u'"';
            if (!line.empty()) line += u" & ";
        }
        if (coded) {
            line += u"Chr(" + IntegerToText(text[i]) + u")";
            open = false;
            continue;
        }
        if (!open) line += u'"';
        open = true;
        line += text[i];
        if (text[i] == u'"') line += u'"';
    }
    if (open) line += u'"';
    return line;
}

Text FormatHex(std::int32_t number) {
    constexpr TextView digits = u"0123456789ABCDEF";
    Text line = u"&H";
    for (int shift = 28; shift >= 0; shift -= 4) line += digits[static_cast<std::uint32_t>(number) >> shift & 0xF];
    return line + u"&";
}

Text FormatReal(double number) {
    if (!std::isfinite(number)) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    char buffer[32];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, number);
    return Text(buffer, written.ptr);
}

}  // namespace

ValueLine ParseValue(TextView rest, bool& malformed) {
    malformed = false;
    rest = TrimLeft(rest);
    ValueLine line;
    if (StartsText(rest)) {
        std::size_t length = 0;
        if (auto text = ReadText(rest, length)) {
            const TextView behind = TrimLeft(rest.substr(length));
            if (behind.empty() || behind.front() == u'\'') {
                line.value = FormValue(std::move(*text));
                line.source = rest.substr(0, length);
                line.remark = behind;
                return line;
            }
        }
        line.source = TrimRight(rest);
        malformed = true;
        return line;
    }
    const std::size_t remark = rest.find(u'\'');
    if (remark != TextView::npos) line.remark = rest.substr(remark);
    line.source = TrimRight(rest.substr(0, remark));
    if (line.source.empty()) {
        malformed = true;
        return line;
    }
    const char16_t first = line.source.front();
    if (first == u'&') {
        if (line.source.size() > 2 && LowerAscii(line.source[1]) == u'h') line.value = ReadHex(line.source);
    } else if (IsDigit(first) || first == u'-' || first == u'+' || first == u'.') {
        line.value = ReadNumber(line.source);
    } else {
        return line;
    }
    malformed = !line.value;
    if (const auto* number = line.value ? std::get_if<std::int32_t>(&*line.value) : nullptr) {
        const TextView word = TrimRight(line.remark.empty() ? line.remark : TrimLeft(line.remark.substr(1)));
        if (*number == -1 && SameName(word, u"True")) line.value = FormValue(true);
        if (*number == 0 && SameName(word, u"False")) line.value = FormValue(false);
    }
    return line;
}

Text FormatValue(const FormValue& value, bool asHex) {
    if (const auto* text = std::get_if<Text>(&value)) return FormatText(*text);
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? u"-1  'True" : u"0   'False";
    if (const auto* number = std::get_if<double>(&value)) return FormatReal(*number);
    const std::int32_t whole = std::get<std::int32_t>(value);
    return asHex ? FormatHex(whole) : IntegerToText(whole);
}

bool IsPropertyName(TextView name) {
    if (name.empty() || name.size() > 255 || !(IsLetter(name.front()) || name.front() == u'_')) return false;
    for (const char16_t c : name) {
        if (!IsLetter(c) && !IsDigit(c) && c != u'_' && c != u'.' && c != u'(' && c != u')') return false;
    }
    return true;
}

bool SameName(TextView a, TextView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return LowerAscii(x) == LowerAscii(y); });
}

Text ValueAsText(const FormValue& value) {
    if (const auto* text = std::get_if<Text>(&value)) return *text;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? u"True" : u"False";
    return FormatValue(value, false);
}

bool ValueAsBool(const FormValue& value) {
    if (const auto* text = std::get_if<Text>(&value)) return SameName(*text, u"True");
    return ValueAsInt(value, 0) != 0;
}

std::int32_t ValueAsInt(const FormValue& value, std::int32_t fallback) {
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? -1 : 0;
    double number = 0;
    if (const auto* real = std::get_if<double>(&value)) {
        number = *real;
    } else {
        const auto read = ReadNumber(std::get<Text>(value));
        if (!read) return fallback;
        if (const auto* whole = std::get_if<std::int32_t>(&*read)) return *whole;
        number = std::get<double>(*read);
    }
    const double rounded = std::nearbyint(number);
    if (rounded < -2147483648.0 || rounded > 2147483647.0) return fallback;
    return static_cast<std::int32_t>(rounded);
}

}  // namespace qvx::host
