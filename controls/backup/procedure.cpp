#include "controls/backup/procedure.h"

#include <new>
#include <optional>
#include <utility>

#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/backup/backup_names.h"
#include "controls/backup/set_aside.h"

namespace qvx::backup {

namespace {

namespace messages = dialogs::messages;

constexpr TextView chooseFolderTitle = u"Select a location";
constexpr TextView chooseArchiveTitle = u"Restore Database From";
constexpr TextView mailSubject = u"Database";
constexpr TextView completedText = u"Completed Successfully.";
constexpr TextView notCompletedText = u"Not Completed Successfully.";
constexpr TextView backupTitle = u"Backup";
constexpr TextView restoreTitle = u"Restore";

// Runs an action at the end of a scope, however the scope is left, unless it has been cancelled.
template <typename Work>
class ScopeEnd {
  public:
    explicit ScopeEnd(Work work) : work_(std::move(work)) {}
    ~ScopeEnd() {
        if (!armed_) return;
        try {
            work_();
        } catch (...) {
            // The user is shown the error that ended the scope.
        }
    }
    ScopeEnd(const ScopeEnd&) = delete;
    ScopeEnd& operator=(const ScopeEnd&) = delete;
    void CallOff() { armed_ = false; }

  private:
    Work work_;
    bool armed_ = true;
};

// Appends a sentence to the tip of the outcome line.
void AddTip(FormState& form, TextView sentence) {
    if (!form.outcomeTip.empty()) form.outcomeTip += u' ';
    form.outcomeTip += sentence;
}

// An empty file is not an archive: it existed for a moment, so that its short path could be looked up.
bool HoldsArchive(SystemSteps& system, const Text& path) { return system.FileSize(path).value_or(0) > 0; }

// Returns how many archives have been set aside for this one.
int CountSetAside(SystemSteps& system, const Text& location) {
    int count = 0;
    while (system.FileSize(SetAsideName(location, count + 1))) ++count;
    return count;
}

// Returns the archive that was set aside last; empty when there is none.
Text LastSetAside(SystemSteps& system, const Text& location) {
    const int count = CountSetAside(system, location);
    return count > 0 ? SetAsideName(location, count) : Text();
}

// Puts back what was set aside, if nothing has replaced it.
void BringBack(SystemSteps& system, const Text& location, const Text& aside) {
    if (HoldsArchive(system, location) || !system.FileSize(aside)) return;
    if (system.FileSize(location)) system.DeleteFile(location);
    system.RenameFile(aside, location);
}

// The last of several disks may have been removed as soon as its archiver was done; the exit code must be trusted then.
bool MayBeOutOfReach(DriveKind drive, std::uint32_t exitCode) { return drive == DriveKind::removable && exitCode == 0; }

// Starts with the last one, so that those that remain have the first numbers.
void DeleteSetAside(SystemSteps& system, const Text& location) {
    for (int number = CountSetAside(system, location); number > 0; --number) {
        system.DeleteFile(SetAsideName(location, number));
    }
}

}  // namespace

template <typename Work>
void Procedure::Reporting(Work work) {
    try {
        work();
    } catch (...) {
        const RunTimeError error = CurrentError();
        Report(error.Number(), Redacted(error.Description()));
    }
}

void Procedure::Report(int number, TextView description) {
    try {
        user_.ReportError(number, description);
    } catch (const std::bad_alloc&) {
        // There is no memory even for the message; the outcome line remains.
    }
}

void Procedure::Say(TextView prompt, const dialogs::MessageKind& kind, TextView title) {
    user_.ShowMessage(prompt, kind, Text(title));
}

// ---- Browse --------------------------------------------------------------------------------------------------------

void Procedure::Browse(FormState& form) {
    Reporting([&] { AskForLocation(form); });
    user_.Refresh(form);
}

void Procedure::AskForLocation(FormState& form) {
    form.outcome.clear();
    form.outcomeTip.clear();
    user_.Refresh(form);
    if (mode_ == Mode::backup) {
        form.location = user_.BrowseForFolder(chooseFolderTitle);
        if (!Trimmed(form.location).empty()) {
            const Date today = system_.Today();
            form.location = ArchivePath(WithSeparator(form.location), settings_, today.day, today.month);
        }
    } else {
        form.location = user_.ShowOpenFile(chooseArchiveTitle);
    }
    const bool chosen = !Trimmed(form.location).empty();
    if (chosen && system_.DriveTypeOf(form.location) == DriveKind::removable) {
        // Otherwise the removable drive would stay in use for as long as it is the current one.
        system_.ChangeDrive(settings_.dataPath);
    }
}

// ---- OK ------------------------------------------------------------------------------------------------------------

void Procedure::Run(FormState& form) {
    form.outcome.clear();
    form.outcomeTip.clear();
    if (Trimmed(form.location).empty()) {
        Browse(form);
        if (Trimmed(form.location).empty()) return;
    }
    // At once: the first message of the work must not appear beside the outcome of the previous work.
    user_.Refresh(form);
    completed_ = false;
    archiveMissing_ = false;
    Reporting([&] {
        form.outcome.reserve(notCompletedText.size());
        if (mode_ == Mode::backup) {
            BackUp(form);
        } else {
            Restore(form);
        }
    });
    if (form.outcome.capacity() >= notCompletedText.size())
        form.outcome = completed_ ? completedText : notCompletedText;
    user_.Refresh(form);
    if (archiveMissing_) Report(errors::fileNotFound, u"The archiver has left no archive.");
}

// ---- Backup --------------------------------------------------------------------------------------------------------

bool Procedure::AskToOverwrite(const Text& location) {
    Text prompt(messages::overwriteBackupPrompt);
    prompt += u'\r' + location + u'\r';
    prompt += messages::overwriteBackupQuestion;
    return user_.ShowMessage(prompt, messages::overwriteBackup, Text(messages::overwriteBackupTitle));
}

void Procedure::BackUp(FormState& form) {
    const Text& location = form.location;
    BringBack(system_, location, LastSetAside(system_, location));
    const auto oldSize = system_.FileSize(location);
    if (oldSize && !AskToOverwrite(location)) return;

    // Everything that can be found missing is found before the old archive is changed.
    const Text live = LiveDatabase(settings_);
    const Text archiver = system_.ShortPath(settings_.zipPath + u"PkZip.exe");
    const Text database = system_.ShortPath(live);
    const DriveKind drive = system_.DriveTypeOf(location);
    const Plan plan = PlanFor({drive, system_.FreeSpace(location), system_.FileSize(live).value_or(0), oldSize});
    if (plan == Plan::noRoom) throw RunTimeError(errors::diskFull, u"Disk full");

    std::optional<SetAside> aside;
    if (oldSize && plan == Plan::deleteOld) {
        system_.DeleteFile(location);
    } else if (oldSize) {
        aside = {SetAsideName(location, CountSetAside(system_, location) + 1), *oldSize};
        system_.RenameFile(location, aside->path);
    }
    ScopeEnd putBack([&] {
        if (aside) BringBack(system_, location, aside->path);
    });
    const Text shortLocation = ShortPathOfNewFile(location);
    // On a removable drive, the archive may span several disks.
    const TextView spanning = drive == DriveKind::removable ? u" -& " : u" ";
    const std::uint32_t exitCode =
        RunArchiver(form, Argument(archiver) + Text(spanning) + Argument(shortLocation) + u' ' + Argument(database));
    try {
        Finish(form, shortLocation, aside, exitCode);
    } catch (const RunTimeError&) {
        if (!MayBeOutOfReach(drive, exitCode)) throw;
    }
    archiveMissing_ = archiveMissing_ && !MayBeOutOfReach(drive, exitCode);
    putBack.CallOff();
    if (form.email) SendByMail(location);
}

void Procedure::Finish(FormState& form, const Text& shortLocation, const std::optional<SetAside>& aside,
                       std::uint32_t exitCode) {
    const Text& location = form.location;
    // The archiver treated the short path as an ordinary name.
    if (!system_.FileSize(location) && system_.FileSize(shortLocation)) {
        system_.RenameFile(shortLocation, location);
    }
    archiveMissing_ = !HoldsArchive(system_, location);
    // Another disk may be in the drive by now.
    if (!aside || system_.FileSize(aside->path) != aside->size) return;
    if (archiveMissing_) {
        BringBack(system_, location, aside->path);
        AddTip(form, u"The previous archive is back in its place.");
        return;
    }
    try {
        if (exitCode == 0) DeleteSetAside(system_, location);
    } catch (const RunTimeError&) {
        // A leftover file does not make a completed backup fail.
    }
    if (system_.FileSize(aside->path)) AddTip(form, u"The previous archive is kept beside it.");
}

Text Procedure::ShortPathOfNewFile(const Text& path) {
    system_.CreateEmptyFile(path);
    ScopeEnd remove([&] { system_.DeleteFile(path); });
    Text shortPath = system_.ShortPath(path);
    remove.CallOff();
    system_.DeleteFile(path);
    return shortPath;
}

std::uint32_t Procedure::RunArchiver(FormState& form, const Text& commandLine) {
    system_.StartArchiver(commandLine);
    // A backup counts as completed once its archiver has started, whatever happens; the result of unpacking is checked.
    completed_ = mode_ == Mode::backup;
    const std::uint32_t exitCode = system_.WaitForArchiver();
    if (exitCode != 0) AddTip(form, u"The archiver ended with exit code " + IntegerToText(exitCode) + u'.');
    return exitCode;
}

void Procedure::SendByMail(const Text& location) {
    try {
        if (archiveMissing_) throw RunTimeError(errors::fileNotFound, u"File not found");
        system_.SendMail({Text(mailSubject), location, location});
    } catch (...) {
        const RunTimeError error = CurrentError();
        Say((Text(messages::backupMailFailedPrompt) + u'\r').append(Redacted(error.Description())),
            messages::backupMailFailed, backupTitle);
    }
}

// ---- Restore -------------------------------------------------------------------------------------------------------

void Procedure::Restore(FormState& form) {
    const Text archive = ArchiveToRestore(form);
    if (archive.empty()) {
        Say(Text(messages::nothingToRestorePrompt) + u'\r' + form.location, messages::nothingToRestore, restoreTitle);
        return;
    }
    CheckWorkingFolder(archive);
    EmptyWorkingFolder();
    Unpack(form, archive);
    const Text file = system_.FirstFile(settings_.tempPath, settings_.dataExtension);
    CheckName(file);
    const Text unpacked = settings_.tempPath + file;
    if (file.empty() || !system_.DatabaseOpens(settings_.cnnString + unpacked)) {
        Say(messages::restoreFailedPrompt, messages::restoreFailed, messages::restoreFailedTitle);
        return;
    }
    if (form.email) {
        RestoreAsGroup(form, unpacked);
    } else if (!RestoreOver(form, file)) {
        return;
    }
    completed_ = true;
    EmptyWorkingFolder();
}

// Empty when there is none. After an interrupted backup, the only archive may be the one that was set aside.
Text Procedure::ArchiveToRestore(FormState& form) {
    const Text& location = form.location;
    if (!HoldsArchive(system_, location)) {
        Text aside = LastSetAside(system_, location);
        if (!aside.empty()) {
            AddTip(form, u"A backup to this place was cut short; the archive before it was taken.");
            return aside;
        }
    }
    return system_.FileSize(location) ? location : Text();
}

// Everything in the working folder is deleted. It must not contain the database, the archive or the archivers.
void Procedure::CheckWorkingFolder(const Text& archive) {
    const Text& folder = settings_.tempPath;
    if (FolderOf(folder).empty() || FolderOf(folder).size() != folder.size()) {
        throw RunTimeError(errors::pathNotFound, u"Path not found");
    }
    // Paths are joined without changes, so a setting may be empty, or end in the beginning of a name.
    for (const Text& file : {LiveDatabase(settings_), settings_.dataPath + u'x', settings_.zipPath + u'x', archive}) {
        const TextView other = FolderOf(file);
        if (!system_.SameFolder(folder, other.empty() ? u"." : other)) continue;
        throw RunTimeError(errors::pathFileAccess,
                           u"The working folder must be one of its own, since every file in it is deleted.");
    }
}

// The name of a file from an archive, which anybody may have made, becomes part of connection strings. The host's own
// database is opened by its name anyway.
void Procedure::CheckName(const Text& unpacked) const {
    if (FitsConnectionString(unpacked) || EqualNoCase(unpacked, settings_.database + settings_.dataExtension)) return;
    constexpr int badFileName = 52;
    throw RunTimeError(badFileName, u"The database in the archive has a name that cannot be opened safely.");
}

void Procedure::EmptyWorkingFolder() {
    if (!system_.FirstFile(settings_.tempPath, u"").empty()) system_.DeleteFiles(settings_.tempPath);
}

void Procedure::Unpack(FormState& form, const Text& archive) {
    Text shortFolder = ShortPathOfNewFile(settings_.tempPath + u'x');
    shortFolder.pop_back();
    Text command = Argument(system_.ShortPath(settings_.zipPath + u"PkunZip.exe")) + u' ';
    command += Argument(system_.ShortPath(archive)) + u' ';
    command += Argument(shortFolder);
    RunArchiver(form, command);
}

void Procedure::RestoreAsGroup(const FormState& form, const Text& unpacked) {
    Text name = GroupName(form.groupName);
    if (name.empty()) name = SpareGroupName(system_.TemporaryName());
    system_.ReplaceFile(unpacked, settings_.dataPath + name + settings_.dataExtension);
}

bool Procedure::RestoreOver(const FormState& form, const Text& file) {
    const Text from = settings_.tempPath + file;
    const Text target = settings_.dataPath + file;
    const Text connection = settings_.cnnString + target;
    const bool guarded = system_.FileSize(target) && settings_.checkSecurity && system_.DatabaseOpens(connection);
    if (!guarded) {
        system_.ReplaceFile(from, target);
        return true;
    }
    const bool accepted = user_.RunPasswordPrompt(connection);
    ScopeEnd close([&] { user_.ClosePasswordPrompt(); });
    user_.Refresh(form);
    if (accepted) system_.ReplaceFile(from, target);
    return accepted;
}

}  // namespace qvx::backup
