#include "controls/grid/html_table.h"

#include "common/utf8.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {
namespace {

TextView Aligned(ExportAlignment alignment, const ExportColumn& column) {
    switch (alignment) {
        case ExportAlignment::left:
            return u"left";
        case ExportAlignment::center:
            return u"center";
        case ExportAlignment::right:
            return u"right";
        case ExportAlignment::general:
            break;
    }
    return column.dataType == data_type::digits || column.dataType == data_type::numerics ? u"right" : u"left";
}

class HtmlWriter final : public TableWriter {
  public:
    HtmlWriter(const ExportedCells& cells, ExportBlocks& blocks) : columns_(cells.columns), blocks_(blocks) {
        blocks_.Add(
            "<!DOCTYPE html>\r\n<html>\r\n<head>\r\n<meta charset=\"utf-8\">\r\n<title>Table</title>\r\n"
            "<style>table { border-collapse: collapse } th, td { border: 1px solid; padding: 0.2em 0.5em }\r\n"
            "td, th { white-space: pre-wrap } .l { text-align: left } .c { text-align: center } "
            ".r { text-align: right }</style>\r\n</head>\r\n<body>\r\n<table>\r\n");
    }
    void AddRow(bool header, std::span<const TextView> texts) override {
        line_ = u"<tr>";
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const ExportColumn& column = columns_[i];
            line_ += header ? u"<th class=\"" : u"<td class=\"";
            line_ += Aligned(header ? column.headerAlignment : column.alignment, column).front();
            line_ += u"\">";
            AppendHtmlText(line_, texts[i]);
            line_ += header ? u"</th>" : u"</td>";
        }
        line_ += u"</tr>\r\n";
        blocks_.Add(EncodeUtf8(line_));
    }
    void End() override { blocks_.Add("</table>\r\n</body>\r\n</html>\r\n"); }

  private:
    const std::vector<ExportColumn>& columns_;
    ExportBlocks& blocks_;
    Text line_;
};

}  // namespace

// A line end of any kind becomes a line break.
void AppendHtmlText(Text& to, TextView text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'&') {
            to += u"&amp;";
        } else if (c == u'<') {
            to += u"&lt;";
        } else if (c == u'>') {
            to += u"&gt;";
        } else if (c == u'\r' || c == u'\n') {
            to += u"<br>";
            if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
        } else {
            const bool control = (c < u' ' && c != u'\t') || (c >= 0x7F && c < 0xA0) || c >= 0xFFFE;
            to += control ? u'\uFFFD' : c;
        }
    }
}

TextView HtmlAlignment(const ExportColumn& column) { return Aligned(column.alignment, column); }

std::unique_ptr<TableWriter> MakeHtmlWriter(const ExportedCells& cells, ExportBlocks& blocks) {
    return std::make_unique<HtmlWriter>(cells, blocks);
}

}  // namespace qvx::grid
