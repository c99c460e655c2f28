#include "controls/grid/file_encoding.h"

#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "common/utf8.h"

namespace qvx::grid {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view utf16Mark = "\xFF\xFE";
constexpr std::string_view utf16SwappedMark = "\xFE\xFF";

Text DecodeUtf16(std::string_view bytes, bool swapped) {
    if (bytes.size() % 2 != 0) throw RunTimeError(errors::invalidProcedureCall, u"The file is not valid UTF-16");
    Text text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i + (swapped ? 1 : 0)]);
        const auto high = static_cast<unsigned char>(bytes[i + (swapped ? 0 : 1)]);
        text += static_cast<char16_t>(low | high << 8);
    }
    return text;
}

Text DecodeStrictUtf8(std::string_view bytes) {
    if (auto text = DecodeUtf8(bytes)) return *std::move(text);
    throw RunTimeError(errors::invalidProcedureCall, u"The file is not valid UTF-8");
}

}  // namespace

TextEncoding EncodingNamed(TextView name) {
    if (EqualNoCase(name, u"utf-8")) return TextEncoding::utf8;
    if (EqualNoCase(name, u"utf-16")) return TextEncoding::utf16;
    if (EqualNoCase(name, u"ansi")) return TextEncoding::ansi;
    throw RunTimeError(errors::invalidProcedureCall, u"The encoding must be utf-8, utf-16 or ansi");
}

std::string ByteOrderMark(TextEncoding encoding) {
    if (encoding == TextEncoding::ansi) return {};
    return std::string(encoding == TextEncoding::utf8 ? utf8Mark : utf16Mark);
}

std::string Encode(TextView text, TextEncoding encoding, const AnsiCodePage& ansi) {
    if (encoding == TextEncoding::ansi) return ansi.encode(text);
    if (encoding == TextEncoding::utf8) return EncodeUtf8(text);
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

Text DecodeFile(std::string_view bytes, TextView encoding, const AnsiCodePage& ansi) {
    const bool named = !encoding.empty();
    const TextEncoding wanted = named ? EncodingNamed(encoding) : TextEncoding::utf8;
    if (bytes.starts_with(utf8Mark)) return DecodeStrictUtf8(bytes.substr(utf8Mark.size()));
    if (bytes.starts_with(utf16Mark)) return DecodeUtf16(bytes.substr(utf16Mark.size()), false);
    if (bytes.starts_with(utf16SwappedMark)) return DecodeUtf16(bytes.substr(utf16SwappedMark.size()), true);
    if (wanted == TextEncoding::utf16) return DecodeUtf16(bytes, false);
    if (wanted == TextEncoding::ansi) return ansi.decode(bytes);
    if (named) return DecodeStrictUtf8(bytes);
    auto text = DecodeUtf8(bytes);
    return text ? *std::move(text) : ansi.decode(bytes);
}

}  // namespace qvx::grid
