// A form under design: a picture of the form inside the designer's window, whose controls follow the blocks of the file
// and whose changes go back into them.
#include <algorithm>
#include <map>

#include "com/guard.h"
#include "common/flag_scope.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "host/builtin_window.h"
#include "host/design_box_window.h"
#include "host/form_font.h"
#include "host/form_window.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

#include <olectl.h>

namespace qvx::host {

namespace {

constexpr int gridStep = 120;  // twips

// What a form file keeps of menus, as one text.
Text MenuText(const Block& block) {
    Text text;
    for (const Block* inner : block.Objects()) {
        if (!SameName(inner->className, u"Menu")) continue;
        text += FormControl::LookOf(*inner) + u"\n" + MenuText(*inner) + u"\n";
    }
    return text;
}

UniqueFont MenuFont(Dpi dpi) {
    const NONCLIENTMETRICSW metrics = FrameMetrics(dpi);
    return UniqueFont(CreateFontIndirectW(&metrics.lfMenuFont));
}

// A form in the designer is a window inside another one; it keeps the frame it will have.
DWORD AsChild(DWORD style) {
    constexpr DWORD popup = WS_POPUP;
    return (style & ~popup) | WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
}

}  // namespace

void HostForm::NoteChange(FormControl* control) {
    if (designer_ && !quiet_) designer_->OnChanged(control);
}

void HostForm::BuildForDesign(HWND parent) {
    const FlagScope quiet(quiet_);
    keepsClientSize_ = true;
    static const WindowClass windowClass = {L"QvxDesignedForm", CS_DBLCLKS};
    if (!Create(windowClass, Wide(caption_), AsChild(WindowStyle()), borderStyle_ == 3 ? WS_EX_DLGMODALFRAME : 0,
                {0, 0, 100, 100}, parent)) {
        throw RunTimeError(errors::outOfMemory, u"the system refuses a window for the form");
    }
    FollowBlocks();
    // As the active window it will be.
    SendMessageW(Handle(), WM_NCACTIVATE, TRUE, 0);
}

void HostForm::FollowForm() {
    const Text menus = MenuText(file_.form);
    const bool otherMenus = menus != menuLook_;
    Text look = FormControl::LookOf(file_.form);
    if (look == look_ && !otherMenus) return;
    menuLook_ = menus;
    look_ = std::move(look);
    ReadLook();
    menus_.Show(nullptr, ReadMenus(file_.form));
    menuStrip_ = MenuStripSize();
    SetWindowTextW(Handle(), Wide(caption_));
    ApplyFrame();
    SetBackColor(backColor_);
    SetForeColor(foreColor_);
    AmbientChanged(DISPID_AMBIENT_FONT);
    SetClientSize(clientWidth_, clientHeight_);
    loaded_ = Saved();
    RedrawWindow(Handle(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE);
}

int HostForm::MenuStripSize() const { return menus_.Items().empty() ? 0 : SystemMetric(SM_CYMENU, FormDpi()); }

void HostForm::ApplyFrame() {
    SetWindowLongPtrW(
        Handle(), GWL_STYLE,
        static_cast<LONG_PTR>(AsChild(WindowStyle()) | (GetWindowLongPtrW(Handle(), GWL_STYLE) & WS_VISIBLE)));
    SetWindowLongPtrW(Handle(), GWL_EXSTYLE, borderStyle_ == 3 ? WS_EX_DLGMODALFRAME : 0);
    SetWindowPos(Handle(), nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
}

std::unique_ptr<FormControl> HostForm::MakeControlOrBox(const Block& block, FormControl* parent, bool fresh) {
    Text reason;
    try {
        return MakeControl(block, parent, fresh);
    } catch (const FormFileError& error) {
        reason = error.Message();
    } catch (...) {
        reason = FailureInFlightText();
    }
    reporter_.Note(block.name + u": " + reason);
    return std::make_unique<BrokenControl>(*this, block, parent, reason);
}

void HostForm::FollowBlocks(const std::function<bool(const Block&)>& fresh) {
    const FlagScope quiet(quiet_);
    FollowForm();
    std::vector<std::unique_ptr<FormControl>> before = std::move(controls_);
    controls_.clear();
    std::vector<const FormControl*> formerOrder;
    std::multimap<Text, std::unique_ptr<FormControl>*> byName;
    for (auto& control : before) {
        formerOrder.push_back(control.get());
        byName.emplace(FoldedText(control->Name()), &control);
    }
    bool same = true;
    const auto walk = [&](const auto& self, Block& container, FormControl* parent) -> void {
        for (Block* block : container.Objects()) {
            if (SameName(block->className, u"Menu")) continue;
            FormControl* control = nullptr;
            const auto [first, last] = byName.equal_range(FoldedText(block->name));
            for (auto at = first; at != last && !control; ++at) {
                std::unique_ptr<FormControl>& candidate = *at->second;
                if (!candidate || candidate->Container() != parent || !candidate->Shows(*block)) continue;
                control = candidate.get();
                // A control of a fixed size does not take every place: the block is to say the one it has.
                if (!control->FollowBlock(*block) && designer_) designer_->OnChanged(control);
                controls_.push_back(std::move(candidate));
            }
            if (!control) {
                const bool isFresh = fresh && fresh(*block);
                controls_.push_back(MakeControlOrBox(*block, parent, isFresh));
                control = controls_.back().get();
                try {
                    SavedProperties saved = control->Saved();
                    // What a new control is by itself belongs into the file.
                    if (isFresh) control->SaveToBlock(*block, saved, MergeMode::changes);
                    control->RememberAsLoaded(std::move(saved));
                } catch (const RunTimeError&) {
                    // It can be shown all the same; whoever saves the form will hear of it.
                }
                control->RememberBlock(*block);
            }
            same = same && controls_.size() <= formerOrder.size() && formerOrder[controls_.size() - 1] == control;
            if (FindBuiltIn(block->className) == BuiltIn::frame) self(self, *block, control);
        }
    };
    walk(walk, file_.form, nullptr);
    // Later ones first: what stands in a frame goes before the frame.
    while (!before.empty()) before.pop_back();
    if (same && controls_.size() == formerOrder.size()) return;
    // The first in a container lies in front.
    std::map<const FormControl*, HWND> last;
    for (const auto& control : controls_) {
        const HWND window = control->Window();
        if (!window) continue;
        HWND& behind = last[control->Container()];
        SetWindowPos(window, behind ? behind : HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        behind = window;
    }
}

void HostForm::Capture(FormControl* control, MergeMode mode) {
    if (control) {
        Block* block = BlockOf(*control);
        if (!block) return;
        SavedProperties saved = control->Saved();
        control->SaveToBlock(*block, saved, mode);
        control->RememberAsLoaded(std::move(saved));
        control->RememberBlock(*block);
        return;
    }
    SavedProperties saved = Saved();
    MergeSaved(file_.form, loaded_, saved, KnownFormProperties(), mode);
    loaded_ = std::move(saved);
    look_ = FormControl::LookOf(file_.form);
}

void HostForm::SetFrame(int borderStyle, bool minButton, bool maxButton) {
    if (borderStyle < 0 || borderStyle > 3) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    borderStyle_ = borderStyle;
    minButton_ = minButton;
    maxButton_ = maxButton;
    ApplyFrame();
    SetClientSize(clientWidth_, clientHeight_);
    NoteChange(nullptr);
}

std::optional<std::size_t> HostForm::MenuAt(Point point) const {
    for (std::size_t i = 0; i < menuAreas_.size(); ++i) {
        if (menuAreas_[i].Offset(0, -menuStrip_).Contains(point)) return i;
    }
    return std::nullopt;
}

void HostForm::PaintMenuStrip() {
    menuAreas_.clear();
    if (menuStrip_ == 0) return;
    const HDC dc = GetWindowDC(Handle());
    {
        const SavedDc saved(dc);
        RECT whole{};
        GetWindowRect(Handle(), &whole);
        POINT inside{0, 0};
        ClientToScreen(Handle(), &inside);
        const int left = static_cast<int>(inside.x - whole.left);
        const int top = static_cast<int>(inside.y - whole.top) - menuStrip_;
        RECT strip{left, top, left + ClientArea().Width(), top + menuStrip_};
        FillRect(dc, &strip, GetSysColorBrush(COLOR_MENU));
        const UniqueFont font = MenuFont(FormDpi());
        const SelectedObject selected(dc, font.Get());
        SetBkMode(dc, TRANSPARENT);
        int x = left;
        const int margin = SystemMetric(SM_CXSMICON, FormDpi()) / 2;
        for (const MenuItem& item : menus_.Items()) {
            RECT text{};
            DrawTextW(dc, Wide(item.caption), -1, &text, DT_SINGLELINE | DT_CALCRECT);
            const int width = static_cast<int>(text.right) + 2 * margin;
            RECT area{x, top, x + width, top + menuStrip_};
            SetTextColor(dc, GetSysColor(item.enabled && item.visible ? COLOR_MENUTEXT : COLOR_GRAYTEXT));
            DrawTextW(dc, Wide(item.caption), -1, &area, DT_SINGLELINE | DT_CENTER | DT_VCENTER);
            menuAreas_.push_back({x - left, 0, x - left + width, menuStrip_});
            x += width;
        }
    }
    ReleaseDC(Handle(), dc);
}

void HostForm::FillDesignBackground(HDC dc) {
    if (!gridBrush_) {
        const Dpi dpi = FormDpi();
        const int across = std::max(TwipsToPixels(gridStep, dpi.x), 2);
        const int down = std::max(TwipsToPixels(gridStep, dpi.y), 2);
        const UniqueMemoryDc memory(CreateCompatibleDC(dc));
        const UniqueBitmap bitmap(CreateCompatibleBitmap(dc, across, down));
        const SelectedObject selected(memory.Get(), bitmap.Get());
        const RECT cell{0, 0, across, down};
        FillRect(memory.Get(), &cell, backBrush_.Get());
        const COLORREF back = ResolveColor(backColor_);
        const bool dark = GetRValue(back) + GetGValue(back) + GetBValue(back) < 3 * 96;
        SetPixel(memory.Get(), 0, 0, dark ? RGB(0xA0, 0xA0, 0xA0) : RGB(0x60, 0x60, 0x60));
        gridBrush_.Reset(CreatePatternBrush(bitmap.Get()));
    }
    const Rect area = ClientArea();
    const RECT rect = {area.left, area.top, area.right, area.bottom};
    SetBrushOrgEx(dc, 0, 0, nullptr);
    FillRect(dc, &rect, gridBrush_.Get());
}

LRESULT HostForm::OnDesignMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NCHITTEST:
            // The designer's canvas below it takes the mouse.
            return HTTRANSPARENT;
        case WM_NCCALCSIZE: {
            const LRESULT result = Default(message, wParam, lParam);
            auto* inside = reinterpret_cast<RECT*>(lParam);
            inside->top = std::min(inside->top + menuStrip_, inside->bottom);
            return result;
        }
        case WM_NCPAINT:
        case WM_NCACTIVATE: {
            const LRESULT result = Default(message, message == WM_NCACTIVATE ? TRUE : wParam, lParam);
            PaintMenuStrip();
            return result;
        }
        case WM_SETTEXT: {
            const LRESULT result = Default(message, wParam, lParam);
            PaintMenuStrip();
            return result;
        }
        case WM_ERASEBKGND:
            FillDesignBackground(reinterpret_cast<HDC>(wParam));
            return 1;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORBTN:
            return OnColor(message, wParam, lParam);
        case WM_SYSCOLORCHANGE: {
            const FlagScope quiet(quiet_);
            SetBackColor(backColor_);
            return Default(message, wParam, lParam);
        }
        case WM_DPICHANGED_AFTERPARENT:
            FollowResolution();
            if (designer_) designer_->OnResolution();
            return 0;
        case WM_COMMAND:
        case WM_CLOSE:
        case WM_SYSCOMMAND:
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host
