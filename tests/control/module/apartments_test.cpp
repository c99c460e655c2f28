// Programs with more than one thread: several with forms, and others that call what stands on a form.
#include <olectl.h>

#include <optional>

#include "Qvx.h"
#include "tests/control/module/apartment.h"
#include "tests/control/module/form_thread.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

// One of several threads at a time. Messages that other threads send are handled while one waits.
class Turn {
  public:
    explicit Turn(HANDLE mutex) : mutex_(mutex) {
        MSG message;
        while (MsgWaitForMultipleObjects(1, &mutex_, FALSE, INFINITE, QS_SENDMESSAGE) != WAIT_OBJECT_0) {
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
        }
    }
    ~Turn() { ReleaseMutex(mutex_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    HANDLE mutex_;
};

TEST(Apartments, TwoThreadsShowControlsAtTheSameTime) {
    const HANDLE boxes = CreateMutexW(nullptr, FALSE, nullptr);
    const auto rounds = [boxes] {
        Form form;
        for (int i = 0; i < 25; ++i) {
            for (const CLSID* id : EachControlId()) {
                // Where the tests usually run, the system's own text boxes crash when two threads type into them at
                // the same time.
                std::optional<Turn> turn;
                if (*id == CLSID_TextEdit || *id == CLSID_ComboGrid) turn.emplace(boxes);
                form.UseControl(*id);
            }
        }
    };
    {
        ApartmentThread one(COINIT_APARTMENTTHREADED, rounds);
        ApartmentThread other(COINIT_APARTMENTTHREADED, rounds);
        EXPECT_TRUE(one.Ends());
        EXPECT_TRUE(other.Ends());
    }
    CloseHandle(boxes);
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
    EXPECT_EQ(19, interfaces);
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
    } else if (const auto box = control.As<_TextEdit>()) {
        EXPECT_EQ(S_OK, box->put_MinValue(-2.5));
        EXPECT_EQ(-2.5, Call(control.get(), L"MinValue").ToDouble());
    } else if (const auto rounded = control.As<_RButton>()) {
        EXPECT_EQ(S_OK, rounded->put_UpTopColor(0x123456));
        EXPECT_EQ(0x123456, Call(control.get(), L"UpTopColor").ToLong());
    } else if (const auto border = control.As<_FlatBorder>()) {
        EXPECT_EQ(S_OK, border->put_InnerBorder(0x123456));
        EXPECT_EQ(0x123456, Call(control.get(), L"InnerBorder").ToLong());
    } else if (const auto menus = control.As<_CMenus>()) {
        EXPECT_EQ(S_OK, menus->put_ImageList(Bstr(u"img").get()));
        EXPECT_EQ(u"img", Call(control.get(), L"ImageList").ToText());
    } else if (const auto backup = control.As<_Backup>()) {
        EXPECT_EQ(S_OK, backup->put_ZipPath(Bstr(u"C:\\Zip").get()));
        EXPECT_EQ(u"C:\\Zip", Call(control.get(), L"ZipPath").ToText());
    } else {
        ADD_FAILURE() << "none of its interfaces arrives";
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
