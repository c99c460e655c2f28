#include <algorithm>
#include <limits>

#include "archivers/checksum.h"
#include "archivers/disk_volumes.h"
#include "archivers/file_names.h"
#include "common/number_text.h"

namespace qvx::archivers {

const TextView archiveSuffix = u".~pkzip";

namespace {

constexpr std::size_t mostParts = 999;
// Space that is left free on a disk, for the growth of its directory.
constexpr std::uint64_t reserve = std::uint64_t{32} * 1024;
// The least space that makes a disk worth using.
constexpr std::uint64_t leastRoom = std::uint64_t{16} * 1024;

std::uint32_t SumOf(InputFile& file) {
    Checksum sum;
    Bytes buffer(std::size_t{256} * 1024);
    std::uint64_t offset = 0;
    for (;;) {
        const std::size_t count = file.ReadAt(offset, buffer);
        sum.Add(ByteView(buffer).first(count));
        offset += count;
        if (count < buffer.size()) return sum.Value();
    }
}

Text DiskName(std::size_t number) { return u"disk " + IntegerToText(static_cast<std::int64_t>(number)); }

}  // namespace

std::unique_ptr<PendingArchive> MakeArchive(Files& files, Console& console, const Text& path, bool spans,
                                            std::uint64_t partSize) {
    if (partSize > 0) return std::make_unique<SplitArchive>(files, path, partSize);
    if (spans && files.IsRemovable(path)) return std::make_unique<DiskArchive>(files, console, path);
    return std::make_unique<SingleArchive>(files, path);
}

SingleArchive::SingleArchive(Files& files, const Text& path)
    : path_(files.FullPath(path)), file_(files.CreateOutput(TemporaryPath(path, archiveSuffix))), written_(*file_) {}

std::uint64_t SingleArchive::Room() { return std::numeric_limits<std::uint64_t>::max(); }

void SingleArchive::Next() { throw ArchiveError(ExitCode::internal); }

void SingleArchive::Commit() { file_->Commit(path_, ReadOnlyTarget::refuse); }

SplitArchive::SplitArchive(Files& files, const Text& path, std::uint64_t partSize)
    : files_(files), path_(path), partSize_(partSize), written_(*this) {
    Next();
}

std::uint64_t SplitArchive::Room() {
    const std::uint64_t size = Current().Facts().size;
    return partSize_ - std::min(partSize_, size);
}

void SplitArchive::Next() {
    if (parts_.size() >= mostParts) throw ArchiveError(ExitCode::diskFull, Text(FileNameOf(path_)));
    const Text number = IntegerToText(static_cast<std::int64_t>(parts_.size() + 1));
    parts_.push_back(files_.CreateOutput(TemporaryPath(path_, u"." + number + Text(archiveSuffix))));
}

void SplitArchive::Commit() {
    for (const auto& part : parts_) part->Flush();
    std::vector<Text> paths;
    for (std::uint32_t i = 0; i + 1 < parts_.size(); ++i) paths.push_back(SplitPartPath(path_, i));
    paths.push_back(path_);
    for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i]->Commit(paths[i], ReadOnlyTarget::refuse);
}

void SplitArchive::WrittenParts::SetLast(std::uint32_t last) {
    if (last + 1 != owner_.parts_.size()) throw ArchiveError(ExitCode::damaged);
}

class DiskArchive::Part final : public OutputFile {
  public:
    explicit Part(std::unique_ptr<OutputFile> file) : file_(std::move(file)) {}
    FileFacts Facts() override { return file_->Facts(); }
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        return file_->ReadAt(offset, into);
    }
    void Write(ByteView bytes) override {
        file_->Write(bytes);
        sum_.Add(bytes);
        size_ += bytes.size();
    }
    void Skip(std::uint64_t) override { throw ArchiveError(ExitCode::internal); }
    void WriteAt(std::uint64_t offset, ByteView bytes) override { file_->WriteAt(offset, bytes); }
    void Truncate(std::uint64_t) override { throw ArchiveError(ExitCode::internal); }
    void Flush() override { file_->Flush(); }
    void SetStamp(FileTime modified, std::uint32_t attributes) override { file_->SetStamp(modified, attributes); }
    void Commit(const Text& path, ReadOnlyTarget target) override { file_->Commit(path, target); }

    std::uint64_t Size() const { return size_; }
    std::uint32_t Sum() const { return sum_.Value(); }

  private:
    std::unique_ptr<OutputFile> file_;
    Checksum sum_;
    std::uint64_t size_ = 0;
};

DiskArchive::DiskArchive(Files& files, Console& console, const Text& path)
    : files_(files), console_(console), path_(path) {
    Begin();
    if (room_ < leastRoom) throw ArchiveError(ExitCode::diskFull, Text(FileNameOf(path_)));
}

void DiskArchive::Begin() {
    RemoveStale(files_, path_, archiveSuffix);
    const std::uint64_t room = files_.RoomFor(path_);
    room_ = room - std::min(room, reserve);
    part_ = std::make_shared<Part>(files_.CreateOutput(TemporaryPath(path_, archiveSuffix)));
}

std::uint64_t DiskArchive::Room() { return room_ - std::min(room_, part_->Size()); }

OutputFile& DiskArchive::Current() { return *part_; }

InputVolumes* DiskArchive::Written() {
    if (!finished_.empty()) return nullptr;
    return &written_.emplace(*part_);
}

void DiskArchive::FinishPart() {
    part_->Flush();
    if (SumOf(*part_) != part_->Sum()) throw ArchiveError(ExitCode::readWrite, Text(FileNameOf(path_)));
    finished_.reserve(finished_.size() + 1);
    part_->Commit(path_, ReadOnlyTarget::refuse);
    finished_.push_back({part_->Size(), part_->Sum()});
    part_.reset();
}

bool DiskArchive::HasFinishedPart() {
    if (!files_.Exists(path_)) return false;
    const auto file = files_.OpenInput(path_);
    const std::uint64_t size = file->Facts().size;
    std::optional<std::uint32_t> sum;
    return std::any_of(finished_.begin(), finished_.end(), [&](const Finished& part) {
        if (part.size != size) return false;
        if (!sum) sum = SumOf(*file);
        return *sum == part.sum;
    });
}

void DiskArchive::RemovePart() noexcept {
    try {
        if (HasFinishedPart()) files_.Remove(path_);
    } catch (const std::exception&) {
        // The disk has already been removed, and the part with it.
    }
}

bool DiskArchive::TryDisk() {
    try {
        if (HasFinishedPart()) {
            console_.Say(u"This disk has a part of this archive already.");
            return false;
        }
        if (files_.Exists(path_)) {
            console_.AskForEnter(
                u"This disk has an archive of that name. Press Enter to replace it, or Ctrl+C to stop.");
        }
        Begin();
        if (room_ >= leastRoom) return true;
        part_.reset();
        console_.Say(u"There is no room on this disk.");
    } catch (const ArchiveError& error) {
        if (error.Code() == ExitCode::stopped || error.Code() == ExitCode::noNextDisk) throw;
        part_.reset();
        console_.Say(u"This disk cannot be used: " + Text(TextOf(error.Code())) + u".");
    }
    return false;
}

void DiskArchive::Next() {
    const Text full = u"The disk is full. ";
    if (finished_.empty() && files_.Exists(path_)) {
        console_.AskForEnter(
            full + u"Press Enter to replace the archive on it and go on with another disk, or Ctrl+C to stop.");
    }
    const Text insert = u"Insert " + DiskName(finished_.size() + 2) + u" and press Enter, or Ctrl+C to stop.";
    FinishPart();
    try {
        console_.AskForEnter(full + insert);
        while (!TryDisk()) console_.AskForEnter(insert);
    } catch (...) {
        RemovePart();
        throw;
    }
}

void DiskArchive::Commit() {
    if (!finished_.empty()) {
        FinishPart();
    } else {
        part_->Commit(path_, ReadOnlyTarget::refuse);
    }
}

}  // namespace qvx::archivers
