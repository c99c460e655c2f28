// The find bar of a grid as a window, made of the system's controls.
#pragma once

#include <windows.h>

#include <memory>

#include "common/font_spec.h"
#include "controls/grid/find_bar_layout.h"
#include "controls/grid/find_keys.h"
#include "win/accessible.h"
#include "win/fonts.h"
#include "win/window.h"

namespace qvx::grid {

// A listener may do anything to the bar except destroy the object.
class FindBarListener {
  public:
    // The text or one of the choices has changed.
    virtual void BarChanged() = 0;
    virtual void BarAction(FindAction action) = 0;
    // The time that StartTimer was called for has come; the timer has ended.
    virtual void BarTimer() = 0;
    // The wheel was turned over the bar.
    virtual void BarWheel(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // The keyboard focus has come to a field or left it.
    virtual void BarFocus() = 0;

  protected:
    ~FindBarListener() = default;
};

class FindBarWindow final : public Window {
  public:
    explicit FindBarWindow(FindBarListener& listener);
    ~FindBarWindow() override;

    // Shows the bar, whose windows are created if there are none for that direction. Returns false when the system
    // refuses.
    bool Open(HWND parent, bool rightToLeft, bool replaces);
    void Hide();
    bool IsOpen() const { return open_ && Handle(); }
    bool HasFocus() const;
    bool RightToLeft() const { return rightToLeft_; }
    bool Replaces() const { return replaces_; }

    // Lays out the bar at the bottom of its parent, of which it takes at most all, and returns its height in pixels.
    int Place(Size parent, const FontSpec& font, Dpi dpi);
    // Gives the focus to a field, with its text selected.
    void Focus(BarPart part);
    Text TextOf(BarPart part) const;
    void SetText(BarPart part, TextView text);
    // Shows a text in place of the number of hits, and has it read out.
    void SetStatus(TextView text);
    bool IsChosen(BarPart part) const;
    void StartTimer(UINT milliseconds);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    class Field;

    HWND Part(BarPart part) const { return parts_[part]; }
    bool CreateIn(HWND parent, bool rightToLeft);
    bool CreateParts();
    void OnKey(BarPart part, FindAction action);
    void OnCommand(BarPart part, WORD code);
    void MoveFocus(BarPart from, int step);
    void DrawGlyph(const DRAWITEMSTRUCT& item) const;
    BarMeasures Measure(Dpi dpi) const;

    FindBarListener& listener_;
    PerBarPart<HWND> parts_;
    PerBarPart<std::unique_ptr<Field>> fields_;  // of the parts that can have the focus
    PerBarPart<AccessibleNameSubclass> names_;
    SharedFont font_;
    Text status_;
    bool open_ = false;
    bool replaces_ = false;
    bool rightToLeft_ = false;
    bool writing_ = false;  // the bar itself changes a text
};

}  // namespace qvx::grid
