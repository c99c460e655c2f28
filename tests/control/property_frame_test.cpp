// The frame of property pages over a page of the test's own: when it applies, refuses and closes.
#include "designer/editors/property_frame_dialog.h"

#include "common/run_time_error.h"
#include "host/sited_control.h"
#include "tests/control/designer_form.h"
#include "tests/support/input.h"

namespace qvx::host::designer {
namespace {

constexpr CLSID pageClass{0x7B0E2A54, 0x3D1F, 0x4F0B, {0x9C, 0x11, 0x52, 0x40, 0x6A, 0x8E, 0x77, 0x01}};

// A page that sets a caption when it is applied.
class CaptionPage final : public ComObject<IPropertyPage> {
  public:
    bool dirty = false;
    HRESULT applies = S_OK;
    std::string calls;
    ComPtr<IPropertyPageSite> site;
    ComPtr<IDispatch> object;

    STDMETHODIMP SetPageSite(IPropertyPageSite* given) override {
        site = ComPtr<IPropertyPageSite>(given);
        calls += given ? "site " : "nosite ";
        return S_OK;
    }
    STDMETHODIMP Activate(HWND, LPCRECT area, BOOL) override {
        EXPECT_GE(area->right, 400);
        EXPECT_GE(area->bottom, 200);
        calls += "activate ";
        return S_OK;
    }
    STDMETHODIMP Deactivate() override {
        calls += "deactivate ";
        return S_OK;
    }
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override {
        info->pszTitle = static_cast<LPOLESTR>(CoTaskMemAlloc(20));
        lstrcpyW(info->pszTitle, L"Caption");
        info->pszDocString = nullptr;
        info->pszHelpFile = nullptr;
        info->size = {400, 200};
        return S_OK;
    }
    STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override {
        object = count ? ComPtr<IUnknown>(objects[0]).As<IDispatch>() : nullptr;
        return S_OK;
    }
    STDMETHODIMP Show(UINT command) override {
        calls += command == SW_HIDE ? "hide " : "show ";
        return S_OK;
    }
    STDMETHODIMP Move(LPCRECT) override { return S_OK; }
    STDMETHODIMP IsPageDirty() override { return dirty ? S_OK : S_FALSE; }
    STDMETHODIMP Apply() override {
        calls += "apply ";
        if (FAILED(applies)) return applies;
        dirty = false;
        const Variant caption(u"By page");
        Invoke(object.get(), L"Caption", DISPATCH_PROPERTYPUT, {*caption.ptr()});
        return S_OK;
    }
    STDMETHODIMP Help(LPCOLESTR) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }

  private:
    ~CaptionPage() override = default;
};

class PageFactory final : public ComObject<IClassFactory> {
  public:
    explicit PageFactory(ComPtr<CaptionPage> page) : page_(std::move(page)) {}
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return page_->QueryInterface(iid, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

  private:
    ~PageFactory() override = default;
    ComPtr<CaptionPage> page_;
};

class PageTest : public DesignerTest {
  protected:
    PageTest() : page_(MakeObject<CaptionPage>()) {
        const auto factory = MakeObject<PageFactory>(page_);
        CoRegisterClassObject(pageClass, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    ~PageTest() override { CoRevokeClassObject(cookie_); }

    // The frame over cmdOk; what somebody does there runs beside it.
    bool Ask(std::vector<CLSID> pages, const std::function<void(HWND frame)>& acts) {
        const auto frame = PropertyFrame::Make(
            designer_->Handle(), u"cmdOk", dynamic_cast<SitedControl*>(Control(u"cmdOk"))->Object(), pages, source_);
        test::Person person([&] { acts(WaitForEditor()); });
        return frame->Ask(designer_->Handle());
    }
    Text Caption() { return Call(Members(u"cmdOk").get(), L"Caption").ToText().value_or(Text()); }
    static HWND ApplyButton(HWND frame) { return FindWindowExW(frame, nullptr, nullptr, L"&Apply"); }

    ComPtr<CaptionPage> page_;
    DWORD cookie_ = 0;
};

TEST_F(PageTest, OkAndApplyApplyWhatIsDirtyAndCancelDoesNot) {
    EXPECT_TRUE(Ask({pageClass}, [&](HWND frame) {
        EXPECT_FALSE(IsWindowEnabled(ApplyButton(frame)));
        TypeKey(VK_RETURN);
    }));
    EXPECT_EQ(Caption(), u"OK") << "nothing was dirty";
    EXPECT_EQ(page_->calls, "site activate show hide deactivate nosite ");
    page_->calls.clear();
    page_->dirty = true;
    EXPECT_TRUE(Ask({pageClass}, [](HWND) { TypeKey(VK_RETURN); }));
    EXPECT_EQ(Caption(), u"By page");
    EXPECT_TRUE(WaitFor([&] { return designer_->Session().Form().Dirty(); }));
    EXPECT_TRUE(designer_->Do(Command::undo));
    EXPECT_EQ(Caption(), u"OK");
    // Cancel applies nothing; Apply does, and the frame stays open.
    page_->dirty = true;
    EXPECT_FALSE(Ask({pageClass}, [](HWND) { TypeKey(VK_ESCAPE); }));
    EXPECT_EQ(Caption(), u"OK");
    EXPECT_FALSE(Ask({pageClass}, [&](HWND frame) {
        PostMessageW(frame, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(ApplyButton(frame)), BN_CLICKED), 0);
        EXPECT_TRUE(WaitFor([&] { return !page_->dirty; }, 5000, false));
        Sleep(100);
        TypeKey(VK_ESCAPE);
    }));
    EXPECT_EQ(Caption(), u"By page");
}

TEST_F(PageTest, APageThatRefusesKeepsTheFrameOpenAndOneThatIsMissingIsLeftOut) {
    page_->dirty = true;
    page_->applies = E_FAIL;
    EXPECT_FALSE(Ask({CLSID{1, 2, 3, {}}, pageClass}, [&](HWND frame) {
        TypeKey(VK_RETURN);
        if (test::WaitForWindow(test::systemDialog)) TypeKey(VK_RETURN);
        EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == frame; }, 8000, false));
        Sleep(200);
        TypeKey(VK_ESCAPE);
    }));
    EXPECT_EQ(Caption(), u"OK");
    EXPECT_THROW(PropertyFrame::Make(designer_->Handle(), u"x", nullptr, {CLSID{1, 2, 3, {}}}, source_), RunTimeError);
    EXPECT_THROW(PropertyFrame::Make(designer_->Handle(), u"x", nullptr, {}, source_), RunTimeError);
}

}  // namespace
}  // namespace qvx::host::designer
