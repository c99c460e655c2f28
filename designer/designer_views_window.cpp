// What the designer shows of the document: the adorners on the form, the property list, the caption, the status line
// and the menus.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "com/module.h"
#include "com/wide_text.h"
#include "common/number_text.h"
#include "designer/designer_window.h"
#include "host/design_box_window.h"
#include "host/sited_control.h"
#include "win/dpi.h"

namespace qvx::host::designer {

namespace {

constexpr int toolboxWidth = 136;  // pixels at 96 dots per inch
constexpr int propertiesWidth = 280;

}  // namespace

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
    UpdateAdorners();
    UpdateProperties();
    UpdateCaption();
    UpdateStatus();
    UpdateMenus();
}

void DesignerWindow::UpdateAdorners() {
    if (!form_) return;
    if (tabOrderView_) {
        canvas_.SetAdorners(TabOrderAdorners(shapes_, document_->TabOrder(), tabOrderDone_, WindowDpi(Handle())));
        return;
    }
    const bool focused = GetFocus() == canvas_.Handle();
    std::vector<Adorner> adorners = SelectionAdorners(shapes_, selection_, focused, canvas_.HandleSize());
    if (drag_.Under() && drag_.Moved()) {
        for (const Rect& outline : drag_.Outlines()) adorners.push_back({Adorner::Look::outline, outline, {}});
    }
    canvas_.SetAdorners(std::move(adorners));
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
    if (const Text armed = toolbox_.Armed(); !armed.empty()) {
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
    const int left = std::min(Scaled(toolboxWidth, Handle()), client.Width() / 4);
    const int right = client.right - std::min(Scaled(propertiesWidth, Handle()), client.Width() / 3);
    const auto place = [](HWND window, const Rect& area) {
        MoveWindow(window, area.left, area.top, std::max(area.Width(), 0), std::max(area.Height(), 0), TRUE);
    };
    place(toolbox_.Handle(), {0, 0, left, bottom});
    place(canvas_.Handle(), {left, 0, right, bottom});
    place(properties_.Handle(), {right, 0, client.right, bottom});
    const int parts[] = {client.right - Scaled(300, Handle()), client.right - Scaled(180, Handle()), -1};
    SendMessageW(status_, SB_SETPARTS, 3, reinterpret_cast<LPARAM>(parts));
}

}  // namespace qvx::host::designer
