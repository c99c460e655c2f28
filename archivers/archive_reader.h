// Reads an archive's directory and the data of its entries. Nothing in an archive is trusted.
#pragma once

#include "archivers/inflate.h"
#include "archivers/volumes.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

class ArchiveReader {
  public:
    // Reads the directory. Throws ExitCode::damaged when it is inconsistent: numbers that contradict each other,
    // records outside the file, entries whose data overlap.
    explicit ArchiveReader(InputVolumes& volumes);

    // The entries in the order of their data.
    const std::vector<Entry>& Entries() const { return entries_; }

    // Passes the content of an entry of Entries() to the sink, as Inflate does. Throws ExitCode::unsupported when it
    // cannot be read.
    void Read(const Entry& entry, const Sink& sink);

  private:
    void ReadEndRecords();
    void FindEnd();
    void ReadDirectory();
    void CheckOverlaps();
    Place StartOf(const Entry& entry) const { return {entry.disk, entry.offset}; }
    Place DataOf(const Entry& entry);

    InputVolumes& volumes_;
    EndRecord end_;
    std::uint64_t endOffset_ = 0;  // of the end records, in the last volume
    std::uint64_t prefix_ = 0;     // size of what precedes the archive in its file
    std::vector<Entry> entries_;
    std::vector<Place> limits_;  // where the data of each entry must have ended
};

}  // namespace qvx::archivers
