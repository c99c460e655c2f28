// Editing the current value of the property list: the field over it, and the box that opens below it.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "designer/properties/drop_down_window.h"
#include "designer/properties/property_model_win32.h"

namespace qvx::host::designer {

class PropertyRowsWindow;

// A part of the rows' window. Calls of the objects may destroy both.
class ValueEditor {
  public:
    explicit ValueEditor(PropertyRowsWindow& rows);
    ~ValueEditor();
    ValueEditor(const ValueEditor&) = delete;
    ValueEditor& operator=(const ValueEditor&) = delete;

    // Destroys field and box, before the rows' window goes.
    void Dispose();
    // Makes the field, hidden. False when the system refuses a window.
    bool Create();
    // The field's window; null before it is made and after it is gone.
    HWND Field() const;
    bool Editing() const { return editing_; }
    // Opens the field over the current value; false when that is not edited as text.
    bool Begin();
    // Applies what has been typed; false when it was refused. The field stays open.
    bool Commit();
    // Closes the field and drops what has not been applied.
    void End();
    // Moves the open field to the current value.
    void Layout();
    // Values have been read again.
    void ValuesChanged();
    // Goes to the next of a value's choices, or with Shift to the one before.
    void Cycle();
    // The list was clicked and has opened the field: another click soon after is the second of a double click.
    void NoteClick() { clickTime_ = static_cast<DWORD>(GetMessageTime()); }

    // Opens the box of the current value, or closes one that is open.
    void OpenBox();
    bool BoxIsOpen() const { return box_ && box_->IsOpen(); }
    void CloseBox();
    // Called on PropertyRowsWindow::disposeOfBox.
    void DisposeOfBox();

  private:
    class FieldSubclass;

    // True when the key has been used.
    bool OnKey(const ListKey& key);
    // True when the click has been used.
    bool OnClick(bool twice);
    void OnFocusLost(HWND next);
    // Puts a text into the field, as one that the user has not changed, and selects it.
    void Fill(const Text& text);
    bool Changed() const;
    void SetUnchanged();
    void SelectAll();
    std::unique_ptr<DropDown> MakeBox(const PropertyRow& row, std::size_t index);
    void BoxClosed(std::size_t row, const std::shared_ptr<PropertyModel>& model, std::optional<PropertyValue> picked);

    PropertyRowsWindow& rows_;
    std::unique_ptr<FieldSubclass> field_;
    bool editing_ = false;
    bool committing_ = false;
    DWORD clickTime_ = 0;
    std::unique_ptr<DropDown> box_;
};

}  // namespace qvx::host::designer
