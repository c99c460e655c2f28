#include "widgets/flexgrid/format_string.h"

#include <algorithm>

#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

namespace {

FormatSegment ParseSegment(TextView segment) {
    FormatSegment parsed;
    if (!segment.empty()) {
        switch (segment.front()) {
            case u'<':
                parsed.alignment = GridAlignment::leftCenter;
                break;
            case u'^':
                parsed.alignment = GridAlignment::centerCenter;
                break;
            case u'>':
                parsed.alignment = GridAlignment::rightCenter;
                break;
            default:
                break;
        }
    }
    parsed.text = segment.substr(parsed.alignment ? 1 : 0);
    return parsed;
}

std::vector<FormatSegment> ParseSegments(TextView list) {
    std::vector<FormatSegment> segments;
    if (list.empty()) {
        return segments;
    }
    for (;;) {
        const std::size_t bar = list.find(u'|');
        segments.push_back(ParseSegment(list.substr(0, bar)));
        if (bar == TextView::npos) {
            return segments;
        }
        list.remove_prefix(bar + 1);
    }
}

}  // namespace

ParsedFormat ParseFormatString(TextView format) {
    const std::size_t semicolon = format.find(u';');
    ParsedFormat parsed;
    parsed.columns = ParseSegments(format.substr(0, semicolon));
    if (semicolon != TextView::npos) {
        parsed.rows = ParseSegments(format.substr(semicolon + 1));
    }
    return parsed;
}

int Grid::WidthFor(TextView text) const {
    const int dpi = metrics_->Resolution().x;
    const int gridLine = 1;
    const int pixels = metrics_->TextWidth(text, font_) + 2 * Scaled(cellMarginAcross, dpi) + gridLine;
    return PixelsToTwips(pixels, dpi);
}

void Grid::SetFormatString(TextView format) {
    qvx::Text stored(format);
    const ParsedFormat parsed = ParseFormatString(stored);
    std::vector<TextView> headers;
    headers.reserve(parsed.columns.size());
    for (const FormatSegment& segment : parsed.columns) {
        headers.push_back(segment.text);
    }
    const auto target = [&] {
        // More segments than any grid can have are refused by their number, before they could overflow one.
        const auto needed = [](std::size_t count, int limit) {
            return static_cast<int>(std::min(count, static_cast<std::size_t>(limit) + 1));
        };
        Shape shape = CurrentShape();
        shape.cols = std::max(shape.cols, needed(parsed.columns.size(), maxCols));
        shape.rows = std::max(shape.rows, needed(parsed.rows.size(), maxRows));
        if (!parsed.columns.empty()) {
            shape.rows = std::max(shape.rows, 1);
        }
        if (!parsed.rows.empty()) {
            shape.cols = std::max(shape.cols, 1);
        }
        return shape;
    };
    ChangeShape(target, [&](const Shape& shape) {
        columns_.Reserve(shape.cols);
        const int oldRows = Rows();
        store_.InsertEmptyRows(oldRows, shape.rows - oldRows);
        try {
            CellStore::Batch batch(store_);
            if (!headers.empty()) {
                store_.SetCells(0, 0, headers);
            }
            for (std::size_t row = 0; row < parsed.rows.size(); ++row) {
                if (const TextView caption = parsed.rows[row].text; !caption.empty()) {
                    store_.SetCell(static_cast<int>(row), 0, caption);
                }
            }
            batch.Commit();
        } catch (...) {
            store_.RemoveRows(oldRows, Rows() - oldRows, [](RowId) {});
            throw;
        }
        columns_.Resize(shape.cols);
        for (std::size_t col = 0; col < parsed.columns.size(); ++col) {
            ApplySegment(static_cast<int>(col), parsed.columns[col]);
        }
        int captionWidth = 0;
        for (const FormatSegment& segment : parsed.rows) {
            columns_.Change(0, [&](ColumnSettings& captions) {
                captions.alignment = segment.alignment.value_or(captions.alignment);
            });
            if (!segment.text.empty()) {
                captionWidth = std::max(captionWidth, WidthFor(segment.text));
            }
        }
        if (captionWidth > 0) {
            columns_.Change(0, [&](ColumnSettings& captions) { captions.width = captionWidth; });
        }
        formatString_ = std::move(stored);
    });
}

void Grid::ApplySegment(int col, const FormatSegment& segment) {
    columns_.Change(col, [&](ColumnSettings& column) {
        column.alignment = segment.alignment.value_or(column.alignment);
        if (!segment.text.empty()) {
            column.width = WidthFor(segment.text);
        }
    });
}

}  // namespace qvx::flexgrid
