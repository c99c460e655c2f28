// Files in memory, and exports into them.
#pragma once

#include <string>

#include "controls/grid/table_export.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {

class MemoryFile final : public ExportTarget {
  public:
    void Write(std::string_view written) override { bytes += written; }
    void Rewrite(std::uint64_t at, std::string_view written) override {
        bytes.replace(static_cast<std::size_t>(at), written.size(), written);
    }
    std::string bytes;
};

// Latin-1 stands for the system's code page.
inline AnsiCodePage Latin1Page() {
    return {[](TextView text) {
                std::string bytes;
                for (const char16_t c : text) bytes += c < 256 ? static_cast<char>(c) : '?';
                return bytes;
            },
            [](std::string_view bytes) {
                Text text;
                for (const char c : bytes) text += static_cast<unsigned char>(c);
                return text;
            }};
}

inline std::string Exported(const flexgrid::Grid& grid, const ControlState& state, ExportOptions options,
                            bool selectedOnly = false) {
    options.ansi = Latin1Page();
    options.dateFormat = state.dateFormat;
    MemoryFile file;
    ExportBlocks blocks(file);
    const ExportedCells cells = ChooseCells(grid, state, selectedOnly);
    const auto writer = MakeTableWriter(options, cells, blocks);
    EXPECT_TRUE(WriteTable(grid, cells, *writer, [](std::int64_t) { return true; }));
    blocks.Flush();
    return file.bytes;
}

}  // namespace qvx::grid
