// The filter row of a grid as a window: it draws the fields, and the one that is used is an edit field of the system.
#pragma once

#include <windows.h>

#include <vector>

#include "common/font_spec.h"
#include "controls/grid/filter_strip.h"
#include "win/accessible.h"
#include "win/gdi_surface.h"
#include "win/tool_tip.h"
#include "win/window.h"

namespace qvx::grid {

enum class FieldState { Empty, Filters, Unreadable };

// A listener may do anything to the strip except destroy the object.
class FilterStripListener {
  public:
    // Returns the columns that are visible.
    virtual std::vector<flexgrid::Span> StripColumns() = 0;
    virtual Text FieldText(int col) = 0;
    virtual FieldState StateOfField(int col) = 0;
    virtual Text FieldName(int col) = 0;
    // The user has typed something and then waited, or has left the field.
    virtual void FieldTyped(int col, const Text& text) = 0;
    virtual void FieldKey(int col, StripKey key) = 0;
    // Executes a key that has nothing to do with the fields; false for one that the listener does not know.
    virtual bool OtherKey(int keyCode, int shift) = 0;
    virtual void FieldClicked(int col) = 0;
    // The wheel was turned over the strip.
    virtual void StripWheel(UINT message, WPARAM wParam, LPARAM lParam) = 0;
    // The keyboard focus has come to a field or left it.
    virtual void StripFocus() = 0;

  protected:
    ~FilterStripListener() = default;
};

struct StripLook {
    FontSpec font;
    Dpi dpi;
    OleColor back = colors::buttonFace;
    OleColor fore = colors::buttonText;
    int fixedCols = 0;
    bool rightToLeft = false;
    bool enabled = true;
    Text count;  // of the rows that are shown; "" without a filter
};

class FilterStripWindow final : public Window {
  public:
    explicit FilterStripWindow(FilterStripListener& listener) : listener_(listener) {}
    ~FilterStripWindow() override;

    // Returns false when the system refuses.
    bool CreateIn(HWND parent);
    // Places the strip at the top of its parent and returns its height in pixels; 0 without a window.
    int Place(Size parent, const StripLook& look);
    // Draws it anew after a change of the columns or texts.
    void Refresh(const StripLook& look);
    // Gives the focus to the field of a column that is visible, with its text selected.
    void Focus(int col);
    void SelectAll() { SendMessageW(edit_, EM_SETSEL, 0, -1); }
    bool HasFocus() const { return edit_ && GetFocus() == edit_; }
    // Passes on at once what has been typed.
    void EndTyping();

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override;

  private:
    class Field final : public WindowSubclass {
      public:
        explicit Field(FilterStripWindow& strip) : strip_(strip) {}

      private:
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

        FilterStripWindow& strip_;
        bool dropCharacter_ = false;  // the one that the key produces
    };

    StripLayout Layout();
    void OnPaint();
    void DrawField(Surface& surface, const FilterField& field);
    void PlaceEdit(const StripLayout& layout);
    bool CreateEdit();

    FilterStripListener& listener_;
    StripLook look_;
    BackBuffer buffer_;
    ToolTip tip_;
    AccessibleNameSubclass name_;
    Field field_{*this};
    HWND edit_ = nullptr;
    SharedFont editFont_;
    int col_ = -1;          // of the edit field
    bool writing_ = false;  // the strip itself changes the text
    bool typing_ = false;   // what was typed has not been passed on
};

}  // namespace qvx::grid
