#include "archivers/unpack.h"

#include <algorithm>
#include <set>

#include "archivers/archive_reader.h"
#include "archivers/disk_volumes.h"
#include "archivers/file_names.h"
#include "common/text_compare.h"

namespace qvx::archivers {

const TextView unpackedSuffix = u".~pkunzip";

namespace {

namespace unix_mode {
constexpr std::uint32_t kinds = 0170000;
constexpr std::uint32_t regular = 0100000;
constexpr std::uint32_t folder = 0040000;
constexpr std::uint32_t ownerWrites = 0200;
}  // namespace unix_mode

bool IsUnix(const Entry& entry) { return entry.system == 3 || entry.system == 19; }

std::uint32_t UnixMode(const Entry& entry) { return IsUnix(entry) ? entry.attributes >> 16 : 0; }

// Whether the entry is a link, a device or the like.
bool IsSpecial(const Entry& entry) {
    const std::uint32_t kind = UnixMode(entry) & unix_mode::kinds;
    return kind != 0 && kind != unix_mode::regular && kind != unix_mode::folder;
}

bool IsFolder(const Entry& entry) { return entry.name.ends_with(u'/'); }

std::uint32_t AttributesOf(const Entry& entry) {
    const std::uint32_t mode = UnixMode(entry);
    if (mode != 0) return (mode & unix_mode::ownerWrites) != 0 ? 0 : attribute::readOnly;
    return IsUnix(entry) ? 0 : entry.attributes & attribute::kept;
}

// Whether the code means that trying the other entries is pointless.
bool ConcernsAll(ExitCode code) {
    switch (code) {
        case ExitCode::diskFull:
        case ExitCode::readWrite:
        case ExitCode::stopped:
        case ExitCode::noNextDisk:
        case ExitCode::outOfMemory:
        case ExitCode::internal:
            return true;
        default:
            return false;
    }
}

// Writes the content of an entry; long runs of zeros become holes.
class UnpackedFile {
  public:
    explicit UnpackedFile(std::unique_ptr<OutputFile> file) : file_(std::move(file)) {}
    void Write(ByteView bytes) {
        constexpr std::size_t worthAHole = 65536;
        if (bytes.size() >= worthAHole && IsAllZero(bytes)) {
            file_->Skip(bytes.size());
        } else {
            file_->Write(bytes);
        }
    }
    OutputFile& File() { return *file_; }

  private:
    std::unique_ptr<OutputFile> file_;
};

class Unpacker {
  public:
    Unpacker(const UnpackOptions& options, Files& files, Console& console)
        : files_(files),
          console_(console),
          folder_(options.folder.empty() ? u"." : options.folder),
          volumes_(files, console, options.archive),
          reader_(volumes_) {}

    ExitCode Run() {
        files_.MakeFolder(folder_, true);
        for (const Entry& entry : reader_.Entries()) {
            CheckStopped(console_);
            try {
                UnpackEntry(entry);
            } catch (const ArchiveError& error) {
                if (ConcernsAll(error.Code())) throw;
                console_.Complain(Printable(entry.name) + u": " + Text(TextOf(error.Code())));
                if (result_ == ExitCode::done) result_ = error.Code();
            }
        }
        return result_;
    }

  private:
    void UnpackEntry(const Entry& entry) {
        const TextView name = entry.name;
        const bool isOurs = name.ends_with(unpackedSuffix) || name.ends_with(archiveSuffix);
        // Of two names that are the same for the system, only the second file would remain.
        const Text plain = FoldedText(IsFolder(entry) ? name.substr(0, name.size() - 1) : name);
        if (!IsSafeName(name) || isOurs || IsSpecial(entry) || !names_.insert(plain).second) {
            throw ArchiveError(ExitCode::unsafeName);
        }
        const Text path = MakeFoldersOf(name);
        if (IsFolder(entry)) return;
        if (!IsReadable(entry)) throw ArchiveError(ExitCode::unsupported);
        UnpackFile(entry, path);
    }

    // Creates the folders between the target folder and the name, and returns the whole path.
    Text MakeFoldersOf(TextView name) {
        Text folder = folder_;
        for (std::size_t slash = name.find(u'/'); slash != TextView::npos; slash = name.find(u'/')) {
            folder = Joined(folder, name.substr(0, slash));
            if (folders_.insert(FoldedText(folder)).second) files_.MakeFolder(folder, false);
            name.remove_prefix(slash + 1);
        }
        Text path = Joined(folder, name);
        if (cleaned_.insert(FoldedText(folder)).second) RemoveStale(files_, Joined(folder, u""), unpackedSuffix);
        return path;
    }

    void UnpackFile(const Entry& entry, const Text& path) {
        const Text name(FileNameOf(path));
        if ((files_.Attributes(path) & attribute::folder) != 0) throw ArchiveError(ExitCode::accessDenied);
        UnpackedFile unpacked(files_.CreateOutput(TemporaryPath(path, unpackedSuffix)));
        std::uint64_t done = 0;
        reader_.Read(entry, [&](ByteView bytes) {
            CheckStopped(console_);
            unpacked.Write(bytes);
            done += bytes.size();
            console_.Progress(Printable(name),
                              static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(entry.size)));
        });
        const FileTime modified = entry.modified ? *entry.modified : files_.FromLocalTime(FromDosTime(entry.dosTime));
        unpacked.File().SetStamp(modified, AttributesOf(entry));
        Commit(unpacked.File(), path);
        console_.Progress(Printable(name), 100);
    }

    // A file that is replaced keeps its long name, even if the archive contains its short one.
    void Commit(OutputFile& file, const Text& path) {
        // A file that came out of this archive is not replaced: the archive names one file in several ways.
        const Text target = files_.FullPath(path);
        if (written_.contains(FoldedText(target))) throw ArchiveError(ExitCode::unsafeName);
        file.Commit(target, ReadOnlyTarget::replace);
        written_.insert(FoldedText(files_.FullPath(path)));
    }

    Files& files_;
    Console& console_;
    Text folder_;
    DiskInput volumes_;
    ArchiveReader reader_;
    std::set<Text> names_;
    std::set<Text> written_;
    std::set<Text> folders_;
    std::set<Text> cleaned_;
    ExitCode result_ = ExitCode::done;
};

}  // namespace

ExitCode Unpack(const UnpackOptions& options, Files& files, Console& console) {
    return Unpacker(options, files, console).Run();
}

}  // namespace qvx::archivers
