// The storage of an archive: one file, parts beside each other, or one disk after another.
#pragma once

#include "archivers/files.h"

namespace qvx::archivers {

// The volumes that an archive is written to. Volumes count from 0.
class OutputVolumes {
  public:
    virtual ~OutputVolumes() = default;
    // Returns how many bytes still fit on the current volume.
    virtual std::uint64_t Room() = 0;
    // Returns the current volume's file.
    virtual OutputFile& Current() = 0;
    // Whether the whole archive stays accessible until the end.
    virtual bool IsSingle() const = 0;
    // Finishes the current volume and goes on to a new one.
    virtual void Next() = 0;
};

struct Place {
    std::uint32_t volume = 0;
    std::uint64_t offset = 0;
    // clang-tidy 14 mistakes the comparison with 0 in the generated operator for one with a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    auto operator<=>(const Place&) const = default;
};

// Distributes bytes over volumes: data fills each to its end, a record is never split.
class VolumeWriter {
  public:
    explicit VolumeWriter(OutputVolumes& volumes) : volumes_(volumes) {}

    // Ensures that so many bytes fit into the current volume, and starts a new one if they do not; throws
    // ExitCode::diskFull when not even an empty volume has the room. Returns where they will be.
    Place Reserve(std::size_t count);
    // Writes a record for which room was reserved.
    void PutRecord(ByteView record);
    // Writes data, and continues on new volumes as needed.
    void PutData(ByteView data);
    Place Position() const { return position_; }
    // Returns to a place in a single file, and drops what follows it.
    void Rewind(Place place);

  private:
    void GoOn();
    OutputVolumes& volumes_;
    Place position_;
};

// The volumes that an archive is read from.
class InputVolumes {
  public:
    virtual ~InputVolumes() = default;
    // Returns the volume that should contain the archive's end.
    virtual InputFile& Last() = 0;
    // If it does not: whether there is another one to try.
    virtual bool AskForLast() = 0;
    // Sets the number in its end record: volumes are numbered 0 to `last`.
    virtual void SetLast(std::uint32_t last) = 0;
    // Returns a volume by its number, from 0.
    virtual InputFile& Volume(std::uint32_t number) = 0;
    // If that volume is not the right one: whether there is another one to try.
    virtual bool AskAgain(std::uint32_t number) = 0;
};

// Reads continuously from one volume to the next.
class VolumeReader {
  public:
    VolumeReader(InputVolumes& volumes, std::uint32_t last, Place place)
        : volumes_(volumes), last_(last), position_(place) {}
    // Returns fewer bytes only at the archive's end.
    std::size_t Read(std::span<std::uint8_t> into);
    // Reads exactly that many bytes, or throws ExitCode::damaged.
    Bytes Take(std::size_t count);
    Place Position() const { return position_; }

  private:
    InputVolumes& volumes_;
    std::uint32_t last_;
    Place position_;
};

// An archive in one volume, in any file.
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
