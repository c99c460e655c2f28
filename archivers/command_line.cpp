#include "archivers/command_line.h"

#include <optional>

#include "archivers/exit_code.h"
#include "archivers/file_names.h"
#include "common/ascii.h"

namespace qvx::archivers {

const TextView packUsage =
    u"PkZip [-&] [-sSIZE] ARCHIVE FILE...\n"
    u"\n"
    u"Packs the files into a new archive, which takes the place of an old one of that name when it is complete.\n"
    u"* and ? in a file's name stand for any characters. Names are stored without their folders.\n"
    u"\n"
    u"  -&       goes on over several disks when the archive is on a removable drive\n"
    u"  -sSIZE   cuts the archive into parts of that size: -s700m (k, m, g)\n"
    u"  -?       shows this text\n";

const TextView unpackUsage =
    u"PkunZip ARCHIVE [FOLDER]\n"
    u"\n"
    u"Unpacks all files of the archive into the folder, or into the current one. Files of the same names are "
    u"replaced.\n"
    u"\n"
    u"  -?   shows this text\n";

namespace {

// A part must be able to contain the longest possible record.
constexpr std::uint64_t leastPart = 4096;
constexpr std::uint64_t mostPart = std::uint64_t{1} << 50;

[[noreturn]] void Misused(const Text& word = {}) { throw ArchiveError(ExitCode::usage, word); }

// Reads a number of bytes, or with k, m or g after the number, a multiple of a power of 1024.
std::uint64_t ParseSize(TextView digits, const Text& word) {
    std::uint64_t unit = 1;
    if (!digits.empty() && !IsDigit(digits.back())) {
        const std::size_t power = TextView(u"kmg").find(LowerAscii(digits.back()));
        if (power == TextView::npos) Misused(word);
        unit = std::uint64_t{1} << (10 * (power + 1));
        digits.remove_suffix(1);
    }
    if (digits.empty()) Misused(word);
    std::uint64_t size = 0;
    for (const char16_t c : digits) {
        if (!IsDigit(c) || size > mostPart) Misused(word);
        size = size * 10 + static_cast<std::uint64_t>(c - u'0');
    }
    if (size > mostPart / unit || size * unit < leastPart) Misused(word);
    return size * unit;
}

bool IsHelp(TextView word) { return word == u"-?" || word == u"/?" || word == u"-h" || word == u"--help"; }

bool IsOption(TextView word) { return word.size() > 1 && (word[0] == u'-' || word == u"/?"); }

}  // namespace

std::vector<Text> SplitCommandLine(TextView line) {
    std::vector<Text> words;
    std::optional<Text> word;
    bool isQuoted = false;
    for (const char16_t c : line) {
        if (c == u'"') {
            isQuoted = !isQuoted;
            if (!word) word.emplace();
        } else if (IsBlank(c) && !isQuoted) {
            if (word) words.push_back(*std::exchange(word, std::nullopt));
        } else {
            if (!word) word.emplace();
            *word += c;
        }
    }
    if (word) words.push_back(*word);
    if (!words.empty()) words.erase(words.begin());
    return words;
}

PackOptions ParsePackOptions(const std::vector<Text>& words) {
    PackOptions options;
    options.help = words.empty();
    std::size_t i = 0;
    for (; i < words.size() && IsOption(words[i]); ++i) {
        const Text& word = words[i];
        if (IsHelp(word)) {
            options.help = true;
        } else if (word == u"-&") {
            options.spans = true;
        } else if (word.starts_with(u"-s")) {
            options.partSize = ParseSize(TextView(word).substr(2), word);
        } else {
            Misused(word);
        }
    }
    if (options.help) return options;
    if (words.size() < i + 2 || FileNameOf(words[i]).empty()) Misused();
    options.archive = words[i];
    options.files.assign(words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
    for (const Text& file : options.files) {
        if (FileNameOf(file).empty() || HasWildcard(FolderOf(file))) Misused(Text(FileNameOf(file)));
    }
    return options;
}

UnpackOptions ParseUnpackOptions(const std::vector<Text>& words) {
    UnpackOptions options;
    options.help = words.empty();
    std::size_t i = 0;
    for (; i < words.size() && IsOption(words[i]); ++i) {
        if (!IsHelp(words[i])) Misused(words[i]);
        options.help = true;
    }
    if (options.help) return options;
    if (words.size() == i || words.size() > i + 2 || FileNameOf(words[i]).empty()) Misused();
    options.archive = words[i];
    if (words.size() == i + 2) options.folder = words[i + 1];
    return options;
}

}  // namespace qvx::archivers
