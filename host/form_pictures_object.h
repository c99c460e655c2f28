// The pictures on a form and the files that they came from.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <map>
#include <utility>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx::host {

// The picture in a file of any format the system reads. `path` is relative to `folder` unless it begins with a drive or
// a slash. Throws as the function of that name in win/picture_file.h.
ComPtr<IPictureDisp> LoadPictureFile(const Text& folder, const Text& path);

// A picture that is still in use is written back by the name of its file. A file is read once for the whole form, also
// where its controls are made anew many times, as under the designer's undo; again only when it has changed meanwhile.
class FormPictures {
  public:
    // The picture in the file that a form in `folder` calls `file`. Throws as LoadPictureFile.
    ComPtr<IPictureDisp> Load(const Text& folder, const Text& file);
    // From now on, the picture is known to come from that file.
    void Remember(IUnknown* picture, const Text& file);
    // The file as the form names it; null for an object that came from none.
    const Text* FileOf(IUnknown* object) const;

  private:
    // Each object is held, so that no other one gets its address.
    std::map<IUnknown*, std::pair<ComPtr<IUnknown>, Text>> files_;
    struct Loaded {
        WIN32_FILE_ATTRIBUTE_DATA file;  // as it was when it was read; all zero where that is not known
        ComPtr<IPictureDisp> picture;
    };
    std::map<Text, Loaded> loaded_;  // by full path
};

}  // namespace qvx::host
