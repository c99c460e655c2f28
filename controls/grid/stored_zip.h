// A zip archive whose files are stored without compression, one after the other.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/crc32.h"
#include "controls/grid/table_export.h"

namespace qvx::grid {

class StoredZip {
  public:
    explicit StoredZip(ExportBlocks& blocks) : blocks_(blocks) {}
    // Everything that is added until EndFile belongs to this file. `name` is ASCII.
    void BeginFile(std::string_view name);
    // Raises error 5 when the archive exceeds the 4 GB that its records can describe.
    void Add(std::string_view bytes);
    void EndFile();
    // Writes the directory; the archive is then complete.
    void End();

  private:
    struct Entry {
        std::string name;
        std::uint64_t at = 0;
        std::uint64_t size = 0;
        Crc32 sum;
    };

    ExportBlocks& blocks_;
    std::vector<Entry> entries_;
};

}  // namespace qvx::grid
