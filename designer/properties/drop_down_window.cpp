#include "designer/properties/drop_down_window.h"

#include <algorithm>

#include "com/wide_text.h"
#include "designer/properties/rows_view.h"
#include "host/form_font.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/handles.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

const WindowClass boxClass{L"QvxPropertyDropDown", CS_DBLCLKS | CS_SAVEBITS | CS_DROPSHADOW, 32512};

constexpr int contentsId = 1;

Rect WorkAreaAt(const Rect& cell) {
    const RECT area = ToRECT(cell);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&area, MONITOR_DEFAULTTONEAREST), &monitor);
    return FromRECT(monitor.rcWork);
}

class ChoiceBox final : public DropDown {
  public:
    ChoiceBox(std::vector<PropertyChoice> choices, const PropertyValue& current) : choices_(std::move(choices)) {
        for (std::size_t i = 0; i < choices_.size(); ++i)
            if (choices_[i].value == current) chosen_ = static_cast<int>(i);
    }
    ~ChoiceBox() override { Destroy(); }

  protected:
    Size WantedSize(int cellWidth) override {
        constexpr int mostLines = 12;
        const WindowDc dc(nullptr);
        const SharedFont font = AcquireFont(DefaultFont(), WindowDpi(Handle()));
        int width = cellWidth;
        for (const PropertyChoice& choice : choices_)
            width = std::max(width, font->RunWidth(dc.Get(), choice.name) + Scaled(28));
        const int lines = std::min(static_cast<int>(choices_.size()), mostLines);
        return {std::min(width, Scaled(400)), lines * (font->LineHeight() + Scaled(2)) + Scaled(2)};
    }
    void MakeContents() override {
        list_ = AddChild(L"LISTBOX", L"", LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL, ClientArea(), contentsId);
        const SharedFont font = AcquireFont(DefaultFont(), WindowDpi(Handle()));
        SendMessageW(list_, LB_SETITEMHEIGHT, 0, font->LineHeight() + Scaled(2));
        for (const PropertyChoice& choice : choices_)
            SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(choice.name)));
        SendMessageW(list_, LB_SETCURSEL, static_cast<WPARAM>(chosen_), 0);
        Subclass(list_);
    }
    void FocusContents() override { SetFocus(list_); }
    BoxPart PartOf(HWND) const override { return BoxPart::choices; }
    bool Act(BoxPart, BoxAction) override { return Pick(), true; }
    bool OnChildMessage(HWND, UINT message, WPARAM, LPARAM lParam) override {
        if (message == WM_LBUTTONUP) {
            const LRESULT item = SendMessageW(list_, LB_ITEMFROMPOINT, 0, lParam);
            if (HIWORD(item) == 0) Pick();
            return false;
        }
        // The choice under the mouse is selected, as in the system's own boxes.
        if (message == WM_MOUSEMOVE && lParam != lastMouse_) {
            lastMouse_ = lParam;
            const LRESULT item = SendMessageW(list_, LB_ITEMFROMPOINT, 0, lParam);
            if (HIWORD(item) == 0) SendMessageW(list_, LB_SETCURSEL, LOWORD(item), 0);
        }
        return false;
    }

  private:
    void Pick() {
        const LRESULT chosen = SendMessageW(list_, LB_GETCURSEL, 0, 0);
        if (chosen < 0 || static_cast<std::size_t>(chosen) >= choices_.size()) return Close(std::nullopt);
        Close(choices_[static_cast<std::size_t>(chosen)].value);
    }

    std::vector<PropertyChoice> choices_;
    int chosen_ = -1;
    HWND list_ = nullptr;
    LPARAM lastMouse_ = -1;
};

class TextBox final : public DropDown {
  public:
    explicit TextBox(const Text& text) : text_(text) {}
    ~TextBox() override { Destroy(); }
    // The typed text is applied, as it is when a field is left.
    void Dismiss() override { Close(Typed()); }

  protected:
    Size WantedSize(int cellWidth) override { return {std::max(cellWidth, Scaled(260)), Scaled(110)}; }
    void MakeContents() override {
        edit_ = AddChild(L"EDIT", L"", ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | WS_VSCROLL, ClientArea(),
                         contentsId);
        SendMessageW(edit_, EM_SETLIMITTEXT, 0, 0);
        // The field only breaks lines at CR LF.
        Text lines;
        for (std::size_t i = 0; i < text_.size(); ++i) {
            if (text_[i] == u'\n' && (i == 0 || text_[i - 1] != u'\r')) lines += u'\r';
            lines += text_[i];
            if (text_[i] == u'\r' && (i + 1 == text_.size() || text_[i + 1] != u'\n')) lines += u'\n';
        }
        SetWindowTextW(edit_, Wide(lines));
        SendMessageW(edit_, EM_SETMODIFY, FALSE, 0);
        Subclass(edit_);
    }
    void FocusContents() override {
        SetFocus(edit_);
        SendMessageW(edit_, EM_SETSEL, 0, -1);
    }
    BoxPart PartOf(HWND) const override { return BoxPart::text; }
    bool Act(BoxPart, BoxAction) override { return Close(Typed()), true; }
    bool OnChildMessage(HWND, UINT message, WPARAM wParam, LPARAM) override {
        // The character of the key that has closed the box.
        return message == WM_CHAR && wParam == L'\n' && IsKeyDown(VK_CONTROL);
    }

  private:
    // Nothing for a text that was not changed, so that its line breaks stay as they are.
    std::optional<PropertyValue> Typed() const {
        if (!SendMessageW(edit_, EM_GETMODIFY, 0, 0)) return std::nullopt;
        return WindowText(edit_);
    }

    Text text_;
    HWND edit_ = nullptr;
};

}  // namespace

class DropDown::ChildSubclass final : public WindowSubclass {
  public:
    explicit ChildSubclass(DropDown& box) : box_(box) {}

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_GETDLGCODE) return Default(message, wParam, lParam) | DLGC_WANTALLKEYS;
        const LifeWatch alive = Watch();
        const bool key = message == WM_KEYDOWN || message == WM_SYSKEYDOWN;
        const bool done = key ? box_.OnKey(Handle(), PressedKey(message, wParam))
                              : box_.OnChildMessage(Handle(), message, wParam, lParam);
        if (done || !alive.Alive() || !Handle()) return 0;
        return Default(message, wParam, lParam);
    }

  private:
    DropDown& box_;
};

ListKey PressedKey(UINT message, WPARAM key) { return {static_cast<int>(key), ShiftState(), message == WM_SYSKEYDOWN}; }

DropDown::DropDown() = default;
DropDown::~DropDown() = default;

int DropDown::Scaled(int pixels) const { return qvx::Scaled(pixels, Handle()); }

HWND DropDown::AddChild(const wchar_t* className, const wchar_t* title, DWORD style, const Rect& area, int id) {
    const HWND child = CreateWindowExW(0, className, title, WS_CHILD | WS_VISIBLE | style, area.left, area.top,
                                       area.Width(), area.Height(), Handle(),
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ModuleInstance(), nullptr);
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    return child;
}

void DropDown::Subclass(HWND child) {
    subclasses_.push_back(std::make_unique<ChildSubclass>(*this));
    subclasses_.back()->Attach(child);
}

bool DropDown::OnKey(HWND window, const ListKey& key) {
    const BoxPart part = PartOf(window);
    const BoxAction action = BoxActionOf(part, key);
    if (action == BoxAction::none) return false;
    if (action != BoxAction::close) return Act(part, action);
    Close(std::nullopt);
    return true;
}

bool DropDown::Open(HWND owner, const Rect& cell, Closed closed) {
    root_ = GetAncestor(owner, GA_ROOT);
    if (!Create(boxClass, L"", WS_POPUP | WS_BORDER | WS_CLIPCHILDREN, WS_EX_TOOLWINDOW, cell, root_)) return false;
    font_ = AcquireFont(DefaultFont(), WindowDpi(Handle()));
    constexpr int border = 2;
    const Size wanted = WantedSize(cell.Width() - border);
    const Rect place = PlaceBelow(cell, {wanted.width + border, wanted.height + border}, WorkAreaAt(cell));
    SetWindowPos(Handle(), HWND_TOP, place.left, place.top, place.Width(), place.Height(), SWP_NOACTIVATE);
    MakeContents();
    closed_ = std::move(closed);
    SetWindowPos(Handle(), nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    SetActiveWindow(Handle());
    FocusContents();
    return true;
}

void DropDown::Close(std::optional<PropertyValue> picked) {
    if (!closed_) return;
    const Closed closed = std::exchange(closed_, nullptr);
    // The owner is activated first; otherwise the system activates the next window, whichever it is.
    if (GetActiveWindow() == Handle()) SetActiveWindow(root_);
    ShowWindow(Handle(), SW_HIDE);
    closed(std::move(picked));
}

LRESULT DropDown::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_ACTIVATE:
            // The box is a part of its owner, which still looks like the active window.
            if (LOWORD(wParam) != WA_INACTIVE) {
                SendMessageW(root_, WM_NCACTIVATE, TRUE, 0);
            } else {
                Dismiss();
                return 0;
            }
            break;
        case WM_CLOSE:
            Close(std::nullopt);
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

std::unique_ptr<DropDown> MakeChoiceBox(std::vector<PropertyChoice> choices, const PropertyValue& current) {
    return std::make_unique<ChoiceBox>(std::move(choices), current);
}

std::unique_ptr<DropDown> MakeTextBox(const Text& current) { return std::make_unique<TextBox>(current); }

}  // namespace qvx::host::designer
