#include "controls/menus/menu_look_win32.h"

#include <cstdlib>

#include "com/wide_text.h"
#include "win/handles.h"

namespace qvx::menus {

FontSpec SystemMenuFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    FontSpec font;
    if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0)) return font;
    const LOGFONTW& log = metrics.lfMenuFont;
    // The setting is in pixels at the screen's own resolution.
    const WindowDc screen(nullptr);
    const int dpi = GetDeviceCaps(screen.Get(), LOGPIXELSY);
    font.face = FromWide(log.lfFaceName);
    if (log.lfHeight != 0 && dpi > 0) font.points = std::abs(static_cast<int>(log.lfHeight)) * 72.0 / dpi;
    font.weight = log.lfWeight;
    font.italic = log.lfItalic != 0;
    font.underline = log.lfUnderline != 0;
    font.strikeThrough = log.lfStrikeOut != 0;
    font.charset = log.lfCharSet;
    return font;
}

MenuColors SystemMenuColors() {
    BOOL flat = FALSE;
    SystemParametersInfoW(SPI_GETFLATMENU, 0, &flat, 0);
    MenuColors colors;
    colors.ground = GetSysColor(COLOR_MENU);
    colors.text = GetSysColor(COLOR_MENUTEXT);
    colors.disabledText = GetSysColor(COLOR_GRAYTEXT);
    colors.selected = GetSysColor(flat ? COLOR_MENUHILIGHT : COLOR_HIGHLIGHT);
    colors.selectedFrame = GetSysColor(COLOR_HIGHLIGHT);
    colors.selectedText = GetSysColor(COLOR_HIGHLIGHTTEXT);
    colors.checkedGround = GetSysColor(COLOR_3DLIGHT);
    return colors;
}

}  // namespace qvx::menus
