// The text box: the system's single-line edit control with the members that hosts expect. It keeps all properties
// itself while it has no window: before the window is created, after it is destroyed, and in a form designer.
#pragma once

#include <windows.h>

#include <cstdint>

#include "common/text.h"
#include "widgets/textbox/text_box_face.h"
#include "widgets/textbox/text_drop_object.h"
#include "win/accessible.h"
#include "win/edit_field.h"
#include "win/fonts.h"
#include "win/tool_tip.h"
#include "win/window.h"

namespace qvx {

// Receives the events of a text box. In all of them, a listener may change the box and destroy its window.
class TextBoxListener {
  public:
    virtual ~TextBoxListener() = default;
    // The text has changed, by typing or by a program.
    virtual void TextBoxChange() {}
    virtual void TextBoxGotFocus() {}
    // `to` has the focus now; null when it is not a window of this thread.
    virtual void TextBoxLostFocus(HWND /*to*/) {}
    // A virtual key, which the listener may change; 0 refuses it. A character that results from the key still arrives.
    virtual void TextBoxKeyDown(int& /*key*/, int /*shift*/) {}
    // A UTF-16 unit, which the listener may change; 0 refuses it.
    virtual void TextBoxKeyPress(int& /*character*/) {}
    virtual void TextBoxKeyUp(int /*key*/, int /*shift*/) {}
    // The height that suits the box may have changed.
    virtual void TextBoxPrepared() {}
};

// The keys that a touch keyboard offers first, by the system's numbers of input scopes.
enum class TouchKeys { text = 0, digits = 28, number = 29 };

class TextBoxWindow final : private WindowSubclass {
  public:
    // `listener` must outlive the box.
    explicit TextBoxWindow(TextBoxListener& listener) : listener_(listener) {}
    ~TextBoxWindow() override;

    // Creates the window, visible, in `parent`, which passes on WM_COMMAND and WM_CTLCOLOR... of the box. Returns false
    // when the system refuses.
    bool Create(HWND parent);
    // Saves the window's state and destroys it.
    void Destroy();
    // Null while there is no window.
    HWND Window() const { return Handle(); }
    using WindowSubclass::Watch;
    // `code` is the notification code of a WM_COMMAND message of the box.
    void OnCommand(WORD code);
    LRESULT OnColors(WPARAM wParam) { return colors_.Apply(wParam, enabled_); }
    // Sets the window's outer size.
    void Resize(Size pixels);
    // Returns the height in pixels.
    int NaturalHeight(Dpi dpi) const;
    // Recreates the font if the resolution of the window has changed.
    void FollowResolution();
    TextBoxLook Look() const;

    qvx::Text GetText() const;
    // Returns the text as it is displayed.
    qvx::Text ShownText() const;
    // The text is cut to MaxLength. Change is raised when it differs from the previous text; the caret goes to the
    // start.
    void SetText(TextView text);
    // Selections are in characters; see win/edit_field.h.
    int SelStart() const;
    void SetSelStart(int start);
    int SelLength() const;
    void SetSelLength(int length);
    qvx::Text SelText() const;
    void SetSelText(TextView text);
    // 0 means no limit but memory. Throws error 380 for a negative number. A text that is already longer stays.
    int MaxLength() const { return maxLength_; }
    void SetMaxLength(int length);
    bool Locked() const { return locked_; }
    void SetLocked(bool locked);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    TextAlign Alignment() const { return align_; }
    void SetAlignment(TextAlign align);
    TextBorder BorderStyle() const { return border_; }
    void SetBorderStyle(TextBorder border);
    TextDepth Appearance() const { return depth_; }
    void SetAppearance(TextDepth depth);
    // The character shown in place of every character; empty shows the text itself. Only the first character counts.
    const qvx::Text& PasswordChar() const { return passwordChar_; }
    void SetPasswordChar(TextView character);
    const qvx::Text& Tag() const { return tag_; }
    void SetTag(TextView tag) { tag_ = tag; }
    const FontSpec& Font() const { return font_; }
    void SetFont(const FontSpec& font);
    OleColor BackColor() const { return colors_.Back(); }
    void SetBackColor(OleColor color);
    OleColor ForeColor() const { return colors_.Fore(); }
    void SetForeColor(OleColor color);
    const qvx::Text& ToolTipText() const { return toolTip_.Text(); }
    void SetToolTipText(TextView text) { toolTip_.Set(GetParent(Window()), Window(), text); }
    // Takes effect on systems with touch keyboards only.
    void SetTouchKeys(TouchKeys keys);
    // Sets the name of the box for assistive programs.
    void SetAccessibleName(TextView name) { name_.SetName(name); }

    void Focus() { SetFocus(Window()); }
    bool HasFocus() const { return Window() && GetFocus() == Window(); }
    void SelectAll();

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    LRESULT OnKey(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT OnCharacter(WPARAM wParam, LPARAM lParam);
    void NotifyChange();
    void LetGo();
    bool Make(HWND parent);
    void Dress(HWND parent);
    void Recreate();
    template <class Value>
    bool Remake(Value& value, Value wanted);
    void ApplyFont(bool repaint);
    void ApplyTouchKeys();

    TextBoxListener& listener_;
    qvx::Text text_;      // while there is no window
    qvx::Text lastText_;  // as of the last Change
    EditSelection selection_;
    FontSpec font_;
    SharedFont gdiFont_;  // at dpi_
    Dpi dpi_;
    FieldColors colors_;
    TextBorder border_ = TextBorder::fixedSingle;
    TextAlign align_ = TextAlign::left;
    TextDepth depth_ = TextDepth::threeD;
    TouchKeys touchKeys_ = TouchKeys::text;
    int maxLength_ = 0;
    bool locked_ = false;
    bool enabled_ = true;
    bool writing_ = false;  // the box itself causes the window's notifications
    qvx::Text passwordChar_;
    qvx::Text tag_;
    ToolTip toolTip_;
    AccessibleNameSubclass name_;
    TextDropTarget drops_;
};

}  // namespace qvx
