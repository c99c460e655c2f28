#include "widgets/flexgrid/paint.h"

#include <algorithm>
#include <optional>

#include "common/text_direction.h"
#include "widgets/flexgrid/paint_dragging.h"
#include "widgets/flexgrid/sort_mark.h"

namespace qvx::flexgrid {

namespace {

bool Is3d(GridLineStyle style) { return style == GridLineStyle::inset || style == GridLineStyle::raised; }

bool HasLineBreak(TextView text) { return text.find_first_of(u"\r\n") != TextView::npos; }

// Removes trailing blanks, which format strings use to widen columns and which would shift centred and right-aligned
// captions.
TextView Trimmed(TextView text) { return text.substr(0, text.find_last_not_of(u' ') + 1); }

// Returns the area for a cell's text. In a row made for one line, a line of text has the same vertical position with
// every alignment.
Rect TextRoom(const Grid& grid, const Rect& area, bool fixed) {
    const Dpi dpi = grid.Metrics().Resolution();
    const int across = ScaledAtLeastOne(cellMarginAcross, dpi.x);
    const int down = ScaledAtLeastOne(1, dpi.y);
    const int line = LineWidth(grid, fixed);
    const bool mirrored = grid.RightToLeft();
    return {area.left + across + (mirrored ? line : 0), area.top + down, area.right - across - (mirrored ? 0 : line),
            area.bottom - line - down};
}

// Splits the end that text runs towards off a cell's area.
Rect SplitEnd(Rect& area, int width, bool mirrored) {
    Rect end = area;
    width = std::min(width, std::max(0, area.Width()));
    if (mirrored) {
        end.right = area.left + width;
        area.left = end.right;
    } else {
        end.left = area.right - width;
        area.right = end.left;
    }
    return end;
}

bool FitsButton(const View& view, const Rect& inside) { return inside.Width() >= 2 * view.buttonWidth; }

// Keeps text off the mark; `marked` is empty where there is none.
Rect BesideMark(Rect room, const Rect& marked, bool mirrored) {
    if (!marked.Empty() && mirrored) {
        room.left = std::max(room.left, marked.right);
    } else if (!marked.Empty()) {
        room.right = std::min(room.right, marked.left);
    }
    return room;
}

// The look of one cell's text.
struct Ink {
    const FontSpec* font;
    OleColor fore;
    OleColor back;
    GridTextStyle style;
};

// Draws one dirty rectangle.
class Painter {
  public:
    Painter(const Grid& grid, const View& view, Surface& surface, const Rect& dirty)
        : grid_(grid),
          view_(view),
          surface_(surface),
          dirty_(dirty.Intersect({0, 0, view.client.width, view.client.height})),
          dpi_(surface.Resolution()),
          mirrored_(grid.RightToLeft()),
          selection_(grid.Selection()),
          shown_(grid, view) {
        highlights_ = !view.onPaper && grid.Enabled() &&
                      (grid.HighLight() == GridHighLight::always ||
                       (grid.HighLight() == GridHighLight::withFocus && view.focused));
        cellsBottom_ = shown_.rows.empty() ? 0 : shown_.rows.back().end;
        Split(shown_.rows, grid.FixedRows(), dirty_.top, dirty_.bottom, fixedRows_, scrolledRows_);
        std::vector<Span> others;
        Split(shown_.columns, grid.FixedCols(), dirty_.left, dirty_.right, fixedColumns_, others);
        Split(others, grid.StandingCols(), dirty_.left, dirty_.right, frozenColumns_, scrolledColumns_);
    }

    void Run() {
        if (dirty_.Empty()) {
            return;
        }
        if (view_.marks) {
            view_.marks->Prepare();
        }
        const ClipScope clip(surface_, dirty_);
        PaintGround();
        PaintBlock(scrolledRows_, scrolledColumns_, false);
        PaintBlock(fixedRows_, scrolledColumns_, true);
        PaintBlock(scrolledRows_, frozenColumns_, false);
        PaintBlock(fixedRows_, frozenColumns_, true);
        PaintBlock(scrolledRows_, fixedColumns_, true);
        PaintBlock(fixedRows_, fixedColumns_, true);
        if (view_.marks && view_.marks->MarksRows()) {
            PaintRowMarks();
        }
        if (!frozenColumns_.empty()) {
            PaintFrozenEnd();
        }
        PaintFocus();
        PaintDragging(grid_, view_, surface_);
    }

  private:
    // Keeps the spans that are within from..to, and separates fixed and scrolled ones.
    static void Split(const std::vector<Span>& spans, int fixed, int from, int to, std::vector<Span>& fixedOnes,
                      std::vector<Span>& scrolledOnes) {
        for (const Span& span : spans) {
            if (span.start < to && span.end > from) {
                (span.index < fixed ? fixedOnes : scrolledOnes).push_back(span);
            }
        }
    }

    // Paints the window beyond the last row and column.
    void PaintGround() {
        const Axis columns = ColumnAxis(grid_, view_);
        // Mirrored twice, this is the end along the axis.
        const int end = shown_.columns.empty() ? 0 : columns.InWindow(shown_.columns.back()).end;
        const Span ground = columns.InWindow({0, end, columns.extent});
        const Rect beside{ground.start, 0, ground.end, view_.client.height};
        const Rect below{0, cellsBottom_, view_.client.width, view_.client.height};
        for (const Rect& part : {beside.Intersect(dirty_), below.Intersect(dirty_)}) {
            if (!part.Empty()) {
                surface_.FillRect(part, grid_.BackColorBkg());
            }
        }
    }

    void PaintBlock(const std::vector<Span>& rows, const std::vector<Span>& columns, bool fixed) {
        if (rows.empty() || columns.empty()) {
            return;
        }
        if (grid_.MergeCells() != GridMerge::never) {
            PaintMergedBlock(rows, columns, fixed);
            return;
        }
        for (const Span& row : rows) {
            for (const Span& column : columns) {
                PaintCell(row.index, column.index, {column.start, row.start, column.end, row.end}, fixed);
            }
        }
        PaintLines(rows, columns, fixed);
    }

    // Draws each group of merged cells once, at its first cell in the block, over the visible part of the group.
    void PaintMergedBlock(const std::vector<Span>& rows, const std::vector<Span>& columns, bool fixed) {
        std::vector<bool> done(rows.size() * columns.size());
        for (std::size_t r = 0; r < rows.size(); ++r) {
            for (std::size_t c = 0; c < columns.size(); ++c) {
                if (done[r * columns.size() + c]) {
                    continue;
                }
                const CellRange merged = shown_.Merged(rows[r].index, columns[c].index);
                std::size_t lastRow = r;
                std::size_t lastColumn = c;
                while (lastRow + 1 < rows.size() && rows[lastRow + 1].index <= merged.bottom) {
                    ++lastRow;
                }
                while (lastColumn + 1 < columns.size() && columns[lastColumn + 1].index <= merged.right) {
                    ++lastColumn;
                }
                for (std::size_t i = r; i <= lastRow; ++i) {
                    for (std::size_t j = c; j <= lastColumn; ++j) {
                        done[i * columns.size() + j] = true;
                    }
                }
                // The whole group, so that its text stays in place whatever part of it is repainted.
                const Rect area = shown_.AreaOf(merged);
                PaintCell(merged.top, merged.left, area, fixed);
                PaintLines({{rows[r].index, area.top, area.bottom}}, {{columns[c].index, area.left, area.right}},
                           fixed);
            }
        }
    }

    Ink InkOf(int row, int col, const CellFormat* format, bool fixed) const {
        Ink ink{&grid_.FontOf(row, col), fixed ? grid_.ForeColorFixed() : grid_.ForeColor(),
                fixed ? grid_.BackColorFixed() : grid_.BackColor(), fixed ? grid_.TextStyleFixed() : grid_.TextStyle()};
        if (format) {
            ink.fore = format->foreColor ? format->foreColor : ink.fore;
            ink.back = format->backColor ? format->backColor : ink.back;
            ink.style = format->textStyle.value_or(ink.style);
        }
        if (!fixed && highlights_ && selection_.Contains(row, col) && !IsCursor(row, col)) {
            ink.fore = grid_.ForeColorSel();
            ink.back = grid_.BackColorSel();
        } else if (!grid_.Enabled() && !view_.onPaper) {
            ink.fore = colors::grayText;
        } else if (!fixed && IsCursor(row, col) && format && format->foreColor == grid_.ForeColorSel() &&
                   !format->backColor) {
            // A host that sets the current cell's text colour to that of the selection relies on the selection's
            // background; without it, the text could not be read.
            ink.back = grid_.BackColorSel();
        }
        return ink;
    }

    bool IsCursor(int row, int col) const {
        if (row == grid_.Row() && col == grid_.Col()) {
            return true;
        }
        return grid_.MergeCells() != GridMerge::never && shown_.Merged(row, col).Contains(grid_.Row(), grid_.Col());
    }

    void PaintCell(int row, int col, const Rect& area, bool fixed) {
        const CellFormat* format = grid_.FormatOf(row, col);
        const Ink ink = InkOf(row, col, format, fixed);
        const Rect inside = InsideLines(grid_, area, fixed);
        if (inside.Empty()) {
            return;
        }
        if (fixed || !view_.hits || !view_.hits->IsHit(row, col)) {
            PaintContents(row, col, area, inside, ink, format, fixed);
        } else {
            PaintHit(row, col, area, inside, ink, format);
        }
        if (!fixed && view_.marks && view_.marks->IsMarked(row, col)) {
            PaintMark(inside);
        }
    }

    // A bar over the first visible cell of each marked row, at the side where text begins.
    void PaintRowMarks() {
        constexpr OleColor green = 0x008000;
        if (shown_.columns.empty()) {
            return;
        }
        const Span& first = shown_.columns.front();
        for (const Span& row : scrolledRows_) {
            Rect bar =
                InsideLines(grid_, {first.start, row.start, first.end, row.end}, first.index < grid_.FixedCols());
            const int width = std::min(ScaledAtLeastOne(3, dpi_.x), bar.Width());
            if (mirrored_) {
                bar.left = bar.right - width;
            } else {
                bar.right = bar.left + width;
            }
            if (!bar.Intersect(dirty_).Empty() && view_.marks->IsRowMarked(row.index)) {
                surface_.FillRect(bar, green);
            }
        }
    }

    // A line at the end of the frozen columns, where the others scroll away.
    void PaintFrozenEnd() {
        const Span& last = frozenColumns_.back();
        if (last.index != NearestShown(ColumnAxis(grid_, view_), grid_.StandingCols() - 1, -1)) {
            return;
        }
        const int width = ScaledAtLeastOne(1, dpi_.x);
        const int x = mirrored_ ? last.start : last.end - width;
        surface_.FillRect({x, 0, x + width, cellsBottom_}, colors::darkShadow3d);
    }

    // A triangle in the upper corner at the end that text runs towards.
    void PaintMark(const Rect& inside) {
        constexpr OleColor red = 0x0000C0;
        const int size = std::min({ScaledAtLeastOne(6, dpi_.x), inside.Width(), inside.Height()});
        for (int line = 0; line < size; ++line) {
            const int width = size - line;
            const int left = mirrored_ ? inside.left : inside.right - width;
            surface_.FillRect({left, inside.top + line, left + width, inside.top + line + 1}, red);
        }
    }

    void PaintHit(int row, int col, const Rect& area, const Rect& inside, Ink ink, const CellFormat* format) {
        if (ink.back != grid_.BackColorSel()) {
            ink.fore = colors::infoText;
            ink.back = colors::infoBackground;
        }
        PaintContents(row, col, area, inside, ink, format, false);
        PaintHitFrame(inside, ink.fore, IsCursor(row, col));
    }

    // Frames a hit, because the background alone may be that of all cells in a scheme of high contrast.
    void PaintHitFrame(const Rect& inside, OleColor color, bool current) {
        const int across = std::min(ScaledAtLeastOne(current ? 2 : 1, dpi_.x), inside.Width());
        const int down = std::min(ScaledAtLeastOne(current ? 2 : 1, dpi_.y), inside.Height());
        surface_.FillRect({inside.left, inside.top, inside.right, inside.top + down}, color);
        surface_.FillRect({inside.left, inside.bottom - down, inside.right, inside.bottom}, color);
        surface_.FillRect({inside.left, inside.top, inside.left + across, inside.bottom}, color);
        surface_.FillRect({inside.right - across, inside.top, inside.right, inside.bottom}, color);
    }

    void PaintContents(int row, int col, const Rect& area, Rect inside, const Ink& ink, const CellFormat* format,
                       bool fixed) {
        const Rect marked = ShowsSortMark(grid_, row, col) ? PaintSortMark(row, col, inside, ink)
                            : !fixed                       ? PaintButton(row, col, inside)
                                                           : Rect{};
        if (inside.Empty()) {
            return;
        }
        const TextView stored = Trimmed(grid_.Cell(row, col).AsWide(scratch_));
        const TextView text = Trimmed(grid_.ShownText(row, col, stored, shownText_));
        const bool picture = format && format->picture;
        if (!picture && text.empty()) {
            surface_.FillRect(inside, ink.back);
            return;
        }
        // Text keeps its distance from the cell's own edges, not from the lines inside them, so that captions are
        // exactly above the texts below them.
        const Rect room = BesideMark(TextRoom(grid_, area, fixed), marked, mirrored_);
        const int alignment = static_cast<int>(grid_.AlignmentOf(row, col, stored));
        const bool broken = HasLineBreak(text);
        // The fast path draws from left to right.
        const bool plain = !mirrored_ || LooksSameBothWays(text);
        if (!picture && !broken && plain && ink.style == GridTextStyle::flat) {
            const int across = Across(alignment);
            const bool wrap = grid_.WordWrap();
            const int width = wrap || across != 0 ? surface_.MeasureText(text, *ink.font, 0, oneLine).width : 0;
            if (!wrap || width <= room.Width()) {
                const Point origin = OriginOf(room, {width, surface_.LineHeight(*ink.font)}, across, alignment % 3);
                surface_.DrawCellText(text, origin, inside, *ink.font, ink.fore, ink.back);
                return;
            }
        }
        PaintElaborate(text, inside, room, alignment, ink, picture ? format : nullptr);
    }

    // Draws the mark of a sorted column, takes its area off the cell's and returns it.
    Rect PaintSortMark(int row, int col, Rect& inside, const Ink& ink) {
        const SortMarkLayout mark = LayOutSortMark(grid_, surface_, row, col);
        const Rect end = SplitEnd(inside, mark.Width(), mirrored_);
        surface_.FillRect(end, ink.back);
        const ClipScope clip(surface_, end);
        // In a right-to-left grid, everything is the other way round: the number is on the outside of the arrow.
        const int left = mirrored_ ? end.right - mark.gap - mark.Arrow() : end.left + mark.gap;
        const int top = end.top + (end.Height() - mark.height) / 2;
        for (int line = 0; line < mark.height; ++line) {
            const int inset = grid_.SortDescending(col) ? line : mark.height - 1 - line;
            surface_.FillRect({left + inset, top + line, left + mark.Arrow() - inset, top + line + 1}, ink.fore);
        }
        if (!mark.number.empty()) {
            const int x = mirrored_ ? left - mark.numberWidth : left + mark.Arrow() + Scaled(1, dpi_.x);
            const int line = surface_.LineHeight(mark.font);
            const int y = end.top + (end.Height() - line) / 2;
            surface_.DrawLabel(mark.number, {x, y, x + mark.numberWidth, y + line}, mark.font, ink.fore, oneLine);
        }
        return end;
    }

    // Draws the button at the end of a cell, takes its area off the cell's and returns it.
    Rect PaintButton(int row, int col, Rect& inside) {
        if (!view_.buttons || !FitsButton(view_, inside) || !view_.buttons->HasButton(row, col, IsCursor(row, col))) {
            return {};
        }
        const Rect button = SplitEnd(inside, view_.buttonWidth, mirrored_);
        const bool pressed = row == view_.pressedRow && col == view_.pressedCol;
        // In the visual style, a button's edges let through what is below them.
        surface_.FillRect(button, grid_.BackColor());
        surface_.DrawFrameControl(button, view_.buttons->Themed() ? frame_control::themedCombo : frame_control::scroll,
                                  frame_control::comboArrow | (pressed ? frame_control::pushed : 0U) |
                                      (grid_.Enabled() ? 0U : frame_control::inactive));
        return button;
    }

    // Draws everything except a single plain run of text: pictures, several lines, raised or sunken letters.
    void PaintElaborate(TextView text, const Rect& inside, const Rect& room, int alignment, const Ink& ink,
                        const CellFormat* withPicture) {
        surface_.FillRect(inside, ink.back);
        const ClipScope clip(surface_, inside);
        if (withPicture) {
            const Size size = withPicture->picture->PixelSize(dpi_);
            const int placed = static_cast<int>(withPicture->pictureAlignment);
            const Point at = OriginOf(inside, size, Across(placed == 9 ? 0 : placed), placed % 3);
            surface_.DrawPicture(*withPicture->picture, {at.x, at.y, at.x + size.width, at.y + size.height});
        }
        if (text.empty()) {
            return;
        }
        const int across = Across(alignment);
        const bool wrap = grid_.WordWrap();
        const unsigned format =
            text_format::noPrefix | static_cast<unsigned>(across) | (wrap ? text_format::wordBreak : 0U) |
            (!wrap && !HasLineBreak(text) ? text_format::singleLine : 0U) | (mirrored_ ? text_format::rightToLeft : 0U);
        Size size = surface_.MeasureText(text, *ink.font, room.Width(), format);
        size.width = std::max(size.width, room.Width());
        const Point at = OriginOf(room, size, across, alignment % 3);
        const Rect lines{at.x, at.y, at.x + size.width, at.y + size.height};
        const int shift = ScaledAtLeastOne(1, dpi_.x);
        const bool sunken = ink.style == GridTextStyle::inset || ink.style == GridTextStyle::insetLight;
        const bool both = ink.style == GridTextStyle::raised || ink.style == GridTextStyle::inset;
        if (ink.style != GridTextStyle::flat) {
            // Light comes from the top left: it is on the upper edge of raised letters, and on the lower edge of sunken
            // ones.
            const int light = sunken ? shift : -shift;
            surface_.DrawLabel(text, lines.Offset(light, light), *ink.font, colors::buttonHighlight, format);
            if (both) {
                surface_.DrawLabel(text, lines.Offset(-light, -light), *ink.font, colors::buttonShadow, format);
            }
        }
        surface_.DrawLabel(text, lines, *ink.font, ink.fore, format);
    }

    static constexpr unsigned oneLine = text_format::singleLine | text_format::noPrefix;

    // Returns 0 for left, 1 for centre, 2 for right on the screen; a right-to-left grid uses the other side.
    int Across(int alignment) const { return mirrored_ ? 2 - alignment / 3 : alignment / 3; }

    // Returns the position of something of a given size in an area. What is too large starts at the area's start, so
    // that its first part is visible.
    Point OriginOf(const Rect& room, Size size, int across, int down) const {
        Point at{room.left, room.top};
        const int spareAcross = room.Width() - size.width;
        const int spareDown = room.Height() - size.height;
        if (spareAcross < 0) {
            at.x += mirrored_ ? spareAcross : 0;
        } else {
            at.x += spareAcross * across / 2;
        }
        at.y += std::max(0, spareDown) * down / 2;
        return at;
    }

    // Draws all lines of a block of cells: the lit ones first, then those in shadow over them.
    void PaintLines(const std::vector<Span>& rows, const std::vector<Span>& columns, bool fixed) {
        const GridLineStyle style = fixed ? grid_.GridLinesFixed() : grid_.GridLines();
        const int line = LineWidth(grid_, fixed);
        if (style == GridLineStyle::none) {
            return;
        }
        const int top = rows.front().start;
        const int bottom = rows.back().end;
        const int left = std::min(columns.front().start, columns.back().start);
        const int right = std::max(columns.front().end, columns.back().end);
        const auto atStart = [&](OleColor color) {
            for (const Span& row : rows) {
                surface_.FillRect({left, row.start, right, row.start + line}, color);
            }
            for (const Span& column : columns) {
                surface_.FillRect({column.start, top, column.start + line, bottom}, color);
            }
        };
        const auto atEnd = [&](OleColor color) {
            for (const Span& row : rows) {
                surface_.FillRect({left, row.end - line, right, row.end}, color);
            }
            for (const Span& column : columns) {
                surface_.FillRect({column.end - line, top, column.end, bottom}, color);
            }
        };
        if (!Is3d(style)) {
            const OleColor color = fixed ? grid_.GridColorFixed() : grid_.GridColor();
            for (const Span& row : rows) {
                surface_.FillRect({left, row.end - line, right, row.end}, color);
            }
            for (const Span& column : columns) {
                const int x = mirrored_ ? column.start : column.end - line;
                surface_.FillRect({x, top, x + line, bottom}, color);
            }
        } else if (style == GridLineStyle::inset) {
            // A line cut in between the cells makes them look raised.
            atStart(colors::buttonHighlight);
            atEnd(grid_.Appearance() == GridAppearance::threeD ? colors::darkShadow3d : colors::buttonShadow);
        } else {
            atStart(grid_.Appearance() == GridAppearance::threeD ? colors::darkShadow3d : colors::buttonShadow);
            atEnd(colors::buttonHighlight);
        }
    }

    void PaintFocus() {
        if (grid_.FocusRect() == GridFocusRect::none || !view_.focused || grid_.Rows() == 0 || grid_.Cols() == 0) {
            return;
        }
        const int row = grid_.Row();
        const int col = grid_.Col();
        const bool fixedRow = row < grid_.FixedRows();
        const bool fixedCol = col < grid_.FixedCols();
        const Rect frame = InsideLines(grid_, shown_.AreaOf(shown_.Merged(row, col)), fixedRow || fixedCol);
        if (frame.Intersect(dirty_).Empty()) {
            return;
        }
        if (grid_.FocusRect() == GridFocusRect::light) {
            surface_.DrawFocusRect(frame, Rgb(0, 0, 0));
            return;
        }
        const int thick = std::min({ScaledAtLeastOne(2, dpi_.x), frame.Width() / 2, frame.Height() / 2});
        surface_.InvertRect({frame.left, frame.top, frame.right, frame.top + thick});
        surface_.InvertRect({frame.left, frame.bottom - thick, frame.right, frame.bottom});
        surface_.InvertRect({frame.left, frame.top + thick, frame.left + thick, frame.bottom - thick});
        surface_.InvertRect({frame.right - thick, frame.top + thick, frame.right, frame.bottom - thick});
    }

    const Grid& grid_;
    const View& view_;
    Surface& surface_;
    const Rect dirty_;
    const Dpi dpi_;
    const bool mirrored_;
    const CellRange selection_;
    const Shown shown_;
    bool highlights_ = false;
    int cellsBottom_ = 0;
    std::vector<Span> fixedRows_;
    std::vector<Span> scrolledRows_;
    std::vector<Span> fixedColumns_;
    std::vector<Span> frozenColumns_;
    std::vector<Span> scrolledColumns_;
    Text scratch_;
    Text shownText_;
};

}  // namespace

Rect InsideLines(const Grid& grid, const Rect& area, bool fixed) {
    const int line = LineWidth(grid, fixed);
    const bool allRound = Is3d(fixed ? grid.GridLinesFixed() : grid.GridLines());
    const bool mirrored = grid.RightToLeft();
    return {area.left + (allRound || mirrored ? line : 0), area.top + (allRound ? line : 0),
            area.right - (allRound || !mirrored ? line : 0), area.bottom - line};
}

Rect ButtonArea(const Grid& grid, const View& view, int row, int col) {
    if (!view.buttons || row < grid.FixedRows() || col < grid.FixedCols()) {
        return {};
    }
    const Shown shown(grid, view);
    const CellRange merged = shown.Merged(row, col);
    Rect inside = InsideLines(grid, shown.AreaOf(merged), false);
    if (!FitsButton(view, inside) ||
        !view.buttons->HasButton(merged.top, merged.left, merged.Contains(grid.Row(), grid.Col()))) {
        return {};
    }
    return SplitEnd(inside, view.buttonWidth, grid.RightToLeft());
}

bool IsCut(const Grid& grid, const View& view, Surface& surface, int row, int col) {
    Text scratch;
    Text shownText;
    const TextView text = Trimmed(grid.ShownText(row, col, grid.Cell(row, col).AsWide(scratch), shownText));
    const bool fixed = row < grid.FixedRows() || col < grid.FixedCols();
    const Rect area = CellArea(grid, view, row, col);
    Rect marked = ButtonArea(grid, view, row, col);
    if (ShowsSortMark(grid, row, col)) {
        Rect inside = InsideLines(grid, area, fixed);
        marked = SplitEnd(inside, LayOutSortMark(grid, surface, row, col).Width(), grid.RightToLeft());
    }
    const Rect room = BesideMark(TextRoom(grid, area, fixed), marked, grid.RightToLeft());
    const unsigned format = text_format::noPrefix | (grid.WordWrap() ? text_format::wordBreak : 0U) |
                            (HasLineBreak(text) || grid.WordWrap() ? 0U : text_format::singleLine);
    const Size size = surface.MeasureText(text, grid.FontOf(row, col), room.Width(), format);
    return size.width > room.Width() || size.height > InsideLines(grid, area, fixed).Height();
}

void Paint(const Grid& grid, const View& view, Surface& surface, const Rect& dirty) {
    Painter(grid, view, surface, dirty).Run();
}

}  // namespace qvx::flexgrid
