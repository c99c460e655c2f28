// The interfaces through which the archivers use the system: files, disks, local time and the user at the console. The
// product implements them with Windows; tests have disks of a few bytes that fill up, and operations that fail on
// request.
//
// Every operation throws ArchiveError with the appropriate code and the file's own name.
#pragma once

#include <memory>
#include <vector>

#include "archivers/bytes.h"
#include "archivers/file_time.h"
#include "common/text.h"

namespace qvx::archivers {

// Attributes with the numbers of DOS, which archives use as well.
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
    // Returns the present facts, which may have changed since the file was opened.
    virtual FileFacts Facts() = 0;
    // Returns fewer bytes than requested only at the file's end.
    virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) = 0;
};

// What to do with an existing read-only file that is to be replaced.
enum class ReadOnlyTarget { refuse, replace };

// A file that is being written under a temporary name. It is deleted with this object unless it was committed.
class OutputFile : public InputFile {
  public:
    // Appends the bytes.
    virtual void Write(ByteView bytes) = 0;
    // Appends zeros, which need not be stored.
    virtual void Skip(std::uint64_t count) = 0;
    // Overwrites bytes; does not change where Write appends.
    virtual void WriteAt(std::uint64_t offset, ByteView bytes) = 0;
    // Cuts the file to `size` bytes; Write continues there.
    virtual void Truncate(std::uint64_t size) = 0;
    // When this returns, all bytes are on the disk.
    virtual void Flush() = 0;
    // Flushes, and gives the file its final name in one step; the file of that name is replaced, or left as it was if
    // this fails.
    virtual void Commit(const Text& path, ReadOnlyTarget target) = 0;
    // Sets the time and attributes of the committed file; to be called before Commit.
    virtual void SetStamp(FileTime modified, std::uint32_t attributes) = 0;
};

struct ListedFile {
    Text name;
    bool isFolder = false;
};

class Files {
  public:
    virtual ~Files() = default;
    // Other programs cannot open the file for writing meanwhile, unless one already has it open.
    virtual std::unique_ptr<InputFile> OpenInput(const Text& path) = 0;
    // Overwrites a file of that name that a killed run has left; refuses one that is in use.
    virtual std::unique_ptr<OutputFile> CreateOutput(const Text& temporaryPath) = 0;
    // Returns an empty list for a folder that does not exist.
    virtual std::vector<ListedFile> List(const Text& folder) = 0;
    virtual bool Exists(const Text& path) = 0;
    // Returns 0 for a file that does not exist.
    virtual std::uint32_t Attributes(const Text& path) = 0;
    // Does nothing when the folder exists. Throws ExitCode::unsafeName for a link to another place, unless links are
    // allowed.
    virtual void MakeFolder(const Text& path, bool linkAllowed) = 0;
    // Returns false when the file is in use or cannot be removed.
    virtual bool Remove(const Text& path) noexcept = 0;
    // Returns the path from the root; existing parts have their long names, even if the given path has short ones.
    virtual Text FullPath(const Text& path) = 0;
    virtual bool IsRemovable(const Text& path) = 0;
    // Returns how large a file in the folder of that path could become: the disk's free space, limited to the largest
    // file that its file system supports.
    virtual std::uint64_t RoomFor(const Text& path) = 0;
    // Convert between UTC and the local time zone.
    virtual CivilTime LocalTime(FileTime time) = 0;
    virtual FileTime FromLocalTime(const CivilTime& local) = 0;
};

class Console {
  public:
    virtual ~Console() = default;
    // Writes a line to the standard output.
    virtual void Say(const Text& line) = 0;
    // Writes a line to the error output.
    virtual void Complain(const Text& line) = 0;
    // Shows progress where somebody can see it change; percent is 0 to 100.
    virtual void Progress(const Text& name, int percent) = 0;
    // Waits for Enter. Throws ExitCode::stopped when the user stops the program, ExitCode::noNextDisk when nobody is
    // there.
    virtual void AskForEnter(const Text& question) = 0;
    // Whether the user has asked the program to stop.
    virtual bool IsStopped() = 0;
};

// Removes the temporary files that killed runs have left in the folder of that path; those in use stay.
void RemoveStale(Files& files, const Text& path, TextView suffix);

// Throws ExitCode::stopped if the user has requested it.
inline void CheckStopped(Console& console) {
    if (console.IsStopped()) throw ArchiveError(ExitCode::stopped);
}

}  // namespace qvx::archivers
