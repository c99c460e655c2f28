// Programs as other programs see them.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "win/handles.h"

namespace qvx::soak {

using Kernel = UniqueHandle<HANDLE, release::Kernel>;

// The window class of the host's main windows.
constexpr std::string_view formClass = "QvxHostForm";
constexpr std::string_view designerClass = "QvxDesigner";

std::string ClassOf(HWND window);

struct Program {
    Kernel process{};
    DWORD id = 0;
    DWORD thread = 0;       // the one with the windows
    HWND window = nullptr;  // the main window
};

enum class Wanted { main, any };

// Waits until the program shows a window; returns null when the program ends before that, or takes longer than it may
// on a busy machine.
HWND WaitForWindow(const Program& program, Wanted wanted);

// Returns the identifier of a process that the process `parent` has started from a file of that name; 0 when there is
// none.
DWORD FindChild(DWORD parent, const wchar_t* name);

}  // namespace qvx::soak
