// The facts that the server knows about a control without creating one.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include <span>

namespace qvx {

// Makes an object and returns it as the interface `iid`. May throw.
using CreateFunction = HRESULT (*)(REFIID iid, void** object);

struct ControlClass {
    const CLSID* id;
    const IID* events;           // the source dispinterface
    const wchar_t* name;         // "Button"; the program identifier is "Qvx.Button"
    const wchar_t* description;  // shown by hosts in their lists of controls
    int toolboxBitmap;           // resource number
    DWORD miscStatus;            // OLEMISC_xxx
    CreateFunction create;
};

// The bits of every visible control: activated whenever it is visible, laid out by the container, and sited before it
// is loaded, because its defaults come from the host.
constexpr DWORD usualMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                                  OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;

// A property page that controls list as theirs. It is not a control, and not in the type library.
struct PageClass {
    const CLSID* id;
    const wchar_t* description;
    CreateFunction create;
};

// Return all controls and all property pages of the library.
std::span<const ControlClass> AllControls();
std::span<const PageClass> AllPages();

}  // namespace qvx
