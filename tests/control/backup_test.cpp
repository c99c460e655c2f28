// The Backup control as its host meets it.
#include <gtest/gtest.h>
#include <olectl.h>

#include "Qvx.h"
#include "com/bstr.h"
#include "tests/support/container.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/files.h"
#include "tests/support/form_window.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

ComPtr<IUnknown> NewBackup() { return ServerUnderTest::Get().Create(CLSID_Backup); }

Container::Options Mode(bool user) {
    Container::Options options;
    options.ambients.emplace(DISPID_AMBIENT_USERMODE, Variant(user));
    return options;
}

TEST(Backup, KeepsItsSettings) {
    const auto control = NewBackup();
    ASSERT_EQ(S_OK, control.As<IPersistStreamInit>()->InitNew());
    EXPECT_EQ(u"", SaveToBag(control.get())->Print()) << "what is as it was need not be saved";
    // In the order in which they are saved.
    Text expected;
    for (const wchar_t* name : {L"CnnString", L"Database", L"TempPath", L"DataPath", L"ZipPath", L"BackupExtension",
                                L"DataExtension", L"CheckSecurity"}) {
        const bool flag = std::wcscmp(name, L"CheckSecurity") == 0;
        const Variant value = flag ? Variant(true) : Variant(u"a " + Text(FromWide(name)));
        Put(control.As<IDispatch>().get(), name, {value});
        expected += Text(FromWide(name)) + u"=" + value.ToText().value_or(u"") + u"\n";
    }
    EXPECT_EQ(expected, SaveToBag(control.get())->Print());
}

// Its user never sees it, and it takes the focus away from nothing.
TEST(Backup, IsASmallPictureToDesigners) {
    for (const bool user : {false, true}) {
        Container container(Mode(user));
        container.Place(NewBackup());
        SetForegroundWindow(container.Window());
        SetFocus(container.Window());
        user ? container.ActivateUi() : container.Activate();
        EXPECT_EQ(container.Window(), GetFocus());
        const RECT area = AreaOf(container.ControlWindow());
        EXPECT_EQ(18, area.right - area.left);
        EXPECT_EQ(18, area.bottom - area.top);
        const RECTL bounds{0, 0, 18, 18};
        const PixelPicture picture = PictureOf({18, 18}, [&](HDC dc) {
            EXPECT_EQ(S_OK,
                      Query<IViewObject>(container.Control())
                          ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0));
        });
        int drawn = 0;
        for (int i = 0; i < 18; ++i) drawn += picture.At(i, i) != RGB(0, 0, 0) ? 1 : 0;
        EXPECT_EQ(user ? 0 : 18, drawn);
    }
}

class BackupShown : public TemporaryFolder {
  protected:
    void SetUp() override {
        TemporaryFolder::SetUp();
        container_.emplace(Mode(true));
        container_->Place(NewBackup());
        Put(Automation(), L"DataPath", {Variant(root_)});
        Put(Automation(), L"Database", {Variant(u"Accounts")});
        ASSERT_TRUE(BringToFront(container_->Window()));
    }
    void TearDown() override {
        container_.reset();
        TemporaryFolder::TearDown();
        WaitFor([] { return false; }, 30);
    }
    IDispatch* Automation() { return automation_ ? automation_.get() : (automation_ = container_->Automation()).get(); }
    // What a caller's variable holds afterwards.
    void Show(VARIANT action) {
        const CallResult result = Invoke(Automation(), L"Show", DISPATCH_METHOD, {action});
        EXPECT_EQ(S_OK, result.result);
        WaitFor([&] { return GetForegroundWindow() == container_->Window(); }, 1000);
    }

    std::optional<Container> container_;
    ComPtr<IDispatch> automation_;
};

TEST_F(BackupShown, OpensNothingWhileTheDatabaseIsInUse) {
    Write(In(u"Accounts.ldb"), "");
    bool form = true;
    std::wstring title;
    const FormPerson person([&] {
        const HWND box = WaitForBox();
        form = FindForm(nullptr) != nullptr;
        title = TextOf(box);
        if (box) TypeKey('O');
    });
    Show(Variant(-1).get());
    EXPECT_FALSE(form);
    EXPECT_EQ(L"  Information", title) << "no title of its own";
    EXPECT_EQ(nullptr, FindForm(nullptr));
}

// As scripts and programs pass an argument: its value, a variable, a variable that holds a variant of another kind.
TEST_F(BackupShown, AnythingButZeroBacksUp) {
    const struct {
        Variant action;
        bool byReference;
        const wchar_t* caption;
    } cases[] = {{Variant(-1), true, L"Backup"},    {Variant(0), false, L"Restore"},
                 {Variant(1), false, L"Backup"},    {Variant(false), true, L"Restore"},
                 {Variant(u"0"), true, L"Restore"}, {Variant(7.0), true, L"Backup"}};
    for (const auto& c : cases) {
        const FormPerson person([&] {
            if (WaitForForm(c.caption)) TypeKey(VK_ESCAPE);
        });
        Variant variable(c.action);
        VARIANT argument = variable.get();
        if (c.byReference) {
            argument = VARIANT{};
            argument.vt = VT_BYREF | VT_VARIANT;
            argument.pvarVal = variable.ptr();
        }
        Show(argument);
        EXPECT_EQ(c.action.Type(), variable.Type()) << "left as it was";
        EXPECT_EQ(c.action.ToText(), variable.ToText());
    }
}

TEST_F(BackupShown, ThroughTheInterfaceTheArgumentStays) {
    const FormPerson person([] {
        if (WaitForForm(L"Backup")) TypeKey(VK_ESCAPE);
    });
    auto action = static_cast<ActionType>(3);
    EXPECT_EQ(S_OK, container_->Automation().As<_Backup>()->Show(&action));
    EXPECT_EQ(3, static_cast<int>(action));
    EXPECT_EQ(E_POINTER, container_->Automation().As<_Backup>()->Show(nullptr));
}

// The host closes its form from a timer while the dialog is open.
TEST_F(BackupShown, OutlivesItsHost) {
    const FormPerson person([&] {
        if (WaitForForm(L"Backup")) PostMessageW(container_->Window(), WM_CLOSE, 0, 0);
    });
    const auto control = container_->Automation();
    EXPECT_EQ(S_OK, Invoke(control.get(), L"Show", DISPATCH_METHOD, {Variant(-1).get()}).result);
    EXPECT_EQ(nullptr, FindForm(nullptr));
}

}  // namespace
}  // namespace qvx::test
