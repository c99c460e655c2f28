// How the designer runs a form: which file of it, with which script, and by which command line.
#pragma once

#include <vector>

#include "host/options.h"

namespace qvx::host::designer {

// The name of the copy that an unsaved form runs from. Its file is `name`; 0 is the first attempt to find a free one.
Text RunCopyName(const Text& name, int attempt);

// The files that may hold the script of a form, best first.
std::vector<Text> ScriptsBeside(const Text& form);

// The command line by which `program` shows the form with the script, or with none when that is empty, and otherwise as
// the designer itself was started.
Text RunCommandLine(const Text& program, const Text& form, const Text& script, const Options& options);

}  // namespace qvx::host::designer
