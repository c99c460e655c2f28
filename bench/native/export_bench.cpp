// Writes a file of that many rows as an export does, and prints the time and the memory that it took:
// bench_export FORMAT ROWS FILE.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>

#include "common/number_text.h"
#include "controls/grid/csv_import.h"
#include "controls/grid/table_export.h"

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

}  // namespace
}  // namespace qvx::grid

int main(int count, char** words) {
    using namespace qvx;
    using namespace qvx::grid;
    if (count != 4) return 2;
    flexgrid::Grid grid;
    ControlState state;
    state.columnsDataType = u";Qty-0;Rate-1;Delivery-2;";
    FillGrid(grid, std::atoi(words[2]));
    const std::string_view format(words[1]);
    ExportOptions options;
    options.format = FormatNamed(Text(format.begin(), format.end()), u"");
    options.dateFormat = state.dateFormat;
    const long before = PeakKilobytes();
    const auto begin = std::chrono::steady_clock::now();
    StreamTarget file(words[3]);
    ExportBlocks blocks(file);
    const ExportedCells cells = ChooseCells(grid, state, false);
    WriteTable(grid, cells, *MakeTableWriter(options, cells, blocks), [](std::int64_t) { return true; });
    blocks.Flush();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf("%s rows: %.2f s, %ld KB more memory\n", words[2], taken.count(), PeakKilobytes() - before);
    return file.Good() ? 0 : 1;
}
