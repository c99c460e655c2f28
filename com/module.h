// What the binary that this code is linked into keeps for all its COM objects.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// The module (a .dll, .ocx or .exe) that holds this code, whoever loaded it.
HMODULE ThisModule();
// Its full path.
Text ModulePath(HMODULE module);

// Live objects and server locks together; the module may be unloaded at none.
long LiveObjects();
void CountObject(long change);

namespace detail {

struct ModuleObject {
    ModuleObject() = default;
    virtual ~ModuleObject() = default;
    ModuleObject(const ModuleObject&) = delete;
    ModuleObject& operator=(const ModuleObject&) = delete;
    ModuleObject* earlier = nullptr;
};

// Takes it over.
void DestroyAtUnload(ModuleObject* object);

}  // namespace detail

// The module's one object of a type, made at first use. It goes when the module is unloaded, but stays at the end of
// the process, when the system's modules may have gone before this one and windows still get messages.
template <typename T>
T& OfModule() {
    struct Holder final : detail::ModuleObject {
        T object;
    };
    static T& object = [&]() -> T& {
        auto* holder = new Holder;
        detail::DestroyAtUnload(holder);
        return holder->object;
    }();
    return object;
}

// Destroys those objects, the latest first; for the module's unloading only.
void DestroyModuleObjects();

}  // namespace qvx
