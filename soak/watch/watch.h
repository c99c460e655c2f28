// What the watching part inside the program under test and the driver outside tell each other.
#pragma once

#include <windows.h>

namespace qvx::soak {

constexpr wchar_t sharedName[] = L"QvxSoakShared";
constexpr wchar_t idleName[] = L"QvxSoakIdle";
// Posted to a thread: its queue is to be worked off, then the event is set. wParam numbers the request, lParam asks for
// the counts.
constexpr wchar_t askName[] = L"QvxSoakAsk";

constexpr int maximumFrames = 24;

struct Fault {
    DWORD code;
    ULONG_PTR frames[maximumFrames];  // where it happened and who called that; 0 ends them
    ULONG_PTR bases[maximumFrames];   // of the modules that the frames are in
    wchar_t modules[maximumFrames][32];
};

struct Shared {
    volatile LONG answered;  // the number of the last request whose queue is worked off
    long windows;
    long graphics;
    long menus;
    Fault fault;  // the last one; programs survive some
};

}  // namespace qvx::soak
