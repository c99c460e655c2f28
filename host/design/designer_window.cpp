// The designer's window: what it shows of the document. Mouse and keys: designer_input_window.cpp; commands and files:
// designer_commands_window.cpp.
#include "host/design/designer_window.h"

#include <commctrl.h>

#include <algorithm>

#include "com/guard.h"
#include "com/text.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "host/design_box_window.h"
#include "host/form_storage_win32.h"
#include "host/sited_control.h"
#include "win/dpi.h"
#include "win/module.h"

namespace qvx::host::design {

namespace {

constexpr UINT messageCapture = WM_APP + 1;
constexpr UINT messageReady = WM_APP + 2;
constexpr UINT_PTR runTimer = 1;
constexpr WORD iconResource = 1;
constexpr int paletteWidth = 136;  // pixels at 96 dots per inch
constexpr int propertiesWidth = 280;

int Scaled(int pixels, HWND window) { return ScaleRounded(pixels, WindowDpi(window).x, 96); }

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
    const int width = std::min(static_cast<int>(work.right - work.left), ScaleRounded(1240, dpi.x, 96));
    const int height = std::min(static_cast<int>(work.bottom - work.top), ScaleRounded(780, dpi.y, 96));
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
    palette_.Create(Handle(), {0, 0, 10, 10});
    canvas_.Create(Handle(), {0, 0, 10, 10});
    properties_.Create(Handle(), {0, 0, 10, 10});
    status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, Handle(),
                              nullptr, ModuleInstance(), nullptr);
    palette_.Fill(classes_, u"Qvx.Button");
    palette_.onArmed = [this] { UpdateStatus(); };
    palette_.onPlace = [this](const Text& className) {
        if (className == u"Menu") {
            palette_.Disarm();
            EditMenus();
        } else if (!className.empty()) {
            PlaceControl(className, std::nullopt, nullptr);
            palette_.Disarm();
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
    canvas_.onFocus = [this] { UpdateMarks(); };
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
        reporter_.Note(error.Description());
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

Dpi DesignerWindow::FormDpi() const { return form_->FormDpi(); }

// --- Steps.

bool DesignerWindow::Change(const Text& what, const std::function<void()>& body, TextView merge,
                            const std::function<bool(const Block&)>& fresh) {
    if (document_->InStep()) {
        body();
        return true;
    }
    bool changed = false;
    try {
        document_->Begin();
        body();
        form_->FollowBlocks(fresh);
        CaptureInto();
        changed = document_->Commit(what, merge);
    } catch (...) {
        const Text reason = FailureInFlightText();
        document_->Cancel();
        form_->FollowBlocks();
        AfterChange();
        reporter_.Error(reason);
        return false;
    }
    AfterChange();
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
    if (document_->InStep() || (pending_.empty() && !formPending_)) return;
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
    if (capturePosted_ || document_->InStep()) return;
    // Not now: whoever changes it is in the middle of that, and may go on.
    capturePosted_ = PostMessageW(Handle(), messageCapture, 0, 0) != FALSE;
}

void DesignerWindow::Rename(FormControl* control, const Text& name) {
    // Refused here and now, for whoever asks to hear of it.
    document_->Begin();
    try {
        if (control) {
            const ObjectId id{control->Name(), control->Index()};
            document_->Rename(id, name);
            selection_.Set([&] {
                std::vector<ObjectId> ids = selection_.All();
                for (ObjectId& one : ids) {
                    if (one == id) one.name = name;
                }
                return ids;
            }());
            control->RememberBlock();
        } else {
            document_->RenameForm(name);
        }
    } catch (...) {
        document_->Cancel();
        throw;
    }
    document_->Commit(u"Name");
    OnChanged(control);
}

void DesignerWindow::SetIndex(FormControl& control, int index) {
    const ObjectId id{control.Name(), control.Index()};
    document_->Begin();
    try {
        document_->SetIndex(id, index);
    } catch (...) {
        document_->Cancel();
        throw;
    }
    document_->Commit(u"Index");
    std::vector<ObjectId> ids = selection_.All();
    for (ObjectId& one : ids) {
        if (one == id) one.index = index;
    }
    selection_.Set(std::move(ids));
    // The control itself is another one from now on: it follows when whoever asks has gone.
    capturePosted_ = PostMessageW(Handle(), messageCapture, 0, 0) != FALSE;
}

void DesignerWindow::OnFileMade(const Text& path) { madeFiles_.push_back(path); }

// --- Views.

void DesignerWindow::Select(std::vector<ObjectId> ids) {
    selection_.Set(std::move(ids));
    UpdateView();
    if (const ObjectId* primary = selection_.Primary()) {
        for (const Shape& shape : shapes_) {
            if (shape.id == *primary) canvas_.Reveal(shape.area);
        }
    }
}

void DesignerWindow::UpdateView() {
    if (!form_ || !Handle()) return;
    shapes_ = document_->ShapesAt(FormDpi());
    for (const auto& control : form_->Controls()) {
        // One of a fixed size whose size the form does not say.
        if (control->SaysSize()) continue;
        const ObjectId id{control->Name(), control->Index()};
        const auto shape = std::find_if(shapes_.begin(), shapes_.end(), [&](const Shape& one) { return one.id == id; });
        if (shape == shapes_.end()) continue;
        const RECT pixels = control->PixelBounds();
        shape->area.right = shape->area.left + (pixels.right - pixels.left);
        shape->area.bottom = shape->area.top + (pixels.bottom - pixels.top);
    }
    selection_.Keep(shapes_);
    canvas_.SetForm(form_->Handle());
    canvas_.SetFormSelected(selection_.Empty());
    UpdateMarks();
    UpdateProperties();
    UpdateCaption();
    UpdateStatus();
    UpdateMenus();
}

void DesignerWindow::UpdateMarks() {
    if (!form_) return;
    std::vector<Mark> marks;
    if (tabOrderView_) {
        const std::vector<ObjectId> order = document_->TabOrder();
        const int height = Scaled(18, Handle());
        for (std::size_t i = 0; i < shapes_.size(); ++i) {
            const auto done = std::find(tabOrderDone_.begin(), tabOrderDone_.end(), shapes_[i].id);
            const bool isDone = done != tabOrderDone_.end();
            const auto number = std::find(order.begin(), order.end(), shapes_[i].id) - order.begin();
            const Text text = IntegerToText(static_cast<int>(number));
            const int width = Scaled(10 + 8 * static_cast<int>(text.size()), Handle());
            const Rect& area = shapes_[i].area;
            marks.push_back({isDone ? Mark::Look::doneBadge : Mark::Look::badge,
                             {area.left, area.top, area.left + width, area.top + height},
                             text});
        }
        canvas_.SetMarks(std::move(marks));
        return;
    }
    const bool focused = GetFocus() == canvas_.Handle();
    const int size = canvas_.HandleSize();
    for (const Shape& shape : shapes_) {
        if (!selection_.Has(shape.id)) continue;
        const bool primary = *selection_.Primary() == shape.id;
        const Mark::Look look = !focused  ? Mark::Look::weakHandle
                                : primary ? Mark::Look::primaryHandle
                                          : Mark::Look::handle;
        for (int i = 0; i < handleCount; ++i) {
            const auto handle = static_cast<Grip>(i);
            const bool corner = handle == Grip::topLeft || handle == Grip::topRight || handle == Grip::bottomLeft ||
                                handle == Grip::bottomRight;
            if (primary || corner) marks.push_back({look, GripArea(shape.area, handle, size), {}});
        }
    }
    if (drag_.Under() && drag_.Moved()) {
        for (const Rect& outline : drag_.Outlines()) marks.push_back({Mark::Look::outline, outline, {}});
    }
    canvas_.SetMarks(std::move(marks));
}

void DesignerWindow::UpdateProperties() {
    std::vector<PropertyListWindow::Subject> subjects;
    std::vector<void*> objects;
    const auto titleOf = [](const FormControl& control) { return control.Title() + u"  " + control.ClassName(); };
    // The primary first: what the list shows of several is its value.
    for (auto id = selection_.All().rbegin(); id != selection_.All().rend(); ++id) {
        FormControl* control = Find(*id);
        if (!control) continue;
        const auto* sited = dynamic_cast<SitedControl*>(control);
        subjects.push_back({titleOf(*control), ComPtr<IDispatch>(control->Extended()), control->Inner(),
                            ComPtr<IUnknown>(sited ? sited->Object() : nullptr)});
        objects.push_back(control->Extended());
    }
    if (subjects.empty()) {
        subjects.push_back({form_->Name() + u"  Form", ComPtr<IDispatch>(form_->Automation()), nullptr, nullptr});
        objects.push_back(form_->Automation());
    }
    std::vector<Text> titles{form_->Name() + u"  Form"};
    for (const ObjectId& id : document_->Controls()) {
        if (const FormControl* control = Find(id)) titles.push_back(titleOf(*control));
    }
    // The titles belong to what is listed: a name may have changed.
    std::size_t hash = 0;
    for (const Text& title : titles) hash = hash * 31 + std::hash<Text>()(title);
    objects.push_back(reinterpret_cast<void*>(hash));
    if (objects == listed_) {
        properties_.RefreshValues();
        return;
    }
    listed_ = std::move(objects);
    Log(u"Designer: shows " + subjects.front().title);
    properties_.Show(std::move(subjects), std::move(titles));
}

void DesignerWindow::UpdateCaption() {
    const std::size_t slash = path_.find_last_of(u"\\/");
    Text title = path_.empty() ? document_->File().form.name : path_.substr(slash == Text::npos ? 0 : slash + 1);
    if (document_->Dirty()) title += u"*";
    title += u" - " + ProgramTitle() + u" Designer";
    SetWindowTextW(Handle(), Wide(title));
}

void DesignerWindow::UpdateStatus() {
    if (!form_) return;
    const auto number = [](int value) { return IntegerToText(value); };
    Text hint;
    Text place;
    Text size;
    if (const Text armed = palette_.Armed(); !armed.empty()) {
        hint = armed == u"Menu" ? u"Press Enter or double-click to edit the form's menus."
                                : u"Draw the " + armed + u" on the form, or press Enter.";
    } else if (tabOrderView_) {
        hint = u"Click the controls in the order in which Tab shall visit them; Escape ends this.";
    } else if (selection_.All().size() > 1) {
        hint = number(static_cast<int>(selection_.All().size())) + u" controls";
    }
    TwipsRect bounds{0, 0, form_->ClientWidth(), form_->ClientHeight()};
    bool placed = false;
    if (drag_.Under() && drag_.Moved() && drag_.What() != Drag::Kind::band) {
        const auto all = drag_.Bounds();
        if (!all.empty()) {
            bounds = all.back();
            placed = true;
        }
    } else if (const ObjectId* primary = selection_.Primary()) {
        if (const Block* block = document_->Find(*primary)) bounds = Document::BoundsOf(*block);
        const FormControl* control = Find(*primary);
        if (control && !control->SaysSize()) bounds = control->Bounds();
        if (const auto* broken = dynamic_cast<const BrokenControl*>(control)) hint = broken->Reason();
        placed = true;
        if (hint.empty()) hint = TitleOf(*primary);
    } else if (hint.empty()) {
        hint = form_->Name();
    }
    if (placed) place = number(bounds.left) + u", " + number(bounds.top);
    size = number(bounds.width) + u" \u00D7 " + number(bounds.height) + u" twips";
    SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(Wide(hint)));
    SendMessageW(status_, SB_SETTEXTW, 1, reinterpret_cast<LPARAM>(Wide(place)));
    SendMessageW(status_, SB_SETTEXTW, 2, reinterpret_cast<LPARAM>(Wide(size)));
}

CommandState DesignerWindow::State() const {
    CommandState state;
    state.selected = selection_.All().size();
    state.undo = document_->UndoName();
    state.redo = document_->RedoName();
    state.canPaste = IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    state.tabOrder = tabOrderView_;
    if (const ObjectId* primary = selection_.Primary()) {
        const auto* sited = dynamic_cast<SitedControl*>(Find(*primary));
        state.hasPages = sited && !sited->Pages().empty();
        const Block* block = document_->Find(*primary);
        state.imageList = block && SameName(block->className, u"ImageList");
    }
    return state;
}

void DesignerWindow::UpdateMenus() {
    const CommandState state = State();
    // The bar is only made anew when something about it is new: that flickers.
    Text now = state.undo + u"|" + state.redo + u"|" +
               IntegerToText(static_cast<int>(std::min<std::size_t>(state.selected, 3)));
    for (const bool flag : {state.canPaste, state.hasPages, state.imageList, state.tabOrder}) now += flag ? u'1' : u'0';
    if (now == menuState_ && GetMenu(Handle())) return;
    menuState_ = std::move(now);
    menus_.Show(Handle(), DesignerMenus(state));
}

void DesignerWindow::Layout() {
    if (!status_) return;
    SendMessageW(status_, WM_SIZE, 0, 0);
    RECT statusArea{};
    GetWindowRect(status_, &statusArea);
    const Rect client = ClientArea();
    const int bottom = client.bottom - static_cast<int>(statusArea.bottom - statusArea.top);
    const int left = std::min(Scaled(paletteWidth, Handle()), client.Width() / 4);
    const int right = client.right - std::min(Scaled(propertiesWidth, Handle()), client.Width() / 3);
    const auto place = [](HWND window, const Rect& area) {
        MoveWindow(window, area.left, area.top, std::max(area.Width(), 0), std::max(area.Height(), 0), TRUE);
    };
    place(palette_.Handle(), {0, 0, left, bottom});
    place(canvas_.Handle(), {left, 0, right, bottom});
    place(properties_.Handle(), {right, 0, client.right, bottom});
    const int parts[] = {client.right - Scaled(300, Handle()), client.right - Scaled(180, Handle()), -1};
    SendMessageW(status_, SB_SETPARTS, 3, reinterpret_cast<LPARAM>(parts));
}

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
        case WM_ERASEBKGND:
            return 1;
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
            if (!document_->InStep()) {
                Change(u"Property", [] {});
            }
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
            return MayGo();
        case WM_DESTROY:
            KillTimer(Handle(), runTimer);
            if (closed_) PostQuitMessage(0);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::design
