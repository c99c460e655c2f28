#include "win/tool_tip.h"

#include <commctrl.h>

#include <utility>

#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx {

void ToolTip::Set(HWND owner, HWND tool, TextView text) {
    text_ = text;
    if (!tool || (!window_ && text.empty())) return;
    TTTOOLINFOW info{};
    info.cbSize = TTTOOLINFOW_V1_SIZE;
    info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    info.hwnd = owner;
    info.uId = reinterpret_cast<UINT_PTR>(tool);
    info.lpszText = WideBuffer(text_);
    if (window_) {
        SendMessageW(window_, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&info));
        return;
    }
    window_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0,
                              0, owner, nullptr, ModuleInstance(), nullptr);
    if (window_) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
}

void ToolTip::Destroy() {
    if (const HWND window = std::exchange(window_, nullptr)) DestroyWindow(window);
}

}  // namespace qvx
