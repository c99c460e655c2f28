#include <gtest/gtest.h>

#include "controls/grid/csv_import.h"
#include "controls/grid/xlsx_sheet.h"
#include "tests/unit/grid/editor_host.h"
#include "tests/unit/grid/export_fixture.h"

namespace qvx::grid {
namespace {

// Expects that the call raises error 5.
template <class Call>
void ExpectRefused(Call call, TextView description) {
    try {
        call();
        ADD_FAILURE() << Narrow(description);
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), errors::invalidProcedureCall);
        EXPECT_EQ(Narrow(error.Description()), Narrow(description));
    }
}

class ExportTest : public EntryGridTest {
  protected:
    ExportTest() {
        Fill(grid, {u"No\tName\tQty\tRate\tDelivery\tKey", u"1\ta,b\t10\t1.5\t05/03/2024\tk1",
                    u"2\tsay \"so\"\t1,250\t\tsoon\tk2", u"3\ttwo\r\nlines\t007\t1E+20\t28/02/1900\tk3"});
        // The fixture's rows end at a line end, so this text is set by itself.
        grid.SetRows(4);
        grid.SetTextMatrix(3, 0, u"3");
        grid.SetTexts(3, 1, std::vector<TextView>{u"two\r\nlines", u"007", u"1E+20", u"28/02/1900", u"k3"});
        state.columnsDataType = u";Qty-0;Rate-1;Delivery-2;";
        grid.SetColWidth(5, 0);
    }
    std::string Csv(TextEncoding encoding = TextEncoding::utf8, bool selectedOnly = false) {
        return Exported(grid, state, {.separator = u';', .encoding = encoding}, selectedOnly);
    }
    std::string Xlsx() { return Exported(grid, state, {.format = ExportFormat::xlsx}); }
};

TEST_F(ExportTest, WritesTheCellsThatAreShown) {
    const std::string mark = "\xEF\xBB\xBF";
    const std::string header = "No;Name;Qty;Rate;Delivery\r\n";
    const std::string second = "2;\"say \"\"so\"\"\";1,250;;soon\r\n";
    const std::string third = "3;\"two\r\nlines\";007;1E+20;28/02/1900\r\n";
    EXPECT_EQ(Csv(), mark + header + "1;a,b;10;1.5;05/03/2024\r\n" + second + third);
    grid.SetRowHeight(1, 0);
    EXPECT_EQ(Csv(), mark + header + second + third);
    grid.Select(2, 1, 1, 2);
    EXPECT_EQ(Csv(TextEncoding::ansi, true), "Name;Qty\r\n\"say \"\"so\"\"\";1,250\r\n");
    grid.SetRowHeight(0, 0);
    grid.SetTextMatrix(2, 1, u"\u20AC\xE9");
    EXPECT_EQ(Csv(TextEncoding::ansi, true), "?\xE9;1,250\r\n");
    EXPECT_EQ(Csv(TextEncoding::utf16, true), std::string("\xFF\xFE\xAC\x20\xE9\0;\0"
                                                          "1\0,\0"
                                                          "2\0"
                                                          "5\0"
                                                          "0\0\r\0\n\0",
                                                          22));
}

TEST_F(ExportTest, EndsWhenItIsCancelledOrTheRowsMove) {
    grid.SetRows(1000);
    MemoryFile file;
    ExportBlocks blocks(file);
    const ExportOptions options;
    const ExportedCells cells = ChooseCells(grid, state, false);
    EXPECT_EQ(cells.total, 999);
    const auto writer = MakeTableWriter(options, cells, blocks);
    std::vector<std::int64_t> seen;
    EXPECT_FALSE(WriteTable(grid, cells, *writer, [&](std::int64_t done) {
        seen.push_back(done);
        return seen.size() < 2;
    }));
    EXPECT_EQ(seen, (std::vector<std::int64_t>{256, 512}));
    const auto removing = [&](std::int64_t) {
        grid.SetCols(2);
        return true;
    };
    ExpectRefused([&] { WriteTable(grid, cells, *writer, removing); },
                  u"The grid's rows or columns have changed meanwhile");
}

TEST_F(ExportTest, WritesHtml) {
    grid.SetTextMatrix(2, 1, Text(u"<b> & \0", 7));
    grid.SetColAlignment(1, flexgrid::GridAlignment::centerCenter);
    const std::string html = Exported(grid, state, {.format = ExportFormat::html});
    for (const char* part : {"<th class=\"c\">Name</th><th class=\"r\">Qty</th>",
                             "<td class=\"c\">&lt;b&gt; &amp; \xEF\xBF\xBD</td><td class=\"r\">1,250</td>",
                             "<td class=\"c\">two<br>lines</td>", "</tr>\r\n</table>\r\n</body>\r\n</html>\r\n"})
        EXPECT_NE(html.find(part), std::string::npos) << part << "\n" << html;
}

TEST_F(ExportTest, WritesWorkbooks) {
    grid.SetTextMatrix(2, 1, u"_x0041_ \x1\xD800 <\u20AC>");
    grid.SetColWidth(1, 1050);
    grid.SetColAlignment(2, flexgrid::GridAlignment::centerCenter);
    const std::string xlsx = Xlsx();
    for (const char* part :
         {"formatCode=\"dd/mm/yyyy\"", "<col min=\"2\" max=\"2\" width=\"10.00\" customWidth=\"1\"/>",
          "<pane ySplit=\"1\" topLeftCell=\"A2\" activePane=\"bottomLeft\" state=\"frozen\"/>",
          "<row r=\"1\"><c r=\"A1\" s=\"4\" t=\"inlineStr\"><is><t xml:space=\"preserve\">No</t></is></c>",
          "<c r=\"C2\" s=\"2\"><v>10</v></c><c r=\"D2\" s=\"0\"><v>1.5</v></c><c r=\"E2\" s=\"8\"><v>45356</v></c>",
          "<t xml:space=\"preserve\">_x005F_x0041_ _x0001_\xEF\xBF\xBD &lt;\xE2\x82\xAC&gt;</t>",
          // What a number or a date could not hold stays a text; an empty cell is none.
          "preserve\">1,250</t></is></c><c r=\"E3\"", "preserve\">soon<", "<c r=\"C4\" s=\"2\"><v>7</v></c>",
          "<v>1E+20</v>", "preserve\">28/02/1900<", "</row></sheetData></worksheet>"})
        EXPECT_NE(xlsx.find(part), std::string::npos) << part << "\n" << xlsx;
    state.columnFormats = u"[Rate]#,##0.0 <kg>,[Delivery]d mmm yyyy,[Key]0";
    const std::string formatted = Xlsx();
    for (const char* part : {"<numFmts count=\"3\"><numFmt numFmtId=\"164\" formatCode=\"dd/mm/yyyy\"/>",
                             "numFmtId=\"165\" formatCode=\"#,##0.0\\ \\&lt;\\k\\g\\&gt;\"/>",
                             "numFmtId=\"166\" formatCode=\"d mmm yyyy\"/>", "<cellXfs count=\"20\">",
                             "<c r=\"D2\" s=\"12\"><v>1.5</v></c><c r=\"E2\" s=\"16\"><v>45356</v></c>"})
        EXPECT_NE(formatted.find(part), std::string::npos) << part << "\n" << formatted;
    grid.SetTextMatrix(1, 1, Text(32'768, u'x'));
    ExpectRefused([&] { Xlsx(); }, u"A cell of a worksheet has at most 32,767 characters");
    grid.SetRows(1'048'577);
    ExpectRefused([&] { Xlsx(); }, u"A worksheet has at most 1,048,576 rows");
}

TEST(SheetDates, AreReadByTheFormatThatWroteThem) {
    const struct {
        TextView text, format;
        std::optional<double> number;
        TextView shown;
    } cases[] = {
        {u"05/03/2024", u"DD/MM/YYYY", 45356, u"dd/mm/yyyy"},
        {u"03/05/2024", u"mm/dd/yyyy", 45356, u"mm/dd/yyyy"},
        {u"2024-03-05", u"yyyy-mm-dd", 45356, u"yyyy-mm-dd"},
        {u"Mar/2024", u"mmm/yyyy", 45352, u"mmm/yyyy"},
        {u"03/2024", u"mm/yyyy", 45352, u"mm/yyyy"},
        {u"01/03/1900", u"dd/mm/yyyy", 61, u"dd/mm/yyyy"},
        {u"28/02/1900", u"dd/mm/yyyy", std::nullopt, u"dd/mm/yyyy"},
        {u"2024-03-05", u"dd/mm/yyyy", std::nullopt, u"dd/mm/yyyy"},
        {u"05/03/2024 06:00 PM", u"dd/mm/yyyy hh:nn AM/PM", 45356.75, u"dd/mm/yyyy hh:mm AM/PM"},
        {u"5.Mar.24", u"d.mmm.yy", 45356, u"d\\.mmm\\.yy"},
        {u"", u"", std::nullopt, u"General"},
    };
    for (const ShortDateOrder order : {ShortDateOrder::dayMonthYear, ShortDateOrder::monthDayYear}) {
        for (const auto& c : cases) {
            EXPECT_EQ(SheetDate(c.text, c.format, {order, 2024, u"/"}), c.number) << Narrow(c.text);
            EXPECT_EQ(Narrow(SheetDateFormat(c.format)), Narrow(c.shown));
        }
    }
}

TEST(ExportNames, AreCheckedBeforeAnythingIsWritten) {
    EXPECT_EQ(FormatNamed(u"", u"c:\\x.y\\stock.XLSX"), ExportFormat::xlsx);
    EXPECT_EQ(FormatNamed(u"", u"a.htm"), ExportFormat::html);
    EXPECT_EQ(FormatNamed(u"CSV", u"a.htm"), ExportFormat::csv);
    for (const TextView name : {u"stock", u"stock.pdf", u"x.csv\\stock"})
        ExpectRefused([&] { FormatNamed(u"", name); }, u"The format must be csv, html or xlsx");
    EXPECT_EQ(SeparatorNamed(u"\t"), u'\t');
    for (const TextView separator : {u"", u"\"", u"\r", u"\n", u"ab", u"\xD800"})
        ExpectRefused([&] { SeparatorNamed(separator); },
                      u"The separator must be one character, and neither a quote nor a line end");
    ExpectRefused([] { EncodingNamed(u"utf8"); }, u"The encoding must be utf-8, utf-16 or ansi");
}

TEST(FileEncodings, AreRecognised) {
    const struct {
        std::string_view bytes;
        TextView encoding;
        Text text;
    } cases[] = {
        {"", u"", u""},
        {"\xEF\xBB\xBF\xC3\xA9", u"", u"\xE9"},
        {"\xC3\xA9", u"", u"\xE9"},
        {"\xC3", u"", u"\xC3"},  // truncated UTF-8 is the code page's
        {"\xED\xA0\x80", u"", u"\xED\xA0\x80"},
        {"\xC3\xA9", u"ANSI", u"\xC3\xA9"},
        {std::string_view("\xFF\xFE\0\xD8", 4), u"", u"\xD800"},
        {std::string_view("\xFE\xFF\0a", 4), u"utf-8", u"a"},
        {std::string_view("a\0\0\0", 4), u"utf-16", Text(u"a\0", 2)},
    };
    for (const auto& c : cases) EXPECT_EQ(DecodeFile(c.bytes, c.encoding, Latin1Page()), c.text) << c.bytes;
    ExpectRefused([] { DecodeFile("\xC3", u"utf-8", Latin1Page()); }, u"The file is not valid UTF-8");
    ExpectRefused([] { DecodeFile("\xEF\xBB\xBF\xC3", u"", Latin1Page()); }, u"The file is not valid UTF-8");
    ExpectRefused([] { DecodeFile("\xFF\xFE\x41", u"", Latin1Page()); }, u"The file is not valid UTF-16");
}

class ImportTest : public EntryGridTest {
  protected:
    ImportTest() {
        Fill(grid, {u"No\tName\tQty\tItem\tKey\tLocked", u"1\ta\t1\tPen\tk\tx"});
        state.columnsDataType = u";Qty-0;";
        state.unChangableColumns = u";Item;";
        state.inActiveColumns = u";Locked;";
        state.columnsMaxLength = u";Key-3;";
        state.autoRecordNumber = true;
        sources.list = [](int) { return ListOf({u"Pen", u"Pencil"}); };
        host.listens = false;
    }
    int Import(TextView text, bool hasHeader = true) {
        CsvRows rows(grid, text, u',', hasHeader);
        return ImportRows(grid, state, history, host, sources, rows);
    }

    EditorHost host{grid};
    CellSources sources;
};

TEST_F(ImportTest, AddsRowsAsOneStep) {
    const struct {
        TextView text;
        bool hasHeader;
        int count;
        std::string rows;
        std::string reports;
    } cases[] = {
        {u"", true, 0, "", ""},
        {u"Name\r\n", true, 0, "", ""},
        {u"qty,NAME,Item\r\n5,\"x\r\ny\",Pencil\r\n\r\n\"6\",z\r\n", true, 2, "/2,x\r\ny,5,Pencil,,/3,z,6,,,", ""},
        {u"9,b,2,Pen,k2,x,more,,again\n", false, 1, "/2,b,2,Pen,k2,",
         "1 Locked '': The column cannot be edited\n1  'more': There is no column for this cell\n"
         "1  'again': There is no column for this cell\n"},
        {u"Other,Qty,Item,Key\r\n,\"12\n%\",none,long\r\nq,x,pe,k,\"\"\"\n", true, 2, "/2,,12,Pen,lon,/3,,0,Pen,k,",
         "1 Other '': The grid has no such column\n2 Qty '12\n%': The column does not take this text as it is\n"
         "2 Item 'none': The column does not take this text as it is\n"
         "2 Key 'long': The column does not take this text as it is\n"
         "4  '\"\"\"': There is no column for this cell\n4 Qty 'x': The column does not take this text as it is\n"
         "4 Item 'pe': The column does not take this text as it is\n"},
    };
    const std::string before = flexgrid::Shown(grid);
    for (const auto& c : cases) {
        for (const bool listens : {false, true}) {
            SCOPED_TRACE(Narrow(c.text));
            host.listens = listens;
            host.importReports.clear();
            EXPECT_EQ(Import(c.text, c.hasHeader), c.count);
            EXPECT_EQ(flexgrid::Shown(grid), before + c.rows);
            EXPECT_EQ(host.importReports, listens ? c.reports : "");
            EXPECT_EQ(history.Undo(state) != nullptr, c.count > 0);
            EXPECT_EQ(flexgrid::Shown(grid), before);
        }
    }
}

TEST_F(ImportTest, FillsAnEmptyLastRowFirst) {
    AppendRows(grid, state, history, 1);
    EXPECT_EQ(Import(u"Name\nb\nc\n"), 2);
    EXPECT_EQ(flexgrid::Shown(grid), "No,Name,Qty,Item,Key,Locked/1,a,1,Pen,k,x/2,b,,,,/3,c,,,,");
    state.autoRecordNumber = false;
    host.listens = true;
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetRows(0);
    EXPECT_EQ(Import(u"a,b\n", false), 1) << "there is no caption either";
    EXPECT_EQ(flexgrid::Shown(grid), "a,b,,,,");
}

TEST_F(ImportTest, SurvivesAHostThatRemovesWhatItIsNotifiedOf) {
    host.listens = true;
    host.onAfter = [&](int, bool&) {
        if (grid.Cols() > 2) grid.SetCols(2);
        grid.SetRows(2);
    };
    EXPECT_EQ(Import(u"Name,Qty,Item\nb,x,y\nc,1,Pen\n"), 2);
    EXPECT_EQ(flexgrid::Shown(grid), "No,Name/1,a");
}

}  // namespace
}  // namespace qvx::grid
