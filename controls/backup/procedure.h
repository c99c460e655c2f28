// The actions of the backup dialog's buttons, in the exact order of their effects.
#pragma once

#include "controls/backup/settings.h"
#include "controls/backup/steps.h"

namespace qvx::backup {

class Procedure {
  public:
    Procedure(UserSteps& user, SystemSteps& system, Settings settings, Mode mode)
        : user_(user), system_(system), settings_(std::move(settings)), mode_(mode) {}

    // The Browse button: asks for the folder of the new archive, or for the archive to restore. Errors are shown, not
    // thrown.
    void Browse(FormState& form);
    // The OK button: runs the backup or the restore and writes the result to the outcome line. Errors are shown, not
    // thrown.
    //
    // Neither a failure nor the end of the program at any moment loses a file. The archive that a backup overwrites is
    // set aside until the archiver has created a new one, and put back if it does not. After an interrupted run, the
    // next backup to the same place puts it back, and until then a restore uses the archive that was set aside. Only
    // where the medium has no room for both archives, the old one is deleted first. A restore writes its files beside
    // the target and replaces the target in one step.
    void Run(FormState& form);

  private:
    template <typename Work>
    void Reporting(Work work);
    void Report(int number, TextView description);
    void AskForLocation(FormState& form);

    // An archive that was set aside, and its size, by which it is recognised.
    struct SetAside {
        Text path;
        std::uint64_t size = 0;
    };

    void BackUp(FormState& form);
    bool AskToOverwrite(const Text& location);
    // Returns the archiver's exit code.
    std::uint32_t RunArchiver(FormState& form, const Text& commandLine);
    // For a file that does not exist: it is created for that and deleted again.
    Text ShortPathOfNewFile(const Text& path);
    // Examines what the archiver has left.
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
    // Returns false when the password was refused.
    bool RestoreOver(const FormState& form, const Text& file);

    void Say(TextView prompt, const dialogs::MessageKind& kind, TextView title);

    UserSteps& user_;
    SystemSteps& system_;
    const Settings settings_;
    const Mode mode_;
    bool completed_ = false;
    bool archiveMissing_ = false;  // after an archiver that should have created one
};

}  // namespace qvx::backup
