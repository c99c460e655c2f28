#include "tests/support/portable/recording_surface.h"

#include <cmath>
#include <cstdio>
#include <new>
#include <vector>

namespace qvx {

namespace {

std::string Show(const Rect& r) {
    return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom) + ")";
}

std::string Show(Point p) { return std::to_string(p.x) + "," + std::to_string(p.y); }

std::string Show(Size s) { return std::to_string(s.width) + "x" + std::to_string(s.height); }

std::string ShowColor(OleColor color) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "&H%08X", static_cast<unsigned>(color));
    return buffer;
}

// Shows printable ASCII as it is, and everything else as \u and four hexadecimal digits, so that golden files stay
// plain text.
std::string ShowText(TextView text) {
    std::string out = "\"";
    for (const char16_t c : text) {
        if (c >= 0x20 && c < 0x7F && c != u'"' && c != u'\\') {
            out += static_cast<char>(c);
        } else {
            char buffer[8];
            std::snprintf(buffer, sizeof buffer, "\\u%04X", static_cast<unsigned>(c));
            out += buffer;
        }
    }
    return out + "\"";
}

std::string ShowFont(const FontSpec& font) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%g%s%s%s%s", font.points, font.weight >= 600 ? "b" : "",
                  font.italic ? "i" : "", font.underline ? "u" : "", font.strikeThrough ? "s" : "");
    return buffer;
}

}  // namespace

int RecordingSurface::CharWidth(const FontSpec& font) const {
    const double perPoint =
        font.widthPoints > 0 ? font.widthPoints / font.points * dpi_.x / 72.0 : 6.0 / 8.25 * dpi_.x / 96.0;
    return static_cast<int>(std::lround(font.points * perPoint));
}

int RecordingSurface::LineHeight(const FontSpec& font) {
    return static_cast<int>(std::lround(13.0 * font.points / 8.25 * dpi_.y / 96.0));
}

Size RecordingSurface::MeasureText(TextView text, const FontSpec& font, int wrapWidth, unsigned format) {
    const int charWidth = CharWidth(font);
    const bool wrap = (format & text_format::wordBreak) != 0;
    const bool single = (format & text_format::singleLine) != 0;
    std::vector<int> lines{0};
    std::size_t i = 0;
    const auto isBreak = [&](char16_t c) { return !single && (c == u'\n' || c == u'\r'); };
    while (i < text.size()) {
        if (isBreak(text[i])) {
            if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
                ++i;
            }
            ++i;
            lines.push_back(0);
            continue;
        }
        std::size_t end = i;
        while (end < text.size() && !isBreak(text[end]) && text[end] != u' ') {
            ++end;
        }
        std::size_t blanks = end;
        while (blanks < text.size() && text[blanks] == u' ') {
            ++blanks;
        }
        const int word = static_cast<int>(end - i) * charWidth;
        if (wrap && lines.back() > 0 && lines.back() + word > wrapWidth) {
            lines.push_back(0);
        }
        lines.back() += static_cast<int>(blanks - i) * charWidth;
        i = blanks;
    }
    Size size{0, static_cast<int>(lines.size()) * LineHeight(font)};
    for (const int line : lines) {
        size.width = std::max(size.width, line);
    }
    return size;
}

void RecordingSurface::Line(const std::string& text) { log_ += text + "\n"; }

void RecordingSurface::FillRect(const Rect& area, OleColor color) {
    Line("fill " + Show(area) + " " + ShowColor(color));
}

void RecordingSurface::FrameRect(const Rect& area, OleColor color) {
    Line("frame " + Show(area) + " " + ShowColor(color));
}

void RecordingSurface::DrawLine(Point from, Point to, OleColor color, int thickness) {
    Line("line " + Show(from) + " " + Show(to) + " " + ShowColor(color) + " x" + std::to_string(thickness));
}

void RecordingSurface::DrawEdge(const Rect& area, unsigned style, unsigned sides) {
    Line("edge " + Show(area) + " style " + std::to_string(style) + " sides " + std::to_string(sides));
}

void RecordingSurface::DrawFrameControl(const Rect& area, unsigned kind, unsigned state) {
    Line("control " + Show(area) + " kind " + std::to_string(kind) + " state " + std::to_string(state));
}

void RecordingSurface::DrawFocusRect(const Rect& area, OleColor color) {
    Line("focus " + Show(area) + (color == Rgb(0, 0, 0) ? "" : " " + ShowColor(color)));
}

void RecordingSurface::InvertRect(const Rect& area) { Line("invert " + Show(area)); }

void RecordingSurface::DrawLabel(TextView text, const Rect& area, const FontSpec& font, OleColor color,
                                 unsigned format) {
    Line("text " + ShowText(text) + " " + Show(area) + " " + ShowFont(font) + " " + ShowColor(color) + " format " +
         std::to_string(format));
}

void RecordingSurface::DrawCellText(TextView text, Point origin, const Rect& area, const FontSpec& font, OleColor color,
                                    OleColor background) {
    Line("cell " + ShowText(text) + " at " + Show(origin) + " in " + Show(area) + " " + ShowFont(font) + " " +
         ShowColor(color) + " on " + ShowColor(background));
}

void RecordingSurface::DrawPicture(const Picture& picture, const Rect& area) {
    Line("picture " + Show(picture.PixelSize(dpi_)) + " " + Show(area));
}

void RecordingSurface::FrameRoundRect(const Rect& area, Size corner, OleColor color) {
    Line("roundframe " + Show(area) + " corner " + Show(corner) + " " + ShowColor(color));
}

void RecordingSurface::RoundRect(const Rect& area, Size corner, OleColor color) {
    Line("roundrect " + Show(area) + " corner " + Show(corner) + " " + ShowColor(color));
}

void RecordingSurface::PushClip(const Rect& area) { Line("clip " + Show(area)); }

void RecordingSurface::PopClip() {
    try {
        Line("unclip");
    } catch (const std::bad_alloc&) {
        // Destructors call this while a drawing that has run out of memory is abandoned.
    }
}

}  // namespace qvx
