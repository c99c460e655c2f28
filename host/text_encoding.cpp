#include "host/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

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

}  // namespace

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
