#include "host/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qvx::host {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Windows-1252 from 0x80 to 0x9F; everything else is Latin-1.
constexpr std::array<char16_t, 32> windows1252Upper = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

Text DecodeWindows1252(std::string_view bytes) {
    Text text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.push_back(byte >= 0x80 && byte < 0xA0 ? windows1252Upper[byte - 0x80u] : char16_t{byte});
    }
    return text;
}

std::optional<std::string> EncodeWindows1252(TextView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t c : text) {
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            bytes.push_back(static_cast<char>(c));
            continue;
        }
        const auto found = std::find(windows1252Upper.begin(), windows1252Upper.end(), c);
        if (found == windows1252Upper.end()) return std::nullopt;
        bytes.push_back(static_cast<char>(0x80 + (found - windows1252Upper.begin())));
    }
    return bytes;
}

constexpr bool IsLeadSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }
constexpr bool IsTrailSurrogate(char16_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

}  // namespace

std::optional<Text> DecodeUtf8(std::string_view bytes) {
    Text text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        if (first < 0x80) {
            text.push_back(char16_t{first});
            ++i;
            continue;
        }
        const std::size_t length = first >= 0xF0 ? 4u : first >= 0xE0 ? 3u : 2u;
        if (first < 0xC2 || first > 0xF4 || bytes.size() - i < length) return std::nullopt;
        char32_t point = first & (0xFFu >> (length + 1));
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0) != 0x80) return std::nullopt;
            point = point << 6 | (next & 0x3Fu);
        }
        constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
        if (point < smallest[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return std::nullopt;
        if (point < 0x10000) {
            text.push_back(static_cast<char16_t>(point));
        } else {
            text.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            text.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        }
        i += length;
    }
    return text;
}

std::string EncodeUtf8(TextView text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        if (IsLeadSurrogate(text[i]) && i + 1 < text.size() && IsTrailSurrogate(text[i + 1])) {
            point = 0x10000u + ((point - 0xD800u) << 10) + (text[i + 1] - 0xDC00u);
            ++i;
        } else if (point >= 0xD800 && point <= 0xDFFF) {
            point = 0xFFFD;
        }
        if (point < 0x80) {
            bytes.push_back(static_cast<char>(point));
        } else if (point < 0x800) {
            bytes.push_back(static_cast<char>(0xC0 | point >> 6));
            bytes.push_back(static_cast<char>(0x80 | (point & 0x3F)));
        } else if (point < 0x10000) {
            bytes.push_back(static_cast<char>(0xE0 | point >> 12));
            bytes.push_back(static_cast<char>(0x80 | (point >> 6 & 0x3F)));
            bytes.push_back(static_cast<char>(0x80 | (point & 0x3F)));
        } else {
            bytes.push_back(static_cast<char>(0xF0 | point >> 18));
            bytes.push_back(static_cast<char>(0x80 | (point >> 12 & 0x3F)));
            bytes.push_back(static_cast<char>(0x80 | (point >> 6 & 0x3F)));
            bytes.push_back(static_cast<char>(0x80 | (point & 0x3F)));
        }
    }
    return bytes;
}

DecodedText DecodeFile(std::string_view bytes) {
    const bool marked = bytes.substr(0, byteOrderMark.size()) == byteOrderMark;
    if (auto text = DecodeUtf8(marked ? bytes.substr(byteOrderMark.size()) : bytes)) {
        return {marked ? Encoding::utf8WithMark : Encoding::utf8, std::move(*text)};
    }
    return {Encoding::windows1252, DecodeWindows1252(bytes)};
}

std::string EncodeFile(Encoding encoding, TextView text) {
    if (encoding == Encoding::windows1252) {
        if (auto bytes = EncodeWindows1252(text)) return *bytes;
        encoding = Encoding::utf8WithMark;
    }
    std::string bytes = EncodeUtf8(text);
    if (encoding == Encoding::utf8WithMark) bytes.insert(0, byteOrderMark);
    return bytes;
}

}  // namespace qvx::host
