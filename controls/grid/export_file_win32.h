// Files of exports and imports on the system's disks. Failures are run-time errors: 53, 61, 70, 75 and 76.
#pragma once

#include <string>

#include "common/text.h"
#include "controls/grid/table_export.h"
#include "win/replacing_file.h"

namespace qvx::grid {

// Passes an error of the system on as a run-time error.
[[noreturn]] void ThrowForSystemError(DWORD code);

// Returns the path of a file that is to be replaced. Throws when it may not be: its folder may nevertheless allow it.
Text CheckedTarget(const Text& path);

// A file that is written next to the one that it replaces in the end; until then, that one is unchanged.
class ReplacingExport final : public ExportTarget {
  public:
    explicit ReplacingExport(const Text& path);
    void Write(std::string_view bytes) override;
    void Rewrite(std::uint64_t at, std::string_view bytes) override;
    void Finish();

  private:
    Text path_;
    ReplacingFile file_;
};

std::string ReadImportedFile(const Text& path);

// The code page of the system for programs without Unicode. A character that it lacks is written as "?".
AnsiCodePage SystemCodePage();

}  // namespace qvx::grid
