#include "designer/properties/value_dialogs_win32.h"

#include <commdlg.h>

#include <cmath>

#include "com/wide_text.h"
#include "win/dpi.h"
#include "win/fonts.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx::host::designer {

std::optional<OleColor> AskColor(HWND owner, OleColor before) {
    // The user's own colours are kept for as long as the program runs.
    static COLORREF custom[16] = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                  0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
    CHOOSECOLORW choose{};
    choose.lStructSize = sizeof choose;
    choose.hwndOwner = owner;
    choose.rgbResult = ResolveColor(before);
    choose.lpCustColors = custom;
    choose.Flags = CC_RGBINIT | CC_ANYCOLOR | CC_FULLOPEN;
    return ChooseColorW(&choose) ? std::optional(static_cast<OleColor>(choose.rgbResult)) : std::nullopt;
}

std::optional<FontSpec> AskFont(HWND owner, const FontSpec& before) {
    FontSpec font = before;
    LOGFONTW logFont = ToLogFont(font, ScreenDpi());
    CHOOSEFONTW choose{};
    choose.lStructSize = sizeof choose;
    choose.hwndOwner = owner;
    choose.lpLogFont = &logFont;
    choose.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_EFFECTS | CF_FORCEFONTEXIST;
    if (!ChooseFontW(&choose)) return std::nullopt;
    font.face = FromWide(logFont.lfFaceName);
    // The dialog rounds to whole points, so that a size that only came back rounded has not been changed.
    const double points = choose.iPointSize / 10.0;
    if (std::abs(points - font.points) >= 0.5) font.points = points;
    font.weight = static_cast<int>(logFont.lfWeight);
    font.italic = logFont.lfItalic != 0;
    font.underline = logFont.lfUnderline != 0;
    font.strikeThrough = logFont.lfStrikeOut != 0;
    font.charset = logFont.lfCharSet;
    return font;
}

Text AskPictureFile(HWND owner) {
    constexpr DWORD longestPath = 32768;
    Text path(longestPath, u'\0');
    OPENFILENAMEW open{};
    open.lStructSize = sizeof open;
    open.hwndOwner = owner;
    open.lpstrFilter = L"Pictures\0*.bmp;*.dib;*.ico;*.cur;*.gif;*.jpg;*.jpeg;*.png;*.wmf;*.emf\0All Files\0*.*\0";
    open.lpstrFile = WideBuffer(path);
    open.nMaxFile = longestPath;
    open.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_EXPLORER;
    return GetOpenFileNameW(&open) ? Text(path.c_str()) : Text();
}

}  // namespace qvx::host::designer
