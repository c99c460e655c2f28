// Open files: the sources, and those being written.
#include <windows.h>

#include <winioctl.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "archivers/file_names.h"
#include "archivers/system_files.h"
#include "com/wide_text.h"
#include "win/handles.h"
#include "win/replacing_file.h"

namespace qvx::archivers {

namespace {

UniqueKernelObject Open(const Text& path, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
    const HANDLE handle = CreateFileW(Wide(LongPath(path)), access, share, nullptr, disposition, flags, nullptr);
    return UniqueKernelObject(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

FileFacts FactsOf(HANDLE file, const Text& path) {
    BY_HANDLE_FILE_INFORMATION information{};
    if (!GetFileInformationByHandle(file, &information)) ThrowSystemError(path);
    FileFacts facts;
    facts.size = std::uint64_t{information.nFileSizeHigh} << 32 | information.nFileSizeLow;
    facts.modified = static_cast<FileTime>(std::uint64_t{information.ftLastWriteTime.dwHighDateTime} << 32 |
                                           information.ftLastWriteTime.dwLowDateTime);
    facts.attributes = information.dwFileAttributes;
    return facts;
}

OVERLAPPED AtOffset(std::uint64_t offset) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

std::size_t Read(HANDLE file, const Text& path, std::uint64_t offset, std::span<std::uint8_t> into) {
    std::size_t done = 0;
    while (done < into.size()) {
        OVERLAPPED place = AtOffset(offset + done);
        DWORD count = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(into.size() - done, 1 << 24));
        if (!ReadFile(file, into.data() + done, wanted, &count, &place)) {
            if (GetLastError() == ERROR_HANDLE_EOF) break;
            ThrowSystemError(path);
        }
        if (count == 0) break;
        done += count;
    }
    return done;
}

class SystemInput final : public InputFile {
  public:
    SystemInput(UniqueKernelObject file, const Text& path) : file_(std::move(file)), path_(path) {}
    FileFacts Facts() override { return FactsOf(file_.Get(), path_); }
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        return Read(file_.Get(), path_, offset, into);
    }

  private:
    UniqueKernelObject file_;
    Text path_;
};

class SystemOutput final : public OutputFile {
  public:
    explicit SystemOutput(const Text& path) : file_(LongPath(path)), path_(path) {
        if (!file_.Handle()) ThrowSystemError(path);
    }

    FileFacts Facts() override {
        FileFacts facts = FactsOf(file_.Handle(), path_);
        facts.size = std::max(facts.size, end_);
        return facts;
    }
    std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        return Read(file_.Handle(), path_, offset, into);
    }
    void Write(ByteView bytes) override {
        WriteAt(end_, bytes);
        end_ += bytes.size();
    }
    void Skip(std::uint64_t count) override {
        if (!isSparse_ && count >= 65536) {
            // If the file system does not support it, zeros are stored after all.
            DWORD returned = 0;
            DeviceIoControl(file_.Handle(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr);
            isSparse_ = true;
        }
        end_ += count;
        endsInHole_ = true;
    }
    void WriteAt(std::uint64_t offset, ByteView bytes) override {
        while (!bytes.empty()) {
            OVERLAPPED place = AtOffset(offset);
            DWORD count = 0;
            const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1 << 24));
            if (!WriteFile(file_.Handle(), bytes.data(), wanted, &count, &place)) ThrowSystemError(path_);
            if (count == 0) throw ArchiveError(ExitCode::diskFull, Text(FileNameOf(path_)));
            bytes = bytes.subspan(count);
            offset += count;
        }
        endsInHole_ = false;
    }
    void Truncate(std::uint64_t size) override {
        SetSize(size);
        end_ = size;
    }
    void Flush() override {
        FillHole();
        if (!file_.Flush()) ThrowSystemError(path_);
    }
    void SetStamp(FileTime modified, std::uint32_t attributes) override {
        modified_ = modified;
        attributes_ = attributes;
    }
    void Commit(const Text& path, ReadOnlyTarget target) override {
        FillHole();
        Stamp();
        const Text to = LongPath(path);
        const DWORD before = GetFileAttributesW(Wide(to));
        const bool isProtected = before != INVALID_FILE_ATTRIBUTES && (before & FILE_ATTRIBUTE_READONLY) != 0;
        if (isProtected && target == ReadOnlyTarget::replace) {
            SetFileAttributesW(Wide(to), before & ~DWORD{FILE_ATTRIBUTE_READONLY});
        }
        if (!file_.TakePlaceOf(to)) {
            const DWORD error = GetLastError();
            if (isProtected) SetFileAttributesW(Wide(to), before);
            SetLastError(error);
            ThrowSystemError(path);
        }
    }

  private:
    void FillHole() {
        if (std::exchange(endsInHole_, false)) SetSize(end_);
    }
    void SetSize(std::uint64_t size) {
        LARGE_INTEGER place{};
        place.QuadPart = static_cast<LONGLONG>(size);
        if (!SetFilePointerEx(file_.Handle(), place, nullptr, FILE_BEGIN) || !SetEndOfFile(file_.Handle())) {
            ThrowSystemError(path_);
        }
    }
    // Attributes and time are set in one call on the open file, since a file that is already read-only could not be
    // opened for it.
    void Stamp() {
        if (!modified_) return;
        FILE_BASIC_INFO information{};
        information.LastWriteTime.QuadPart = *modified_;
        information.FileAttributes = attributes_ != 0 ? attributes_ : DWORD{FILE_ATTRIBUTE_NORMAL};
        if (!SetFileInformationByHandle(file_.Handle(), FileBasicInfo, &information, sizeof information)) {
            ThrowSystemError(path_);
        }
    }

    ReplacingFile file_;
    Text path_;
    std::uint64_t end_ = 0;
    bool isSparse_ = false;
    bool endsInHole_ = false;
    std::optional<FileTime> modified_;
    std::uint32_t attributes_ = 0;
};

}  // namespace

std::unique_ptr<InputFile> SystemFiles::OpenInput(const Text& path) {
    constexpr DWORD flags = FILE_FLAG_SEQUENTIAL_SCAN;
    UniqueKernelObject file = Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING, flags);
    if (!file && GetLastError() == ERROR_SHARING_VIOLATION) {
        // Another program has the file open for writing: it is read all the same, and checked for changes afterwards.
        constexpr DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
        file = Open(path, GENERIC_READ, everybody, OPEN_EXISTING, flags);
    }
    if (!file) ThrowSystemError(path);
    return std::make_unique<SystemInput>(std::move(file), path);
}

std::unique_ptr<OutputFile> SystemFiles::CreateOutput(const Text& temporaryPath) {
    // A file left by a killed run may have any attributes.
    Remove(temporaryPath);
    return std::make_unique<SystemOutput>(temporaryPath);
}

}  // namespace qvx::archivers
