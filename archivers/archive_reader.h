// Reads an archive's directory and the data of its entries. Everything an archive says is doubted.
#pragma once

#include "archivers/inflate.h"
#include "archivers/volumes.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

class ArchiveReader {
  public:
    // Reads the directory. Throws ExitCode::damaged when that does not hold together: numbers that contradict each
    // other, records outside the file, entries whose data overlap.
    explicit ArchiveReader(InputVolumes& volumes);

    // In the order of their data.
    const std::vector<Entry>& Entries() const { return entries_; }

    // Hands the content of an entry of Entries() to the sink, as Inflate does. ExitCode::unsupported for what cannot be
    // read.
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
    std::uint64_t prefix_ = 0;     // what stands before the archive in its file
    std::vector<Entry> entries_;
    std::vector<Place> limits_;  // where the data of each must have ended
};

}  // namespace qvx::archivers
