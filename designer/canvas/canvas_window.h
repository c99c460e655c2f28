// The middle of the designer: the form as it will look, under an overlay that takes the mouse and under the adorners of
// the selection, with scroll bars around it.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "common/geometry.h"
#include "designer/canvas/adorner_window.h"
#include "designer/canvas/overlay_window.h"
#include "designer/document/placement.h"
#include "win/window.h"

namespace qvx::host::designer {

class CanvasWindow final : public Window {
  public:
    CanvasWindow();
    ~CanvasWindow() override;

    bool Create(HWND parent, const Rect& bounds);
    // The form to show, a child of this window; null for none. Call it again when the form's size has changed.
    void SetForm(HWND form);
    // Replaces what is drawn above the form.
    void SetAdorners(std::vector<Adorner> adorners);
    // The form's own frame is marked, and can be sized at its right and bottom.
    void SetFormSelected(bool selected);
    // The cursor over a point of the form; one of the system's, by its identifier.
    void SetCursor(WORD cursor);
    // Brings overlay and adorners in front of the controls again, after controls were made or restacked.
    void RaiseOverlay();
    // Scrolls so that an area of the form's inside is in view.
    void Reveal(const Rect& area);
    int HandleSize() const;
    void CaptureMouse(bool capture);

    std::function<void(const Mouse&)> onMouse;
    // A press beside the form or on its caption.
    std::function<void(bool twice)> onForm;
    // The user has sized the form by its handles; the new inside is in pixels.
    std::function<void(Size inside)> onFormSize;
    // A key was pressed. Returns true when it was used.
    std::function<bool(int key, int shift)> onKey;
    // The focus came or went.
    std::function<void()> onFocus;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    Rect FormFrame() const;  // in client pixels
    void Layout();
    void Scroll(int bar, WPARAM wParam);
    void ScrollTo(Point offset);
    void Paint();
    std::optional<Grip> FormHandleAt(Point point) const;
    void DragForm(UINT message, Point at);

    HWND form_ = nullptr;
    std::unique_ptr<OverlayWindow> overlay_;
    std::unique_ptr<AdornerWindow> adorners_;
    Point offset_;
    Size extent_;
    bool formSelected_ = false;
    std::optional<Grip> formDrag_;
    Point formDragFrom_;
    Rect formOutline_;
};

}  // namespace qvx::host::designer
