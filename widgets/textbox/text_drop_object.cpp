#include "widgets/textbox/text_drop_object.h"

#include <ole2.h>

#include <optional>
#include <utility>

#include "com/guard.h"
#include "com/object.h"
#include "com/wide_text.h"
#include "widgets/textbox/dropped_text.h"
#include "widgets/textbox/text_box_window.h"

namespace qvx {
namespace {

FORMATETC TextFormat() { return {CF_UNICODETEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}; }

std::optional<Text> TextOf(IDataObject* data) {
    FORMATETC format = TextFormat();
    STGMEDIUM medium{};
    if (FAILED(data->GetData(&format, &medium))) return std::nullopt;
    std::optional<Text> text;
    if (const auto* characters = static_cast<const wchar_t*>(GlobalLock(medium.hGlobal))) {
        const std::size_t most = GlobalSize(medium.hGlobal) / sizeof(wchar_t);
        std::size_t length = 0;
        while (length < most && characters[length] != L'\0') ++length;
        text = Text(FromWide({characters, length}));
        GlobalUnlock(medium.hGlobal);
    }
    ReleaseStgMedium(&medium);
    return text;
}

}  // namespace

class TextDropTarget::Target final : public ComObject<IDropTarget> {
  public:
    explicit Target(TextBoxWindow& box) : box_(&box) {}
    void Detach() { box_ = nullptr; }

    STDMETHODIMP DragEnter(IDataObject* data, DWORD, POINTL, DWORD* effect) override {
        FORMATETC format = TextFormat();
        hasText_ = data && data->QueryGetData(&format) == S_OK;
        return Answer(effect);
    }
    STDMETHODIMP DragOver(DWORD, POINTL place, DWORD* effect) override {
        if (Takes()) ShowCaret(place);
        return Answer(effect);
    }
    STDMETHODIMP DragLeave() override {
        hasText_ = false;
        return S_OK;
    }
    STDMETHODIMP Drop(IDataObject* data, DWORD, POINTL place, DWORD* effect) override {
        return Guard([&]() -> HRESULT {
            if (!data) return E_INVALIDARG;
            const HRESULT result = Answer(effect);
            const auto text = Takes() ? TextOf(data) : std::nullopt;
            hasText_ = false;
            if (!text) return result;
            box_->Focus();
            // The listener's handlers may have destroyed the box.
            if (!Takes(true)) return result;
            ShowCaret(place);
            const auto length = box_->GetText().size();
            const auto room = static_cast<std::size_t>(box_->MaxLength());
            box_->SetSelText(DroppedText(*text, length, static_cast<std::size_t>(box_->SelLength()), room));
            return result;
        });
    }

  private:
    ~Target() override = default;

    bool Takes(bool anything = false) const {
        return box_ && box_->Window() && (hasText_ || anything) && box_->Enabled() && !box_->Locked();
    }
    // The dragged text stays in its source: another program's text must not be removed.
    HRESULT Answer(DWORD* effect) const {
        if (!effect) return E_POINTER;
        *effect = Takes() ? *effect & DROPEFFECT_COPY : DROPEFFECT_NONE;
        return S_OK;
    }
    void ShowCaret(POINTL place) const {
        POINT point{place.x, place.y};
        ScreenToClient(box_->Window(), &point);
        const LRESULT at = SendMessageW(box_->Window(), EM_CHARFROMPOS, 0, MAKELPARAM(point.x, point.y));
        box_->SetSelStart(LOWORD(at));
    }

    TextBoxWindow* box_;
    bool hasText_ = false;
};

TextDropTarget::TextDropTarget() = default;

TextDropTarget::~TextDropTarget() { Detach(); }

void TextDropTarget::Attach(TextBoxWindow& box) {
    Detach();
    auto target = MakeObject<Target>(box);
    if (FAILED(RegisterDragDrop(box.Window(), target.get()))) return;
    target_ = std::move(target);
    window_ = box.Window();
}

void TextDropTarget::Detach() {
    if (!target_) return;
    RevokeDragDrop(std::exchange(window_, nullptr));
    std::exchange(target_, nullptr)->Detach();
}

}  // namespace qvx
