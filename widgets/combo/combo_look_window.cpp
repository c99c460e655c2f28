// The appearance of a combo and the layout of its parts.
#include <windows.h>

#include <algorithm>

#include "common/flag_scope.h"
#include "common/widest_texts.h"
#include "widgets/combo/combo_window.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx {
namespace {

// The system's own border around the closed combo, in pixels at any resolution.
constexpr int comboBorder = 2;
// From the field's left edge to its text, in pixels at 96 dots per inch, as in the cells of a grid.
constexpr int textMargin = 3;

}  // namespace

void ComboWindow::SetFont(const FontSpec& font) {
    font_ = font;
    gdiFont_ = AcquireFont(font, WindowDpi(Window()));
    const auto handle = reinterpret_cast<WPARAM>(gdiFont_->Get());
    // The system lays out the combo anew even for the font that it has, which takes as long as all else that opens it.
    if (static_cast<WPARAM>(SendMessageW(Window(), WM_GETFONT, 0, 0)) == handle) return;
    widestEntry_.reset();
    placed_.reset();
    SendMessageW(Window(), WM_SETFONT, handle, TRUE);
    // Entries that the combo draws itself are as high as those that the system draws.
    if (matchesParts_) SendMessageW(Window(), CB_SETITEMHEIGHT, 0, gdiFont_->LineHeight());
    PlaceEditField();
}

void ComboWindow::SetBackColor(OleColor color) {
    colors_.SetBack(color);
    InvalidateRect(Window(), nullptr, TRUE);
}

void ComboWindow::SetForeColor(OleColor color) {
    colors_.SetFore(color);
    InvalidateRect(Window(), nullptr, TRUE);
}

void ComboWindow::SetToolTipText(TextView text) { toolTip_.Set(Window(), EditWindow(), text); }

void ComboWindow::SetAccessibleName(TextView name) {
    for (AccessibleNameSubclass& part : names_) part.SetName(name);
}

void ComboWindow::Place(Point origin, int width, int fieldHeight) {
    const Rect wanted{origin.x, origin.y, origin.x + width, origin.y + fieldHeight};
    // What the field of a mirrored combo covers also depends on the width of the frame.
    if (placed_ == wanted && !rightToLeft_) return;
    const bool newHeight = !placed_ || placed_->Height() != fieldHeight;
    placed_.reset();
    fieldHeight_ = fieldHeight;
    {
        const FlagScope scope(placing_);
        // The field between the borders covers at least the cell that it is for.
        const int line = gdiFont_ ? gdiFont_->LineHeight() : 0;
        if (newHeight)
            SendMessageW(Window(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1),
                         std::max(line, fieldHeight) + comboBorder);
        SetWindowPos(Window(), nullptr, origin.x, origin.y, width, fieldHeight + line * rowsInView + 4 * comboBorder,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    PlaceEditField();
    placed_ = wanted;
}

void ComboWindow::PlaceEditField() {
    if (!EditWindow() || !gdiFont_ || fieldHeight_ == 0 || placing_) return;
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(Window(), &info);
    RECT combo{};
    RECT room{};
    GetWindowRect(Window(), &combo);
    GetClientRect(GetParent(Window()), &room);
    MapWindowPoints(nullptr, GetParent(Window()), reinterpret_cast<POINT*>(&combo), 2);
    // In a mirrored combo, positions count from the right edge.
    const POINT origin{rightToLeft_ ? room.right - combo.right : combo.left, combo.top};
    // One line of text in the middle of the area, as a grid draws its cells.
    const Dpi dpi = WindowDpi(Window());
    const int line = gdiFont_->LineHeight();
    const int left = Scaled(textMargin, dpi.x) - origin.x;
    const int top = (fieldHeight_ - line) / 2 - origin.y;
    const int right = std::max<int>(left + 1, static_cast<int>(info.rcButton.left) - 1);
    SendMessageW(EditWindow(), EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
    SetWindowPos(EditWindow(), nullptr, left, top, right - left, line, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(Window(), nullptr, TRUE);
}

void ComboWindow::FitList() {
    // The list is wide enough for the longest entry, and high enough for eight entries.
    if (!widestEntry_) {
        const WindowDc dc(Window());
        WidestTexts widest([&](TextView text) { return gdiFont_->RunWidth(dc.Get(), text); });
        for (const qvx::Text& entry : Entries()) widest.Add(entry);
        widestEntry_ = widest.Width();
    }
    const int room = GetSystemMetrics(SM_CXVSCROLL) + 4 * textMargin;
    SendMessageW(Window(), CB_SETDROPPEDWIDTH, static_cast<WPARAM>(*widestEntry_ + room), 0);
    RECT combo{};
    GetWindowRect(Window(), &combo);
    const int rows = std::clamp(ListCount(), 1, rowsInView);
    const int item = static_cast<int>(SendMessageW(Window(), CB_GETITEMHEIGHT, 0, 0));
    placed_.reset();
    SetWindowPos(Window(), nullptr, 0, 0, combo.right - combo.left,
                 combo.bottom - combo.top + rows * item + comboBorder, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    PlaceEditField();
}

// Draws an entry as the system's lists do, and a line between the entries that match and the others.
void ComboWindow::DrawEntry(const DRAWITEMSTRUCT& item) {
    if (item.itemID == static_cast<UINT>(-1)) return;
    const bool selected = (item.itemState & ODS_SELECTED) != 0;
    const int position = static_cast<int>(item.itemID);
    const SavedDc saved(item.hDC);
    RECT area = item.rcItem;
    FillRect(item.hDC, &area, selected ? GetSysColorBrush(COLOR_HIGHLIGHT) : colors_.Brush());
    if (order_.matches > 0 && position == order_.matches) {
        const RECT line{area.left, area.top, area.right, area.top + 1};
        FillRect(item.hDC, &line, GetSysColorBrush(COLOR_GRAYTEXT));
    }
    SetTextColor(item.hDC, selected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : ResolveColor(colors_.Fore()));
    SetBkMode(item.hDC, TRANSPARENT);
    SelectObject(item.hDC, gdiFont_->Get());
    ++area.left;
    const qvx::Text text = ShownEntry(position);
    const UINT format = DT_SINGLELINE | DT_NOPREFIX | DT_VCENTER | (rightToLeft_ ? DT_RTLREADING : 0U);
    DrawTextW(item.hDC, Wide(text), static_cast<int>(text.size()), &area, format);
}

void ComboWindow::PaintSurround() {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    if (!EditWindow() || !GetComboBoxInfo(Window(), &info)) return;
    RECT edit{};
    GetWindowRect(EditWindow(), &edit);
    MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&edit), 2);
    RECT field{};
    GetClientRect(Window(), &field);
    // The field includes the border: only its right side is visible where the combo is used, and that belongs to the
    // button.
    field.right = info.rcButton.left;
    const WindowDc dc(Window());
    ExcludeClipRect(dc.Get(), edit.left, edit.top, edit.right, edit.bottom);
    FillRect(dc.Get(), &field, colors_.Brush());
}

}  // namespace qvx
