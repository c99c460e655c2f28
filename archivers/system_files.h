// Windows' files, disks and console for the archivers.
#pragma once

#include "archivers/files.h"

namespace qvx::archivers {

// Accepts any path, however long and in any script.
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

// Ctrl+C, Ctrl+Break and closing the window ask the program to stop, which then removes its unfinished files.
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

// Returns the path in the form that the system accepts at any length: absolute, and with a prefix.
Text LongPath(const Text& path);

// Throws the error for the system's last error, with the file's own name.
[[noreturn]] void ThrowSystemError(TextView path);

}  // namespace qvx::archivers
