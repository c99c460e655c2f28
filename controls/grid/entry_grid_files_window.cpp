// Export and import of a grid for data entry, with the events that the host gets meanwhile.
#include "common/locale.h"
#include "controls/grid/csv_import.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/export_file_win32.h"

namespace qvx::grid {

void EntryGrid::Export(const Text& fileName, ExportOptions options, bool selectedOnly) {
    const auto keep = events_.KeepAlive();
    CommitOpenEdit();
    options.ansi = SystemCodePage();
    options.dateFormat = state_.dateFormat;
    options.dates = SystemDateSettings();
    const ExportedCells cells = ChooseCells(Model(), state_, selectedOnly);
    ReplacingExport file(fileName);
    ExportBlocks blocks(file);
    const auto writer = MakeTableWriter(options, cells, blocks);
    ProgressClock clock(GetTickCount64());
    const bool complete = WriteTable(Model(), cells, *writer, [&](std::int64_t done) {
        bool cancel = false;
        if (clock.Due(GetTickCount64())) {
            events_.ExportProgress(static_cast<long>(done), static_cast<long>(cells.total), cancel);
            AnswerPaints();
        }
        return !cancel;
    });
    if (!complete) return;
    blocks.Flush();
    file.Finish();
}

int EntryGrid::Import(const Text& fileName, char16_t separator, TextView encoding, bool hasHeader) {
    const auto keep = events_.KeepAlive();
    const Text text = DecodeFile(ReadImportedFile(fileName), encoding, SystemCodePage());
    CommitOpenEdit();
    CsvRows rows(Model(), text, separator, hasHeader);
    const CellSources sources = SourcesForCells();
    int count = 0;
    ChangeRows([&] { count = ImportRows<EntryGridEvents>(Model(), state_, history_, events_, sources, rows); });
    return count;
}

}  // namespace qvx::grid
