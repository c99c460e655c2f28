// The host's image list: pictures under numbers and keys, for controls that put them on buttons and menus.
//
//     Begin ImageList imlIcons
//        BeginProperty Images
//           BeginProperty ListImage1
//              Key             =   "save"
//              Picture         =   "save.bmp"
//           EndProperty
//        EndProperty
//     End
//
// It shows nothing itself. Under design, pictures that were set by a property page are written to files beside the form
// when the list is saved.
// Scripts reach the pictures through ListImages: Count, Item(number or key), Add([Index],
// [Key], [Picture]), Remove, Clear; an image has Index, Key, Tag and Picture. Numbers begin with 1.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "host/design_box_window.h"
#include "host/form_control.h"

namespace qvx::host {

class ImagesObject;

class ImageListControl final : public FormControl {
  public:
    // Throws FormFileError for a picture that cannot be loaded.
    ImageListControl(HostForm& form, const Block& block, FormControl* container);
    ~ImageListControl() override;

    HWND Window() const override { return box_.Handle(); }
    void Focus(const MSG*) override {}
    bool Enabled() const override { return true; }
    void SetEnabled(bool) override {}
    ComPtr<IDispatch> Inner() const override { return members_; }

  protected:
    bool AcceptsFocus() const override { return false; }
    void ApplyBounds(const RECT& pixels) override;
    void ApplyVisible(bool) override {}
    // Pictures that a script adds are the script's: the file keeps the ones it names. Under design they are the form's.
    void SaveOwn(SavedProperties& saved) override;
    std::vector<Text> KnownProperties() const override { return {}; }

  private:
    ComPtr<ImagesObject> images_;
    ComPtr<IDispatch> members_;
    DesignBox box_;  // under design only
};

}  // namespace qvx::host
