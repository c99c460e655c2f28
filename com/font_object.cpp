#include "com/font_object.h"

#include <olectl.h>

#include <cmath>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/object.h"
#include "common/run_time_error.h"

namespace qvx {

namespace {

// Sizes are passed as currency values, in ten-thousandths.
constexpr double currencyUnit = 10000;

CY ToCurrency(double value) {
    CY currency;
    currency.int64 = std::llround(value * currencyUnit);
    return currency;
}

}  // namespace

ComPtr<IFontDisp> MakeFontObject(const FontSpec& value) {
    Text face = value.face;
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = WideBuffer(face);
    description.cySize = ToCurrency(value.points);
    description.sWeight = static_cast<SHORT>(value.weight);
    description.sCharset = static_cast<SHORT>(value.charset);
    description.fItalic = value.italic;
    description.fUnderline = value.underline;
    description.fStrikethrough = value.strikeThrough;
    ComPtr<IFontDisp> font;
    Check(OleCreateFontIndirect(&description, __uuidof(IFontDisp), font.put_void()));
    return font;
}

FontSpec ReadFontObject(IUnknown* object) {
    FontSpec value;
    const auto font = Query<IFont>(object);
    if (!font) return value;
    Bstr name;
    if (SUCCEEDED(font->get_Name(name.put())) && !name.View().empty()) value.face = name.ToText();
    CY size;
    if (SUCCEEDED(font->get_Size(&size)) && size.int64 > 0) {
        value.points = static_cast<double>(size.int64) / currencyUnit;
    }
    SHORT weight = 0;
    SHORT charset = 0;
    WINBOOL flag = FALSE;
    if (SUCCEEDED(font->get_Weight(&weight)) && weight > 0) value.weight = weight;
    if (SUCCEEDED(font->get_Charset(&charset))) value.charset = charset;
    if (SUCCEEDED(font->get_Italic(&flag))) value.italic = flag != FALSE;
    if (SUCCEEDED(font->get_Underline(&flag))) value.underline = flag != FALSE;
    if (SUCCEEDED(font->get_Strikethrough(&flag))) value.strikeThrough = flag != FALSE;
    return value;
}

class FontProperty::Listener final : public ComObject<IPropertyNotifySink> {
  public:
    explicit Listener(FontProperty* owner) : owner_(owner) {}
    void CutOff() { owner_ = nullptr; }
    STDMETHODIMP OnChanged(DISPID) override {
        return Guard([&] {
            if (owner_) owner_->OnObjectChanged();
        });
    }
    STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

  private:
    ~Listener() override = default;
    FontProperty* owner_;
};

FontProperty::FontProperty(std::function<void()> changed) : changed_(std::move(changed)) {}

FontProperty::~FontProperty() { Detach(); }

void FontProperty::Load(const FontSpec& value) {
    Detach();
    value_ = value;
}

IFontDisp* FontProperty::Get() {
    if (!object_) Attach(MakeFontObject(value_));
    return object_.copy();
}

void FontProperty::Set(IFontDisp* font, bool copy) {
    if (!font) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    const FontSpec value = ReadFontObject(font);
    Detach();
    value_ = value;
    if (!copy) Attach(ComPtr<IFontDisp>(font));
    changed_();
}

void FontProperty::Attach(ComPtr<IFontDisp> font) {
    object_ = std::move(font);
    // A font object of the host's own that does not support change notifications is accepted all the same.
    const auto container = object_.As<IConnectionPointContainer>();
    if (!container || FAILED(container->FindConnectionPoint(IID_IPropertyNotifySink, point_.put()))) return;
    listener_ = MakeObject<Listener>(this);
    if (FAILED(point_->Advise(listener_.get(), &cookie_))) cookie_ = 0;
}

void FontProperty::Detach() {
    if (listener_) listener_->CutOff();
    if (point_ && cookie_) point_->Unadvise(cookie_);
    cookie_ = 0;
    listener_.reset();
    point_.reset();
    object_.reset();
}

void FontProperty::OnObjectChanged() {
    const FontSpec value = ReadFontObject(object_.get());
    if (value == value_) return;
    value_ = value;
    changed_();
}

}  // namespace qvx
