// Whole forms in the forms host, with controls of the server under test on them.
#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "host/form_storage_win32.h"
#include "tests/control/grid_counts.h"
#include "tests/control/host_form.h"
#include "tests/support/import_patch.h"
#include "tests/support/narrow.h"

namespace qvx::host {
namespace {

const std::string fieldsAndButtons =
    "Begin Form f\n"
    "  Caption = \"Fields\"\n  ClientWidth = 6000\n  ClientHeight = 3000\n"
    "  Begin TextBox txtLast\n    TabIndex = 9\n    Text = \"last\"\n  End\n"
    "  Begin Frame fraBox\n    TabIndex = 0\n    Left = 1500\n    Width = 3000\n    Height = 2000\n"
    "    Begin Label lblFirst\n      Caption = \"&First\"\n      TabIndex = 1\n    End\n"
    "    Begin TextBox txtItem\n      Index = 0\n      TabIndex = 2\n      Left = 900\n    End\n"
    "    Begin TextBox txtItem\n      Index = 4\n      TabIndex = 3\n      Left = 1800\n    End\n"
    "  End\n"
    "  Begin TextBox txtHidden\n    TabIndex = 4\n    Visible = 0 'False\n  End\n"
    "  Begin TextBox txtSkipped\n    TabIndex = 5\n    TabStop = 0 'False\n    Top = 600\n  End\n"
    "  Begin Qvx.Button cmdGo\n    TabIndex = 6\n    Caption = \"&Go\"\n    Default = -1 'True\n    Top = 1200\n    "
    "Width = 900\n"
    "    Tag = \"extra\"\n  End\n"
    "  Begin Menu mnuA\n    Caption = \"A\"\n    Begin Menu mnuB\n      Caption = \"B\"\n      Shortcut = ^B\n    "
    "End\n  End\n"
    "End\n";

TEST_F(HostFormTest, ScriptsSeeTheFormAndKeysMoveTheFocus) {
    Load(fieldsAndButtons,
         u"Sub Form_Load()\n"
         u"  Dim c, all\n"
         u"  For Each c In f.Controls\n    all = all & c.Name & \" \"\n  Next\n"
         u"  all = all & f.Controls.Count & \" \" & f.Controls(\"cmdgo\").Tag & \" \" & f.Controls(0).Name\n"
         u"  all = all & \" \" & txtItem(4).Index & txtItem.Count & txtItem.UBound & f.txtItem(0).Container.Name\n"
         u"  all = all & \" \" & cmdGo.Caption & cmdGo.Behavior & cmdGo.Parent.Caption & \" \" & txtLast & "
         u"mnuB.Caption\n"
         u"  cmdGo.Left = cmdGo.Left + 150\n"
         u"  all = all & \" \" & cmdGo.Left & \" \" & TypeName(cmdGo.Object)\n"
         u"  f.Tag = all\n"
         u"End Sub\n");
    EXPECT_EQ(
        Said().substr(0, Said().rfind(u' ')),
        u"txtLast fraBox lblFirst txtItem txtItem txtHidden txtSkipped cmdGo mnuA mnuB 10 extra txtLast 424fraBox "
        u"&Go2Fields lastB 150");
    EXPECT_EQ(reporter_.Errors(), 0);
    // Tab and access keys move the focus.
    EXPECT_EQ(ActiveName(), u"txtItem(0)");
    for (const TextView next : {u"txtItem(4)", u"cmdGo", u"txtLast", u"txtItem(0)"}) {
        EXPECT_TRUE(Key(WM_KEYDOWN, VK_TAB));
        EXPECT_EQ(ActiveName(), next);
    }
    EXPECT_FALSE(Key(WM_SYSCHAR, 'q'));
    EXPECT_TRUE(Key(WM_SYSCHAR, 'g'));
    EXPECT_EQ(ActiveName(), u"cmdGo");
    EXPECT_TRUE(Key(WM_SYSCHAR, 'F'));  // a label's key is for the field behind it
    EXPECT_EQ(ActiveName(), u"txtItem(0)");
}

TEST_F(HostFormTest, EventsReachTheScript) {
    Load(fieldsAndButtons,
         u"Sub cmdGo_Click()\n f.Tag = f.Tag & \"click \"\nEnd Sub\n"
         u"Sub txtItem_Change(Index)\n f.Tag = f.Tag & Index & txtItem(Index).Text & \" \"\nEnd Sub\n"
         u"Sub txtItem_LostFocus(Index)\n f.Tag = f.Tag & \"lost\" & Index & \" \"\nEnd Sub\n"
         u"Sub txtItem_GotFocus(Index)\n f.Tag = f.Tag & \"got\" & Index & \" \"\nEnd Sub\n");
    test::Put(form_->FindControl(u"cmdGo")->Extended(), L"Value", {Variant(true)});
    SetWindowTextW(form_->FindControl(u"txtItem", 4)->Window(), L"x");
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_RETURN));  // the default button
    EXPECT_TRUE(Key(WM_KEYDOWN, VK_TAB));
    EXPECT_EQ(Said(), u"got0 click 4x click lost0 got4 ");
    EXPECT_EQ(reporter_.Errors(), 0);
}

// What cannot be used gets no keys, and what stands in a frame is as reachable as the frame, for each of the keyboard's
// ways.
TEST_F(HostFormTest, ADisabledOrHiddenControlOrFrameGetsNoKeys) {
    const std::string text =
        "Begin Form f\n"
        "  Begin TextBox txtOut\n    TabIndex = 0\n  End\n"
        "  Begin Frame fra\n    TabIndex = 1\n    Width = 3000\n    Height = 2000\n"
        "    Begin Qvx.Button cmdIn\n      TabIndex = 2\n      Caption = \"&Go\"\n      Default = -1 'True\n"
        "      Cancel = -1 'True\n    End\n"
        "  End\nEnd\n";
    for (const TextView name : {u"fra", u"cmdIn"}) {
        for (const wchar_t* property : {L"Enabled", L"Visible"}) {
            Load(text, u"Sub cmdIn_Click()\n f.Tag = f.Tag & \"click \"\nEnd Sub\n");
            const auto changed = form_->FindControl(name)->Extended();
            EXPECT_TRUE(Key(WM_KEYDOWN, VK_TAB));
            EXPECT_EQ(ActiveName(), u"cmdIn");
            form_->FindControl(u"txtOut")->Focus(nullptr);
            test::Put(changed, property, {Variant(false)});
            Key(WM_KEYDOWN, VK_TAB);
            EXPECT_EQ(ActiveName(), u"txtOut");
            EXPECT_FALSE(Key(WM_SYSCHAR, 'g'));
            Key(WM_KEYDOWN, VK_RETURN);
            Key(WM_KEYDOWN, VK_ESCAPE);
            EXPECT_EQ(Said(), u"");
            EXPECT_NE(test::Invoke(form_->FindControl(u"cmdIn")->Extended(), L"SetFocus", DISPATCH_METHOD).scode, S_OK);
            test::Put(changed, property, {Variant(true)});
            Key(WM_KEYDOWN, VK_RETURN);
            EXPECT_EQ(Said(), u"click ");
            form_.reset();
        }
    }
}

// The brush that a label gets is the colour behind it.
TEST_F(HostFormTest, ATransparentLabelShowsWhatItStandsIn) {
    Load(
        "Begin Form f\n  BackColor = &H112233&\n"
        "  Begin Label lblOut\n    BackStyle = 0\n  End\n"
        "  Begin Frame fra\n    BackColor = &H445566&\n"
        "    Begin Label lblIn\n      BackStyle = 0\n    End\n"
        "    Begin Label lblOwn\n      BackColor = &H778899&\n    End\n  End\nEnd\n",
        u"");
    const auto behind = [&](TextView name) {
        const HWND label = form_->FindControl(name)->Window();
        const HDC dc = GetDC(label);
        const auto brush = reinterpret_cast<HBRUSH>(SendMessageW(
            GetParent(label), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(label)));
        ReleaseDC(label, dc);
        LOGBRUSH description{};
        GetObjectW(brush, sizeof description, &description);
        return description.lbColor;
    };
    EXPECT_EQ(behind(u"lblOut"), 0x112233u);
    EXPECT_EQ(behind(u"lblIn"), 0x445566u);
    EXPECT_EQ(behind(u"lblOwn"), 0x778899u);
    test::Put(form_->FindControl(u"fra")->Extended(), L"BackColor", {Variant(0xABCDEF)});
    EXPECT_EQ(behind(u"lblIn"), 0xABCDEFu);
}

TEST_F(HostFormTest, AControlWithoutATabIndexComesBehindTheHighestInUse) {
    Load(
        "Begin Form f\n  Begin TextBox a\n  End\n  Begin TextBox b\n    TabIndex = 7\n  End\n"
        "  Begin TextBox c\n    TabIndex = 3\n  End\n  Begin TextBox d\n  End\nEnd\n");
    const std::pair<TextView, int> expected[] = {{u"a", 0}, {u"b", 7}, {u"c", 3}, {u"d", 8}};
    for (const auto& [name, index] : expected) EXPECT_EQ(form_->FindControl(name)->TabIndex(), index);
}

TEST_F(HostFormTest, WhatACollectionLacksIsNamedToTheScript) {
    Load(
        "Begin Form f\n  Begin ImageList iml\n    BeginProperty Images\n      BeginProperty ListImage1\n"
        "        Key = \"\xc3\x84rger\"\n      EndProperty\n    EndProperty\n  End\nEnd\n");
    const auto images = form_->FindControl(u"iml")->Extended();
    const auto list = test::Call(images, L"ListImages").ToObject<IDispatch>();
    EXPECT_EQ(test::Invoke(list.get(), L"Remove", DISPATCH_METHOD).scode, static_cast<HRESULT>(0x800A01C1));
    EXPECT_EQ(test::Invoke(list.get(), L"Count", DISPATCH_PROPERTYPUT, {Variant(1).get()}).result,
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(test::Invoke(list.get(), L"Nobody", DISPATCH_METHOD).result, DISP_E_UNKNOWNNAME);
    const struct {
        IDispatch* object;
        const wchar_t* member;
        Variant argument;
        unsigned code;
        TextView description;
    } cases[] = {
        {form_->Automation(), L"Controls", Variant(u"nosuch"), 0x800A02DA, u"Control 'nosuch' not found"},
        {form_->Automation(), L"Controls", Variant(5), 0x800A0009, u"Subscript out of range"},
        {images, L"ListImages", Variant(u"nosuch"), 0x800A0009, u"Subscript out of range"},
        {images, L"ListImages", Variant(static_cast<IDispatch*>(nullptr)), 0x800A000D, u"Type mismatch"},
    };
    for (const auto& c : cases) {
        const auto answer = test::Invoke(c.object, c.member, DISPATCH_PROPERTYGET, {c.argument.get()});
        EXPECT_EQ(answer.scode, static_cast<HRESULT>(c.code));
        EXPECT_EQ(answer.description, c.description);
    }
    EXPECT_NE(test::Call(images, L"ListImages", {Variant(u"\u00e4RGER")}).Type(), VT_EMPTY);
}

TEST_F(HostFormTest, AnImageListHoldsPicturesByNumberAndKey) {
    const std::string text =
        "Begin Form f\n  Begin ImageList iml\n    BeginProperty Images\n"
        "      BeginProperty ListImage1\n        Key = \"one\"\n        Picture = \"" +
        test::Narrow(SourceFile(u"/qvxhost/qvxhost.ico")) +
        "\"\n"
        "        Tag = \"t\"\n      EndProperty\n"
        "      BeginProperty ListImage2\n      EndProperty\n    EndProperty\n  End\nEnd\n";
    Load(text,
         u"Sub Form_Load()\n"
         u"  Dim i, all\n"
         u"  iml.ListImages.Add 1, \"two\", iml.ListImages(\"ONE\").Picture\n"
         u"  For Each i In iml.ListImages\n    all = all & i.Index & i.Key & i.Tag & \" \"\n  Next\n"
         u"  iml.ListImages.Remove 1\n"
         u"  f.Tag = all & iml.ListImages.Count & iml.ListImages(1).Key & (iml.ListImages(1).Picture.Type)\n"
         u"  On Error Resume Next\n"
         u"  iml.ListImages.Add , \"one\"\n  f.Tag = f.Tag & \" \" & Err.Number\n"
         u"End Sub\n");
    EXPECT_EQ(Said(), u"1two 2onet 3 2one3 457");
    EXPECT_EQ(SavedBytes(),
              text.substr(0, 13) + "  Tag             =   \"1two 2onet 3 2one3 457\"\n" + text.substr(13));
}

// Longer than the 260 characters that paths had once.
TEST_F(HostFormTest, AFormsFolderMayHaveALongPath) {
    std::vector<Text> folders;
    for (int depth = 0; depth < 6; ++depth) {
        folder_ += (depth ? u"\\" : u"") + Text(60, u'd');
        folders.push_back(folder_);
        CreateDirectoryW(Wide(u"\\\\?\\" + folder_), nullptr);
    }
    ASSERT_TRUE(CopyFileW(Wide(SourceFile(u"/qvxhost/qvxhost.ico")), Wide(folder_ + u"\\i.ico"), FALSE));
    folder_ += u"\\";
    options_.log = folder_ + u"log.txt";
    const std::string text =
        "Begin Form f\n  Begin ImageList iml\n    BeginProperty Images\n"
        "      BeginProperty ListImage1\n        Picture = \"i.ico\"\n      EndProperty\n    EndProperty\n  End\nEnd\n";
    Load(text, u"Sub Form_Load()\n  Host.Log iml.ListImages(1).Picture.Type\nEnd Sub\n");
    EXPECT_EQ(SavedBytes(), text);
    EXPECT_EQ(test::Read(options_.log), "3\r\n");
    EXPECT_EQ(reporter_.Errors(), 0);
    for (const char16_t* file : {u"i.ico", u"log.txt", u"qvx_host_test.frm"}) DeleteFileW(Wide(folder_ + file));
    for (; !folders.empty(); folders.pop_back()) EXPECT_TRUE(RemoveDirectoryW(Wide(folders.back())));
}

// The keys of the form work while a cell is open.
TEST_F(HostFormTest, CtrlTabAndShortcutsLeaveNoCellOut) {
    Load(
        "Begin Form f\n  ClientWidth = 6000\n  ClientHeight = 3000\n"
        "  Begin TextBox txtBefore\n    TabIndex = 0\n  End\n"
        "  Begin Qvx.ComboGrid g\n    TabIndex = 1\n    Width = 5000\n    Height = 2500\n    Rows = 4\n    Cols = 4\n"
        "    FormatString = \"No|Name|Fixed|Qty\"\n  End\n"
        "  Begin TextBox txtBehind\n    TabIndex = 2\n  End\n"
        "  Begin Menu mnuSave\n    Caption = \"Save\"\n    Shortcut = ^S\n  End\nEnd\n",
        u"Sub mnuSave_Click()\n  f.Tag = f.Tag & \"save \"\nEnd Sub\n");
    const auto grid = form_->FindControl(u"g")->Extended();
    const std::pair<std::vector<int>, TextView> cases[] = {
        {{}, u"g"}, {{VK_CONTROL}, u"txtBehind"}, {{VK_CONTROL, VK_SHIFT}, u"txtBefore"}};
    for (const TextView entered : {u"", u"entered"}) {
        for (const auto& [held, active] : cases) {
            SCOPED_TRACE(test::Narrow(active) + " " + test::Narrow(entered));
            form_->FindControl(u"g")->Focus(nullptr);
            for (const wchar_t* place : {L"Row", L"Col"}) test::Put(grid, place, {Variant(1)});
            test::Put(grid, L"TextMatrix", {Variant(1), Variant(1), Variant(u"")});
            if (!entered.empty()) {
                Key(WM_KEYDOWN, VK_F2);
                SetWindowTextW(GetFocus(), L"entered");
                EXPECT_TRUE(Press('S', {VK_CONTROL}));
            }
            Press(VK_TAB, held);
            EXPECT_EQ(ActiveName(), active);
            EXPECT_EQ(test::Call(grid, L"TextMatrix", {Variant(1), Variant(1)}).ToText(), entered);
        }
    }
    EXPECT_EQ(Said(), u"save save save ");
}

TEST_F(HostFormTest, ObjectsThatOutliveTheFormSayItIsGone) {
    Load(fieldsAndButtons);
    const ComPtr<IDispatch> form(form_->Automation());
    const ComPtr<IDispatch> button(form_->FindControl(u"cmdGo")->Extended());
    const auto controls = test::Call(form.get(), L"Controls").ToObject<IDispatch>();
    form_.reset();
    constexpr auto objectNotSet = static_cast<HRESULT>(0x800A005B);
    for (const auto& [object, member] : {std::pair{form, L"Caption"}, {button, L"Left"}, {controls, L"Count"}})
        EXPECT_EQ(test::Invoke(object.get(), member, DISPATCH_PROPERTYGET).scode, objectNotSet);
}

TEST_F(HostFormTest, SampleFormsAreSavedAsTheyWere) {
    for (const char16_t* name : {u"first", u"invoice"}) {
        for (const bool design : {false, true}) {
            SCOPED_TRACE(test::Narrow(name));
            options_.design = design;
            const std::string bytes = test::Read(SourceFile(Text(u"/samples/") + name + u".frm"));
            Load(bytes);
            EXPECT_EQ(SavedBytes(), bytes);
        }
    }
}

// What is done to files, in order. Functions, because the system's calling convention on x86 is not that of lambdas.
std::string fileSteps;
bool diskIsFull = false;
BOOL WINAPI RecordFlush(HANDLE) {
    fileSteps += "flush ";
    SetLastError(ERROR_DISK_FULL);
    return !diskIsFull;
}
BOOL WINAPI RecordRename(LPCWSTR from, LPCWSTR to, DWORD flags) {
    fileSteps += flags & MOVEFILE_WRITE_THROUGH ? "rename-through " : "rename ";
    return MoveFileWithProgressW(from, to, nullptr, nullptr, flags);
}

TEST_F(HostFormTest, ASavedFormIsOnTheDiskBeforeItTakesItsPlace) {
    const test::ImportPatch flush(GetModuleHandleW(nullptr), "FlushFileBuffers", reinterpret_cast<void*>(&RecordFlush));
    const test::ImportPatch rename(GetModuleHandleW(nullptr), "MoveFileExW", reinterpret_cast<void*>(&RecordRename));
    ASSERT_TRUE(flush.Found() && rename.Found());
    const Text path = SavedPath();
    ReplaceFileBytes(path, "old");
    EXPECT_EQ(std::exchange(fileSteps, {}), "flush rename-through ");
    diskIsFull = true;
    EXPECT_THROW(ReplaceFileBytes(path, "new"), RunTimeError);
    diskIsFull = false;
    EXPECT_EQ(std::exchange(fileSteps, {}), "flush ");
    EXPECT_EQ(test::Read(path), "old");
    EXPECT_FALSE(test::IsThere(path + u".~new"));
    DeleteFileW(Wide(path));
}

TEST_F(HostFormTest, AGridsCountsComeBackWithItsForm) {
    const test::GridCounts cases[] = {{1, 1, 3, 1}, {2, 2, 3, 0}, {3, 1, 0, 0},
                                      {0, 0, 3, 1}, {0, 1, 3, 1}, {3, 0, 1, 1}};
    const auto grid = [&] { return form_->FindControl(u"g")->Extended(); };
    for (const bool design : {false, true}) {
        for (const bool rewrite : {false, true}) {
            for (const auto& counts : cases) {
                options_.design = design;
                options_.rewrite = rewrite;
                Load("Begin Form f\n  Begin Qvx.ComboGrid g\n  Rows = 4\n  Cols = 2\n  FixedCols = 0\n  End\nEnd\n");
                test::SetCounts(grid(), counts);
                const std::string before = test::CountsOf(grid());
                const std::string bytes = SavedBytes();
                const std::string grown = test::CountsWhenGrown(grid());
                SCOPED_TRACE(before + bytes);
                Load(bytes);
                EXPECT_EQ(test::CountsOf(grid()), before);
                EXPECT_EQ(SavedBytes(), bytes);
                EXPECT_EQ(test::CountsWhenGrown(grid()), grown);
            }
        }
    }
    EXPECT_EQ(reporter_.Errors(), 0);
}

TEST_F(HostFormTest, FormsThatCannotBeBuiltNameTheLine) {
    const struct {
        const char* text;
        int line;
    } cases[] = {
        {"Begin Dialog f\nEnd\n", 1},
        {"Begin Form f\nBegin Slider a\nEnd\nEnd\n", 2},
        {"Begin Form f\nBegin Nobody.Knows a\nEnd\nEnd\n", 2},
        {"Begin Form f\nBegin Label a\nBegin Label b\nEnd\nEnd\nEnd\n", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        try {
            Load(c.text);
            ADD_FAILURE() << "was built";
        } catch (const FormFileError& error) {
            EXPECT_EQ(error.Line(), c.line);
        }
        form_.reset();
    }
}

}  // namespace
}  // namespace qvx::host
