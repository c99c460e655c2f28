#include "controls/grid/number_format.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "common/ascii.h"

namespace qvx::grid {
namespace {

bool IsPlace(char16_t c) { return c == u'0' || c == u'#'; }

// Goes through the characters of a format; those in quotation marks and after "\" mean nothing but themselves.
class FormatReader {
  public:
    explicit FormatReader(TextView format) : rest_(format) {}

    // Moves to the next character; false at the end.
    bool Next() {
        while (!rest_.empty()) {
            character_ = rest_.front();
            rest_.remove_prefix(1);
            literal_ = quoted_;
            if (character_ == u'"') {
                quoted_ = !quoted_;
                continue;
            }
            if (character_ == u'\\' && !quoted_ && !rest_.empty()) {
                character_ = rest_.front();
                rest_.remove_prefix(1);
                literal_ = true;
            }
            return true;
        }
        return false;
    }
    char16_t Character() const { return character_; }
    bool Literal() const { return literal_; }
    bool IsBeforePlace() const { return !rest_.empty() && IsPlace(rest_.front()); }
    TextView Rest() const { return rest_; }

  private:
    TextView rest_;
    char16_t character_ = 0;
    bool quoted_ = false;
    bool literal_ = false;
};

// Takes the part up to the next ";" off a format.
TextView TakeSection(TextView& format) {
    const TextView all = format;
    FormatReader reader(format);
    while (reader.Next()) {
        if (reader.Literal() || reader.Character() != u';') continue;
        format = reader.Rest();
        return all.substr(0, all.size() - format.size() - 1);
    }
    format = {};
    return all;
}

// The digits that a section asks for.
struct Places {
    int whole = 0;  // at least, before the decimal point
    int least = 0;  // after it
    int most = 0;
    int hundreds = 0;
    bool any = false;
    bool grouped = false;
};

enum class Part { text, place, point, separator, percent };

Part PartAt(const FormatReader& reader, const Places& before, bool pointSeen) {
    const char16_t c = reader.Character();
    if (reader.Literal()) return Part::text;
    if (IsPlace(c)) return Part::place;
    if (c == u'%') return Part::percent;
    if (c == u'.' && !pointSeen && reader.IsBeforePlace()) return Part::point;
    if (c == u',' && !pointSeen && before.any && reader.IsBeforePlace()) return Part::separator;
    return Part::text;
}

// Calls take(part, character) for each part of a section and returns the digits that it asks for.
template <class Take>
Places ReadSection(TextView section, Take take) {
    Places places;
    bool point = false;
    for (FormatReader reader(section); reader.Next();) {
        const Part part = PartAt(reader, places, point);
        const bool zero = reader.Character() == u'0';
        if (part == Part::place && !point) {
            places.whole += zero || places.whole > 0;
        } else if (part == Part::place) {
            ++places.most;
            if (zero) places.least = places.most;
        }
        places.any = places.any || part == Part::place;
        point = point || part == Part::point;
        places.grouped = places.grouped || part == Part::separator;
        places.hundreds += part == Part::percent;
        take(part, reader.Character());
    }
    return places;
}

struct Digits {
    bool negative = false;
    Text digits;            // without leading zeros before the point
    std::size_t point = 0;  // the number of digits before it

    bool IsZero() const { return digits.find_first_not_of(u'0') == Text::npos; }

    void Round(std::size_t places) {
        const std::size_t end = point + places;
        bool up = end < digits.size() && digits[end] >= u'5';
        digits.resize(end, u'0');
        for (std::size_t i = end; up && i > 0; --i) {
            up = digits[i - 1] == u'9';
            digits[i - 1] = up ? u'0' : static_cast<char16_t>(digits[i - 1] + 1);
        }
        if (up) {
            digits.insert(0, 1, u'1');
            ++point;
        }
    }
};

std::optional<Digits> ReadDigits(TextView text) {
    text = Trim(text);
    Digits number;
    if (!text.empty() && (text.front() == u'-' || text.front() == u'+')) {
        number.negative = text.front() == u'-';
        text.remove_prefix(1);
    }
    const std::size_t point = std::min(text.find(u'.'), text.size());
    number.digits = Text(text.substr(0, point));
    number.digits += text.substr(std::min(point + 1, text.size()));
    if (number.digits.empty() || !std::all_of(number.digits.begin(), number.digits.end(), IsDigit)) return std::nullopt;
    const std::size_t zeros = std::min(number.digits.find_first_not_of(u'0'), point);
    number.digits.erase(0, zeros);
    number.point = point - zeros;
    return number;
}

// Appends the digits of a rounded number.
void AppendDigits(Text& to, const Digits& number, const Places& places, const NumberSigns& signs) {
    const std::size_t least = static_cast<std::size_t>(places.whole);
    const std::size_t whole = std::max(number.point, least);
    for (std::size_t left = whole; left > 0; --left) {
        to += left > number.point ? u'0' : number.digits[number.point - left];
        if (places.grouped && left > 1 && left % 3 == 1) to += signs.thousands;
    }
    std::size_t end = number.digits.size();
    while (end > number.point + static_cast<std::size_t>(places.least) && number.digits[end - 1] == u'0') --end;
    if (end > number.point) to.append(signs.decimal).append(number.digits, number.point, end - number.point);
}

}  // namespace

Text SheetNumberFormat(TextView format) {
    Text sheet;
    while (true) {
        ReadSection(TakeSection(format), [&](Part part, char16_t c) {
            if (part == Part::text) sheet += u'\\';
            sheet += c;
        });
        if (format.empty()) return sheet;
        sheet += u';';
    }
}

FormatKind KindOfFormat(TextView format) {
    bool date = false;
    for (FormatReader reader(format); reader.Next();) {
        if (reader.Literal()) continue;
        if (IsPlace(reader.Character())) return FormatKind::number;
        date = date || TextView(u"dmyh").find(LowerAscii(reader.Character())) != TextView::npos;
    }
    return date ? FormatKind::date : FormatKind::number;
}

Text FormattedNumber(TextView text, TextView format, const NumberSigns& signs) {
    auto number = ReadDigits(text);
    if (!number) return Text(text);
    TextView sections[3];
    std::size_t count = 0;
    do sections[count++] = TakeSection(format);
    while (!format.empty() && count < std::size(sections));
    const auto ignore = [](Part, char16_t) {};
    const auto places = [&](TextView section) { return ReadSection(section, ignore); };
    const auto rounded = [&](const Places& asked) {
        Digits result = *number;
        for (int i = 0; i < asked.hundreds; ++i) {
            result.point += 2;
            if (result.digits.size() < result.point) result.digits.resize(result.point, u'0');
        }
        const std::size_t zeros = std::min(result.digits.find_first_not_of(u'0'), result.point);
        result.digits.erase(0, zeros);
        result.point -= zeros;
        result.Round(static_cast<std::size_t>(asked.most));
        return result;
    };
    const bool second = number->negative && count > 1;
    TextView section = sections[second ? 1 : 0];
    Places asked = places(section);
    Digits digits = rounded(asked);
    bool minus = number->negative && !second;
    if (asked.any ? digits.IsZero() : number->IsZero()) {
        section = sections[count > 2 ? 2 : 0];
        asked = places(section);
        digits = rounded(asked);
        minus = false;
    }
    Text shown(minus ? 1 : 0, u'-');
    bool written = false;
    ReadSection(section, [&](Part part, char16_t c) {
        if (part == Part::text || part == Part::percent) {
            shown += c;
        } else if (!std::exchange(written, true)) {
            AppendDigits(shown, digits, asked, signs);
        }
    });
    return shown;
}

}  // namespace qvx::grid
