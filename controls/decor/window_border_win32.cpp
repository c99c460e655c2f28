#include "controls/decor/window_border_win32.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "com/module.h"
#include "controls/decor/replaced_procedure_win32.h"
#include "win/gdi_surface.h"
#include "win/handles.h"

namespace qvx::decor {

namespace {

std::int32_t NumberOf(HWND window) { return static_cast<std::int32_t>(reinterpret_cast<LONG_PTR>(window)); }

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

// After these the window's frame has been painted anew, by the system or by the window.
bool PaintsFrame(UINT message) { return message == WM_NCPAINT || message == WM_NCACTIVATE || message == WM_SETTEXT; }

void RepaintFrame(HWND window) { RedrawWindow(window, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_NOCHILDREN); }

LRESULT CALLBACK BorderProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace

// All windows with a border; host programs may have windows on several threads.
struct BorderWindows {
    ReplacedProcedure procedure{BorderProcedure};
    std::mutex mutex;
    BorderTable colors;
    std::vector<WindowBorder*> borders;

    // Never destroyed: windows may outlive the module's static objects.
    static BorderWindows& All() {
        static auto* all = new BorderWindows;
        return *all;
    }
    std::optional<BorderColors> ColorsOf(HWND window) {
        const std::lock_guard lock(mutex);
        return colors.Find(NumberOf(window));
    }
    void Add(WindowBorder& border) {
        const std::lock_guard lock(mutex);
        borders.push_back(&border);
        colors.Set(NumberOf(border.window_), border.colors_);
    }
    // False while another border is left on the window.
    bool Remove(WindowBorder& border) {
        const std::lock_guard lock(mutex);
        std::erase(borders, &border);
        const auto other = std::find_if(borders.rbegin(), borders.rend(),
                                        [&](const WindowBorder* one) { return one->window_ == border.window_; });
        if (other == borders.rend()) {
            colors.Remove(NumberOf(border.window_));
            return true;
        }
        colors.Set(NumberOf(border.window_), (*other)->colors_);
        return false;
    }
    void WindowGone(HWND window) {
        procedure.Forget(window);
        const std::lock_guard lock(mutex);
        colors.Remove(NumberOf(window));
        std::erase_if(borders, [&](WindowBorder* border) {
            if (border->window_ != window) return false;
            border->window_ = nullptr;
            return true;
        });
    }
};

namespace {

LRESULT CALLBACK BorderProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // A handler of the host's may let go of the library's last object in the middle of this.
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
    window_ = window;
    colors_ = colors;
    BorderWindows& all = BorderWindows::All();
    all.Add(*this);
    if (!all.procedure.Start(window)) {
        all.Remove(*this);
        window_ = nullptr;
        return;
    }
    RepaintFrame(window);
}

void WindowBorder::SetColors(const BorderColors& colors) {
    colors_ = colors;
    if (!window_) return;
    BorderWindows& all = BorderWindows::All();
    all.Remove(*this);
    all.Add(*this);
    RepaintFrame(window_);
}

void WindowBorder::End() {
    if (!window_) return;
    BorderWindows& all = BorderWindows::All();
    if (all.Remove(*this)) all.procedure.End(window_);
    RepaintFrame(std::exchange(window_, nullptr));
}

}  // namespace qvx::decor
