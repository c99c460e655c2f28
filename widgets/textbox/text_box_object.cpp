#include "widgets/textbox/text_box_object.h"

#include <utility>

#include "Qvx.h"
#include "com/dispatch.h"
#include "com/members.h"
#include "com/object.h"
#include "common/run_time_error.h"

namespace qvx {

class TextBoxObject final : public ComObject<Dispatch<ITextBox>, ErrorInfoSupport<ITextBox>> {
  public:
    explicit TextBoxObject(TextBoxAutomation& automation) : automation_(&automation) {}
    void Detach() { automation_ = nullptr; }

    STDMETHODIMP get_Text(BSTR* result) override { return Read(result, &TextBoxWindow::GetText); }
    STDMETHODIMP put_Text(BSTR value) override { return Write(&TextBoxWindow::SetText, value); }
    STDMETHODIMP get_SelStart(long* result) override { return Read(result, &TextBoxWindow::SelStart); }
    STDMETHODIMP put_SelStart(long value) override { return Write(&TextBoxWindow::SetSelStart, value); }
    STDMETHODIMP get_SelLength(long* result) override { return Read(result, &TextBoxWindow::SelLength); }
    STDMETHODIMP put_SelLength(long value) override { return Write(&TextBoxWindow::SetSelLength, value); }
    STDMETHODIMP get_SelText(BSTR* result) override { return Read(result, &TextBoxWindow::SelText); }
    STDMETHODIMP put_SelText(BSTR value) override { return Write(&TextBoxWindow::SetSelText, value); }
    STDMETHODIMP get_MaxLength(long* result) override { return Read(result, &TextBoxWindow::MaxLength); }
    STDMETHODIMP put_MaxLength(long value) override { return Write(&TextBoxWindow::SetMaxLength, value); }
    STDMETHODIMP get_Locked(VARIANT_BOOL* result) override { return Read(result, &TextBoxWindow::Locked); }
    STDMETHODIMP put_Locked(VARIANT_BOOL value) override { return Write(&TextBoxWindow::SetLocked, value); }
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override { return Read(result, &TextBoxWindow::Enabled); }
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override { return Write(&TextBoxWindow::SetEnabled, value); }
    STDMETHODIMP get_Alignment(TextAlignment* result) override { return Read(result, &TextBoxWindow::Alignment); }
    STDMETHODIMP put_Alignment(TextAlignment value) override { return Write(&TextBoxWindow::SetAlignment, value); }
    STDMETHODIMP get_BorderStyle(TextBorderStyle* result) override { return Read(result, &TextBoxWindow::BorderStyle); }
    STDMETHODIMP put_BorderStyle(TextBorderStyle value) override {
        return Write(&TextBoxWindow::SetBorderStyle, value);
    }
    STDMETHODIMP get_Appearance(TextAppearance* result) override { return Read(result, &TextBoxWindow::Appearance); }
    STDMETHODIMP put_Appearance(TextAppearance value) override { return Write(&TextBoxWindow::SetAppearance, value); }
    STDMETHODIMP get_PasswordChar(BSTR* result) override { return Read(result, &TextBoxWindow::PasswordChar); }
    STDMETHODIMP put_PasswordChar(BSTR value) override { return Write(&TextBoxWindow::SetPasswordChar, value); }
    STDMETHODIMP get_Tag(BSTR* result) override { return Read(result, &TextBoxWindow::Tag); }
    STDMETHODIMP put_Tag(BSTR value) override { return Write(&TextBoxWindow::SetTag, value); }
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override { return Read(result, &TextBoxWindow::BackColor); }
    STDMETHODIMP put_BackColor(OLE_COLOR value) override { return Write(&TextBoxWindow::SetBackColor, value); }
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override { return Read(result, &TextBoxWindow::ForeColor); }
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override { return Write(&TextBoxWindow::SetForeColor, value); }
    STDMETHODIMP get_ToolTipText(BSTR* result) override { return Read(result, &TextBoxWindow::ToolTipText); }
    STDMETHODIMP put_ToolTipText(BSTR value) override { return Write(&TextBoxWindow::SetToolTipText, value); }
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
    ~TextBoxObject() override = default;

    TextBoxAutomation& Live() const {
        if (!automation_) throw RunTimeError(errors::objectUnloaded, u"Object was unloaded");
        return *automation_;
    }
    template <class Result, class Value>
    HRESULT Read(Result* result, Value (TextBoxWindow::*member)() const) {
        return Give(result, [&] { return (Live().Box().*member)(); });
    }
    template <class Parameter, class Given>
    HRESULT Write(void (TextBoxWindow::*member)(Parameter), Given value) {
        return Guard([&] { (Live().Box().*member)(FromHost<Parameter>(value)); });
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
