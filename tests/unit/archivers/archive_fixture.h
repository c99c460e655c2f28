// The common parts of the archivers' tests: disks in memory and the two programs on them.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "archivers/archive_writer.h"
#include "archivers/disk_volumes.h"
#include "archivers/program.h"
#include "tests/support/memory_files.h"

namespace qvx::archivers {

inline Bytes RandomBytes(std::size_t size, unsigned seed = 1) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 11);
    return bytes;
}

inline Bytes TextBytes(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>("0123456789\n"[i * i % 77 % 11]);
    return bytes;
}

class ArchiveTest : public testing::Test {
  protected:
    ExitCode PkZip(const Text& arguments, unsigned threads = 2) {
        return RunProgram(Program::pack, u"PkZip.exe " + arguments, files, console, threads);
    }
    ExitCode PkunZip(const Text& arguments) {
        return RunProgram(Program::unpack, u"PkunZip.exe " + arguments, files, console, 1);
    }
    const Bytes& ContentOf(const Text& path) {
        static const Bytes none = {'n', 'o', 'n', 'e'};
        const MemoryNode* node = files.Find(path);
        return node ? node->bytes : none;
    }
    // Writes an archive with entries that PkZip would never write, unchanged.
    void WriteArchive(const std::vector<Entry>& entries, const Bytes& content, const Text& path = u"C:\\a.zip") {
        const auto archive = MakeArchive(files, console, path, false, 0);
        ArchiveWriter writer(*archive, 1);
        files.Put(u"C:\\content", content);
        for (const Entry& entry : entries) {
            const auto file = files.OpenInput(u"C:\\content");
            writer.Add(entry, *file, [](std::uint64_t) {});
        }
        writer.Finish();
        archive->Commit();
        files.Remove(u"C:\\content");
    }
    // Returns the number of files and folders below C:\out, and expects that no others exist except those of the test.
    std::size_t Unpacked() const {
        std::size_t count = 0;
        for (const auto& [key, node] : files.fixed.nodes) {
            if (key == u"c:\\a.zip" || key == u"c:\\out") continue;
            EXPECT_TRUE(key.starts_with(u"c:\\out\\")) << "outside";
            ++count;
        }
        return count;
    }

    MemoryFiles files;
    ScriptedConsole console;
};

}  // namespace qvx::archivers
