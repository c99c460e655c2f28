// A property page of a form's control, in a window of the test's instead of a frame.
#pragma once

#include <windows.h>

#include <olectl.h>

#include "tests/control/host_form.h"
#include "tests/support/container.h"

namespace qvx::host {

class PageSite final : public ComObject<IPropertyPageSite> {
  public:
    DWORD status = 0;
    STDMETHODIMP OnStatusChange(DWORD flags) override {
        status = flags;
        return S_OK;
    }
    STDMETHODIMP GetLocaleID(LCID* locale) override {
        *locale = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    STDMETHODIMP GetPageContainer(IUnknown** container) override {
        *container = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }

  private:
    ~PageSite() override = default;
};

class PageFormTest : public HostFormTest {
  protected:
    explicit PageFormTest(const RECT& area) : area_(area), frame_({}) {}
    ~PageFormTest() override { Close(); }

    void Open(const std::string& text, TextView control) {
        Load(text);
        ASSERT_TRUE(Start(u""));
        // It would take the keyboard when it is shown at last.
        ShowWindow(form_->Handle(), SW_HIDE);
        test::Pump();
        control_ = form_->FindControl(control)->Inner();
    }
    // Returns a page in its place, not shown yet.
    ComPtr<IPropertyPage> NewPage() {
        ComPtr<IClassFactory> factory;
        ComPtr<IPropertyPage> page;
        EXPECT_EQ(S_OK, test::ServerUnderTest::Get().ClassObject(PageId(), IID_IClassFactory, factory.put_void()));
        EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IPropertyPage, page.put_void()));
        EXPECT_EQ(S_OK, page->SetPageSite(site_.get()));
        IUnknown* objects[] = {control_.get()};
        EXPECT_EQ(S_OK, page->SetObjects(1, objects));
        EXPECT_EQ(S_OK, page->Activate(frame_.Window(), &area_, FALSE));
        return page;
    }
    static void End(const ComPtr<IPropertyPage>& page) {
        page->Deactivate();
        page->SetObjects(0, nullptr);
        page->SetPageSite(nullptr);
    }
    void ShowPage() {
        SetWindowPos(frame_.Window(), nullptr, 0, 0, area_.right + 30, area_.bottom + 50, SWP_NOMOVE | SWP_NOZORDER);
        page_ = NewPage();
        EXPECT_EQ(S_OK, page_->Show(SW_SHOW));
        ASSERT_TRUE(test::BringToFront(frame_.Window()));
    }
    void Close() {
        if (page_) End(page_);
        page_ = nullptr;
    }
    // The page that the control says is its own.
    CLSID PageId() const {
        CAUUID pages{};
        EXPECT_EQ(S_OK, Query<ISpecifyPropertyPages>(control_.get())->GetPages(&pages));
        EXPECT_EQ(pages.cElems, 1u);
        const CLSID id = pages.cElems ? pages.pElems[0] : CLSID{};
        CoTaskMemFree(pages.pElems);
        return id;
    }
    bool Dirty() const { return page_->IsPageDirty() == S_OK; }

    const RECT area_;
    test::Container frame_;
    ComPtr<PageSite> site_ = MakeObject<PageSite>();
    ComPtr<IDispatch> control_;
    ComPtr<IPropertyPage> page_;
};

}  // namespace qvx::host
