// What the property list knows of a property, and its value as the text that is shown and typed.
#pragma once

#include <cstdint>
#include <vector>

#include "common/property_value.h"
#include "common/text.h"

namespace qvx::host::designer {

enum class PropertyKind {
    text,
    integer,
    real,
    boolean,
    enumeration,
    color,
    date,
    font,
    picture,
    variant,  // of the kind of its present value
    pages,    // no property, but a row that opens the object's property pages
};

struct PropertyChoice {
    Text name;
    PropertyValue value;
    friend bool operator==(const PropertyChoice&, const PropertyChoice&) = default;
};

struct PropertyInfo {
    Text name;
    PropertyKind kind = PropertyKind::text;
    bool readOnly = false;
    // Makes no sense for several objects at once, such as a name or an index.
    bool single = false;
    // May have no value; an empty text removes it.
    bool optional = false;
    // Has a property page of its own.
    bool page = false;
    Text help{};
    Text category{};
    // All values of an enumeration; for other kinds, values that are suggested.
    std::vector<PropertyChoice> choices{};
};

// A property's value as it was read.
struct PropertyReading {
    PropertyValue value{};  // nothing for pictures, and for what could not be read
    Text text{};            // as it is shown
    bool readable = true;
    friend bool operator==(const PropertyReading&, const PropertyReading&) = default;
};

// "(Name)" and "(Custom)" sort before the letters; all others have their names.
Text PropertyLabel(const PropertyInfo& info);

// Whether a property makes sense to a user; window handles and device contexts do not.
bool IsForUsers(TextView name);

// The category of a property whose object gives none: by its name, else by its kind.
Text CategoryOf(TextView name, PropertyKind kind);

// --- Values as text ---

// A text with line breaks or other control characters is shown with \r, \n, \t, \x1F and \\ in it; any other text is
// shown as it is, backslashes included.
bool NeedsEscapes(TextView text);
Text ShownText(TextView text);
// The reverse; `escaped` when the text that was replaced NeedsEscapes. An unknown escape is taken as it is.
Text TypedText(TextView typed, bool escaped);

// The value as it is shown: True, "2 - grdFocusHeavy", &H8000000F&, "Tahoma, 8.25".
Text ShowValue(const PropertyInfo& info, const PropertyValue& value);

// A typed text as a value of the property's kind; `current` is the value before. Throws RunTimeError 13 for a text that
// cannot be read, 380 for a value that the property does not have, and 6 for a number out of range.
PropertyValue ParseTyped(const PropertyInfo& info, TextView typed, const PropertyValue& current);

// The value after (or before) the current one among the choices, from the last to the first; nothing when there are
// none. Booleans have two.
PropertyValue NextChoice(const PropertyInfo& info, const PropertyValue& current, bool forward = true);

// True and False, or the choices that the property has, by their bare names.
std::vector<PropertyChoice> ChoicesOf(const PropertyInfo& info);

// The button at the end of a value: it opens a box below, or a dialog.
enum class ValueButton { none, dropDown, dialog };
ValueButton ButtonOf(const PropertyInfo& info, const PropertyValue& value);
// Whether the value is edited as text in its row.
bool IsTyped(PropertyKind kind);

}  // namespace qvx::host::designer
