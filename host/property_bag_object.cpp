#include "host/property_bag_object.h"

#include <olectl.h>

#include "com/bstr.h"
#include "com/font_object.h"
#include "com/guard.h"
#include "com/variant.h"
#include "host/form_font.h"

namespace qvx::host {

namespace {

Text ClassIdText(REFCLSID id) {
    wchar_t buffer[40] = L"";
    StringFromGUID2(id, buffer, 40);
    return Text(FromWide(buffer));
}

}  // namespace

Variant ToVariant(const FormValue& value) {
    return std::visit([](const auto& plain) { return Variant(plain); }, value);
}

FormValue ToFormValue(const VARIANT& source) {
    const Variant value(source);
    switch (value.Type()) {
        case VT_BSTR:
            return Text(FromBstr(value.get().bstrVal));
        case VT_BOOL:
            return value.get().boolVal != VARIANT_FALSE;
        case VT_I1:
        case VT_I2:
        case VT_I4:
        case VT_INT:
        case VT_UI1:
        case VT_UI2:
            return static_cast<std::int32_t>(*value.ToLong());
        case VT_UI4:
        case VT_UINT:  // a colour, most likely: its bits count
            return static_cast<std::int32_t>(value.get().ulVal);
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_DECIMAL:
        case VT_I8:
        case VT_UI8:
            if (const auto number = value.To(VT_R8)) return number->get().dblVal;
            break;
        default:
            break;
    }
    throw ComError(DISP_E_TYPEMISMATCH);
}

STDMETHODIMP ReadingBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog*) {
    return Guard([&]() -> HRESULT {
        if (!name || !value) return E_POINTER;
        if (!block_) return E_UNEXPECTED;
        const VARTYPE wanted = value->vt;
        asked_.emplace_back(FromWide(name));
        const Text& key = asked_.back();
        if (const Block* group = block_->FindGroup(key)) return ReadObject(*group, value);
        const FormValue* stored = block_->Find(key);
        if (!stored) return E_INVALIDARG;
        if (wanted == VT_UNKNOWN || wanted == VT_DISPATCH) {
            const Text* file = std::get_if<Text>(stored);
            return file ? ReadPicture(*file, value) : E_INVALIDARG;
        }
        Variant plain = ToVariant(*stored);
        if (wanted != VT_EMPTY && wanted != VT_NULL && wanted != VT_VARIANT && wanted != plain.Type()) {
            // Colours above &H7FFFFFFF& are negative whole numbers in the file; only their bits count.
            const bool bits = (wanted == VT_UI4 || wanted == VT_UINT) && plain.Type() == VT_I4;
            auto converted = bits ? std::optional(plain) : plain.To(wanted);
            if (!converted) return E_INVALIDARG;
            if (bits) converted->ptr()->vt = wanted;
            plain = std::move(*converted);
        }
        VariantClear(value);
        *value = plain.detach();
        return S_OK;
    });
}

HRESULT ReadingBag::ReadObject(const Block& group, VARIANT* value) {
    ComPtr<IUnknown> object;
    if (IsFontBlock(group)) {
        object = MakeFontObject(ReadFont(group, font_));
    } else {
        CLSID id;
        Check(CLSIDFromString(Wide(group.className), &id));
        Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()));
        const auto persist = object.As<IPersistPropertyBag>();
        if (!persist) return E_NOINTERFACE;
        const Lent<ReadingBag> bag(group, folder_, font_, pictures_);
        Check(persist->InitNew());
        Check(persist->Load(bag.get(), nullptr));
    }
    const bool unknown = value->vt == VT_UNKNOWN;
    VariantClear(value);
    if (unknown) {
        value->vt = VT_UNKNOWN;
        value->punkVal = object.detach();
        return S_OK;
    }
    auto dispatch = object.As<IDispatch>();
    if (!dispatch) return E_NOINTERFACE;
    value->vt = VT_DISPATCH;
    value->pdispVal = dispatch.detach();
    return S_OK;
}

HRESULT ReadingBag::ReadPicture(const Text& file, VARIANT* value) {
    ComPtr<IPictureDisp> picture = pictures_.Load(folder_, file);
    const VARTYPE wanted = value->vt;
    VariantClear(value);
    value->vt = wanted;
    value->pdispVal = picture.detach();
    return S_OK;
}

STDMETHODIMP WritingBag::Write(LPCOLESTR name, VARIANT* value) {
    return Guard([&]() -> HRESULT {
        if (!name || !value) return E_POINTER;
        if (!saved_) return E_UNEXPECTED;
        Text key(FromWide(name));
        if (!IsPropertyName(key)) return E_INVALIDARG;
        if (value->vt == VT_EMPTY || value->vt == VT_NULL) return S_OK;
        if (value->vt != VT_UNKNOWN && value->vt != VT_DISPATCH) {
            saved_->Add(std::move(key), ToFormValue(*value));
            return S_OK;
        }
        const ComPtr<IUnknown> object(value->punkVal);
        if (!object) return S_OK;  // no object is what a missing property means
        if (object.As<IFont>()) {
            saved_->AddGroup(std::move(key), SaveFont(ReadFontObject(object.get())));
            return S_OK;
        }
        if (const Text* file = pictures_.FileOf(object.get())) {
            saved_->Add(std::move(key), *file);
            return S_OK;
        }
        const auto persist = object.As<IPersistPropertyBag>();
        if (!persist) return DISP_E_TYPEMISMATCH;
        auto group = std::make_shared<SavedGroup>();
        CLSID id{};
        Check(persist->GetClassID(&id));
        group->classId = ClassIdText(id);
        const Lent<WritingBag> bag(group->properties, pictures_);
        Check(persist->Save(bag.get(), FALSE, TRUE));
        saved_->AddGroup(std::move(key), std::move(group));
        return S_OK;
    });
}

}  // namespace qvx::host
