#include "controls/backup/set_aside.h"

#include <algorithm>

#include "common/number_text.h"
#include "controls/backup/backup_names.h"

namespace qvx::backup {

namespace {

constexpr TextView mark = u".~previous-5d2e9c41";

constexpr std::uint64_t kilobyte = 1024;
// For directories, partly filled blocks, and the space that archivers leave free.
constexpr std::uint64_t reserve = 64 * kilobyte;
// With less space than this, no archive fits, or none that is worth a disk.
constexpr std::uint64_t leastRoom = kilobyte;
constexpr std::uint64_t leastRoomOnADisk = reserve;

// Returns the largest size of an archive, when nothing in the database can be compressed.
std::uint64_t MostOf(std::uint64_t database) { return database + database / 1000 + reserve; }

std::uint64_t LikelyLike(std::uint64_t oldArchive) { return oldArchive + oldArchive / 8 + reserve; }

}  // namespace

Text SetAsideName(TextView archive, int number) {
    const std::size_t folder = FolderOf(archive).size();
    const std::size_t dot = archive.rfind(u'.');
    const std::size_t end = dot == TextView::npos || dot < folder ? archive.size() : dot;
    Text name = Text(archive.substr(0, end)) + Text(mark);
    if (number > 1) name += u'-' + IntegerToText(number);
    return name + Text(archive.substr(end));
}

Plan PlanFor(const Room& room) {
    if (!room.free) return Plan::keepOld;
    const bool removable = room.drive == DriveKind::removable;
    const std::uint64_t old = room.oldArchive.value_or(0);
    const std::uint64_t least = removable ? leastRoomOnADisk : leastRoom;
    if (*room.free < least && *room.free + old < least) return Plan::noRoom;
    if (!room.oldArchive) return Plan::keepOld;
    const std::uint64_t most = MostOf(room.database);
    const std::uint64_t wanted = removable ? most : std::min(most, LikelyLike(old));
    return *room.free >= wanted ? Plan::keepOld : Plan::deleteOld;
}

}  // namespace qvx::backup
