// The system's data objects, called through their own interfaces where an object supports them: some objects cannot be
// called by member names.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/late_bound.h"
#include "com/pointer.h"
#include "common/text.h"

namespace qvx {

// Only the methods called here have their real parameters; the others are placeholders that keep the vtable's order. On
// 64-bit systems, counts and positions have 32 or 64 bits depending on the version of the record set, so the variables
// for them have 64.
//
// These are not in an unnamed namespace: there the compiler would see that nobody implements them, and drop the calls.

struct AdoField : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Properties(void**) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_ActualSize(void*) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Attributes(void*) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DefinedSize(void*) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR*) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Type(void*) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Value(VARIANT* value) = 0;
};

struct AdoFields : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Count(LONGLONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown**) = 0;
    virtual HRESULT STDMETHODCALLTYPE Refresh() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, AdoField** field) = 0;
};

struct AdoRecordset : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Properties(void**) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_AbsolutePosition(LONGLONG* position) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved13() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved14() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved15() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved16() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved17() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved18() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved19() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_EOF(VARIANT_BOOL* end) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Fields(AdoFields** fields) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved22() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved23() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved24() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved25() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RecordCount(LONGLONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved27() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved28() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved29() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved30() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved31() = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved33() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRows(LONG rows, VARIANT start, VARIANT fields, VARIANT* values) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved35() = 0;
    virtual HRESULT STDMETHODCALLTYPE MoveNext() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved37() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved38() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved39() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT connection, int cursorType, int lockType,
                                           LONG options) = 0;
};

struct AdoConnection : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Properties(void**) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved8() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved9() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved10() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved11() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved12() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved13() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved14() = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved16() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved17() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved18() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved19() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(BSTR connection, BSTR user, BSTR password, LONG options) = 0;
};

// An object's own interface and the identifier under which the object supports it; empty for objects that are called by
// member names only.
template <typename Interface>
class AdoInterface {
  public:
    // A null object gives an empty AdoInterface.
    explicit AdoInterface(IUnknown* object);

    explicit operator bool() const { return static_cast<bool>(object_); }
    Interface* operator->() const { return object_.get(); }
    Interface* get() const { return object_.get(); }
    // Throws the error of a failed call through the interface, or through that of an object obtained from it.
    void Check(HRESULT result) const {
        if (FAILED(result)) throw ForeignError(result, object_.get(), iid_);
    }

  private:
    ComPtr<Interface> object_;
    IID iid_{};
};

extern template class AdoInterface<AdoRecordset>;
extern template class AdoInterface<AdoConnection>;

// Appends a field's value as text to `text`; see AppendValueText. Throws error 13 for a value without a text: binary
// data.
void AppendFieldText(const VARIANT& value, Text& text);

}  // namespace qvx
