// The two programs, from a command line to an exit code.
#pragma once

#include "archivers/exit_code.h"
#include "archivers/files.h"

namespace qvx::archivers {

enum class Program { pack, unpack };

// Reports the result on the console. Throws nothing.
ExitCode RunProgram(Program program, TextView commandLine, Files& files, Console& console, unsigned threads) noexcept;

}  // namespace qvx::archivers
