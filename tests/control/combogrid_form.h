// A form with one ComboGrid on it, driven by a keyboard as a person would: keys go through the system's input, the
// control is asked for them first as a container does.
#pragma once

#include <windows.h>

#include <olectl.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/container.h"
#include "tests/support/server_under_test.h"

namespace qvx::grid_event {

// The numbers by which hosts know the events that have none of the system's.
constexpr long beforeCellChange = 1;
constexpr long afterCellChange = 2;
constexpr long onError = 3;
constexpr long listChange = 4;
constexpr long onDelete = 6;
constexpr long enterCell = 7;
constexpr long leaveCell = 8;
constexpr long bindProgress = 9;
constexpr long rowColChange = 10;
constexpr long selChange = 11;
constexpr long scroll = 12;
constexpr long importReport = 16;
constexpr long exportProgress = 17;
constexpr long printProgress = 32;

}  // namespace qvx::grid_event

namespace qvx::test {

class ComboGridForm {
  public:
    // Columns: No (fixed), Name, Qty (digits), Rate (numbers), Month (dates, mmm/yyyy), Item (list only: Apple, Banana,
    // Cherry), Locked (inactive), Skip (non-focus), Key (invisible); two data rows. `changes` replaces stored values.
    enum Columns { no, name, qty, rate, month, item, locked, skip, key };
    explicit ComboGridForm(const std::vector<std::pair<std::wstring, Variant>>& changes = {}, bool userMode = true);
    ~ComboGridForm();

    // The current cell, with the focus on the grid.
    void GoTo(int row, int col);
    // Text by its keys, letter by letter.
    void Type(const std::wstring& text);
    // An entry: goes to the cell, types the text and presses Enter.
    void Enter(int row, int col, const std::wstring& text);
    // Containers differ: this one asks the control for keys, and uses up those that are left to it.
    bool asksForKeys = true;
    bool deliversKeysLeft = false;
    // The site's answer to keys that the control offers it (Container::Options).
    std::function<bool(const MSG& message, DWORD modifiers)> usesKey;

    // A key with the given ones held (VK_SHIFT and so on). True when the container was left to use it.
    bool Press(int virtualKey, const std::vector<int>& held = {});
    // A place in a cell of the inner grid, so many pixels from its corner, on the screen.
    POINT At(int row, int col, int right = 4, int down = 4) const;
    // The left button on a cell of the inner grid, so many pixels from its corner.
    void Click(int row, int col, bool twice = false, int pixelsIn = 4);
    void Pump();

    Text Cell(int row, int col) const;
    void SetCell(int row, int col, const char16_t* text);
    // Name, Qty and so on of data row after data row.
    void Fill(const std::vector<std::vector<const char16_t*>>& rows);
    // The data rows' cells of a column, each with "/" after it.
    std::string Column(int col) const;
    long Number(const wchar_t* property) const;
    // "row,col"
    std::string Current() const;
    ComPtr<IDispatch> List(int col) const;
    ComPtr<IDispatch> Inner() const;
    // A place or size that the inner grid gives in twips, in pixels.
    int Pixels(const wchar_t* member, const std::vector<Variant>& arguments = {}) const;
    // The editor's frame while it is shown, else null; the combo in it that has the focus, as a window.
    HWND Frame() const;
    HWND InnerGrid() const;
    // Closes the control, if nobody has yet; how many references there still are beside the given one.
    ULONG ReferencesWhenClosed(const ComPtr<IUnknown>& control);
    // Events since the last call, one a line: number, then arguments; those in `without` left out, and those of the
    // inner grid's that are merely passed on.
    std::string Log(const std::vector<DISPID>& without = {grid_event::listChange, grid_event::enterCell,
                                                          grid_event::leaveCell, DISPID_KEYDOWN});

    Container container;
    ComPtr<IDispatch> grid;
    ComPtr<EventRecorder> events;
    Connection* connection = nullptr;

  private:
    void Send(int virtualKey, bool down);
    bool leftToContainer_ = false;
};

// The number of the error that a call raises; 0 for none.
int ErrorOf(IDispatch* object, const wchar_t* member, WORD flags, const std::vector<Variant>& arguments = {});

// The by-reference Boolean that is the event's last argument.
void Answer(DISPPARAMS& arguments, bool value);

}  // namespace qvx::test
