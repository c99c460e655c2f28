// What controls ask of hosts that offer everything, something and nothing.
#include "kit/host_services.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include "tests/support/container.h"
#include "tests/support/inert_object.h"
#include "tests/support/late_bound_object.h"

namespace qvx::test {
namespace {

// A site is what a Container gives a control; this takes it from there.
class SiteKeeper final : public InertObject<> {
  public:
    HostServices host;
    STDMETHODIMP SetClientSite(IOleClientSite* site) override {
        host.SetSite(site);
        return S_OK;
    }

  private:
    ~SiteKeeper() override = default;
};

struct Hosted {
    explicit Hosted(Container::Options options) : container(std::move(options)), keeper(MakeObject<SiteKeeper>()) {
        container.Place(ComPtr<IUnknown>(keeper.get()), [](IUnknown*) {});
    }
    const HostServices& Host() const { return keeper->host; }
    Container container;
    ComPtr<SiteKeeper> keeper;
    HWND inner = CreateWindowW(L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, container.Window(), nullptr,
                               nullptr, nullptr);
};

TEST(HostServicesOf, AHostThatOffersEverything) {
    auto active = MakeObject<LateBoundObject>();
    active->members[L"Name"] = Variant(u"txtName");
    auto controls = MakeObject<LateBoundObject>();
    auto form = MakeObject<LateBoundObject>();
    form->members[L"Caption"] = Variant(u"Invoice");
    form->members[L"ActiveControl"] = Variant(static_cast<IDispatch*>(active.get()));
    form->members[L"Controls"] = Variant(static_cast<IDispatch*>(controls.get()));
    auto extended = MakeObject<LateBoundObject>();
    extended->members[L"Name"] = Variant(u"Other");
    extended->members[L"Tag"] = Variant(u"old");
    extended->members[L"TabIndex"] = Variant(4);
    extended->members[L"Parent"] = Variant(static_cast<IDispatch*>(form.get()));
    Container::Options options;
    options.extended = extended;
    options.ambients.emplace(DISPID_AMBIENT_DISPLAYNAME, Variant(u"Grid1"));
    options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(false));
    options.ambients.emplace(DISPID_AMBIENT_FORECOLOR, Variant(static_cast<long>(0x80000012)));
    options.ambients.emplace(DISPID_AMBIENT_UIDEAD, Variant(true));
    const Hosted hosted(options);
    const HostServices& host = hosted.Host();
    EXPECT_EQ(u"Grid1", host.DisplayName()) << "the ambient name comes first";
    EXPECT_FALSE(host.UserMode());
    EXPECT_TRUE(host.UiDead());
    EXPECT_EQ(0x80000012u, host.ForeColor());
    EXPECT_EQ(u"Invoice", host.FormCaption(nullptr));
    EXPECT_EQ(u"txtName", host.ActiveControlName(nullptr));
    EXPECT_TRUE(host.Controls());
    EXPECT_EQ(4, host.TabIndex());
    EXPECT_TRUE(host.SetTag(u"new"));
    EXPECT_EQ(u"new", host.Tag());
}

TEST(HostServicesOf, AHostThatOffersNothing) {
    Container::Options bare;
    bare.controlSite = false;
    const Hosted hosted(bare);
    for (const HostServices& host : {hosted.Host(), HostServices()}) {
        EXPECT_EQ(u"", host.DisplayName());
        EXPECT_TRUE(host.UserMode());
        EXPECT_FALSE(host.UiDead());
        EXPECT_EQ(colors::windowBackground, host.BackColor());
        EXPECT_EQ(colors::windowText, host.ForeColor());
        EXPECT_EQ(FontSpec(), host.Font());
        EXPECT_EQ(u"Bare container", host.FormCaption(hosted.inner)) << "the title of the top window";
        EXPECT_EQ(u"control_tests", host.FormCaption(nullptr)) << "the program's own name is left";
        EXPECT_EQ(u"", host.ActiveControlName(nullptr));
        EXPECT_EQ(-1, host.TabIndex());
        EXPECT_FALSE(host.SetTag(u"x"));
        EXPECT_FALSE(host.Controls());
    }
}

// Without a form that knows, the active control is the one with the keyboard.
TEST(HostServicesOf, AHostWithNamesOnly) {
    Container::Options options;
    options.ambients.emplace(DISPID_AMBIENT_DISPLAYNAME, Variant(u"Grid1"));
    // Ambient values of the wrong kind are no values.
    for (const DISPID id : {DISPID_AMBIENT_USERMODE, DISPID_AMBIENT_BACKCOLOR, DISPID_AMBIENT_FONT})
        options.ambients.emplace(id, Variant(u"red"));
    const Hosted hosted(options);
    EXPECT_TRUE(hosted.Host().UserMode());
    EXPECT_EQ(colors::windowBackground, hosted.Host().BackColor());
    EXPECT_EQ(FontSpec(), hosted.Host().Font());
    SetForegroundWindow(hosted.container.Window());
    SetFocus(hosted.inner);
    EXPECT_EQ(u"Grid1", hosted.Host().ActiveControlName(hosted.inner));
    SetFocus(hosted.container.Window());
    EXPECT_EQ(u"", hosted.Host().ActiveControlName(hosted.inner));
}

}  // namespace
}  // namespace qvx::test
