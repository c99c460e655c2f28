// Archives of any origin: every unpacked file is below the target folder under a safe name, has the content that its
// checksum says, and never exists there unfinished. The first byte selects the kind: an archive as it is, one on two
// disks, entries with the names of the input in an otherwise valid archive, or a valid archive in which the input
// changes a few bytes.
#include <cstdint>

#include "archivers/archive_reader.h"
#include "archivers/archive_writer.h"
#include "archivers/disk_volumes.h"
#include "archivers/program.h"
#include "common/utf8.h"
#include "fuzz/fuzz_input.h"
#include "tests/support/memory_files.h"

namespace qvx::archivers {
namespace {

constexpr TextView target = u"C:\\out\\";

// A small disk, which the densest archives fill.
constexpr std::uint64_t capacity = 512 * 1024;

void CheckDisk(const MemoryFiles& files, const Bytes& archive) {
    Require(files.Temporaries() == 0, "nothing unfinished is left");
    for (const auto& [key, node] : files.fixed.nodes) {
        if (key == u"c:\\a.zip") {
            Require(node.bytes == archive, "the archive is as it was");
            continue;
        }
        if (key == u"c:\\out" || key == u"c:\\a.z01") continue;
        Require(TextView(node.path).starts_with(target), "everything is below the folder");
        Text name = node.path.substr(target.size());
        std::replace(name.begin(), name.end(), u'\\', u'/');
        Require(IsSafeName(name), "every name is safe");
    }
}

// Entries of the directory that can be read have the stated size and checksum.
void CheckReading(const MemoryNode& archive) {
    MemoryFiles files;
    files.Put(u"C:\\a.zip", archive.bytes);
    const auto file = files.OpenInput(u"C:\\a.zip");
    SingleInput volumes(*file);
    try {
        ArchiveReader reader(volumes);
        Require(reader.Entries().size() <= archive.bytes.size() / centralHeaderSize, "an entry takes its bytes");
        for (const Entry& entry : reader.Entries()) {
            std::uint64_t size = 0;
            try {
                reader.Read(entry, [&](ByteView bytes) { size += bytes.size(); });
                Require(size == entry.size, "the size is what was said");
            } catch (const ArchiveError&) {
                Require(size <= entry.size, "never more than was said");
            }
        }
    } catch (const ArchiveError&) {
    }
}

void UnpackOnce(MemoryFiles& files) {
    ScriptedConsole console;
    const Bytes before = files.Find(u"C:\\a.zip")->bytes;
    files.fixed.capacity = capacity;
    const ExitCode code = RunProgram(Program::unpack, u"x C:\\a.zip C:\\out\\", files, console, 1);
    Require(code != ExitCode::internal && code != ExitCode::usage, "every archive has its exit code");
    CheckDisk(files, before);
}

void NamesOf(FuzzInput& input, MemoryFiles& files) {
    ScriptedConsole console;
    files.Put(u"C:\\content", Bytes{1, 2, 3});
    const auto archive = MakeArchive(files, console, u"C:\\a.zip", false, 0);
    ArchiveWriter writer(*archive, 1);
    for (int i = 0; i < 20 && input.Left() > 0; ++i) {
        Entry entry;
        entry.system = input.Byte() % 2 == 0 ? 0 : 3;
        entry.attributes = std::uint32_t{input.Word()} << 16;
        entry.name = input.Latin(input.Byte() % 40);
        if (const auto name = DecodeUtf8(std::string(entry.name.begin(), entry.name.end()))) entry.name = *name;
        const auto file = files.OpenInput(u"C:\\content");
        writer.Add(entry, *file, [](std::uint64_t) {});
    }
    writer.Finish();
    archive->Commit();
    files.Remove(u"C:\\content");
}

// Random changes all over the archive hardly ever reach an entry; these do.
void ChangesOf(FuzzInput& input, MemoryFiles& files) {
    ScriptedConsole console;
    Bytes text(600);
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<std::uint8_t>("0123456789\n"[i * i % 77 % 11]);
    files.Put(u"C:\\packed", text);
    files.Put(u"C:\\stored", {1, 2, 3});
    const ExitCode code = RunProgram(Program::pack, u"x C:\\a.zip C:\\packed C:\\stored", files, console, 1);
    Require(code == ExitCode::done, "whole before it is changed");
    files.Remove(u"C:\\packed");
    files.Remove(u"C:\\stored");
    Bytes& bytes = files.Find(u"C:\\a.zip")->bytes;
    for (int i = 0; i < 6 && input.Left() >= 3; ++i) {
        const std::size_t at = input.Word() % bytes.size();
        bytes[at] = input.Byte();
    }
}

}  // namespace
}  // namespace qvx::archivers

void qvx::CheckInput(FuzzInput& input) {
    using namespace archivers;
    MemoryFiles files;
    const std::uint8_t kind = input.Byte() % 4;
    if (kind == 2) {
        NamesOf(input, files);
    } else if (kind == 3) {
        ChangesOf(input, files);
    } else {
        const std::size_t cut = kind == 1 ? input.Word() : 0;
        const Bytes bytes = input.RestBytes();
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(cut, bytes.size()));
        if (kind == 1) files.Put(u"C:\\a.z01", Bytes(bytes.begin(), place));
        files.Put(u"C:\\a.zip", Bytes(place, bytes.end()));
    }
    CheckReading(*files.Find(u"C:\\a.zip"));
    UnpackOnce(files);
}
