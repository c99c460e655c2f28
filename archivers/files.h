// What the archivers ask of the system: files, disks, local time and somebody at the console. The product's are
// Windows' own; tests have disks of a few bytes that fill up and fail when told to.
//
// Every operation throws ArchiveError with the code that fits and the file's own name.
#pragma once

#include <memory>
#include <vector>

#include "archivers/bytes.h"
#include "archivers/file_time.h"
#include "common/text.h"

namespace qvx::archivers {

// Attributes as DOS numbers them; an archive holds the same.
namespace attribute {
constexpr std::uint32_t readOnly = 1;
constexpr std::uint32_t hidden = 2;
constexpr std::uint32_t system = 4;
constexpr std::uint32_t folder = 16;
constexpr std::uint32_t archive = 32;
constexpr std::uint32_t kept = readOnly | hidden | system | archive;
}  // namespace attribute

struct FileFacts {
    std::uint64_t size = 0;
    FileTime modified = 0;
    std::uint32_t attributes = 0;
    bool operator==(const FileFacts&) const = default;
};

class InputFile {
  public:
    virtual ~InputFile() = default;
    // As they are now, which may be otherwise than at the opening.
    virtual FileFacts Facts() = 0;
    // Fewer bytes than asked for only at the file's end.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) = 0;
};

// What becomes of an existing read-only file when another takes its place.
enum class ReadOnlyTarget { refuse, replace };

// A file in the making under a temporary name. It goes away with this object unless it was committed.
class OutputFile : public InputFile {
  public:
    virtual void Write(ByteView bytes) = 0;
    // Zeros that need not be stored.
    virtual void Skip(std::uint64_t count) = 0;
    virtual void WriteAt(std::uint64_t offset, ByteView bytes) = 0;
    virtual void Truncate(std::uint64_t size) = 0;
    // All bytes are on the disk when this returns.
    virtual void Flush() = 0;
    // Flushes, and gives the file its final name in one step; what had that name before is gone then, and as it was if
    // this fails.
    virtual void Commit(const Text& path, ReadOnlyTarget target) = 0;
    // Before Commit: the committed file's time and attributes.
    virtual void SetStamp(FileTime modified, std::uint32_t attributes) = 0;
};

struct ListedFile {
    Text name;
    bool isFolder = false;
};

class Files {
  public:
    virtual ~Files() = default;
    // Writers are kept out while the file is open, where none has it open already.
    virtual std::unique_ptr<InputFile> OpenInput(const Text& path) = 0;
    // What a killed run has left under that name is written over; what is in use is refused.
    virtual std::unique_ptr<OutputFile> CreateOutput(const Text& temporaryPath) = 0;
    // Empty for a folder that is not there.
    virtual std::vector<ListedFile> List(const Text& folder) = 0;
    virtual bool Exists(const Text& path) = 0;
    // 0 for a file that is not there.
    virtual std::uint32_t Attributes(const Text& path) = 0;
    // Nothing when it is there already. A link to elsewhere in its place is ExitCode::unsafeName unless links are
    // allowed.
    virtual void MakeFolder(const Text& path, bool linkAllowed) = 0;
    // False when it is in use or cannot be removed.
    virtual bool Remove(const Text& path) noexcept = 0;
    virtual Text FullPath(const Text& path) = 0;
    virtual bool IsRemovable(const Text& path) = 0;
    // How large a file beside that path could become: the disk's free space, and no more than its file system lets a
    // file hold.
    virtual std::uint64_t RoomFor(const Text& path) = 0;
    virtual CivilTime LocalTime(FileTime time) = 0;
    virtual FileTime FromLocalTime(const CivilTime& local) = 0;
};

class Console {
  public:
    virtual ~Console() = default;
    virtual void Say(const Text& line) = 0;
    virtual void Complain(const Text& line) = 0;
    // Shown where somebody can see it change; percent is 0 to 100.
    virtual void Progress(const Text& name, int percent) = 0;
    // Waits for Enter. Throws ExitCode::stopped when the user stops the program, ExitCode::noNextDisk when there is
    // nobody.
    virtual void AskForEnter(const Text& question) = 0;
    virtual bool IsStopped() = 0;
};

// Removes the temporaries that killed runs have left in the folder of that path; those in use stay.
void RemoveStale(Files& files, const Text& path, TextView suffix);

// Throws ExitCode::stopped once the user has asked for it.
inline void CheckStopped(Console& console) {
    if (console.IsStopped()) throw ArchiveError(ExitCode::stopped);
}

}  // namespace qvx::archivers
