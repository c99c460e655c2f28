#include "host/designed_form_window.h"

#include <olectl.h>

#include <algorithm>

#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "win/gdi_surface.h"

namespace qvx::host {

namespace {

// What a form file keeps of menus, as one text.
Text MenuText(const Block& block) {
    Text text;
    for (const Block* inner : block.Objects()) {
        if (!SameName(inner->className, u"Menu")) continue;
        text += FormControl::LookOf(*inner) + u"\n" + MenuText(*inner) + u"\n";
    }
    return text;
}

}  // namespace

void DesignedForm::NoteChange(FormControl* control) {
    if (!quiet_) designer_.OnChanged(control);
}

void DesignedForm::Build(HWND parent) {
    const FlagScope quiet(quiet_);
    static const WindowClass windowClass = {L"QvxDesignedForm", CS_DBLCLKS};
    if (!CreateFormWindow(windowClass, look_.caption, parent)) {
        throw RunTimeError(errors::outOfMemory, u"the system refuses a window for the form");
    }
    FollowBlocks();
    // The form looks like the active window that it will be.
    SendMessageW(Handle(), WM_NCACTIVATE, TRUE, 0);
}

DWORD DesignedForm::WindowStyle() const {
    // The window is inside another one, and keeps the frame that the form will have.
    constexpr DWORD popup = WS_POPUP;
    return (HostForm::WindowStyle() & ~popup) | WS_CHILD | WS_CLIPSIBLINGS;
}

void DesignedForm::FollowForm() {
    Text menus = MenuText(file_.form);
    Text form = FormControl::LookOf(file_.form);
    if (form == formText_ && menus == menuText_) return;
    formText_ = std::move(form);
    menuText_ = std::move(menus);
    look_ = ReadLook(file_.form);
    font_.Load(look_.font);
    menus_.Show(nullptr, ReadMenus(file_.form));
    face_.FollowMenus(menus_.Items(), FormDpi());
    SetWindowTextW(Handle(), Wide(look_.caption));
    ApplyFrame();
    SetBackColor(look_.backColor);
    SetForeColor(look_.foreColor);
    AmbientChanged(DISPID_AMBIENT_FONT);
    SetClientSize(look_.clientWidth, look_.clientHeight);
    loaded_ = SavedLook();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE);
}

void DesignedForm::FollowBlocks(const std::function<bool(const Block&)>& fresh) {
    const FlagScope quiet(quiet_);
    FollowForm();
    controls_.Follow(fresh);
}

void DesignedForm::Capture(FormControl* control, MergeMode mode) {
    if (control) return controls_.Capture(*control, mode);
    CaptureLook(mode);
    formText_ = FormControl::LookOf(file_.form);
}

void DesignedForm::FollowResolution() {
    // None of that is a change that a file keeps.
    const FlagScope quiet(quiet_);
    face_.FollowMenus(menus_.Items(), FormDpi());
    face_.ForgetBackground();
    ApplyFrame();
    HostForm::FollowResolution();
}

LRESULT DesignedForm::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NCHITTEST:
            // The designer's canvas below it takes the mouse.
            return HTTRANSPARENT;
        case WM_NCCALCSIZE: {
            const LRESULT result = Default(message, wParam, lParam);
            auto* inside = reinterpret_cast<RECT*>(lParam);
            inside->top = std::min(inside->top + face_.StripHeight(), inside->bottom);
            return result;
        }
        case WM_NCPAINT:
        case WM_NCACTIVATE:
        case WM_SETTEXT: {
            const LRESULT result = Default(message, message == WM_NCACTIVATE ? TRUE : wParam, lParam);
            face_.PaintStrip(Handle(), menus_.Items());
            return result;
        }
        case WM_ERASEBKGND:
            face_.FillBackground(Handle(), reinterpret_cast<HDC>(wParam), ResolveColor(look_.backColor));
            return 1;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORBTN:
            return OnColor(message, wParam, lParam);
        case WM_SYSCOLORCHANGE: {
            const FlagScope quiet(quiet_);
            SetBackColor(look_.backColor);
            return Default(message, wParam, lParam);
        }
        case WM_DPICHANGED_AFTERPARENT:
            FollowResolution();
            designer_.OnResolution();
            return 0;
        case WM_COMMAND:
        case WM_CLOSE:
        case WM_SYSCOMMAND:
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host
