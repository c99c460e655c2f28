// Windows' files, disks and console for the archivers.
#pragma once

#include "archivers/files.h"

namespace qvx::archivers {

// Any path works, however long and in whatever script.
class SystemFiles final : public Files {
  public:
    std::unique_ptr<InputFile> OpenInput(const Text& path) override;
    std::unique_ptr<OutputFile> CreateOutput(const Text& temporaryPath) override;
    std::vector<ListedFile> List(const Text& folder) override;
    bool Exists(const Text& path) override;
    std::uint32_t Attributes(const Text& path) override;
    void MakeFolder(const Text& path, bool linkAllowed) override;
    bool Remove(const Text& path) noexcept override;
    Text FullPath(const Text& path) override;
    bool IsRemovable(const Text& path) override;
    std::uint64_t RoomFor(const Text& path) override;
    CivilTime LocalTime(FileTime time) override;
    FileTime FromLocalTime(const CivilTime& local) override;
};

// Ctrl+C, Ctrl+Break and closing the window ask the program to stop; what it has unfinished is tidied up then.
class SystemConsole final : public Console {
  public:
    SystemConsole();
    void Say(const Text& line) override;
    void Complain(const Text& line) override;
    void Progress(const Text& name, int percent) override;
    void AskForEnter(const Text& question) override;
    bool IsStopped() override;

  private:
    void EndProgress();
    Text shownName_;
    int shownPercent_ = -1;
    bool isTerminal_ = false;
};

// The path as the system takes it without a limit of length: absolute, and marked as such.
Text LongPath(const Text& path);

// Throws what the system's last error amounts to, with the file's own name.
[[noreturn]] void ThrowSystemError(TextView path);

}  // namespace qvx::archivers
