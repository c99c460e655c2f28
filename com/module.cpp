#include "com/module.h"

#include <atomic>

#include "com/guard.h"
#include "com/wide_text.h"

namespace qvx {

namespace {
std::atomic<long> liveObjects{0};
std::atomic<detail::ModuleObject*> latest{nullptr};
}  // namespace

HMODULE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&liveObjects), &module);
    return module;
}

void KeepModuleLoaded() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(&liveObjects), &module);
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

void detail::DestroyAtUnload(ModuleObject* object) {
    object->earlier = latest;
    while (!latest.compare_exchange_weak(object->earlier, object)) continue;
}

void DestroyModuleObjects() {
    while (detail::ModuleObject* object = latest) {
        latest = object->earlier;
        delete object;
    }
}

}  // namespace qvx
