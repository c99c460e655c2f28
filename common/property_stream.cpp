#include "common/property_stream.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace qvx::property_stream {

namespace {

constexpr std::uint32_t magic = 0x50585651;  // "QVXP"
constexpr std::uint16_t version = 1;

enum Kind : std::uint8_t { noKind = 0, boolKind = 1, longKind = 2, doubleKind = 3, textKind = 4, fontKind = 5 };

constexpr std::uint8_t italicBit = 1;
constexpr std::uint8_t underlineBit = 2;
constexpr std::uint8_t strikeThroughBit = 4;

// Removes numbers from the front of the bytes; once there are too few, all reads fail.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint64_t Number(std::size_t size) {
        const auto taken = Take(size);
        std::uint64_t value = 0;
        for (std::size_t i = taken.size(); i-- > 0;) value = value << 8 | taken[i];
        return value;
    }
    double Double() { return std::bit_cast<double>(Number(8)); }
    Text Characters(std::size_t count) {
        const auto taken = Take(count * 2);
        Text text;
        text.reserve(taken.size() / 2);
        for (std::size_t i = 0; i + 1 < taken.size(); i += 2) {
            text.push_back(static_cast<char16_t>(taken[i] | taken[i + 1] << 8));
        }
        return text;
    }
    std::span<const std::uint8_t> Take(std::size_t size) {
        if (size > bytes_.size()) {
            good_ = false;
            bytes_ = {};
            return {};
        }
        const auto taken = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return taken;
    }
    std::size_t Left() const { return bytes_.size(); }
    // Whether every read succeeded and no bytes are left over.
    bool Complete() const { return good_ && bytes_.empty(); }
    bool Good() const { return good_; }

  private:
    std::span<const std::uint8_t> bytes_;
    bool good_ = true;
};

FontSpec ReadFont(Reader& reader) {
    FontSpec font;
    font.points = reader.Double();
    font.widthPoints = reader.Double();
    font.weight = static_cast<int>(reader.Number(2));
    font.charset = static_cast<int>(reader.Number(1));
    const auto bits = static_cast<std::uint8_t>(reader.Number(1));
    font.italic = bits & italicBit;
    font.underline = bits & underlineBit;
    font.strikeThrough = bits & strikeThroughBit;
    font.face = reader.Characters(reader.Left() / 2);
    return font;
}

bool Sensible(const FontSpec& font) {
    constexpr double largestPoints = 2160;  // the limit of the system's own font dialog
    constexpr std::size_t longestFace = 255;
    return font.points > 0 && font.points <= largestPoints && font.widthPoints >= 0 &&
           font.widthPoints <= largestPoints && font.weight <= 1000 && !font.face.empty() &&
           font.face.size() <= longestFace;
}

// Returns no value (monostate) for a value that no control can use: one bad property is no reason to lose the others.
// Returns nullopt when the bytes do not match their kind at all.
std::optional<PropertyValue> ReadValue(std::uint8_t kind, std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    PropertyValue value;
    switch (kind) {
        case boolKind:
            value = reader.Number(1) != 0;
            break;
        case longKind:
            value = static_cast<std::int32_t>(reader.Number(4));
            break;
        case doubleKind: {
            const double number = reader.Double();
            if (std::isfinite(number)) value = number;
            break;
        }
        case textKind:
            value = reader.Characters(bytes.size() / 2);
            break;
        case fontKind: {
            FontSpec font = ReadFont(reader);
            if (Sensible(font)) value = std::move(font);
            break;
        }
        default:
            return value;
    }
    if (!reader.Complete()) return std::nullopt;
    return value;
}

class Writer {
  public:
    void Number(std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    void Double(double value) { Number(std::bit_cast<std::uint64_t>(value), 8); }
    void Characters(TextView text) {
        if (text.size() > maximumSize / 2) throw std::length_error("text too long for a property stream");
        for (const char16_t c : text) Number(c, 2);
    }
    void operator()(std::monostate) {}
    void operator()(bool value) { Number(value ? 1 : 0, 1); }
    void operator()(std::int32_t value) { Number(static_cast<std::uint32_t>(value), 4); }
    void operator()(double value) { Double(value); }
    void operator()(const Text& value) { Characters(value); }
    void operator()(const FontSpec& font) {
        Double(font.points);
        Double(font.widthPoints);
        Number(static_cast<std::uint64_t>(font.weight), 2);
        Number(static_cast<std::uint64_t>(font.charset), 1);
        Number((font.italic ? italicBit : 0u) | (font.underline ? underlineBit : 0u) |
                   (font.strikeThrough ? strikeThroughBit : 0u),
               1);
        Characters(font.face);
    }
    Bytes& Result() { return bytes_; }

  private:
    Bytes bytes_;
};

}  // namespace

std::optional<Header> ReadHeader(std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    const bool known = reader.Number(4) == magic && reader.Number(2) == version;
    Header header;
    header.count = static_cast<std::uint16_t>(reader.Number(2));
    header.size = static_cast<std::uint32_t>(reader.Number(4));
    if (!known || !reader.Good() || header.size > maximumSize) return std::nullopt;
    return header;
}

std::optional<std::vector<Record>> ReadRecords(const Header& header, std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    std::vector<Record> records;
    for (std::uint16_t i = 0; i < header.count; ++i) {
        const auto keyLength = static_cast<std::size_t>(reader.Number(2));
        Text key = reader.Characters(keyLength);
        const auto kind = static_cast<std::uint8_t>(reader.Number(1));
        const auto size = static_cast<std::size_t>(reader.Number(4));
        const auto payload = reader.Take(size);
        if (!reader.Good()) return std::nullopt;
        auto value = ReadValue(kind, payload);
        if (!value) return std::nullopt;
        records.emplace_back(std::move(key), std::move(*value));
    }
    if (!reader.Complete()) return std::nullopt;
    return records;
}

Bytes Write(std::span<const Record> records) {
    constexpr std::size_t most = 0xFFFF;
    if (records.size() > most) throw std::length_error("too many properties");
    Writer body;
    for (const auto& [key, value] : records) {
        if (key.size() > most) throw std::length_error("property name too long");
        Writer payload;
        std::visit(payload, value);
        body.Number(key.size(), 2);
        body.Characters(key);
        body.Number(value.index(), 1);
        body.Number(payload.Result().size(), 4);
        body.Result().insert(body.Result().end(), payload.Result().begin(), payload.Result().end());
        if (body.Result().size() > maximumSize) throw std::length_error("properties too large");
    }
    Writer stream;
    stream.Number(magic, 4);
    stream.Number(version, 2);
    stream.Number(records.size(), 2);
    stream.Number(body.Result().size(), 4);
    stream.Result().insert(stream.Result().end(), body.Result().begin(), body.Result().end());
    return std::move(stream.Result());
}

}  // namespace qvx::property_stream
