// The system's list view with the workload's columns, in report mode or over a vector of our own (owner data).
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <string>
#include <vector>

#include "bench/support/workload.h"

namespace qvx::bench {

inline const std::vector<std::wstring>& WideTexts() {
    static const std::vector<std::wstring> texts = RowTexts<std::wstring>();
    return texts;
}

using WideRow = std::array<std::wstring, columnCount>;

inline WideRow SplitWide(const std::wstring& text) {
    WideRow row;
    std::size_t start = 0;
    for (std::wstring& cell : row) {
        const std::size_t tab = std::min(text.find(L'\t', start), text.size());
        cell.assign(text, start, tab - start);
        start = tab + 1;
    }
    return row;
}

// A popup window that contains one list view and answers its requests for owner data.
class ListView {
  public:
    // With `numbered`, the first column is the row's number, like the row headers of tables. The window is hidden until
    // Show.
    ListView(bool ownerData, bool numbered, int width, int height, int columnWidth);
    ~ListView();
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    HWND Handle() const { return list_; }
    void Show() { ShowWindow(frame_, SW_SHOWNOACTIVATE); }

    // Sets row `at` to text `text` of the workload.
    void InsertRow(std::size_t at, std::size_t text);
    // For owner data: the rows have been changed.
    void CountChanged();
    std::vector<WideRow>& OwnRows() { return rows_; }
    bool OwnsData() const { return ownerData_; }

    std::size_t Count() const { return static_cast<std::size_t>(SendMessageW(list_, LVM_GETITEMCOUNT, 0, 0)); }
    // Valid until the next call.
    const wchar_t* Cell(std::size_t row, std::size_t col);

  private:
    static LRESULT CALLBACK FrameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Answer(NMLVDISPINFOW& question);

    bool ownerData_;
    bool numbered_;
    HWND frame_ = nullptr;
    HWND list_ = nullptr;
    std::vector<WideRow> rows_;  // owner data only
    std::array<wchar_t, 64> buffer_{};
    std::wstring number_;
};

// Creates a window for a child, at the screen's top left corner.
HWND CreateFrame(int width, int height, WNDPROC procedure, void* context);

}  // namespace qvx::bench
