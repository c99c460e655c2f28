#include "controls/grid/editor_frame_window.h"

#include <algorithm>
#include <string>

#include "common/number_text.h"
#include "common/run_time_error.h"

namespace qvx::grid {
namespace {

const WindowClass frameClass{L"QvxEditorFrame"};
constexpr UINT_PTR watchTimer = 1;
constexpr int elementMissing = 340;
constexpr int alreadyLoaded = 360;

}  // namespace

EditorFrame::~EditorFrame() {
    elements_.clear();
    Destroy();
}

void EditorFrame::CreateIn(HWND parent) {
    if (!Create(frameClass, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, {}, parent))
        throw RunTimeError(errors::outOfMemory, u"Out of memory");
}

void EditorFrame::Load(int index) {
    if (elements_.contains(index)) throw RunTimeError(alreadyLoaded, u"Object already loaded");
    Element element;
    element.combo = std::make_unique<ComboWindow>(Handle(), &listener_);
    element.automation = std::make_unique<ComboAutomation>(*element.combo);
    element.combo->SetVisible(true);
    elements_.emplace(index, std::move(element));
}

void EditorFrame::Unload(int index) { elements_.erase(index); }

bool EditorFrame::CanRenumber(int from, int to) const {
    return std::none_of(elements_.begin(), elements_.end(), [&](const auto& element) {
        return element.first != freeTextEditor && flexgrid::AfterMove(element.first, from, to) == freeTextEditor;
    });
}

ComboWindow* EditorFrame::Find(int index) {
    const auto found = elements_.find(index);
    return found == elements_.end() ? nullptr : found->second.combo.get();
}

IDispatch* EditorFrame::ObjectOf(int index) {
    const auto found = elements_.find(index);
    if (found == elements_.end())
        throw RunTimeError(elementMissing, u"Control array element '" + IntegerToText(index) + u"' doesn't exist");
    return found->second.automation->Get();
}

std::vector<int> EditorFrame::Loaded() const {
    std::vector<int> indexes;
    for (const auto& [index, element] : elements_) indexes.push_back(index);
    return indexes;
}

int EditorFrame::IndexOf(const ComboWindow& combo) const {
    for (const auto& [index, element] : elements_)
        if (element.combo.get() == &combo) return index;
    return -1;
}

void EditorFrame::MoveTo(const Rect& bounds) {
    SetWindowPos(Handle(), HWND_TOP, bounds.left, bounds.top, bounds.Width(), bounds.Height(),
                 SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void EditorFrame::Show(bool shown) { ShowWindow(Handle(), shown ? SW_SHOWNA : SW_HIDE); }

void EditorFrame::Paint() {
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void EditorFrame::Watch(std::function<void()> look) {
    constexpr UINT interval = 100;  // milliseconds
    look_ = std::move(look);
    if (look_)
        SetTimer(Handle(), watchTimer, interval, nullptr);
    else
        KillTimer(Handle(), watchTimer);
}

bool EditorFrame::Shown() const {
    return Handle() && (GetWindowLongW(Handle(), GWL_STYLE) & static_cast<LONG>(WS_VISIBLE)) != 0;
}

LRESULT EditorFrame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && lParam != 0) {
        for (auto& [index, element] : elements_) {
            if (element.combo->Window() == reinterpret_cast<HWND>(lParam)) {
                element.combo->OnCommand(HIWORD(wParam));
                return 0;
            }
        }
        return 0;
    }
    if (message == WM_TIMER && look_) {
        const std::function<void()> look = look_;
        look();
        return 0;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::grid
