// The exit codes of PkZip and PkunZip, and the error that leads to them.
#pragma once

#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "common/text.h"

namespace qvx::archivers {

enum class ExitCode {
    done = 0,
    usage = 1,
    notFound = 2,
    nothingMatched = 3,
    accessDenied = 4,
    diskFull = 5,
    readWrite = 6,
    sourceChanged = 7,
    sameName = 8,
    damaged = 9,
    wrongCrc = 10,
    unsupported = 11,
    unsafeName = 12,
    stopped = 13,
    noNextDisk = 14,
    outOfMemory = 15,
    internal = 16,
};

struct ExitText {
    ExitCode code;
    TextView text;  // the message on the console, after the file's name if there is one
};

constexpr std::array<ExitText, 17> exitTexts = {{
    {ExitCode::done, u"done"},
    {ExitCode::usage, u"the command line makes no sense"},
    {ExitCode::notFound, u"not found"},
    {ExitCode::nothingMatched, u"no file has a name like that"},
    {ExitCode::accessDenied, u"access is denied, or another program uses it"},
    {ExitCode::diskFull, u"the disk is full"},
    {ExitCode::readWrite, u"reading or writing failed"},
    {ExitCode::sourceChanged, u"has been changed while it was read"},
    {ExitCode::sameName, u"the archive would hold this name twice, or itself"},
    {ExitCode::damaged, u"the archive is damaged"},
    {ExitCode::wrongCrc, u"the archive's data is damaged"},
    {ExitCode::unsupported, u"is encrypted or packed in a way that is not known here"},
    {ExitCode::unsafeName, u"a name that is not safe to write"},
    {ExitCode::stopped, u"stopped"},
    {ExitCode::noNextDisk, u"another disk is needed, and nobody is there to insert it"},
    {ExitCode::outOfMemory, u"there is not enough memory"},
    {ExitCode::internal, u"something unexpected went wrong"},
}};

// Returns the console message of a code.
TextView TextOf(ExitCode code);

class ArchiveError : public std::exception {
  public:
    // `name` is a file's own name, without a folder, or empty.
    explicit ArchiveError(ExitCode code, Text name = {}) : code_(code), name_(std::move(name)) {}
    const char* what() const noexcept override { return "an archiver's error"; }
    ExitCode Code() const { return code_; }
    const Text& Name() const { return name_; }

  private:
    ExitCode code_;
    Text name_;
};

}  // namespace qvx::archivers
