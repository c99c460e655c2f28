// The property bag that a control reads from and writes to: a block of the form file on one side, what has been saved
// so far on the other.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <vector>

#include "com/object.h"
#include "com/variant.h"
#include "common/font_spec.h"
#include "host/form_pictures_object.h"
#include "host/saved_properties.h"

namespace qvx::host {

// A bag that is lent to a control for one call. A control that keeps it longer finds it empty.
template <typename Bag>
class Lent {
  public:
    template <typename... Arguments>
    explicit Lent(Arguments&&... arguments) : bag_(MakeObject<Bag>(std::forward<Arguments>(arguments)...)) {}
    ~Lent() { bag_->TakeBack(); }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    Bag* get() const { return bag_.get(); }
    Bag* operator->() const { return bag_.get(); }

  private:
    ComPtr<Bag> bag_;
};

// Reads from `block`. Values are converted to the type that the control asks for; for a property that is missing or
// cannot be converted, the answer is E_INVALIDARG, as in other containers.
class ReadingBag final : public ComObject<IPropertyBag> {
  public:
    // `folder` is where the files that the form names are; `font` completes fonts that name only some members.
    ReadingBag(const Block& block, Text folder, FontSpec font, FormPictures& pictures)
        : block_(&block), folder_(std::move(folder)), font_(std::move(font)), pictures_(pictures) {}

    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override;
    // This bag is for loading; WritingBag is for saving.
    STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }

    void TakeBack() { block_ = nullptr; }
    // The names that were asked for.
    const std::vector<Text>& Asked() const { return asked_; }

  private:
    ~ReadingBag() override = default;
    HRESULT ReadObject(const Block& group, VARIANT* value);
    HRESULT ReadPicture(const Text& file, VARIANT* value);

    const Block* block_;  // null when the bag has been taken back
    Text folder_;
    FontSpec font_;
    FormPictures& pictures_;
    std::vector<Text> asked_;
};

class WritingBag final : public ComObject<IPropertyBag> {
  public:
    WritingBag(SavedProperties& saved, const FormPictures& pictures) : saved_(&saved), pictures_(pictures) {}

    STDMETHODIMP Read(LPCOLESTR, VARIANT*, IErrorLog*) override { return E_INVALIDARG; }
    STDMETHODIMP Write(LPCOLESTR name, VARIANT* value) override;
    void TakeBack() { saved_ = nullptr; }

  private:
    ~WritingBag() override = default;

    SavedProperties* saved_;  // null when the bag has been taken back
    const FormPictures& pictures_;
};

// A value of the file as a script or a property sees it.
Variant ToVariant(const FormValue& value);
// The reverse; throws ComError(DISP_E_TYPEMISMATCH) for what no line of the file can hold.
FormValue ToFormValue(const VARIANT& value);

}  // namespace qvx::host
