// Late-bound calls as scripts make them: names, optional arguments, by-reference variants, errors.
#include <gtest/gtest.h>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

// Into variables of every type that events and methods use, directly and through a variant that refers on to them.
TEST(StoreThroughReference, ConvertsToTheVariablesType) {
    const auto into = [](VARTYPE type, void* variable, const Variant& value) {
        VARIANT typed{};
        typed.vt = static_cast<VARTYPE>(VT_BYREF | type);
        typed.byref = variable;
        VARIANT outer{};
        outer.vt = VT_BYREF | VT_VARIANT;
        outer.pvarVal = &typed;
        EXPECT_EQ(StoreThrough(typed, value), StoreThrough(outer, value)) << type;
        return StoreThrough(outer, value);
    };
    BYTE byte = 0;
    SHORT small = 0;
    LONG number = 0;
    LONGLONG large = 0;
    float single = 0;
    double real = 0;
    VARIANT_BOOL flag = VARIANT_FALSE;
    BSTR text = SysAllocString(L"former");
    EXPECT_TRUE(into(VT_UI1, &byte, Variant(200)) && byte == 200);
    EXPECT_TRUE(into(VT_I2, &small, Variant(u"-3")) && small == -3);
    EXPECT_TRUE(into(VT_I4, &number, Variant(7.0)) && number == 7);
    EXPECT_TRUE(into(VT_I8, &large, Variant(u"5000000000")) && large == 5000000000);
    EXPECT_TRUE(into(VT_R4, &single, Variant(0.5)) && single == 0.5f);
    EXPECT_TRUE(into(VT_R8, &real, Variant(u"2.5")) && real == 2.5);
    EXPECT_TRUE(into(VT_BOOL, &flag, Variant(1)) && flag == VARIANT_TRUE);
    EXPECT_TRUE(into(VT_BSTR, &text, Variant(u"")));
    EXPECT_EQ(u"", Text(FromBstr(text)));
    SysFreeString(text);

    EXPECT_FALSE(into(VT_I4, &number, Variant(u"many")));
    EXPECT_FALSE(into(VT_I2, &small, Variant(40000)));
    EXPECT_EQ(7, number);
    EXPECT_EQ(-3, small);
    EXPECT_FALSE(StoreThrough(Variant(1).get(), Variant(2))) << "a value leads to no variable";

    const auto object = MakeObject<LateBoundObject>();
    IDispatch* held = ComPtr<IDispatch>(object.get()).detach();
    EXPECT_TRUE(into(VT_DISPATCH, &held, Variant(static_cast<IDispatch*>(nullptr))));
    EXPECT_EQ(nullptr, held);
    EXPECT_TRUE(into(VT_DISPATCH, &held, Variant(static_cast<IDispatch*>(object.get()))));
    ASSERT_EQ(object.get(), held);
    held->AddRef();
    EXPECT_EQ(2u, held->Release()) << "the test's own and the variable's";
    held->Release();
}

class LateBound : public ::testing::Test {
  protected:
    LateBound() : container_({}) {
        container_.Place(ServerUnderTest::Get().Create(CLSID_ComboGrid));
        grid_ = container_.Automation();
        Put(grid_.get(), L"FormatString", {Variant(u"No|Name|Price")});
        Put(grid_.get(), L"Rows", {Variant(3)});
    }
    Container container_;
    ComPtr<IDispatch> grid_;
};

VARIANT Reference(Variant& variable) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = variable.ptr();
    return reference;
}

TEST_F(LateBound, ValuesAreConverted) {
    for (const Variant& rows : {Variant(5), Variant(5.0), Variant(u"5"), Variant(static_cast<short>(5))}) {
        Put(grid_.get(), L"Rows", {Variant(2)});
        Put(grid_.get(), L"Rows", {rows});
        EXPECT_EQ(5, Call(grid_.get(), L"Rows").ToLong());
    }
    Variant variable(7);
    EXPECT_EQ(S_OK, Invoke(grid_.get(), L"Rows", DISPATCH_PROPERTYPUT, {Reference(variable)}).result);
    EXPECT_EQ(7, Call(grid_.get(), L"rows").ToLong()) << "names compare without case";
    EXPECT_EQ(DISP_E_UNKNOWNNAME, Invoke(grid_.get(), L"Nothing", DISPATCH_METHOD).result);
    EXPECT_EQ(E_POINTER, grid_->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr));
}

// A method writes into the caller's variable, whatever that holds and however it is passed.
TEST_F(LateBound, ByReferenceArgumentsComeBack) {
    Put(grid_.get(), L"InActiveColumns", {Variant(u";Price;")});
    const auto next = [&](VARIANT argument) {
        return Invoke(grid_.get(), L"GetNextColumn", DISPATCH_METHOD, {argument});
    };
    for (Variant variable : {Variant(2), Variant(static_cast<short>(2)), Variant(2.0), Variant(u"2")}) {
        const CallResult call = next(Reference(variable));
        EXPECT_EQ(S_OK, call.result);
        EXPECT_EQ(1, call.value.ToLong());
        EXPECT_EQ(1, variable.ToLong()) << "column 2 is inactive: the search started again at the first data column";
    }
    VARIANT typed{};
    short small = 2;
    typed.vt = VT_BYREF | VT_I2;
    typed.piVal = &small;
    EXPECT_EQ(S_OK, next(typed).result);
    EXPECT_EQ(1, small) << "the variable's own type is the one that is written";
    // A value without a variable behind it serves too.
    EXPECT_EQ(1, next(Variant(2).get()).value.ToLong());
    Variant wrong(u"second");
    EXPECT_EQ(DISP_E_TYPEMISMATCH, next(Reference(wrong)).result);
    EXPECT_EQ(u"second", wrong.ToText());
}

TEST_F(LateBound, OptionalArgumentsMayBeLeftOut) {
    Call(grid_.get(), L"AddItem", {Variant(u"a\tb")});
    Call(grid_.get(), L"AddItem", {Variant(u"c"), Variant::Missing()});
    EXPECT_EQ(u"c", Call(grid_.get(), L"TextMatrix", {Variant(4), Variant(0)}).ToText());
    Variant index(1);
    EXPECT_EQ(S_OK,
              Invoke(grid_.get(), L"AddItem", DISPATCH_METHOD, {Variant(u"first").get(), Reference(index)}).result);
    EXPECT_EQ(u"first", Call(grid_.get(), L"TextMatrix", {Variant(1), Variant(0)}).ToText());
}

// Run-time errors reach scripts as their number, with a source and a description.
TEST_F(LateBound, ErrorsAreRich) {
    const CallResult row = Invoke(grid_.get(), L"Row", DISPATCH_PROPERTYPUT, {Variant(99).get()});
    EXPECT_EQ(static_cast<HRESULT>(0x800A0000 + 30009), row.scode);
    EXPECT_EQ(u"Qvx", row.source);
    EXPECT_EQ(u"Invalid Row value.", row.description);
    // Early-bound callers get the number itself and the same description.
    const auto direct = grid_.As<_ComboGrid>();
    EXPECT_EQ(static_cast<HRESULT>(0x800A0000 + 30009), direct->put_Row(99));
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(S_OK, GetErrorInfo(0, info.put()));
    Bstr description;
    EXPECT_EQ(S_OK, info->GetDescription(description.put()));
    EXPECT_EQ(u"Invalid Row value.", description.ToText());
    EXPECT_EQ(S_OK, grid_.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID__ComboGrid));
}

}  // namespace
}  // namespace qvx::test
