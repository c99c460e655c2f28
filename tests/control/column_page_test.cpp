// The property page of a grid's columns: under a person's keys in the designer, and in a window of the test's.
#include "controls/grid/column_page_object.h"

#include "tests/control/designer_form.h"
#include "tests/control/page_form.h"
#include "tests/support/resource_counts.h"
#include "win/accessible.h"

namespace qvx::host {
namespace {

const std::string gridText =
    "   Begin Qvx.ComboGrid grd\r\n      Left = 240\r\n      Top = 2400\r\n      Width = 3600\r\n"
    "      Height = 1200\r\n      Cols = 3\r\n      FormatString = \"No|<Qty|Rate\"\r\n      ColWidth0 = 330\r\n"
    "      TextArray0 = \"No\"\r\n      InVisibleColumns = \";Rate;\"\r\n      RequiredFields = \";Qty;\"\r\n"
    "      BindFields = \"[Qty]q\"\r\n      KeyColumn = 1\r\n   End\r\n";

}  // namespace

namespace designer {
namespace {

class ColumnPageInDesigner : public DesignerTest {
  protected:
    ColumnPageInDesigner() {
        std::string text = formText;
        Open(text.insert(text.rfind("End"), gridText));
        designer_->Session().Select({{u"grd"}});
    }
    // The keys of somebody who opens the page.
    void Press(const std::vector<std::pair<int, int>>& keys) {
        test::Person person([&] {
            WaitForEditor();
            for (const auto& [key, held] : keys) {
                if (held)
                    TypeKey(key, {held});
                else
                    TypeKey(key);
                Sleep(100);
            }
        });
        EXPECT_TRUE(designer_->Do(Command::pages));
    }
    std::string Bytes() { return designer_->Session().Form().Bytes(); }
};

TEST_F(ColumnPageInDesigner, KeysChangeWhatTheFormKeeps) {
    const std::string before = Bytes();
    // The second column is required no longer, has another header, and takes numbers. A new one after it moves up, and
    // the last one goes.
    Press({{VK_DOWN, 0},
           {'Q', VK_MENU},
           {VK_F2, 0},
           {'P', 0},
           {'C', 0},
           {'S', 0},
           {'Y', VK_MENU},
           {VK_DOWN, 0},
           {VK_DOWN, 0},
           {'C', VK_MENU},
           {VK_INSERT, 0},
           {'M', 0},
           {'X', VK_MENU},
           {'3', 0},
           {'0', 0},
           {'C', VK_MENU},
           {VK_UP, VK_CONTROL},
           {VK_DOWN, 0},
           {VK_DOWN, 0},
           {VK_DELETE, 0},
           {'A', VK_MENU},
           {VK_ESCAPE, 0}});
    const std::string after = Saved();
    for (const char* line : {"Cols = 3", "FormatString = \"No|m|<pcs\"", "ColWidth0 = 330", "KeyColumn = 2",
                             "ColumnsDataType", "\";pcs-1;\"", "ColumnsMaxLength", "\";m-30;\"", "\"[pcs]q\""}) {
        EXPECT_NE(after.find(line), std::string::npos) << line << "\n" << after;
    }
    for (const char* gone : {"RequiredFields", "InVisibleColumns"})
        EXPECT_EQ(after.find(gone), std::string::npos) << gone << "\n" << after;
    // What is loaded is what was designed.
    const auto look = [&] {
        const auto grid = Members(u"grd");
        std::string columns;
        for (int col = 0; col < 3; ++col) {
            for (const wchar_t* name : {L"ColWidth", L"ColAlignment"})
                columns += std::to_string(Call(grid.get(), name, {Variant(col)}).ToLong().value_or(-9)) + " ";
            columns += Narrow(*Call(grid.get(), L"TextMatrix", {Variant(0), Variant(col)}).ToText()) + "; ";
        }
        return columns;
    };
    const std::string designed = look();
    EXPECT_TRUE(designer_->Do(Command::undo));
    EXPECT_EQ(Bytes(), before) << "one step";
    Open(after);
    EXPECT_EQ(look(), designed);
    // Nothing that was not applied.
    designer_->Session().Select({{u"grd"}});
    Press({{VK_DELETE, 0}, {VK_F2, 0}, {'Z', 0}, {VK_ESCAPE, 0}});
    EXPECT_EQ(Bytes(), after);
    // OK applies, and finishes the entry.
    Press({{VK_F2, 0}, {'Z', 0}, {VK_RETURN, 0}});
    EXPECT_NE(Saved().find("FormatString = \"z|m|<pcs\""), std::string::npos);
}

}  // namespace
}  // namespace designer

namespace {

class ColumnPage : public PageFormTest {
  protected:
    ColumnPage() : PageFormTest({0, 0, 500, 330}) {
        Open("Begin Form f\r\n" + gridText + "End\r\n", u"grd");
        if (HasFatalFailure()) return;
    }
    HWND Page() const { return FindWindowExW(frame_.Window(), nullptr, L"QvxColumnPage", nullptr); }
    HWND Part(const wchar_t* name, int place = 0) const {
        HWND part = nullptr;
        for (int i = 0; i <= place; ++i) part = FindWindowExW(Page(), part, name, nullptr);
        return part;
    }
    HWND Strip() const { return GetWindow(GetWindow(Page(), GW_CHILD), GW_HWNDLAST); }
    long Selected() const { return static_cast<long>(SendMessageW(Part(L"LISTBOX"), LB_GETCURSEL, 0, 0)); }
    static RECT PlaceOf(HWND window) {
        const RECT place = test::AreaOf(window);
        return place;
    }
    // Clicks on the header, in pixels from one of its ends.
    void ClickHeader(int x, bool fromRight = false) const {
        const RECT strip = PlaceOf(Strip());
        test::MoveMouseTo({fromRight ? strip.right - x : strip.left + x, strip.top + 10});
        test::LeftButton(true);
        test::LeftButton(false);
        test::Settle();
    }
};

TEST_F(ColumnPage, AClickOnAHeaderSelectsItsColumn) {
    ShowPage();
    EXPECT_EQ(Selected(), 0);
    ClickHeader(30);
    EXPECT_EQ(Selected(), 1);
    EXPECT_EQ(WindowText(Part(L"EDIT")), u"Qty");
    EXPECT_EQ(GetFocus(), Part(L"LISTBOX"));
    EXPECT_FALSE(Dirty());
    // A hidden column is in the list, but not in the header.
    EXPECT_EQ(SendMessageW(Part(L"LISTBOX"), LB_GETCOUNT, 0, 0), 3);
    Close();
    const auto inner = test::Call(control_.get(), L"Grid").ToObject<IDispatch>();
    test::Invoke(inner.get(), L"RightToLeft", DISPATCH_PROPERTYPUT, {*Variant(true).ptr()});
    ShowPage();
    ClickHeader(30, true);
    EXPECT_EQ(Selected(), 1) << "the first one is at the right";
}

TEST_F(ColumnPage, AFieldKeepsWhatIsRefused) {
    ShowPage();
    SendMessageW(Part(L"LISTBOX"), LB_SETCURSEL, 1, 0);
    SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(Part(L"LISTBOX")), LBN_SELCHANGE), 0);
    const HWND caption = Part(L"EDIT");
    SetFocus(caption);
    SetWindowTextW(caption, L"Q]");
    EXPECT_TRUE(Dirty());
    SetFocus(Part(L"LISTBOX"));
    EXPECT_EQ(WindowText(caption), u"Qty") << "BindFields cannot have the other";
    SetFocus(caption);
    SetWindowTextW(caption, L"Q;t");
    // What is not finished is kept while another page is shown.
    EXPECT_EQ(S_OK, page_->Deactivate());
    EXPECT_EQ(S_OK, page_->Activate(frame_.Window(), &area_, FALSE));
    EXPECT_EQ(WindowText(Part(L"EDIT")), u"Qt");
    EXPECT_EQ(S_OK, page_->Apply());
    EXPECT_FALSE(Dirty());
    EXPECT_EQ(test::Call(control_.get(), L"FormatString").ToText(), u"No|<Qt|Rate");
    EXPECT_EQ(test::Call(control_.get(), L"RequiredFields").ToText(), u";Qt;");
    EXPECT_EQ(test::Call(control_.get(), L"ColWidth", {Variant(2)}).ToLong(), 0) << "still hidden";
    EXPECT_EQ(test::Call(control_.get(), L"ColWidth", {Variant(0)}).ToLong(), 330);
}

// Every field has a label before it, which assistive programs read and whose access key leads to the field; nothing
// covers anything else, in either reading direction.
TEST_F(ColumnPage, PartsAreLabelledAndApart) {
    for (const bool mirrored : {false, true}) {
        SCOPED_TRACE(mirrored);
        if (mirrored) SetWindowLongW(frame_.Window(), GWL_EXSTYLE, WS_EX_LAYOUTRTL);
        ShowPage();
        EXPECT_EQ(PlaceOf(Part(L"LISTBOX")).left > PlaceOf(Part(L"EDIT")).left, mirrored);
        EXPECT_FALSE(GetWindowLongW(Strip(), GWL_EXSTYLE) & WS_EX_LAYOUTRTL) << "its texts would be turned round";
        Text keys;
        std::vector<RECT> places;
        const RECT page = PlaceOf(Page());
        for (HWND part = GetWindow(Page(), GW_CHILD); part; part = GetWindow(part, GW_HWNDNEXT)) {
            wchar_t name[16]{};
            GetClassNameW(part, name, 16);
            const Text text = WindowText(part);
            if (const std::size_t mark = text.find(u'&'); mark != Text::npos)
                keys += static_cast<char16_t>(towlower(text[mark + 1]));
            const std::wstring kind = name;
            if (kind == L"Edit" || kind == L"ComboBox" || kind == L"ListBox") {
                EXPECT_FALSE(LabelBefore(part).empty()) << GetDlgCtrlID(part);
            }
            const RECT place = PlaceOf(part);
            RECT common{};
            EXPECT_TRUE(IntersectRect(&common, &place, &page) && EqualRect(&common, &place)) << GetDlgCtrlID(part);
            for (const RECT& other : places) EXPECT_FALSE(IntersectRect(&common, &place, &other)) << test::Narrow(text);
            places.push_back(place);
        }
        std::sort(keys.begin(), keys.end());
        EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end()) << test::Narrow(keys);
        EXPECT_EQ(keys.size(), 22u);
        EXPECT_EQ(keys.find(u'a'), Text::npos) << "the frame's Apply";
        Close();
    }
}

TEST_F(ColumnPage, ManyPagesLeaveNothingBehind) {
    test::ExpectNothingLeftBehind(200, [&] { End(NewPage()); });
}

}  // namespace
}  // namespace qvx::host
