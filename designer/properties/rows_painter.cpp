#include "designer/properties/rows_painter.h"

#include <algorithm>

#include "host/form_font.h"

namespace qvx::host::designer {

namespace {

constexpr int boldWeight = 700;
// The longest part of a text that a cell can show.
constexpr std::size_t longestShown = 500;
constexpr int swatchRoom = 20;  // pixels at 96 dots per inch before the text of a colour

ValueButton CurrentButton(const RowsLook& look) {
    const PropertyRow* row = look.CurrentRow();
    return row ? ButtonOf(row->info, row->reading.value) : ValueButton::none;
}

void PaintValue(Surface& surface, const RowsLook& look, int line, const PropertyRow& row) {
    Rect area = look.view.ValueArea(line);
    const auto* color = std::get_if<std::int32_t>(&row.reading.value);
    if (row.info.kind == PropertyKind::color && color) {
        const Rect swatch{area.left + look.Scaled(3), area.top + look.Scaled(2), area.left + look.Scaled(19),
                          area.bottom - look.Scaled(2)};
        surface.FillRect(swatch, static_cast<OleColor>(*color));
        surface.FrameRect(swatch, colors::windowText);
        area.left = swatch.right + look.Scaled(1);
    }
    const bool current = line == look.current;
    if (current && look.editing) return;
    if (const Rect button = look.ButtonArea(); current && !button.Empty()) area.right = button.left;
    const bool grey = row.info.readOnly || !row.reading.readable;
    surface.DrawLabel(TextView(row.reading.text).substr(0, longestShown),
                      {area.left + look.Scaled(4), area.top, area.right, area.bottom}, DefaultFont(),
                      grey ? colors::grayText : colors::windowText,
                      text_format::singleLine | text_format::middle | text_format::noPrefix | text_format::endEllipsis);
}

void PaintLine(Surface& surface, const RowsLook& look, int line) {
    const RowsView& view = look.view;
    const ListedProperties::Line& shown = look.table->Lines()[static_cast<std::size_t>(line)];
    const PropertyRow* row = look.table->RowAt(static_cast<std::size_t>(line));
    const bool current = line == look.current;
    const Rect whole = view.LineArea(line);
    constexpr unsigned format =
        text_format::singleLine | text_format::middle | text_format::noPrefix | text_format::endEllipsis;
    const OleColor fore = current ? colors::highlightText : colors::windowText;
    const Rect name = row ? view.NameArea(line) : Rect{0, whole.top, whole.right, whole.bottom - 1};
    if (current) {
        surface.FillRect(name, colors::highlight);
    } else if (!row) {
        surface.FillRect(name, colors::buttonFace);
    }
    surface.DrawLine({0, whole.bottom - 1}, {whole.right, whole.bottom - 1}, colors::light3d, 1);
    if (!row) {
        FontSpec bold = DefaultFont();
        bold.weight = boldWeight;
        const int box = look.Scaled(9);
        const int top = name.top + (name.Height() - box) / 2;
        const Rect sign{look.Scaled(4), top, look.Scaled(4) + box, top + box};
        const OleColor color = current ? colors::highlightText : colors::buttonText;
        surface.FrameRect(sign, color);
        const int middleX = sign.left + box / 2;
        const int middleY = sign.top + box / 2;
        surface.DrawLine({sign.left + 2, middleY}, {sign.right - 2, middleY}, color, 1);
        if (!shown.open) surface.DrawLine({middleX, sign.top + 2}, {middleX, sign.bottom - 2}, color, 1);
        surface.DrawLabel(shown.heading, {sign.right + look.Scaled(4), name.top, name.right, name.bottom}, bold, color,
                          format);
        return;
    }
    const int indent = look.Scaled(look.table->Order() == PropertyOrder::categorized ? 17 : 4);
    surface.DrawLabel(PropertyLabel(row->info), {name.left + indent, name.top, name.right, name.bottom}, DefaultFont(),
                      fore, format);
    surface.DrawLine({name.right, whole.top}, {name.right, whole.bottom}, colors::light3d, 1);
    PaintValue(surface, look, line, *row);
}

void PaintButton(Surface& surface, const RowsLook& look) {
    const Rect area = look.ButtonArea();
    if (area.Empty()) return;
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, look.buttonDown ? edge::sunkenOuter : edge::raised, edge::allSides);
    const int shift = look.buttonDown ? 1 : 0;
    const int middleX = (area.left + area.right) / 2 + shift;
    const int middleY = (area.top + area.bottom) / 2 + shift;
    if (CurrentButton(look) == ValueButton::dropDown) {
        const int half = std::max(2, area.Width() / 5);
        for (int i = 0; i <= half; ++i) {
            const int y = middleY - half / 2 + i;
            surface.FillRect({middleX - half + i, y, middleX + half - i + 1, y + 1}, colors::buttonText);
        }
        return;
    }
    const int dot = std::max(1, look.Scaled(1));
    for (int i = -1; i <= 1; ++i) {
        const int x = middleX + i * 3 * dot;
        surface.FillRect({x, middleY + dot, x + dot, middleY + 2 * dot}, colors::buttonText);
    }
}

}  // namespace

const PropertyRow* RowsLook::CurrentRow() const {
    return table && current >= 0 ? table->RowAt(static_cast<std::size_t>(current)) : nullptr;
}

Rect RowsLook::ButtonArea() const {
    if (CurrentButton(*this) == ValueButton::none) return {};
    const Rect value = view.ValueArea(current);
    return {value.right - std::min(value.Width() / 2, buttonWidth), value.top, value.right, value.bottom};
}

Rect RowsLook::EditArea(int lineHeight) const {
    Rect area = view.ValueArea(current);
    const Rect button = ButtonArea();
    if (!button.Empty()) area.right = button.left;
    const PropertyRow* row = CurrentRow();
    if (row && row->info.kind == PropertyKind::color) area.left += Scaled(swatchRoom);
    return {area.left + Scaled(3), area.top + (area.Height() - lineHeight) / 2, area.right - Scaled(1), area.bottom};
}

void PaintRows(Surface& surface, const RowsLook& look) {
    const RowsView& view = look.view;
    surface.FillRect({0, 0, view.client.width, view.client.height}, colors::windowBackground);
    for (int line = view.top; line < view.count && view.LineArea(line).top < view.client.height; ++line)
        PaintLine(surface, look, line);
    PaintButton(surface, look);
}

}  // namespace qvx::host::designer
