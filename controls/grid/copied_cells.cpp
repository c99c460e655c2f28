#include "controls/grid/copied_cells.h"

#include <algorithm>
#include <vector>

#include "common/utf8.h"
#include "controls/grid/clipboard_text.h"
#include "controls/grid/html_table.h"

namespace qvx::grid {
namespace {

// Calls visit(cells) for each row of the selection that is not filtered out; returns false without any.
template <class Visit>
bool ForEachCopiedRow(const flexgrid::Grid& grid, const flexgrid::CellRange& range, Visit visit) {
    const int first = grid.UnfilteredRow(range.top, 1);
    if (range.Empty() || first < 0 || first > range.bottom) return false;
    grid.ForEachRow(first, range.bottom, [&](int row, const flexgrid::RowView& cells) {
        if (!grid.RowFiltered(row)) visit(cells);
    });
    return true;
}

// A position in the header, which has room for ten digits.
std::string PositionText(std::size_t position) {
    std::string digits = std::to_string(position);
    return std::string(10 - std::min<std::size_t>(digits.size(), 10), '0') + digits;
}

// Puts the clipboard's header in front of a fragment, with the positions of its parts in bytes.
std::string WithHeader(std::string_view fragment) {
    constexpr std::string_view before = "<html><body>\r\n<!--StartFragment-->";
    constexpr std::string_view after = "<!--EndFragment-->\r\n</body></html>";
    const auto header = [](std::size_t start, std::size_t end, std::size_t first, std::size_t last) {
        return "Version:0.9\r\nStartHTML:" + PositionText(start) + "\r\nEndHTML:" + PositionText(end) +
               "\r\nStartFragment:" + PositionText(first) + "\r\nEndFragment:" + PositionText(last) + "\r\n";
    };
    const std::size_t start = header(0, 0, 0, 0).size();
    const std::size_t first = start + before.size();
    const std::size_t last = first + fragment.size();
    std::string document = header(start, last + after.size(), first, last);
    document.append(before).append(fragment).append(after);
    return document;
}

}  // namespace

std::optional<Text> CopiedText(const flexgrid::Grid& grid) {
    const flexgrid::CellRange range = grid.Selection();
    ClipboardWriter writer;
    Text scratch;
    const bool any = ForEachCopiedRow(grid, range, [&](const flexgrid::RowView& cells) {
        for (int col = range.left; col <= range.right; ++col) writer.AddCell(cells[col].AsWide(scratch));
        writer.EndRow();
    });
    return any ? std::optional(writer.Take()) : std::nullopt;
}

std::optional<std::string> CopiedHtml(const flexgrid::Grid& grid, const ControlState& state) {
    constexpr std::int64_t mostCells = 100'000;
    const flexgrid::CellRange range = grid.Selection();
    const std::int64_t columns = std::int64_t{range.right} - range.left + 1;
    if (range.Empty() || (columns == 1 && range.top == range.bottom)) return std::nullopt;
    std::vector<TextView> alignments;
    for (int col = range.left; col <= range.right; ++col)
        alignments.push_back(HtmlAlignment(ExportColumnOf(grid, state, col)));
    Text table = u"<table>\r\n";
    Text scratch;
    std::int64_t cellsLeft = mostCells;
    const bool any = ForEachCopiedRow(grid, range, [&](const flexgrid::RowView& cells) {
        if ((cellsLeft -= columns) < 0) return;
        table += u"<tr>";
        for (int col = range.left; col <= range.right; ++col) {
            table.append(u"<td style=\"text-align:");
            table.append(alignments[static_cast<std::size_t>(col - range.left)]).append(u"\">");
            AppendHtmlText(table, cells[col].AsWide(scratch));
            table += u"</td>";
        }
        table += u"</tr>\r\n";
    });
    if (!any || cellsLeft < 0) return std::nullopt;
    table += u"</table>";
    return WithHeader(EncodeUtf8(table));
}

}  // namespace qvx::grid
