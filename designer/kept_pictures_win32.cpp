#include "designer/kept_pictures_win32.h"

#include <windows.h>

#include "common/run_time_error.h"
#include "designer/design_session_window.h"
#include "designer/document/named_pictures.h"
#include "host/form_pictures_object.h"
#include "host/form_storage_win32.h"
#include "host/picture_names.h"
#include "host/text_encoding.h"

namespace qvx::host::designer {

namespace {

// A folder on the way to the file that is not there yet.
void MakeFolders(const Text& folder, const Text& name) {
    for (std::size_t slash = name.find_first_of(u"\\/"); slash != Text::npos;
         slash = name.find_first_of(u"\\/", slash + 1)) {
        CreateDirectoryW(Wide(folder + u"\\" + name.substr(0, slash)), nullptr);
    }
}

}  // namespace

Text KeptPictures::Keep(const Text& path) {
    const Text& folder = session_.Picture().Folder();
    // A form that has never been saved has no place of its own yet.
    if (session_.Path().empty() || !IsRooted(RelativeTo(folder, path))) return path;
    const Text name = FileNameOf(path);
    const auto bytes = TryReadFileBytes(path);
    for (int number = 1; bytes && number < 10000; ++number) {
        const Text beside = folder + u"\\" + NumberedName(name, number);
        if (TryReadFileBytes(beside) == bytes) return beside;
        if (GetFileAttributesW(Wide(beside)) != INVALID_FILE_ATTRIBUTES) continue;
        // Where nothing can be written, the picture is named where it is.
        if (!CopyFileW(Wide(path), Wide(beside), TRUE)) return path;
        NoteWritten(beside);
        return beside;
    }
    return path;
}

ComPtr<IPictureDisp> KeptPictures::Load(const Text& path) {
    // Read first: what is no picture is not kept.
    ComPtr<IPictureDisp> picture = LoadPictureFile({}, path);
    HostForm& form = session_.Picture();
    form.Pictures().Remember(picture.get(), RelativeTo(form.Folder(), Keep(path)));
    return picture;
}

void KeptPictures::CopyTo(const Text& to) {
    const Text& from = session_.Picture().Folder();
    for (const Text& name : PicturesIn(session_.Form().File().form)) {
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

void KeptPictures::RemoveUnused(const std::string& saved) {
    if (written_.empty()) return;
    Text text;
    try {
        FormFile::Parse(saved);
        text = DecodeFile(saved).text;
    } catch (const FormFileError&) {
        // Nothing has been saved, so that no picture is in use.
    }
    for (const Text& written : written_) {
        if (text.find(FileNameOf(written)) == Text::npos) DeleteFileW(Wide(written));
    }
    written_.clear();
}

}  // namespace qvx::host::designer
