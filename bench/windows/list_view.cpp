#include "bench/windows/list_view.h"

#include <algorithm>

namespace qvx::bench {

HWND CreateFrame(int width, int height, WNDPROC procedure, void* context) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    const std::wstring name = L"bench" + std::to_wstring(reinterpret_cast<ULONG_PTR>(procedure));
    windowClass.lpszClassName = name.c_str();
    RegisterClassW(&windowClass);  // fails harmlessly when the class is already registered
    const HWND frame = CreateWindowExW(WS_EX_TOOLWINDOW, name.c_str(), L"", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width,
                                       height, nullptr, nullptr, windowClass.hInstance, nullptr);
    SetWindowLongPtrW(frame, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(context));
    return frame;
}

ListView::ListView(bool ownerData, bool numbered, int width, int height, int columnWidth)
    : ownerData_(ownerData), numbered_(numbered) {
    frame_ = CreateFrame(width, height, FrameProcedure, this);
    const DWORD style = WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS | (ownerData ? LVS_OWNERDATA : 0);
    list_ = CreateWindowExW(0, WC_LISTVIEWW, L"", style, 0, 0, width, height, frame_, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SendMessageW(list_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_GRIDLINES | LVS_EX_FULLROWSELECT);
    wchar_t heading[] = L"Heading";
    for (int col = 0; col < columnCount + (numbered ? 1 : 0); ++col) {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = columnWidth;
        column.pszText = heading;
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(col), reinterpret_cast<LPARAM>(&column));
    }
}

ListView::~ListView() { DestroyWindow(frame_); }

void ListView::InsertRow(std::size_t at, std::size_t text) {
    WideRow cells = SplitWide(WideTexts()[text % distinctRows]);
    if (ownerData_) {
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(at), std::move(cells));
        return;
    }
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(at);
    const auto put = [&](std::wstring& cell, UINT message) {
        item.pszText = cell.data();
        SendMessageW(list_, message, message == LVM_SETITEMTEXTW ? at : 0, reinterpret_cast<LPARAM>(&item));
        ++item.iSubItem;
    };
    if (numbered_) {
        number_ = std::to_wstring(at + 1);
        put(number_, LVM_INSERTITEMW);
    }
    for (std::wstring& cell : cells) put(cell, item.iSubItem == 0 ? LVM_INSERTITEMW : LVM_SETITEMTEXTW);
}

void ListView::CountChanged() { SendMessageW(list_, LVM_SETITEMCOUNT, rows_.size(), LVSICF_NOSCROLL); }

const wchar_t* ListView::Cell(std::size_t row, std::size_t col) {
    LVITEMW item{};
    item.iSubItem = static_cast<int>(col);
    item.pszText = buffer_.data();
    item.cchTextMax = static_cast<int>(buffer_.size());
    SendMessageW(list_, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return item.pszText;
}

LRESULT CALLBACK ListView::FrameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_GETDISPINFOW) {
        auto* const self = reinterpret_cast<ListView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        self->Answer(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void ListView::Answer(NMLVDISPINFOW& question) {
    LVITEMW& item = question.item;
    if ((item.mask & LVIF_TEXT) == 0) return;
    const auto row = static_cast<std::size_t>(item.iItem);
    auto col = static_cast<std::size_t>(item.iSubItem);
    if (numbered_ && col == 0) {
        number_ = std::to_wstring(row + 1);
        item.pszText = number_.data();
        return;
    }
    if (numbered_) --col;
    item.pszText = rows_[row][col].data();
}

}  // namespace qvx::bench
