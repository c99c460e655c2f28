#include "com/font_object.h"

#include <olectl.h>

#include <cmath>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/object.h"
#include "common/run_time_error.h"

namespace qvx {

namespace {

// Sizes travel as currency: ten-thousandths.
constexpr double currencyUnit = 10000;

CY ToCurrency(double value) {
    CY currency;
    currency.int64 = std::llround(value * currencyUnit);
    return currency;
}

}  // namespace

ComPtr<IFontDisp> MakeFontObject(const FontSpec& spec) {
    Text face = spec.face;
    FONTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.lpstrName = WideBuffer(face);
    description.cySize = ToCurrency(spec.points);
    description.sWeight = static_cast<SHORT>(spec.weight);
    description.sCharset = static_cast<SHORT>(spec.charset);
    description.fItalic = spec.italic;
    description.fUnderline = spec.underline;
    description.fStrikethrough = spec.strikeThrough;
    ComPtr<IFontDisp> font;
    Check(OleCreateFontIndirect(&description, __uuidof(IFontDisp), font.put_void()));
    return font;
}

FontSpec ReadFontObject(IUnknown* object) {
    FontSpec spec;
    const auto font = Query<IFont>(object);
    if (!font) return spec;
    Bstr name;
    if (SUCCEEDED(font->get_Name(name.put())) && !name.View().empty()) spec.face = name.ToText();
    CY size;
    if (SUCCEEDED(font->get_Size(&size)) && size.int64 > 0) {
        spec.points = static_cast<double>(size.int64) / currencyUnit;
    }
    SHORT weight = 0;
    SHORT charset = 0;
    WINBOOL flag = FALSE;
    if (SUCCEEDED(font->get_Weight(&weight)) && weight > 0) spec.weight = weight;
    if (SUCCEEDED(font->get_Charset(&charset))) spec.charset = charset;
    if (SUCCEEDED(font->get_Italic(&flag))) spec.italic = flag != FALSE;
    if (SUCCEEDED(font->get_Underline(&flag))) spec.underline = flag != FALSE;
    if (SUCCEEDED(font->get_Strikethrough(&flag))) spec.strikeThrough = flag != FALSE;
    return spec;
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

void FontProperty::Load(const FontSpec& spec) {
    Detach();
    spec_ = spec;
}

IFontDisp* FontProperty::Get() {
    if (!object_) Attach(MakeFontObject(spec_));
    return object_.copy();
}

void FontProperty::Set(IFontDisp* font, bool copy) {
    if (!font) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    const FontSpec spec = ReadFontObject(font);
    Detach();
    spec_ = spec;
    if (!copy) Attach(ComPtr<IFontDisp>(font));
    changed_();
}

void FontProperty::Attach(ComPtr<IFontDisp> font) {
    object_ = std::move(font);
    // A font of the host's own making that does not tell of its changes is taken all the same.
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
    const FontSpec spec = ReadFontObject(object_.get());
    if (spec == spec_) return;
    spec_ = spec;
    changed_();
}

}  // namespace qvx
