#include "com/module.h"

#include <atomic>

#include "com/guard.h"
#include "com/text.h"

namespace qvx {

namespace {
std::atomic<long> liveObjects{0};
}

HMODULE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&liveObjects), &module);
    return module;
}

Text ModulePath(HMODULE module) {
    Text path(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, WideBuffer(path), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

long LiveObjects() { return liveObjects.load(); }

void CountObject(long change) { liveObjects += change; }

}  // namespace qvx
