// What the backup dialog's buttons do, in the exact order of their effects.
#pragma once

#include "controls/backup/environment.h"
#include "controls/backup/settings.h"

namespace qvx::backup {

class Procedure {
  public:
    Procedure(Environment& environment, Settings settings, Mode mode)
        : environment_(environment), settings_(std::move(settings)), mode_(mode) {}

    // The Browse button: asks where to put the archive, or which one to take. Errors are reported, not thrown.
    void Browse(FormState& form);
    // The OK button: runs the backup or the restore and says in the outcome line how it went. Errors are reported, not
    // thrown.
    //
    // Neither a failure nor the end of the program at any moment loses a file. What a backup writes over is set aside
    // until the archiver has left a new archive, and put back if it does not; a run that was cut short is made good by
    // the next backup to the same place, and until then a restore takes the archive that waits there. Only where the
    // medium has no room for both does the old archive go first. What a restore writes comes in beside the target and
    // takes its place in one step.
    void Run(FormState& form);

  private:
    template <typename Work>
    void Reporting(Work work);
    void Report(int number, TextView description);
    void AskForLocation(FormState& form);

    // An archive that waits for the new one, and its size, to know it again.
    struct SetAside {
        Text path;
        std::uint64_t size = 0;
    };

    void BackUp(FormState& form);
    bool AskToOverwrite(const Text& location);
    // The archiver's exit code.
    std::uint32_t RunArchiver(FormState& form, const Text& commandLine);
    // Of a file that is not there: one is made for that and deleted again.
    Text ShortPathOfNewFile(const Text& path);
    // Looks at what the archiver has left.
    void Finish(FormState& form, const Text& shortLocation, const std::optional<SetAside>& aside,
                std::uint32_t exitCode);
    void SendByMail(const Text& location);

    void Restore(FormState& form);
    Text ArchiveToRestore(FormState& form);
    void CheckName(const Text& unpacked) const;
    void CheckWorkingFolder(const Text& archive);
    void EmptyWorkingFolder();
    void Unpack(FormState& form, const Text& archive);
    void RestoreAsGroup(const FormState& form, const Text& unpacked);
    // False when the password was refused.
    bool RestoreOver(const FormState& form, const Text& file);

    void Say(TextView prompt, const dialogs::MessageKind& kind, TextView title);

    Environment& environment_;
    const Settings settings_;
    const Mode mode_;
    bool completed_ = false;
    bool archiveMissing_ = false;  // after an archiver that should have left one
};

}  // namespace qvx::backup
