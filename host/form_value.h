// One property value of a form file: how it is written on a line and what it means.
//
//     "He said ""yes"""           text; quotes inside are doubled
//     "Line 1" & Chr(13) & "2"    text with characters that a line of the file cannot hold
//     120   -3   8.25   1E-3      whole numbers (32 bits) and others; the point is always "."
//     &H8000000F&   &HFF          hexadecimal; without the closing & four digits are a 16-bit number with a sign
//     -1  'True   0   'False      Booleans: the remark makes the difference to a plain -1 or 0
#pragma once

#include <cstdint>
#include <optional>
#include <variant>

#include "common/text.h"

namespace qvx::host {

class FormValue : public std::variant<Text, std::int32_t, double, bool> {
  public:
    using variant::variant;
    FormValue(FormValue&&) noexcept = default;
    FormValue& operator=(const FormValue&) = default;
    FormValue& operator=(FormValue&&) noexcept = default;
    // GCC 12's variant takes one of strings and numbers for never without a value, and would destroy the text that a
    // copy has found no memory for.
    FormValue(const FormValue& other) : variant(Text()) { *this = other; }
    ~FormValue() = default;
};

struct ValueLine {
    std::optional<FormValue> value;  // empty when the line holds no value this reader knows
    TextView source;                 // the value as written, without the remark
    TextView remark;                 // from the ' on, or empty
};

// Reads what follows the "=" of a property line. `malformed` is set for a broken value (an open quote, "12x"), and not
// for a form of value that is merely unknown here, such as a shortcut key ^S.
ValueLine ParseValue(TextView rest, bool& malformed);

// The value in the file's form, with the remark that a Boolean needs. `asHex` writes a whole number as &H0012AB34&,
// the way colours are written. Throws RunTimeError 380 for a number that is not finite.
Text FormatValue(const FormValue& value, bool asHex);

// Names of properties, classes and objects: letters, digits, "_" and "." (a type and its library), and "(0)" for
// elements of indexed properties.
bool IsPropertyName(TextView name);

// Names compare without regard to the case of A to Z, as host scripts write them.
bool SameName(TextView a, TextView b);

// The value as text, as a truth value or as a whole number, for the properties that the host itself reads.
Text ValueAsText(const FormValue& value);
bool ValueAsBool(const FormValue& value);
// Rounded half to even; `fallback` for text that is no number and for numbers beyond 32 bits.
std::int32_t ValueAsInt(const FormValue& value, std::int32_t fallback);

}  // namespace qvx::host
