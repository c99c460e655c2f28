// Measures what a host's program does with the library in its process: record sets, arrays, cells, whole grids, typing,
// loading.
#include "bench/windows/host_form.h"

int main(int argc, char** argv) {
    using namespace qvx::bench;
    const HostOptions options(argc, argv);
    Require(SUCCEEDED(OleInitialize(nullptr)), "OLE");
    // First, since it needs a process without the library.
    if (options.Wants("library")) RunLibraryWorks(options);
    {
        const LoadedServer server;
        if (options.Wants("bind")) RunBindWorks(options);
        if (options.Wants("arrays")) RunArrayWorks(options);
        if (options.Wants("cells")) RunCellWorks(options);
        if (options.Wants("grid")) RunGridWorks(options);
        if (options.Wants("typing")) RunTypingWorks(options);
    }
    std::puts("done");
    OleUninitialize();
}
