// Real keys into a TextEdit control, and what becomes of them when the focus goes.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/control/textedit_form.h"
#include "tests/support/beep_count.h"
#include "tests/support/message_box.h"
#include "win/clipboard.h"

namespace qvx::test {
namespace {

constexpr DISPID change = 1;

// One path each with real keys; all of them are tables of the rules.
TEST(TextEditTyping, KeysAreFiltered) {
    TextEditForm form;
    form.Set(L"AutoSelection", Variant(false));
    form.Focus();
    BeepCount beeps(ServerUnderTest::Get().Module());
    ASSERT_TRUE(beeps.Listening());
    form.Set(L"DataType", Variant(1));
    Put(form.Inner().get(), L"Text", {Variant(u"")});
    form.Type("a7-.8");
    EXPECT_EQ(form.Shown(), u"78");
    EXPECT_EQ(beeps.Take(), 3);
    form.Set(L"DataType", Variant(2));
    // A refused letter takes the selection, and undo brings it back.
    form.Set(L"Text", Variant(u"12"));
    form.Key('A', {VK_CONTROL});
    EXPECT_EQ(Call(form.Inner().get(), L"SelLength").ToText(), u"5");
    form.Type("x");
    EXPECT_EQ(form.Shown(), u"");
    form.Key('Z', {VK_CONTROL});
    EXPECT_EQ(form.Shown(), u"12.00");
    // A locked box keeps it.
    form.Set(L"Locked", Variant(true));
    Put(form.Inner().get(), L"SelStart", {Variant(0)});
    Put(form.Inner().get(), L"SelLength", {Variant(3)});
    form.Type("x1");
    form.Key(VK_DELETE);
    EXPECT_EQ(form.Shown(), u"12.00");
    // A disabled one takes nothing at all.
    form.Set(L"Locked", Variant(false));
    form.Set(L"Enabled", Variant(false));
    ClickOn(form.container->ControlWindow());
    form.Type("x");
    EXPECT_EQ(form.Shown(), u"12.00");
    EXPECT_NE(GetFocus(), form.Edit());
}

TEST(TextEditTyping, HostsHearAndChangeKeys) {
    TextEditForm form;
    form.Set(L"DataType", Variant(1));
    Put(form.Inner().get(), L"Text", {Variant(u"")});
    form.Focus();
    std::vector<std::string> heard;
    form.recorder->onEvent = [&](DISPID event, DISPPARAMS& arguments) {
        if (event == change) {
            heard.emplace_back("Change");
            return;
        }
        VARIANT& key = arguments.rgvarg[arguments.cArgs - 1];
        ASSERT_EQ(key.vt, VT_I2 | VT_BYREF);
        const char* const name = event == DISPID_KEYDOWN ? "Down " : event == DISPID_KEYUP ? "Up " : "Press ";
        heard.push_back(name + std::to_string(*key.piVal));
        if (event == DISPID_KEYPRESS && *key.piVal == '1') *key.piVal = '9';
        // A host may let in what was refused.
        if (event == DISPID_KEYPRESS && *key.piVal == 0) *key.piVal = '-';
        if (event == DISPID_KEYDOWN && *key.piVal == VK_LEFT) *key.piVal = 0;
    };
    form.Type("1");
    EXPECT_EQ(heard, (std::vector<std::string>{"Down 49", "Press 49", "Change", "Up 49"}));
    EXPECT_EQ(form.Shown(), u"9");
    heard.clear();
    form.Type("x");
    EXPECT_EQ(heard, (std::vector<std::string>{"Down 88", "Press 0", "Change", "Up 88"}));
    EXPECT_EQ(form.Shown(), u"9-");
    form.Key(VK_LEFT);
    EXPECT_EQ(Call(form.Inner().get(), L"SelStart").ToText(), u"2");
    heard.clear();
    form.Set(L"UseEnterKey", Variant(true));
    form.Key(VK_RETURN);
    // The Tab that it stands for comes after it.
    ASSERT_GE(heard.size(), 2U);
    EXPECT_EQ(heard[0], "Down 13");
    EXPECT_EQ(heard[1], "Press 13");
    EXPECT_EQ(form.Shown(), u"9-");
}

TEST(TextEditTyping, HandlersMayEndTheControl) {
    for (const DISPID when : {static_cast<DISPID>(DISPID_KEYDOWN), static_cast<DISPID>(DISPID_KEYPRESS), change,
                              static_cast<DISPID>(DISPID_KEYUP)}) {
        TextEditForm form;
        form.Set(L"DataType", Variant(2));
        form.Focus();
        form.recorder->onEvent = [&](DISPID event, DISPPARAMS&) {
            if (event != when) return;
            form.recorder->onEvent = nullptr;
            form.connection.reset();
            form.box = nullptr;
            form.container->Close();
        };
        form.Type("1x");
        form.Key(VK_BACK);
        EXPECT_EQ(form.container->ControlWindow(), nullptr) << when;
    }
}

TEST(TextEditTyping, LeavingNormalisesWhateverCameIn) {
    TextEditForm form;
    // Another place in the same window for the focus to go.
    const HWND neighbour = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 20, 70, 100, 20,
                                           form.container->Window(), nullptr, nullptr, nullptr);
    form.Set(L"DataType", Variant(2));
    struct {
        TextView left;
        int places;
        TextView expected;
    } const cases[] = {{u"999 kg", 2, u"999.00"},
                       // No number can be written with them: the box is left as it is, but left.
                       {u"12.3456", -1, u"12.3456"}};
    form.Set(L"Boundaries", Variant(true));
    form.Set(L"MaxValue", Variant(10));
    for (const auto& c : cases) {
        Invoke(form.box.get(), L"DecimalPlaces", DISPATCH_PROPERTYPUT, {Variant(c.places).get()});
        form.Focus();
        // As a paste or an input method would.
        SendMessageW(form.Edit(), EM_SETSEL, 0, -1);
        const Text left(c.left);
        SendMessageW(form.Edit(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(Wide(left)));
        MSG tab{form.Edit(), WM_KEYDOWN, VK_TAB, 0, 0, {}};
        const auto active = Query<IOleInPlaceActiveObject>(form.container->Control());
        EXPECT_EQ(S_FALSE, active->TranslateAccelerator(&tab)) << "the host's to move on with";
        form.container->Calls().clear();
        SetFocus(neighbour);
        EXPECT_EQ(form.Shown(), c.expected);
        EXPECT_EQ(GetFocus(), neighbour);
        const std::vector<std::string>& calls = form.container->Calls();
        EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "OnFocus(False)")) << "the host hears of it";
    }
}

// A drag by hand: it drops where the button is let go.
class HandDrag final : public ComObject<IDropSource> {
  public:
    STDMETHODIMP QueryContinueDrag(BOOL escape, DWORD keys) override {
        if (escape) return DRAGDROP_S_CANCEL;
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    STDMETHODIMP GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }

  private:
    ~HandDrag() override = default;
};

TEST(TextEditTyping, TextsCanBeDroppedUnlessLocked) {
    TextEditForm form;
    form.Focus();
    const POINT inside = CenterOf(form.Edit());
    for (const bool locked : {false, true}) {
        form.Set(L"Text", Variant(u""));
        form.Set(L"Locked", Variant(locked));
        PutOnClipboard(form.Edit(), u"12.3456 kg\r\nsecond line");
        ComPtr<IDataObject> data;
        ASSERT_EQ(S_OK, OleGetClipboard(data.put()));
        // The drag begins where this thread sees the button go down.
        POINT outside{5, 5};
        ClientToScreen(form.container->Window(), &outside);
        MoveMouseTo(outside);
        LeftButton(true);
        Settle();
        DWORD effect = 0;
        {
            const Person person([&] {
                Sleep(300);
                MoveMouseTo(inside);
                Sleep(300);
                LeftButton(false);
            });
            EXPECT_EQ(DRAGDROP_S_DROP,
                      DoDragDrop(data.get(), MakeObject<HandDrag>().get(), DROPEFFECT_COPY | DROPEFFECT_MOVE, &effect));
        }
        EXPECT_EQ(form.Shown(), locked ? u"" : u"12.3456 kg");
        EXPECT_EQ(effect, static_cast<DWORD>(locked ? DROPEFFECT_NONE : DROPEFFECT_COPY));
        Settle();
    }
}

TEST(TextEditTyping, TwoEmptyBoxesDoNotSendTheFocusToAndFro) {
    TextEditForm first;
    TextEditForm second(true, {20, 0, 220, 40});
    SetWindowLongW(second.container->Window(), GWL_STYLE, WS_CHILD | WS_VISIBLE);
    SetParent(second.container->Window(), first.container->Window());
    for (TextEditForm* form : {&first, &second}) {
        form->Set(L"AllowEmpty", Variant(false));
        form->Set(L"Text", Variant(u""));
    }
    second.container->ActivateUi();
    first.Focus();
    int boxes = 0;
    {
        const Person person([&] {
            for (int i = 0; i < 2; ++i) {
                const bool came = WaitFor([] { return FindBox() != nullptr; }, i == 0 ? 6000 : 1500, false);
                boxes += came ? 1 : 0;
                if (came) WaitFor([] { return FindBox() == nullptr; }, 6000, false);
            }
        });
        SetFocus(second.Edit());
        WaitFor([&] { return boxes == 1 && FindBox() == nullptr && GetFocus() == first.Edit(); }, 8000);
        Settle(1700);
    }
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(GetFocus(), first.Edit());
    // A text lets it go.
    first.Type("x");
    SetFocus(second.Edit());
    Settle();
    EXPECT_EQ(GetFocus(), second.Edit());
}

}  // namespace
}  // namespace qvx::test
