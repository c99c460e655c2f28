// The form and the blocks of its file: window, controls and menus come out of them, and what has changed goes back.
#include <windows.h>

#include <commctrl.h>

#include "common/run_time_error.h"
#include "host/builtin_window.h"
#include "host/form_font.h"
#include "host/form_storage_win32.h"
#include "host/form_window.h"
#include "host/image_list_object.h"
#include "host/sited_control.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"

namespace qvx::host {

namespace {

constexpr int objectNotSet = 91;
constexpr WORD iconResource = 1;

}  // namespace

void HostForm::Build() {
    if (!SameName(file_.form.className, u"Form")) {
        throw FormFileError(file_.form.lineNumber,
                            u"the file begins with a \"" + file_.form.className + u"\", not with a \"Form\"");
    }
    CheckNames(file_.form);
    static const WindowClass windowClass = {L"QvxHostForm", CS_DBLCLKS};
    keepsClientSize_ = true;
    const Text title = options_.design ? caption_ + u" [design]" : caption_;
    if (!Create(windowClass, Wide(title), WindowStyle(), borderStyle_ == 3 ? WS_EX_DLGMODALFRAME : 0, {0, 0, 100, 100},
                nullptr)) {
        throw FormFileError(0, u"the system refuses a window for the form");
    }
    reporter_.SetOwner(Handle());
    const auto icon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(iconResource));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    backBrush_.Reset(CreateSolidBrush(ResolveColor(backColor_)));
    CreateToolTips();
    BuildControls(file_.form, nullptr);
    menus_.Show(Handle(), ReadMenus(file_.form));
    SetClientSize(clientWidth_, clientHeight_);
    RECT whole{};
    RECT work{};
    GetWindowRect(Handle(), &whole);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(Handle(), nullptr, work.left + (work.right - work.left - (whole.right - whole.left)) / 2,
                 work.top + (work.bottom - work.top - (whole.bottom - whole.top)) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    for (const auto& control : controls_) {
        UpdateToolTip(*control);
        try {
            control->RememberAsLoaded(control->Saved());
        } catch (const RunTimeError&) {
            // It can be shown all the same; whoever saves the form will hear of it.
        }
    }
    loaded_ = Saved();
}

void HostForm::CreateToolTips() {
    toolTips_ =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, Handle(), nullptr, ModuleInstance(), nullptr);
}

std::unique_ptr<FormControl> HostForm::MakeControl(const Block& block, FormControl* parent, bool fresh) {
    if (const auto kind = FindBuiltIn(block.className)) {
        return std::make_unique<BuiltInControl>(*this, block, parent, *kind);
    }
    if (SameName(block.className, u"ImageList")) return std::make_unique<ImageListControl>(*this, block, parent);
    if (block.className.find(u'.') == Text::npos) {
        throw FormFileError(block.lineNumber,
                            u"there is no class \"" + block.className + u"\" (components are called Library.Class)");
    }
    return std::make_unique<SitedControl>(*this, block, parent, fresh);
}

void HostForm::BuildControls(const Block& container, FormControl* parent) {
    for (const Block* block : container.Objects()) {
        if (SameName(block->className, u"Menu")) continue;
        std::unique_ptr<FormControl> made = MakeControl(*block, parent);
        FormControl* control = made.get();
        controls_.push_back(std::move(made));
        const std::vector<const Block*> inner = block->Objects();
        if (inner.empty()) continue;
        if (FindBuiltIn(block->className) != BuiltIn::frame) {
            throw FormFileError(inner.front()->lineNumber, u"only a frame can hold other controls");
        }
        BuildControls(*block, control);
    }
}

void HostForm::UpdateToolTip(const FormControl& control) {
    const HWND window = control.Window();
    if (!toolTips_ || !window) return;
    Text text = control.ToolTip();
    TOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = ParentWindow(control);
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    tool.lpszText = WideBuffer(text);
    SendMessageW(toolTips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (!text.empty()) SendMessageW(toolTips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

Block* HostForm::BlockOf(const FormControl& control) {
    Block* container = control.Container() ? BlockOf(*control.Container()) : &file_.form;
    return container ? control.BlockAmong(container->Objects()) : nullptr;
}

SavedProperties HostForm::Saved() {
    SavedProperties saved;
    saved.Add(u"Caption", caption_);
    saved.Add(u"ClientHeight", std::int32_t{clientHeight_});
    saved.Add(u"ClientWidth", std::int32_t{clientWidth_});
    if (backColor_ != colors::buttonFace) saved.Add(u"BackColor", static_cast<std::int32_t>(backColor_));
    if (foreColor_ != colors::buttonText) saved.Add(u"ForeColor", static_cast<std::int32_t>(foreColor_));
    if (!tag_.empty()) saved.Add(u"Tag", tag_);
    if (borderStyle_ != 2) saved.Add(u"BorderStyle", std::int32_t{borderStyle_});
    if (!minButton_) saved.Add(u"MinButton", false);
    if (!maxButton_) saved.Add(u"MaxButton", false);
    if (!(font_.Value() == DefaultFont())) saved.AddGroup(u"Font", SaveFont(font_.Value()));
    return saved;
}

const std::vector<Text>& HostForm::KnownFormProperties() {
    static const std::vector<Text> known = {u"Caption",    u"ClientHeight", u"ClientWidth", u"ScaleHeight",
                                            u"ScaleWidth", u"BackColor",    u"ForeColor",   u"Tag",
                                            u"Font",       u"BorderStyle",  u"MinButton",   u"MaxButton"};
    return known;
}

void HostForm::Save(const Text& path) {
    // The texts of the labels and fields went with their windows.
    if (!Handle()) throw RunTimeError(objectNotSet, u"the form has closed and cannot be saved any more");
    const MergeMode mode = options_.rewrite ? MergeMode::everything : MergeMode::changes;
    // All are asked before the first block changes: what one of them cannot say must leave the file as it is.
    std::vector<SavedProperties> saved;
    for (const auto& control : controls_) saved.push_back(control->Saved());
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        if (Block* block = BlockOf(*controls_[i])) controls_[i]->SaveToBlock(*block, saved[i], mode);
    }
    SavedProperties own = Saved();
    MergeSaved(file_.form, loaded_, own, KnownFormProperties(), mode);
    // What the blocks say is what is loaded from now on.
    for (std::size_t i = 0; i < controls_.size(); ++i) controls_[i]->RememberAsLoaded(std::move(saved[i]));
    loaded_ = std::move(own);
    ReplaceFileBytes(path, file_.Write());
}

}  // namespace qvx::host
