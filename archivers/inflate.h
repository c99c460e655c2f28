// Reads an entry's data and verifies the claims of its header.
#pragma once

#include "archivers/deflate.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

// Whether the data of that entry can be read at all.
bool IsReadable(const Entry& entry);

// Whether so little compressed data can become so much; deflated data grows a thousandfold at most.
bool IsPlausibleSize(const Entry& entry);

// Passes the entry's content to the sink in pieces of at most 256 KiB. `source` provides the compressed data. Throws
// ExitCode::damaged when the data is not a valid stream or has another size than the entry says (no byte beyond that
// size is passed on), ExitCode::wrongCrc when it has another checksum.
void Inflate(const Entry& entry, const Source& source, const Sink& sink);

}  // namespace qvx::archivers
