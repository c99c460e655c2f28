#include "widgets/combo/combo_object.h"

#include <limits>

#include "Qvx.h"
#include "com/bstr.h"
#include "com/dispatch.h"
#include "com/font_object.h"
#include "com/members.h"
#include "com/object.h"
#include "com/variant.h"
#include "common/run_time_error.h"

namespace qvx {
namespace {

// Hosts count the list in 16 bits; they cannot reach the rest of a longer list.
short ToShort(int value) {
    return static_cast<short>(value > std::numeric_limits<short>::max() ? std::numeric_limits<short>::max() : value);
}

}  // namespace

class ComboObject final : public ComObject<Dispatch<IEditorCombo>, ErrorInfoSupport<IEditorCombo>>,
                          private MemberAccess<ComboObject> {
  public:
    explicit ComboObject(ComboWindow& combo) : combo_(&combo), font_([this] { OnFontChanged(); }) {
        font_.Load(combo.Font());
    }
    void Detach() { combo_ = nullptr; }

    STDMETHODIMP get_Text(BSTR* result) override {
        return Give(result, [&] { return Combo().GetText(); });
    }
    STDMETHODIMP put_Text(BSTR value) override {
        return Guard([&] { Combo().SetText(FromBstr(value)); });
    }
    STDMETHODIMP AddItem(BSTR item, VARIANT index) override {
        return Guard([&] {
            ComboWindow& combo = Combo();
            if (const auto place = OptionalNumber(index)) {
                combo.AddItem(FromBstr(item), static_cast<int>(*place));
            } else {
                combo.AddItem(FromBstr(item));
            }
        });
    }
    STDMETHODIMP RemoveItem(short index) override {
        return Guard([&] { Combo().RemoveItem(index); });
    }
    STDMETHODIMP Clear() override {
        return Guard([&] { Combo().Clear(); });
    }
    STDMETHODIMP get_List(short index, BSTR* result) override {
        return Give(result, [&] { return Combo().List(index); });
    }
    STDMETHODIMP put_List(short index, BSTR value) override {
        return Guard([&] { Combo().SetList(index, FromBstr(value)); });
    }
    STDMETHODIMP get_ListCount(short* result) override {
        return Give(result, [&] { return ToShort(Combo().ListCount()); });
    }
    STDMETHODIMP get_ListIndex(short* result) override {
        return Give(result, [&] { return ToShort(Combo().ListIndex()); });
    }
    STDMETHODIMP put_ListIndex(short value) override {
        return Guard([&] { Combo().SetListIndex(value); });
    }
    STDMETHODIMP get_ItemData(short index, long* result) override {
        return Give(result, [&] { return Combo().ItemData(index); });
    }
    STDMETHODIMP put_ItemData(short index, long value) override {
        return Guard([&] { Combo().SetItemData(index, value); });
    }
    STDMETHODIMP get_NewIndex(short* result) override {
        return Give(result, [&] { return ToShort(Combo().NewIndex()); });
    }
    STDMETHODIMP get_TopIndex(short* result) override {
        return Give(result, [&] { return ToShort(Combo().TopIndex()); });
    }
    STDMETHODIMP put_TopIndex(short value) override {
        return Guard([&] { Combo().SetTopIndex(value); });
    }
    STDMETHODIMP get_Sorted(VARIANT_BOOL* result) override {
        return Give(result, [&] { return Combo().Sorted(); });
    }
    QVX_PROPERTY(long, SelStart, ComboWindow)
    QVX_PROPERTY(long, SelLength, ComboWindow)
    QVX_PROPERTY(BSTR, SelText, ComboWindow)
    QVX_PROPERTY(VARIANT_BOOL, Locked, ComboWindow)
    QVX_PROPERTY(VARIANT_BOOL, Enabled, ComboWindow)
    QVX_PROPERTY(BSTR, Tag, ComboWindow)
    STDMETHODIMP get_Font(IFontDisp** result) override {
        return Give(result, [&] {
            // The grid also gives the combo the font of its cell.
            if (font_.Value() != Combo().Font()) font_.Load(Combo().Font());
            return font_.Get();
        });
    }
    STDMETHODIMP put_Font(IFontDisp* value) override {
        return Guard([&] {
            Combo();
            font_.Set(value, true);
        });
    }
    STDMETHODIMP putref_Font(IFontDisp* value) override {
        return Guard([&] {
            Combo();
            font_.Set(value, false);
        });
    }
    QVX_PROPERTY(OLE_COLOR, BackColor, ComboWindow)
    QVX_PROPERTY(OLE_COLOR, ForeColor, ComboWindow)
    QVX_PROPERTY(BSTR, ToolTipText, ComboWindow)
    STDMETHODIMP get_hWnd(long* result) override {
        // Handles have 32 significant bits on every architecture.
        return Give(result, [&] { return reinterpret_cast<LONG_PTR>(Combo().Window()); });
    }

  private:
    friend MemberAccess;

    ~ComboObject() override = default;

    ComboWindow& PartOf(std::type_identity<ComboWindow>) const { return Combo(); }
    template <class Apply>
    HRESULT Put(TextView, Apply apply) {
        return Guard(apply);
    }
    ComboWindow& Combo() const {
        if (!combo_ || !combo_->Window()) throw RunTimeError(errors::objectUnloaded, u"Object was unloaded");
        return *combo_;
    }
    void OnFontChanged() {
        if (combo_) combo_->SetFont(font_.Value());
    }

    ComboWindow* combo_;
    FontProperty font_;
};

ComboAutomation::ComboAutomation(ComboWindow& combo) : combo_(combo) {}

ComboAutomation::~ComboAutomation() {
    if (object_) object_->Detach();
}

IDispatch* ComboAutomation::Get() {
    if (!object_) object_ = MakeObject<ComboObject>(combo_);
    return static_cast<IEditorCombo*>(object_.copy());
}

}  // namespace qvx
