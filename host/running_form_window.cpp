#include "host/running_form_window.h"

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "host/form_storage_win32.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"

namespace qvx::host {

namespace {

constexpr int exitScriptFailed = 3;
constexpr int exitNotSaved = 4;
constexpr int formGone = 91;
constexpr UINT messageClose = WM_APP + 1;
constexpr WORD iconResource = 1;

}  // namespace

RunningForm::RunningForm(FormFile file, const Options& options, Text folder, const ClassSource& classes,
                         Reporter& reporter)
    : OwnFormFile{std::move(file)},
      HostForm(own, options, std::move(folder), classes, reporter),
      script_(*this, [this](const Text& message) {
          if (!exitCode_) exitCode_ = exitScriptFailed;
          reporter_.Error(message);
      }) {}

RunningForm::~RunningForm() {
    looping_ = false;
    reporter_.SetOwner(nullptr);
    script_.Close();
    Dispose();
}

void RunningForm::Build() {
    if (!SameName(file_.form.className, u"Form")) {
        throw FormFileError(file_.form.lineNumber,
                            u"the file begins with a \"" + file_.form.className + u"\", not with a \"Form\"");
    }
    CheckNames(file_.form);
    static const WindowClass windowClass = {L"QvxHostForm", CS_DBLCLKS};
    if (!CreateFormWindow(windowClass, options_.design ? look_.caption + u" [design]" : look_.caption, nullptr)) {
        throw FormFileError(0, u"the system refuses a window for the form");
    }
    reporter_.SetOwner(Handle());
    const auto icon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(iconResource));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    backBrush_.Reset(CreateSolidBrush(ResolveColor(look_.backColor)));
    controls_.Build();
    menus_.Show(Handle(), ReadMenus(file_.form));
    SetClientSize(look_.clientWidth, look_.clientHeight);
    RECT whole{};
    RECT work{};
    GetWindowRect(Handle(), &whole);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(Handle(), nullptr, work.left + (work.right - work.left - (whole.right - whole.left)) / 2,
                 work.top + (work.bottom - work.top - (whole.bottom - whole.top)) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    controls_.RememberAsLoaded();
    loaded_ = SavedLook();
}

bool RunningForm::Start(TextView scriptName, TextView source) {
    if (!options_.design && !scriptName.empty() && !script_.Start(scriptName, source, options_)) return false;
    script_.FireForm(u"Load");
    if (!Handle()) return true;  // closed from a message box of Form_Load
    // Minimised or maximised, as the program was started.
    ShowWindow(Handle(), SW_SHOWDEFAULT);
    UpdateWindow(Handle());
    keepsClientSize_ = false;
    if (!options_.design) keyboard_.FocusFirst();
    return true;
}

void RunningForm::Run() {
    looping_ = true;
    MSG message;
    while (Handle() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!keyboard_.TranslateKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        keyboard_.FollowFocus();
    }
}

void RunningForm::Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments) {
    script_.Fire(control, event, arguments);
}

void RunningForm::Save(const Text& path) {
    // The texts of the labels and fields went with their windows.
    if (!Handle()) throw RunTimeError(formGone, u"the form has closed and cannot be saved any more");
    const MergeMode mode = options_.rewrite ? MergeMode::everything : MergeMode::changes;
    controls_.CaptureAll(mode);
    CaptureLook(mode);
    ReplaceFileBytes(path, file_.Write());
}

// --- Closing.

void RunningForm::AskToClose(int code) {
    if (!Handle()) return;
    if (closing_) {
        if (code) closing_ = code;
        return;
    }
    // The caller is in the middle of something, often an event of a control, so that the form closes later. The code
    // travels along, since the request may be refused.
    PostMessageW(Handle(), messageClose, static_cast<WPARAM>(code), 0);
}

void RunningForm::OnClose(int code) {
    // Handlers and message boxes run message loops, where the user may well press the closing box once more.
    if (closing_) return;
    closing_ = code;
    struct Done {
        std::optional<int>& closing;
        ~Done() { closing.reset(); }
    } const done{closing_};
    // What is being typed belongs to the form before it is asked whether it may go.
    keyboard_.FinishInput();
    VARIANT_BOOL cancel = VARIANT_FALSE;
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_BOOL;
    argument.pboolVal = &cancel;
    script_.FireForm(u"Unload", {&argument});
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
    script_.Stop();
    reporter_.SetOwner(nullptr);
    Destroy();
}

// --- Messages.

void RunningForm::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (lParam) {
        if (FormControl* control = ControlOf(reinterpret_cast<HWND>(lParam))) control->OnCommand(HIWORD(wParam));
    } else if (const MenuItem* item = menus_.Find(unsigned{LOWORD(wParam)})) {
        script_.FireMenu(*item);
    }
}

void RunningForm::OnSize(WPARAM how, LPARAM size) {
    if (how == SIZE_MINIMIZED) return;
    if (!keepsClientSize_) {
        const Dpi dpi = FormDpi();
        look_.clientWidth = PixelsToTwips(LOWORD(size), dpi.x);
        look_.clientHeight = PixelsToTwips(HIWORD(size), dpi.y);
    }
    script_.FireForm(u"Resize");
}

LRESULT RunningForm::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
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
            SetBackColor(look_.backColor);
            return Default(message, wParam, lParam);
        case WM_SIZE:
            OnSize(wParam, lParam);
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
            // The window itself has no use for the focus; the control that had it last has.
            keyboard_.FocusActive();
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
