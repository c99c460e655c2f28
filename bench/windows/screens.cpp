#include "bench/windows/screens.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/support/floor_peer.h"
#include "bench/support/paint_works.h"
#include "bench/support/processor_clock.h"
#include "bench/windows/list_view.h"
#include "common/latin1.h"
#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::bench {
namespace {

// The sizes of a table in pixels, and of its letters in points at 96 dots per inch.
struct Layout {
    int width;
    int height;
    int columnWidth;
    int rowHeight;
    int headerWidth;
    double points;
};

constexpr Layout ordinary{paintWidth, paintHeight, paintColumnWidth, paintRowHeight, paintHeaderWidth, 8.25};
constexpr Layout large{3840, 2160, 2 * paintColumnWidth, 2 * paintRowHeight, 2 * paintHeaderWidth, 16.5};

constexpr int firstSelected = 3;
constexpr int lastSelected = 4;

void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// When this returns, all drawing has left the process.
void Repaint(HWND window, bool everything) {
    RedrawWindow(window, nullptr, nullptr, (everything ? RDW_INVALIDATE : 0U) | RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

template <bool ownerData>
class ListViewScreen {
  public:
    static const char* Name() { return ownerData ? "List view, owner data" : "List view, report"; }

    explicit ListViewScreen(std::size_t rows) {
        SendMessageW(list_.Handle(), WM_SETREDRAW, FALSE, 0);
        if (!ownerData) SendMessageW(list_.Handle(), LVM_SETITEMCOUNT, rows, 0);
        for (std::size_t i = 0; i < rows; ++i) list_.InsertRow(i, i);
        if (ownerData) list_.CountChanged();
        // The list view selects whole rows only: one in five, which is as many cells as two columns of ten.
        LVITEMW state{};
        state.state = LVIS_SELECTED;
        state.stateMask = LVIS_SELECTED;
        for (WPARAM row = 0; row < 6000; row += 5)
            SendMessageW(list_.Handle(), LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
        SendMessageW(list_.Handle(), WM_SETREDRAW, TRUE, 0);
        list_.Show();
        Repaint(list_.Handle(), true);
        HandleMessages();
        RECT item{};
        item.left = LVIR_BOUNDS;
        SendMessageW(list_.Handle(), LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&item));
        rowHeight_ = item.bottom - item.top;
    }
    void DrawFrame(std::size_t topRow, bool everything) {
        const auto top = static_cast<LONG>(SendMessageW(list_.Handle(), LVM_GETTOPINDEX, 0, 0));
        SendMessageW(list_.Handle(), LVM_SCROLL, 0, (static_cast<LONG>(topRow) - top) * rowHeight_);
        Repaint(list_.Handle(), everything);
    }

  private:
    ListView list_{ownerData, true, paintWidth, paintHeight, paintColumnWidth};
    LONG rowHeight_ = 0;
};

// A window of the benchmark's own for the other tables.
class Frame {
  public:
    explicit Frame(const Layout& layout) : window_(CreateFrame(layout.width, layout.height, DefWindowProcW, nullptr)) {}
    ~Frame() { DestroyWindow(window_); }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    HWND Window() const { return window_; }

  private:
    HWND window_;
};

// The rows with a header in front of the other cells.
const std::vector<Text>& NumberedTexts() {
    static const std::vector<Text> texts = [] {
        std::vector<Text> rows = RowTexts<Text>();
        for (Text& row : rows) row = row.substr(0, row.find(u'\t') + 1) + row;
        return rows;
    }();
    return texts;
}

template <const Layout& layout>
class GridScreen {
  public:
    static const char* Name() { return "Qvx window"; }

    explicit GridScreen(std::size_t rows) {
        if (!window_->CreateIn(frame_.Window(), {0, 0, layout.width, layout.height})) {
            std::fputs("the grid's window was not created\n", stderr);
            std::exit(1);
        }
        flexgrid::Grid& grid = window_->Model();
        FontSpec font;
        font.points = layout.points;
        grid.SetFont(font);
        grid.SetCols(columnCount + 1);
        grid.SetRows(2);
        for (int col = 0; col <= columnCount; ++col) grid.SetTextMatrix(0, col, u"Heading");
        grid.SetColWidth(flexgrid::Grid::all, layout.columnWidth * 15);
        grid.SetColWidth(0, layout.headerWidth * 15);
        grid.SetRowHeight(flexgrid::Grid::all, layout.rowHeight * 15);
        for (std::size_t i = 0; i < rows; ++i) grid.AddItem(NumberedTexts()[i % distinctRows]);
        grid.RemoveItem(1);
        grid.Select(1, firstSelected, static_cast<int>(rows), lastSelected);
        ShowWindow(frame_.Window(), SW_SHOWNOACTIVATE);
        Repaint(frame_.Window(), true);
        HandleMessages();
    }

    void DrawFrame(std::size_t topRow, bool everything) {
        flexgrid::Grid& grid = window_->Model();
        grid.SetTopRow(1 + static_cast<int>(topRow));
        // The back buffer would answer an invalid window; a changed colour makes the grid draw everything again.
        if (everything) grid.SetGridColor(grid.GridColor() ^ 1U);
        Repaint(window_->Handle(), everything);
    }

  private:
    Frame frame_{layout};
    std::unique_ptr<flexgrid::FlexGridWindow> window_ = std::make_unique<flexgrid::FlexGridWindow>();
};

// What painting costs at the least: each cell is one ExtTextOutW at a fixed place, from packed rows, into a bitmap that
// is copied to the window. Lines are drawn once, since cells leave them out. Scrolling moves the bitmap and draws the
// row that comes into view.
template <const Layout& layout>
class FloorScreen {
  public:
    static const char* Name() { return FloorPeer::Name(); }

    explicit FloorScreen(std::size_t rows) {
        rows_.Load(rows);
        const HDC screen = GetDC(nullptr);
        dc_ = CreateCompatibleDC(screen);
        bitmap_ = CreateCompatibleBitmap(screen, layout.width, layout.height);
        ReleaseDC(nullptr, screen);
        SelectObject(dc_, bitmap_);
        font_ = CreateFontW(-static_cast<int>(layout.points * 96 / 72 + 0.5), 0, 0, 0, FW_NORMAL, 0, 0, 0,
                            DEFAULT_CHARSET, 0, 0, 0, 0, L"MS Sans Serif");
        SelectObject(dc_, font_);
        const RECT everything{0, 0, layout.width, layout.height};
        FillRect(dc_, &everything, reinterpret_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH)));
        for (int col = 0; col <= columnCount; ++col) DrawCell(0, col, L"Heading", true);
        DrawRows(0, 0, visibleRows);
        ShowWindow(frame_.Window(), SW_SHOWNOACTIVATE);
        CopyToWindow();
        HandleMessages();
    }
    ~FloorScreen() {
        DeleteDC(dc_);
        DeleteObject(bitmap_);
        DeleteObject(font_);
    }
    FloorScreen(const FloorScreen&) = delete;
    FloorScreen& operator=(const FloorScreen&) = delete;

    void DrawFrame(std::size_t topRow, bool everything) {
        const std::size_t scrolled = topRow - std::exchange(top_, topRow);
        if (everything || scrolled >= visibleRows) {
            DrawRows(topRow, 0, visibleRows);
        } else {
            const int by = static_cast<int>(scrolled) * layout.rowHeight;
            const int height = static_cast<int>(visibleRows) * layout.rowHeight - by;
            BitBlt(dc_, 0, layout.rowHeight, layout.width, height, dc_, 0, layout.rowHeight + by, SRCCOPY);
            DrawRows(topRow, visibleRows - scrolled, visibleRows);
        }
        CopyToWindow();
    }

  private:
    static constexpr auto visibleRows = static_cast<std::size_t>(layout.height / layout.rowHeight);  // below the header

    void DrawRows(std::size_t topRow, std::size_t from, std::size_t to) {
        wchar_t text[256];
        for (std::size_t line = from; line < to; ++line) {
            const int y = static_cast<int>(line + 1) * layout.rowHeight;
            for (int col = 0; col <= columnCount; ++col) {
                const std::string_view cell =
                    rows_.CellView(topRow + line, static_cast<std::size_t>(std::max(col - 1, 0)));
                WidenTo(reinterpret_cast<const std::uint8_t*>(cell.data()), cell.size(),
                        reinterpret_cast<char16_t*>(text));
                DrawCell(y, col, {text, cell.size()}, col == 0);
            }
        }
    }

    void DrawCell(int y, int col, std::wstring_view text, bool header) {
        const bool selected = !header && col >= firstSelected && col <= lastSelected;
        SetBkColor(dc_, GetSysColor(header ? COLOR_BTNFACE : selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
        SetTextColor(dc_, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        const int x = col == 0 ? 0 : layout.headerWidth + (col - 1) * layout.columnWidth;
        const RECT cell{x, y, x + (col == 0 ? layout.headerWidth : layout.columnWidth) - 1, y + layout.rowHeight - 1};
        ExtTextOutW(dc_, x + 3, y + 3, ETO_OPAQUE | ETO_CLIPPED, &cell, text.data(), static_cast<UINT>(text.size()),
                    nullptr);
    }

    void CopyToWindow() {
        const HDC window = GetDC(frame_.Window());
        BitBlt(window, 0, 0, layout.width, layout.height, dc_, 0, 0, SRCCOPY);
        ReleaseDC(frame_.Window(), window);
        GdiFlush();
    }

    Frame frame_{layout};
    FloorPeer rows_;
    HDC dc_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HFONT font_ = nullptr;
    std::size_t top_ = 0;
};

}  // namespace

void RunScreens() { RunPaintWorks<GridScreen<ordinary>, FloorScreen<ordinary>, ListViewScreen<true>>(); }

void RunWatchedScreen() {
    std::vector<double> first, frames, scroll;
    for (std::size_t run = 0; run < 5; ++run) {
        const ProcessorStopwatch loading;
        GridScreen<ordinary> screen(paintRows);
        first.push_back(loading.Seconds());
        // Many short samples: some of them are taken while nothing else uses the same core.
        for (std::size_t part = 0; part < 8; ++part) {
            const std::size_t row = 200 * (8 * run + part);
            frames.push_back(FramesPerSecond<ProcessorStopwatch>(screen, row, true, 25));
            scroll.push_back(FramesPerSecond<ProcessorStopwatch>(screen, row + 50, false, 60));
        }
    }
    const char* const peer = GridScreen<ordinary>::Name();
    Report("first_frame_cpu", paintRows, peer, first);
    Report("frames_cpu", paintRows, peer, frames);
    Report("scroll_cpu", paintRows, peer, scroll);
}

void RunSlowScreen() { RunPaintWorks<ListViewScreen<false>>(); }

void RunLargeScreens() { RunPaintWorks<GridScreen<large>, FloorScreen<large>>("_large"); }

}  // namespace qvx::bench
