#include "host/design_face_window.h"

#include <algorithm>

#include "com/wide_text.h"
#include "host/twips_rect.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::host {

namespace {

constexpr int gridStep = 120;  // twips

UniqueFont MenuFont(Dpi dpi) {
    const NONCLIENTMETRICSW metrics = FrameMetrics(dpi);
    return UniqueFont(CreateFontIndirectW(&metrics.lfMenuFont));
}

UniqueBrush GridBrush(HDC dc, Dpi dpi, COLORREF back) {
    const int across = std::max(TwipsToPixels(gridStep, dpi.x), 2);
    const int down = std::max(TwipsToPixels(gridStep, dpi.y), 2);
    const UniqueMemoryDc memory(CreateCompatibleDC(dc));
    const UniqueBitmap bitmap(CreateCompatibleBitmap(dc, across, down));
    {
        const SelectedObject selected(memory.Get(), bitmap.Get());
        const RECT cell{0, 0, across, down};
        const UniqueBrush brush(CreateSolidBrush(back));
        FillRect(memory.Get(), &cell, brush.Get());
        const bool dark = GetRValue(back) + GetGValue(back) + GetBValue(back) < 3 * 96;
        SetPixel(memory.Get(), 0, 0, dark ? RGB(0xA0, 0xA0, 0xA0) : RGB(0x60, 0x60, 0x60));
    }
    return UniqueBrush(CreatePatternBrush(bitmap.Get()));
}

}  // namespace

void DesignFace::FollowMenus(const std::vector<MenuItem>& menus, Dpi dpi) {
    stripHeight_ = menus.empty() ? 0 : SystemMetric(SM_CYMENU, dpi);
}

std::optional<std::size_t> DesignFace::MenuAt(Point point) const {
    for (std::size_t i = 0; i < menuAreas_.size(); ++i) {
        if (menuAreas_[i].Offset(0, -stripHeight_).Contains(point)) return i;
    }
    return std::nullopt;
}

void DesignFace::PaintStrip(HWND form, const std::vector<MenuItem>& menus) {
    menuAreas_.clear();
    if (stripHeight_ == 0) return;
    const HDC dc = GetWindowDC(form);
    {
        const SavedDc saved(dc);
        RECT whole{};
        GetWindowRect(form, &whole);
        RECT client{};
        GetClientRect(form, &client);
        POINT inside{0, 0};
        ClientToScreen(form, &inside);
        const int left = static_cast<int>(inside.x - whole.left);
        const int top = static_cast<int>(inside.y - whole.top) - stripHeight_;
        RECT strip{left, top, left + client.right, top + stripHeight_};
        FillRect(dc, &strip, GetSysColorBrush(COLOR_MENU));
        const Dpi dpi = WindowDpi(form);
        const UniqueFont font = MenuFont(dpi);
        const SelectedObject selected(dc, font.Get());
        SetBkMode(dc, TRANSPARENT);
        int x = left;
        const int margin = SystemMetric(SM_CXSMICON, dpi) / 2;
        for (const MenuItem& item : menus) {
            RECT text{};
            DrawTextW(dc, Wide(item.caption), -1, &text, DT_SINGLELINE | DT_CALCRECT);
            const int width = static_cast<int>(text.right) + 2 * margin;
            RECT area{x, top, x + width, top + stripHeight_};
            SetTextColor(dc, GetSysColor(item.enabled && item.visible ? COLOR_MENUTEXT : COLOR_GRAYTEXT));
            DrawTextW(dc, Wide(item.caption), -1, &area, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
            menuAreas_.push_back({x - left, 0, x - left + width, stripHeight_});
            x += width;
        }
    }
    ReleaseDC(form, dc);
}

void DesignFace::FillBackground(HWND form, HDC dc, COLORREF back) {
    if (!grid_) grid_ = GridBrush(dc, WindowDpi(form), back);
    RECT area{};
    GetClientRect(form, &area);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    FillRect(dc, &area, grid_.Get());
}

}  // namespace qvx::host
