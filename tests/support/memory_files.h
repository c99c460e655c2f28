// Disks in memory for the archivers: a fixed disk C:, and a drive A: for small disks. They fill up, fail, or stop with
// the program on request. Also a console with prepared answers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>

#include "archivers/file_names.h"
#include "archivers/files.h"
#include "common/text_compare.h"

namespace qvx::archivers {

struct MemoryNode {
    Text path;
    Bytes bytes;
    FileTime modified = 0;
    std::uint32_t attributes = 0;
    bool isOpen = false;  // is being written
    bool operator==(const MemoryNode&) const = default;
};

struct MemoryDisk {
    std::map<Text, MemoryNode> nodes;
    std::uint64_t capacity = std::numeric_limits<std::uint64_t>::max();

    std::uint64_t Used() const {
        std::uint64_t used = 0;
        for (const auto& [key, node] : nodes) used += node.bytes.size();
        return used;
    }
};

class MemoryFiles : public Files {
  public:
    MemoryDisk fixed;
    std::vector<MemoryDisk> disks = std::vector<MemoryDisk>(1);
    std::size_t inserted = 0;  // which of them is in the drive
    bool isRemovable = true;
    // The number of the change that fails, from 1, and how; 0 for none.
    int failingChange = 0;
    std::optional<ExitCode> failure;  // none: the program is killed there, and nothing it does has an effect any more
    int changes = 0;
    bool isDead = false;
    // Local time is this many seconds ahead of UTC.
    std::int64_t zone = 3600;
    // The full paths of files by their folded short ones.
    std::map<Text, Text> shortPaths;
    // Called whenever a source is read.
    std::function<void(const Text&)> onRead;

    MemoryNode& Put(const Text& path, Bytes bytes, std::uint32_t attributes = 0) {
        MemoryNode node = {Plain(path), std::move(bytes), FromUnixTime(1'000'000'001), attributes, false};
        return DiskOf(path).nodes.insert_or_assign(FoldedText(node.path), std::move(node)).first->second;
    }
    MemoryNode* Find(const Text& path) {
        auto& nodes = DiskOf(path).nodes;
        const auto found = nodes.find(FoldedText(LongForm(path)));
        return found == nodes.end() ? nullptr : &found->second;
    }

    std::unique_ptr<InputFile> OpenInput(const Text& path) override {
        if (!Find(path)) throw ArchiveError(ExitCode::notFound, Text(FileNameOf(path)));
        return std::make_unique<Input>(*this, path);
    }
    std::unique_ptr<OutputFile> CreateOutput(const Text& path) override {
        Change();
        const MemoryNode* old = Find(path);
        if (old && old->isOpen && !isDead) throw ArchiveError(ExitCode::accessDenied);
        auto output = std::make_unique<Output>(*this, path);
        Put(path, {}).isOpen = true;
        return output;
    }
    std::vector<ListedFile> List(const Text& folder) override {
        std::vector<ListedFile> files;
        for (const auto& [key, node] : DiskOf(folder).nodes) {
            if (EqualNoCase(FolderOf(node.path), Plain(folder))) {
                files.push_back({Text(FileNameOf(node.path)), (node.attributes & attribute::folder) != 0});
            }
        }
        return files;
    }
    bool Exists(const Text& path) override { return Find(path) != nullptr; }
    std::uint32_t Attributes(const Text& path) override { return Find(path) ? Find(path)->attributes : 0; }
    void MakeFolder(const Text& path, bool) override {
        const MemoryNode* old = Find(path);
        if (old && (old->attributes & attribute::folder) == 0) throw ArchiveError(ExitCode::accessDenied);
        if (!old && !Plain(path).ends_with(u'\\')) Put(path, {}, attribute::folder);
    }
    bool Remove(const Text& path) noexcept override {
        if (isDead) return false;
        try {
            const MemoryNode* node = Find(path);
            return node && !node->isOpen && DiskOf(path).nodes.erase(FoldedText(Plain(path))) > 0;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    Text FullPath(const Text& path) override { return Find(path) ? Find(path)->path : Plain(path); }
    bool IsRemovable(const Text& path) override { return isRemovable && IsOnDisk(path); }
    std::uint64_t RoomFor(const Text& path) override {
        const MemoryDisk& disk = DiskOf(path);
        return disk.capacity - disk.Used();
    }
    CivilTime LocalTime(FileTime time) override { return UtcTime(time + zone * ticksPerSecond); }
    FileTime FromLocalTime(const CivilTime& local) override { return FromUtcTime(local) - zone * ticksPerSecond; }

    // Restarts the computer after the program was killed.
    void Restart() {
        isDead = false;
        failingChange = changes = 0;
        for (auto& [key, node] : fixed.nodes) node.isOpen = false;
        for (MemoryDisk& disk : disks) {
            for (auto& [key, node] : disk.nodes) node.isOpen = false;
        }
    }
    std::size_t Temporaries() const {
        const auto isOne = [](const auto& pair) { return pair.first.find(u".~pk") != Text::npos; };
        auto count = std::count_if(fixed.nodes.begin(), fixed.nodes.end(), isOne);
        for (const MemoryDisk& disk : disks) count += std::count_if(disk.nodes.begin(), disk.nodes.end(), isOne);
        return static_cast<std::size_t>(count);
    }

  private:
    class Input final : public InputFile {
      public:
        Input(MemoryFiles& owner, Text path) : owner_(owner), path_(std::move(path)) {}
        FileFacts Facts() override {
            const MemoryNode& node = Node();
            return {node.bytes.size(), node.modified, node.attributes};
        }
        std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
            if (owner_.onRead) owner_.onRead(path_);
            return Copy(Node().bytes, offset, into);
        }

      private:
        MemoryNode& Node() { return owner_.NodeOf(path_); }
        MemoryFiles& owner_;
        Text path_;
    };

    class Output final : public OutputFile {
      public:
        Output(MemoryFiles& owner, const Text& path) : owner_(owner), path_(path), key_(FoldedText(Plain(path))) {}
        ~Output() override {
            if (!isCommitted_ && !owner_.isDead) owner_.DiskOf(path_).nodes.erase(key_);
        }
        Output(const Output&) = delete;
        Output& operator=(const Output&) = delete;
        FileFacts Facts() override { return {Node().bytes.size(), 0, 0}; }
        std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
            return Copy(Node().bytes, offset, into);
        }
        void Write(ByteView bytes) override {
            owner_.Change();
            if (owner_.RoomFor(path_) < bytes.size()) throw ArchiveError(ExitCode::diskFull);
            Node().bytes.insert(Node().bytes.end(), bytes.begin(), bytes.end());
        }
        void Skip(std::uint64_t count) override { Write(Bytes(static_cast<std::size_t>(count))); }
        void WriteAt(std::uint64_t offset, ByteView bytes) override {
            owner_.Change();
            std::copy(bytes.begin(), bytes.end(), Node().bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        }
        void Truncate(std::uint64_t size) override {
            owner_.Change();
            Node().bytes.resize(static_cast<std::size_t>(size));
        }
        void Flush() override { owner_.Change(); }
        void SetStamp(FileTime modified, std::uint32_t attributes) override {
            Node().modified = modified;
            Node().attributes = attributes;
        }
        void Commit(const Text& path, ReadOnlyTarget target) override {
            Flush();
            owner_.Change();
            const bool isProtected = (owner_.Attributes(path) & attribute::readOnly) != 0;
            if (isProtected && target == ReadOnlyTarget::refuse) throw ArchiveError(ExitCode::accessDenied);
            // Another spelling of the name is replaced by the given one.
            const MemoryNode* old = owner_.Find(path);
            const Text oldKey = old ? FoldedText(old->path) : Text();
            Text newPath = Plain(path);
            Text newKey = FoldedText(newPath);
            auto& nodes = owner_.DiskOf(path).nodes;
            nodes.erase(oldKey);
            nodes.erase(newKey);
            auto node = nodes.extract(key_);
            node.key() = std::move(newKey);
            node.mapped().path = std::move(newPath);
            node.mapped().isOpen = false;
            nodes.insert(std::move(node));
            isCommitted_ = true;
        }

      private:
        MemoryNode& Node() { return owner_.NodeOf(path_); }
        MemoryFiles& owner_;
        Text path_;
        Text key_;
        bool isCommitted_ = false;
    };

    MemoryNode& NodeOf(const Text& path) {
        MemoryNode* node = Find(path);
        if (!node) throw ArchiveError(ExitCode::readWrite);
        return *node;
    }
    static std::size_t Copy(const Bytes& bytes, std::uint64_t offset, std::span<std::uint8_t> into) {
        if (offset >= bytes.size()) return 0;
        const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
        const std::size_t count = std::min<std::size_t>(into.size(), bytes.size() - static_cast<std::size_t>(offset));
        std::copy_n(start, count, into.begin());
        return count;
    }
    static bool IsOnDisk(TextView path) { return StartsWithNoCase(path, u"A:"); }
    static Text Plain(TextView path) {
        Text plain(path);
        std::replace(plain.begin(), plain.end(), u'/', u'\\');
        return plain;
    }
    Text LongForm(TextView path) const {
        const auto found = shortPaths.find(FoldedText(Plain(path)));
        return found == shortPaths.end() ? Plain(path) : found->second;
    }
    MemoryDisk& DiskOf(TextView path) { return IsOnDisk(path) ? disks[inserted] : fixed; }
    void Change() {
        if (!isDead && ++changes != failingChange) return;
        if (failure && !isDead) throw ArchiveError(*failure);
        isDead = true;
        throw ArchiveError(ExitCode::stopped);
    }
};

class ScriptedConsole : public Console {
  public:
    // One for each question; when they are used up, no one answers.
    std::vector<std::function<void()>> answers;
    std::vector<Text> asked;
    std::vector<Text> said;
    bool isStopped = false;

    void Say(const Text& line) override { said.push_back(line); }
    void Complain(const Text& line) override { said.push_back(line); }
    void Progress(const Text&, int) override {}
    void AskForEnter(const Text& question) override {
        asked.push_back(question);
        if (asked.size() > answers.size()) throw ArchiveError(ExitCode::noNextDisk);
        answers[asked.size() - 1]();
    }
    bool IsStopped() override { return isStopped; }
};

}  // namespace qvx::archivers
