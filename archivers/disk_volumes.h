// Archives on real disks: in one file, in numbered parts beside each other, or on one removable disk after another.
#pragma once

#include <optional>

#include "archivers/volumes.h"

namespace qvx::archivers {

// The suffix of unfinished archives.
extern const TextView archiveSuffix;

// An archive that gets its final name only at the end.
class PendingArchive : public OutputVolumes {
  public:
    // Returns the written archive, so that it can be read once more before it gets its name; null when not all of it is
    // accessible.
    virtual InputVolumes* Written() = 0;
    // Replaces the old archive.
    virtual void Commit() = 0;
};

// With `spans`, asks for one disk after another if the archive is on a removable drive; a part size of 0 means one
// file.
std::unique_ptr<PendingArchive> MakeArchive(Files& files, Console& console, const Text& path, bool spans,
                                            std::uint64_t partSize);

class SingleArchive final : public PendingArchive {
  public:
    SingleArchive(Files& files, const Text& path);
    std::uint64_t Room() override;
    OutputFile& Current() override { return *file_; }
    bool IsSingle() const override { return true; }
    void Next() override;
    InputVolumes* Written() override { return &written_; }
    void Commit() override;

  private:
    Text path_;
    std::unique_ptr<OutputFile> file_;
    SingleInput written_;
};

// Parts of a given size beside each other: NAME.z01, NAME.z02 and so on, the last one under the archive's own name. All
// get their names at the end, the last part last.
class SplitArchive final : public PendingArchive {
  public:
    SplitArchive(Files& files, const Text& path, std::uint64_t partSize);
    std::uint64_t Room() override;
    OutputFile& Current() override { return *parts_.back(); }
    bool IsSingle() const override { return false; }
    void Next() override;
    InputVolumes* Written() override { return &written_; }
    void Commit() override;

  private:
    class WrittenParts final : public InputVolumes {
      public:
        explicit WrittenParts(SplitArchive& owner) : owner_(owner) {}
        InputFile& Last() override { return *owner_.parts_.back(); }
        bool AskForLast() override { return false; }
        void SetLast(std::uint32_t last) override;
        InputFile& Volume(std::uint32_t number) override { return *owner_.parts_[number]; }
        bool AskAgain(std::uint32_t) override { return false; }

      private:
        SplitArchive& owner_;
    };

    Files& files_;
    Text path_;
    std::uint64_t partSize_;
    std::vector<std::unique_ptr<OutputFile>> parts_;
    WrittenParts written_;
};

// One part per disk, each under the archive's name. A part is read back and gets its name when its disk is full, since
// the disk is removed then; an existing archive is replaced only with the user's consent. When the next disk is not
// inserted, the part is removed again from the disk that is in the drive.
class DiskArchive final : public PendingArchive {
  public:
    DiskArchive(Files& files, Console& console, const Text& path);
    std::uint64_t Room() override;
    OutputFile& Current() override;
    bool IsSingle() const override { return false; }
    void Next() override;
    InputVolumes* Written() override;
    void Commit() override;

  private:
    // A part that already has its name, with the data to recognise it.
    struct Finished {
        std::uint64_t size = 0;
        std::uint32_t sum = 0;
    };
    // Calculates the checksum of the written data.
    class Part;

    void Begin();
    // Whether this disk can be used for the next part; tells the user if not.
    bool TryDisk();
    void FinishPart();
    bool HasFinishedPart();
    void RemovePart() noexcept;

    Files& files_;
    Console& console_;
    Text path_;
    std::shared_ptr<Part> part_;
    std::optional<SingleInput> written_;
    std::uint64_t room_ = 0;
    std::vector<Finished> finished_;
};

// Reads archives of all these kinds. Parts beside the archive are read from there; the user is asked for other disks if
// the archive is on a removable drive.
class DiskInput final : public InputVolumes {
  public:
    DiskInput(Files& files, Console& console, const Text& path);
    InputFile& Last() override;
    bool AskForLast() override;
    void SetLast(std::uint32_t last) override;
    InputFile& Volume(std::uint32_t number) override;
    bool AskAgain(std::uint32_t number) override;

  private:
    void Ask(const Text& which);

    Files& files_;
    Console& console_;
    Text path_;
    std::unique_ptr<InputFile> file_;
    std::uint32_t current_ = 0;
    std::uint32_t last_ = 0;
};

}  // namespace qvx::archivers
