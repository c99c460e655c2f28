// The property page of menu pictures: in a property frame, under a person's hands, and what it does to the image list.
#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>

#include "Qvx.h"
#include "controls/menus/menu_page_object.h"
#include "tests/control/page_form.h"
#include "tests/support/import_patch.h"
#include "tests/support/input.h"
#include "tests/support/menu_pixels.h"
#include "tests/support/resource_counts.h"
#include "tests/support/thread_windows.h"

namespace qvx::host {
namespace {

using namespace qvx::test;
using menus::KeyedPicture;
using menus::MenuPageWindow;

const std::string menus =
    "Begin Form f\n Begin Menu mnuFile\n  Caption = \"&File\"\n"
    "  Begin Menu mnuOpen\n   Caption = \"&Open\"\n  End\n"
    "  Begin Menu mnuLine\n   Caption = \"-\"\n  End\n"
    "  Begin Menu mnuOne\n   Caption = \"One\"\n   Index = 0\n  End\n"
    "  Begin Menu mnuOne\n   Caption = \"Two\"\n   Index = 4\n  End\n End\n";

std::string FormWith(const std::string& list) {
    return menus + " Begin ImageList iml\n End\n Begin Qvx.CMenus mns\n  Left = 0\n" + list + " End\nEnd\n";
}

// The system's dialog for opening a file: types something and presses Enter, or Escape.
void AnswerDialog(const std::wstring& path) {
    HWND dialog = nullptr;
    if (!WaitFor([&] { return (dialog = FindWindowW(L"#32770", L"Open")) != nullptr; }, 5000, false)) return;
    Sleep(300);
    if (path.empty()) {
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        return;
    }
    constexpr int fileName = 0x47C;  // the system's number of the field, in dialogs with a drop-down
    constexpr int plainFileName = 0x480;
    for (const int id : {fileName, plainFileName}) SetDlgItemTextW(dialog, id, path.c_str());
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

// The page of a form's CMenus control in a window of the test's.
class MenuPage : public PageFormTest {
  protected:
    MenuPage() : PageFormTest({0, 0, 330, 210}) {}

    void Open(const std::string& text = FormWith("  ImageList = \"iml\"\n")) { PageFormTest::Open(text, u"mns"); }
    void ShowPage() {
        PageFormTest::ShowPage();
        ASSERT_TRUE(Grid());
        SetFocus(Grid());
    }
    HWND Grid() const {
        const HWND page = FindWindowExW(frame_.Window(), nullptr, L"QvxMenuPage", nullptr);
        return page ? GetWindow(page, GW_CHILD) : nullptr;
    }
    ComPtr<IDispatch> Images() {
        const auto list = ComPtr<IDispatch>(form_->FindControl(u"iml")->Extended());
        return test::Call(list.get(), L"ListImages").ToObject<IDispatch>();
    }
    void AddImage(const wchar_t* key, COLORREF color) {
        test::Call(Images().get(), L"Add",
                   {Variant::Missing(), Variant(Text(FromWide(key))),
                    Variant(static_cast<IDispatch*>(SolidPicture({16, 16}, color).get()))});
    }
    Text Keys() {
        Text keys;
        const long count = test::Call(Images().get(), L"Count").ToLong().value_or(-1);
        for (long i = 1; i <= count; ++i) {
            const auto image = test::Call(Images().get(), L"Item", {Variant(i)}).ToObject<IDispatch>();
            keys += test::Call(image.get(), L"Key").ToText().value_or(u"?") + u" ";
        }
        return keys;
    }
    // Clicks into the middle of a row; 0 is the header.
    void ClickRow(int row) const {
        POINT place{60, row > 0 ? headerHeight + (row - 1) * rowHeight + rowHeight / 2 : 8};
        ClientToScreen(Grid(), &place);
        MoveMouseTo(place);
        LeftButton(true);
        LeftButton(false);
    }
    // A click on a row, and the answer to the dialog that it opens; returns when that is gone.
    void Choose(int row, const std::wstring& file) const {
        std::atomic<bool> done{false};
        const Person person([&] {
            ClickRow(row);
            AnswerDialog(file);
            WaitFor([] { return !FindWindowW(L"#32770", L"Open"); }, 5000, false);
            Sleep(100);
            done = true;
        });
        EXPECT_TRUE(WaitFor([&] { return done.load(); }, 15000));
    }
    std::wstring Temporary(const wchar_t* name) const { return std::wstring(Wide(folder_)) + name; }

    static constexpr int headerHeight = 17;
    static constexpr int rowHeight = 20;
};

void WriteBitmap(const std::wstring& path, std::size_t size) {
    std::vector<std::uint8_t> file{'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40,
                                   0,   0,   0, 2, 0, 0, 0, 2, 0, 0, 0,  1, 0, 24};
    file.resize(size);
    std::ofstream(path.c_str(), std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
}

TEST_F(MenuPage, StoresWhatAPersonHasChosen) {
    Open();
    for (const wchar_t* key : {L"mnuOpen", L"somebodyElse", L"mnuOne(0)"}) AddImage(key, RGB(255, 0, 0));
    ShowPage();
    EXPECT_FALSE(Dirty());
    // A file that cannot be read changes nothing.
    const std::wstring file = Temporary(L"qvx_menu_page.bmp");
    WriteBitmap(file, 5);
    Choose(2, file);
    EXPECT_FALSE(Dirty());
    WriteBitmap(file, 54 + 16);
    Choose(5, file);
    EXPECT_TRUE(Dirty());
    EXPECT_EQ(site_->status, static_cast<DWORD>(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE));
    Choose(4, {});  // cancelled, which takes the picture away
    EXPECT_EQ(Keys(), u"mnuOpen somebodyElse mnuOne(0) ") << "not before it is applied";
    EXPECT_EQ(S_OK, page_->Apply());
    EXPECT_FALSE(Dirty());
    // In place of all that was there.
    EXPECT_EQ(Keys(), u"mnuOpen mnuOne(4) ");
    DeleteFileW(file.c_str());
}

TEST_F(MenuPage, WithoutAnImageListNothingIsStored) {
    for (const std::string list : {"", "  ImageList = \"mnuOpen\"\n"}) {
        SCOPED_TRACE(list);
        Open(FormWith(list));
        AddImage(L"mnuOpen", RGB(255, 0, 0));
        ShowPage();
        MSG key{Grid(), WM_KEYDOWN, VK_DELETE, 1, 0, {}};
        EXPECT_EQ(page_->TranslateAccelerator(&key), S_OK);
        EXPECT_TRUE(Dirty());
        page_->Apply();
        EXPECT_EQ(Keys(), u"mnuOpen ");
        Close();
        control_ = nullptr;
        form_.reset();
    }
}

TEST_F(MenuPage, IsFilledOnce) {
    Open();
    ShowPage();
    MSG key{Grid(), WM_KEYDOWN, VK_DELETE, 1, 0, {}};
    page_->TranslateAccelerator(&key);
    ASSERT_TRUE(Dirty());
    // Later selections do not undo what has been chosen.
    AddImage(L"mnuFile", RGB(255, 0, 0));
    IUnknown* objects[] = {control_.get()};
    EXPECT_EQ(S_OK, page_->SetObjects(1, objects));
    EXPECT_EQ(S_OK, page_->Deactivate());
    EXPECT_EQ(S_OK, page_->Activate(frame_.Window(), &area_, FALSE));
    EXPECT_EQ(S_OK, page_->Apply());
    EXPECT_EQ(Keys(), u"");
}

TEST_F(MenuPage, RefusesWhatMakesNoSense) {
    Open();
    ShowPage();
    EXPECT_EQ(E_POINTER, page_->GetPageInfo(nullptr));
    EXPECT_EQ(E_POINTER, page_->Activate(frame_.Window(), nullptr, FALSE));
    EXPECT_EQ(E_POINTER, page_->Move(nullptr));
    EXPECT_EQ(E_POINTER, page_->TranslateAccelerator(nullptr));
    for (const UINT key : {VK_TAB, VK_ESCAPE}) {
        MSG message{Grid(), WM_KEYDOWN, key, 1, 0, {}};
        EXPECT_EQ(page_->TranslateAccelerator(&message), S_FALSE) << "the frame's";
    }
    EXPECT_EQ(E_POINTER, page_->SetObjects(1, nullptr));
    const auto other = ServerUnderTest::Get().Create(CLSID_Button);
    IUnknown* objects[] = {other.get()};
    EXPECT_EQ(E_NOINTERFACE, page_->SetObjects(1, objects));
    EXPECT_EQ(S_OK, page_->Deactivate());
    EXPECT_EQ(E_UNEXPECTED, page_->Deactivate());
    EXPECT_EQ(E_UNEXPECTED, page_->Show(SW_SHOW));
    EXPECT_EQ(E_UNEXPECTED, page_->Apply()) << "no control";
    PROPPAGEINFO info{};
    info.cb = sizeof info;
    EXPECT_EQ(S_OK, page_->GetPageInfo(&info));
    EXPECT_GT(info.size.cx, 100);
    EXPECT_STREQ(info.pszTitle, L"Menu Pictures");
    CoTaskMemFree(info.pszTitle);
}

std::vector<std::string>* calls = nullptr;  // of the container that the frame is opened in

HRESULT WINAPI OpenNoFrame(HWND, UINT, UINT, LPCOLESTR, ULONG, LPUNKNOWN*, ULONG, LPCLSID, LCID, DWORD, LPVOID) {
    calls->emplace_back("the frame");
    return S_OK;
}

// The frame is a modal dialog of the control's: the host closes its own other windows to input meanwhile.
TEST(PropertyFrame, IsToldToTheHost) {
    const ImportPatch patch(ServerUnderTest::Get().Module(), "OleCreatePropertyFrame",
                            reinterpret_cast<void*>(&OpenNoFrame));
    ASSERT_TRUE(patch.Found());
    Container container({});
    container.Place(ServerUnderTest::Get().Create(CLSID_CMenus));
    container.Activate();
    container.Calls().clear();
    calls = &container.Calls();
    EXPECT_EQ(S_OK, Query<IOleObject>(container.Control())
                        ->DoVerb(OLEIVERB_PROPERTIES, nullptr, nullptr, 0, container.Window(), nullptr));
    EXPECT_EQ(container.Calls(),
              (std::vector<std::string>{"EnableModeless(False)", "the frame", "EnableModeless(True)"}));
}

TEST_F(MenuPage, AThousandPagesLeaveNothingBehind) {
    Open();
    AddImage(L"mnuOpen", RGB(255, 0, 0));
    ExpectNothingLeftBehind(1000, [&] { End(NewPage()); });
}

}  // namespace
}  // namespace qvx::host
