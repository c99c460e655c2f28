// What the mail system's failures are called.
#pragma once

#include <cstdint>

#include "common/run_time_error.h"

namespace qvx::backup {

// By the code that Simple MAPI returns (never 0, which is success), under the number that hosts know it by: 32000 and
// the code.
RunTimeError MailError(std::uint32_t code);

// There is no mail program, or none that can be called.
RunTimeError NoMailSystem();

// The attachment's name cannot be written in any of the ways that the mail system reads.
RunTimeError UnwritableAttachmentName();

}  // namespace qvx::backup
