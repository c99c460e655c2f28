// The picture files that a form under design names. They are kept beside the form and move with it.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>
#include <vector>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx::host::designer {

class DesignSession;

class KeptPictures {
  public:
    // The session outlives this.
    explicit KeptPictures(DesignSession& session) : session_(session) {}

    // The file that the form is to name for a picture: the same when it is in the form's folder or below, else a copy
    // of it there.
    Text Keep(const Text& path);
    // Loads a picture and keeps it.
    ComPtr<IPictureDisp> Load(const Text& path);
    // Copies the pictures that the form names into another folder, as far as they are not there. Throws RunTimeError
    // 75.
    void CopyTo(const Text& folder);
    // A picture has been written to this file for the form.
    void NoteWritten(const Text& path) { written_.push_back(path); }
    // Deletes the pictures that were written for the form and that its saved file does not name.
    void RemoveUnused(const std::string& saved);

  private:
    DesignSession& session_;
    std::vector<Text> written_;
};

}  // namespace qvx::host::designer
