// Adds files to an archive, one after another.
#pragma once

#include <functional>

#include "archivers/deflate.h"
#include "archivers/volumes.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

// Called with the number of bytes of the current file that have been read; may throw to stop the work.
using ProgressCall = std::function<void(std::uint64_t)>;

class ArchiveWriter {
  public:
    // `threads` as in Deflate.
    ArchiveWriter(OutputVolumes& volumes, unsigned threads);

    // The caller sets name, times and attributes of the entry; the rest is filled in. Throws ExitCode::sourceChanged
    // when the file has changed while it was read.
    void Add(Entry entry, InputFile& file, const ProgressCall& progress);

    // Writes the central directory and the end record. Nothing can be added afterwards.
    void Finish();

    const std::vector<Entry>& Entries() const { return entries_; }

  private:
    void AddSmall(Entry& entry, std::uint64_t size, const Source& source);
    void AddLarge(Entry& entry, InputFile& file, std::uint64_t size, const ProgressCall& progress);
    void StoreInstead(Entry& entry, Place data, InputFile& file, const ProgressCall& progress);
    Place PutHeader(Entry& entry, bool wide, bool known);

    OutputVolumes& volumes_;
    VolumeWriter writer_;
    unsigned threads_;
    std::vector<Entry> entries_;
};

}  // namespace qvx::archivers
