// Searches and filters a grid of that many rows, and prints the milliseconds: bench_find ROWS.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/number_text.h"
#include "controls/grid/replace_cells.h"
#include "controls/grid/row_filter.h"

namespace qvx::grid {
namespace {

void FillRows(flexgrid::Grid& grid, int rows) {
    grid.SetFormatString(u"No|Name|Town|Street|Qty|Rate|Day|Code|Note|Key");
    grid.SetRows(1);
    Text block;
    for (int row = 1; row <= rows; ++row) {
        const Text number = IntegerToText(row);
        block += number + u"\tName of customer " + number + u"\tTown\tStreet " + IntegerToText(row % 200) + u"\t" +
                 number + u"\t" + DoubleToText(row / 4.0) + u"\t05/03/2024\tC" + number + u"\t" +
                 (row % 3 == 0 ? u"\u0417\u0430\u043C\u0435\u0442\u043A\u0430" : u"note") + u"\tk\r";
        if (row % 10'000 == 0 || row == rows) {
            grid.AddItems(block);
            block.clear();
        }
    }
}

struct SilentHost {
    void BeforeCellChange(int, int, const Text&, bool&) {}
    void AfterCellChange(int, int, const Text&, const Text&, bool&) {}
    bool Listens() const { return false; }
};

template <class Work>
void Time(const char* name, Work work) {
    const auto start = std::chrono::steady_clock::now();
    const auto result = static_cast<long long>(work());
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("%-40s %8.1f ms  (%lld)\n", name, took.count(), result);
}

void Run(int rows) {
    flexgrid::Grid grid;
    FillRows(grid, rows);
    CellSearch search(grid);
    const auto count = [&](TextView text, bool wholeCell) {
        SearchOptions options;
        options.wholeCell = wholeCell;
        search.Look(text, options);
        search.StartCounting(0);
        search.Count([] { return true; });
        return search.Total();
    };
    Time("no hit", [&] { return count(u"nowhere", false); });
    Time("no hit in letters beyond Latin-1", [&] { return count(u"\u0436\u0436", false); });
    Time("a hit in every row", [&] { return count(u"customer", false); });
    Time("hits in nearly all cells", [&] { return count(u"e", false); });
    Time("whole cells", [&] { return count(u"town", true); });
    Time("the last row", [&] { return count(u"Name of customer " + IntegerToText(rows), true); });
    Time("the next hit, once counted", [&] { return search.Next({1, 1}, true).place->row; });
    ControlState state;
    state.columnsDataType = u";Qty-0;Rate-1;Day-2;";
    FilterHelp help;
    help.dateFormat = u"dd/mm/yyyy";
    help.appendKey = [](TextView text, std::string& key) { key.append(text.begin(), text.end()); };
    for (const TextView list : {u"[Name]customer 77", u"[Street]street 1*", u"[Note]<>note", u"[Qty]>500000",
                                u"[Rate]10..20", u"[Day]>=1/1/2024", u"[Name]>=name of customer 5",
                                u"[Name]customer,[Note]note,[Rate]>2000", u"[Code]nowhere"}) {
        RowFilter filter;
        if (!filter.Replace(grid, state, help, list)) std::abort();
        std::vector<bool> hide;
        Time(("filter " + std::string(list.begin(), list.end())).c_str(), [&] {
            hide = *filter.RowsToHide(grid, state, help);
            return std::count(hide.begin(), hide.end(), false) - grid.FixedRows();
        });
        Time("  the rows hidden", [&] {
            grid.SetFilteredRows(hide);
            return grid.RowTop(grid.Rows());
        });
    }
    Time("all rows shown again", [&] {
        grid.ShowAllRows();
        return grid.RowTop(grid.Rows());
    });
    EditHistory history(grid);
    SilentHost host;
    const CellSources sources;
    search.Look(u"customer", {});
    Time("replaced in every row",
         [&] { return ReplaceCells(grid, state, history, host, sources, search, u"client").replaced; });
}

}  // namespace
}  // namespace qvx::grid

int main(int argc, char** argv) {
    qvx::grid::Run(argc > 1 ? std::atoi(argv[1]) : 1'000'000);
    return 0;
}
