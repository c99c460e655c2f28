// The controls on a form. They are made from the blocks of its file, and what they have changed goes back into these.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "host/form_control.h"
#include "host/form_file.h"
#include "host/report_dialog.h"

namespace qvx::host {

class FormControls {
  public:
    // All of these outlive the controls.
    FormControls(HostForm& form, FormFile& file, Reporter& reporter) : form_(form), file_(file), reporter_(reporter) {}
    FormControls(const FormControls&) = delete;
    FormControls& operator=(const FormControls&) = delete;
    ~FormControls() { Clear(); }

    // Makes all of them. Throws FormFileError with the line of the control that cannot be made.
    void Build();
    // Makes the controls of a form under design what the blocks say. Those that are as they were stay, and what cannot
    // be made is a box that says why. `fresh` picks the controls that are placed for the first time and have nothing to
    // load.
    void Follow(const std::function<bool(const Block&)>& fresh);
    void Clear();

    const std::vector<std::unique_ptr<FormControl>>& All() const { return controls_; }
    // The control of that name; of a control array, the element of that index or the first one. Null when there is
    // none.
    FormControl* Find(TextView name, int index) const;
    // The control that a window belongs to; null when there is none.
    FormControl* Of(HWND window) const;
    // For a control whose block gives no TabIndex: after all others.
    int NextTabIndex() const;

    // What the controls are now is what their blocks say.
    void RememberAsLoaded() const;
    // Brings what has changed of a control into its block. Throws RunTimeError when the control cannot say.
    void Capture(FormControl& control, MergeMode mode) const;
    // The same of all. When one of them cannot say, no block has changed.
    void CaptureAll(MergeMode mode) const;

    void AmbientChanged(DISPID property) const;
    void FollowResolution() const;
    void UpdateToolTip(const FormControl& control) const;

  private:
    void BuildIn(const Block& container, FormControl* parent);
    std::unique_ptr<FormControl> Make(const Block& block, FormControl* parent, bool fresh = false);
    std::unique_ptr<FormControl> MakeOrBox(const Block& block, FormControl* parent, bool fresh);
    // Under design: a control that is new to the form, beside its block.
    FormControl& Add(Block& block, FormControl* parent, bool fresh);
    // Puts the windows in the order of the blocks.
    void Restack() const;
    // What the file says of a control now; null when it says nothing any more.
    Block* BlockOf(const FormControl& control) const;

    HostForm& form_;
    FormFile& file_;
    Reporter& reporter_;
    HWND toolTips_ = nullptr;
    std::vector<std::unique_ptr<FormControl>> controls_;
};

}  // namespace qvx::host
