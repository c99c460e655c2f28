// The property list over real controls on a form under design, driven by real keys and clicks.
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

TEST_F(PropertyListTest, RowsComeFromTypeInformationAndFromTheHost) {
    Show({u"cmdOk"});
    struct Case {
        const char16_t* name;
        PropertyKind kind;
        const char16_t* text;
        const char16_t* help;
    };
    const Case cases[] = {
        {u"Caption", PropertyKind::text, u"OK", u"The text on the button; the character after an & is its access key."},
        {u"BackColor", PropertyKind::color, u"&H8000000F&", u"The colour of the face."},
        {u"Behavior", PropertyKind::enumeration, u"2 - bSimpleHeavy",
         u"The border of the button at rest and under the mouse."},
        {u"DropDown", PropertyKind::boolean, u"False", u"Whether an arrow is drawn at the right edge."},
        {u"Font", PropertyKind::font, u"Tahoma, 8.25", u"The font of the caption."},
        {u"Width", PropertyKind::integer, u"1200", u"The width in twips."},
    };
    for (const Case& c : cases) {
        const PropertyRow& row = Row(c.name);
        EXPECT_EQ(row.info.kind, c.kind) << test::Narrow(c.name);
        EXPECT_FALSE(row.info.readOnly) << test::Narrow(c.name);
        EXPECT_EQ(row.reading.text, c.text);
        EXPECT_EQ(row.info.help, c.help);
    }
    EXPECT_FALSE(Has(u"Value")) << "it can only be written";
    EXPECT_FALSE(Has(u"ShowAbout")) << "it is a method";
    EXPECT_FALSE(Has(u"Object")) << "an object is nothing to edit";
    const auto& choices = Row(u"Behavior").info.choices;
    ASSERT_EQ(choices.size(), 3u);
    EXPECT_EQ(choices[1], (PropertyChoice{u"bFlatHeavy", std::int32_t{1}}));
}

TEST_F(PropertyListTest, GridsTextBoxesLabelsAndTheFormHaveTheirRows) {
    Show({u"grdItems"});
    EXPECT_FALSE(Has(u"TextMatrix")) << "it wants a row and a column";
    Show({u"txtName"});
    EXPECT_EQ(Row(u"MinValue").info.kind, PropertyKind::real);
    EXPECT_FALSE(Has(u"Default")) << "it is no button";
    Show({u"lblName"});
    EXPECT_EQ(Row(u"Alignment").reading.text, u"0 - Left");
    EXPECT_TRUE(list_->SetValue(u"Alignment", std::int32_t{2}));
    EXPECT_EQ(Row(u"Alignment").reading.text, u"2 - Center");
    const HWND label = form_->FindControl(u"lblName")->Window();
    EXPECT_EQ(GetWindowLongW(label, GWL_STYLE) & SS_TYPEMASK, SS_CENTER);
    EXPECT_EQ(WindowText(label), u"Name");
    list_->Show({{u"frmTest", nullptr, ComPtr<IDispatch>(form_->Automation()), nullptr}}, {u"frmTest"});
    EXPECT_EQ(Row(u"Caption").reading.text, u"Test");
    EXPECT_FALSE(Has(u"ActiveControl"));
    list_->Show({}, {});
    EXPECT_TRUE(list_->Table()->Lines().empty());
}

TEST_F(PropertyListTest, ATextIsTypedAndAppliedByEnterOrByLeaving) {
    Show({u"cmdOk"});
    const auto caption = [&] { return Value(u"cmdOk", L"Caption").ToText(); };
    Edit(u"Caption");
    EXPECT_EQ(FocusText(), u"OK");
    Type("Go");
    EXPECT_EQ(caption(), u"OK") << "not before Enter";
    Keys({VK_RETURN});
    EXPECT_EQ(caption(), u"Go");
    EXPECT_EQ(Row(u"Caption").reading.text, u"Go");
    Type("Gone");
    Keys({VK_ESCAPE});
    EXPECT_EQ(FocusText(), u"Go");
    Keys({VK_DOWN});
    EXPECT_EQ(caption(), u"Go") << "what was put back is not applied";
    EXPECT_EQ(notifications_, u"before changed:Caption ");
    Edit(u"Caption");
    Type("Left");
    Keys({VK_DOWN});
    EXPECT_EQ(caption(), u"Left");
    Edit(u"Caption");
    Type("Gone");
    SetFocus(frame_.Handle());
    Settle();
    EXPECT_EQ(caption(), u"Gone");
    // One of several lines is typed in its box.
    EXPECT_TRUE(list_->SetValue(u"Caption", Text(u"one\ntwo")));
    EXPECT_EQ(Row(u"Caption").reading.text, u"one\\ntwo");
    Edit(u"Caption");
    Keys({VK_F4});
    EXPECT_EQ(FocusText(), u"one\r\ntwo");
    TypeKey(VK_RETURN, {VK_CONTROL});
    Settle();
    EXPECT_EQ(caption(), u"one\ntwo") << "left alone, it stays what it was";
    Keys({VK_F4});
    Type("a");
    TypeKey(VK_RETURN);
    Type("b");
    TypeKey(VK_RETURN, {VK_CONTROL});
    Settle();
    EXPECT_EQ(caption(), u"a\r\nb");
    EXPECT_EQ(FocusText(), u"a\\r\\nb");
    // Leaving the box applies as well; Escape does not.
    Keys({VK_F4});
    Type("c");
    SetActiveWindow(frame_.Handle());
    Settle();
    EXPECT_EQ(caption(), u"c");
    list_->GoTo(u"Caption");
    Keys({VK_F4});
    Type("d");
    Keys({VK_ESCAPE});
    EXPECT_EQ(caption(), u"c");
}

TEST_F(PropertyListTest, ChoicesAndColorsArePickedAndCycled) {
    Show({u"cmdOk"});
    Edit(u"Behavior");
    Keys({VK_F4});
    ASSERT_EQ(test::ThreadWindows(L"QvxPropertyDropDown").size(), 1u);
    Keys({VK_HOME, VK_DOWN, VK_RETURN});
    EXPECT_EQ(Value(u"cmdOk", L"Behavior").ToLong(), 1);
    EXPECT_EQ(FocusText(), u"1 - bFlatHeavy");
    EXPECT_TRUE(test::ThreadWindows(L"QvxPropertyDropDown").empty());
    Keys({VK_F4});
    Keys({VK_UP, VK_ESCAPE});
    EXPECT_TRUE(WaitFor([] { return test::ThreadWindows(L"QvxPropertyDropDown").empty(); }));
    EXPECT_EQ(Value(u"cmdOk", L"Behavior").ToLong(), 1);
    Type("bsi");
    Keys({VK_RETURN});
    EXPECT_EQ(Value(u"cmdOk", L"Behavior").ToLong(), 2);
    // Two clicks on the value go on to the next choice.
    test::MoveMouseTo(test::CenterOf(GetFocus()));
    for (int i = 0; i < 2; ++i) test::LeftButton(true), test::LeftButton(false);
    Settle();
    EXPECT_EQ(Value(u"cmdOk", L"Behavior").ToLong(), 0);
    // A colour, from the palette and from the system's.
    list_->GoTo(u"BackColor");
    SetFocus(list_->RowsWindow());
    Settle();
    Keys({VK_F4});  // on the system's colours: the present one is among them
    Keys({VK_HOME, VK_RETURN});
    EXPECT_EQ(Row(u"BackColor").reading.text, u"&H80000000&");
    EXPECT_TRUE(list_->SetValue(u"BackColor", std::int32_t{0xFFFFFF}));
    Keys({VK_F4});
    Keys({VK_DOWN, VK_RIGHT, VK_RETURN});
    EXPECT_EQ(Row(u"BackColor").reading.text, u"&H00C0E0FF&");
    EXPECT_EQ(GetFocus(), list_->RowsWindow());
    Enter(u"BackColor", "Highlight");
    EXPECT_EQ(Row(u"BackColor").reading.text, u"&H8000000D&");
}

TEST_F(PropertyListTest, WhatIsRefusedIsSaidAndPutBack) {
    Show({u"cmdOk"});
    Edit(u"Behavior");
    Type("9");
    Text said;
    {
        test::Person person([&said] {
            const HWND box = test::WaitForWindow(test::systemDialog);
            said = WindowText(GetDlgItem(box, 0xFFFF));
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        });
        TypeKey(VK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return !said.empty() && !FindWindowW(test::systemDialog, nullptr); }));
    }
    Settle();
    EXPECT_EQ(said, u"Behavior: Invalid property value");
    EXPECT_EQ(Row(u"Behavior").reading.text, u"2 - bSimpleHeavy");
    EXPECT_EQ(FocusText(), u"2 - bSimpleHeavy");
    EXPECT_TRUE(notifications_.empty());
}

TEST_F(PropertyListTest, SeveralObjectsAreWrittenAtOnce) {
    Show({u"cmdOk", u"cmdNo"});
    EXPECT_FALSE(Has(u"Name"));
    EXPECT_EQ(Row(u"Caption").reading.text, u"");
    EXPECT_EQ(Row(u"Width").reading.text, u"1200");
    Enter(u"Caption", "Both");
    EXPECT_EQ(Value(u"cmdOk", L"Caption").ToText(), u"Both");
    EXPECT_EQ(Value(u"cmdNo", L"Caption").ToText(), u"Both");
    const FontSpec font{u"Tahoma", 12, FW_BOLD};
    EXPECT_TRUE(list_->SetValue(u"Font", font));
    EXPECT_EQ(Row(u"Font").reading.text, u"Tahoma, 12");
    const auto second = Value(u"cmdNo", L"Font").ToObject<IFont>();
    EXPECT_EQ(ReadFontObject(second.get()), font);
    EXPECT_FALSE(Value(u"cmdOk", L"Font").ToObject<IFont>() == second) << "each has a font of its own";
    Show({u"cmdOk", u"txtName", u"grdItems"});
    EXPECT_FALSE(Has(u"Caption"));
    EXPECT_TRUE(list_->SetValue(u"Enabled", false));
    EXPECT_EQ(Value(u"txtName", L"Enabled").ToBool(), false);
    notifications_.clear();
    EXPECT_FALSE(list_->SetValue(u"NoSuch", true));
    EXPECT_FALSE(list_->SetValue(u"Width", std::int32_t{-1}));
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_APP + 1, WM_APP + 1, PM_REMOVE)) << "the message to the user";
    EXPECT_EQ(notifications_, u"before ") << "nothing has changed";
    EXPECT_FALSE(list_->SetPicture(u"Enabled", u""));
}

TEST_F(PropertyListTest, KeysWalkAndSearch) {
    Show({u"cmdOk"});
    const HWND rows = list_->RowsWindow();
    list_->GoTo(u"Name");
    SetFocus(rows);
    ComPtr<IAccessible> accessible;
    ASSERT_TRUE(SUCCEEDED(
        AccessibleObjectFromWindow(rows, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, accessible.put_void())));
    const auto current = [&] {
        VARIANT focus{};
        accessible->get_accFocus(&focus);
        Bstr name;
        accessible->get_accName(focus, name.put());
        return test::Narrow(name.ToText());
    };
    Settle();
    EXPECT_EQ(current(), "Name");
    Keys({VK_DOWN});
    EXPECT_EQ(current(), "BackColor");
    TypeKey(VK_HOME);
    Type("fon");
    EXPECT_EQ(current(), "Font");
    // What assistive programs read and do.
    VARIANT item{};
    item.vt = VT_I4;
    long count = 0;
    ASSERT_EQ(accessible->get_accChildCount(&count), S_OK);
    EXPECT_EQ(static_cast<std::size_t>(count), list_->Table()->Lines().size());
    item.lVal = static_cast<long>(*list_->Table()->LineOf(u"Caption")) + 1;
    Bstr value;
    EXPECT_EQ(accessible->get_accValue(item, value.put()), S_OK);
    EXPECT_EQ(value.View(), u"OK");
    VARIANT role{};
    accessible->get_accRole(item, &role);
    EXPECT_EQ(role.lVal, ROLE_SYSTEM_LISTITEM);
    item.lVal = count + 1;
    EXPECT_EQ(accessible->get_accRole(item, &role), E_INVALIDARG);
}

// A button's description over a control that knows words and choices of its own, and has pages.
class TalkativeControl final : public ComObject<UntypedDispatch, IPerPropertyBrowsing, ISpecifyPropertyPages> {
  public:
    ComPtr<ITypeInfo> info;
    std::map<DISPID, Variant> values;

    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** out) override {
        *out = info.copy();
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                        UINT*) override {
        if (flags & DISPATCH_PROPERTYPUT) {
            values[member] = Variant(arguments->rgvarg[0]);
        } else {
            *result = Variant(values[member]).detach();
        }
        return S_OK;
    }
    STDMETHODIMP GetDisplayString(DISPID member, BSTR* text) override {
        if (member != DISPID_FOCUSRECT) return S_FALSE;
        *text = NewBstr(u"as it comes");
        return S_OK;
    }
    STDMETHODIMP MapPropertyToPage(DISPID, CLSID*) override { return PERPROP_E_NOPAGEAVAILABLE; }
    STDMETHODIMP GetPredefinedStrings(DISPID member, CALPOLESTR* names, CADWORD* cookies) override {
        if (member != DISPID_CAPTION) return E_NOTIMPL;
        const wchar_t* const words[] = {L"Short", L"Broken", L"Long"};
        names->cElems = 3;
        names->pElems = static_cast<LPOLESTR*>(CoTaskMemAlloc(3 * sizeof(LPOLESTR)));
        cookies->cElems = 3;
        cookies->pElems = static_cast<DWORD*>(CoTaskMemAlloc(3 * sizeof(DWORD)));
        for (DWORD i = 0; i < 3; ++i) {
            const std::size_t bytes = (wcslen(words[i]) + 1) * sizeof(wchar_t);
            names->pElems[i] = static_cast<LPOLESTR>(memcpy(CoTaskMemAlloc(bytes), words[i], bytes));
            cookies->pElems[i] = 40 + i;
        }
        return S_OK;
    }
    STDMETHODIMP GetPredefinedValue(DISPID, DWORD cookie, VARIANT* value) override {
        if (cookie == 41) return E_FAIL;
        *value = Variant(cookie == 40 ? u"s" : u"a long caption").detach();
        return S_OK;
    }
    STDMETHODIMP GetPages(CAUUID* pages) override {
        pages->cElems = 1;
        pages->pElems = static_cast<GUID*>(CoTaskMemAlloc(sizeof(GUID)));
        *pages->pElems = {};
        return S_OK;
    }

    static constexpr DISPID DISPID_FOCUSRECT = 1;

  private:
    ~TalkativeControl() override = default;
};

TEST_F(PropertyListTest, AControlMayOfferWordsChoicesAndPages) {
    const auto control = MakeObject<TalkativeControl>();
    SubjectOf(u"cmdOk").own->GetTypeInfo(0, LOCALE_USER_DEFAULT, control->info.put());
    control->values[DISPID_CAPTION] = Variant(u"s");
    control->values[TalkativeControl::DISPID_FOCUSRECT] = Variant(true);
    std::vector<std::size_t> pages;
    list_->onPages = [&](std::size_t subject) { pages.push_back(subject); };
    const PropertyListWindow::Subject subject{u"x", nullptr, control,
                                              ComPtr<IUnknown>(static_cast<IDispatch*>(control.get()))};
    list_->Show({subject}, {u"x"});
    EXPECT_EQ(Row(u"FocusRect").reading.text, u"as it comes");
    EXPECT_EQ(Row(u"Caption").reading.text, u"Short");
    EXPECT_EQ(Row(u"Caption").info.choices.size(), 2u) << "what has no value is no choice";
    Edit(u"Caption");
    Keys({VK_F4});
    Keys({VK_END, VK_RETURN});
    EXPECT_EQ(control->values[DISPID_CAPTION].ToText(), u"a long caption");
    Type("mine");
    Keys({VK_RETURN});
    EXPECT_EQ(control->values[DISPID_CAPTION].ToText(), u"mine");
    list_->GoTo(u"Custom");
    SetFocus(list_->RowsWindow());
    Keys({VK_RETURN});
    EXPECT_EQ(pages, std::vector<std::size_t>{0});
    list_->Show({subject, subject}, {u"x", u"x"});
    EXPECT_FALSE(Has(u"Custom"));
}

// The system's dialogs, with somebody in front of them.
TEST_F(PropertyListTest, ColoursAndFontsComeFromTheSystemsDialogs) {
    const auto person = [](const std::function<void()>& acts) {
        return std::make_unique<test::Person>([acts] {
            if (test::WaitForWindow(test::systemDialog)) acts();
        });
    };
    const auto open = [&](TextView name) {
        list_->GoTo(name);
        SetFocus(list_->RowsWindow());
        TypeKey(VK_F4);
        Settle(400);
    };
    const auto number = [](int value) {
        for (const char digit : std::to_string(value)) TypeKey(digit);
    };
    Show({u"cmdOk"});
    {
        const auto someone = person([&] {
            TypeKey('S', {VK_MENU});  // the size
            number(14);
            Sleep(200);
            TypeKey(VK_RETURN);
        });
        open(u"Font");
    }
    const auto font = Value(u"cmdOk", L"Font").ToObject<IDispatch>();
    EXPECT_EQ(Call(font.get(), L"Size").ToLong(), 14);
    EXPECT_EQ(Row(u"Font").reading.text, u"Tahoma, 14.25");
    {
        const auto someone = person([] { TypeKey(VK_ESCAPE); });
        open(u"Font");
    }
    EXPECT_EQ(Row(u"Font").reading.text, u"Tahoma, 14.25") << "called off";
    // From the box of colours by its button.
    open(u"BackColor");
    Keys({VK_TAB});
    EXPECT_EQ(FocusText(), u"&Other...");
    {
        const auto someone = person([&] {
            for (const auto& [key, value] : {std::pair('R', 16), std::pair('G', 32), std::pair('B', 48)}) {
                TypeKey(key, {VK_MENU});
                Sleep(100);
                number(value);
            }
            Sleep(200);
            TypeKey(VK_RETURN);
        });
        TypeKey(VK_RETURN);
        Settle(400);
    }
    EXPECT_EQ(Value(u"cmdOk", L"BackColor").ToLong(), 0x302010);
}

TEST_F(PropertyListTest, TheSelectorAndTheTabsLeadOn) {
    std::vector<std::size_t> picked;
    list_->onSelect = [&](std::size_t index) {
        picked.push_back(index);
        if (index == 3) Show({u"txtName"});
    };
    Show({u"cmdOk"});
    const HWND selector = FindWindowExW(list_->Handle(), nullptr, L"ComboBox", nullptr);
    EXPECT_EQ(SendMessageW(selector, CB_GETCURSEL, 0, 0), 1);
    SetFocus(selector);
    Keys({VK_DOWN, VK_DOWN});
    EXPECT_EQ(picked, (std::vector<std::size_t>{2, 3}));
    EXPECT_TRUE(Has(u"MinValue"));
    // Tab: the tabs, the rows' names, the value, and round to the selector.
    Keys({VK_TAB, VK_RIGHT});
    EXPECT_EQ(list_->Table()->Order(), PropertyOrder::categorized);
    Keys({VK_TAB});
    EXPECT_EQ(GetFocus(), list_->RowsWindow());
    list_->GoTo(u"Text");
    Keys({VK_TAB});
    EXPECT_EQ(GetParent(GetFocus()), list_->RowsWindow());
    TypeKey(VK_TAB, {VK_SHIFT});
    Settle();
    EXPECT_EQ(GetFocus(), list_->RowsWindow());
    Keys({VK_TAB, VK_TAB});
    EXPECT_EQ(GetFocus(), selector);
}

TEST_F(PropertyListTest, EverySizeWillDoAndNothingStaysBehind) {
    const auto make = [&](int width) {
        PropertyListWindow list;
        ASSERT_TRUE(list.Create(frame_.Handle(), {0, 0, width, width * 2}));
        list.Show({SubjectOf(u"grdItems")}, {u"grdItems"});
        list.SetOrder(PropertyOrder::categorized);
        UpdateWindow(list.RowsWindow());
        const RECT rows = test::AreaOf(list.RowsWindow());
        EXPECT_GE(rows.bottom, rows.top);
        if (width == 300) {
            EXPECT_GT(rows.bottom - rows.top, 200);
        }
    };
    for (const int dots : {96, 192}) {
        const DpiOverride dpi({dots, dots});
        for (const int width : {0, 1, 40, 300, 3000}) make(width);
        test::ExpectNothingLeftBehind(5, [&] { make(300); });
    }
}

}  // namespace
}  // namespace qvx::host::designer
