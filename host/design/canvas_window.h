// The middle of the designer: the form as it will look, with its controls behind a sheet of glass that takes the mouse,
// the marks of the selection above it, and scroll bars around it.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "common/geometry.h"
#include "common/text.h"
#include "host/design/placement.h"
#include "win/window.h"

namespace qvx::host::design {

// Something drawn above the form, in pixels of its inside.
struct Mark {
    enum class Look { primaryHandle, handle, weakHandle, outline, badge, doneBadge };
    Look look = Look::handle;
    Rect area;
    Text text;  // of badges
};

enum class MouseAction { press, doublePress, move, release, menu, cancel };

// The mouse on the form's inside, where `at` is in pixels from its top left and may lie outside.
struct Mouse {
    MouseAction action = MouseAction::move;
    Point at;
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool held = false;  // the left button
};

// The cursor over a handle; one of the system's, by its identifier.
WORD CursorOf(Grip handle);

class CanvasWindow final : public Window {
  public:
    CanvasWindow();
    ~CanvasWindow() override;

    bool Create(HWND parent, const Rect& bounds);
    // The form to show, a child of this window; null for none. Call it again when the form's size has changed.
    void SetForm(HWND form);
    // The form's menus stand above its inside; a double press there goes to onMenuStrip.
    void SetMarks(std::vector<Mark> marks);
    // The form's own frame is marked, and can be sized at its right and bottom.
    void SetFormSelected(bool selected);
    // The cursor over a point of the form; one of the system's, by its identifier.
    void SetCursor(WORD cursor);
    // Brings the glass and the marks before the controls, after some of these were made or moved in front.
    void RaiseGlass();
    // Scrolls so that an area of the form's inside is in view.
    void Reveal(const Rect& area);
    int HandleSize() const;
    void CaptureMouse(bool capture);

    std::function<void(const Mouse&)> onMouse;
    // A press beside the form or on its caption.
    std::function<void(bool twice)> onForm;
    // The form was sized to so many pixels inside by its handles.
    std::function<void(Size inside)> onFormSize;
    // A key; true when it was used.
    std::function<bool(int key, int shift)> onKey;
    // The focus came or went.
    std::function<void()> onFocus;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    class Glass;
    class Marks;

    Rect FormFrame() const;  // in client pixels
    void Layout();
    void Scroll(int bar, WPARAM wParam);
    void ScrollTo(Point offset);
    void Paint();
    std::optional<Grip> FormHandleAt(Point point) const;
    void DragForm(UINT message, Point at);

    HWND form_ = nullptr;
    std::unique_ptr<Glass> glass_;
    std::unique_ptr<Marks> marks_;
    Point offset_;
    Size extent_;
    bool formSelected_ = false;
    std::optional<Grip> formDrag_;
    Point formDragFrom_;
    Rect formOutline_;
};

}  // namespace qvx::host::design
