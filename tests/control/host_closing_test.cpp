// How a form goes: asked, saved, with which exit code, and what happens when something fails on the way.
#include "common/run_time_error.h"
#include "tests/control/host_form.h"
#include "tests/support/thread_windows.h"

namespace qvx::host {
namespace {

class HostClosingTest : public HostFormTest {
  protected:
    HostClosingTest() : control_(MakeObject<ScriptedControl>()) {
        source_.objects.emplace(u"Test.Control", ComPtr<IUnknown>(static_cast<IOleObject*>(control_.get())));
        DeleteFileW(Wide(SavedPath()));
    }
    ~HostClosingTest() override { DeleteFileW(Wide(SavedPath())); }
    bool FileIsThere() const { return GetFileAttributesW(Wide(SavedPath())) != INVALID_FILE_ATTRIBUTES; }
    void Close() { SendMessageW(form_->Handle(), WM_CLOSE, 0, 0); }
    static void Pump() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, WM_QUIT - 1, PM_REMOVE)) DispatchMessageW(&message);
        while (PeekMessageW(&message, nullptr, WM_QUIT + 1, 0xFFFF, PM_REMOVE)) DispatchMessageW(&message);
    }

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
    const std::string bytes = Bytes(options_.save);
    EXPECT_NE(bytes.find("Text = \"a\""), std::string::npos) << bytes;
}

TEST_F(HostClosingTest, AFormWithoutItsWindowIsNotSaved) {
    Load(controlAndText);
    Close();
    ASSERT_EQ(form_->Handle(), nullptr);
    EXPECT_THROW(form_->Save(SavedPath()), RunTimeError);
    EXPECT_FALSE(FileIsThere());
}

// The exit code is that of the request that closed the form, not of one that was refused.
TEST_F(HostClosingTest, TheExitCodeTravelsWithTheRequest) {
    const struct {
        TextView script;
        int code;
    } cases[] = {
        {u"Sub Form_Load()\n Host.Quit 7\nEnd Sub\n", 7},
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
        Pump();
        if (form_->Handle()) Close();
        Pump();
        if (form_->Handle()) Close();
        EXPECT_EQ(form_->Handle(), nullptr);
        EXPECT_EQ(form_->ExitCode(), c.code);
    }
}

TEST_F(HostClosingTest, AControlThatCannotBeSavedDoesNotKeepTheFormOpen) {
    options_.save = SavedPath();
    Load(controlAndText, u"Sub Form_Load()\n Host.Quit 7\nEnd Sub\n");
    control_->saves = [] { return E_FAIL; };
    try {
        form_->Save(SavedPath());
        ADD_FAILURE() << "was saved";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Description().substr(0, 18), u"cannot save \"c\": e") << "names the control and the reason";
    }
    Pump();
    EXPECT_EQ(form_->Handle(), nullptr);
    EXPECT_EQ(form_->ExitCode(), 4);
    EXPECT_EQ(reporter_.Errors(), 1);
    EXPECT_FALSE(FileIsThere());
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
    EXPECT_EQ(Bytes(options_.save), controlAndText);
    SetWindowTextW(text, L"a");
    control_->saves = [] { return S_OK; };
    form_->Save(options_.save);
    EXPECT_EQ(Bytes(options_.save), controlAndText);
}

// A control that never could save itself can be shown and used all the same.
TEST_F(HostClosingTest, AControlThatCannotSaveIsShown) {
    control_->saves = [] { return E_FAIL; };
    Load(controlAndText, u"");
    EXPECT_NE(form_->Handle(), nullptr);
    EXPECT_THROW(form_->Save(SavedPath()), RunTimeError);
}

// A form has no undo to go back to, and refuses nobody for that.
TEST_F(HostClosingTest, ASiteTakesTheInputBackWithoutAnUndo) {
    Load(controlAndText);
    const auto site = control_->site.As<IOleInPlaceSite>();
    ASSERT_TRUE(site);
    EXPECT_EQ(site->DeactivateAndUndo(), S_OK);
}

TEST_F(HostClosingTest, AControlThatFailsToLoadIsLetGo) {
    control_->loads = E_FAIL;
    EXPECT_THROW(Load(controlAndText), FormFileError);
    EXPECT_TRUE(control_->closed);
    EXPECT_FALSE(control_->site) << "the site is the form's, and the form is going";
}

// Presses the button of the message box that comes up.
class BoxCloser {
  public:
    BoxCloser() : timer_(SetTimer(nullptr, 0, 50, &BoxCloser::Look)) { seen = 0; }
    ~BoxCloser() { KillTimer(nullptr, timer_); }
    static inline int seen = 0;

  private:
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
        for (const HWND box : test::ThreadWindows(L"#32770")) {
            ++seen;
            PostMessageW(box, WM_COMMAND, IDOK, 0);
        }
    }
    UINT_PTR timer_;
};

// The form's window is there when its last control fails, and gone when the error is shown.
TEST_F(HostClosingTest, AnErrorWhileLoadingIsShown) {
    Reporter reporter(false);
    try {
        RunningForm form(FormFile::Parse("Begin Form f\n  Begin Nobody.Knows a\n  End\nEnd\n"), options_, folder_,
                         source_, reporter);
        form.Build();
        ADD_FAILURE() << "was built";
    } catch (const FormFileError& error) {
        const BoxCloser closer;
        reporter.Error(error.Message());
        EXPECT_GT(BoxCloser::seen, 0);
    }
    EXPECT_FALSE(test::TakeQuit()) << "there was no loop to end";
}

}  // namespace
}  // namespace qvx::host
