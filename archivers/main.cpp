// PkZip.exe, and with QVX_UNPACK PkunZip.exe. The exit codes are those of archivers/exit_code.h.
#include <windows.h>

#include <algorithm>
#include <thread>

#include "archivers/program.h"
#include "archivers/system_files.h"
#include "com/wide_text.h"

namespace {

#ifdef QVX_UNPACK
constexpr auto program = qvx::archivers::Program::unpack;
#else
constexpr auto program = qvx::archivers::Program::pack;
#endif
constexpr unsigned mostThreads = 16;

}  // namespace

// The command line is used as it was given, not with the runtime's interpretation of its quotes.
int wmain() {
    SetErrorMode(SEM_FAILCRITICALERRORS);
    qvx::archivers::SystemFiles files;
    qvx::archivers::SystemConsole console;
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
    const qvx::TextView line = qvx::FromWide(GetCommandLineW());
    return static_cast<int>(qvx::archivers::RunProgram(program, line, files, console, threads));
}
