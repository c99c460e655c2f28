#include "controls/borders/window_border_win32.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <vector>

#include "com/guard.h"
#include "com/lock.h"
#include "com/module.h"
#include "win/gdi_surface.h"
#include "win/handles.h"
#include "win/replaced_procedure.h"

namespace qvx::borders {

namespace {

// The device context of a whole window, frame included.
class WholeWindowDc {
  public:
    explicit WholeWindowDc(HWND window) : window_(window), dc_(GetWindowDC(window)) {}
    ~WholeWindowDc() {
        if (dc_) ReleaseDC(window_, dc_);
    }
    WholeWindowDc(const WholeWindowDc&) = delete;
    WholeWindowDc& operator=(const WholeWindowDc&) = delete;
    HDC Get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

void PaintBorder(HWND window, const BorderColors& colors) {
    RECT whole{};
    GetWindowRect(window, &whole);
    const UniqueRegion region(CreateRectRgn(0, 0, whole.right - whole.left, whole.bottom - whole.top));
    const WholeWindowDc dc(window);
    for (const BorderBand& band : BorderBands(colors)) {
        const UniqueBrush brush(CreateSolidBrush(ResolveColor(band.color)));
        FrameRgn(dc.Get(), region.Get(), brush.Get(), band.width, band.width);
    }
}

// Whether the system or the window has repainted the window's frame after this message.
bool PaintsFrame(UINT message) { return message == WM_NCPAINT || message == WM_NCACTIVATE || message == WM_SETTEXT; }

void RepaintFrame(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_NOCHILDREN); }

LRESULT CALLBACK BorderProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace

// All windows with a border; host programs may have windows on several threads.
struct BorderWindows {
    ReplacedProcedure procedure{BorderProcedure};
    Lock access;
    std::vector<WindowBorder*> borders;  // in the order in which they were given colours

    static BorderWindows& All() { return OfModule<BorderWindows>(); }
    // Selects the borders of one window.
    static auto On(HWND window) {
        return [window](const WindowBorder* border) { return border->window_ == window; };
    }
    std::optional<BorderColors> ColorsOf(HWND window) {
        const std::lock_guard lock(access);
        const auto last = std::find_if(borders.rbegin(), borders.rend(), On(window));
        return last == borders.rend() ? std::nullopt : std::optional((*last)->colors_);
    }
    void Add(WindowBorder& border, HWND window) {
        const std::lock_guard lock(access);
        borders.push_back(&border);
        border.window_ = window;
    }
    void SetColors(WindowBorder& border, const BorderColors& colors) {
        const std::lock_guard lock(access);
        border.colors_ = colors;
        const auto moved = std::find(borders.begin(), borders.end(), &border);
        if (moved != borders.end()) std::rotate(moved, moved + 1, borders.end());
    }
    // Returns false while another border is left on the window.
    bool Remove(WindowBorder& border) {
        const std::lock_guard lock(access);
        std::erase(borders, &border);
        return std::none_of(borders.begin(), borders.end(), On(border.window_));
    }
    void WindowGone(HWND window) {
        procedure.Forget(window);
        const std::lock_guard lock(access);
        std::erase_if(borders, [&](WindowBorder* border) {
            if (border->window_ != window) return false;
            border->window_ = nullptr;
            return true;
        });
    }
};

namespace {

LRESULT CALLBACK BorderProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // A handler of the host may release the library's last object during this call.
    CountObject(1);
    BorderWindows& all = BorderWindows::All();
    const LRESULT result = all.procedure.PassOn(window, message, wParam, lParam);
    try {
        if (PaintsFrame(message)) {
            if (const auto colors = all.ColorsOf(window)) PaintBorder(window, *colors);
        } else if (message == WM_NCDESTROY) {
            all.WindowGone(window);
        }
    } catch (...) {
        // Without memory there is no border.
    }
    CountObject(-1);
    return result;
}

}  // namespace

void WindowBorder::Start(HWND window, const BorderColors& colors) {
    End();
    colors_ = colors;
    BorderWindows& all = BorderWindows::All();
    all.Add(*this, window);
    bool started = false;
    Contain([&] { started = all.procedure.Start(window); });
    if (!started) {
        all.Remove(*this);
        window_ = nullptr;
        return;
    }
    RepaintFrame(window);
}

void WindowBorder::SetColors(const BorderColors& colors) {
    BorderWindows::All().SetColors(*this, colors);
    if (window_) RepaintFrame(window_);
}

void WindowBorder::End() {
    if (!window_) return;
    BorderWindows& all = BorderWindows::All();
    if (all.Remove(*this)) all.procedure.End(window_);
    RepaintFrame(std::exchange(window_, nullptr));
}

}  // namespace qvx::borders
