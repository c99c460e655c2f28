// Monitors of different resolutions as programs see them: the result of WindowDpi, and the messages of the system to a
// window that moves to another monitor.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/drawn_picture.h"
#include "tests/support/input.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::test {

class Monitor {
  public:
    explicit Monitor(int dots) : dots_(dots) { now_.emplace(Dpi{dots, dots}); }

    // Moves all windows to a monitor of that resolution, in dots per inch; notifies `window`, which is a top-level one,
    // and its children in the system's order. Returns the bounds that the system suggests for the window, in pixels.
    Rect Become(int dots, HWND window) {
        RECT place = AreaOf(window);
        place.right = place.left + MulDiv(place.right - place.left, dots, dots_);
        place.bottom = place.top + MulDiv(place.bottom - place.top, dots, dots_);
        // The position changes, so that the test detects a window that does not move.
        OffsetRect(&place, 7, 5);
        dots_ = dots;
        now_.reset();
        now_.emplace(Dpi{dots, dots});
        std::vector<HWND> inside;
        EnumChildWindows(window, &Collect, reinterpret_cast<LPARAM>(&inside));
        for (auto child = inside.rbegin(); child != inside.rend(); ++child) {
            SendMessageW(*child, WM_DPICHANGED_BEFOREPARENT, 0, 0);
        }
        SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&place));
        for (const HWND child : inside) SendMessageW(child, WM_DPICHANGED_AFTERPARENT, 0, 0);
        return FromRECT(place);
    }

  private:
    static BOOL CALLBACK Collect(HWND child, LPARAM found) {
        reinterpret_cast<std::vector<HWND>*>(found)->push_back(child);
        return TRUE;
    }

    int dots_;
    std::optional<DpiOverride> now_;
};

// Returns the bounds of a window and its visible children, relative to the window, with the heights of their fonts, one
// line each.
inline std::string LookOf(HWND window) {
    struct Listing {
        RECT whole{};
        std::string lines;
        void Add(HWND one) {
            if (!(GetWindowLongW(one, GWL_STYLE) & WS_VISIBLE)) return;
            RECT place = AreaOf(one);
            OffsetRect(&place, -whole.left, -whole.top);
            char name[64]{};
            GetClassNameA(one, name, 64);
            LOGFONTW font{};
            const auto used = reinterpret_cast<HFONT>(SendMessageW(one, WM_GETFONT, 0, 0));
            if (used) GetObjectW(used, sizeof font, &font);
            lines += std::string(name) + " " + std::to_string(place.left) + "," + std::to_string(place.top) + " " +
                     std::to_string(place.right) + "," + std::to_string(place.bottom) + " font " +
                     std::to_string(font.lfHeight) + "\n";
        }
        static BOOL CALLBACK Next(HWND child, LPARAM listing) {
            reinterpret_cast<Listing*>(listing)->Add(child);
            return TRUE;
        }
    };
    Listing listing;
    GetWindowRect(window, &listing.whole);
    listing.Add(window);
    EnumChildWindows(window, &Listing::Next, reinterpret_cast<LPARAM>(&listing));
    return listing.lines;
}

}  // namespace qvx::test
