// What the property list shows of the host's own objects, which have no type information: forms, what a form adds to
// its controls, labels, text boxes and frames.
#pragma once

#include <optional>

#include "designer/properties/property_row.h"

namespace qvx::host::designer {

// Whose property it is: each has borders of its own.
enum class HostObjectKind { form, frame, control };

// The description of a property by its name.
// Nothing for what is no use to a designer: window handles, objects, selections.
std::optional<PropertyInfo> DescribeHostMember(TextView name, HostObjectKind kind);

}  // namespace qvx::host::designer
