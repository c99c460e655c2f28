// The errors of the mail system.
#pragma once

#include <cstdint>

#include "common/run_time_error.h"

namespace qvx::backup {

// Returns the error for a code of Simple MAPI (never 0, which is success), under the number that hosts know: 32000 plus
// the code.
RunTimeError MailError(std::uint32_t code);

// The error when there is no mail program, or none that can be called.
RunTimeError NoMailSystem();

// The error when the attachment's name cannot be represented in any of the ways that the mail system reads.
RunTimeError UnwritableAttachmentName();

}  // namespace qvx::backup
