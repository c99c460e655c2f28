// The module that contains this code: its window classes and resources belong to it.
#pragma once

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace qvx {

// Returns the component server when loaded into a host, the program itself when linked into a test.
inline HINSTANCE ModuleInstance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

}  // namespace qvx
