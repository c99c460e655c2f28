#include "widgets/flexgrid/footer_window.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "com/wide_text.h"
#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::flexgrid {

namespace {

const WindowClass footerClass{L"QvxGridFooter"};

}  // namespace

void FooterWindow::Show(const CellFooter* footer) {
    const CellFooter* const before = std::exchange(footer_, footer);
    try {
        Place();
    } catch (...) {
        footer_ = before;
        throw;
    }
    Refresh();
}

int FooterWindow::Height() const { return footer_ ? FooterHeight(grid_.Model()) : 0; }

void FooterWindow::Place() {
    if (!footer_ || !grid_.Handle()) {
        Destroy();
        return;
    }
    const Rect client = grid_.ClientArea();
    const Rect place{0, std::max(0, client.bottom - Height()), client.right, client.bottom};
    if (!Handle()) {
        Create(footerClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, place, grid_.Handle());
        invalid_ = true;
        return;
    }
    SetWindowPos(Handle(), nullptr, place.left, place.top, place.Width(), place.Height(),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

// One invalidation serves all changes until the window is drawn, since a host may write a million cells.
void FooterWindow::Refresh() {
    if (footer_ && Handle() && !std::exchange(invalid_, true)) {
        Invalidate();
    }
}

// What assistive programs read: the captions of the columns with their texts.
Text FooterWindow::Summary() const {
    Text summary;
    const Grid& grid = grid_.Model();
    for (int col = 0; footer_ && col < grid.Cols(); ++col) {
        const Text text = footer_->TextOf(col);
        if (text.empty()) {
            continue;
        }
        if (!summary.empty()) {
            summary += u", ";
        }
        summary += ColumnName(grid, col) + u": " + text;
    }
    return summary;
}

LRESULT FooterWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            // Handlers of the grid's events may close everything.
            const auto held = grid_.Hold();
            const View view = grid_.SettledView();
            if (!Handle()) {
                return 0;
            }
            invalid_ = false;
            BackBuffer buffer;
            const Rect area = ClientArea();
            BufferedPaint paint(Handle(), grid_.Model().Metrics().Resolution(), buffer, {area.Width(), area.Height()});
            if (footer_) {
                PaintFooter(grid_.Model(), view, *footer_, paint.Surface(), area);
            }
            return 0;
        }
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(Summary().size());
        case WM_GETTEXT: {
            const Text summary = Summary();
            const std::size_t room = static_cast<std::size_t>(wParam);
            if (room == 0) {
                return 0;
            }
            const std::size_t size = std::min(summary.size(), room - 1);
            auto* const to = reinterpret_cast<char16_t*>(lParam);
            std::copy_n(summary.data(), size, to);
            to[size] = 0;
            return static_cast<LRESULT>(size);
        }
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::flexgrid
