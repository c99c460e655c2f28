// Reading an entry's data: what it says of itself must be so.
#pragma once

#include "archivers/deflate.h"
#include "archivers/zip_records.h"

namespace qvx::archivers {

// Whether the data of that entry can be read here at all.
bool IsReadable(const Entry& entry);

// Whether so little packed data can become so much; deflated data grows a thousandfold at most.
bool IsPlausibleSize(const Entry& entry);

// Hands the entry's content to the sink in pieces of at most 256 KiB. `source` gives the packed data. Throws
// ExitCode::damaged when the data is no such stream or has another size than the entry says (no byte beyond that size
// comes out), ExitCode::wrongCrc when it has another sum.
void Inflate(const Entry& entry, const Source& source, const Sink& sink);

}  // namespace qvx::archivers
