// An archive's place: one file, parts beside each other, or one disk after another.
#pragma once

#include "archivers/files.h"

namespace qvx::archivers {

// Where an archive is written. Volumes count from 0.
class OutputVolumes {
  public:
    virtual ~OutputVolumes() = default;
    // How many bytes the current volume still takes.
    virtual std::uint64_t Room() = 0;
    // The current volume's file.
    virtual OutputFile& Current() = 0;
    // Whether all of the archive is within reach until the end.
    virtual bool IsSingle() const = 0;
    // Finishes the current volume and goes on to a new one.
    virtual void Next() = 0;
};

struct Place {
    std::uint32_t volume = 0;
    std::uint64_t offset = 0;
    // clang-tidy 14 takes the comparison with 0 in the generated operator for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    auto operator<=>(const Place&) const = default;
};

// Spreads bytes over volumes: data fills each to its end, a record is never cut.
class VolumeWriter {
  public:
    explicit VolumeWriter(OutputVolumes& volumes) : volumes_(volumes) {}

    // Sees to it that so many bytes fit here, on a new volume where they do not fit on this one; ExitCode::diskFull
    // when not even an empty one has the room. Returns where they will stand.
    Place Reserve(std::size_t count);
    // A record for which room was reserved.
    void PutRecord(ByteView record);
    void PutData(ByteView data);
    Place Position() const { return position_; }
    // Back to a place in a single file; what stands behind it is gone.
    void Rewind(Place place);

  private:
    void GoOn();
    OutputVolumes& volumes_;
    Place position_;
};

// Where an archive is read from.
class InputVolumes {
  public:
    virtual ~InputVolumes() = default;
    // The volume that should have the archive's end.
    virtual InputFile& Last() = 0;
    // When it had not: whether there is another to try.
    virtual bool AskForLast() = 0;
    // What its end said: volumes are numbered 0 to `last`.
    virtual void SetLast(std::uint32_t last) = 0;
    virtual InputFile& Volume(std::uint32_t number) = 0;
    // When that was not what it should be: whether there is another to try.
    virtual bool AskAgain(std::uint32_t number) = 0;
};

// Reads on from one volume to the next.
class VolumeReader {
  public:
    VolumeReader(InputVolumes& volumes, std::uint32_t last, Place place)
        : volumes_(volumes), last_(last), position_(place) {}
    // Fewer bytes only at the archive's end.
    std::size_t Read(std::span<std::uint8_t> into);
    // Exactly so many, or ExitCode::damaged.
    Bytes Take(std::size_t count);
    Place Position() const { return position_; }

  private:
    InputVolumes& volumes_;
    std::uint32_t last_;
    Place position_;
};

// An archive of one volume, whatever file that is.
class SingleInput final : public InputVolumes {
  public:
    explicit SingleInput(InputFile& file) : file_(file) {}
    InputFile& Last() override { return file_; }
    bool AskForLast() override { return false; }
    void SetLast(std::uint32_t last) override {
        if (last != 0) throw ArchiveError(ExitCode::damaged);
    }
    InputFile& Volume(std::uint32_t) override { return file_; }
    bool AskAgain(std::uint32_t) override { return false; }

  private:
    InputFile& file_;
};

}  // namespace qvx::archivers
