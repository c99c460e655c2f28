// Pasting cells over a whole table and undoing the paste, compared with the plain load of the same cells one by one:
// every value goes through its column's rules into the grid and into the history.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/measure.h"
#include "bench/support/workload.h"
#include "common/text.h"
#include "controls/grid/paste.h"

namespace qvx::bench {

struct NobodyListens {
    void BeforeCellChange(int, int, const Text&, bool&) {}
    void AfterCellChange(int, int, const Text&, const Text&, bool&) {}
    bool Listens() const { return false; }
};

inline void RunPasteWorks(const Options& options) {
    const std::vector<Text> texts = RowTexts<Text>();
    for (std::size_t rows = options.minRows; rows <= options.maxRows; rows *= 10) {
        Text clipboard;
        for (std::size_t row = 0; row < rows; ++row) clipboard.append(texts[row % distinctRows]).append(u"\r\n");
        std::vector<double> load;
        std::vector<double> paste;
        std::vector<double> undo;
        for (std::size_t run = 0; run < (rows > 100'000 ? 3U : 9U); ++run) {
            flexgrid::Grid grid;
            grid.SetFixedRows(0);
            grid.SetFixedCols(0);
            grid.SetCols(columnCount);
            grid.SetRows(static_cast<int>(rows));
            grid.MoveTo(0, 0);
            const WorkStopwatch loading;
            for (std::size_t row = 0; row < rows; ++row) {
                TextView rest = texts[row % distinctRows];
                for (int col = 0; col < columnCount; ++col) {
                    const std::size_t end = std::min(rest.find(u'\t'), rest.size());
                    grid.SetTextMatrix(static_cast<int>(row), col, rest.substr(0, end));
                    rest.remove_prefix(std::min(end + 1, rest.size()));
                }
            }
            load.push_back(loading.Seconds());
            grid.Clear();
            grid::ControlState state;
            grid::EditHistory history(grid);
            NobodyListens nobody;
            const grid::CellSources sources;
            const WorkStopwatch pasting;
            {
                const grid::ClipboardCells cells(clipboard);
                const grid::CellRectangle rectangle(grid, cells);
                grid::CellWriter<NobodyListens>(grid, state, history, nobody, sources).Write(rectangle);
            }
            paste.push_back(pasting.Seconds());
            const auto is = [&](std::size_t row) {
                const Text& text = texts[row % distinctRows];
                return grid.TextMatrix(static_cast<int>(row), 0) == text.substr(0, text.find(u'\t'));
            };
            CheckSameWork(is(0) && is(rows - 1), "Qvx rules", "paste");
            const WorkStopwatch undoing;
            history.Undo(state);
            undo.push_back(undoing.Seconds());
            CheckSameWork(!is(0) && !is(rows - 1), "Qvx rules", "undo_paste");
        }
        Report("load_cells", rows, "Qvx rules", load);
        Report("paste", rows, "Qvx rules", paste);
        Report("undo_paste", rows, "Qvx rules", undo);
    }
}

}  // namespace qvx::bench
