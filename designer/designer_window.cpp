#include "designer/designer_window.h"

#include <algorithm>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "win/dpi.h"
#include "win/module_instance.h"

namespace qvx::host::designer {

namespace {

constexpr UINT messageCapture = WM_APP + 1;
constexpr UINT messageReady = WM_APP + 2;
constexpr WORD iconResource = 1;

}  // namespace

DesignerWindow::DesignerWindow(const Options& options, const ClassSource& classes, Reporter& reporter,
                               Questions questions)
    : environment_{options, classes, reporter, std::move(questions)} {
    environment_.options.design = true;
}

DesignerWindow::~DesignerWindow() {
    environment_.reporter.SetOwner(nullptr);
    views_.Properties().onSelect = nullptr;
    session_.Close();
    Destroy();
}

void DesignerWindow::Open(const Text& path) {
    static const WindowClass windowClass = {L"QvxDesigner", CS_DBLCLKS};
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const Dpi dpi = ScreenDpi();
    const int width = std::min(static_cast<int>(work.right - work.left), Scaled(1240, dpi.x));
    const int height = std::min(static_cast<int>(work.bottom - work.top), Scaled(780, dpi.y));
    const int left = static_cast<int>(work.left + (work.right - work.left - width) / 2);
    const int top = static_cast<int>(work.top + (work.bottom - work.top - height) / 2);
    if (!Create(windowClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, {left, top, left + width, top + height},
                nullptr)) {
        throw RunTimeError(errors::outOfMemory, u"the system refuses a window for the designer");
    }
    environment_.window = Handle();
    const auto icon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(iconResource));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    environment_.reporter.SetOwner(Handle());
    views_.Create(Handle());
    AttachProperties();
    input_.onCommand = [this](Command command) { Do(command); };
    input_.onContextMenu = [this](POINT at) {
        if (const auto command = menus_.Choose(at)) Do(*command);
    };
    input_.Attach();
    views_.Layout();
    files_.Load(path);
}

void DesignerWindow::AttachProperties() {
    PropertyListWindow& properties = views_.Properties();
    properties.onSelect = [this](std::size_t index) {
        const std::vector<ObjectId> controls = session_.Form().Controls();
        if (index == 0 || index > controls.size()) {
            session_.Select({});
        } else {
            session_.Select({controls[index - 1]});
        }
    };
    properties.onChanged = [this](TextView name) {
        environment_.Log(u"Designer: set " + Text(name));
        // A control that does not notify its container of a change is asked as well.
        for (const ObjectId& id : session_.Selected().All()) {
            if (FormControl* control = session_.Find(id)) session_.OnChanged(control);
        }
        if (session_.Selected().Empty()) session_.OnChanged(nullptr);
    };
    properties.onLoadPicture = [this](const Text& file) { return pictures_.Load(file); };
    properties.onPages = [this](std::size_t subject) { editors_.ShowPagesOfSubject(subject); };
}

void DesignerWindow::Show() {
    ShowWindow(Handle(), SW_SHOWDEFAULT);
    UpdateWindow(Handle());
    views_.Focus(Pane::canvas);
    PostMessageW(Handle(), messageReady, 0, 0);
}

void DesignerWindow::Run() {
    MSG message;
    while (Handle() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!TranslateKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

bool DesignerWindow::TranslateKey(const MSG& message) {
    const bool inside = message.hwnd == Handle() || IsChild(Handle(), message.hwnd);
    if (!inside || (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)) return false;
    const int key = static_cast<int>(message.wParam);
    const int shift = ShiftState();
    if (const auto pane = PaneAfterKey(key, shift, views_.Focused())) {
        views_.Focus(*pane);
        return true;
    }
    const auto command = menus_.CommandOf({key, shift});
    if (!command || !TakesShortcut(*command, views_.TargetOf(message.hwnd))) return false;
    Do(*command);
    return true;
}

bool DesignerWindow::Do(Command command) {
    if (session_.Busy()) return false;
    session_.CapturePending();
    input_.CancelDrag();
    return Available(command, menus_.State()) && commands_.Execute(command);
}

// --- What the session asks for.

void DesignerWindow::OnSessionChanged() {
    views_.Update();
    menus_.Update();
}

void DesignerWindow::OnFormClosing() {
    interaction_.OrderTabs(false);
    views_.Clear();
}

void DesignerWindow::OnFormResolution() {
    input_.CancelDrag();
    session_.Refresh();
}

bool DesignerWindow::PostCapture() { return PostMessageW(Handle(), messageCapture, 0, 0) != FALSE; }

// --- Messages.

void DesignerWindow::OnClose() {
    if (session_.Busy() || !IsWindowEnabled(Handle())) return;
    const auto exitCode = files_.Finish();
    if (!exitCode) return;
    exitCode_ = *exitCode;
    environment_.reporter.SetOwner(nullptr);
    session_.Close();
    closed_ = true;
    Destroy();
}

void DesignerWindow::OnFault() noexcept {
    try {
        environment_.ReportFailure();
    } catch (...) {
        // The failure cannot be reported either, and the designer goes on.
    }
}

LRESULT DesignerWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED) views_.Layout();
            return 0;
        case WM_DPICHANGED:
            DpiChange(Handle(), wParam, lParam).Follow();
            views_.Layout();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            return focus_.OnActivate(Handle(), wParam) ? 0 : Default(message, wParam, lParam);
        case WM_SETFOCUS:
            views_.Focus(Pane::canvas);
            return 0;
        case WM_INITMENUPOPUP:
            menus_.Update();
            return Default(message, wParam, lParam);
        case WM_COMMAND:
            if (!lParam) Do(static_cast<Command>(LOWORD(wParam)));
            return 0;
        case messageCapture:
            session_.CapturePosted();
            return 0;
        case messageReady:
            views_.Focus(Pane::canvas);
            environment_.Log(u"Designer: ready");
            return 0;
        case WM_TIMER:
            if (wParam == FormRun::timer) run_.Follow();
            return 0;
        case WM_GETMINMAXINFO: {
            auto* limits = reinterpret_cast<MINMAXINFO*>(lParam);
            limits->ptMinTrackSize = {Scaled(480, Handle()), Scaled(320, Handle())};
            return 0;
        }
        case WM_SYSCOLORCHANGE:
            if (session_.IsOpen()) SendMessageW(session_.Picture().Handle(), message, wParam, lParam);
            return Default(message, wParam, lParam);
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_QUERYENDSESSION:
            return !session_.Busy() && files_.MayGo();
        case WM_DESTROY:
            KillTimer(Handle(), FormRun::timer);
            if (closed_) PostQuitMessage(0);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
