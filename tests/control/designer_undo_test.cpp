// The way back and forth through every kind of step, with every control on the form. What is freed on the way is
// overwritten while the tests run, so that whoever still looks at it is found out.
#include "host/form_pictures_object.h"
#include "tests/control/designer_form.h"
#include "tests/support/each_control.h"
#include "win/clipboard.h"

namespace qvx::host::designer {
namespace {

// A control that asks for its name whenever its surroundings change, and keeps the bags that it is lent.
class AskingControl final : public ScriptedObject<IOleControl> {
  public:
    std::vector<Text> named;
    int readsLater = 0;
    int writesLater = 0;

    STDMETHODIMP Load(IPropertyBag* bag, IErrorLog*) override {
        loaded_ = ComPtr<IPropertyBag>(bag);
        return S_OK;
    }
    STDMETHODIMP Save(IPropertyBag* bag, BOOL, BOOL) override {
        saved_ = ComPtr<IPropertyBag>(bag);
        return S_OK;
    }
    STDMETHODIMP GetControlInfo(CONTROLINFO*) override { return E_NOTIMPL; }
    STDMETHODIMP OnMnemonic(MSG*) override { return S_OK; }
    STDMETHODIMP FreezeEvents(BOOL) override { return S_OK; }
    STDMETHODIMP OnAmbientPropertyChange(DISPID) override {
        Variant name;
        DISPPARAMS none{};
        const auto ambients = site.As<IDispatch>();
        if (!ambients) return S_OK;
        ambients->Invoke(DISPID_AMBIENT_DISPLAYNAME, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, name.put(), nullptr,
                         nullptr);
        named.push_back(name.ToText().value_or(u"?"));
        Variant value;
        if (loaded_ && SUCCEEDED(loaded_->Read(L"Left", value.put(), nullptr))) ++readsLater;
        if (saved_ && SUCCEEDED(saved_->Write(L"Late", value.ptr()))) ++writesLater;
        return S_OK;
    }

  private:
    ~AskingControl() override = default;
    ComPtr<IPropertyBag> loaded_;
    ComPtr<IPropertyBag> saved_;
};

// One of each, in a frame as well as on the form, and one that nobody can make.
std::string EveryControl() {
    std::string text =
        "Begin Form frmAll\r\n   Caption = \"All\"\r\n   ClientWidth = 9000\r\n   ClientHeight = 5000\r\n"
        "   Begin Menu mnuFile\r\n      Caption = \"&File\"\r\n      Begin Menu mnuNew\r\n"
        "         Caption = \"&New\"\r\n      End\r\n   End\r\n   Begin Nobody.Knows odd\r\n      Left = 6000\r\n   "
        "End\r\n";
    int place = 0;
    const auto add = [&](const std::string& className, const std::string& name, const std::string& more = {}) {
        place += 240;
        text += "   Begin " + className + " " + name + "\r\n      Left = " + std::to_string(place) +
                "\r\n      Top = " + std::to_string(place) + "\r\n      Width = " + std::to_string(600 + place) +
                "\r\n" + more + "   End\r\n";
    };
    for (const test::NamedControl& control : test::namedControls) {
        add(std::string("Qvx.") + control.name, std::string("one") + control.name);
    }
    for (const char* name : {"Label", "TextBox", "ImageList"}) add(name, std::string("one") + name);
    add("Test.Asking", "asking");
    for (const char* index : {"0", "1"}) add("Qvx.RButton", "many", std::string("      Index = ") + index + "\r\n");
    add("Frame", "oneFrame",
        "      Begin Qvx.RButton inFrame\r\n      End\r\n      Begin Label lblIn\r\n         Top = 600\r\n      "
        "End\r\n");
    return text + "End\r\n";
}

class DesignerHistoryTest : public DesignerTest {
  protected:
    DesignerHistoryTest() {
        source_.objects[u"Test.Asking"] = ComPtr<IUnknown>(static_cast<IOleObject*>(asking_.get()));
    }
    // What the asking control has been told since.
    void ExpectItsName() {
        for (const Text& name : std::exchange(asking_->named, {})) EXPECT_EQ(Narrow(name), "asking");
    }
    std::string Now() { return designer_->Session().Form().Bytes(); }
    // All the way in that direction; how many steps that were.
    int Go(Command direction) {
        int steps = 0;
        for (; designer_->Do(direction); ++steps) Settle(20);
        return steps;
    }
    void Put(IDispatch* object, const wchar_t* member, const Variant& value) {
        Invoke(object, member, DISPATCH_PROPERTYPUT, {*value.ptr()});
    }
    void PutForm(const wchar_t* member, const Variant& value) {
        Put(designer_->Session().Picture().Automation(), member, value);
    }
    void OnAll(Command command) {
        designer_->Do(Command::selectAll);
        designer_->Do(command);
    }
    // In an editor that somebody has in front of them.
    void Edit(Command editor, const std::function<void()>& acts) {
        test::Person person([&] {
            WaitForEditor();
            acts();
            Sleep(200);
            TypeKey(VK_RETURN);
        });
        designer_->Do(editor);
    }
    void PasteText(TextView text, Command command = Command::paste) {
        PutOnClipboard(designer_->Handle(), text);
        designer_->Do(command);
    }
    template <typename Act>
    void WithEach(Act act) {
        for (const ObjectId& id : designer_->Session().Form().Controls()) {
            if (FormControl* control = Control(id.name, id.index)) act(*control);
            Settle(5);
        }
    }

    ComPtr<AskingControl> asking_ = MakeObject<AskingControl>();
};

TEST_F(DesignerHistoryTest, EveryStepIsTakenBackAndDoneAgainUnderEveryControl) {
    const std::string text = EveryControl();
    struct Case {
        const char* step;
        std::function<void()> act;
    };
    const Case cases[] = {
        {"the form's own",
         [&] {
             auto& form = designer_->Session().Picture();
             PutForm(L"Caption", Variant(u"Other"));
             Put(Call(form.Automation(), L"Font").ToObject<IDispatch>().get(), L"Size", Variant(14));
             form.SetFrame(1, false, false);
             form.SetClientSize(7200, 4800);
             designer_->Session().Rename(nullptr, u"frmOther");
         }},
        {"properties",
         [&] {
             WithEach([&](FormControl& one) {
                 Put(one.Extended(), L"Tag", Variant(u"tag"));
                 Put(one.Extended(), L"Left", Variant(3600));
                 Put(one.Extended(), L"BackColor", Variant(0x00C0FFC0));
             });
         }},
        {"names and indexes",
         [&] {
             WithEach([&](FormControl& one) {
                 if (one.Name() != u"asking") designer_->Session().Rename(&one, one.Name() + u"2");
                 if (one.Index() < 0) designer_->Session().SetIndex(one, 7);
             });
         }},
        {"picture",
         [&] {
             Write(folder_ + u"\\dot.bmp", dotPicture);
             const auto images = Call(Members(u"oneImageList").get(), L"ListImages").ToObject<IDispatch>();
             const ComPtr<IPictureDisp> picture = LoadPictureFile(folder_, u"dot.bmp");
             Call(images.get(), L"Add", {Variant(1), Variant(u"dot"), Variant(picture.get())});
         }},
        {"placing",
         [&] {
             for (const char16_t* name : {u"Qvx.RButton", u"Qvx.ComboGrid", u"Qvx.TextEdit", u"Label", u"Frame"}) {
                 Place(name);
             }
         }},
        {"deleting", [&] { OnAll(Command::remove); }},
        {"duplicating", [&] { OnAll(Command::duplicate); }},
        {"pasting as an array", [&] { PasteText(u"Begin Qvx.RButton oneRButton\r\nEnd\r\n", Command::pasteArray); }},
        {"front and alignment",
         [&] {
             designer_->Session().Select({{u"oneFrame"}, {u"many", 1}});
             designer_->Do(Command::bringToFront);
             OnAll(Command::alignLefts);
         }},
        {"menus",
         [&] {
             Edit(Command::menus, [] {
                 TypeKey('C', {VK_MENU});
                 Sleep(200);
                 TypeKey('X');
             });
         }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.step);
        Open(text);
        EXPECT_EQ(Now(), text);
        c.act();
        Settle(50);
        const std::string after = Now();
        EXPECT_NE(after, text);
        // Without anything selected the form itself is what the property list asks.
        designer_->Session().Select({});
        int steps = 0;
        for (int round = 0; round < 2; ++round) {
            const int back = Go(Command::undo);
            EXPECT_EQ(Now(), text);
            ExpectItsName();
            EXPECT_FALSE(designer_->Session().Form().Dirty());
            EXPECT_GT(back, 0);
            if (round > 0) {
                EXPECT_EQ(back, steps);
            }
            EXPECT_EQ(Go(Command::redo), back);
            EXPECT_EQ(Now(), after);
            ExpectItsName();
            steps = back;
        }
    }
    EXPECT_EQ(asking_->readsLater, 0);
    EXPECT_EQ(asking_->writesLater, 0);
}

TEST_F(DesignerHistoryTest, AStepThatFailsIsTakenBackUnderEveryControl) {
    const std::string text = EveryControl();
    Open(text);
    // As deep as a form may be: one frame more is too deep, which shows only when all has been put there.
    Text deep = u"Begin Label lblFirst\r\nEnd\r\n";
    for (int i = 0; i < 63; ++i) deep += u"Begin Frame f\r\n";
    for (int i = 0; i < 63; ++i) deep += u"End\r\n";
    for (int round = 0; round < 2; ++round) {
        designer_->Session().Select({{u"oneFrame"}});
        PasteText(deep);
        EXPECT_EQ(reporter_.Errors(), round + 1);
        EXPECT_EQ(Now(), text);
        EXPECT_FALSE(designer_->Session().Form().Dirty());
        // What the controls are asked next.
        PutForm(L"BackColor", Variant(0x00E0F0FF));
        WithEach([&](FormControl& one) { Put(one.Extended(), L"Tag", Variant(u"tag")); });
        EXPECT_GT(Go(Command::undo), 0);
        EXPECT_EQ(Now(), text);
        ExpectItsName();
    }
}

}  // namespace
}  // namespace qvx::host::designer
