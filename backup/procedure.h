// What the backup dialog's buttons do, in the exact order of their effects.
#pragma once

#include "backup/environment.h"
#include "backup/settings.h"

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
    // under its name and ".old" until the archiver has left a new archive, and put back if it does not; a run that was
    // cut short is made good by the next backup to the same place. What a restore writes comes in beside the target as
    // ".new" and takes its place in one step.
    void Run(FormState& form);

  private:
    template <typename Work>
    void Reporting(Work work);
    void AskForLocation(FormState& form);

    void BackUp(FormState& form);
    bool AskToOverwrite(const Text& location);
    // The archiver's exit code.
    std::uint32_t Archive(FormState& form);
    std::uint32_t RunArchiver(FormState& form, const Text& commandLine);
    // Of a file that is not there: one is made for that and deleted again.
    Text ShortPathOfNewFile(const Text& path);
    // `written` is whether there is a new archive at all.
    void SendByMail(const Text& location, bool written);

    void Restore(FormState& form);
    void CheckWorkingFolder(const Text& archive);
    void EmptyWorkingFolder();
    void Unpack(FormState& form);
    void RestoreAsGroup(const FormState& form, const Text& unpacked);
    // False when the password was refused.
    bool RestoreOver(const FormState& form, const Text& file);
    void PutInPlace(const Text& from, const Text& to);

    void Say(TextView prompt, const msgbox::MessageKind& kind, TextView title);

    Environment& environment_;
    const Settings settings_;
    const Mode mode_;
    bool completed_ = false;
};

}  // namespace qvx::backup
