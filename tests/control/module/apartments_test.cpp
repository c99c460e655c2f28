// Programs with more than one thread: several with forms, and others that call what stands on a form.
#include <olectl.h>

#include "Qvx.h"
#include "tests/control/module/apartment.h"
#include "tests/control/module/form_thread.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

TEST(Apartments, TwoThreadsShowControlsAtTheSameTime) {
    const auto rounds = [](bool types) {
        Form form;
        for (int i = 0; i < 25; ++i) {
            for (const CLSID* id : EachControlId()) {
                // Where the tests usually run, the system's own text boxes crash when two threads type into them at
                // the same time.
                if (types || (*id != CLSID_TextEdit && *id != CLSID_ComboGrid)) form.UseControl(*id);
            }
        }
    };
    ApartmentThread one(COINIT_APARTMENTTHREADED, [&] { rounds(true); });
    ApartmentThread other(COINIT_APARTMENTTHREADED, [&] { rounds(false); });
    EXPECT_TRUE(one.Ends());
    EXPECT_TRUE(other.Ends());
}

// The system finds a proxy for every interface of the type library without anything registered.
TEST(Apartments, EveryInterfaceHasAProxy) {
    const CLSID early{0x00020424, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    const CLSID late{0x00020420, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    ComPtr<ITypeLib> library;
    ASSERT_EQ(S_OK, LoadTypeLibEx(L"Qvx.ocx", REGKIND_NONE, library.put()));
    int interfaces = 0;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(S_OK, library->GetTypeInfo(i, info.put()));
        ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
        const bool dual = attributes->wTypeFlags & TYPEFLAG_FDUAL;
        const bool of = attributes->typekind == TKIND_DISPATCH || attributes->typekind == TKIND_INTERFACE;
        const IID iid = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        if (!of) continue;
        CLSID proxy = CLSID_NULL;
        EXPECT_EQ(S_OK, CoGetPSClsid(iid, &proxy)) << Narrow(FromWide(Spell(iid).c_str()));
        EXPECT_EQ(Spell(dual ? early : late), Spell(proxy)) << Narrow(FromWide(Spell(iid).c_str()));
        ++interfaces;
    }
    EXPECT_EQ(21, interfaces);
}

// The manifest names the classes for programs, too.
TEST(Apartments, EveryControlIsFoundByItsName) {
    for (const NamedControl& control : namedControls) {
        const std::string name = std::string("Qvx.") + control.name;
        CLSID id = CLSID_NULL;
        EXPECT_EQ(S_OK, CLSIDFromProgID(std::wstring(name.begin(), name.end()).c_str(), &id)) << name;
        // The system gives the program identifier an alias of the class that is good in this context.
        const auto object = CreateByClass(id);
        ASSERT_TRUE(object) << name;
        EXPECT_EQ(S_OK, object.As<IOleObject>()->GetUserClassID(&id));
        EXPECT_TRUE(id == *control.id) << name;
    }
}

void CallAcross(IUnknown* object) {
    const auto control = Query<IDispatch>(object);
    ASSERT_TRUE(control);
    // By name and by the interface, with texts, numbers and objects.
    if (const auto button = control.As<_Button>()) {
        Put(control.get(), L"Caption", {Variant(u"&Sauv\u00E9")});
        Bstr caption;
        EXPECT_EQ(S_OK, button->get_Caption(caption.put()));
        EXPECT_EQ(u"&Sauv\u00E9", caption.ToText());
        ComPtr<IFontDisp> font;
        EXPECT_EQ(S_OK, button->get_Font(font.put()));
        EXPECT_TRUE(font);
        // The caller's own handlers are called on a thread of its own.
        const auto recorder = MakeObject<EventRecorder>();
        const Connection connection(control.get(), DIID___Button, recorder.get());
        EXPECT_EQ(S_OK, button->put_Value(VARIANT_TRUE));
        EXPECT_EQ(1u, recorder->Count(DISPID_CLICK));
    } else if (const auto grid = control.As<_ComboGrid>()) {
        EXPECT_EQ(S_OK, grid->put_Rows(7));
        EXPECT_EQ(7, Call(control.get(), L"Rows").ToLong());
        ComPtr<IDispatch> inner;
        EXPECT_EQ(S_OK, grid->Grid(inner.put()));
        long rows = 0;
        ASSERT_TRUE(inner.As<IFlexGrid>());
        EXPECT_EQ(S_OK, inner.As<IFlexGrid>()->get_Rows(&rows));
        EXPECT_EQ(7, rows);
        const CallResult refused = Invoke(control.get(), L"Row", DISPATCH_PROPERTYPUT, {Variant(99).get()});
        EXPECT_EQ(DISP_E_EXCEPTION, refused.result);
        EXPECT_EQ(u"Invalid Row value.", refused.description);
    } else {
        const struct {
            IID own;
            const wchar_t* member;
            Variant value;
        } others[] = {
            {IID__TextEdit, L"MinValue", Variant(-2.5)},        {IID__RButton, L"UpTopColor", Variant(0x123456)},
            {IID__FlatBorder, L"InnerBorder", Variant(0x1234)}, {IID__CMenus, L"ImageList", Variant(u"img")},
            {IID__Backup, L"ZipPath", Variant(u"C:\\Zip")},
        };
        int arrived = 0;
        for (const auto& other : others) {
            ComPtr<IDispatch> own;
            if (FAILED(object->QueryInterface(other.own, own.put_void()))) continue;
            ++arrived;
            Put(own.get(), other.member, {other.value});
            EXPECT_EQ(other.value.ToText(), Call(own.get(), other.member).ToText());
        }
        EXPECT_EQ(1, arrived);
    }
}

class Across : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, Across, ::testing::ValuesIn(EachControlId()), ControlName);

// A worker thread calls a control on the form of this one.
TEST_P(Across, AWorkerCallsAControlOnAForm) {
    Container container(HostInMode(true));
    container.Place(CreateByClass(*GetParam()));
    container.Activate();
    ComPtr<IStream> stream;
    ASSERT_EQ(S_OK, CoMarshalInterThreadInterfaceInStream(IID_IUnknown, container.Control(), stream.put()));
    ApartmentThread worker(COINIT_MULTITHREADED, [&] {
        ComPtr<IUnknown> control;
        ASSERT_EQ(S_OK, CoGetInterfaceAndReleaseStream(stream.detach(), IID_IUnknown, control.put_void()));
        CallAcross(control.get());
    });
    EXPECT_TRUE(worker.Ends());
}

// A worker thread makes a control, which the system puts on a thread that has a message loop.
TEST_P(Across, AWorkerMakesAControl) {
    ApartmentThread worker(COINIT_MULTITHREADED, [] { CallAcross(CreateByClass(*GetParam()).get()); });
    EXPECT_TRUE(worker.Ends());
}

}  // namespace
}  // namespace qvx::test
