// The functions that the system calls in a component server.
#include <windows.h>

#include <olectl.h>

#include "com/guard.h"
#include "com/module.h"
#include "com/type_library.h"
#include "kit/class_factory.h"
#include "server/registration.h"

using qvx::Guard;

// The linker's description of the module's thread-local section.
extern "C" const IMAGE_TLS_DIRECTORY _tls_used;

namespace {

// A module is notified when a thread ends, but if the module is unloaded first, memory that the toolchain's libraries
// have allocated for the thread remains. At least for the thread that unloads the module, this function has the effect
// of the thread's end.
void LeaveThread(HINSTANCE module) {
    const auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(_tls_used.AddressOfCallBacks);
    for (; *callback; ++callback) (*callback)(module, DLL_THREAD_DETACH, nullptr);
}

}  // namespace

// `processEnds` tells whether the module is unloaded or the whole process ends.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_DETACH && !processEnds) {
        qvx::DestroyModuleObjects();
        LeaveThread(module);
    }
    return TRUE;
}

// Exported through the module definition file, undecorated on every architecture.

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, LPVOID* object) {
    return Guard([&]() -> HRESULT {
        if (!object) return E_POINTER;
        *object = nullptr;
        const auto make = [&](const auto& served) {
            return qvx::MakeObject<qvx::ClassFactory>(served.create)->QueryInterface(iid, object);
        };
        for (const qvx::ControlClass& control : qvx::AllControls()) {
            if (*control.id == id) return make(control);
        }
        for (const qvx::PageClass& page : qvx::AllPages()) {
            if (*page.id == id) return make(page);
        }
        return CLASS_E_CLASSNOTAVAILABLE;
    });
}

STDAPI DllCanUnloadNow() {
    if (qvx::LiveObjects() != 0) return S_FALSE;
    // This is done here and not when the module is unloaded, since other modules must not be called then.
    qvx::ReleaseTypeLibrary();
    return S_OK;
}

STDAPI DllRegisterServer() {
    return Guard([] { return qvx::RegisterServer(); });
}

STDAPI DllUnregisterServer() {
    return Guard([] { return qvx::UnregisterServer(); });
}

// The system's registration tool calls this for its "install" switch, with "user" for the current user only.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    return Guard([&] {
        const bool perUser = commandLine && lstrcmpiW(commandLine, L"user") == 0;
        const auto root = perUser ? qvx::ClassRoot::user : qvx::ClassRoot::machine;
        return install ? qvx::RegisterServer(root) : qvx::UnregisterServer(root);
    });
}
