#include "tests/support/source_folder.h"

namespace qvx::test {

// The one file whose content depends on the place, so that the compiler's cache serves all others in every folder.
const char* const sourceFolder = QVX_SOURCE_DIR;

}  // namespace qvx::test
