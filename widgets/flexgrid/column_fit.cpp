#include "widgets/flexgrid/column_fit.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "common/widest_texts.h"
#include "widgets/flexgrid/paint.h"
#include "widgets/flexgrid/sort_mark.h"
#include "widgets/flexgrid/text_metrics.h"

namespace qvx::flexgrid {
namespace {

constexpr int cellsToFit = 200'000;
constexpr int smallestFit = 4;  // pixels at 96 dots per inch, as for a border that is dragged

// Collects what is in a column, by font.
class ColumnTexts {
  public:
    ColumnTexts(const Grid& grid, Surface& surface, int col) : grid_(grid), surface_(surface), col_(col) {}

    void AddRows(int first, int last) {
        if (last < first) {
            return;
        }
        grid_.ForEachRow(first, last, [&](int row, const RowView& cells) {
            if (grid_.RowPixels(row) > 0) {
                AddCell(row, cells);
            }
        });
    }

    int Width() const {
        int width = picture_;
        for (const auto& [font, texts] : fonts_) {
            width = std::max(width, texts.Width());
        }
        return width;
    }

  private:
    void AddCell(int row, const RowView& cells) {
        if (IsMergedAcross(row, cells)) {
            return;
        }
        if (const CellFormat* format = grid_.FormatOf(row, col_); format && format->picture) {
            picture_ = std::max(picture_, format->picture->PixelSize(surface_.Resolution()).width);
        }
        TextView text = grid_.ShownText(row, col_, cells[col_].AsWide(scratch_), shown_);
        text = text.substr(0, text.find_last_not_of(u' ') + 1);
        if (text.empty()) {
            return;
        }
        WidestTexts& texts = TextsOf(grid_.FontOf(row, col_));
        for (std::size_t end = text.find_first_of(u"\r\n"); end != TextView::npos; end = text.find_first_of(u"\r\n")) {
            texts.Add(text.substr(0, end));
            text.remove_prefix(end + 1);
        }
        texts.Add(text);
    }

    bool IsMergedAcross(int row, const RowView& cells) const {
        if (grid_.MergeCells() == GridMerge::never || !grid_.MergeRow(row) || cells[col_].Empty()) {
            return false;
        }
        return (col_ > 0 && cells[col_ - 1] == cells[col_]) ||
               (col_ + 1 < cells.Count() && cells[col_ + 1] == cells[col_]);
    }

    WidestTexts& TextsOf(const FontSpec& font) {
        if (last_ != &font) {
            last_ = &font;
            const auto found =
                std::find_if(fonts_.begin(), fonts_.end(), [&](const auto& entry) { return entry.first == font; });
            if (found != fonts_.end()) {
                current_ = &found->second;
            } else {
                constexpr unsigned format = text_format::singleLine | text_format::noPrefix;
                auto measure = [this, font](TextView text) {
                    return surface_.MeasureText(text, font, 0, format).width;
                };
                current_ = &fonts_.emplace_back(font, WidestTexts(std::move(measure))).second;
            }
        }
        return *current_;
    }

    const Grid& grid_;
    Surface& surface_;
    const int col_;
    int picture_ = 0;
    std::deque<std::pair<FontSpec, WidestTexts>> fonts_;
    const FontSpec* last_ = nullptr;
    WidestTexts* current_ = nullptr;
    Text scratch_;
    Text shown_;
};

int HeaderMark(const Grid& grid, Surface& surface, int col) {
    return grid.FixedRows() > 0 ? SortMarkWidth(grid, surface, 0, col) : 0;
}

}  // namespace

CellRange ColumnsToFit(const Grid& grid, int col) {
    const CellRange selected = grid.Selection();
    const bool whole = selected.top <= grid.FixedRows() && selected.bottom == grid.Rows() - 1;
    const bool several = whole && selected.left < selected.right && grid.Rows() > grid.FixedRows() + 1;
    CellRange columns = selected;
    if (!several || col < selected.left || col > selected.right) {
        columns.left = columns.right = col;
    }
    return columns;
}

int RowsToFit(const CellRange& columns) { return cellsToFit / (columns.right - columns.left + 1); }

int FittedWidth(const Grid& grid, const View& view, Surface& surface, int col, int rows) {
    const Dpi dpi = surface.Resolution();
    ColumnTexts headers(grid, surface, col);
    headers.AddRows(0, grid.FixedRows() - 1);
    const int header = headers.Width() + HeaderMark(grid, surface, col);
    ColumnTexts texts(grid, surface, col);
    const std::int64_t bottom = std::int64_t{grid.FixedRows()} + rows - 1;
    texts.AddRows(grid.FixedRows(), static_cast<int>(std::min<std::int64_t>(bottom, grid.Rows() - 1)));
    const Shown shown(grid, view);
    if (!shown.rows.empty() && shown.rows.back().index > bottom) {
        texts.AddRows(std::max(grid.TopRow(), static_cast<int>(bottom) + 1), shown.rows.back().index);
    }
    int width = texts.Width();
    if (header == 0 && width == 0) {
        return grid.ColWidth(col);
    }
    if (view.buttons && col >= grid.FixedCols() && grid.Rows() > grid.FixedRows() &&
        view.buttons->HasButton(grid.FixedRows(), col, true)) {
        width = std::max(width + view.buttonWidth, 2 * view.buttonWidth);
    }
    const int margins =
        2 * ScaledAtLeastOne(cellMarginAcross, dpi.x) + std::max(LineWidth(grid, false), LineWidth(grid, true));
    const int most = std::max(view.client.width, 1);
    const int pixels = std::min(std::max({header + margins, width + margins, Scaled(smallestFit, dpi.x)}), most);
    return PixelsToTwips(pixels, dpi.x);
}

}  // namespace qvx::flexgrid
