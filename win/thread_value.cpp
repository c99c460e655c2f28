#include "win/thread_value.h"

#include <windows.h>

#include <cstddef>

extern "C" {
// The linker's description of the module's section for such variables.
extern const IMAGE_TLS_DIRECTORY _tls_used;
extern ULONG _tls_index;
}

namespace qvx {

// The compiler mistakes the small address of a thread's description for a member of a null pointer.
#pragma GCC diagnostic ignored "-Warray-bounds"

void* detail::CopyOfThisThread(const void* original) noexcept {
    // The twelfth word of the description points to the thread's copies, with a block for each module.
    const auto* const description = reinterpret_cast<std::byte* const* const*>(NtCurrentTeb());
    std::byte* const block = description[11][_tls_index];
    return block + (reinterpret_cast<ULONG_PTR>(original) - _tls_used.StartAddressOfRawData);
}

}  // namespace qvx
