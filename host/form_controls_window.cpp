#include "host/form_controls_window.h"

#include <commctrl.h>

#include <algorithm>
#include <limits>
#include <map>

#include "com/guard.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/builtin_window.h"
#include "host/design_box_window.h"
#include "host/form_window.h"
#include "host/image_list_object.h"
#include "host/sited_control.h"
#include "win/module_instance.h"

namespace qvx::host {

void FormControls::Clear() {
    // Later ones first, so that a frame outlives the controls in it.
    while (!controls_.empty()) controls_.pop_back();
}

// --- Making them.

void FormControls::Build() {
    toolTips_ =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, form_.Handle(), nullptr, ModuleInstance(), nullptr);
    BuildIn(file_.form, nullptr);
}

void FormControls::BuildIn(const Block& container, FormControl* parent) {
    for (const Block* block : container.Objects()) {
        if (SameName(block->className, u"Menu")) continue;
        controls_.push_back(Make(*block, parent));
        FormControl* control = controls_.back().get();
        const std::vector<const Block*> inner = block->Objects();
        if (inner.empty()) continue;
        if (FindBuiltIn(block->className) != BuiltIn::frame) {
            throw FormFileError(inner.front()->lineNumber, u"only a frame can hold other controls");
        }
        BuildIn(*block, control);
    }
}

std::unique_ptr<FormControl> FormControls::Make(const Block& block, FormControl* parent, bool fresh) {
    if (const auto kind = FindBuiltIn(block.className)) {
        return std::make_unique<BuiltInControl>(form_, block, parent, *kind);
    }
    if (SameName(block.className, u"ImageList")) return std::make_unique<ImageListControl>(form_, block, parent);
    if (block.className.find(u'.') == Text::npos) {
        throw FormFileError(block.lineNumber,
                            u"there is no class \"" + block.className + u"\" (components are called Library.Class)");
    }
    return std::make_unique<SitedControl>(form_, block, parent, fresh);
}

std::unique_ptr<FormControl> FormControls::MakeOrBox(const Block& block, FormControl* parent, bool fresh) {
    Text reason;
    try {
        return Make(block, parent, fresh);
    } catch (const FormFileError& error) {
        reason = error.Message();
    } catch (...) {
        reason = FailureInFlightText();
    }
    reporter_.Note(block.name + u": " + reason);
    return std::make_unique<BrokenControl>(form_, block, parent, reason);
}

FormControl& FormControls::Add(Block& block, FormControl* parent, bool fresh) {
    controls_.push_back(MakeOrBox(block, parent, fresh));
    FormControl& control = *controls_.back();
    try {
        SavedProperties saved = control.Saved();
        // The file gets what a new control is by itself.
        if (fresh) control.SaveToBlock(block, saved, MergeMode::changes);
        control.RememberAsLoaded(std::move(saved));
    } catch (const RunTimeError&) {
        // The control is shown all the same; saving the form reports it.
    }
    control.RememberBlock(block);
    return control;
}

void FormControls::Follow(const std::function<bool(const Block&)>& fresh) {
    std::vector<std::unique_ptr<FormControl>> before = std::move(controls_);
    controls_.clear();
    std::vector<const FormControl*> formerOrder;
    std::multimap<Text, std::unique_ptr<FormControl>*> byName;
    for (auto& control : before) {
        formerOrder.push_back(control.get());
        byName.emplace(FoldedText(control->Name()), &control);
    }
    const auto takeFormer = [&](const Block& block, FormControl* parent) -> FormControl* {
        const auto [first, last] = byName.equal_range(FoldedText(block.name));
        for (auto at = first; at != last; ++at) {
            std::unique_ptr<FormControl>& former = *at->second;
            if (!former || former->Container() != parent || !former->Shows(block)) continue;
            // A control of a fixed size does not take every place, so that its block has to follow.
            if (!former->FollowBlock(block) && form_.Designer()) form_.Designer()->OnChanged(former.get());
            controls_.push_back(std::move(former));
            return controls_.back().get();
        }
        return nullptr;
    };
    bool same = true;
    const auto walk = [&](const auto& self, Block& container, FormControl* parent) -> void {
        for (Block* block : container.Objects()) {
            if (SameName(block->className, u"Menu")) continue;
            FormControl* control = takeFormer(*block, parent);
            if (!control) control = &Add(*block, parent, fresh && fresh(*block));
            same = same && controls_.size() <= formerOrder.size() && formerOrder[controls_.size() - 1] == control;
            if (FindBuiltIn(block->className) == BuiltIn::frame) self(self, *block, control);
        }
    };
    walk(walk, file_.form, nullptr);
    // Later ones first, so that a frame outlives the controls in it.
    while (!before.empty()) before.pop_back();
    if (!same || controls_.size() != formerOrder.size()) Restack();
}

void FormControls::Restack() const {
    // The first in a container is in front.
    std::map<const FormControl*, HWND> last;
    for (const auto& control : controls_) {
        const HWND window = control->Window();
        if (!window) continue;
        HWND& before = last[control->Container()];
        // Each move makes the system compare the window with all its siblings.
        const bool inPlace = GetWindow(window, GW_HWNDPREV) == before;
        if (!inPlace) {
            SetWindowPos(window, before ? before : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        }
        before = window;
    }
}

// --- Finding them.

FormControl* FormControls::Find(TextView name, int index) const {
    for (const auto& control : controls_) {
        if (SameName(control->Name(), name) && (index < 0 || control->Index() == index)) return control.get();
    }
    return nullptr;
}

FormControl* FormControls::Of(HWND window) const {
    for (; window && window != form_.Handle(); window = GetParent(window)) {
        for (const auto& control : controls_) {
            if (control->Window() == window) return control.get();
        }
    }
    return nullptr;
}

int FormControls::NextTabIndex() const {
    int highest = -1;
    for (const auto& control : controls_) highest = std::max(highest, control->TabIndex());
    return highest < std::numeric_limits<int>::max() ? highest + 1 : highest;
}

// --- Back into the blocks.

Block* FormControls::BlockOf(const FormControl& control) const {
    Block* container = control.Container() ? BlockOf(*control.Container()) : &file_.form;
    return container ? control.BlockAmong(container->Objects()) : nullptr;
}

void FormControls::RememberAsLoaded() const {
    for (const auto& control : controls_) {
        try {
            control->RememberAsLoaded(control->Saved());
        } catch (const RunTimeError&) {
            // The control is shown all the same; saving the form reports it.
        }
    }
}

void FormControls::Capture(FormControl& control, MergeMode mode) const {
    Block* block = BlockOf(control);
    if (!block) return;
    SavedProperties saved = control.Saved();
    control.SaveToBlock(*block, saved, mode);
    control.RememberAsLoaded(std::move(saved));
    control.RememberBlock(*block);
}

void FormControls::CaptureAll(MergeMode mode) const {
    std::vector<SavedProperties> saved;
    for (const auto& control : controls_) saved.push_back(control->Saved());
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        if (Block* block = BlockOf(*controls_[i])) controls_[i]->SaveToBlock(*block, saved[i], mode);
    }
    // From now on, the controls are as their blocks say.
    for (std::size_t i = 0; i < controls_.size(); ++i) controls_[i]->RememberAsLoaded(std::move(saved[i]));
}

// --- What changes around them.

void FormControls::AmbientChanged(DISPID property) const {
    for (const auto& control : controls_) control->OnAmbientChanged(property);
}

void FormControls::FollowResolution() const {
    for (const auto& control : controls_) control->FollowResolution();
}

void FormControls::UpdateToolTip(const FormControl& control) const {
    const HWND window = control.Window();
    if (!toolTips_ || !window) return;
    Text text = control.ToolTip();
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = form_.ParentWindow(control);
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    tool.lpszText = WideBuffer(text);
    SendMessageW(toolTips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (!text.empty()) SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace qvx::host
