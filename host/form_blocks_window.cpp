// The form and the blocks of its file: window, controls and menus come out of them, and what has changed goes back.
#include <windows.h>

#include <commctrl.h>

#include "common/run_time_error.h"
#include "host/builtin_window.h"
#include "host/form_font.h"
#include "host/form_window.h"
#include "host/image_list_object.h"
#include "host/sited_control.h"
#include "win/gdi_surface.h"
#include "win/module.h"

namespace qvx::host {

namespace {

constexpr int pathAccessError = 75;
constexpr int objectNotSet = 91;
constexpr WORD iconResource = 1;

}  // namespace

void HostForm::Build() {
    if (!SameName(file_.form.className, u"Form")) {
        throw FormFileError(file_.form.lineNumber,
                            u"the file begins with a \"" + file_.form.className + u"\", not with a \"Form\"");
    }
    CheckNames(file_.form);
    const int borderStyle = file_.form.IntOf(u"BorderStyle", 2);  // 0 none, 1 fixed, 2 sizable, 3 fixed dialog
    DWORD style = WS_CLIPCHILDREN | (borderStyle == 0 ? WS_POPUP : WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU);
    if (borderStyle == 2) style |= WS_THICKFRAME;
    if (borderStyle == 1 || borderStyle == 2) {
        if (file_.form.BoolOf(u"MinButton", true)) style |= WS_MINIMIZEBOX;
        if (file_.form.BoolOf(u"MaxButton", true)) style |= WS_MAXIMIZEBOX;
    }
    static const WindowClass windowClass = {L"QvxHostForm", CS_DBLCLKS};
    keepsClientSize_ = true;
    const Text title = options_.design ? caption_ + u" [design]" : caption_;
    if (!Create(windowClass, Wide(title), style, borderStyle == 3 ? WS_EX_DLGMODALFRAME : 0, {0, 0, 100, 100},
                nullptr)) {
        throw FormFileError(0, u"the system refuses a window for the form");
    }
    reporter_.SetOwner(Handle());
    const auto icon = LoadIconW(ModuleInstance(), MAKEINTRESOURCEW(iconResource));
    SendMessageW(Handle(), WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
    SendMessageW(Handle(), WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    backBrush_.Reset(CreateSolidBrush(ResolveColor(backColor_)));
    toolTips_ =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, Handle(), nullptr, ModuleInstance(), nullptr);
    BuildControls(file_.form, nullptr);
    if (options_.design) {
        BuildDesignMenu();
    } else {
        menus_.Show(Handle(), ReadMenus(file_.form));
    }
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

std::unique_ptr<FormControl> HostForm::MakeControl(Block& block, FormControl* parent) {
    if (const auto kind = FindBuiltIn(block.className)) {
        return std::make_unique<BuiltInControl>(*this, block, parent, *kind);
    }
    if (SameName(block.className, u"ImageList")) return std::make_unique<ImageListControl>(*this, block, parent);
    if (block.className.find(u'.') == Text::npos) {
        throw FormFileError(block.lineNumber,
                            u"there is no class \"" + block.className + u"\" (components are called Library.Class)");
    }
    return std::make_unique<SitedControl>(*this, block, parent);
}

void HostForm::BuildControls(Block& container, FormControl* parent) {
    for (Block* block : container.Objects()) {
        if (SameName(block->className, u"Menu")) continue;
        std::unique_ptr<FormControl> made = MakeControl(*block, parent);
        FormControl* control = made.get();
        controls_.push_back(std::move(made));
        const std::vector<Block*> inner = block->Objects();
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

SavedProperties HostForm::Saved() {
    SavedProperties saved;
    saved.Add(u"Caption", caption_);
    saved.Add(u"ClientHeight", std::int32_t{clientHeight_});
    saved.Add(u"ClientWidth", std::int32_t{clientWidth_});
    if (backColor_ != colors::buttonFace) saved.Add(u"BackColor", static_cast<std::int32_t>(backColor_));
    if (foreColor_ != colors::buttonText) saved.Add(u"ForeColor", static_cast<std::int32_t>(foreColor_));
    if (!tag_.empty()) saved.Add(u"Tag", tag_);
    if (!(font_.Value() == DefaultFont())) saved.AddGroup(u"Font", SaveFont(font_.Value()));
    return saved;
}

void HostForm::Save(const Text& path) {
    // The texts of the labels and fields went with their windows.
    if (!Handle()) throw RunTimeError(objectNotSet, u"the form has closed and cannot be saved any more");
    const MergeMode mode = options_.rewrite ? MergeMode::everything : MergeMode::changes;
    // All are asked before the first block changes: what one of them cannot say must leave the file as it is.
    std::vector<SavedProperties> saved;
    for (const auto& control : controls_) saved.push_back(control->Saved());
    for (std::size_t i = 0; i < controls_.size(); ++i) controls_[i]->SaveToBlock(saved[i], mode);
    SavedProperties own = Saved();
    MergeSaved(file_.form, loaded_, own,
               {u"Caption", u"ClientHeight", u"ClientWidth", u"ScaleHeight", u"ScaleWidth", u"BackColor", u"ForeColor",
                u"Tag", u"Font"},
               mode);
    // What the blocks say is what is loaded from now on.
    for (std::size_t i = 0; i < controls_.size(); ++i) controls_[i]->RememberAsLoaded(std::move(saved[i]));
    loaded_ = std::move(own);
    const std::string bytes = file_.Write();
    // Beside the target first: a full disk must not cost the form that is there.
    const Text beside = path + u".new";
    const HANDLE handle =
        CreateFileW(Wide(beside), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    bool written = handle != INVALID_HANDLE_VALUE;
    if (written) {
        const UniqueKernelObject owner(handle);
        DWORD count = 0;
        written =
            WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) && count == bytes.size();
    }
    if (written) written = MoveFileExW(Wide(beside), Wide(path), MOVEFILE_REPLACE_EXISTING) != FALSE;
    if (!written) {
        DeleteFileW(Wide(beside));
        throw RunTimeError(pathAccessError, u"cannot write \"" + path + u"\"");
    }
}

}  // namespace qvx::host
