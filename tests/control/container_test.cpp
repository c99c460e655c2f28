// Controls in a bare container of our own: activation, size, focus, events, and hosts that offer much or nothing.
#include "tests/support/container.h"
#include "tests/support/each_control.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "Qvx.h"
#include "com/font_object.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/input.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/server_under_test.h"
#include "win/gdi_surface.h"

namespace qvx::test {
namespace {

Container::Options RunMode() { return HostInMode(true); }

ComPtr<IUnknown> New(REFCLSID id) { return ServerUnderTest::Get().Create(id); }

Rect WindowArea(HWND window, HWND parent) {
    RECT area = AreaOf(window);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
    return FromRECT(area);
}

int Count(Container& container, const char* call) {
    const auto& calls = container.Calls();
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

class EachControl : public ::testing::TestWithParam<const CLSID*> {
  protected:
    // In a host that offers enough, not active yet.
    Container& Sited() {
        container_.emplace(RunMode()).Place(New(*GetParam()));
        return *container_;
    }
    Container& Active() {
        Sited().Activate();
        SetForegroundWindow(container_->Window());
        return *container_;
    }

    static bool FixedHeight() { return *GetParam() == CLSID_TextEdit; }

  private:
    std::optional<Container> container_;
};

INSTANTIATE_TEST_SUITE_P(Controls, EachControl, ::testing::ValuesIn(EachVisibleControlId()), ControlName);

// A designer's control is a picture; one that runs has the windows that its user types into.
TEST_P(EachControl, HasTheInnerWindowsOfItsHostsMode) {
    const bool typedInto = *GetParam() == CLSID_ComboGrid || *GetParam() == CLSID_TextEdit;
    for (const bool first : {true, false}) {
        Container container(HostInMode(first));
        container.Place(New(*GetParam()));
        container.Activate();
        for (const bool userMode : {first, !first, first}) {
            container.SetAmbient(DISPID_AMBIENT_USERMODE, Variant(userMode));
            EXPECT_EQ(GetWindow(container.ControlWindow(), GW_CHILD) != nullptr, userMode && typedInto);
        }
    }
}

TEST_P(EachControl, ActivatesMovesAndGoesInactive) {
    Container& container = Sited();
    EXPECT_EQ(nullptr, container.ControlWindow());
    container.Activate();
    const HWND window = container.ControlWindow();
    ASSERT_TRUE(window);
    EXPECT_EQ(container.Window(), GetParent(window));
    EXPECT_TRUE(IsWindowVisible(window));
    // A text box is as high as its text, wherever it is.
    const Rect first = WindowArea(window, container.Window());
    const int height = FixedHeight() ? first.bottom - first.top : 0;
    EXPECT_LT(height, 40);
    EXPECT_EQ((Rect{10, 10, 210, height ? 10 + height : 110}), first);
    container.MoveTo({30, 40, 180, 90});
    EXPECT_EQ((Rect{30, 40, 180, height ? 40 + height : 90}), WindowArea(window, container.Window()));
    // The extent follows, in hundredths of a millimetre at 96 dots per inch.
    SIZEL extent{};
    EXPECT_EQ(S_OK, Query<IOleObject>(container.Control())->GetExtent(DVASPECT_CONTENT, &extent));
    EXPECT_NEAR(150 * 2540 / 96.0, extent.cx, 1);
    EXPECT_NEAR((height ? height : 50) * 2540 / 96.0, extent.cy, 1);
    EXPECT_EQ(S_OK, Query<IOleInPlaceObject>(container.Control())->InPlaceDeactivate());
    EXPECT_FALSE(IsWindowVisible(window));
    EXPECT_EQ((std::vector<std::string>{"OnInPlaceActivate", "ShowObject", "OnInPlaceDeactivate"}), container.Calls());
    // And again: the same window comes back.
    container.Activate();
    EXPECT_EQ(window, container.ControlWindow());
}

// A host may set any extent before activation, and gets the same one back.
TEST_P(EachControl, KeepsTheExtentItWasGiven) {
    Container& container = Sited();
    const auto object = Query<IOleObject>(container.Control());
    for (const SIZEL size : {SIZEL{2540, 1270}, SIZEL{2543, 1271}, SIZEL{1, 1}, SIZEL{0, 0}}) {
        SIZEL copy = size;
        ASSERT_EQ(S_OK, object->SetExtent(DVASPECT_CONTENT, &copy));
        SIZEL got{};
        ASSERT_EQ(S_OK, object->GetExtent(DVASPECT_CONTENT, &got));
        if (size.cx == 0) continue;
        EXPECT_EQ(size.cx, got.cx);
        EXPECT_TRUE(FixedHeight() ? got.cy < 1000 : got.cy == size.cy) << got.cy;
    }
    SIZEL negative{-1, 5};
    EXPECT_EQ(E_INVALIDARG, object->SetExtent(DVASPECT_CONTENT, &negative));
    EXPECT_EQ(DV_E_DVASPECT, object->SetExtent(DVASPECT_ICON, &negative));
}

// Parts outside the container's clip are cut off, of whatever shape the control's window is, and come back with it.
TEST_P(EachControl, IsClippedByItsContainer) {
    Container& container = Active();
    const HWND window = container.ControlWindow();
    const RECT position{10, 10, 110, 60};
    const RECT narrow{0, 0, 50, 200};
    const RECT wide{0, 0, 400, 200};
    const auto object = Query<IOleInPlaceObject>(container.Control());
    const HRGN whole = CreateRectRgn(0, 0, 100, 50);
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    ASSERT_EQ(S_OK, object->SetObjectRects(&position, &wide));
    const bool shaped = GetWindowRgn(window, region) != ERROR;
    EXPECT_EQ(*GetParam() == CLSID_RButton, shaped);
    if (shaped) CombineRgn(whole, region, nullptr, RGN_COPY);
    ASSERT_EQ(S_OK, object->SetObjectRects(&position, &narrow));
    ASSERT_NE(ERROR, GetWindowRgn(window, region));
    const HRGN expected = CreateRectRgn(0, 0, 40, 50);
    CombineRgn(expected, expected, whole, RGN_AND);
    EXPECT_TRUE(EqualRgn(expected, region));
    ASSERT_EQ(S_OK, object->SetObjectRects(&position, &wide));
    EXPECT_EQ(shaped, GetWindowRgn(window, region) != ERROR);
    EXPECT_TRUE(!shaped || EqualRgn(whole, region));
    for (const HRGN one : {whole, region, expected}) DeleteObject(one);
}

TEST_P(EachControl, BecomesUiActiveWithTheFocusAndLosesIt) {
    Container& container = Active();
    container.ActivateUi();
    const HWND window = container.ControlWindow();
    const HWND focus = GetFocus();
    EXPECT_TRUE(focus == window || IsChild(window, focus));
    EXPECT_EQ(1, Count(container, "OnUIActivate"));
    EXPECT_EQ(1, Count(container, "OnFocus(True)"));
    EXPECT_EQ(1, Count(container, "SetActiveObject"));
    // Twice is once.
    container.ActivateUi();
    EXPECT_EQ(1, Count(container, "OnUIActivate"));
    SetFocus(container.Window());
    EXPECT_EQ(1, Count(container, "OnFocus(False)"));
    EXPECT_EQ(S_OK, Query<IOleInPlaceObject>(container.Control())->UIDeactivate());
    EXPECT_EQ(1, Count(container, "OnUIDeactivate"));
    EXPECT_EQ(1, Count(container, "SetActiveObject(none)"));
    // The focus that a click or a Tab of the host brings does it by itself.
    SetFocus(container.ControlWindow());
    EXPECT_EQ(2, Count(container, "OnUIActivate"));
}

// Also those that are invisible at run time.
class AnyControl : public ::testing::TestWithParam<const CLSID*> {};

INSTANTIATE_TEST_SUITE_P(Controls, AnyControl, ::testing::ValuesIn(EachControlId()), ControlName);

// Hosts that offer nothing but the site itself: the control runs, draws and saves.
TEST_P(AnyControl, WorksInAHostThatOffersNothing) {
    Container::Options bare;
    bare.controlSite = false;
    Container container(bare);
    container.Place(New(*GetParam()));
    container.Activate();
    container.ActivateUi();
    UpdateWindow(container.ControlWindow());
    EXPECT_EQ(!IsInvisible(GetParam()), IsWindowVisible(container.ControlWindow()) != FALSE);
    EXPECT_FALSE(SaveToStream(container.Control()).empty());
    MSG key{container.ControlWindow(), WM_KEYDOWN, VK_F9, 0, 0, {}};
    EXPECT_EQ(S_FALSE, Query<IOleInPlaceActiveObject>(container.Control())->TranslateAccelerator(&key));
    // No window, no site: a host that only stores it.
    const auto stored = New(*GetParam());
    EXPECT_EQ(S_OK, stored.As<IPersistStreamInit>()->InitNew());
    EXPECT_FALSE(SaveToStream(stored.get()).empty());
}

// The host destroys its window without a word to the control, then lets go of it.
TEST_P(AnyControl, OutlivesItsHostsWindow) {
    auto control = New(*GetParam());
    {
        Container container(RunMode());
        container.Place(control);
        container.Activate();
        DestroyWindow(container.Window());
        EXPECT_EQ(nullptr, container.ControlWindow());
    }
    // In another container it is as good as new.
    Container other(RunMode());
    other.Place(control, [](IUnknown*) {});
    other.Activate();
    EXPECT_EQ(!IsInvisible(GetParam()), IsWindowVisible(other.ControlWindow()) != FALSE);
    EXPECT_TRUE(other.ControlWindow());
}

// A site that refuses a step, or whose window goes on the way: what was told before is taken back, and the next
// attempt works.
TEST_P(EachControl, ARefusedActivationIsTakenBack) {
    struct Case {
        const char* refused;
        bool windowGoes;
        bool deactivates;  // the host is told that the activation it knows of is over
    };
    for (const Case& c : {Case{"OnInPlaceActivate", false, false}, Case{"GetWindowContext", false, true},
                          Case{"GetWindowContext", true, true}}) {
        SCOPED_TRACE(c.refused);
        bool refuse = true;
        Container* place = nullptr;
        Container::Options options = RunMode();
        options.answer = [&](const std::string& call) {
            if (!refuse || call != c.refused) return S_OK;
            if (c.windowGoes) DestroyWindow(place->Window());
            return c.windowGoes ? S_OK : E_FAIL;
        };
        Container container(options);
        place = &container;
        container.Place(New(*GetParam()));
        EXPECT_TRUE(FAILED(container.DoVerb(OLEIVERB_UIACTIVATE)));
        EXPECT_EQ(nullptr, container.ControlWindow());
        EXPECT_EQ(c.deactivates ? 1 : 0, Count(container, "OnInPlaceDeactivate"));
        EXPECT_EQ(0, Count(container, "OnUIActivate"));
        if (c.windowGoes) continue;
        refuse = false;
        container.ActivateUi();
        EXPECT_TRUE(IsWindowVisible(container.ControlWindow()));
    }
}

// A site that will not have the user interface active still has the control in its place, and gets no frame calls.
TEST_P(EachControl, StaysInPlaceWhereTheUserInterfaceIsRefused) {
    Container::Options options = RunMode();
    options.answer = [](const std::string& call) { return call == "OnUIActivate" ? E_FAIL : S_OK; };
    Container container(options);
    container.Place(New(*GetParam()));
    container.ActivateUi();
    EXPECT_TRUE(IsWindowVisible(container.ControlWindow()));
    EXPECT_EQ(0, Count(container, "SetActiveObject"));
    EXPECT_EQ(0, Count(container, "OnUIDeactivate"));
}

// A host that changes its mind from inside its own answers: deactivated for good, and every call has its counterpart.
TEST_P(EachControl, MayBeDeactivatedWhileItIsActivated) {
    for (const char* when :
         {"OnInPlaceActivate", "GetWindowContext", "ShowObject", "OnUIActivate", "SetActiveObject", "OnFocus(True)"}) {
        for (const bool unsite : {false, true}) {
            SCOPED_TRACE(std::string(when) + (unsite ? ", site taken away" : ""));
            const auto control = New(*GetParam());
            Container::Options options = RunMode();
            options.answer = [&](const std::string& call) -> HRESULT {
                if (call != when) return S_OK;
                if (unsite) return control.As<IOleObject>()->SetClientSite(nullptr);
                return control.As<IOleInPlaceObject>()->InPlaceDeactivate();
            };
            Container container(options);
            container.Place(control);
            SetForegroundWindow(container.Window());
            container.DoVerb(OLEIVERB_UIACTIVATE);
            EXPECT_EQ(nullptr, container.ControlWindow());
            EXPECT_EQ(1, Count(container, "OnInPlaceActivate"));
            EXPECT_EQ(1, Count(container, "OnInPlaceDeactivate"));
            EXPECT_EQ(Count(container, "OnUIActivate"), Count(container, "OnUIDeactivate"));
        }
    }
}

TEST_P(EachControl, AnswersVerbsItDoesNotKnow) {
    Container& container = Sited();
    // The system's own are refused; an object's own do what the first one does.
    EXPECT_EQ(E_NOTIMPL, container.DoVerb(-99));
    EXPECT_EQ(nullptr, container.ControlWindow());
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB, container.DoVerb(99));
    EXPECT_TRUE(container.ControlWindow());
}

// A container that draws the control itself: something is there, in the bounds and nowhere else.
TEST_P(EachControl, DrawsItselfIntoTheContainersBounds) {
    Container& container = Sited();
    const COLORREF marker = RGB(1, 2, 3);
    const PixelPicture picture = PictureOf({120, 80}, [&](HDC dc) {
        const UniqueBrush brush(CreateSolidBrush(marker));
        const RECT all{0, 0, 120, 80};
        FillRect(dc, &all, brush.Get());
        const RECTL bounds{20, 10, 100, 70};
        EXPECT_EQ(S_OK, Query<IViewObject>(container.Control())
                            ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0));
        EXPECT_EQ(MM_TEXT, GetMapMode(dc)) << "the device context is left as it was";
    });
    for (const POINT outside : {POINT{19, 40}, {101, 40}, {60, 8}})
        EXPECT_EQ(marker, picture.At(outside.x, outside.y)) << outside.x << "," << outside.y;
    int drawn = 0;
    for (int x = 22; x < 98; x += 4) drawn += picture.At(x, 40) != marker ? 1 : 0;
    EXPECT_EQ(19, drawn);
}

// A change, also of the font object from outside, marks the control as to be saved.
TEST(PropertyChanges, MakeTheControlDirty) {
    Container container(RunMode());
    container.Place(New(CLSID_Button));
    auto listener = MakeObject<PropertyListener>();
    const Connection connection(container.Control(), IID_IPropertyNotifySink, listener.get());
    const auto stream = Query<IPersistStreamInit>(container.Control());
    const auto button = container.Automation();
    const auto font = Call(button.get(), L"Font").ToObject<IFont>();
    for (const bool ofFont : {false, true}) {
        EXPECT_EQ(S_FALSE, stream->IsDirty());
        if (ofFont) {
            EXPECT_EQ(S_OK, font->put_Bold(TRUE));
        } else {
            Put(button.get(), L"Caption", {Variant(u"&Save")});
            EXPECT_GE(Count(container, "OnControlInfoChanged"), 1) << "for the access key";
        }
        EXPECT_EQ(S_OK, stream->IsDirty());
        SaveToStream(container.Control());
    }
    EXPECT_EQ((std::vector<DISPID>{DISPID_CAPTION, DISPID_FONT}), listener->changed);
}

// `Set Font = f` shares the object, `Font = f` copies its value.
TEST(PropertyChanges, FontsAreSharedOrCopied) {
    const auto control = New(CLSID_Button);
    ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    const auto button = control.As<_Button>();
    const auto font = MakeFontObject(FontSpec{u"Tahoma", 12});
    const auto pointsAfter = [&](int points) {
        EXPECT_EQ(S_OK, font.As<IFont>()->put_Size({.int64 = points * 10000}));
        ComPtr<IFontDisp> now;
        EXPECT_EQ(S_OK, button->get_Font(now.put()));
        return ReadFontObject(now.get()).points;
    };
    pointsAfter(12);
    ASSERT_EQ(S_OK, button->put_Font(font.get()));
    EXPECT_EQ(12, pointsAfter(18));
    ASSERT_EQ(S_OK, button->putref_Font(font.get()));
    EXPECT_EQ(24, pointsAfter(24));
    EXPECT_EQ(static_cast<HRESULT>(0x800A017C), button->putref_Font(nullptr));
    EXPECT_EQ(18, pointsAfter(18));
}

// A container that draws inactive controls itself hears of changes; one that shows the control's own window need not.
TEST(PropertyChanges, AreShownByTheContainerWhileInactive) {
    Container container(RunMode());
    container.Place(New(CLSID_Button));
    const auto view = Query<IViewObject>(container.Control());
    ComPtr<IOleClientSite> site;
    ASSERT_EQ(S_OK, Query<IOleObject>(container.Control())->GetClientSite(site.put()));
    ASSERT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, 0, site.As<IAdviseSink>().get()));
    const auto seen = [&] { return Count(container, "OnViewChange"); };
    Put(container.Automation().get(), L"BackColor", {Variant(255)});
    const auto inactive = seen();
    EXPECT_GE(inactive, 1);
    container.Activate();
    Put(container.Automation().get(), L"BackColor", {Variant(0)});
    EXPECT_EQ(inactive, seen());
    EXPECT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, 0, nullptr));
}

// One call in place of a dozen, for containers in a hurry.
TEST_P(EachControl, IsSetUpByOneCall) {
    const auto control = New(*GetParam());
    auto events = MakeObject<EventRecorder>();
    auto properties = MakeObject<PropertyListener>();
    QACONTAINER offer{};
    offer.cbSize = sizeof offer;
    offer.pUnkEventSink = events.get();
    offer.pPropertyNotifySink = properties.get();
    QACONTROL answer{};
    answer.cbSize = sizeof answer;
    ASSERT_EQ(S_OK, control.As<IQuickActivate>()->QuickActivate(&offer, &answer));
    EXPECT_NE(0u, answer.dwEventCookie);
    EXPECT_NE(0u, answer.dwPropNotifyCookie);
    EXPECT_TRUE(answer.dwMiscStatus & OLEMISC_ACTIVATEWHENVISIBLE);
    ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    Put(control.As<IDispatch>().get(), L"Enabled", {Variant(false)});
    EXPECT_EQ(std::vector<DISPID>{DISPID_ENABLED}, properties->changed);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(S_OK, control.As<IConnectionPointContainer>()->FindConnectionPoint(EventsOf(control.get()), point.put()));
    EXPECT_EQ(S_OK, point->Unadvise(answer.dwEventCookie));
    EXPECT_EQ(CONNECT_E_NOCONNECTION, point->Unadvise(answer.dwEventCookie));
}

// --- Events ---

class ButtonEvents : public ::testing::Test {
  protected:
    ButtonEvents() : container_(RunMode()) {
        container_.Place(New(CLSID_Button));
        container_.Activate();
    }
    void Click() { Invoke(container_.Automation().get(), L"Value", DISPATCH_PROPERTYPUT, {Variant(true).get()}); }
    ComPtr<EventRecorder> recorder_ = MakeObject<EventRecorder>();
    Container container_;
};

TEST_F(ButtonEvents, ReachEveryListenerInOrderUntilItDisconnects) {
    const IID events = EventsOf(container_.Control());
    EXPECT_TRUE(events == DIID___Button);
    auto second = MakeObject<EventRecorder>();
    // One that fails keeps nothing from the others.
    auto refusing = MakeObject<LateBoundObject>();
    refusing->failure.emplace();
    refusing->failure->bstrDescription = SysAllocString(L"refused");
    const Connection bad(container_.Control(), events, refusing.get());
    Connection first(container_.Control(), events, recorder_.get());
    const Connection other(container_.Control(), events, second.get());
    Click();
    first.Disconnect();
    Click();
    EXPECT_EQ(1u, recorder_->Count(DISPID_CLICK));
    EXPECT_EQ(2u, second->Count(DISPID_CLICK));
    // Nothing while the host has frozen events.
    const auto control = Query<IOleControl>(container_.Control());
    control->FreezeEvents(TRUE);
    Click();
    control->FreezeEvents(FALSE);
    Click();
    EXPECT_EQ(3u, second->Count(DISPID_CLICK));
}

TEST_F(ButtonEvents, ListenersMayDisconnectAndConnectDuringAnEvent) {
    const IID events = EventsOf(container_.Control());
    auto later = MakeObject<EventRecorder>();
    auto victim = MakeObject<EventRecorder>();
    std::unique_ptr<Connection> self;
    std::unique_ptr<Connection> doomed;
    std::unique_ptr<Connection> added;
    recorder_->onEvent = [&](DISPID, DISPPARAMS&) {
        self->Disconnect();
        doomed->Disconnect();
        if (!added) added = std::make_unique<Connection>(container_.Control(), events, later.get());
    };
    self = std::make_unique<Connection>(container_.Control(), events, recorder_.get());
    doomed = std::make_unique<Connection>(container_.Control(), events, victim.get());
    Click();
    EXPECT_EQ(1u, recorder_->events.size());
    EXPECT_EQ(0u, victim->events.size()) << "disconnected before its turn";
    EXPECT_EQ(0u, later->events.size()) << "connected after the event was raised";
    Click();
    EXPECT_EQ(1u, later->events.size());
}

// --- The host's part in defaults ---

// A host that initialises before it sites: what depends on the host is set up once it is known.
TEST(HostDefaults, CaptionIsTheNameOnceTheHostIsKnown) {
    auto extended = MakeObject<LateBoundObject>();
    extended->members[L"Name"] = Variant(u"cmdOk");
    // A host without ambient properties may still have given the control a name.
    Container::Options named;
    named.extended = extended;
    for (const auto& [options, expected] : {std::pair<Container::Options, TextView>{RunMode(), u"Thing1"},
                                            {Container::Options(), u""},
                                            {named, u"cmdOk"}}) {
        const auto control = New(CLSID_Button);
        ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
        EXPECT_EQ(u"", Call(control.As<IDispatch>().get(), L"Caption").ToText());
        Container container(options);
        container.Place(control, [](IUnknown*) {});
        EXPECT_EQ(expected, Call(control.As<IDispatch>().get(), L"Caption").ToText());
        EXPECT_EQ(S_FALSE, control.As<IPersistStreamInit>()->IsDirty());
    }
}

// A control without a font of its own has the form's, and does not write it.
TEST(HostDefaults, FontIsTheAmbientFontUntilItIsGivenOne) {
    // The system rounds sizes that come to no whole pixels.
    const auto fontOf = [](double points) {
        FontSpec look;
        look.face = u"Tahoma";
        look.points = points;
        return Variant(static_cast<IDispatch*>(MakeFontObject(look).get()));
    };
    Container::Options options = RunMode();
    options.ambients.emplace(DISPID_AMBIENT_FONT, fontOf(12));
    Container container(options);
    container.Place(New(CLSID_Button));
    const auto button = container.Automation();
    const auto font = [&] { return Call(button.get(), L"Font").ToObject<IFont>(); };
    const auto points = [&] { return ReadFontObject(font().get()).points; };
    const auto written = [&] { return SaveToBag(container.Control())->Find(L"Font") != nullptr; };
    EXPECT_EQ(12, points());
    container.SetAmbient(DISPID_AMBIENT_FONT, fontOf(15));
    EXPECT_EQ(15, points());
    EXPECT_FALSE(written());
    EXPECT_EQ(S_FALSE, Query<IPersistStreamInit>(container.Control())->IsDirty());
    ASSERT_EQ(S_OK, font()->put_Bold(TRUE));
    EXPECT_TRUE(written()) << "a changed one is its own";
    Put(button.get(), L"Font", {fontOf(18)});
    container.SetAmbient(DISPID_AMBIENT_FONT, fontOf(9));
    EXPECT_EQ(18, points());
}

}  // namespace
}  // namespace qvx::test
