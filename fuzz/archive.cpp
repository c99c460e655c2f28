// Archives from anywhere: whatever is unpacked stands below the folder under a safe name, has the content its sum says,
// and never stands there unfinished. The first byte chooses: an archive as it is, one on two disks, or entries with the
// names of the input in an archive that is whole otherwise.
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

// A disk that is full sooner than an archive of a few bytes could fill it by a thousandfold.
constexpr std::uint64_t capacity = std::uint64_t{64} * 1024 * 1024;

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

// What the directory lists and can be read has the size and the sum it is said to have.
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

void Check(FuzzInput& input) {
    MemoryFiles files;
    const std::uint8_t kind = input.Byte() % 3;
    if (kind == 2) {
        NamesOf(input, files);
    } else {
        const std::size_t cut = kind == 1 ? input.Word() : 0;
        Bytes bytes;
        while (input.Left() > 0) bytes.push_back(input.Byte());
        const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(cut, bytes.size()));
        if (kind == 1) files.Put(u"C:\\a.z01", Bytes(bytes.begin(), place));
        files.Put(u"C:\\a.zip", Bytes(place, bytes.end()));
    }
    CheckReading(*files.Find(u"C:\\a.zip"));
    UnpackOnce(files);
}

}  // namespace
}  // namespace qvx::archivers

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qvx::FuzzInput input(data, size);
    qvx::archivers::Check(input);
    return 0;
}
