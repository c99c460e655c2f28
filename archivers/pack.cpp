#include "archivers/pack.h"

#include <algorithm>
#include <set>

#include "archivers/archive_reader.h"
#include "archivers/archive_writer.h"
#include "archivers/disk_volumes.h"
#include "archivers/file_names.h"
#include "common/text_compare.h"

namespace qvx::archivers {

namespace {

bool IsSamePath(Files& files, const Text& one, const Text& other) {
    return EqualNoCase(files.FullPath(one), files.FullPath(other));
}

// Returns the files that match a name with wildcards, excluding folders, unfinished archives and the archive itself.
std::vector<Text> Matching(const Text& pattern, const PackOptions& options, Files& files) {
    const Text folder(FolderOf(pattern));
    std::vector<Text> found;
    for (const ListedFile& file : files.List(folder)) {
        if (file.isFolder || file.name.ends_with(archiveSuffix)) continue;
        if (!MatchesWildcard(FileNameOf(pattern), file.name)) continue;
        Text path = Joined(folder, file.name);
        if (!IsSamePath(files, path, options.archive)) found.push_back(std::move(path));
    }
    std::sort(found.begin(), found.end());
    if (found.empty()) throw ArchiveError(ExitCode::nothingMatched, Text(FileNameOf(pattern)));
    return found;
}

// Returns every file once, each under its long name, whatever short name it was given by.
std::vector<Text> Sources(const PackOptions& options, Files& files) {
    std::vector<Text> sources;
    for (const Text& given : options.files) {
        if (HasWildcard(given)) {
            for (Text& path : Matching(given, options, files)) sources.push_back(std::move(path));
        } else {
            sources.push_back(files.FullPath(given));
        }
    }
    std::set<Text> names;
    for (const Text& path : sources) {
        const Text name(FileNameOf(path));
        if (!IsSafeComponent(name)) throw ArchiveError(ExitCode::unsafeName, name);
        if (!names.insert(FoldedText(name)).second || IsSamePath(files, path, options.archive)) {
            throw ArchiveError(ExitCode::sameName, name);
        }
    }
    return sources;
}

Entry EntryOf(const Text& path, const FileFacts& facts, Files& files) {
    Entry entry;
    entry.name = FileNameOf(path);
    entry.modified = facts.modified;
    entry.dosTime = DosTime(files.LocalTime(facts.modified));
    entry.attributes = facts.attributes & attribute::kept;
    return entry;
}

void AddFile(const Text& path, ArchiveWriter& writer, Files& files, Console& console) {
    const auto file = files.OpenInput(path);
    const FileFacts facts = file->Facts();
    const Text name(FileNameOf(path));
    if ((facts.attributes & attribute::folder) != 0) throw ArchiveError(ExitCode::notFound, name);
    writer.Add(EntryOf(path, facts, files), *file, [&](std::uint64_t done) {
        CheckStopped(console);
        console.Progress(Printable(name), facts.size > 0
                                              ? static_cast<int>(std::min(100.0, 100.0 * static_cast<double>(done) /
                                                                                     static_cast<double>(facts.size)))
                                              : 100);
    });
}

// The unfinished archive must contain exactly what was read.
void CheckWritten(InputVolumes& volumes, const ArchiveWriter& writer, Console& console) {
    ArchiveReader reader(volumes);
    const std::vector<Entry>& written = reader.Entries();
    const auto isSame = [](const Entry& one, const Entry& other) {
        return one.name == other.name && one.size == other.size && one.crc == other.crc;
    };
    if (!std::ranges::equal(written, writer.Entries(), isSame)) throw ArchiveError(ExitCode::readWrite);
    for (const Entry& entry : written) {
        reader.Read(entry, [&](ByteView) { CheckStopped(console); });
    }
}

void PackInto(PendingArchive& archive, const std::vector<Text>& sources, Files& files, Console& console,
              unsigned threads) {
    ArchiveWriter writer(archive, threads);
    for (const Text& path : sources) AddFile(path, writer, files, console);
    writer.Finish();
    archive.Current().Flush();
    if (InputVolumes* written = archive.Written()) {
        try {
            CheckWritten(*written, writer, console);
        } catch (const ArchiveError& error) {
            // The data was damaged on its way to the disk.
            const bool isStop = error.Code() == ExitCode::stopped;
            throw ArchiveError(isStop ? ExitCode::stopped : ExitCode::readWrite, error.Name());
        }
    }
    CheckStopped(console);
    archive.Commit();
}

}  // namespace

void Pack(const PackOptions& options, Files& files, Console& console, unsigned threads) {
    const Text name(FileNameOf(options.archive));
    if (!IsSafeComponent(name)) throw ArchiveError(ExitCode::unsafeName, name);
    // A protected archive must not be replaced; it is better to say so before the work than after it.
    if ((files.Attributes(options.archive) & (attribute::readOnly | attribute::folder)) != 0) {
        throw ArchiveError(ExitCode::accessDenied, name);
    }
    const std::vector<Text> sources = Sources(options, files);
    RemoveStale(files, options.archive, archiveSuffix);
    const auto archive = MakeArchive(files, console, options.archive, options.spans, options.partSize);
    PackInto(*archive, sources, files, console, threads);
}

}  // namespace qvx::archivers
