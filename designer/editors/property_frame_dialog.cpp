#include "designer/editors/property_frame_dialog.h"

#include <commctrl.h>
#include <olectl.h>

#include <algorithm>

#include "com/guard.h"
#include "com/object.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "designer/editors/page_keys.h"
#include "host/report_dialog.h"
#include "win/dpi.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

constexpr int tabs = 100;

// Pixels at 96 dots per inch.
constexpr int margin = 12;
constexpr int tabsHeight = 24;
constexpr int buttonsHeight = 44;
constexpr Size smallestPage{260, 80};
constexpr int largestPage = 2000;

Text Taken(LPOLESTR text) {
    if (!text) return {};
    Text copy(FromWide(text));
    CoTaskMemFree(text);
    return copy;
}

Text ReasonOf(HRESULT result) {
    try {
        Check(result);
    } catch (...) {
        return FailureInFlightText();
    }
    return {};
}

}  // namespace

// What a page sees of its frame. A page may keep it longer than the frame exists.
class PropertyFrame::Site final : public ComObject<IPropertyPageSite> {
  public:
    void SetFrame(PropertyFrame* frame) { frame_ = frame; }

    STDMETHODIMP OnStatusChange(DWORD flags) override {
        return Guard([&] {
            if (frame_) frame_->OnStatus(*this, flags);
        });
    }
    STDMETHODIMP GetLocaleID(LCID* locale) override {
        if (!locale) return E_POINTER;
        *locale = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    STDMETHODIMP GetPageContainer(IUnknown** container) override {
        if (!container) return E_POINTER;
        *container = nullptr;
        // The interface asks this answer of every frame, since pages are not to know their container.
        return E_NOTIMPL;
    }
    // The page does not use the key.
    STDMETHODIMP TranslateAccelerator(MSG* message) override {
        if (!message) return E_POINTER;
        return frame_ && frame_->Handle() && IsDialogMessageW(frame_->Handle(), message) ? S_OK : S_FALSE;
    }

  private:
    ~Site() override = default;

    PropertyFrame* frame_ = nullptr;
};

// The room for pages, which Tab reaches between the tabs and the buttons.
class PropertyFrame::Holder final : public Window {
  public:
    bool CreateIn(HWND parent, const Rect& area) {
        static const WindowClass windowClass = {L"QvxDesignPageHolder", 0};
        return Create(windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, area, parent);
    }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_ERASEBKGND) {
            const Rect area = ClientArea();
            const RECT rect{area.left, area.top, area.right, area.bottom};
            FillRect(reinterpret_cast<HDC>(wParam), &rect, GetSysColorBrush(COLOR_BTNFACE));
            return 1;
        }
        return Default(message, wParam, lParam);
    }
};

std::unique_ptr<PropertyFrame> PropertyFrame::Make(HWND owner, const Text& title, IUnknown* object,
                                                   const std::vector<CLSID>& pages, const ClassSource& classes) {
    std::vector<Page> made;
    Size size = smallestPage;
    Text reason = u"there are none";
    const Dpi dpi = WindowDpi(owner);
    for (const CLSID& id : pages) {
        try {
            Page one;
            one.page = classes.CreateById(id).As<IPropertyPage>();
            if (!one.page) throw ComError(E_NOINTERFACE);
            one.site = MakeObject<Site>();
            Check(one.page->SetPageSite(one.site.get()));
            PROPPAGEINFO info{};
            info.cb = sizeof info;
            Check(one.page->GetPageInfo(&info));
            one.title = Taken(info.pszTitle);
            Taken(info.pszDocString);
            Taken(info.pszHelpFile);
            Check(one.page->SetObjects(1, &object));
            const auto side = [](LONG pixels, int dots) {
                // One more makes up for rounding down.
                return static_cast<int>(std::clamp<LONG>(pixels, 0, largestPage)) * 96 / dots + 1;
            };
            size.width = std::max(size.width, side(info.size.cx, dpi.x));
            size.height = std::max(size.height, side(info.size.cy, dpi.x));
            made.push_back(std::move(one));
        } catch (...) {
            reason = FailureInFlightText();
        }
    }
    if (made.empty()) {
        throw RunTimeError(errors::invalidProcedureCall, u"The property pages cannot be shown: " + reason);
    }
    const Size inside{size.width + 2 * margin, size.height + tabsHeight + 2 * margin + buttonsHeight};
    return std::unique_ptr<PropertyFrame>(new PropertyFrame(title, inside, std::move(made)));
}

PropertyFrame::PropertyFrame(Text title, Size inside, std::vector<Page> pages)
    : EditorDialog(std::move(title), inside), pages_(std::move(pages)) {
    applies_ = true;
    for (const Page& page : pages_) page.site->SetFrame(this);
}

PropertyFrame::~PropertyFrame() {
    for (const Page& page : pages_) {
        page.site->SetFrame(nullptr);
        page.page->SetObjects(0, nullptr);
        page.page->SetPageSite(nullptr);
    }
    holder_.reset();
    Destroy();
}

void PropertyFrame::Build() {
    const Size inside = Inside();
    const Rect area{margin - 6, margin - 4, inside.width - margin + 6, inside.height - buttonsHeight + 4};
    const HWND strip = Add(WC_TABCONTROLW, u"Pages", WS_TABSTOP | WS_CLIPSIBLINGS | TCS_FOCUSNEVER, area, tabs);
    // The arrows reach the other tabs only when the strip can have the focus.
    if (pages_.size() > 1) SetWindowLongW(strip, GWL_STYLE, GetWindowLongW(strip, GWL_STYLE) & ~TCS_FOCUSNEVER);
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(Wide(pages_[i].title));
        SendMessageW(strip, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
    holder_ = std::make_unique<Holder>();
    holder_->CreateIn(Handle(), {});
    Place(holder_->Handle(), Room());
    // The strip is below it.
    SetWindowPos(strip, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetWindowPos(holder_->Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    Show(0);
}

Rect PropertyFrame::Room() const {
    const Size inside = Inside();
    return {margin, margin + tabsHeight, inside.width - margin, inside.height - buttonsHeight};
}

void PropertyFrame::FollowResolution() {
    EditorDialog::FollowResolution();
    Place(holder_->Handle(), Room());
    const Rect area = holder_->ClientArea();
    const RECT bounds{0, 0, area.right, area.bottom};
    if (pages_[current_].active) pages_[current_].page->Move(&bounds);
}

void PropertyFrame::Show(std::size_t index) {
    if (index >= pages_.size()) return;
    Hide();
    current_ = index;
    SendMessageW(Item(tabs), TCM_SETCURSEL, index, 0);
    const Rect area = holder_->ClientArea();
    const RECT bounds{0, 0, area.right, area.bottom};
    HRESULT result = pages_[index].page->Activate(holder_->Handle(), &bounds, TRUE);
    if (SUCCEEDED(result)) {
        pages_[index].active = true;
        result = pages_[index].page->Show(SW_SHOW);
    }
    if (FAILED(result)) {
        // The tab stays empty, and the other pages can still be used.
        const Text text = u"This page cannot be shown: " + ReasonOf(result);
        MessageBoxW(Handle(), Wide(text), Wide(ProgramTitle()), MB_OK | MB_ICONEXCLAMATION);
    }
}

void PropertyFrame::Hide() {
    if (!pages_[current_].active) return;
    pages_[current_].active = false;
    pages_[current_].page->Show(SW_HIDE);
    pages_[current_].page->Deactivate();
}

bool PropertyFrame::Apply() {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        if (!pages_[i].dirty && pages_[i].page->IsPageDirty() != S_OK) continue;
        const HRESULT result = pages_[i].page->Apply();
        if (SUCCEEDED(result)) {
            pages_[i].dirty = false;
            continue;
        }
        const Text reason = ReasonOf(result);
        if (i != current_) Show(i);
        MessageBoxW(Handle(), Wide(reason), Wide(ProgramTitle()), MB_OK | MB_ICONEXCLAMATION);
        return false;
    }
    UpdateApply();
    return true;
}

bool PropertyFrame::Accept() { return Apply(); }

void PropertyFrame::OnStatus(const Site& site, DWORD flags) {
    for (Page& page : pages_) {
        if (page.site.get() != &site) continue;
        page.dirty = (flags & PROPPAGESTATUS_DIRTY) != 0 || page.page->IsPageDirty() == S_OK;
    }
    UpdateApply();
}

void PropertyFrame::UpdateApply() {
    const bool any = std::any_of(pages_.begin(), pages_.end(), [](const Page& page) { return page.dirty; });
    const HWND button = Item(applyId);
    if (!any && GetFocus() == button) SetFocus(Item(IDOK));
    EnableWindow(button, any);
}

void PropertyFrame::OnCommand(int id, int) {
    if (id == applyId) Apply();
}

bool PropertyFrame::TranslateKey(MSG& message) {
    if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
    if (message.message == WM_KEYDOWN) {
        const auto next = PageAfterKey(static_cast<int>(message.wParam), ShiftState(), current_, pages_.size());
        if (next) return Show(*next), true;
    }
    const Page& page = pages_[current_];
    const bool inside = holder_ && (message.hwnd == holder_->Handle() || IsChild(holder_->Handle(), message.hwnd));
    return page.active && inside && page.page->TranslateAccelerator(&message) == S_OK;
}

LRESULT PropertyFrame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY) {
        const auto& note = *reinterpret_cast<const NMHDR*>(lParam);
        if (note.idFrom == tabs && note.code == TCN_SELCHANGE) {
            Show(static_cast<std::size_t>(std::max<LRESULT>(SendMessageW(Item(tabs), TCM_GETCURSEL, 0, 0), 0)));
        }
        return 0;
    }
    if (message == WM_DESTROY) Hide();
    return EditorDialog::OnMessage(message, wParam, lParam);
}

}  // namespace qvx::host::designer
