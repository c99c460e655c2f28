#include "controls/grid/xlsx_sheet.h"

#include <algorithm>
#include <chrono>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "common/run_time_error.h"
#include "common/surrogates.h"
#include "common/text_compare.h"
#include "common/utf8.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/number_format.h"
#include "controls/grid/stored_zip.h"

namespace qvx::grid {
namespace {

constexpr std::int64_t mostSheetRows = 1'048'576;
constexpr std::size_t mostSheetColumns = 16'384;
constexpr std::size_t mostCellUnits = 32'767;
constexpr int significantDigits = 15;

// The number of each style is kind * alignments + alignment.
// The kinds after these are those of the columns' formats.
enum SheetStyle { plainStyle, headerStyle, dateStyle, styleKinds };
constexpr int alignments = 4;

std::string Decimal(std::int64_t value) { return std::to_string(value); }

// A, B, ... Z, AA, ...
std::string ColumnLetters(std::size_t index) {
    std::string letters;
    for (std::size_t left = index + 1; left > 0; left = (left - 1) / 26)
        letters.insert(letters.begin(), static_cast<char>('A' + (left - 1) % 26));
    return letters;
}

std::string StyleNumber(int kind, ExportAlignment alignment) {
    return Decimal(std::int64_t{kind} * alignments + static_cast<int>(alignment));
}

bool IsHexDigit(char16_t c) { return (c >= u'0' && c <= u'9') || (LowerAscii(c) >= u'a' && LowerAscii(c) <= u'f'); }

// Whether _xHHHH_ begins here, which a reader takes for a character.
bool IsEscape(TextView text) {
    return text.size() >= 7 && text[1] == u'x' && text[6] == u'_' &&
           std::all_of(text.begin() + 2, text.begin() + 6, IsHexDigit);
}

void AppendEscape(Text& to, char16_t c) {
    constexpr TextView digits = u"0123456789ABCDEF";
    to += u"_x";
    for (int shift = 12; shift >= 0; shift -= 4) to += digits[static_cast<std::size_t>(c >> shift & 0xF)];
    to += u'_';
}

// Fails for texts that a reader of numbers could take for different ones, such as 1,234, or could not keep as they are.
std::optional<double> SheetNumber(TextView text) {
    const auto number = ReadNumeric(text);
    if (!number || *number != NumericValue(text)) return std::nullopt;
    const auto exponent = std::min(text.find_first_of(u"eEdD"), text.size());
    int digits = 0;
    for (const char16_t c : text.substr(0, exponent)) digits += (c > u'0' && c <= u'9') || (c == u'0' && digits > 0);
    if (digits > significantDigits) return std::nullopt;
    return number;
}

// The order in which the pattern has day, month and year; reading a date by it gives the date that was written by it.
ShortDateOrder OrderOf(TextView pattern) {
    const auto place = [&](TextView letters) { return pattern.find_first_of(letters); };
    if (place(u"yY") < place(u"mM")) return ShortDateOrder::yearMonthDay;
    return place(u"dD") < place(u"mM") ? ShortDateOrder::dayMonthYear : ShortDateOrder::monthDayYear;
}

// `formats` are those of the style kinds from dateStyle on.
[[gnu::cold]] std::string StylesPart(const std::vector<Text>& formats) {
    constexpr int firstFormat = 164;  // the first number that is free for formats of a workbook's own
    const int kinds = dateStyle + static_cast<int>(formats.size());
    std::string part =
        "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
        "<numFmts count=\"" +
        Decimal(static_cast<std::int64_t>(formats.size())) + "\">";
    for (std::size_t i = 0; i < formats.size(); ++i) {
        part += "<numFmt numFmtId=\"" + Decimal(firstFormat + static_cast<std::int64_t>(i)) + "\" formatCode=\"";
        AppendSheetText(part, formats[i]);
        part += "\"/>";
    }
    part +=
        "</numFmts>"
        "<fonts count=\"2\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font>"
        "<font><b/><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>"
        "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
        "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
        "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
        "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>"
        "<cellXfs count=\"" +
        Decimal(std::int64_t{kinds} * alignments) + "\">";
    for (int kind = 0; kind < kinds; ++kind) {
        const std::string format = kind < dateStyle ? "0" : Decimal(firstFormat + std::int64_t{kind} - dateStyle);
        for (const char* alignment : {"", "left", "center", "right"}) {
            part += "<xf numFmtId=\"" + format + "\" fontId=\"" + (kind == headerStyle ? "1" : "0") +
                    "\" fillId=\"0\" borderId=\"0\" xfId=\"0\"" + (kind == headerStyle ? " applyFont=\"1\"" : "") +
                    (kind >= dateStyle ? " applyNumberFormat=\"1\"" : "");
            part += *alignment ? std::string(" applyAlignment=\"1\"><alignment horizontal=\"") + alignment + "\"/></xf>"
                               : "/>";
        }
    }
    return part +
           "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
           "</styleSheet>";
}

class XlsxWriter final : public TableWriter {
  public:
    [[gnu::cold]] XlsxWriter(const ExportOptions& options, const ExportedCells& cells, ExportBlocks& blocks)
        : options_(options), columns_(cells.columns), zip_(blocks) {
        if (cells.headers + cells.total > mostSheetRows)
            throw RunTimeError(errors::invalidProcedureCall, u"A worksheet has at most 1,048,576 rows");
        if (columns_.size() > mostSheetColumns)
            throw RunTimeError(errors::invalidProcedureCall, u"A worksheet has at most 16,384 columns");
        AddPart("[Content_Types].xml",
                "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
                "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
                "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
                "<Override PartName=\"/xl/workbook.xml\" ContentType=\"application/"
                "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
                "<Override PartName=\"/xl/styles.xml\" ContentType=\"application/"
                "vnd.openxmlformats-officedocument.spreadsheetml.styles+xml\"/>"
                "<Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"application/"
                "vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/></Types>");
        AddPart("_rels/.rels",
                "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
                "officeDocument\" Target=\"xl/workbook.xml\"/></Relationships>");
        AddPart("xl/workbook.xml",
                "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
                "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
                "<sheets><sheet name=\"Sheet1\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>");
        AddPart("xl/_rels/workbook.xml.rels",
                "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
                "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
                "worksheet\" Target=\"worksheets/sheet1.xml\"/>"
                "<Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
                "styles\" Target=\"styles.xml\"/></Relationships>");
        AddPart("xl/styles.xml", StylesPart(Formats()));
        BeginSheet(cells.headers);
    }

    void AddRow(bool header, std::span<const TextView> texts) override {
        const std::string row = Decimal(++rows_);
        line_ = "<row r=\"" + row + "\">";
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const bool styled = header || columns_[i].alignment != ExportAlignment::general;
            if (!texts[i].empty() || styled) AddCell(header, row, i, texts[i]);
        }
        line_ += "</row>";
        zip_.Add(line_);
    }

    void End() override {
        zip_.Add("</sheetData></worksheet>");
        zip_.EndFile();
        zip_.End();
    }

  private:
    // What the values of a column are, and the kind of style that they have then.
    struct ValueKind {
        int style;
        bool date;
        bool number;
    };

    // Returns the formats of the style kinds from dateStyle on.
    std::vector<Text> Formats() {
        std::vector<Text> formats{SheetDateFormat(options_.dateFormat)};
        for (const ExportColumn& column : columns_) {
            ValueKind kind{plainStyle, column.dataType == data_type::date,
                           column.dataType == data_type::digits || column.dataType == data_type::numerics};
            if (kind.date) kind.style = dateStyle;
            if (!column.format.empty()) {
                kind.style = dateStyle + static_cast<int>(formats.size());
                kind.date = KindOfFormat(column.format) == FormatKind::date;
                kind.number = !kind.date;
                formats.push_back(kind.date ? SheetDateFormat(column.format) : SheetNumberFormat(column.format));
            }
            kinds_.push_back(kind);
        }
        return formats;
    }

    void AddPart(std::string_view name, const std::string& content) {
        zip_.BeginFile(name);
        zip_.Add("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n" + content);
        zip_.EndFile();
    }

    void BeginSheet(int headers) {
        zip_.BeginFile("xl/worksheets/sheet1.xml");
        std::string begin =
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
            "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
            "<sheetViews><sheetView workbookViewId=\"0\">";
        if (headers > 0)
            begin += "<pane ySplit=\"" + Decimal(headers) + "\" topLeftCell=\"A" + Decimal(headers + 1) +
                     "\" activePane=\"bottomLeft\" state=\"frozen\"/>";
        begin += "</sheetView></sheetViews>";
        if (!columns_.empty()) begin += "<cols>";
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            letters_.push_back(ColumnLetters(i));
            // Widths are in characters of 7 pixels, at most 255, and a grid's twips are 15 for a pixel.
            constexpr double twipsForCharacter = 7.0 * 15;
            const double width = std::min(columns_[i].twips / twipsForCharacter, 255.0);
            const std::string number = Decimal(static_cast<std::int64_t>(i) + 1);
            begin.append("<col min=\"").append(number).append("\" max=\"").append(number);
            begin.append("\" width=\"").append(EncodeUtf8(FormatFixed(width, 2))).append("\" customWidth=\"1\"/>");
        }
        if (!columns_.empty()) begin += "</cols>";
        zip_.Add(begin + "<sheetData>");
    }

    void AddCell(bool header, const std::string& row, std::size_t index, TextView text) {
        const ExportColumn& column = columns_[index];
        const auto begin = [&](int style) {
            line_ += "<c r=\"" + letters_[index] + row + "\" s=\"" +
                     StyleNumber(style, header ? column.headerAlignment : column.alignment) + "\"";
        };
        std::optional<double> number;
        const ValueKind& kind = kinds_[index];
        if (!header && kind.date)
            number = SheetDate(text, options_.dateFormat, options_.dates);
        else if (!header && kind.number)
            number = SheetNumber(text);
        begin(header ? headerStyle : number ? kind.style : plainStyle);
        if (text.empty()) {
            line_ += "/>";
        } else if (number) {
            NumberBuffer buffer;
            const TextView digits = DoubleToText(*number, buffer);
            line_ += "><v>";
            line_.append(digits.begin(), digits.end());
            line_ += "</v></c>";
        } else {
            if (text.size() > mostCellUnits)
                throw RunTimeError(errors::invalidProcedureCall,
                                   u"A cell of a worksheet has at most 32,767 characters");
            line_ += " t=\"inlineStr\"><is><t xml:space=\"preserve\">";
            AppendSheetText(line_, text);
            line_ += "</t></is></c>";
        }
    }

    const ExportOptions& options_;
    const std::vector<ExportColumn>& columns_;
    StoredZip zip_;
    std::vector<ValueKind> kinds_;
    std::vector<std::string> letters_;
    std::string line_;
    std::int64_t rows_ = 0;
};

}  // namespace

std::optional<double> SheetDate(TextView text, TextView dateFormat, const DateSettings& settings) {
    DateSettings written = settings;
    written.order = OrderOf(dateFormat);
    // Normalizing reads formats of month and year, and drops the time.
    const auto writes = [&](const std::optional<Date>& date) {
        return date && EqualNoCase(FormatDate(*date, dateFormat, settings.separator), text);
    };
    auto date = ParseDate(text, written);
    if (!writes(date)) date = ParseDate(NormalizeDate(text, dateFormat, written), written);
    if (!writes(date)) return std::nullopt;
    using namespace std::chrono;
    const year_month_day day{year{date->year}, month{static_cast<unsigned>(date->month)},
                             std::chrono::day{static_cast<unsigned>(date->day)}};
    constexpr int daysTo1970 = 25'569;
    constexpr int firstCommonDay = 61;  // 1 March 1900
    const int number = static_cast<int>(sys_days{day}.time_since_epoch().count()) + daysTo1970;
    if (number < firstCommonDay) return std::nullopt;
    return number + date->secondOfDay / 86'400.0;
}

[[gnu::cold]] Text SheetDateFormat(TextView pattern) {
    Text format;
    for (std::size_t i = 0; i < pattern.size();) {
        const TextView rest = pattern.substr(i);
        const char16_t letter = LowerAscii(rest.front());
        if (StartsWithNoCase(rest, u"AM/PM") || StartsWithNoCase(rest, u"A/P")) {
            const std::size_t size = letter == u'a' && StartsWithNoCase(rest, u"AM/PM") ? 5 : 3;
            format += rest.substr(0, size);
            i += size;
        } else if (letter == u'n') {
            format += u'm';  // after an hour or before seconds these are minutes
            ++i;
        } else if (TextView(u"dmyhs").find(letter) != TextView::npos) {
            format += letter;
            ++i;
        } else if (TextView(u"/:- ").find(letter) != TextView::npos) {
            format += rest.front();
            ++i;
        } else {
            format += u'\\';
            format += rest.front();
            ++i;
        }
    }
    return format.empty() ? Text(u"General") : format;
}

void AppendSheetText(std::string& to, TextView text) {
    const auto plain = [](char16_t c) { return c >= u' ' && c < 0x7F && c != u'&' && c != u'<' && c != u'>'; };
    if (std::all_of(text.begin(), text.end(), [&](char16_t c) { return plain(c) && c != u'"' && c != u'_'; })) {
        to.append(text.begin(), text.end());
        return;
    }
    Text escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'&') {
            escaped += u"&amp;";
        } else if (c == u'<') {
            escaped += u"&lt;";
        } else if (c == u'>') {
            escaped += u"&gt;";
        } else if (c == u'"') {
            escaped += u"&quot;";
        } else if ((c < u' ' && c != u'\t' && c != u'\n') || c >= 0xFFFE || (c == u'_' && IsEscape(text.substr(i)))) {
            AppendEscape(escaped, c);
        } else {
            escaped += c;
        }
    }
    to += EncodeUtf8(escaped);
}

std::unique_ptr<TableWriter> MakeXlsxWriter(const ExportOptions& options, const ExportedCells& cells,
                                            ExportBlocks& blocks) {
    return std::make_unique<XlsxWriter>(options, cells, blocks);
}

}  // namespace qvx::grid
