// The RButton control in containers: what it answers and shows.
#include <windows.h>

#include <gtest/gtest.h>

#include "Qvx.h"
#include "tests/control/push_button_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/late_bound_object.h"

namespace qvx::test {
namespace {

class RButton : public PushButtonForm {
  public:
    explicit RButton(bool userMode = true, ComPtr<IDispatch> extended = nullptr)
        : PushButtonForm(CLSID_RButton, userMode, std::move(extended)) {}
};

TEST_F(RButton, NewControlIsNumberedLikeItsName) {
    EXPECT_EQ(Call(button_.get(), L"Caption").ToText(), u"Buttone");
    // Without a name there is nothing to number it by.
    const auto bare = ServerUnderTest::Get().Create(CLSID_RButton);
    ASSERT_EQ(bare.As<IPersistStreamInit>()->InitNew(), S_OK);
    EXPECT_EQ(Call(bare.As<IDispatch>().get(), L"Caption").ToText(), u"Button");
}

class RButtonInDesigner : public RButton {
  protected:
    RButtonInDesigner() : RButton(false) {}
};

TEST_F(RButtonInDesigner, ValueIsReadButNotSetAndTheFocusStays) {
    EXPECT_EQ(Invoke(button_.get(), L"Value", DISPATCH_PROPERTYPUT, {Variant(true).get()}).scode, setRefused);
    EXPECT_EQ(Call(button_.get(), L"Value").ToBool(), false) << "refused before anything was stored";
    Activate();
    Call(button_.get(), L"SetFocus");
    EXPECT_NE(GetFocus(), window_);
}

// A host passes keys by its active control first, and Enter must not go to the form's default button instead.
TEST_F(RButton, TakesItsKeysBeforeTheHost) {
    Activate();
    Focus();
    const auto active = Query<IOleInPlaceActiveObject>(container_->Control());
    struct {
        UINT message;
        WPARAM key;
        HRESULT expected;
    } const cases[] = {{WM_KEYDOWN, VK_RETURN, S_OK}, {WM_CHAR, VK_RETURN, S_OK},  {WM_KEYDOWN, VK_SPACE, S_OK},
                       {WM_CHAR, VK_SPACE, S_OK},     {WM_KEYUP, VK_SPACE, S_OK},  {WM_KEYDOWN, VK_TAB, S_FALSE},
                       {WM_CHAR, 'a', S_FALSE},       {WM_KEYDOWN, VK_UP, S_FALSE}};
    for (const auto& c : cases) {
        MSG message{window_, c.message, c.key, 0, 0, {}};
        EXPECT_EQ(active->TranslateAccelerator(&message), c.expected) << c.message << " " << c.key;
    }
    EXPECT_EQ(Clicks(), 2U) << "Enter, and Space when it came up";
}

TEST_F(RButton, FocusIsGivenAndWhatWasBegunCalledOffByTheProgram) {
    Activate();
    Focus();
    SetFocus(container_->Window());
    Call(button_.get(), L"SetFocus");
    EXPECT_EQ(GetFocus(), window_);
    for (const wchar_t* method : {L"SetFocus", L"RemoveFocus"}) {
        KeyDown(VK_SPACE);
        Settle();
        Call(button_.get(), method);
        KeyUp(VK_SPACE);
        Settle();
        PressDirectly();
        Call(button_.get(), method);
        ReleaseDirectly();
        EXPECT_EQ(Clicks(), 0U) << method;
    }
    EXPECT_EQ(GetFocus(), window_) << "RemoveFocus leaves the keyboard where it is";
    Put(button_.get(), L"Enabled", {Variant(false)});
    SetFocus(container_->Window());
    Call(button_.get(), L"SetFocus");
    EXPECT_EQ(GetFocus(), container_->Window());
}

// A form whose active control the test names.
struct FormOfNames {
    FormOfNames() {
        const auto controls = MakeObject<LateBoundObject>();
        controls->members[L"Item"] = Variant(static_cast<IDispatch*>(item.get()));
        const auto form = MakeObject<LateBoundObject>();
        form->members[L"ActiveControl"] = Variant(static_cast<IDispatch*>(active.get()));
        form->members[L"Controls"] = Variant(static_cast<IDispatch*>(controls.get()));
        extended->members[L"Parent"] = Variant(static_cast<IDispatch*>(form.get()));
    }

    ComPtr<LateBoundObject> active = MakeObject<LateBoundObject>();
    ComPtr<LateBoundObject> item = MakeObject<LateBoundObject>();
    ComPtr<LateBoundObject> extended = MakeObject<LateBoundObject>();
};

struct RButtonForm : FormOfNames, RButton {
    RButtonForm() : RButton(true, extended) {}

    // How many pixels the focus rectangle changes.
    int FocusPixels() {
        Put(button_.get(), L"FocusRect", {Variant(false)});
        const auto without = PictureOnScreen(window_).pixels;
        Put(button_.get(), L"FocusRect", {Variant(true)});
        const auto with = PictureOnScreen(window_).pixels;
        int different = 0;
        for (size_t i = 0; i < with.size(); ++i) different += with[i] != without[i] ? 1 : 0;
        return different;
    }
};

TEST_F(RButtonForm, FocusRectangleGoesByTheNameOfTheActiveControl) {
    Activate();
    Focus();
    struct {
        const char16_t* name;
        std::optional<Variant> index;
        bool shown;
    } const cases[] = {{u"txtOther", std::nullopt, false},
                       {u"cmdSave", std::nullopt, true},
                       {u"CMDSAVE", std::nullopt, true},
                       {u"cmdSave", Variant(1), true},
                       {u"cmdSave", Variant(2), false}};
    extended->members[L"Index"] = Variant(1);
    for (const auto& c : cases) {
        active->members.clear();
        active->members[L"Name"] = Variant(c.name);
        if (c.index) active->members[L"Index"] = *c.index;
        EXPECT_EQ(FocusPixels() > 0, c.shown) << Variant(c.name).ToText().value_or(u"").size();
    }
    // Where no form tells, it goes with the focus.
    extended->members.erase(L"Parent");
    EXPECT_GT(FocusPixels(), 0);
    SetFocus(container_->Window());
    EXPECT_EQ(FocusPixels(), 0);
}

// The form's own object around the control may have a RemoveFocus that does something else; without one the control
// does it itself.
TEST_F(RButtonForm, AmbientChangesRemoveTheFocusThroughTheForm) {
    Activate();
    Focus();
    for (const bool ofTheForm : {false, true}) {
        SCOPED_TRACE(ofTheForm);
        if (ofTheForm) item->members[L"RemoveFocus"] = Variant(true);
        SendMessageW(window_, WM_CHAR, VK_SPACE, 0);
        container_->SetAmbient(DISPID_AMBIENT_BACKCOLOR, Variant(0xFFFFFF));
        const size_t before = Clicks();
        SendMessageW(window_, WM_KEYUP, VK_SPACE, 0);
        EXPECT_EQ(Clicks() - before, ofTheForm ? 1U : 0U);
    }
}

}  // namespace
}  // namespace qvx::test
