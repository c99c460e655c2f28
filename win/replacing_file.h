// A file that is written beside the one that it replaces. Its bytes are on the disk before it replaces that file, and
// it does so in one step: neither a full disk nor a loss of power destroys the previous file.
#pragma once

#include <windows.h>

#include "com/wide_text.h"
#include "win/handles.h"

namespace qvx {

// Renames the file `from` to `to`, and replaces a file of that name. The new name is on the disk when the function
// returns; the bytes of `from` are only if they were flushed before. Returns false, with both files unchanged, on
// failure; the system's last error gives the reason.
inline bool RenameOver(const Text& from, const Text& to) {
    return MoveFileExW(Wide(from), Wide(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
}

// The file is deleted with this object unless it has replaced its target. Failures set the system's last error.
class ReplacingFile {
  public:
    // Creates the file, and replaces one that an interrupted run has left under that name. On failure, Handle is null.
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

    // The file is open for reading and writing, and nobody else can open it; null once it has replaced its target.
    HANDLE Handle() const { return file_.Get(); }
    bool Flush() const { return FlushFileBuffers(file_.Get()) != FALSE; }
    // Flushes the file and gives it its final name.
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
