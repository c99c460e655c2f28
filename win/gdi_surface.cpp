#include "win/gdi_surface.h"

#include <algorithm>
#include <numeric>

#include "win/dpi.h"
#include "win/themed_part.h"
#include "win/window_text.h"

namespace qvx {

namespace {

// A brush of its own: a metafile does not record the colour of the stock one.
UniqueBrush BrushOf(OleColor color) { return UniqueBrush(CreateSolidBrush(ResolveColor(color))); }

// Replaces the system's menu arrow where a system does not draw it: a triangle pointing down in the middle of the area.
void DrawMenuArrow(HDC dc, const Rect& area, unsigned state) {
    const int half = std::max(2, area.Width() / 4);
    const int x = area.left + area.Width() / 2;
    const int y = area.top + (area.Height() - half) / 2;
    const auto triangle = [&](int shift, int color) {
        for (int row = 0; row <= half; ++row) {
            const RECT line{x - half + row + shift, y + row + shift, x + half - row + 1 + shift, y + row + 1 + shift};
            ::FillRect(dc, &line, GetSysColorBrush(color));
        }
    };
    if (state & frame_control::inactive) {
        triangle(1, COLOR_3DHILIGHT);
        triangle(0, COLOR_3DSHADOW);
    } else {
        triangle(0, COLOR_BTNTEXT);
    }
}

// Executes what DrawText has recorded: lines of text, and the lines under access keys.
int CALLBACK ReplayText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM target) {
    const auto dc = reinterpret_cast<HDC>(target);
    const auto* bytes = reinterpret_cast<const BYTE*>(record);
    if (record->iType == EMR_EXTTEXTOUTW) {
        const auto& line = *reinterpret_cast<const EMREXTTEXTOUTW*>(record);
        const EMRTEXT& text = line.emrtext;
        const RECT area{text.rcl.left, text.rcl.top, text.rcl.right, text.rcl.bottom};
        ExtTextOutW(dc, text.ptlReference.x, text.ptlReference.y, text.fOptions & (ETO_CLIPPED | ETO_RTLREADING), &area,
                    reinterpret_cast<const wchar_t*>(bytes + text.offString), text.nChars,
                    text.offDx ? reinterpret_cast<const INT*>(bytes + text.offDx) : nullptr);
    } else if (record->iType == EMR_MOVETOEX) {
        const POINTL at = reinterpret_cast<const EMRMOVETOEX*>(record)->ptl;
        MoveToEx(dc, at.x, at.y, nullptr);
    } else if (record->iType == EMR_LINETO) {
        const POINTL to = reinterpret_cast<const EMRLINETO*>(record)->ptl;
        LineTo(dc, to.x, to.y);
    }
    return TRUE;
}

// Draws a label where DrawText cannot measure it: the text is laid out with the ruler's font, and drawn line by line.
void DrawMeasuredText(HDC dc, HDC ruler, COLORREF color, const wchar_t* text, int length, RECT area, unsigned format) {
    const HDC recording = CreateEnhMetaFileW(ruler, nullptr, nullptr, nullptr);
    if (!recording) return;
    SelectObject(recording, GetCurrentObject(ruler, OBJ_FONT));
    DrawTextW(recording, text, length, &area, format);
    const HENHMETAFILE lines = CloseEnhMetaFile(recording);
    const UniquePen pen(CreatePen(PS_SOLID, 1, color));
    const SavedDc saved(dc);
    SelectObject(dc, pen.Get());
    EnumEnhMetaFile(nullptr, lines, &ReplayText, reinterpret_cast<void*>(dc), nullptr);
    DeleteEnhMetaFile(lines);
}

}  // namespace

COLORREF ResolveColor(OleColor color) {
    return color & 0x80000000U ? GetSysColor(static_cast<int>(color & 0xFFU)) : color & 0x00FFFFFFU;
}

GdiSurface::GdiSurface(HDC dc, Dpi dpi, bool asOnScreen) : dc_(dc), dpi_(dpi), savedState_(SaveDC(dc)) {
    const DWORD type = GetObjectType(dc);
    metafile_ = type == OBJ_METADC || type == OBJ_ENHMETADC;
    if (type == OBJ_METADC || asOnScreen) ruler_ = UniqueMemoryDc(CreateCompatibleDC(nullptr));
    SetBkMode(dc_, TRANSPARENT);
    SetTextAlign(dc_, TA_LEFT | TA_TOP | TA_NOUPDATECP);
}

GdiSurface::~GdiSurface() {
    if (savedState_) {
        RestoreDC(dc_, -1);
    }
}

void GdiSurface::Forget() {
    fontSelected_ = false;
    textColor_.reset();
    backColor_.reset();
}

const GdiFont& GdiSurface::Font(const FontSpec& font) {
    if (!font_ || !(fontSpec_ == font)) {
        font_ = AcquireFont(font, dpi_);
        fontSpec_ = font;
        fontSelected_ = false;
    }
    return *font_;
}

const GdiFont& GdiSurface::SelectFont(const FontSpec& font) {
    const GdiFont& found = Font(font);
    if (!fontSelected_) {
        SelectObject(dc_, found.Get());
        if (ruler_) SelectObject(ruler_.Get(), found.Get());
        fontSelected_ = true;
    }
    return found;
}

void GdiSurface::SetBackground(OleColor background) {
    if (background != backColor_) {
        SetBkColor(dc_, ResolveColor(background));
        backColor_ = background;
    }
}

void GdiSurface::SetTextColor(OleColor text) {
    if (text != textColor_) {
        ::SetTextColor(dc_, ResolveColor(text));
        textColor_ = text;
    }
}

void GdiSurface::SetColors(OleColor text, OleColor background) {
    SetTextColor(text);
    SetBackground(background);
}

Size GdiSurface::MeasureText(TextView text, const FontSpec& font, int wrapWidth, unsigned format) {
    const GdiFont& found = SelectFont(font);
    const bool plain = (format & (text_format::wordBreak | text_format::editControl)) == 0 &&
                       ((format & text_format::noPrefix) != 0 || text.find(u'&') == TextView::npos) &&
                       text.find_first_of(u"\r\n\t") == TextView::npos;
    if (plain) {
        return {found.RunWidth(Ruler(), text), found.LineHeight()};
    }
    RECT area{0, 0, std::max(0, wrapWidth), 0};
    DrawTextW(Ruler(), WideData(text), static_cast<int>(text.size()), &area, format | DT_CALCRECT);
    return {static_cast<int>(area.right - area.left), static_cast<int>(area.bottom - area.top)};
}

int GdiSurface::LineHeight(const FontSpec& font) { return Font(font).LineHeight(); }

void GdiSurface::FillRect(const Rect& area, OleColor color) {
    if (area.Empty()) {
        return;
    }
    // Opaque text without characters is the fastest solid fill, and creates no brush.
    SetBackground(color);
    const RECT r = ToRECT(area);
    ExtTextOutW(dc_, 0, 0, ETO_OPAQUE, &r, L"", 0, nullptr);
}

void GdiSurface::FrameRect(const Rect& area, OleColor color) {
    const RECT r = ToRECT(area);
    ::FrameRect(dc_, &r, BrushOf(color).Get());
}

void GdiSurface::DrawLine(Point from, Point to, OleColor color, int thickness) {
    const bool horizontal = from.y == to.y;
    Rect area{std::min(from.x, to.x), std::min(from.y, to.y), std::max(from.x, to.x), std::max(from.y, to.y)};
    if (horizontal) {
        area.bottom = area.top + thickness;
    } else {
        area.right = area.left + thickness;
    }
    FillRect(area, color);
}

void GdiSurface::DrawEdge(const Rect& area, unsigned style, unsigned sides) {
    RECT r = ToRECT(area);
    ::DrawEdge(dc_, &r, style, sides);
}

void GdiSurface::DrawFrameControl(const Rect& area, unsigned kind, unsigned state) {
    RECT r = ToRECT(area);
    if (kind == frame_control::themedCombo) {
        if (DrawThemedComboButton(dc_, r, (state & frame_control::pushed) != 0,
                                  (state & frame_control::inactive) == 0)) {
            return;
        }
        kind = frame_control::scroll;
    }
    const bool drawn = ::DrawFrameControl(dc_, &r, kind, state) != 0;
    if (!drawn && kind == frame_control::popupMenu) {
        DrawMenuArrow(dc_, area, state);
    }
}

void GdiSurface::DrawFocusRect(const Rect& area, OleColor color) {
    // The system draws the dots with the current colours; black on white inverts every second pixel.
    SetColors(color, Rgb(255, 255, 255));
    const RECT r = ToRECT(area);
    ::DrawFocusRect(dc_, &r);
}

void GdiSurface::InvertRect(const Rect& area) {
    const RECT r = ToRECT(area);
    ::InvertRect(dc_, &r);
}

void GdiSurface::DrawLabel(TextView text, const Rect& area, const FontSpec& font, OleColor color, unsigned format) {
    SelectFont(font);
    SetTextColor(color);
    RECT r = ToRECT(area);
    if (ruler_) {
        DrawMeasuredText(dc_, ruler_.Get(), ResolveColor(color), WideData(text), static_cast<int>(text.size()), r,
                         format);
    } else {
        DrawTextW(dc_, WideData(text), static_cast<int>(text.size()), &r, format);
    }
}

void GdiSurface::DrawCellText(TextView text, Point origin, const Rect& area, const FontSpec& font, OleColor color,
                              OleColor background) {
    if (area.Empty()) {
        return;
    }
    SelectFont(font);
    SetColors(color, background);
    const RECT r = ToRECT(area);
    const auto length = static_cast<int>(text.size());
    if (ruler_) {
        places_.resize(text.size());
        SIZE size{};
        GetTextExtentExPointW(ruler_.Get(), WideData(text), length, 0, nullptr, places_.data(), &size);
        std::adjacent_difference(places_.begin(), places_.end(), places_.begin());
    }
    ExtTextOutW(dc_, origin.x, origin.y, ETO_OPAQUE | ETO_CLIPPED, &r, WideData(text), static_cast<UINT>(length),
                ruler_ ? places_.data() : nullptr);
}

void GdiSurface::DrawPicture(const Picture& picture, const Rect& area) {
    const SavedDc saved(dc_);
    GdiPicture::Of(picture).Draw(dc_, area);
}

void GdiSurface::FrameRoundRect(const Rect& area, Size corner, OleColor color) {
    const UniqueRegion region(
        CreateRoundRectRgn(area.left, area.top, area.right, area.bottom, corner.width, corner.height));
    FrameRgn(dc_, region.Get(), BrushOf(color).Get(), 1, 1);
}

void GdiSurface::RoundRect(const Rect& area, Size corner, OleColor color) {
    const UniquePen pen(CreatePen(PS_SOLID, 1, ResolveColor(color)));
    const SavedDc saved(dc_);
    SelectObject(dc_, GetStockObject(NULL_BRUSH));
    SelectObject(dc_, pen.Get());
    ::RoundRect(dc_, area.left, area.top, area.right, area.bottom, corner.width, corner.height);
}

void GdiSurface::PushClip(const Rect& area) {
    if (metafile_) {
        SaveDC(dc_);
    } else {
        UniqueRegion current(CreateRectRgn(0, 0, 0, 0));
        if (GetClipRgn(dc_, current.Get()) != 1) {
            current.Reset();
        }
        clips_.push_back(std::move(current));
    }
    IntersectClipRect(dc_, area.left, area.top, std::max(area.left, area.right), std::max(area.top, area.bottom));
}

void GdiSurface::PopClip() {
    if (metafile_) {
        RestoreDC(dc_, -1);
        Forget();
        return;
    }
    SelectClipRgn(dc_, clips_.back().Get());
    clips_.pop_back();
}

BackBuffer::~BackBuffer() { Release(); }

void BackBuffer::Release() {
    if (original_) {
        SelectObject(dc_.Get(), original_);
        original_ = nullptr;
    }
    bitmap_.Reset();
    dc_.Reset();
    size_ = {};
}

UniqueBitmap BackBuffer::TakeBitmap() {
    UniqueBitmap bitmap = std::move(bitmap_);
    Release();
    return bitmap;
}

HDC BackBuffer::Prepare(HDC reference, Size size, bool* fresh) {
    const bool enough = dc_ && size.width <= size_.width && size.height <= size_.height;
    if (fresh) {
        *fresh = !enough;
    }
    if (enough) {
        return dc_.Get();
    }
    const Size wanted{std::max({1, size.width, size_.width}), std::max({1, size.height, size_.height})};
    Release();
    UniqueMemoryDc dc(CreateCompatibleDC(reference));
    UniqueBitmap bitmap(CreateCompatibleBitmap(reference, wanted.width, wanted.height));
    if (!dc || !bitmap) {
        return nullptr;
    }
    dc_ = std::move(dc);
    bitmap_ = std::move(bitmap);
    original_ = SelectObject(dc_.Get(), bitmap_.Get());
    size_ = wanted;
    return dc_.Get();
}

void BackBuffer::CopyTo(HDC target, const Rect& area) const {
    if (!area.Empty()) {
        BitBlt(target, area.left, area.top, area.Width(), area.Height(), dc_.Get(), area.left, area.top, SRCCOPY);
    }
}

void BackBuffer::Scroll(const Rect& area, int dx, int dy) const {
    const Rect target = area.Intersect(area.Offset(dx, dy));
    if (!target.Empty()) {
        BitBlt(dc_.Get(), target.left, target.top, target.Width(), target.Height(), dc_.Get(), target.left - dx,
               target.top - dy, SRCCOPY);
    }
}

BufferedPaint::BufferedPaint(HWND window, Dpi dpi, BackBuffer& buffer, Size size) : paint_(window), buffer_(buffer) {
    const HDC dc = buffer_.Prepare(paint_.Dc(), size, &fresh_);
    surface_.emplace(dc ? dc : paint_.Dc(), dpi);
}

BufferedPaint::~BufferedPaint() {
    surface_.reset();
    if (Buffered()) {
        buffer_.CopyTo(paint_.Dc(), UpdateArea());
    }
}

}  // namespace qvx
