// The property list over objects that fail, lie, or change the list while they are asked.
#include <gtest/gtest.h>
#include <olectl.h>

#include "tests/control/property_list_form.h"

namespace qvx::host::designer {
namespace {

// An object whose members the test chooses: by names alone, or with a description of its own.
class HostileObject final : public ComObject<UntypedDispatch> {
  public:
    std::function<HRESULT(WORD flags, DISPPARAMS*, VARIANT*, EXCEPINFO*)> invoke;
    ComPtr<ITypeInfo> info;

    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** out) override {
        *out = info.copy();
        return info ? S_OK : E_FAIL;
    }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                        UINT*) override {
        return invoke(flags, arguments, result, exception);
    }

  private:
    ~HostileObject() override = default;
};

class HostileObjects : public PropertyListTest {
  protected:
    HostileObjects() : object_(MakeObject<HostileObject>()) {
        // The description of a real control, with members of every kind, over an object that does as it likes.
        SubjectOf(u"grdItems").own->GetTypeInfo(0, LOCALE_USER_DEFAULT, object_->info.put());
    }
    void ShowIt() { list_->Show({{u"bad", nullptr, object_, nullptr}}, {u"bad"}); }

    ComPtr<HostileObject> object_;
};

TEST_F(HostileObjects, WhatCannotBeReadIsShownEmpty) {
    struct Case {
        const char* what;
        std::function<HRESULT(VARIANT*, EXCEPINFO*)> get;
        const char16_t* text;  // of the whole number Rows
    };
    static VARIANT itself{};
    itself.vt = VT_BYREF | VT_VARIANT;
    itself.pvarVal = &itself;
    static long number = 17;
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &number;
    Variant array;
    array.ptr()->parray = SafeArrayCreateVector(VT_I4, 0, 3);
    array.ptr()->vt = VT_ARRAY | VT_I4;
    const Variant text(u"no number");
    const Variant noObject(static_cast<IDispatch*>(nullptr));
    const auto gives = [](const VARIANT& value) {
        return [&value](VARIANT* result, EXCEPINFO*) { return VariantCopy(result, const_cast<VARIANT*>(&value)); };
    };
    const auto refused = [](VARIANT*, EXCEPINFO* exception) {
        exception->scode = static_cast<SCODE>(0x800A0189);
        exception->bstrDescription = SysAllocString(L"Get not supported at run time");
        return DISP_E_EXCEPTION;
    };
    const Case cases[] = {
        {"error 393", refused, u""},
        {"an exception", [](VARIANT*, EXCEPINFO*) -> HRESULT { throw std::runtime_error("out"); }, u""},
        {"nothing", [](VARIANT*, EXCEPINFO*) { return S_OK; }, u"0"},
        {"a reference to itself", gives(itself), u""},
        {"a reference", gives(reference), u"17"},
        {"a text", gives(text.get()), u""},
        {"an array", gives(array.get()), u""},
        {"no object", gives(noObject.get()), u""},
    };
    for (const Case& c : cases) {
        object_->invoke = [&c](WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* exception) {
            return c.get(result, exception);
        };
        ShowIt();
        ASSERT_GT(list_->Table()->Rows().size(), 40u) << c.what;
        EXPECT_EQ(test::Narrow(Row(u"Rows").reading.text), test::Narrow(c.text)) << c.what;
        list_->SetOrder(PropertyOrder::categorized);
        UpdateWindow(list_->RowsWindow());
        list_->SetOrder(PropertyOrder::alphabetic);
    }
}

TEST_F(HostileObjects, ObjectsMayChangeTheListWhileTheyAreAsked) {
    int depth = 0;
    object_->invoke = [&](WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*) {
        if (++depth < 4) {
            ShowIt();
        } else if (depth == 100) {
            Show({u"cmdOk"});
        }
        *result = Variant(1).detach();
        return S_OK;
    };
    ShowIt();
    EXPECT_TRUE(Has(u"Caption")) << "the last call counts";
    EXPECT_FALSE(Has(u"Rows"));
    // Gone in the middle of a write, with the object's last reference.
    object_->invoke = [](WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*) {
        if (result) *result = Variant(1).detach();
        return S_OK;
    };
    ShowIt();
    SetFocus(list_->RowsWindow());
    HostileObject* const alone = object_.get();
    alone->invoke = [&](WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*) {
        if (flags & DISPATCH_PROPERTYPUT) list_.reset();
        if (result) *result = Variant(1).detach();
        return S_OK;
    };
    object_.reset();
    list_->GoTo(u"Rows");
    Keys({VK_TAB});
    Keys({'7', VK_RETURN});
    EXPECT_EQ(list_, nullptr);
}

}  // namespace
}  // namespace qvx::host::designer
