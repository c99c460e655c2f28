#include "widgets/textbox/text_box_object.h"

#include <utility>

#include "Qvx.h"
#include "com/dispatch.h"
#include "com/members.h"
#include "com/object.h"
#include "common/run_time_error.h"

namespace qvx {

class TextBoxObject final : public ComObject<Dispatch<ITextBox>, ErrorInfoSupport<ITextBox>>,
                            private MemberAccess<TextBoxObject> {
  public:
    explicit TextBoxObject(TextBoxAutomation& automation) : automation_(&automation) {}
    void Detach() { automation_ = nullptr; }

    STDMETHODIMP get_Text(BSTR* result) override { return GetMember(result, &TextBoxWindow::GetText); }
    STDMETHODIMP put_Text(BSTR value) override { return PutMember(u"Text", &TextBoxWindow::SetText, value); }
    QVX_PROPERTY(long, SelStart, TextBoxWindow)
    QVX_PROPERTY(long, SelLength, TextBoxWindow)
    QVX_PROPERTY(BSTR, SelText, TextBoxWindow)
    QVX_PROPERTY(long, MaxLength, TextBoxWindow)
    QVX_PROPERTY(VARIANT_BOOL, Locked, TextBoxWindow)
    QVX_PROPERTY(VARIANT_BOOL, Enabled, TextBoxWindow)
    QVX_PROPERTY(TextAlignment, Alignment, TextBoxWindow)
    QVX_PROPERTY(TextBorderStyle, BorderStyle, TextBoxWindow)
    QVX_PROPERTY(TextAppearance, Appearance, TextBoxWindow)
    QVX_PROPERTY(BSTR, PasswordChar, TextBoxWindow)
    QVX_PROPERTY(BSTR, Tag, TextBoxWindow)
    QVX_PROPERTY(OLE_COLOR, BackColor, TextBoxWindow)
    QVX_PROPERTY(OLE_COLOR, ForeColor, TextBoxWindow)
    QVX_PROPERTY(BSTR, ToolTipText, TextBoxWindow)
    STDMETHODIMP get_hWnd(long* result) override {
        // Handles have 32 significant bits on every architecture.
        return Give(result, [&] { return reinterpret_cast<LONG_PTR>(Live().Box().Window()); });
    }
    STDMETHODIMP get_Font(IFontDisp** result) override {
        return Give(result, [&] { return Live().Font().Get(); });
    }
    STDMETHODIMP put_Font(IFontDisp* value) override {
        return Guard([&] { Live().Font().Set(value, true); });
    }
    STDMETHODIMP putref_Font(IFontDisp* value) override {
        return Guard([&] { Live().Font().Set(value, false); });
    }

  private:
    friend MemberAccess;

    ~TextBoxObject() override = default;

    TextBoxAutomation& Live() const {
        if (!automation_) throw RunTimeError(errors::objectUnloaded, u"Object was unloaded");
        return *automation_;
    }
    TextBoxWindow& PartOf(std::type_identity<TextBoxWindow>) const { return Live().Box(); }
    template <class Apply>
    HRESULT Put(TextView, Apply apply) {
        return Guard(apply);
    }

    TextBoxAutomation* automation_;
};

TextBoxAutomation::TextBoxAutomation(TextBoxWindow& box, std::function<void()> fontChanged)
    : box_(box), font_([this, changed = std::move(fontChanged)] {
          box_.SetFont(font_.Value());
          changed();
      }) {
    font_.Load(box.Font());
}

TextBoxAutomation::~TextBoxAutomation() {
    if (object_) object_->Detach();
}

void TextBoxAutomation::LoadFont(const FontSpec& font) {
    font_.Load(font);
    box_.SetFont(font);
}

IDispatch* TextBoxAutomation::Get() {
    if (!object_) object_ = MakeObject<TextBoxObject>(*this);
    return static_cast<ITextBox*>(object_.copy());
}

}  // namespace qvx
