// A form at work: its script, focus on the window's messages. Between form and file:
// form_blocks_window.cpp; keys: form_keyboard_window.cpp; under design:
// form_design_window.cpp.
#include "host/form_window.h"

#include <olectl.h>

#include <algorithm>
#include <limits>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "host/form_font.h"
#include "host/form_object.h"
#include "host/form_parts_object.h"
#include "host/host_object.h"
#include "host/sited_control.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"

namespace qvx::host {

namespace {

constexpr int defaultWidth = 4800;  // twips
constexpr int defaultHeight = 3600;

constexpr int exitNotSaved = 4;
constexpr UINT messageClose = WM_APP + 1;

}  // namespace

HostForm::HostForm(FormFile file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter)
    : HostForm(std::move(file), nullptr, nullptr, options, std::move(folder), classes, reporter) {}

HostForm::HostForm(FormFile& file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter,
                   DesignHost& designer)
    : HostForm(FormFile(), &file, &designer, options, std::move(folder), classes, reporter) {}

HostForm::HostForm(FormFile own, FormFile* shared, DesignHost* designer, const Options& options, Text folder,
                   const ClassSource& classes, Reporter& reporter)
    : own_(std::move(own)),
      file_(shared ? *shared : own_),
      designer_(designer),
      options_(options),
      folder_(std::move(folder)),
      classes_(classes),
      reporter_(reporter),
      font_([this] {
          AmbientChanged(DISPID_AMBIENT_FONT);
          NoteChange(nullptr);
      }) {
    ReadLook();
    automation_ = MakeObject<FormObject>(*this);
}

void HostForm::ReadLook() {
    const Block& form = file_.form;
    caption_ = form.TextOf(u"Caption", form.name);
    tag_ = form.TextOf(u"Tag");
    backColor_ = static_cast<OLE_COLOR>(form.IntOf(u"BackColor", static_cast<std::int32_t>(colors::buttonFace)));
    foreColor_ = static_cast<OLE_COLOR>(form.IntOf(u"ForeColor", static_cast<std::int32_t>(colors::buttonText)));
    clientWidth_ = form.IntOf(u"ClientWidth", form.IntOf(u"ScaleWidth", defaultWidth));
    clientHeight_ = form.IntOf(u"ClientHeight", form.IntOf(u"ScaleHeight", defaultHeight));
    borderStyle_ = form.IntOf(u"BorderStyle", 2);
    minButton_ = form.BoolOf(u"MinButton", true);
    maxButton_ = form.BoolOf(u"MaxButton", true);
    const Block* font = form.FindGroup(u"Font");
    font_.Load(font ? ReadFont(*font, DefaultFont()) : DefaultFont());
}

DWORD HostForm::WindowStyle() const {
    DWORD style = WS_CLIPCHILDREN | (borderStyle_ == 0 ? WS_POPUP : WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU);
    if (borderStyle_ == 2) style |= WS_THICKFRAME;
    if (borderStyle_ == 1 || borderStyle_ == 2) {
        if (minButton_) style |= WS_MINIMIZEBOX;
        if (maxButton_) style |= WS_MAXIMIZEBOX;
    }
    return style;
}

HostForm::~HostForm() {
    running_ = false;
    looping_ = false;
    reporter_.SetOwner(nullptr);
    if (script_) script_->Close();
    active_ = nullptr;
    // Later ones first: what stands in a frame goes before the frame.
    while (!controls_.empty()) controls_.pop_back();
    automation_->Forget();
    Destroy();
}

IDispatch* HostForm::Automation() const { return static_cast<NamedObject*>(automation_.get()); }

Dpi HostForm::FormDpi() const { return WindowDpi(Handle()); }

void HostForm::FollowResolution() {
    // Nobody has changed anything that a file keeps.
    const FlagScope quiet(quiet_);
    if (designer_) {
        menuStrip_ = MenuStripSize();
        ApplyFrame();
    }
    if (!IsZoomed(Handle()) && !IsIconic(Handle())) SetClientSize(clientWidth_, clientHeight_);
    for (const auto& control : controls_) control->FollowResolution();
    gridBrush_.Reset();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

int HostForm::NextTabIndex() const {
    int highest = -1;
    for (const auto& control : controls_) highest = std::max(highest, control->TabIndex());
    return highest < std::numeric_limits<int>::max() ? highest + 1 : highest;
}

void HostForm::ForgetControl(const FormControl& control) {
    if (active_ == &control) active_ = nullptr;
}

HWND HostForm::ParentWindow(const FormControl& control) const {
    return control.Container() ? control.Container()->Window() : Handle();
}

bool HostForm::Start(TextView scriptName, TextView source) {
    bool compiled = true;
    if (!options_.design && !scriptName.empty()) {
        scriptName_ = scriptName;
        script_ =
            std::make_unique<ScriptEngine>(Handle(), [this](const ScriptError& error) { ReportScriptError(error); });
        script_->Open(scriptName);
        script_->AddObject(u"Host", MakeHostObject(*this, options_).get());
        script_->AddObject(u"App", MakeAppObject().get());
        script_->AddObject(Name(), Automation());
        if (!SameName(Name(), u"Form")) script_->AddObject(u"Form", Automation());
        for (const auto& control : controls_) {
            if (control->Index() < 0) script_->AddObject(control->Name(), control->Extended());
        }
        script_->AddGlobals(u"ControlArrays", MakeControlArrays(*this).get());
        for (const MenuItem* menu : menus_.All()) {
            if (menu->index < 0) script_->AddObject(menu->name, menus_.Automation(*menu));
        }
        running_ = true;
        compiled = script_->Run(source);
    }
    if (!compiled) return false;
    FireForm(u"Load");
    if (!Handle()) return true;  // closed from a message box of Form_Load
    // Started minimised or maximised, as whoever starts the program wishes.
    ShowWindow(Handle(), SW_SHOWDEFAULT);
    UpdateWindow(Handle());
    keepsClientSize_ = false;
    if (!options_.design && !active_) FocusNext(true, nullptr);
    return true;
}

void HostForm::Run() {
    looping_ = true;
    MSG message;
    while (Handle() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!TranslateKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        FollowFocus();
    }
}

void HostForm::Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments) {
    if (!running_) return;
    std::vector<VARIANT*> all = arguments;
    Variant index(control.Index());
    if (control.Index() >= 0) all.insert(all.begin(), index.ptr());
    script_->Call(control.Name() + u"_" + Text(event), all);
}

void HostForm::FireForm(TextView event, const std::vector<VARIANT*>& arguments) {
    if (running_) script_->Call(u"Form_" + Text(event), arguments);
}

void HostForm::ReportScriptError(const ScriptError& error) {
    Text message = scriptName_.substr(scriptName_.find_last_of(u"\\/") + 1);
    if (error.line > 0) message += u"(" + ValueAsText(FormValue(static_cast<std::int32_t>(error.line))) + u")";
    message += u": " + error.message;
    if (!error.lineText.empty()) message += u"\n    " + error.lineText;
    exitCode_ = exitCode_ ? exitCode_ : 3;
    reporter_.Error(message);
}

FormControl* HostForm::FindControl(TextView name, int index) const {
    for (const auto& control : controls_) {
        if (SameName(control->Name(), name) && (index < 0 || control->Index() == index)) return control.get();
    }
    return nullptr;
}

void HostForm::SetCaption(Text caption) {
    caption_ = std::move(caption);
    SetWindowTextW(Handle(), Wide(caption_));
    NoteChange(nullptr);
}

void HostForm::SetBackColor(OLE_COLOR color) {
    backColor_ = color;
    backBrush_.Reset(CreateSolidBrush(ResolveColor(color)));
    AmbientChanged(DISPID_AMBIENT_BACKCOLOR);
    gridBrush_.Reset();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    NoteChange(nullptr);
}

void HostForm::SetForeColor(OLE_COLOR color) {
    foreColor_ = color;
    AmbientChanged(DISPID_AMBIENT_FORECOLOR);
    NoteChange(nullptr);
}

void HostForm::AmbientChanged(DISPID property) {
    for (const auto& control : controls_) control->OnAmbientChanged(property);
}

void HostForm::SetClientSize(int width, int height) {
    if (width < 0 || height < 0) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    clientWidth_ = width;
    clientHeight_ = height;
    NoteChange(nullptr);
    const bool kept = keepsClientSize_;
    keepsClientSize_ = true;
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
    keepsClientSize_ = kept;
}

void HostForm::AskToClose(int code) {
    if (!Handle()) return;
    if (closing_) {
        if (code) closing_ = code;
        return;
    }
    // Not now: whoever asks is in the middle of something, often inside an event of a control. The code travels along,
    // since the request may be refused.
    PostMessageW(Handle(), messageClose, static_cast<WPARAM>(code), 0);
}

void HostForm::OnClose(int code) {
    // Handlers and message boxes run message loops, where the user may well press the closing box once more.
    if (closing_) return;
    closing_ = code;
    struct Done {
        std::optional<int>& closing;
        ~Done() { closing.reset(); }
    } const done{closing_};
    // What is being typed belongs to the form before it is asked whether it may go.
    if (active_) active_->OnLeft();
    VARIANT_BOOL cancel = VARIANT_FALSE;
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_BOOL;
    argument.pboolVal = &cancel;
    FireForm(u"Unload", {&argument});
    if (cancel || !Handle()) return;
    bool saved = true;
    if (!options_.save.empty()) {
        try {
            Save(options_.save);
        } catch (...) {
            saved = false;
            reporter_.Error(FailureInFlightText());
        }
    }
    if (*closing_) exitCode_ = *closing_;
    if (!saved) exitCode_ = exitNotSaved;
    running_ = false;
    reporter_.SetOwner(nullptr);
    Destroy();
}

void HostForm::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (lParam) {
        if (FormControl* control = ControlOf(reinterpret_cast<HWND>(lParam))) control->OnCommand(HIWORD(wParam));
        return;
    }
    const unsigned id = LOWORD(wParam);
    const MenuItem* item = menus_.Find(id);
    if (!item) return;
    if (running_) {
        Variant index(item->index);
        std::vector<VARIANT*> arguments;
        if (item->index >= 0) arguments.push_back(index.ptr());
        script_->Call(item->name + u"_Click", arguments);
    }
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
        // Nothing sensible can be said, and the form goes on.
    }
}

LRESULT HostForm::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (designer_) return OnDesignMessage(message, wParam, lParam);
    switch (message) {
        case WM_COMMAND:
            OnCommand(wParam, lParam);
            return 0;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORBTN:
            return OnColor(message, wParam, lParam);
        case WM_ERASEBKGND: {
            const Rect area = ClientArea();
            const RECT rect = {area.left, area.top, area.right, area.bottom};
            FillRect(reinterpret_cast<HDC>(wParam), &rect, backBrush_.Get());
            return 1;
        }
        case WM_SYSCOLORCHANGE:
            SetBackColor(backColor_);
            return Default(message, wParam, lParam);
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED && !keepsClientSize_) {
                const Dpi dpi = FormDpi();
                clientWidth_ = PixelsToTwips(LOWORD(lParam), dpi.x);
                clientHeight_ = PixelsToTwips(HIWORD(lParam), dpi.y);
            }
            if (wParam != SIZE_MINIMIZED) FireForm(u"Resize");
            return 0;
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            {
                // The system's rounding is not the user's wish; a form that fills its monitor takes what there is.
                const FlagScope kept(keepsClientSize_, !IsZoomed(Handle()));
                change.Follow();
            }
            FollowResolution();
            return 0;
        }
        case WM_SETFOCUS:
            // The window itself has no use for the focus: the control that had it last has.
            if (active_ && active_->CanFocus()) active_->Focus(nullptr);
            return 0;
        case WM_ACTIVATE:
            return focus_.OnActivate(Handle(), wParam) ? 0 : Default(message, wParam, lParam);
        case WM_CLOSE:
            OnClose(0);
            return 0;
        case messageClose:
            OnClose(static_cast<int>(wParam));
            return 0;
        case WM_DESTROY:
            // A form that goes because it cannot be loaded has no loop to end, but an error to show: its message box
            // would be ended instead.
            if (looping_) PostQuitMessage(0);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host
