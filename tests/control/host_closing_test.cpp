// How a form goes: asked, saved, with which exit code, and what happens when something fails on the way.
#include "common/run_time_error.h"
#include "tests/control/host_form.h"
#include "tests/support/error_of.h"

namespace qvx::host {
namespace {

class HostClosingTest : public HostFormTest {
  protected:
    HostClosingTest() : control_(MakeObject<ScriptedControl>()) {
        source_.objects.emplace(u"Test.Control", ComPtr<IUnknown>(static_cast<IOleObject*>(control_.get())));
        DeleteFileW(Wide(SavedPath()));
    }
    ~HostClosingTest() override { DeleteFileW(Wide(SavedPath())); }
    void Close() { SendMessageW(form_->Handle(), WM_CLOSE, 0, 0); }

    ComPtr<ScriptedControl> control_;
};

const std::string controlAndText =
    "Begin Form f\n  Begin TextBox t\n    Text = \"a\"\n  End\n  Begin Test.Control c\n  End\nEnd\n";

TEST_F(HostClosingTest, ClosingAgainWhileItClosesChangesNothing) {
    options_.save = SavedPath();
    Load(controlAndText, u"Sub Form_Unload(Cancel)\n f.Tag = f.Tag & \"asked \"\nEnd Sub\n");
    int saved = 0;
    control_->saves = [&] {
        if (++saved == 1) Close();
        return S_OK;
    };
    Close();
    EXPECT_EQ(form_->Handle(), nullptr);
    EXPECT_EQ(Said(), u"asked ");
    EXPECT_NE(test::Read(SavedPath()).find("Text = \"a\""), std::string::npos);
    // Without its window it is not saved any more.
    DeleteFileW(Wide(SavedPath()));
    EXPECT_THROW(form_->Save(SavedPath()), RunTimeError);
    EXPECT_FALSE(test::IsThere(SavedPath()));
}

// The exit code is that of the request that closed the form, not of one that was refused.
TEST_F(HostClosingTest, TheExitCodeTravelsWithTheRequest) {
    const struct {
        TextView script;
        int code;
    } cases[] = {
        {u"Sub Form_Load()\n Host.Quit -7\nEnd Sub\n", -7},
        {u"Sub Form_Load()\n Host.Quit 7\nEnd Sub\nSub Form_Unload(Cancel)\n"
         u" f.Tag = f.Tag & \"x\"\n If f.Tag = \"x\" Then Cancel = True\nEnd Sub\n",
         0},
        {u"Sub Form_Unload(Cancel)\n Host.Quit 5\nEnd Sub\n", 5},
        {u"Sub Form_Unload(Cancel)\n f.Tag = f.Tag & \"x\"\n If f.Tag = \"x\" Then Cancel = True : Host.Quit 5\nEnd "
         u"Sub\n",
         0},
        {u"Sub Form_Unload(Cancel)\n Host.Nobody\nEnd Sub\n", 3},
        {u"Sub Form_Unload(Cancel)\n Host.Quit 5\n Host.Nobody\nEnd Sub\n", 5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.script.begin(), c.script.end()));
        Load("Begin Form f\nEnd\n", c.script);
        test::Settle(50);
        if (form_->Handle()) Close();
        test::Settle(50);
        if (form_->Handle()) Close();
        EXPECT_EQ(form_->Handle(), nullptr);
        EXPECT_EQ(form_->ExitCode(), c.code);
    }
}

TEST_F(HostClosingTest, AControlThatCannotBeSavedDoesNotKeepTheFormOpen) {
    options_.save = SavedPath();
    control_->saves = [] { return E_FAIL; };
    Load(controlAndText, u"Sub Form_Load()\n Host.Quit 7\nEnd Sub\n");
    EXPECT_NE(form_->Handle(), nullptr) << "can be shown and used all the same";
    const Text said = test::RaisedBy([&] { form_->Save(SavedPath()); }).words;
    EXPECT_EQ(said.substr(0, 18), u"cannot save \"c\": e") << "names the control and the reason";
    // It has no undo to go back to, and refuses nobody for that.
    EXPECT_EQ(control_->site.As<IOleInPlaceSite>()->DeactivateAndUndo(), S_OK);
    test::Settle(50);
    EXPECT_EQ(form_->Handle(), nullptr);
    EXPECT_EQ(form_->ExitCode(), 4);
    EXPECT_EQ(reporter_.Errors(), 1);
    EXPECT_FALSE(test::IsThere(SavedPath()));
}

// What a save that failed half-way had gathered is not in the file that the next one writes.
TEST_F(HostClosingTest, AFailedSaveLeavesTheFormAsItWas) {
    options_.design = true;
    options_.save = SavedPath();
    Load(controlAndText);
    EXPECT_EQ(SavedBytes(), controlAndText);
    const HWND text = form_->FindControl(u"t")->Window();
    SetWindowTextW(text, L"changed");
    control_->saves = [] { return E_FAIL; };
    EXPECT_THROW(form_->Save(options_.save), RunTimeError);
    EXPECT_EQ(test::Read(options_.save), controlAndText);
    SetWindowTextW(text, L"a");
    control_->saves = [] { return S_OK; };
    form_->Save(options_.save);
    EXPECT_EQ(test::Read(options_.save), controlAndText);
}

TEST_F(HostClosingTest, AControlThatFailsToLoadIsLetGo) {
    control_->loads = E_FAIL;
    EXPECT_THROW(Load(controlAndText), FormFileError);
    EXPECT_TRUE(control_->closed);
    EXPECT_FALSE(control_->site) << "the site is the form's, and the form is going";
}

// The form's window is there when its last control fails, and gone when the error is shown.
TEST_F(HostClosingTest, AnErrorWhileLoadingIsShown) {
    Reporter reporter(false);
    try {
        RunningForm form(FormFile::Parse("Begin Form f\n  Begin Nobody.Knows a\n  End\nEnd\n"), options_, folder_,
                         source_, reporter);
        form.Build();
        ADD_FAILURE() << "was built";
    } catch (const FormFileError& error) {
        const test::Person person([] {
            if (const HWND box = test::WaitForWindow(test::systemDialog)) PostMessageW(box, WM_COMMAND, IDOK, 0);
        });
        reporter.Error(error.Message());
    }
    EXPECT_FALSE(test::TakeQuit()) << "there was no loop to end";
}

}  // namespace
}  // namespace qvx::host
