// Text that is typed into the property list: it becomes a value of the property's kind or an error, and the value,
// shown and typed again, is the same. The input: kind, whether the previous text had line breaks, text.
#include <cstdint>

#include "common/run_time_error.h"
#include "designer/properties/property_row.h"
#include "fuzz/fuzz_input.h"

void qvx::CheckInput(FuzzInput& input) {
    using namespace host::designer;
    PropertyInfo info;
    info.kind = static_cast<PropertyKind>(input.Byte() % (static_cast<int>(PropertyKind::variant) + 1));
    if (info.kind == PropertyKind::enumeration)
        info.choices = {{u"one", std::int32_t{1}}, {u"oneMore", std::int32_t{2}}};
    const bool escaped = input.Byte() % 2 != 0;
    const PropertyValue current = escaped ? Text(u"a\nb") : Text(u"ab");
    const Text typed = input.RestLatin();
    Require(TypedText(ShownText(typed), NeedsEscapes(typed)) == typed, "a text that is shown comes back");
    try {
        const PropertyValue value = ParseTyped(info, typed, current);
        const Text shown = ShowValue(info, value);
        Require(ParseTyped(info, shown, value) == value, "a value that is shown is taken again");
        if (!NeedsEscapes(shown) && info.kind != PropertyKind::text && info.kind != PropertyKind::date &&
            info.kind != PropertyKind::variant && info.kind != PropertyKind::real)
            Require(ParseTyped(info, shown, {}) == value, "and anywhere else");
    } catch (const RunTimeError&) {
        // A refusal is a valid result.
    }
}
