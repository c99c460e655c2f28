#include "host/form_window.h"

#include <olectl.h>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "host/form_object.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::host {

HostForm::HostForm(FormFile& file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter)
    : file_(file),
      options_(options),
      folder_(std::move(folder)),
      classes_(classes),
      reporter_(reporter),
      look_(ReadLook(file.form)),
      font_([this] {
          AmbientChanged(DISPID_AMBIENT_FONT);
          NoteChange(nullptr);
      }),
      controls_(*this, file, reporter) {
    font_.Load(look_.font);
    automation_ = MakeObject<FormObject>(*this);
}

HostForm::~HostForm() = default;

void HostForm::Dispose() {
    keyboard_.ForgetAll();
    controls_.Clear();
    automation_->Forget();
    Destroy();
}

IDispatch* HostForm::Automation() const { return static_cast<NamedObject*>(automation_.get()); }

// --- The window.

bool HostForm::CreateFormWindow(const WindowClass& windowClass, const Text& title, HWND parent) {
    keepsClientSize_ = true;
    return Create(windowClass, Wide(title), WindowStyle(), WindowExStyle(), {0, 0, 100, 100}, parent);
}

DWORD HostForm::WindowStyle() const {
    const int border = look_.borderStyle;
    DWORD style = WS_CLIPCHILDREN | (border == 0 ? WS_POPUP : WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU);
    if (border == 2) style |= WS_THICKFRAME;
    if (border == 1 || border == 2) {
        if (look_.minButton) style |= WS_MINIMIZEBOX;
        if (look_.maxButton) style |= WS_MAXIMIZEBOX;
    }
    return style;
}

DWORD HostForm::WindowExStyle() const { return look_.borderStyle == 3 ? WS_EX_DLGMODALFRAME : 0; }

void HostForm::ApplyFrame() {
    const auto shown = static_cast<DWORD>(GetWindowLongPtrW(Handle(), GWL_STYLE)) & WS_VISIBLE;
    SetWindowLongPtrW(Handle(), GWL_STYLE, static_cast<LONG_PTR>(WindowStyle() | shown));
    SetWindowLongPtrW(Handle(), GWL_EXSTYLE, static_cast<LONG_PTR>(WindowExStyle()));
    SetWindowPos(Handle(), nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
}

Dpi HostForm::FormDpi() const { return WindowDpi(Handle()); }

HWND HostForm::ParentWindow(const FormControl& control) const {
    return control.Container() ? control.Container()->Window() : Handle();
}

void HostForm::FollowResolution() {
    if (!IsZoomed(Handle()) && !IsIconic(Handle())) SetClientSize(look_.clientWidth, look_.clientHeight);
    controls_.FollowResolution();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

LRESULT HostForm::OnColor(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto dc = reinterpret_cast<HDC>(wParam);
    if (FormControl* control = ControlOf(reinterpret_cast<HWND>(lParam))) {
        if (const HBRUSH brush = control->OnColor(dc)) return reinterpret_cast<LRESULT>(brush);
        return reinterpret_cast<LRESULT>(backBrush_.Get());
    }
    return Default(message, wParam, lParam);
}

void HostForm::OnFault() noexcept {
    try {
        reporter_.Error(FailureInFlightText());
    } catch (...) {
        // The failure cannot be reported either, and the form goes on.
    }
}

// --- Its properties.

void HostForm::SetCaption(Text caption) {
    look_.caption = std::move(caption);
    SetWindowTextW(Handle(), Wide(look_.caption));
    NoteChange(nullptr);
}

void HostForm::SetTag(Text tag) {
    look_.tag = std::move(tag);
    NoteChange(nullptr);
}

void HostForm::SetBackColor(OLE_COLOR color) {
    look_.backColor = color;
    backBrush_.Reset(CreateSolidBrush(ResolveColor(color)));
    AmbientChanged(DISPID_AMBIENT_BACKCOLOR);
    OnBackColor();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    NoteChange(nullptr);
}

void HostForm::SetForeColor(OLE_COLOR color) {
    look_.foreColor = color;
    AmbientChanged(DISPID_AMBIENT_FORECOLOR);
    NoteChange(nullptr);
}

void HostForm::SetClientSize(int width, int height) {
    if (width < 0 || height < 0) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    look_.clientWidth = width;
    look_.clientHeight = height;
    NoteChange(nullptr);
    const FlagScope kept(keepsClientSize_);
    const Dpi dpi = FormDpi();
    // The difference between the whole and the client area also accounts for a menu bar of several lines.
    for (int attempt = 0; attempt < 2; ++attempt) {
        RECT whole{};
        GetWindowRect(Handle(), &whole);
        const Rect client = ClientArea();
        SetWindowPos(Handle(), nullptr, 0, 0, whole.right - whole.left - client.Width() + TwipsToPixels(width, dpi.x),
                     whole.bottom - whole.top - client.Height() + TwipsToPixels(height, dpi.y),
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void HostForm::SetFrame(int borderStyle, bool minButton, bool maxButton) {
    if (borderStyle < 0 || borderStyle > 3) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    look_.borderStyle = borderStyle;
    look_.minButton = minButton;
    look_.maxButton = maxButton;
    ApplyFrame();
    SetClientSize(look_.clientWidth, look_.clientHeight);
    NoteChange(nullptr);
}

SavedProperties HostForm::SavedLook() {
    look_.font = font_.Value();
    return SaveLook(look_);
}

void HostForm::CaptureLook(MergeMode mode) {
    SavedProperties saved = SavedLook();
    MergeSaved(file_.form, loaded_, saved, LookProperties(), mode);
    loaded_ = std::move(saved);
}

}  // namespace qvx::host
