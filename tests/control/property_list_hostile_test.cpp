// The property list over objects that fail, lie, or change the list while they are asked.
#include <gtest/gtest.h>
#include <oleacc.h>
#include <olectl.h>

#include "com/font_object.h"
#include "tests/control/property_list_form.h"
#include "tests/support/input.h"
#include "tests/support/resource_counts.h"
#include "tests/support/thread_windows.h"
#include "win/dpi.h"
#include "win/window_text.h"

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
    const Case cases[] = {
        {"error 393",
         [](VARIANT*, EXCEPINFO* exception) {
             exception->scode = static_cast<SCODE>(0x800A0189);
             exception->bstrDescription = SysAllocString(L"Get not supported at run time");
             return DISP_E_EXCEPTION;
         },
         u""},
        {"failure", [](VARIANT*, EXCEPINFO*) { return E_FAIL; }, u""},
        {"an exception", [](VARIANT*, EXCEPINFO*) -> HRESULT { throw std::runtime_error("out"); }, u""},
        {"nothing", [](VARIANT*, EXCEPINFO*) { return S_OK; }, u"0"},
        {"a reference to itself",
         [](VARIANT* result, EXCEPINFO*) {
             *result = itself;
             return S_OK;
         },
         u""},
        {"a reference",
         [](VARIANT* result, EXCEPINFO*) {
             result->vt = VT_BYREF | VT_I4;
             result->plVal = &number;
             return S_OK;
         },
         u"17"},
        {"a text",
         [](VARIANT* result, EXCEPINFO*) {
             *result = Variant(u"no number").detach();
             return S_OK;
         },
         u""},
        {"an array",
         [](VARIANT* result, EXCEPINFO*) {
             result->vt = VT_ARRAY | VT_I4;
             result->parray = SafeArrayCreateVector(VT_I4, 0, 3);
             return S_OK;
         },
         u""},
        {"no object",
         [](VARIANT* result, EXCEPINFO*) {
             result->vt = VT_DISPATCH;
             result->pdispVal = nullptr;
             return S_OK;
         },
         u""},
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
    TypeKey(VK_TAB);
    Settle();
    Type("7");
    TypeKey(VK_RETURN);
    Settle();
    EXPECT_EQ(list_, nullptr);
}

}  // namespace
}  // namespace qvx::host::designer
