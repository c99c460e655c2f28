#include "common/utf8.h"

#include <array>
#include <cstddef>

#include "common/surrogates.h"

namespace qvx {

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
        if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
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

}  // namespace qvx
