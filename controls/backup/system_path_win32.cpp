#include "controls/backup/system_path_win32.h"

#include <algorithm>

#include "com/wide_text.h"

namespace qvx::backup {

Text FullPath(TextView path) {
    Text given(path);
    if (path.find(u'\0') != TextView::npos) ThrowFileError(ERROR_INVALID_NAME);
    Text full(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = GetFullPathNameW(Wide(given), static_cast<DWORD>(full.size()), WideBuffer(full), nullptr);
        if (length == 0) return given;
        const bool fits = length < full.size();
        full.resize(length);
        if (fits) return full;
    }
}

Text SystemPath(TextView path) {
    const Text full = FullPath(path);
    Text longForm = LongForm(full);
    return longForm == full ? Text(path) : longForm;
}

Text VolumeRoot(const Text& fullPath) {
    Text root(std::max<std::size_t>(fullPath.size() + 2, MAX_PATH), u'\0');
    if (GetVolumePathNameW(Wide(LongForm(fullPath)), WideBuffer(root), static_cast<DWORD>(root.size()))) {
        root.resize(root.find(u'\0'));
        return WithoutLongForm(root);
    }
    return Text(DriveName(fullPath)) + u'\\';
}

UniqueKernelObject OpenFile(const Text& systemPath, DWORD access, DWORD sharing, DWORD disposition, DWORD flags) {
    const HANDLE file = CreateFileW(Wide(systemPath), access, sharing, nullptr, disposition, flags, nullptr);
    return UniqueKernelObject(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

}  // namespace qvx::backup
