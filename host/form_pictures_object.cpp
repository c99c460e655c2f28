#include "host/form_pictures_object.h"

#include "com/wide_text.h"
#include "win/picture_file.h"

namespace qvx::host {

namespace {

Text FullPath(const Text& folder, const Text& path) {
    const bool rooted = path.find(u':') != Text::npos || path.substr(0, 1) == u"\\" || path.substr(0, 1) == u"/";
    return rooted ? path : folder + u"\\" + path;
}

WIN32_FILE_ATTRIBUTE_DATA StateOf(const Text& path) {
    WIN32_FILE_ATTRIBUTE_DATA state{};
    if (!GetFileAttributesExW(Wide(path), GetFileExInfoStandard, &state)) state = {};
    return state;
}

bool SameFile(const WIN32_FILE_ATTRIBUTE_DATA& one, const WIN32_FILE_ATTRIBUTE_DATA& other) {
    return CompareFileTime(&one.ftLastWriteTime, &other.ftLastWriteTime) == 0 &&
           one.nFileSizeHigh == other.nFileSizeHigh && one.nFileSizeLow == other.nFileSizeLow;
}

}  // namespace

ComPtr<IPictureDisp> LoadPictureFile(const Text& folder, const Text& path) {
    return qvx::LoadPictureFile(FullPath(folder, path));
}

ComPtr<IPictureDisp> FormPictures::Load(const Text& folder, const Text& file) {
    const Text path = FullPath(folder, file);
    const WIN32_FILE_ATTRIBUTE_DATA state = StateOf(path);
    const auto known = loaded_.find(path);
    if (known != loaded_.end() && SameFile(known->second.file, state)) return known->second.picture;
    ComPtr<IPictureDisp> picture = qvx::LoadPictureFile(path);
    Remember(picture.get(), file);
    loaded_.insert_or_assign(path, Loaded{state, picture});
    return picture;
}

void FormPictures::Remember(IUnknown* picture, const Text& file) {
    const auto identity = ComPtr<IUnknown>(picture).As<IUnknown>();
    files_.insert_or_assign(identity.get(), std::pair(identity, file));
}

const Text* FormPictures::FileOf(IUnknown* object) const {
    const auto found = files_.find(ComPtr<IUnknown>(object).As<IUnknown>().get());
    return found == files_.end() ? nullptr : &found->second.second;
}

}  // namespace qvx::host
