#include "designer/editors/editor_dialog.h"

#include <utility>

#include "win/dpi.h"
#include "win/modal.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

constexpr DWORD dialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD dialogExStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

}  // namespace

Size EditorDialog::WindowSize() const {
    const Size frame = FrameSize(dialogStyle, dialogExStyle, dpi_);
    return {Scaled(inside_.width) + frame.width, Scaled(inside_.height) + frame.height};
}

bool EditorDialog::Ask(HWND owner) {
    static const WindowClass windowClass = {L"QvxDesignEditor", CS_DBLCLKS};
    dpi_ = WindowDpi(owner);
    font_ = AcquireFont(FontSpec{}, dpi_);
    const Size size = WindowSize();
    const Point at = PlaceDialog(owner, size);
    if (!Create(windowClass, Wide(title_), dialogStyle, dialogExStyle,
                {at.x, at.y, at.x + size.width, at.y + size.height}, owner)) {
        return false;
    }
    constexpr int step = 88;
    const int right = inside_.width - 12 - (applies_ ? step : 0);
    const int top = inside_.height - 36;
    Build();
    AddButton(u"OK", {right - 168, top, right - 88, top + 25}, IDOK, BS_DEFPUSHBUTTON);
    AddButton(u"Cancel", {right - 80, top, right, top + 25}, IDCANCEL);
    if (applies_) {
        AddButton(u"&Apply", {right + 8, top, right + step, top + 25}, applyId);
        EnableWindow(Item(applyId), FALSE);
    }
    open_ = true;
    ModalScope modal(Handle());
    ShowWindow(Handle(), SW_SHOW);
    SetFocus(FirstField());
    RunModalLoop(
        modal, [this] { return open_ && Handle(); },
        [this](const MSG& message) {
            MSG copy = message;
            byLabel_ = false;
            return Handle() && (TranslateKey(copy) || IsDialogMessageW(Handle(), &copy));
        });
    modal.Close(*this);
    return accepted_;
}

int EditorDialog::Scaled(int pixels) const { return qvx::Scaled(pixels, dpi_.x); }

HWND EditorDialog::Add(const wchar_t* className, TextView text, DWORD style, const Rect& area, int id, DWORD exStyle) {
    const Text copy(text);
    const HWND window =
        CreateWindowExW(exStyle, className, Wide(copy), WS_CHILD | WS_VISIBLE | style, Scaled(area.left),
                        Scaled(area.top), Scaled(area.Width()), Scaled(area.Height()), Handle(),
                        reinterpret_cast<HMENU>(INT_PTR{id}), ModuleInstance(), nullptr);
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    added_.emplace_back(window, area);
    return window;
}

void EditorDialog::Place(HWND window, const Rect& area) const {
    SetWindowPos(window, nullptr, Scaled(area.left), Scaled(area.top), Scaled(area.Width()), Scaled(area.Height()),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void EditorDialog::FollowResolution() {
    const SharedFont before = std::exchange(font_, AcquireFont(FontSpec{}, dpi_));
    for (const auto& [window, area] : added_) {
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
        Place(window, area);
    }
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

bool EditorDialog::TranslateKey(MSG&) { return false; }

Text EditorDialog::TextOf(int id) const { return WindowText(Item(id)); }

void EditorDialog::SetText(int id, TextView text) {
    if (TextOf(id) != text) SetWindowTextW(Item(id), Wide(Text(text)));
}

LRESULT EditorDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto close = [this] {
        open_ = false;
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    };
    switch (message) {
        case WM_COMMAND:
            if (!open_) return 0;
            if (LOWORD(wParam) == IDOK) {
                accepted_ = Accept();
                if (accepted_) close();
            } else if (LOWORD(wParam) == IDCANCEL) {
                close();
            } else {
                OnCommand(LOWORD(wParam), HIWORD(wParam));
            }
            return 0;
        case WM_NEXTDLGCTL: {
            // The access key of a label leads to the field after it. Some systems then ask for the next one again.
            if (!lParam && std::exchange(byLabel_, false)) return 0;
            HWND next = lParam ? reinterpret_cast<HWND>(wParam)
                               : GetNextDlgTabItem(Handle(), GetFocus(), static_cast<BOOL>(wParam));
            if (next && (SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_STATIC)) {
                next = GetNextDlgTabItem(Handle(), next, FALSE);
                byLabel_ = true;
            }
            if (next) SetFocus(next);
            if (next && (SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL)) {
                SendMessageW(next, EM_SETSEL, 0, -1);
            }
            return 0;
        }
        case DM_GETDEFID:
            return MAKELRESULT(IDOK, DC_HASDEFID);
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
            SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNTEXT));
            return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
        case WM_ERASEBKGND: {
            const Rect area = ClientArea();
            const RECT rect{area.left, area.top, area.right, area.bottom};
            FillRect(reinterpret_cast<HDC>(wParam), &rect, GetSysColorBrush(COLOR_BTNFACE));
            return 1;
        }
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            dpi_ = change.dpi;
            change.Follow(WindowSize());
            FollowResolution();
            return 0;
        }
        case WM_CLOSE:
            close();
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
