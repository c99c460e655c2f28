#include <windows.h>
// windows.h comes first, since the next two headers rely on it.
#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <memory>

#include "dialogs/file_dialogs.h"
#include "win/window_text.h"

namespace qvx {

namespace {

HWND OwnerWindow(std::intptr_t owner) { return reinterpret_cast<HWND>(owner); }

struct ReleaseItemList {
    void operator()(void* list) const { CoTaskMemFree(list); }
};

// Returns null for a text that the request leaves to the system.
const wchar_t* WideOrNone(const Text& text) { return text.empty() ? nullptr : Wide(text); }

Text Open(std::intptr_t owner, const OpenFileRequest& request) {
    Text buffer = request.file;
    buffer.resize(std::max<std::size_t>(buffer.size(), request.maxFile), u'\0');
    OPENFILENAMEW record{};
    record.lStructSize = OPENFILENAME_SIZE_VERSION_400W;
    record.hwndOwner = OwnerWindow(owner);
    record.lpstrFilter = Wide(request.filter);
    record.lpstrFile = WideBuffer(buffer);
    record.nMaxFile = request.maxFile;
    record.lpstrTitle = WideOrNone(request.title);
    record.lpstrDefExt = WideOrNone(request.defaultExtension);
    record.Flags = request.flags;
    return ChosenFile(GetOpenFileNameW(&record) != 0, buffer);
}

}  // namespace

Text ShowOpenFile(std::intptr_t owner, TextView title, TextView initialName) {
    return Open(owner, MakeOpenFileRequest(title, initialName));
}

Text ShowOpenPicture(std::intptr_t owner) { return Open(owner, MakePictureFileRequest()); }

Text BrowseForFolder(std::intptr_t owner, TextView title) {
    const Text heading(title);
    BROWSEINFOW record{};
    record.hwndOwner = OwnerWindow(owner);
    record.lpszTitle = Wide(heading);
    record.ulFlags = BIF_RETURNONLYFSDIRS;
    const std::unique_ptr<void, ReleaseItemList> items(SHBrowseForFolderW(&record));
    Text buffer(512, u' ');
    const bool found = items && SHGetPathFromIDListW(static_cast<LPITEMIDLIST>(items.get()), WideBuffer(buffer));
    return ChosenFile(found, buffer);
}

}  // namespace qvx
