// Which page of the documentation F1 opens in the designer, and by which address.
#pragma once

#include <vector>

#include "common/text.h"

namespace qvx::host::designer {

struct HelpPage {
    Text file;
    Text anchor{};  // empty for the top of the page
    friend bool operator==(const HelpPage&, const HelpPage&) = default;
};

// `className` is that of the selected control, empty for the form; `property` is the one that the property list has
// picked while it has the focus, else empty.
HelpPage HelpPageOf(TextView className, TextView property);

// The folders in which a program's documentation may be, best first: beside the program, and in the folder above.
std::vector<Text> DocumentationFolders(const Text& program);

// The address of a file with a full path, as browsers take it.
Text FileAddress(const Text& path, const Text& anchor);

}  // namespace qvx::host::designer
