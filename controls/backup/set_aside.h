// The archive that a backup writes over: where it waits until there is a new one, and whether there is room for both.
#pragma once

#include <cstdint>
#include <optional>

#include "common/text.h"
#include "controls/backup/environment.h"

namespace qvx::backup {

// Beside the archive, so that one step moves it, and with the archive's extension, so that it shows where archives are
// looked for. The rest of the name is nothing that anybody calls a file of his own. `number` counts from 1.
Text SetAsideName(TextView archive, int number);

// What is known of the medium before anything on it is touched, in bytes.
struct Room {
    DriveKind drive = DriveKind::other;
    std::optional<std::uint64_t> free;  // nothing where the system does not tell
    std::uint64_t database = 0;
    std::optional<std::uint64_t> oldArchive;  // nothing where there is none
};

enum class Plan {
    keepOld,    // until the new archive is there
    deleteOld,  // at once: the new one has no room beside it
    noRoom,     // not even then; nothing may be touched
};

// On a removable drive the old archive is kept only where the new one fits on the same disk in any case: what goes on
// over several disks ends with another one in the drive. Elsewhere it is expected to be about as large as the old one,
// and if it is not, the old one comes back.
Plan PlanFor(const Room& room);

}  // namespace qvx::backup
