// What the property list shows of the host's own objects, which have no type information: forms, what a form adds to
// its controls, labels, text boxes and frames.
#pragma once

#include <optional>

#include "designer/properties/property_row.h"

namespace qvx::host::designer {

// The class of the object, since each has border styles of its own.
enum class HostObjectKind { form, frame, control };

// The description of a property by its name.
// Nothing for a property that is of no use in the designer, such as a window handle, an object or a selection.
std::optional<PropertyInfo> DescribeHostMember(TextView name, HostObjectKind kind);

}  // namespace qvx::host::designer
