// The tolerant reading of numbers: any text gives a finite number, the same for bytes and for UTF-16, and the same as
// the strict readings and the standard library where those apply. The first byte selects the width of the rest.
#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "common/run_time_error.h"
#include "fuzz/fuzz_input.h"

namespace qvx {
namespace {

bool Same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Whether the text is an optional minus and digits, optionally with a point and more digits, and nothing else.
bool IsPlainDecimal(const std::string& text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const std::size_t first = at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    if (at == first) return false;
    if (at < text.size() && text[at] == '.') ++at;
    while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
    return at == text.size();
}

void CheckBytes(const Text& wide, double value) {
    std::string bytes;
    for (const char16_t c : wide) bytes += static_cast<char>(c);
    Require(Same(NumericValue(std::string_view(bytes)), value), "bytes and UTF-16 read the same");
    if (!IsPlainDecimal(bytes)) return;
    double expected = 0;
    const auto result = std::from_chars(bytes.data(), bytes.data() + bytes.size(), expected);
    if (result.ec == std::errc() && std::isfinite(expected))
        Require(Same(value, expected), "plain decimals read exactly");
}

void Check(const Text& text) {
    const double value = NumericValue(text);
    Require(std::isfinite(value), "the value is finite");
    try {
        Require(Same(Val(text), value), "where Val reads, its value counts");
    } catch (const RunTimeError& error) {
        Require(error.Number() == errors::overflow || error.Number() == errors::typeMismatch, "Val raises 6 or 13");
    }
    const auto strict = ReadNumeric(text);
    Require(strict.has_value() == IsNumeric(text), "the test and the reading agree");
    // Only the strict reading accepts commas and a sign after the number.
    if (strict && text.find_first_of(u",") == Text::npos) {
        const std::size_t last = text.find_last_not_of(u" \t");
        if (text[last] != u'-' && text[last] != u'+') Require(Same(*strict, value), "strict numbers read the same");
    }
    const Text written = DoubleToText(value);
    Require(IsNumeric(written) && DoubleToText(NumericValue(written)) == written, "what is written reads back");
}

}  // namespace
}  // namespace qvx

void qvx::CheckInput(FuzzInput& input) {
    const bool wide = (input.Byte() & 1) != 0;
    const Text text = wide ? input.RestWide() : input.RestLatin();
    Check(text);
    if (!wide) CheckBytes(text, NumericValue(text));
}
