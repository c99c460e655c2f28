// A file that is written beside the one whose place it takes. Its bytes are on the disk before it gets there, and it
// gets there in one step: neither a full disk nor a loss of power costs what was there before.
#pragma once

#include <windows.h>

#include "com/wide_text.h"
#include "win/handles.h"

namespace qvx {

// Gives the file `from` the name `to`, which the file of that name loses. This is on the disk when it returns; the
// bytes of `from` are there only if they were flushed before. False leaves both as they were; the system's last error
// says why.
inline bool RenameOver(const Text& from, const Text& to) {
    return MoveFileExW(Wide(from), Wide(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

// It goes away with this object unless it has taken its place. What fails leaves the system's last error.
class ReplacingFile {
  public:
    // Makes the file, in place of what an interrupted run has left under that name. Handle is null when that is
    // refused.
    explicit ReplacingFile(const Text& path) : path_(path) {
        DeleteFileW(Wide(path_));
        const HANDLE made = CreateFileW(Wide(path_), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        file_ = UniqueKernelObject(made == INVALID_HANDLE_VALUE ? nullptr : made);
        unfinished_ = static_cast<bool>(file_);
    }
    ~ReplacingFile() {
        if (!unfinished_) return;
        file_.Reset();
        SetFileAttributesW(Wide(path_), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(Wide(path_));
    }
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    // Open for reading and writing, and closed to everybody else; null once the file has taken its place.
    HANDLE Handle() const { return file_.Get(); }
    bool Flush() const { return FlushFileBuffers(file_.Get()) != FALSE; }
    // Flushes, and gives the file its final name.
    bool TakePlaceOf(const Text& target) {
        if (!Flush()) return false;
        file_.Reset();
        if (!RenameOver(path_, target)) return false;
        unfinished_ = false;
        return true;
    }

  private:
    Text path_;
    UniqueKernelObject file_;
    bool unfinished_ = false;
};

}  // namespace qvx
