// The forms host's way into and out of scripts and property bags.
#include <gtest/gtest.h>

#include "com/font_object.h"
#include "host/event_sink_object.h"
#include "host/form_font.h"
#include "host/property_bag_object.h"
#include "host/script_engine_object.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/server_under_test.h"

namespace qvx::host {
namespace {

class Script {
  public:
    explicit Script(const char16_t* file, const char16_t* source)
        : engine_(nullptr, [this](const ScriptError& error) { errors.push_back(error); }) {
        engine_.Open(file);
        ran = engine_.Run(source);
    }
    ScriptEngine* operator->() { return &engine_; }

    std::vector<ScriptError> errors;
    bool ran = false;

  private:
    ScriptEngine engine_;
};

VARIANT Reference(VARTYPE type, void* variable) {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    return reference;
}

TEST(HostScript, TypedReferencesComeBackFromAScript) {
    // Also where the procedure fails after it has assigned them; what does not fit a variable leaves it alone.
    Script script(u"a.vbs",
                  u"Sub Change(L, S, V, Fixed)\n"
                  u"  L = L * 2 : S = S & \"!\" : V = \"was \" & V : Fixed = \"many\"\n"
                  u"  L.Nobody\n"
                  u"End Sub\n");
    ASSERT_TRUE(script.ran);
    LONG number = -5;
    LONG fixed = 5;
    BSTR text = SysAllocString(L"hey");
    Variant value(7);
    VARIANT arguments[] = {Reference(VT_I4, &number), Reference(VT_BSTR, &text), Reference(VT_VARIANT, value.ptr()),
                           Reference(VT_I4, &fixed)};
    EXPECT_FALSE(script->Call(u"Change", {&arguments[0], &arguments[1], &arguments[2], &arguments[3]}));
    EXPECT_EQ(number, -10);
    EXPECT_EQ(fixed, 5);
    EXPECT_EQ(Text(FromBstr(text)), u"hey!");
    EXPECT_EQ(value.ToText(), u"was 7");
    EXPECT_EQ(script.errors.size(), 1u);
    SysFreeString(text);
}

TEST(HostScript, JScriptAnswersByReturning) {
    Script script(u"a.js",
                  u"function Veto(row, cancel) { return row == 3; }\n"
                  u"function Silent(row, cancel) { cancel = true; }\n");
    ASSERT_TRUE(script.ran);
    for (const LONG row : {3L, 4L}) {
        VARIANT_BOOL cancel = VARIANT_FALSE;
        VARIANT first = Variant(row).detach();
        VARIANT second = Reference(VT_BOOL, &cancel);
        EXPECT_TRUE(script->Call(u"Veto", {&first, &second}));
        EXPECT_EQ(cancel != VARIANT_FALSE, row == 3);
        EXPECT_TRUE(script->Call(u"Silent", {&first, &second}));
        EXPECT_EQ(cancel != VARIANT_FALSE, row == 3);
    }
    EXPECT_FALSE(script->Has(u"veto"));
    EXPECT_TRUE(script->Call(u"Missing", {}));
    EXPECT_TRUE(script.errors.empty());
}

TEST(HostScript, ErrorsNameTheirLineOnce) {
    Script broken(u"a.vbs", u"Sub A()\nEnd Sub\nSub (\n");
    EXPECT_FALSE(broken.ran);
    ASSERT_EQ(broken.errors.size(), 1u);
    EXPECT_EQ(broken.errors[0].line, 3);

    Script failing(u"a.vbs", u"Sub A()\n  Dim x\n  x = 1\n  x.Nothing\nEnd Sub\n");
    ASSERT_TRUE(failing.ran);
    EXPECT_FALSE(failing->Call(u"A", {}));
    ASSERT_EQ(failing.errors.size(), 1u);
    EXPECT_EQ(failing.errors[0].line, 4);
    EXPECT_FALSE(failing.errors[0].message.empty());

    EXPECT_THROW(Script(u"a.txt", u""), std::exception);
}

// An exception has one number or the other, and words or none.
TEST(HostScript, WhatAnObjectSaysOfItsFailureIsReported) {
    const struct {
        WORD code;
        SCODE scode;
        const wchar_t* words;
        const char16_t* message;
    } cases[] = {
        {1001, 0, L"the drive is full", u"the drive is full"},
        {0, static_cast<SCODE>(0x800A003D), L"the drive is full", u"the drive is full"},
        {1001, 0, nullptr, u"error 1001"},
    };
    for (const auto& c : cases) {
        const auto object = MakeObject<test::LateBoundObject>();
        object->members[L"Save"];
        object->failure.emplace();
        object->failure->wCode = c.code;
        object->failure->scode = c.scode;
        object->failure->bstrDescription = SysAllocString(c.words);
        Script script(u"a.vbs", u"Sub A(Device)\n Device.Save\nEnd Sub\n");
        Variant device(static_cast<IDispatch*>(object.get()));
        EXPECT_FALSE(script->Call(u"A", {device.ptr()}));
        ASSERT_EQ(script.errors.size(), 1u);
        EXPECT_EQ(script.errors[0].message, c.message);
    }
}

// A control that describes its events by `info` and has a place to connect to for any.
class Source final : public ComObject<IProvideClassInfo, IConnectionPointContainer, IConnectionPoint> {
  public:
    explicit Source(ITypeInfo* info) : info_(info) {}
    STDMETHODIMP GetClassInfo(ITypeInfo** info) override { return *info = info_.copy(), S_OK; }
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint** point) override {
        return *point = this, AddRef(), S_OK;
    }
    STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IUnknown*, DWORD* cookie) override { return *cookie = 1, S_OK; }
    STDMETHODIMP Unadvise(DWORD) override { return S_OK; }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  private:
    ~Source() override = default;
    ComPtr<ITypeInfo> info_;
};

// Only what comes through IDispatch can be told to a script; anything else would be called by its place in a table.
TEST(EventSinks, ConnectToPlainDispatchInterfacesOnly) {
    constexpr INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
    const struct {
        TYPEKIND kind;
        UINT flags;
        INT role;
        bool connects;
    } cases[] = {
        {TKIND_DISPATCH, 0, wanted, true},
        {TKIND_DISPATCH, TYPEFLAG_FDUAL, wanted, false},
        {TKIND_INTERFACE, 0, wanted, false},
        {TKIND_DISPATCH, 0, IMPLTYPEFLAG_FDEFAULT, false},
        {TKIND_DISPATCH, 0, IMPLTYPEFLAG_FSOURCE, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        SCOPED_TRACE(c.flags);
        ComPtr<ICreateTypeLib2> library;
        ComPtr<ICreateTypeInfo> events;
        ComPtr<ICreateTypeInfo> component;
        ASSERT_EQ(CreateTypeLib2(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, L"unsaved.tlb", library.put()), S_OK);
        wchar_t eventsName[] = L"Events";
        wchar_t componentName[] = L"Thing";
        ASSERT_EQ(library->CreateTypeInfo(eventsName, c.kind, events.put()), S_OK);
        ASSERT_EQ(events->SetTypeFlags(c.flags), S_OK);
        ASSERT_EQ(library->CreateTypeInfo(componentName, TKIND_COCLASS, component.put()), S_OK);
        HREFTYPE reference = 0;
        ASSERT_EQ(component->AddRefTypeInfo(events.As<ITypeInfo>().get(), &reference), S_OK);
        ASSERT_EQ(component->AddImplType(0, reference), S_OK);
        ASSERT_EQ(component->SetImplTypeFlags(0, c.role), S_OK);
        const auto source = MakeObject<Source>(component.As<ITypeInfo>().get());
        const auto sink = MakeObject<EventSink>([](const Text&, const std::vector<VARIANT*>&) {});
        EXPECT_EQ(sink->Connect(static_cast<IProvideClassInfo*>(source.get())), c.connects);
        sink->Disconnect();
    }
}

TEST(PropertyBags, ReadingConvertsToTheTypeHintedAt) {
    const FormFile file = FormFile::Parse(
        "Begin A b\n Count = 3\n Color = &H80000012&\n Flag = -1 'True\n Word = \"12\"\n Size = 8.5\n"
        " BeginProperty Font\n  Name = \"Tahoma\"\n  Italic = -1 'True\n EndProperty\nEnd\n");
    FormPictures pictures;
    FontSpec base;
    base.points = 12;  // a whole number of pixels: the system rounds others
    const auto bag = MakeObject<ReadingBag>(file.form, Text(), base, pictures);
    const struct {
        const wchar_t* name;
        VARTYPE hint;
        HRESULT result;
        VARTYPE type;
        double number;
    } cases[] = {
        {L"count", VT_EMPTY, S_OK, VT_I4, 3},
        {L"Count", VT_I2, S_OK, VT_I2, 3},
        {L"Color", VT_UI4, S_OK, VT_UI4, 2147483666.0},
        {L"Color", VT_I4, S_OK, VT_I4, -2147483630.0},
        {L"Color", VT_I2, E_INVALIDARG, VT_I2, 0},
        {L"Word", VT_I4, S_OK, VT_I4, 12},
        {L"Size", VT_R4, S_OK, VT_R4, 8.5},
        {L"Missing", VT_I4, E_INVALIDARG, VT_I4, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.hint);
        Variant value;
        value.ptr()->vt = c.hint;
        EXPECT_EQ(bag->Read(c.name, value.ptr(), nullptr), c.result);
        EXPECT_EQ(value.Type(), c.type);
        if (c.result == S_OK) {
            EXPECT_EQ(value.To(VT_R8)->get().dblVal, c.number);
        } else {
            value.ptr()->vt = VT_EMPTY;
        }
    }
    Variant font;
    ASSERT_EQ(bag->Read(L"Font", font.put(), nullptr), S_OK);
    const FontSpec read = ReadFontObject(font.ToObject<IUnknown>().get());
    EXPECT_EQ(read.face, u"Tahoma");
    EXPECT_TRUE(read.italic);
    EXPECT_EQ(read.points, 12);
    EXPECT_EQ(bag->Asked().front(), u"count");
}

TEST(PropertyBags, WritingKeepsTheOrderAndRefusesWhatALineCannotHold) {
    FormPictures pictures;
    SavedProperties saved;
    const auto bag = MakeObject<WritingBag>(saved, pictures);
    FontSpec font;
    font.face = u"Tahoma";
    Variant color;
    color.ptr()->vt = VT_UI4;
    color.ptr()->ulVal = 0x80000005;
    const struct {
        const wchar_t* name;
        Variant value;
        HRESULT result;
    } writes[] = {
        {L"Text", Variant(u"a\r\nb"), S_OK},
        {L"Flag", Variant(true), S_OK},
        {L"Small", Variant(short{-3}), S_OK},
        {L"Font", Variant(static_cast<IDispatch*>(MakeFontObject(font).get())), S_OK},
        {L"BackColor", color, S_OK},
        {L"two words", Variant(1), E_INVALIDARG},
        {L"Object", Variant(static_cast<IDispatch*>(MakeObject<test::LateBoundObject>().get())), DISP_E_TYPEMISMATCH},
    };
    for (const auto& write : writes) {
        VARIANT value = write.value.get();
        EXPECT_EQ(bag->Write(write.name, &value), write.result);
    }

    FormFile file = FormFile::Parse("Begin A b\nEnd\n");
    MergeSaved(file.form, {}, saved, {}, MergeMode::changes);
    const std::string text = file.Write();
    EXPECT_TRUE(
        text.starts_with("Begin A b\n"
                         "   Text            =   \"a\" & Chr(13) & Chr(10) & \"b\"\n"
                         "   Flag            =   -1  'True\n"
                         "   Small           =   -3\n"
                         "   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851}\n"
                         "      Name            =   \"Tahoma\"\n"))
        << text;
    EXPECT_TRUE(text.ends_with("   EndProperty\n   BackColor       =   &H80000005&\nEnd\n")) << text;
}

}  // namespace
}  // namespace qvx::host
