// Pictures that a form under design names: they are kept beside it, and go with it.
#include <windows.h>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "designer/designer_window.h"
#include "host/form_pictures_object.h"
#include "host/form_storage_win32.h"
#include "host/picture_names.h"

namespace qvx::host::designer {

namespace {

bool IsRooted(const Text& path) {
    return path.find(u':') != Text::npos || path.starts_with(u"\\") || path.starts_with(u"/");
}

bool NamesPicture(const Text& text) {
    Text suffix = text.substr(std::min(text.rfind(u'.'), text.size()));
    for (char16_t& c : suffix) c = LowerAscii(c);
    for (const TextView known :
         {u".bmp", u".dib", u".ico", u".cur", u".gif", u".jpg", u".jpeg", u".png", u".wmf", u".emf"}) {
        if (suffix == known) return true;
    }
    return false;
}

void CollectPictures(const Block& block, std::vector<Text>& names) {
    for (const Entry& entry : block.entries) {
        if (entry.block) CollectPictures(*entry.block, names);
        const Text* text = entry.value ? std::get_if<Text>(&*entry.value) : nullptr;
        if (text && NamesPicture(*text) && !IsRooted(*text) && text->find(u"..") == Text::npos) names.push_back(*text);
    }
}

// A folder on the way to the file that is not there yet.
void MakeFolders(const Text& folder, const Text& name) {
    for (std::size_t slash = name.find_first_of(u"\\/"); slash != Text::npos;
         slash = name.find_first_of(u"\\/", slash + 1)) {
        CreateDirectoryW(Wide(folder + u"\\" + name.substr(0, slash)), nullptr);
    }
}

}  // namespace

Text DesignerWindow::KeepPicture(const Text& path) {
    // A form that has never been saved has no place of its own yet.
    if (path_.empty() || !IsRooted(RelativeTo(form_->Folder(), path))) return path;
    const Text name = path.substr(path.find_last_of(u"\\/") + 1);
    const std::size_t dot = std::min(name.rfind(u'.'), name.size());
    const auto bytes = TryReadFileBytes(path);
    for (int number = 1; bytes && number < 10000; ++number) {
        const Text beside = form_->Folder() + u"\\" + name.substr(0, dot) +
                            (number > 1 ? u"-" + IntegerToText(number) : Text()) + name.substr(dot);
        if (TryReadFileBytes(beside) == bytes) return beside;
        if (GetFileAttributesW(Wide(beside)) != INVALID_FILE_ATTRIBUTES) continue;
        // Where nothing can be written, the picture is named where it is.
        if (!CopyFileW(Wide(path), Wide(beside), TRUE)) return path;
        OnFileMade(beside);
        return beside;
    }
    return path;
}

ComPtr<IPictureDisp> DesignerWindow::LoadPicture(const Text& path) {
    // Read first: what is no picture is not kept.
    ComPtr<IPictureDisp> picture = LoadPictureFile({}, path);
    form_->Pictures().Remember(picture.get(), RelativeTo(form_->Folder(), KeepPicture(path)));
    return picture;
}

void DesignerWindow::TakePicturesAlong(const Text& from, const Text& to) {
    std::vector<Text> names;
    CollectPictures(document_->File().form, names);
    for (const Text& name : names) {
        const Text source = from + u"\\" + name;
        const Text target = to + u"\\" + name;
        if (GetFileAttributesW(Wide(source)) == INVALID_FILE_ATTRIBUTES ||
            GetFileAttributesW(Wide(target)) != INVALID_FILE_ATTRIBUTES) {
            continue;
        }
        MakeFolders(to, name);
        if (!CopyFileW(Wide(source), Wide(target), TRUE)) {
            throw RunTimeError(errors::pathFileAccess, u"cannot write \"" + target + u"\"");
        }
    }
}

}  // namespace qvx::host::designer
