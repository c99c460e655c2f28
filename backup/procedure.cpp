#include "backup/procedure.h"

#include <optional>
#include <utility>

#include "backup/names.h"
#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::backup {

namespace {

namespace messages = msgbox::messages;

constexpr TextView chooseFolderTitle = u"Select a location";
constexpr TextView chooseArchiveTitle = u"Restore Database From";
constexpr TextView mailSubject = u"Database";
constexpr TextView completedText = u"Completed Successfully.";
constexpr TextView notCompletedText = u"Not Completed Successfully.";
constexpr TextView backupTitle = u"Backup";
constexpr TextView restoreTitle = u"Restore";

// Does something at the end of a scope however that is left, unless it has been called off.
template <typename Work>
class ScopeEnd {
  public:
    explicit ScopeEnd(Work work) : work_(std::move(work)) {}
    ~ScopeEnd() {
        if (!armed_) return;
        try {
            work_();
        } catch (...) {
            // What made the scope end is what the user hears of.
        }
    }
    ScopeEnd(const ScopeEnd&) = delete;
    ScopeEnd& operator=(const ScopeEnd&) = delete;
    void CallOff() { armed_ = false; }

  private:
    Work work_;
    bool armed_ = true;
};

// Sentences for the outcome line's tip, one behind the other.
void AddTip(FormState& form, TextView sentence) {
    if (!form.outcomeTip.empty()) form.outcomeTip += u' ';
    form.outcomeTip += sentence;
}

// What was set aside goes back, if nothing has come into its place. An empty file is none: it was there for a moment,
// to have its short path looked up.
void BringBack(Environment& environment, const Text& location, const Text& aside) {
    if (!environment.FileSize(aside)) return;
    const auto size = environment.FileSize(location);
    if (size && *size > 0) return;
    if (size) environment.DeleteFile(location);
    environment.RenameFile(aside, location);
}

Text FreeSetAsideName(Environment& environment, const Text& location) {
    int number = 1;
    while (environment.FileSize(SetAsideName(location, number))) ++number;
    return SetAsideName(location, number);
}

}  // namespace

template <typename Work>
void Procedure::Reporting(Work work) {
    try {
        work();
    } catch (...) {
        const RunTimeError error = CurrentError();
        environment_.ReportError(error.Number(), Discreet(error.Description(), settings_));
    }
}

void Procedure::Say(TextView prompt, const msgbox::MessageKind& kind, TextView title) {
    environment_.ShowMessage(prompt, kind, Text(title));
}

// ---- Browse --------------------------------------------------------------------------------------------------------

void Procedure::Browse(FormState& form) {
    Reporting([&] { AskForLocation(form); });
    environment_.Refresh(form);
}

void Procedure::AskForLocation(FormState& form) {
    form.outcome.clear();
    form.outcomeTip.clear();
    environment_.Refresh(form);
    if (mode_ == Mode::backup) {
        form.location = environment_.BrowseForFolder(chooseFolderTitle);
        if (!Trimmed(form.location).empty()) {
            const Date today = environment_.Today();
            form.location = ArchivePath(WithSeparator(form.location), settings_, today.day, today.month);
        }
    } else {
        form.location = environment_.ShowOpenFile(chooseArchiveTitle);
    }
    const bool chosen = !Trimmed(form.location).empty();
    if (chosen && environment_.DriveTypeOf(form.location) == DriveKind::removable) {
        // Else the removable drive would be kept busy for as long as it is the current one.
        environment_.ChangeDrive(settings_.dataPath);
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
    completed_ = false;
    Reporting([&] {
        if (mode_ == Mode::backup) {
            BackUp(form);
        } else {
            Restore(form);
        }
    });
    form.outcome = completed_ ? completedText : notCompletedText;
    environment_.Refresh(form);
}

// ---- Backup --------------------------------------------------------------------------------------------------------

bool Procedure::AskToOverwrite(const Text& location) {
    Text prompt(messages::overwriteBackupPrompt);
    prompt += u'\r' + location + u'\r';
    prompt += messages::overwriteBackupQuestion;
    return environment_.ShowMessage(prompt, messages::overwriteBackup, Text(messages::overwriteBackupTitle));
}

void Procedure::BackUp(FormState& form) {
    const Text& location = form.location;
    environment_.Refresh(form);
    BringBack(environment_, location, SetAsideName(location, 1));
    std::optional<Text> aside;
    if (environment_.FileSize(location)) {
        if (!AskToOverwrite(location)) return;
        aside = FreeSetAsideName(environment_, location);
        environment_.RenameFile(location, *aside);
    }
    ScopeEnd putBack([&] {
        if (aside) BringBack(environment_, location, *aside);
    });
    const std::uint32_t exitCode = Archive(form);
    const bool written = environment_.FileSize(location).has_value();
    putBack.CallOff();
    if (aside && !written) {
        environment_.RenameFile(*aside, location);
        AddTip(form, u"The previous archive is back in its place.");
    } else if (aside && exitCode != 0) {
        AddTip(form, u"The previous archive is kept beside it.");
    } else if (aside) {
        environment_.DeleteFile(*aside);
    }
    if (form.email) SendByMail(location, written);
}

Text Procedure::ShortPathOfNewFile(const Text& path) {
    environment_.CreateEmptyFile(path);
    ScopeEnd remove([&] { environment_.DeleteFile(path); });
    Text shortPath = environment_.ShortPath(path);
    remove.CallOff();
    environment_.DeleteFile(path);
    return shortPath;
}

std::uint32_t Procedure::RunArchiver(FormState& form, const Text& commandLine) {
    environment_.StartArchiver(commandLine);
    // An archive that was begun counts, whatever becomes of it; what a restore unpacks is looked at.
    completed_ = mode_ == Mode::backup;
    const std::uint32_t exitCode = environment_.WaitForArchiver();
    if (exitCode != 0) AddTip(form, u"The archiver ended with exit code " + IntegerToText(exitCode) + u'.');
    return exitCode;
}

std::uint32_t Procedure::Archive(FormState& form) {
    const Text& location = form.location;
    const Text shortLocation = ShortPathOfNewFile(location);
    Text command = Argument(environment_.ShortPath(settings_.zipPath + u"PkZip.exe"));
    // Then the archive may go on over several disks.
    command += environment_.DriveTypeOf(location) == DriveKind::removable ? u" -& " : u" ";
    command += Argument(shortLocation) + u' ';
    command += Argument(environment_.ShortPath(LiveDatabase(settings_)));
    const std::uint32_t exitCode = RunArchiver(form, command);
    // To the archiver the short path was a name like any other.
    if (!environment_.FileSize(location) && environment_.FileSize(shortLocation)) {
        environment_.RenameFile(shortLocation, location);
    }
    return exitCode;
}

void Procedure::SendByMail(const Text& location, bool written) {
    try {
        if (!written) throw RunTimeError(errors::fileNotFound, u"File not found");
        environment_.SendMail({Text(mailSubject), location, location});
    } catch (...) {
        const Text description = Discreet(CurrentError().Description(), settings_);
        Say(Text(messages::backupMailFailedPrompt) + u'\r' + description, messages::backupMailFailed, backupTitle);
    }
}

// ---- Restore -------------------------------------------------------------------------------------------------------

void Procedure::Restore(FormState& form) {
    const Text& location = form.location;
    if (!environment_.FileSize(location)) {
        Say(Text(messages::nothingToRestorePrompt) + u'\r' + location, messages::nothingToRestore, restoreTitle);
        return;
    }
    environment_.Refresh(form);
    CheckWorkingFolder(location);
    EmptyWorkingFolder();
    Unpack(form);
    const Text file = environment_.FirstFile(settings_.tempPath, settings_.dataExtension);
    const Text unpacked = settings_.tempPath + file;
    if (file.empty() || !environment_.DatabaseOpens(settings_.cnnString + unpacked)) {
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

// Everything in the working folder goes. That must not be what is restored, or from what, or by what.
void Procedure::CheckWorkingFolder(const Text& archive) {
    const Text& folder = settings_.tempPath;
    if (FolderOf(folder).empty() || FolderOf(folder).size() != folder.size()) {
        throw RunTimeError(errors::pathNotFound, u"Path not found");
    }
    const TextView from = FolderOf(archive);
    for (const TextView other :
         {TextView(settings_.dataPath), TextView(settings_.zipPath), from.empty() ? u"." : from}) {
        if (!environment_.SameFolder(folder, other)) continue;
        throw RunTimeError(errors::pathFileAccess,
                           u"The working folder must be one of its own, since every file in it is deleted.");
    }
}

void Procedure::EmptyWorkingFolder() {
    if (!environment_.FirstFile(settings_.tempPath, u"").empty()) environment_.DeleteFiles(settings_.tempPath);
}

void Procedure::Unpack(FormState& form) {
    Text shortFolder = ShortPathOfNewFile(settings_.tempPath + u'x');
    shortFolder.pop_back();
    Text command = Argument(environment_.ShortPath(settings_.zipPath + u"PkunZip.exe")) + u' ';
    command += Argument(environment_.ShortPath(form.location)) + u' ';
    command += Argument(shortFolder);
    RunArchiver(form, command);
}

void Procedure::RestoreAsGroup(const FormState& form, const Text& unpacked) {
    Text name = GroupName(form.groupName);
    if (name.empty()) name = SpareGroupName(environment_.TemporaryName());
    PutInPlace(unpacked, settings_.dataPath + name + settings_.dataExtension);
}

bool Procedure::RestoreOver(const FormState& form, const Text& file) {
    const Text from = settings_.tempPath + file;
    const Text target = settings_.dataPath + file;
    const Text connection = settings_.cnnString + target;
    const bool guarded =
        environment_.FileSize(target) && settings_.checkSecurity && environment_.DatabaseOpens(connection);
    if (!guarded) {
        PutInPlace(from, target);
        return true;
    }
    const bool accepted = environment_.RunPasswordPrompt(connection);
    ScopeEnd close([&] { environment_.ClosePasswordPrompt(); });
    environment_.Refresh(form);
    if (accepted) PutInPlace(from, target);
    return accepted;
}

void Procedure::PutInPlace(const Text& from, const Text& to) {
    const Text arriving = ArrivingName(to);
    ScopeEnd remove([&] {
        if (environment_.FileSize(arriving)) environment_.DeleteFile(arriving);
    });
    environment_.CopyFile(from, arriving);
    environment_.ReplaceFile(arriving, to);
    remove.CallOff();
}

}  // namespace qvx::backup
