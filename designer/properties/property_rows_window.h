// The list itself: names on the left, values on the right, and the field in which the value of the current row is
// edited in its place.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "designer/properties/property_model_win32.h"
#include "designer/properties/rows_painter.h"
#include "designer/properties/value_editor_window.h"
#include "win/fonts.h"
#include "win/gdi_surface.h"
#include "win/window.h"

namespace qvx::host::designer {

// What the list asks of the window around it. Every call may end in the destruction of both.
class PropertyRowsOwner {
  public:
    // The user has typed a value or picked one. False when it was refused.
    virtual bool EnterText(std::size_t row, const Text& typed) = 0;
    virtual bool EnterValue(std::size_t row, const PropertyValue& value) = 0;
    // The system's dialog for a colour, a font or a picture, or the property pages.
    virtual void OpenDialog(std::size_t row) = 0;
    virtual void ClearPicture(std::size_t row) = 0;
    // Another line is the current one.
    virtual void LineChanged() = 0;
    virtual void DividerMoved() = 0;
    // Tab leaves the list.
    virtual void LeaveByTab(bool forward) = 0;

  protected:
    ~PropertyRowsOwner() = default;
};

class PropertyRowsWindow final : public Window {
  public:
    explicit PropertyRowsWindow(PropertyRowsOwner& owner);
    ~PropertyRowsWindow() override;

    bool Create(HWND parent, const Rect& bounds);

    // Shows another model, from the row of the same name on as before. An edit that is open is dropped.
    void SetModel(std::shared_ptr<PropertyModel> model);
    // Values have been read again.
    void ValuesChanged();
    void SetOrder(PropertyOrder order);
    // Called again when the dots per inch have changed.
    void AcquireFonts();

    const std::shared_ptr<PropertyModel>& Model() const { return model_; }
    // Line numbers of the table; -1 for none.
    int Current() const { return current_; }
    const PropertyRow* CurrentRow() const;
    void GoTo(int line);
    // Opens the field over the current value; false when that is not edited as text.
    bool BeginEdit() { return editor_.Begin(); }
    bool Editing() const { return editor_.Editing(); }
    // Does what a click on the button of the current row does, if it has one.
    void PressButton();

    // In pixels of the client area.
    RowsView View() const;
    int Divider() const;
    void SetDivider(int x);
    // The text that assistive programs read for the value.
    Text ValueText(std::size_t line) const;
    void Activate(int line);

    // --- For the editor of the current value.
    // Posted by a box that has closed, and is in the middle of a message of its own.
    static constexpr UINT disposeOfBox = WM_APP + 1;
    PropertyRowsOwner& Owner() { return owner_; }
    // The current line's position among the rows; the line must be a row.
    std::size_t CurrentIndex() const;
    Rect FieldArea() const;
    void RevealCurrent();
    // Goes to another line, and opens its field too when one is open now.
    void Walk(RowStep step);
    // The same, to the next name with that letter.
    void JumpTo(char16_t letter);
    void OnWheel(int delta);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    RowsLook Look() const;
    ValueButton CurrentButton() const;
    // Makes the row of that name, else the first, the current one of a new list.
    void GoOnFrom(const Text& name);
    void UpdateBar();
    void ScrollTo(int top);
    void OnScroll(WPARAM wParam);
    // True when the key has been used.
    bool OnKey(const ListKey& key);
    void ToggleHeading();
    void OnButtonDown(Point at, bool twice);
    void Search(char16_t letter);
    int Scaled(int pixels) const;

    PropertyRowsOwner& owner_;
    std::shared_ptr<PropertyModel> model_;
    int current_ = -1;
    int top_ = 0;
    double share_ = 0.45;
    SharedFont font_;
    ValueEditor editor_{*this};
    bool dragging_ = false;
    bool buttonDown_ = false;
    int wheelRest_ = 0;
    TypedSearch search_;
    BackBuffer buffer_;
};

}  // namespace qvx::host::designer
