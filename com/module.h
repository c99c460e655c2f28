// State that the binary containing this code keeps for all its COM objects.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// The module (a .dll, .ocx or .exe) that contains this code, whoever loaded it.
HMODULE ThisModule();
// Keeps that module loaded until the process ends, for other code that may call it.
void KeepModuleLoaded();
// The module's full path.
Text ModulePath(HMODULE module);

// The number of live objects and server locks; the module may be unloaded when it is 0.
long LiveObjects();
// Adds to or subtracts from the number of live objects and server locks.
void CountObject(long change);

namespace detail {

struct ModuleObject {
    ModuleObject() = default;
    virtual ~ModuleObject() = default;
    ModuleObject(const ModuleObject&) = delete;
    ModuleObject& operator=(const ModuleObject&) = delete;
    ModuleObject* earlier = nullptr;
};

// Takes ownership of the object.
void DestroyAtUnload(ModuleObject* object);

}  // namespace detail

// Returns the module's single object of a type, and creates it at first use. It is destroyed when the module is
// unloaded, but not at the end of the process, when the system's modules may be gone before this one while windows
// still get messages.
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

// Destroys those objects, the latest first. Called only when the module is unloaded.
void DestroyModuleObjects();

}  // namespace qvx
