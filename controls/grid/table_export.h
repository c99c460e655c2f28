// Cells on their way into a file: which rows and columns are written, and the order in which a format gets them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/dates.h"
#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/file_encoding.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// A file under construction. Any call may raise a run-time error.
class ExportTarget {
  public:
    virtual ~ExportTarget() = default;
    virtual void Write(std::string_view bytes) = 0;
    // Replaces bytes that were written before.
    virtual void Rewrite(std::uint64_t at, std::string_view bytes) = 0;
};

// Collects what is written into blocks.
class ExportBlocks {
  public:
    explicit ExportBlocks(ExportTarget& file) : file_(file) {}
    void Add(std::string_view bytes) {
        block_ += bytes;
        if (block_.size() >= blockSize) Flush();
    }
    void Flush() {
        file_.Write(block_);
        written_ += block_.size();
        block_.clear();
    }
    // Replaces bytes that were added before.
    void Rewrite(std::uint64_t at, std::string_view bytes) {
        Flush();
        file_.Rewrite(at, bytes);
    }
    std::uint64_t Size() const { return written_ + block_.size(); }

  private:
    static constexpr std::size_t blockSize = 65536;

    ExportTarget& file_;
    std::string block_;
    std::uint64_t written_ = 0;
};

enum class ExportAlignment { general, left, center, right };

struct ExportColumn {
    int col = 0;
    int dataType = -1;  // of data_type, or noCleaning
    ExportAlignment alignment = ExportAlignment::general;
    ExportAlignment headerAlignment = ExportAlignment::general;
    int twips = 0;
    Text format{};  // of ColumnFormats, "" for none
};

ExportColumn ExportColumnOf(const flexgrid::Grid& grid, const ControlState& state, int col);

// The cells that are written: those of the columns and rows that are shown, or the selected ones among them with their
// headers.
struct ExportedCells {
    std::vector<ExportColumn> columns;
    int headers = 0;  // fixed rows that are shown
    int first = 0;    // the rows below them
    int last = -1;
    std::int64_t total = 0;  // of these, the rows that are shown
    std::uint64_t structure = 0;
};
ExportedCells ChooseCells(const flexgrid::Grid& grid, const ControlState& state, bool selectedOnly);

// A format of files. It gets the header rows, the others, and the end.
class TableWriter {
  public:
    virtual ~TableWriter() = default;
    // Texts are in the order of the columns.
    virtual void AddRow(bool header, std::span<const TextView> texts) = 0;
    virtual void End() = 0;
};

enum class ExportFormat { csv, html, xlsx };

// Returns the format with that name, or without a name the one that the file's suffix names. Raises error 5.
ExportFormat FormatNamed(TextView name, TextView fileName);

// Returns the character between cells. Raises error 5 for a text that is not one character, and for quotes and line
// ends.
char16_t SeparatorNamed(TextView separator);

struct ExportOptions {
    ExportFormat format = ExportFormat::csv;
    char16_t separator = u',';
    TextEncoding encoding = TextEncoding::utf8;
    AnsiCodePage ansi{};
    Text dateFormat{};
    DateSettings dates{};
};
// Raises error 5 for cells that the format cannot hold. The writer refers to all arguments.
std::unique_ptr<TableWriter> MakeTableWriter(const ExportOptions& options, const ExportedCells& cells,
                                             ExportBlocks& blocks);

// Writes the cells. `goOn` receives the number of rows so far, now and then, and may end it: the file is then not
// complete, and the function returns false. Raises error 5 when `goOn` has added, moved or removed rows or columns.
bool WriteTable(const flexgrid::Grid& grid, const ExportedCells& cells, TableWriter& writer,
                const std::function<bool(std::int64_t done)>& goOn);

}  // namespace qvx::grid
