// What the system calls in a component server.
#include <windows.h>

#include <olectl.h>

#include "com/guard.h"
#include "com/module.h"
#include "com/type_library.h"
#include "server/class_factory.h"
#include "server/registration.h"

using qvx::Guard;

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
    qvx::ReleaseTypeLibrary();
    return S_OK;
}

STDAPI DllRegisterServer() {
    return Guard([] { return qvx::RegisterServer(); });
}

STDAPI DllUnregisterServer() {
    return Guard([] { return qvx::UnregisterServer(); });
}

// Called by the system's registration tool for its "install" switch, with "user" for the current user only.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    return Guard([&] {
        const bool perUser = commandLine && lstrcmpiW(commandLine, L"user") == 0;
        const auto root = perUser ? qvx::ClassRoot::user : qvx::ClassRoot::machine;
        return install ? qvx::RegisterServer(root) : qvx::UnregisterServer(root);
    });
}
