#include "archivers/files.h"

#include "archivers/file_names.h"

namespace qvx::archivers {

void RemoveStale(Files& files, const Text& path, TextView suffix) {
    const Text folder(FolderOf(path));
    for (const ListedFile& file : files.List(folder)) {
        if (!file.isFolder && file.name.ends_with(suffix)) files.Remove(Joined(folder, file.name));
    }
}

}  // namespace qvx::archivers
