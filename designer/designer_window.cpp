// The designer's window: how it is made, the steps of its document, and its messages. What it shows:
// designer_views_window.cpp; mouse and keys: designer_input_window.cpp; commands: designer_commands_window.cpp; files:
// designer_files_window.cpp.
#include "designer/designer_window.h"

#include <commctrl.h>

#include <algorithm>

#include "com/guard.h"
#include "com/wide_text.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "designer/document/form_text.h"
#include "host/form_storage_win32.h"
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
    : options_(options), classes_(classes), reporter_(reporter), questions_(std::move(questions)) {
    options_.design = true;
}

DesignerWindow::~DesignerWindow() {
    reporter_.SetOwner(nullptr);
    properties_.onSelect = nullptr;
    properties_.Show({}, {});
    form_.reset();
    if (!runCopy_.empty()) DeleteFileW(Wide(runCopy_));
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
    const auto icon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(iconResource));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    reporter_.SetOwner(Handle());
    toolbox_.Create(Handle(), {0, 0, 10, 10});
    canvas_.Create(Handle(), {0, 0, 10, 10});
    properties_.Create(Handle(), {0, 0, 10, 10});
    status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, Handle(),
                              nullptr, ModuleInstance(), nullptr);
    toolbox_.Fill(classes_, u"Qvx.Button");
    toolbox_.onArmed = [this] { UpdateStatus(); };
    toolbox_.onPlace = [this](const Text& className) {
        if (className == u"Menu") {
            toolbox_.Disarm();
            EditMenus();
        } else if (!className.empty()) {
            PlaceControl(className, std::nullopt, nullptr);
            toolbox_.Disarm();
        }
        SetFocus(canvas_.Handle());
    };
    canvas_.onMouse = [this](const Mouse& mouse) { OnMouse(mouse); };
    canvas_.onForm = [this](bool twice) {
        if (drag_.Under()) return;
        POINT point{};
        GetCursorPos(&point);
        ScreenToClient(form_->Handle(), &point);
        Select({});
        const bool onMenus = form_->MenuAt({static_cast<int>(point.x), static_cast<int>(point.y)}).has_value();
        if (twice && onMenus) EditMenus();
    };
    canvas_.onFormSize = [this](Size inside) {
        const Dpi at = FormDpi();
        const auto twips = [](int pixels, int dots) {
            return std::max(Snapped(PixelsToTwips(pixels, dots)), gridStep);
        };
        Change(u"Size", [&] { form_->SetClientSize(twips(inside.width, at.x), twips(inside.height, at.y)); });
    };
    canvas_.onKey = [this](int key, int shift) { return OnKey(key, shift); };
    canvas_.onFocus = [this] { UpdateAdorners(); };
    properties_.onSelect = [this](std::size_t index) {
        const std::vector<ObjectId> controls = document_->Controls();
        if (index == 0 || index > controls.size()) {
            Select({});
        } else {
            Select({controls[index - 1]});
        }
    };
    properties_.onChanged = [this](TextView name) {
        Log(u"Designer: set " + Text(name));
        // Whoever does not tell of a change is asked as well.
        for (const ObjectId& id : selection_.All()) {
            if (FormControl* control = Find(id)) OnChanged(control);
        }
        if (selection_.Empty()) OnChanged(nullptr);
    };
    properties_.onLoadPicture = [this](const Text& file) { return LoadPicture(file); };
    properties_.onPages = [this](std::size_t subject) { ShowPagesOfSubject(subject); };
    Layout();
    Load(path);
}

void DesignerWindow::Show() {
    ShowWindow(Handle(), SW_SHOWDEFAULT);
    UpdateWindow(Handle());
    SetFocus(canvas_.Handle());
    PostMessageW(Handle(), messageReady, 0, 0);
}

void DesignerWindow::Log(const Text& line) {
    try {
        AppendLine(options_.log, line);
    } catch (const RunTimeError& error) {
        reporter_.Note(Text(error.Description()));
    }
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

FormControl* DesignerWindow::Find(const ObjectId& id) const { return form_->FindControl(id.name, id.index); }

std::vector<TwipsRect> DesignerWindow::SelectedBounds() const {
    std::vector<TwipsRect> bounds;
    for (const ObjectId& id : selection_.All()) bounds.push_back(Document::BoundsOf(*document_->Find(id)));
    return bounds;
}

void DesignerWindow::SetSelectedBounds(const Text& what, const std::vector<TwipsRect>& bounds, TextView merge) {
    const std::vector<ObjectId> ids = selection_.All();
    Change(
        what,
        [&] {
            for (std::size_t i = 0; i < ids.size(); ++i) document_->SetBounds(ids[i], bounds[i]);
        },
        merge);
}

Dpi DesignerWindow::FormDpi() const { return form_->FormDpi(); }

// --- Steps.

bool DesignerWindow::Change(const Text& what, const std::function<void()>& body, TextView merge,
                            const std::function<bool(const Block&)>& fresh) {
    if (busy_) return false;
    bool changed = false;
    std::optional<Text> failure;
    {
        const FlagScope busy(busy_);
        try {
            document_->Begin();
            // Before the controls are made what the blocks say.
            CaptureInto();
            body();
            form_->FollowBlocks(fresh);
            CaptureInto();
            changed = document_->Commit(what, merge);
        } catch (...) {
            document_->Cancel();
            failure = FailureInFlightText();
            form_->FollowBlocks();
        }
    }
    AfterChange();
    if (failure) reporter_.Error(*failure);
    if (changed) Log(u"Designer: step " + what);
    return changed;
}

void DesignerWindow::CaptureInto() {
    // What a control says while it is asked counts as well, but not for ever.
    for (int round = 0; round < 4 && (!pending_.empty() || formPending_); ++round) {
        const std::set<FormControl*> controls = std::exchange(pending_, {});
        if (std::exchange(formPending_, false)) form_->Capture(nullptr);
        for (const auto& control : form_->Controls()) {
            if (controls.contains(control.get())) form_->Capture(control.get());
        }
    }
}

void DesignerWindow::CapturePending() {
    if (busy_ || (pending_.empty() && !formPending_)) return;
    Change(u"Property", [] {});
}

void DesignerWindow::AfterChange() {
    pending_.clear();
    formPending_ = false;
    UpdateView();
}

void DesignerWindow::OnChanged(FormControl* control) {
    if (!form_) return;
    if (control) {
        pending_.insert(control);
    } else {
        formPending_ = true;
    }
    if (capturePosted_ || busy_) return;
    // Not now: whoever changes it is in the middle of that, and may go on.
    capturePosted_ = PostMessageW(Handle(), messageCapture, 0, 0) != FALSE;
}

void DesignerWindow::RequireIdle() const {
    if (busy_) Refuse(u"The form is in the middle of another change.");
}

void DesignerWindow::Rename(FormControl* control, const Text& name) {
    // Refused here and now, for whoever asks to hear of it.
    RequireIdle();
    document_->Begin();
    try {
        if (control) {
            const ObjectId id{control->Name(), control->Index()};
            document_->Rename(id, name);
            control->RememberBlock(*document_->Find({name, id.index}));
            selection_.Set([&] {
                std::vector<ObjectId> ids = selection_.All();
                for (ObjectId& one : ids) {
                    if (one == id) one.name = name;
                }
                return ids;
            }());
        } else {
            document_->RenameForm(name);
        }
        document_->Commit(u"Name");
    } catch (...) {
        document_->Cancel();
        throw;
    }
    OnChanged(control);
}

void DesignerWindow::SetIndex(FormControl& control, int index) {
    RequireIdle();
    const ObjectId id{control.Name(), control.Index()};
    document_->Begin();
    try {
        document_->SetIndex(id, index);
        document_->Commit(u"Index");
    } catch (...) {
        document_->Cancel();
        throw;
    }
    std::vector<ObjectId> ids = selection_.All();
    for (ObjectId& one : ids) {
        if (one == id) one.index = index;
    }
    selection_.Set(std::move(ids));
    // The control itself is another one from now on: it follows when whoever asks has gone.
    capturePosted_ = PostMessageW(Handle(), messageCapture, 0, 0) != FALSE;
}

void DesignerWindow::OnResolution() {
    CancelDrag();
    UpdateView();
}

void DesignerWindow::OnFileMade(const Text& path) { madeFiles_.push_back(path); }

void DesignerWindow::OnFault() noexcept {
    try {
        reporter_.Error(FailureInFlightText());
    } catch (...) {
        // Nothing sensible can be said, and the designer goes on.
    }
}

LRESULT DesignerWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED) Layout();
            return 0;
        case WM_DPICHANGED:
            DpiChange(Handle(), wParam, lParam).Follow();
            Layout();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_ACTIVATE:
            return focus_.OnActivate(Handle(), wParam) ? 0 : Default(message, wParam, lParam);
        case WM_SETFOCUS:
            SetFocus(canvas_.Handle());
            return 0;
        case WM_INITMENUPOPUP:
            UpdateMenus();
            return Default(message, wParam, lParam);
        case WM_COMMAND:
            if (!lParam) Do(static_cast<Command>(LOWORD(wParam)));
            return 0;
        case messageCapture: {
            capturePosted_ = false;
            Change(u"Property", [] {});
            return 0;
        }
        case messageReady:
            SetFocus(canvas_.Handle());
            Log(u"Designer: ready");
            return 0;
        case WM_TIMER:
            if (wParam == runTimer) FollowRun();
            return 0;
        case WM_GETMINMAXINFO: {
            auto* limits = reinterpret_cast<MINMAXINFO*>(lParam);
            limits->ptMinTrackSize = {Scaled(480, Handle()), Scaled(320, Handle())};
            return 0;
        }
        case WM_SYSCOLORCHANGE:
            if (form_) SendMessageW(form_->Handle(), message, wParam, lParam);
            return Default(message, wParam, lParam);
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_QUERYENDSESSION:
            return !busy_ && MayGo();
        case WM_DESTROY:
            KillTimer(Handle(), runTimer);
            if (closed_) PostQuitMessage(0);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
