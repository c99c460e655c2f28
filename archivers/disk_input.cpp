#include "archivers/disk_volumes.h"
#include "archivers/file_names.h"
#include "common/number_text.h"

namespace qvx::archivers {

DiskInput::DiskInput(Files& files, Console& console, const Text& path)
    : files_(files), console_(console), path_(path), file_(files.OpenInput(path)) {}

InputFile& DiskInput::Last() { return *file_; }

bool DiskInput::AskForLast() {
    if (!files_.IsRemovable(path_)) return false;
    Ask(u"the last disk of the archive");
    return true;
}

void DiskInput::SetLast(std::uint32_t last) { current_ = last_ = last; }

// The disk's files must be closed while the question is open, so that the user can remove the disk.
void DiskInput::Ask(const Text& which) {
    file_.reset();
    const Text question = u"Insert " + which + u" and press Enter, or Ctrl+C to stop.";
    while (!file_) {
        console_.AskForEnter(question);
        try {
            file_ = files_.OpenInput(path_);
        } catch (const ArchiveError& error) {
            console_.Say(u"This disk cannot be used: " + Text(TextOf(error.Code())) + u".");
        }
    }
}

InputFile& DiskInput::Volume(std::uint32_t number) {
    if (number == current_ && file_) return *file_;
    if (number > last_) throw ArchiveError(ExitCode::damaged);
    const Text part = number == last_ ? path_ : SplitPartPath(path_, number);
    const bool isBeside = files_.Exists(number == last_ ? SplitPartPath(path_, 0) : part);
    if (isBeside || (number == last_ && !files_.IsRemovable(path_))) {
        file_ = files_.OpenInput(part);
    } else if (files_.IsRemovable(path_)) {
        Ask(u"disk " + IntegerToText(std::int64_t{number} + 1));
    } else {
        throw ArchiveError(ExitCode::notFound, Text(FileNameOf(part)));
    }
    current_ = number;
    return *file_;
}

bool DiskInput::AskAgain(std::uint32_t number) {
    if (last_ == 0 || !files_.IsRemovable(path_) || files_.Exists(SplitPartPath(path_, 0))) return false;
    console_.Say(u"This is not the disk that is needed.");
    Ask(u"disk " + IntegerToText(std::int64_t{number} + 1));
    current_ = number;
    return true;
}

}  // namespace qvx::archivers
