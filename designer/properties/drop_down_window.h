// The boxes that open below a value: choices, colours, a text of several lines. Each closes itself when something is
// picked, on Escape, and when it is no longer active.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "common/ole_color.h"
#include "designer/properties/list_keys.h"
#include "designer/properties/property_row.h"
#include "win/fonts.h"
#include "win/window.h"

namespace qvx::host::designer {

// The key of WM_KEYDOWN or WM_SYSKEYDOWN.
ListKey PressedKey(UINT message, WPARAM key);

class DropDown : public Window {
  public:
    // The value that was picked, or nothing. The box is hidden by then and may be destroyed.
    using Closed = std::function<void(std::optional<PropertyValue> picked)>;

    DropDown();
    ~DropDown() override;

    // Opens it; `cell` in screen pixels. False when the system refuses a window.
    bool Open(HWND owner, const Rect& cell, Closed closed);
    bool IsOpen() const { return Handle() && IsWindowVisible(Handle()); }
    // Hides it and notifies the owner, once.
    void Close(std::optional<PropertyValue> picked);
    // The user has turned to another window.
    virtual void Dismiss() { Close(std::nullopt); }

  protected:
    // Pixels, without the border.
    virtual Size WantedSize(int cellWidth) = 0;
    virtual void MakeContents() = 0;
    virtual void FocusContents() = 0;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    int Scaled(int pixels) const;
    // A system control over a part of the box, in the list's font.
    HWND AddChild(const wchar_t* className, const wchar_t* title, DWORD style, const Rect& area, int id);
    // Watches the keys and the mouse of a child.
    void Subclass(HWND child);
    // A message of a child other than a key: true when it has been handled.
    virtual bool OnChildMessage(HWND, UINT, WPARAM, LPARAM) { return false; }
    // Which part of the box a window is, for its keys.
    virtual BoxPart PartOf(HWND window) const = 0;
    // The key asks for something other than closing the box; false when there is nothing to do for it.
    virtual bool Act(BoxPart part, BoxAction action) = 0;
    // True when the key has been used.
    bool OnKey(HWND window, const ListKey& key);

  private:
    class ChildSubclass;

    Closed closed_;
    HWND root_ = nullptr;
    SharedFont font_;
    std::vector<std::unique_ptr<ChildSubclass>> subclasses_;
};

std::unique_ptr<DropDown> MakeChoiceBox(std::vector<PropertyChoice> choices, const PropertyValue& current);
// Closes with a colour as a whole number. `other` runs when a colour from the system's dialog is asked for.
std::unique_ptr<DropDown> MakeColorBox(const PropertyValue& current, std::function<void()> other);
std::unique_ptr<DropDown> MakeTextBox(const Text& current);

}  // namespace qvx::host::designer
