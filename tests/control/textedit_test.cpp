// What a TextEdit control keeps, answers and looks like; what is typed into it is in textedit_typing_test.cpp.
#include <gtest/gtest.h>

#include "com/font_object.h"
#include "tests/control/textedit_form.h"
#include "tests/support/input.h"

namespace qvx::test {
namespace {

HRESULT Scode(int number) { return static_cast<HRESULT>(0x800A0000U + static_cast<unsigned>(number)); }

HRESULT PutFails(IDispatch* object, const wchar_t* name, const Variant& value) {
    return Invoke(object, name, DISPATCH_PROPERTYPUT, {value.get()}).scode;
}

SIZEL ExtentOf(IUnknown* control) {
    SIZEL size{};
    Query<IOleObject>(control)->GetExtent(DVASPECT_CONTENT, &size);
    return size;
}

TEST(TextEdit, ANewOneShowsItsNameAndSavesNothing) {
    const TextEditForm form;
    EXPECT_EQ(form.Shown(), u"TextEdit1");
    EXPECT_EQ(SaveToBag(form.container->Control())->Print(), u"");
    // 1215 x 375 twips
    const SIZEL size = ExtentOf(ServerUnderTest::Get().Create(CLSID_TextEdit).get());
    EXPECT_EQ(size.cx, (1215 * 2540 + 720) / 1440);
    EXPECT_NEAR(size.cy, 375 * 2540 / 1440, 1);
}

TEST(TextEdit, SavesInItsOrder) {
    const TextEditForm form;
    struct {
        const wchar_t* name;
        Variant value;
    } const values[] = {
        {L"Boundaries", Variant(true)},     {L"Appearance", Variant(0)},       {L"DecimalPlaces", Variant(3)},
        {L"AutoSelection", Variant(false)}, {L"Locked", Variant(true)},        {L"Enabled", Variant(false)},
        {L"MaxValue", Variant(99.5)},       {L"MinValue", Variant(-1.5)},      {L"UseEnterKey", Variant(true)},
        {L"AllowEmpty", Variant(false)},    {L"DataType", Variant(2)},         {L"ToolTipText", Variant(u"price")},
        {L"Text", Variant(u"12.3456")},     {L"MaxLength", Variant(9)},        {L"Alignment", Variant(1)},
        {L"BorderStyle", Variant(0)},       {L"ForeColor", Variant(0x0000FF)}, {L"BackColor", Variant(0xFFFFFF)}};
    for (const auto& v : values) form.Set(v.name, v.value);
    EXPECT_EQ(SaveToBag(form.container->Control())->Print(),
              u"BackColor=16777215\nForeColor=255\nBorderStyle=0\nAlignment=1\nMaxLength=9\nText=12.346\n"
              u"ToolTipText=price\nDataType=2\nAllowEmpty=False\nUseEnterKey=True\nMinValue=-1.5\nMaxValue=99.5\n"
              u"Enabled=False\nLocked=True\nAutoSelection=False\nDecimalPlaces=3\nAppearance=0\nBoundaries=True\n");
}

TEST(TextEdit, LoadingNormalisesOnceAndReportsWhatFails) {
    struct {
        const char* name;
        std::vector<std::pair<std::wstring, Variant>> stored;
        int error;
        TextView text;
    } const cases[] = {
        {"as typed", {{L"Text", Variant(u"1e2")}, {L"DataType", Variant(2)}}, 0, u"100.00"},
        {"no such border", {{L"BorderStyle", Variant(7)}}, 380, u""},
        {"no such length", {{L"MaxLength", Variant(-1)}}, 380, u""},
        {"and in a box of digits", {{L"DecimalPlaces", Variant(-1)}, {L"DataType", Variant(1)}}, 5, u""},
        {"nonsense", {{L"DataType", Variant(u"?")}, {L"MinValue", Variant(u"?")}, {L"Text", Variant(u"9")}}, 0, u"9"},
    };
    for (const auto& c : cases) {
        const auto bag = MakeObject<MemoryBag>();
        for (const auto& [name, value] : c.stored) bag->Set(name, value);
        const auto control = ServerUnderTest::Get().Create(CLSID_TextEdit);
        const HRESULT result = LoadFromBag(control.get(), bag.get());
        EXPECT_EQ(result, c.error == 0 ? S_OK : Scode(c.error)) << c.name;
        const auto box = control.As<IDispatch>();
        if (c.error == 0) {
            EXPECT_EQ(Call(box.get(), L"Text").ToText(), c.text) << c.name;
        }
        // Usable whatever happened.
        Put(box.get(), L"DecimalPlaces", {Variant(1)});
        Put(box.get(), L"DataType", {Variant(2)});
        Put(box.get(), L"Text", {Variant(u"2")});
        EXPECT_EQ(Call(box.get(), L"Text").ToText(), u"2.0") << c.name;
    }
}

TEST(TextEdit, SettersTellTheHostBeforeTheTextFollows) {
    const TextEditForm form;
    const auto listener = MakeObject<PropertyListener>();
    const Connection connection(form.container->Control(), IID_IPropertyNotifySink, listener.get());
    // Stored and told of, although the text cannot follow.
    form.Set(L"DataType", Variant(2));
    EXPECT_EQ(PutFails(form.box.get(), L"DecimalPlaces", Variant(-1)), Scode(5));
    EXPECT_EQ(Call(form.box.get(), L"DecimalPlaces").ToText(), u"-1");
    EXPECT_EQ(PutFails(form.box.get(), L"Text", Variant(u"5")), Scode(5));
    EXPECT_EQ(PutFails(form.box.get(), L"BorderStyle", Variant(2)), Scode(380));
    EXPECT_EQ(PutFails(form.box.get(), L"MaxLength", Variant(-2)), Scode(380));
    form.Set(L"DecimalPlaces", Variant(0));
    form.Set(L"Text", Variant(u"2.5"));
    EXPECT_EQ(form.Shown(), u"3");
    EXPECT_EQ(listener->changed, (std::vector<DISPID>{4, 11, 11, DISPID_VALUE}));
    // A number of digits does not follow its places.
    form.Set(L"DataType", Variant(1));
    form.Set(L"Text", Variant(u"7.25"));
    form.Set(L"DecimalPlaces", Variant(1));
    EXPECT_EQ(form.Shown(), u"7.25");
    form.Set(L"DataType", Variant(2));
    EXPECT_EQ(form.Shown(), u"7.3");
}

TEST(TextEdit, TheTextDecidesTheHeight) {
    TextEditForm form;
    form.container->ActivateUi();
    RECT bounds = AreaOf(form.container->ControlWindow());
    const int height = bounds.bottom - bounds.top;
    EXPECT_GT(height, 12);
    EXPECT_LT(height, 30);
    RECT inner = AreaOf(form.Edit());
    EXPECT_TRUE(EqualRect(&bounds, &inner));
    for (const int wanted : {10, 19, 100}) {
        form.container->MoveTo({20, 20, 20 + 150, 20 + wanted});
        bounds = AreaOf(form.container->ControlWindow());
        inner = AreaOf(form.Edit());
        EXPECT_EQ(bounds.bottom - bounds.top, height) << wanted;
        EXPECT_TRUE(EqualRect(&bounds, &inner)) << wanted;
    }
    form.Set(L"BorderStyle", Variant(0));
    bounds = AreaOf(form.container->ControlWindow());
    EXPECT_EQ(bounds.bottom - bounds.top, height - 4);
    Put(Call(form.box.get(), L"Font").ToObject<IDispatch>().get(), L"Size",
        {Variant(24)});  // also in steps of a bitmap font
    bounds = AreaOf(form.container->ControlWindow());
    EXPECT_GT(bounds.bottom - bounds.top, height + 8);
}

TEST(TextEdit, TheInnerBoxIsReachable) {
    TextEditForm form;
    const auto inner = form.Inner();
    const auto round = [&] {
        Put(inner.get(), L"Text", {Variant(u"hello world")});
        Put(inner.get(), L"SelStart", {Variant(6)});
        Put(inner.get(), L"SelLength", {Variant(100)});
        EXPECT_EQ(Call(inner.get(), L"SelText").ToText(), u"world");
        Put(inner.get(), L"SelText", {Variant(u"box")});
        EXPECT_EQ(form.Shown(), u"hello box");
        EXPECT_EQ(Call(inner.get(), L"SelStart").ToText(), u"9");
        EXPECT_EQ(PutFails(inner.get(), L"SelStart", Variant(-1)), Scode(380));
        Put(inner.get(), L"MaxLength", {Variant(4)});
        Put(inner.get(), L"Text", {Variant(u"longer")});
        EXPECT_EQ(form.Shown(), u"long");
        Put(inner.get(), L"MaxLength", {Variant(0)});
    };
    round();
    form.container->ActivateUi();
    round();
    EXPECT_EQ(Call(inner.get(), L"hWnd").ToLong(), static_cast<long>(reinterpret_cast<LONG_PTR>(form.Edit())));
    // A new window for another alignment keeps what the old one had.
    Put(inner.get(), L"SelStart", {Variant(2)});
    Put(inner.get(), L"Alignment", {Variant(2)});
    EXPECT_EQ(GetWindowLongW(form.Edit(), GWL_STYLE) & ES_CENTER, ES_CENTER);
    EXPECT_EQ(form.Shown(), u"long");
    EXPECT_EQ(Call(inner.get(), L"SelStart").ToText(), u"2");
    // One font for both.
    Put(Call(inner.get(), L"Font").ToObject<IDispatch>().get(), L"Bold", {Variant(true)});
    EXPECT_EQ(Call(Call(form.box.get(), L"Font").ToObject<IDispatch>().get(), L"Bold").ToBool(), true);
}

}  // namespace
}  // namespace qvx::test
