// The data exchanged between the watching part inside the program under test and the driver outside.
#pragma once

#include <windows.h>

namespace qvx::soak {

constexpr wchar_t sharedName[] = L"QvxSoakShared";
constexpr wchar_t idleName[] = L"QvxSoakIdle";
// Posted to a thread, which first empties its queue and then sets the event. wParam is the number of the request;
// lParam asks for the counts.
constexpr wchar_t askName[] = L"QvxSoakAsk";

constexpr int maximumFrames = 24;

struct Fault {
    DWORD code;
    ULONG_PTR frames[maximumFrames];  // the address of the fault and its callers; 0 ends the list
    ULONG_PTR bases[maximumFrames];   // of the modules that the frames are in
    wchar_t modules[maximumFrames][32];
};

struct Shared {
    volatile LONG answered;  // the number of the last request whose queue has been emptied
    long windows;
    long graphics;
    long menus;
    Fault fault;  // the last one; programs survive some faults
};

}  // namespace qvx::soak
