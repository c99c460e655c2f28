// What the property list shows of the host's own objects, which have no type information: forms, what a form adds to
// its controls, labels, text boxes and frames.
#pragma once

#include <optional>

#include "host/design/property_row.h"

namespace qvx::host {

// The description of a property by its name. `ofForm`: the object is a form, whose borders differ from a control's.
// Nothing for what is no use to a designer: window handles, objects, selections.
std::optional<PropertyInfo> DescribeHostMember(TextView name, bool ofForm);

}  // namespace qvx::host
