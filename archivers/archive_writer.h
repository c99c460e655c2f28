// Puts files into an archive, one after another.
#pragma once

#include <functional>

#include "archivers/deflate.h"
#include "archivers/volumes.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

// Told how many bytes of the current file have been read; may throw to stop the work.
using ProgressCall = std::function<void(std::uint64_t)>;

class ArchiveWriter {
  public:
    // `threads` as Deflate takes it.
    ArchiveWriter(OutputVolumes& volumes, unsigned threads);

    // The entry comes with name, times and attributes; the rest is filled in. ExitCode::sourceChanged when the file is
    // not the same before and after it was read.
    void Add(Entry entry, InputFile& file, const ProgressCall& progress);

    // The central directory and the end. Nothing is added any more.
    void Finish();

    const std::vector<Entry>& Entries() const { return entries_; }

  private:
    void AddSmall(Entry& entry, const Source& source);
    void AddLarge(Entry& entry, InputFile& file, std::uint64_t size, const ProgressCall& progress);
    void StoreInstead(Entry& entry, Place data, InputFile& file, const ProgressCall& progress);
    Place PutHeader(Entry& entry, bool wide, bool known);

    OutputVolumes& volumes_;
    VolumeWriter writer_;
    unsigned threads_;
    std::vector<Entry> entries_;
};

}  // namespace qvx::archivers
