#include "designer/designer_views_window.h"

#include <commctrl.h>

#include <algorithm>

#include "com/module.h"
#include "com/wide_text.h"
#include "designer/status_line.h"
#include "host/design_box_window.h"
#include "host/sited_control.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"

namespace qvx::host::designer {

namespace {

constexpr int toolboxWidth = 136;  // pixels at 96 dots per inch
constexpr int propertiesWidth = 280;

}  // namespace

void DesignerViews::Create(HWND designer) {
    toolbox_.Create(designer, {0, 0, 10, 10});
    canvas_.Create(designer, {0, 0, 10, 10});
    properties_.Create(designer, {0, 0, 10, 10});
    status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, designer,
                              nullptr, ModuleInstance(), nullptr);
    toolbox_.Fill(environment_.classes, u"Qvx.Button");
}

// --- What they show.

void DesignerViews::Update() {
    canvas_.SetForm(session_.Picture().Handle());
    canvas_.SetFormSelected(session_.Selected().Empty());
    UpdateAdorners();
    UpdateProperties();
    UpdateCaption();
    UpdateStatus();
}

void DesignerViews::UpdateInteraction() {
    UpdateAdorners();
    UpdateStatus();
}

void DesignerViews::Clear() {
    properties_.Show({}, {});
    listed_.clear();
    if (canvas_.Handle()) canvas_.SetForm(nullptr);
}

void DesignerViews::UpdateAdorners() {
    if (!session_.IsOpen()) return;
    const Shapes& shapes = session_.AllShapes();
    if (interaction_.ordersTabs) {
        canvas_.SetAdorners(TabOrderAdorners(shapes, session_.Form().TabOrder(), interaction_.tabsDone,
                                             WindowDpi(environment_.window)));
        return;
    }
    const bool focused = GetFocus() == canvas_.Handle();
    std::vector<Adorner> adorners = SelectionAdorners(shapes, session_.Selected(), focused, canvas_.HandleSize());
    if (interaction_.drag.Under() && interaction_.drag.Moved()) {
        for (const Rect& outline : interaction_.drag.Outlines())
            adorners.push_back({Adorner::Look::outline, outline, {}});
    }
    canvas_.SetAdorners(std::move(adorners));
}

void DesignerViews::UpdateProperties() {
    std::vector<PropertyListWindow::Subject> subjects;
    std::vector<void*> objects;
    const HostForm& form = session_.Picture();
    const auto titleOf = [](const FormControl& control) { return control.Title() + u"  " + control.ClassName(); };
    // The primary first: what the list shows of several is its value.
    for (auto id = session_.Selected().All().rbegin(); id != session_.Selected().All().rend(); ++id) {
        FormControl* control = session_.Find(*id);
        if (!control) continue;
        const auto* sited = dynamic_cast<SitedControl*>(control);
        subjects.push_back({titleOf(*control), ComPtr<IDispatch>(control->Extended()), control->Inner(),
                            ComPtr<IUnknown>(sited ? sited->Object() : nullptr)});
        objects.push_back(control->Extended());
    }
    if (subjects.empty()) {
        subjects.push_back({form.Name() + u"  Form", ComPtr<IDispatch>(form.Automation()), nullptr, nullptr});
        objects.push_back(form.Automation());
    }
    std::vector<Text> titles{form.Name() + u"  Form"};
    for (const ObjectId& id : session_.Form().Controls()) {
        if (const FormControl* control = session_.Find(id)) titles.push_back(titleOf(*control));
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
    environment_.Log(u"Designer: shows " + subjects.front().title);
    properties_.Show(std::move(subjects), std::move(titles));
}

void DesignerViews::UpdateCaption() {
    const Document& form = session_.Form();
    const Text caption = DesignerCaption(session_.Path(), form.File().form.name, form.Dirty(), Text(ProgramTitle()));
    SetWindowTextW(environment_.window, Wide(caption));
}

void DesignerViews::UpdateStatus() {
    if (!session_.IsOpen()) return;
    StatusState state;
    state.armed = toolbox_.Armed();
    state.ordersTabs = interaction_.ordersTabs;
    state.dragging = interaction_.MovesControls();
    if (state.dragging) {
        const std::vector<TwipsRect> all = interaction_.drag.Bounds();
        if (!all.empty()) state.dragged = all.back();
    }
    state.selected = session_.Selected().All().size();
    if (const ObjectId* primary = session_.Selected().Primary()) {
        state.primary = *primary;
        if (const Block* block = session_.Form().Find(*primary)) state.primaryBounds = Document::BoundsOf(*block);
        const FormControl* control = session_.Find(*primary);
        if (control && !control->SaysSize()) state.primaryBounds = control->Bounds();
        if (const auto* broken = dynamic_cast<const BrokenControl*>(control)) state.fault = broken->Reason();
    }
    const HostForm& form = session_.Picture();
    state.formName = form.Name();
    state.form = {0, 0, form.Look().clientWidth, form.Look().clientHeight};
    const StatusTexts texts = StatusOf(state);
    WPARAM part = 0;
    for (const Text* text : {&texts.hint, &texts.place, &texts.size}) {
        SendMessageW(status_, SB_SETTEXTW, part++, reinterpret_cast<LPARAM>(Wide(*text)));
    }
}

// --- Where they are.

Pane DesignerViews::Focused() const {
    const HWND focus = GetFocus();
    const auto has = [&](HWND pane) { return focus == pane || IsChild(pane, focus); };
    // The form's controls are in the canvas, but never have the focus.
    return has(toolbox_.Handle()) ? Pane::toolbox : has(properties_.Handle()) ? Pane::properties : Pane::canvas;
}

KeyTarget DesignerViews::TargetOf(HWND window) const {
    if (window == canvas_.Handle()) return KeyTarget::form;
    return IsChild(properties_.Handle(), window) ? KeyTarget::properties : KeyTarget::other;
}

void DesignerViews::Focus(Pane pane) {
    SetFocus(pane == Pane::toolbox      ? toolbox_.Handle()
             : pane == Pane::properties ? properties_.Handle()
                                        : canvas_.Handle());
}

void DesignerViews::Layout() {
    if (!status_) return;
    SendMessageW(status_, WM_SIZE, 0, 0);
    RECT statusArea{};
    GetWindowRect(status_, &statusArea);
    RECT inside{};
    GetClientRect(environment_.window, &inside);
    const Rect client = FromRECT(inside);
    const int bottom = client.bottom - static_cast<int>(statusArea.bottom - statusArea.top);
    const int left = std::min(Scaled(toolboxWidth, environment_.window), client.Width() / 4);
    const int right = client.right - std::min(Scaled(propertiesWidth, environment_.window), client.Width() / 3);
    const auto place = [](HWND window, const Rect& area) {
        MoveWindow(window, area.left, area.top, std::max(area.Width(), 0), std::max(area.Height(), 0), TRUE);
    };
    place(toolbox_.Handle(), {0, 0, left, bottom});
    place(canvas_.Handle(), {left, 0, right, bottom});
    place(properties_.Handle(), {right, 0, client.right, bottom});
    const int parts[] = {client.right - Scaled(300, environment_.window),
                         client.right - Scaled(180, environment_.window), -1};
    SendMessageW(status_, SB_SETPARTS, 3, reinterpret_cast<LPARAM>(parts));
}

}  // namespace qvx::host::designer
