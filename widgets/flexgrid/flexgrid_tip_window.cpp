#include "widgets/flexgrid/flexgrid_tip_window.h"

#include <utility>

#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::flexgrid {

namespace {
constexpr LPARAM widestTip = 600;   // pixels; longer texts are wrapped
constexpr UINT creationDelay = 50;  // ms
}  // namespace

bool CellTip::Create(HWND window) {
    KillTimer(window, creationTimer);
    waiting_ = false;
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    // It has no owner: that would be the form, and the grid may move to another one later.
    tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0,
                           nullptr, nullptr, ModuleInstance(), nullptr);
    if (!tip_) {
        return false;
    }
    window_ = window;
    SendMessageW(tip_, TTM_SETMAXTIPWIDTH, 0, widestTip);
    SendToolMessage(TTM_ADDTOOLW);
    return true;
}

void CellTip::SendToolMessage(UINT message) {
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND | (rightToLeft_ ? TTF_RTLREADING : 0);
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(window_);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tip_, message, 0, reinterpret_cast<LPARAM>(&tool));
}

void CellTip::Destroy() {
    if (const HWND tip = std::exchange(tip_, nullptr)) {
        DestroyWindow(tip);
    }
    waiting_ = false;
    cell_ = {};
}

void CellTip::Follow(HWND window, const Hit& cell, Point point, bool rightToLeft) {
    const bool turned = std::exchange(rightToLeft_, rightToLeft) != rightToLeft;
    if (!tip_) {
        if (!waiting_ && cell.OnCell()) {
            waiting_ = SetTimer(window, creationTimer, creationDelay, nullptr) != 0;
        }
        return;
    }
    if (turned) {
        SendToolMessage(TTM_SETTOOLINFOW);
    }
    if (cell != cell_) {
        cell_ = cell;
        SendMessageW(tip_, TTM_POP, 0, 0);
    }
    // The tip gets the move only now, since it waits for the next rest from here on.
    Relay(WM_MOUSEMOVE, point);
}

void CellTip::Relay(UINT message, Point point) {
    if (tip_) {
        MSG relayed{};
        relayed.hwnd = window_;
        relayed.message = message;
        relayed.lParam = MAKELPARAM(point.x, point.y);
        SendMessageW(tip_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
    }
}

NMTTDISPINFOW* CellTip::QuestionOf(LPARAM lParam) const {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    const bool asks = tip_ && header->hwndFrom == tip_ && header->code == TTN_GETDISPINFOW;
    return asks ? reinterpret_cast<NMTTDISPINFOW*>(lParam) : nullptr;
}

void CellTip::Answer(NMTTDISPINFOW& question, Text text) {
    text_ = std::move(text);
    question.lpszText = WideBuffer(text_);
}

}  // namespace qvx::flexgrid
