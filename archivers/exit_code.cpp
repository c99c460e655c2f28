#include "archivers/exit_code.h"

namespace qvx::archivers {

TextView TextOf(ExitCode code) { return exitTexts[static_cast<std::size_t>(code)].text; }

}  // namespace qvx::archivers
