// The archive that a backup overwrites: its name while it is set aside, and whether there is room for both archives.
#pragma once

#include <cstdint>
#include <optional>

#include "common/text.h"
#include "controls/backup/steps.h"

namespace qvx::backup {

// Returns the name for an archive that is set aside: in the same folder, so that one step moves it, and with the
// archive's extension, so that users see it where they look for archives. No user would choose the rest of the name.
// `number` counts from 1.
Text SetAsideName(TextView archive, int number);

// The state of the medium before anything on it is changed, in bytes.
struct Room {
    DriveKind drive = DriveKind::other;
    std::optional<std::uint64_t> free;  // nullopt where the system does not report it
    std::uint64_t database = 0;
    std::optional<std::uint64_t> oldArchive;  // nullopt where there is none
};

enum class Plan {
    keepOld,    // until the new archive is there
    deleteOld,  // at once: the new one has no room beside it
    noRoom,     // not even without the old one; nothing may be changed
};

// On a removable drive, the old archive is kept only where the new one is certain to fit on the same disk: an archive
// that spans several disks ends with another disk in the drive. Elsewhere the new archive is expected to be about as
// large as the old one, and if there is no room for it, the old one is put back.
Plan PlanFor(const Room& room);

}  // namespace qvx::backup
