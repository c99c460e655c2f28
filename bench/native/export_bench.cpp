// Writes a file of that many rows as an export does, or draws their pages as a printer gets them, and prints the time
// and the memory that it took:
//
//     bench_export FORMAT ROWS FILE
//     bench_export pages ROWS
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

#include "common/number_text.h"
#include "controls/grid/csv_import.h"
#include "controls/grid/page_layout.h"
#include "controls/grid/table_export.h"
#include "tests/support/portable/recording_surface.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::grid {
namespace {

class StreamTarget final : public ExportTarget {
  public:
    explicit StreamTarget(const char* path) : file_(path, std::ios::binary) {}
    void Write(std::string_view bytes) override {
        file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    void Rewrite(std::uint64_t at, std::string_view bytes) override {
        file_.seekp(static_cast<std::streamoff>(at));
        Write(bytes);
        file_.seekp(0, std::ios::end);
    }
    bool Good() { return file_.flush().good(); }

  private:
    std::ofstream file_;
};

long PeakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void FillGrid(flexgrid::Grid& grid, int rows) {
    grid.SetFixedCols(0);
    grid.SetFormatString(u"<Name|>Qty|>Rate|^Delivery|Key");
    grid.SetRows(1);
    Text block;
    for (int row = 1; row <= rows; ++row) {
        block += row % 3 == 0 ? u"\u20AC & <sons>, \"the\" first" : u"Nut";
        block += u'\t' + IntegerToText(row) + u'\t' + DoubleToText(row / 4.0) + u"\t05/03/2024\tk_x0041_\r";
        if (row % 10'000 == 0 || row == rows) {
            grid.AddItems(block);
            block.clear();
        }
    }
    grid.SetColWidth(0, 2100);
    grid.SetColWidth(4, 1050);
}

class Measurement {
  public:
    void Print(const char* rows) const {
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin_;
        std::printf("%s rows: %.2f s, %ld KB more memory\n", rows, taken.count(), PeakKilobytes() - before_);
    }

  private:
    long before_ = PeakKilobytes();
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

// A sheet of A4 paper at 96 dots per inch, with margins of an inch.
void DrawPages(const flexgrid::Grid& grid) {
    const PageLayout pages(grid, {602, 931}, 40, true);
    RecordingSurface surface;
    std::size_t drawn = 0;
    for (int page = 0; page < pages.Count(); ++page) {
        const flexgrid::View view = pages.PageAt(grid, page);
        Paint(grid, view, surface, {0, 0, view.client.width, view.client.height});
        drawn += surface.Log().size();
        surface.Clear();
    }
    std::printf("%d pages, %zu bytes of drawing\n", pages.Count(), drawn);
}

}  // namespace
}  // namespace qvx::grid

int main(int count, char** words) {
    using namespace qvx;
    using namespace qvx::grid;
    const bool pages = count == 3 && std::string_view(words[1]) == "pages";
    if (count != 4 && !pages) return 2;
    flexgrid::Grid grid;
    ControlState state;
    state.columnsDataType = u";Qty-0;Rate-1;Delivery-2;";
    FillGrid(grid, std::atoi(words[2]));
    const Measurement measurement;
    if (pages) {
        DrawPages(grid);
        measurement.Print(words[2]);
        return 0;
    }
    const std::string_view format(words[1]);
    ExportOptions options;
    options.format = FormatNamed(Text(format.begin(), format.end()), u"");
    options.dateFormat = state.dateFormat;
    StreamTarget file(words[3]);
    ExportBlocks blocks(file);
    const ExportedCells cells = ChooseCells(grid, state, false);
    WriteTable(grid, cells, *MakeTableWriter(options, cells, blocks), [](std::int64_t) { return true; });
    blocks.Flush();
    measurement.Print(words[2]);
    return file.Good() ? 0 : 1;
}
