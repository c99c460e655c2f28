// The automation object of a text box, which hosts reach through TextEdit.TextBox, and the font object that both share.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>

#include "com/font_object.h"
#include "com/pointer.h"
#include "widgets/textbox/text_box_window.h"

namespace qvx {

class TextBoxObject;

// The object of one box, created at first use. Hosts may keep it longer than the box exists: from then on every member
// fails with run-time error 364 "Object was unloaded".
class TextBoxAutomation {
  public:
    // The box must outlive this. `fontChanged` is called after the font of the box has changed, whoever set it.
    TextBoxAutomation(TextBoxWindow& box, std::function<void()> fontChanged);
    ~TextBoxAutomation();
    TextBoxAutomation(const TextBoxAutomation&) = delete;
    TextBoxAutomation& operator=(const TextBoxAutomation&) = delete;

    TextBoxWindow& Box() { return box_; }
    FontProperty& Font() { return font_; }
    // Sets the font of the box without a notification.
    void LoadFont(const FontSpec& font);
    // Returns the object with a reference for the caller. Throws ComError, std::bad_alloc.
    IDispatch* Get();

  private:
    TextBoxWindow& box_;
    FontProperty font_;
    ComPtr<TextBoxObject> object_;
};

}  // namespace qvx
