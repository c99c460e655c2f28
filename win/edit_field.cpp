#include "win/edit_field.h"

#include <algorithm>

#include "common/run_time_error.h"
#include "common/text_direction.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx {
namespace {

void CheckNotNegative(int value) {
    if (value < 0) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
}

}  // namespace

EditSelection ClampedSelection(int start, int length, std::size_t size) {
    CheckNotNegative(start);
    CheckNotNegative(length);
    const int most = static_cast<int>(size);
    const int from = std::min(start, most);
    return {from, std::min(length, most - from)};
}

EditSelection SelectionOf(HWND edit) {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return {static_cast<int>(start), static_cast<int>(end - start)};
}

qvx::Text SelectedText(HWND edit) {
    const EditSelection selection = SelectionOf(edit);
    const qvx::Text text = WindowText(edit);
    const auto start = std::min(static_cast<std::size_t>(selection.start), text.size());
    return text.substr(start, static_cast<std::size_t>(selection.length));
}

void SetSelectionStart(HWND edit, int start) {
    CheckNotNegative(start);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(start), start);
}

void SetSelectionLength(HWND edit, int length) {
    CheckNotNegative(length);
    const int start = SelectionOf(edit).start;
    const int room = std::max(GetWindowTextLengthW(edit) - start, 0);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(start), start + std::min(length, room));
}

void ReplaceSelection(HWND edit, TextView text) {
    const qvx::Text copy(text);
    SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(copy)));
}

void FollowDirection(HWND edit) {
    // The styles that the field's own Ctrl+Shift on either side of the keyboard sets.
    constexpr LONG rightToLeft = WS_EX_RTLREADING | WS_EX_RIGHT;
    const LONG style = GetWindowLongW(edit, GWL_EXSTYLE);
    const bool was = (style & WS_EX_RTLREADING) != 0;
    if (ReadsRightToLeft(WindowText(edit), was) == was) return;
    SetWindowLongW(edit, GWL_EXSTYLE, was ? style & ~rightToLeft : style | rightToLeft);
    InvalidateRect(edit, nullptr, TRUE);
}

void FieldColors::SetBack(OleColor color) {
    back_ = color;
    brush_.Reset();
}

HBRUSH FieldColors::Brush() {
    if (!brush_) brush_.Reset(CreateSolidBrush(ResolveColor(back_)));
    return brush_.Get();
}

LRESULT FieldColors::Apply(WPARAM wParam, bool enabled) {
    const auto dc = reinterpret_cast<HDC>(wParam);
    SetTextColor(dc, ResolveColor(enabled ? fore_ : colors::grayText));
    SetBkColor(dc, ResolveColor(back_));
    return reinterpret_cast<LRESULT>(Brush());
}

}  // namespace qvx
