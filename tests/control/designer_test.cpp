// The forms designer over real controls: the mouse and keys, what controls do at design time, files, and what goes
// wrong.
#include "com/module.h"
#include "host/design_box_window.h"
#include "host/form_pictures_object.h"
#include "host/form_storage_win32.h"
#include "host/sited_control.h"
#include "tests/control/designer_form.h"
#include "tests/support/resource_counts.h"
#include "win/clipboard.h"
#include "win/window_text.h"

namespace qvx::host::designer {
namespace {

TEST_F(DesignerTest, EveryToolPlacesAControlThatFollowsItsForm) {
    struct Case {
        const char16_t* className;
        const wchar_t* member;
        const char16_t* fresh;  // what InitProperties makes of it; null for nothing to see
    };
    const Case cases[] = {{u"Qvx.ComboGrid", L"BindFrom", u"1"},   {u"Qvx.TextEdit", L"Text", u"TextEdit1"},
                          {u"Qvx.Button", L"Caption", u"Button1"}, {u"Qvx.RButton", L"Caption", u"Button1"},
                          {u"Qvx.Backup", nullptr, nullptr},       {u"Label", L"Caption", nullptr},
                          {u"TextBox", L"Text", nullptr},          {u"Frame", L"Caption", nullptr},
                          {u"ImageList", nullptr, nullptr}};
    for (const Case& c : cases) {
        const std::string what = Narrow(c.className);
        const std::size_t before = Names().size();
        Arm(c.className);
        Drag(At(360, 2400), At(1800, 3000));
        ASSERT_EQ(Names().size(), before + 1) << what;
        FormControl* control = Control(designer_->Session().Selected().Primary()->name);
        ASSERT_TRUE(control && !dynamic_cast<BrokenControl*>(control)) << what;
        EXPECT_EQ(designer_->Views().Toolbox().Armed(), u"") << what;
        if (c.fresh) {
            EXPECT_EQ(Call(control->Inner().get(), c.member).ToText(), c.fresh) << what;
        }
        EXPECT_TRUE(designer_->Do(Command::undo)) << what;
        EXPECT_EQ(Names().size(), before) << what;
        EXPECT_FALSE(designer_->Session().Form().Dirty()) << what;
    }
    EXPECT_EQ(Saved(), formText);
}

TEST_F(DesignerTest, ANewControlTakesItsFormsFont) {
    for (const TextView name : {u"Button1", u"RButton1", u"TextEdit1"}) {
        Place(u"Qvx." + Text(name.substr(0, name.size() - 1)));
        const auto font = Call(Members(name).get(), L"Font").ToObject<IDispatch>();
        EXPECT_EQ(Call(font.get(), L"Size").ToLong(), 14) << Narrow(name);
    }
    // What was only taken from the form is not the control's own to save.
    EXPECT_EQ(Saved().find("Font", std::string(formText).find("EndProperty") + 12), std::string::npos);
    // Nor is a value that may only be set at run time.
    constexpr auto setRefused = static_cast<HRESULT>(0x800A0183);  // 387
    for (const TextView name : {u"Button1", u"RButton1"})
        EXPECT_EQ(Invoke(Members(name).get(), L"Value", DISPATCH_PROPERTYPUT, {Variant(true).get()}).scode, setRefused);
    Call(Members(u"RButton1").get(), L"Value");  // refusing to read it belongs to run time
    Settle();
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    EXPECT_EQ(reporter_.Errors(), 0);
}

TEST_F(DesignerTest, ControlsWithoutAWindowAtRunTimeKeepTheirSize) {
    struct Case {
        const char16_t* name;
        int width;
        int height;
    };
    for (const Case& c : {Case{u"Backup1", 270, 270}, Case{u"FlatBorder1", 180, 225}, Case{u"CMenus1", 220, 220}}) {
        const Text name = c.name;
        Place(u"Qvx." + name.substr(0, name.size() - 1));
        // Neither the mouse nor the property list gets it larger.
        const POINT corner = At(360 + c.width, 2400 + c.height);
        Drag({corner.x + 3, corner.y + 3}, At(2000, 3600));
        for (const bool listed : {false, true}) {
            if (listed) test::Put(Control(name)->Extended(), L"Width", {Variant(1200)});
            Settle();
            // Whole pixels on the way: no more than that.
            EXPECT_NEAR(Bounds(name).width, c.width, 15) << Narrow(name) << listed;
            EXPECT_NEAR(Bounds(name).height, c.height, 15) << Narrow(name) << listed;
        }
        designer_->Session().Select({{name}});
        EXPECT_TRUE(designer_->Do(Command::remove));
    }
}

TEST_F(DesignerTest, AFormThatDoesNotSayTheSizeOfSuchAControl) {
    const std::string text =
        "Begin Form frmTest\r\n   Begin Qvx.Backup bak\r\n      Left = 1200\r\n      Top = 1200\r\n   End\r\nEnd\r\n";
    Open(text);
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    // What is beside it is the form.
    Click(At(1200 + 400, 1200 + 400));
    EXPECT_TRUE(designer_->Session().Selected().Empty());
    Drag(At(1300, 1300), At(1900, 2500));
    Settle(300);
    EXPECT_EQ(PlaceOf(u"bak")[0], 1800);
    EXPECT_TRUE(designer_->Session().Form().Dirty());
    // Back in one step, which its size does not become another one of.
    EXPECT_TRUE(designer_->Do(Command::undo));
    Settle(300);
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    EXPECT_EQ(Saved(), text);
}

TEST_F(DesignerTest, AControlThatCannotSaySoKeepsWhatItHad) {
    const auto mute = MakeObject<ScriptedControl>();
    source_.objects[u"Test.Mute"] = ComPtr<IUnknown>(static_cast<IOleObject*>(mute.get()));
    const std::string text =
        "Begin Form frmTest\r\n   Begin Test.Mute mute\r\n      Left = 240\r\n      Own = 7\r\n   End\r\nEnd\r\n";
    Open(text);
    ASSERT_TRUE(Control(u"mute"));
    mute->saves = [] { return E_FAIL; };
    const int errors = reporter_.Errors();
    designer_->Session().OnChanged(Control(u"mute"));
    Settle();
    EXPECT_EQ(reporter_.Errors(), errors + 1);
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    EXPECT_EQ(Saved(), text);
    // One that tells of changes whenever it is asked is not asked for ever.
    int asked = 0;
    mute->saves = [&] {
        ++asked;
        designer_->Session().OnChanged(Control(u"mute"));
        return S_OK;
    };
    designer_->Session().OnChanged(Control(u"mute"));
    Settle();
    EXPECT_GT(asked, 0);
    EXPECT_LT(asked, 100);
    mute->saves = [] { return S_OK; };
    EXPECT_EQ(Saved().find("Own = 7"), text.find("Own = 7"));
}

TEST_F(DesignerTest, AFrameTakesAnotherBorderWithWhatItHolds) {
    designer_->Session().Select({{u"fraBox", -1}});
    for (const std::int32_t border : {2, 0, 1}) {
        EXPECT_TRUE(designer_->Views().Properties().SetValue(u"BorderStyle", border)) << border;
        Settle();
        EXPECT_EQ(designer_->Session().Form().Find({u"fraBox"})->IntOf(u"BorderStyle", 1), border);
        const HWND frame = Control(u"fraBox")->Window();
        ASSERT_TRUE(IsWindow(frame)) << border;
        const HWND inner = Control(u"lblIn")->Window();
        EXPECT_TRUE(IsWindow(inner) && GetParent(inner) == frame) << border;
        EXPECT_EQ((GetWindowLongW(frame, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0, border == 2) << border;
    }
    EXPECT_FALSE(designer_->Views().Properties().SetValue(u"BorderStyle", 3));
}

TEST_F(DesignerTest, WhatAControlTellsOfItselfMakesTheFormDirty) {
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    test::Put(Members(u"cmdOk").get(), L"Caption", {Variant(u"Fine")});
    EXPECT_TRUE(WaitFor([&] { return designer_->Session().Form().Dirty(); }));
    EXPECT_EQ(WindowText(designer_->Handle()).substr(0, 9), u"test.frm*");
    EXPECT_EQ(designer_->Session().Form().Find({u"cmdOk"})->TextOf(u"Caption"), u"Fine");
    // The same value again is no change.
    designer_->Do(Command::save);
    test::Put(Members(u"cmdOk").get(), L"Caption", {Variant(u"Fine")});
    Settle();
    EXPECT_FALSE(designer_->Session().Form().Dirty());
}

TEST_F(DesignerTest, TheMouseMovesAndSizesOnTheGrid) {
    Click(At(840, 420));
    Settle(static_cast<int>(GetDoubleClickTime()) + 100);  // a second press so soon would ask for the pages
    Drag(At(840, 420), At(1240, 1390));
    EXPECT_EQ(PlaceOf(u"cmdOk"), (std::vector<int>{600, 1200, 1200, 360}));
    const POINT corner = At(1800, 1560);
    Drag({corner.x + 3, corner.y + 3}, At(2190, 2060));
    EXPECT_EQ(PlaceOf(u"cmdOk"), (std::vector<int>{600, 1200, 1560, 840}));
    EXPECT_TRUE(designer_->Do(Command::undo));
    EXPECT_TRUE(designer_->Do(Command::undo));
    EXPECT_FALSE(designer_->Session().Form().Dirty());
    // Escape calls a drag off.
    test::MoveMouseTo(At(840, 420));
    test::LeftButton(true);
    Settle(50);
    test::MoveMouseTo(At(2000, 2000));
    Settle(50);
    TypeKey(VK_ESCAPE);
    Settle(50);
    test::LeftButton(false);
    Settle();
    EXPECT_FALSE(designer_->Session().Form().Dirty());
}

TEST_F(DesignerTest, TheClipboardHoldsFormText) {
    designer_->Session().Select({{u"fraBox"}});
    EXPECT_TRUE(designer_->Do(Command::copy));
    EXPECT_TRUE(TextOnClipboard(designer_->Handle()).value_or(Text()).starts_with(u"Begin Frame fraBox"));
    EXPECT_TRUE(designer_->Do(Command::paste));
    EXPECT_EQ(Names(), (std::vector<Text>{u"Frame1", u"Label1", u"cmdOk", u"fraBox", u"lblIn"}));
    EXPECT_TRUE(Control(u"Label1"));
    // Text that anybody has typed works as well, and a class that nobody knows is a box; nonsense is refused whole.
    const auto paste = [&](TextView text) {
        PutOnClipboard(designer_->Handle(), text);
        designer_->Session().Select({});
        designer_->Do(Command::paste);
        return Names().size();
    };
    EXPECT_EQ(paste(u"Begin Qvx.Button cmdOk\nCaption = \"Two\"\nEnd\n"), 6u);
    EXPECT_EQ(Call(Members(u"Button1").get(), L"Caption").ToText(), u"Two");
    EXPECT_EQ(paste(u"Begin Label x\nEnd\nEnd\n"), 6u);
    EXPECT_EQ(paste(u"Begin Nobody.Knows who\n   Odd = 7\nEnd\n"), 7u);
}

TEST_F(DesignerTest, TabOrderIsClicked) {
    EXPECT_TRUE(designer_->Do(Command::tabOrder));
    Click(At(2400 + 2600, 300));
    Click(At(840, 420));
    EXPECT_TRUE(designer_->Do(Command::tabOrder));
    const auto order = designer_->Session().Form().TabOrder();
    ASSERT_GE(order.size(), 2u);
    EXPECT_EQ(order[0].name, u"fraBox");
    EXPECT_EQ(order[1].name, u"cmdOk");
}

TEST_F(DesignerTest, TheMenuEditorMakesMenus) {
    test::Person person([&] {
        WaitForEditor();
        // A form without menus: what is typed at once is the first one's caption.
        test::TypeKeys("&File");
        Sleep(200);
        TypeKey('N', {VK_MENU});
        Sleep(200);
        test::TypeKeys("mnuFile");
        Sleep(300);
        TypeKey(VK_RETURN);
    });
    EXPECT_TRUE(designer_->Do(Command::menus));
    const std::string bytes = Saved();
    EXPECT_NE(bytes.find("Begin Menu mnuFile"), std::string::npos) << bytes;
    EXPECT_NE(bytes.find("\"&File\""), std::string::npos) << bytes;
    EXPECT_GT(designer_->Session().Picture().Face().StripHeight(), 0);
}

TEST_F(DesignerTest, PicturesAreKeptBesideTheForm) {
    const Text outside = root_ + u"dot.bmp";
    Write(outside, dotPicture);
    const ComPtr<IPictureDisp> picture = designer_->Views().Properties().onLoadPicture(outside);
    EXPECT_TRUE(picture);
    EXPECT_EQ(Read(folder_ + u"\\dot.bmp"), dotPicture);
    Write(folder_ + u"\\bad.bmp", "BM and nothing else");
    EXPECT_ANY_THROW(designer_->Views().Properties().onLoadPicture(folder_ + u"\\bad.bmp"));
    // An image list that a property page fills: the picture gets a file, and the form names it.
    Place(u"ImageList");
    const auto images = Call(Members(u"ImageList1").get(), L"ListImages").ToObject<IDispatch>();
    const ComPtr<IPictureDisp> made = LoadPictureFile({}, outside);
    Call(images.get(), L"Add", {Variant(1), Variant(u"mnuFile"), Variant(static_cast<IDispatch*>(made.get()))});
    const std::string bytes = Saved();
    EXPECT_NE(bytes.find("Key             =   \"mnuFile\""), std::string::npos) << bytes;
    // The saved form finds it.
    Open(bytes);
    const auto again = Call(Members(u"ImageList1").get(), L"ListImages").ToObject<IDispatch>();
    EXPECT_EQ(Call(again.get(), L"Count").ToLong(), 1);
    // A page takes out all pictures and puts them in again: those that nobody has changed keep their files.
    const auto image = Call(again.get(), L"Item", {Variant(1)}).ToObject<IDispatch>();
    const Variant same = Call(image.get(), L"Picture");
    Call(again.get(), L"Clear");
    Call(again.get(), L"Add", {Variant(1), Variant(u"mnuEdit"), same});
    const std::string kept = Saved();
    EXPECT_NE(kept.find("Key             =   \"mnuEdit\""), std::string::npos) << kept;
    EXPECT_NE(kept.find("ImageList1-mnuFile.bmp"), std::string::npos) << kept;
    EXPECT_EQ(kept.find("ImageList1-mnuEdit.bmp"), std::string::npos) << kept;
    // And so does what is saved elsewhere.
    const Text other = folder_ + u"\\other";
    CreateDirectoryW(Wide(other), nullptr);
    file_ = other + u"\\moved.frm";
    EXPECT_TRUE(designer_->Do(Command::saveAs));
    EXPECT_TRUE(test::IsThere(other + u"\\ImageList1-mnuFile.bmp"));
}

TEST_F(DesignerTest, TheImageListEditorTakesPicturesFromFiles) {
    const Text outside = root_ + u"spot.bmp";
    Write(outside, dotPicture);
    Place(u"ImageList");
    file_ = outside;
    test::Person person([&] {
        WaitForEditor();
        TypeKey('A', {VK_MENU});
        Sleep(300);
        TypeKey('T', {VK_MENU});
        Sleep(200);
        TypeKey('7');
        Sleep(200);
        TypeKey(VK_RETURN);
    });
    EXPECT_TRUE(designer_->Do(Command::images));
    const std::string bytes = Saved();
    for (const char* line :
         {"Key             =   \"spot\"", "Tag             =   \"7\"", "Picture         =   \"spot.bmp\""}) {
        EXPECT_NE(bytes.find(line), std::string::npos) << line << "\n" << bytes;
    }
    EXPECT_EQ(Read(folder_ + u"\\spot.bmp"), dotPicture);
}

TEST_F(DesignerTest, F1OpensThePageOfWhatIsSelected) {
    const auto press = [&] {
        const std::size_t before = asked_.size() + browsed_.size();
        TypeKey(VK_F1);
        const auto answered = [&] {
            for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
                if (!designer_->TranslateKey(message)) DispatchMessageW(&message);
            }
            return asked_.size() + browsed_.size() > before;
        };
        EXPECT_TRUE(WaitFor(answered, 5000, false));
    };
    designer_->Session().Select({{u"cmdOk", -1}});
    press();
    ASSERT_EQ(asked_.size(), 1u);
    EXPECT_NE(asked_[0].find(u"button.html"), Text::npos);
    const Text docs = FolderOf(ModulePath(nullptr)) + u"\\docs\\";
    CreateDirectoryW(Wide(docs), nullptr);
    Write(docs + u"button.html", "");
    press();
    designer_->Views().Focus(Pane::properties);
    designer_->Views().Properties().GoTo(u"BorderColor");
    press();
    test::RemoveFolder(docs);
    ASSERT_EQ(browsed_.size(), 2u);
    EXPECT_TRUE(browsed_[0].ends_with(u"/docs/button.html")) << Narrow(browsed_[0]);
    EXPECT_EQ(browsed_[1], browsed_[0] + u"#BorderColor");
}

// The system's own dialog for files, with somebody in front of it.
TEST_F(DesignerTest, FilesAreChosenInTheSystemsDialog) {
    test::Person person([&] {
        test::WaitForWindow(test::systemDialog);
        Sleep(300);
        test::TypeKeys("test.frm");
        Sleep(200);
        TypeKey(VK_RETURN);
        // Whatever the system still asks would stop all tests.
        const auto open = [] { return FindWindowW(test::systemDialog, nullptr); };
        if (WaitFor([&] { return !open(); }, 5000, false)) return;
        ADD_FAILURE() << "a dialog is still open";
        for (; open(); Sleep(200)) TypeKey(VK_ESCAPE);
    });
    using namespace std::string_literals;
    const Text chosen = SystemQuestions().file(designer_->Handle(), false, folder_ + u'\\', u"Forms\0*.frm\0"s);
    EXPECT_TRUE(SameName(chosen, path_)) << Narrow(chosen);
}

TEST_F(DesignerTest, AFileThatCannotBeWrittenStaysWhole) {
    Place(u"Label");
    SetFileAttributesW(Wide(path_), FILE_ATTRIBUTE_READONLY);
    const int errors = reporter_.Errors();
    EXPECT_FALSE(designer_->Do(Command::save));
    EXPECT_EQ(reporter_.Errors(), errors + 1);
    EXPECT_TRUE(designer_->Session().Form().Dirty());
    EXPECT_EQ(Read(path_), formText);
    EXPECT_FALSE(test::IsThere(path_ + u".~new"));
    SetFileAttributesW(Wide(path_), FILE_ATTRIBUTE_NORMAL);
    // No room for the file that is written aside: a folder has its name.
    CreateDirectoryW(Wide(path_ + u".~new"), nullptr);
    EXPECT_FALSE(designer_->Do(Command::save));
    EXPECT_EQ(Read(path_), formText);
    RemoveDirectoryW(Wide(path_ + u".~new"));
    // Somewhere that is not there: the form stays that of its old file.
    file_ = folder_ + u"\\nowhere\\x.frm";
    EXPECT_FALSE(designer_->Do(Command::saveAs));
    EXPECT_EQ(designer_->Session().Path(), path_);
    // Changed by somebody else meanwhile: asked, and left alone.
    Write(path_, "Begin Form frmOther\r\nEnd\r\n");
    EXPECT_FALSE(designer_->Do(Command::save));
    ASSERT_EQ(asked_.size(), 1u);
    EXPECT_EQ(Read(path_), "Begin Form frmOther\r\nEnd\r\n");
    answer_ = IDYES;
    EXPECT_TRUE(designer_->Do(Command::save));
    EXPECT_NE(Read(path_).find("Label1"), std::string::npos);
}

TEST_F(DesignerTest, NonsenseIsRefusedAndTheOpenFormStays) {
    file_ = folder_ + u"\\bad.frm";
    for (const char* text : {"", "Begin Form f\r\nBegin Label a\r\nEnd\r\nBegin Label A\r\nEnd\r\nEnd\r\n"}) {
        Write(file_, text);
        const int errors = reporter_.Errors();
        designer_->Do(Command::open);
        EXPECT_EQ(reporter_.Errors(), errors + 1) << text;
    }
    file_ = folder_ + u"\\missing.frm";
    designer_->Do(Command::open);
    EXPECT_EQ(designer_->Session().Path(), path_);
    EXPECT_EQ(Names().size(), 3u);
}

TEST_F(DesignerTest, WhatCannotBeMadeIsABoxAndIsSavedAsItWas) {
    const std::string text =
        "Begin Form frmTest\r\n   Begin Nobody.Knows odd\r\n      Left = 240\r\n      Strange = 7 'kept\r\n"
        "      Begin Label lblIn\r\n      End\r\n   End\r\n   Begin Test.Broken bad\r\n      Width = 600\r\n   End\r\n"
        "   Begin Qvx.Button cmdBad\r\n      BackColor = \"no colour\"\r\n      Font = 7\r\n   End\r\nEnd\r\n";
    const auto broken = MakeObject<ScriptedControl>();
    broken->loads = E_FAIL;
    source_.objects[u"Test.Broken"] = ComPtr<IUnknown>(static_cast<IOleObject*>(broken.get()));
    Open(text);
    EXPECT_TRUE(dynamic_cast<BrokenControl*>(Control(u"odd")));
    EXPECT_TRUE(dynamic_cast<BrokenControl*>(Control(u"bad")));
    designer_->Session().Select({{u"odd"}});
    Settle();
    EXPECT_EQ(Saved(), text);
    designer_->Session().Select({{u"bad"}});
    EXPECT_TRUE(designer_->Do(Command::remove));
    EXPECT_EQ(Saved().find("Test.Broken"), std::string::npos);
}

TEST_F(DesignerTest, NothingStaysBehind) {
    const auto cycle = [&] {
        Open(formText);
        for (const char16_t* name : {u"Qvx.ComboGrid", u"Qvx.TextEdit", u"Qvx.Backup", u"Label", u"ImageList"})
            Place(name);
        designer_->Do(Command::selectAll);
        designer_->Do(Command::remove);
        while (designer_->Do(Command::undo)) {
        }
        designer_.reset();
    };
    test::ExpectNothingLeftBehind(4, cycle);
}

TEST_F(DesignerTest, PicturesThatComeBackAreNoNewOnes) {
    Write(folder_ + u"\\dot.bmp", dotPicture);
    Open(
        "Begin Form frmTest\r\n   Begin ImageList imlTest\r\n      BeginProperty Images\r\n"
        "         BeginProperty ListImage1\r\n            Picture = \"dot.bmp\"\r\n         EndProperty\r\n"
        "      EndProperty\r\n   End\r\n"
        "   Begin Qvx.Button cmdTest\r\n      Picture = \"dot.bmp\"\r\n   End\r\nEnd\r\n");
    designer_->Do(Command::selectAll);
    designer_->Do(Command::remove);
    test::ExpectNothingLeftBehind(30, [&] {
        EXPECT_TRUE(designer_->Do(Command::undo));
        EXPECT_TRUE(designer_->Do(Command::redo));
    });
    // A file that has been drawn anew meanwhile is: 2 pixels across.
    std::string wider = dotPicture;
    wider[18] = 2;
    wider.append(4, '\0');
    Write(folder_ + u"\\dot.bmp", wider);
    EXPECT_TRUE(designer_->Do(Command::undo));
    const auto images = Call(Members(u"imlTest").get(), L"ListImages").ToObject<IDispatch>();
    const auto image = Call(images.get(), L"Item", {Variant(1)}).ToObject<IDispatch>();
    const auto picture = Call(image.get(), L"Picture").ToObject<IPictureDisp>().As<IPicture>();
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    picture->get_Width(&width);
    picture->get_Height(&height);
    EXPECT_GT(width, height);
}

TEST_F(DesignerTest, TheFocusIsWhereItWasAfterALookAtAnotherProgram) {
    const HWND other = CreateWindowExW(0, L"STATIC", L"Other", WS_POPUP | WS_VISIBLE, 100, 100, 300, 200, nullptr,
                                       nullptr, nullptr, nullptr);
    for (const HWND pane : {designer_->Views().Properties().Handle(), designer_->Views().Toolbox().Handle()}) {
        SetFocus(pane);
        const HWND inside = GetFocus();
        EXPECT_TRUE(IsChild(pane, inside));
        SetActiveWindow(other);
        EXPECT_NE(GetFocus(), inside);
        SetActiveWindow(designer_->Handle());
        EXPECT_EQ(GetFocus(), inside);
    }
    DestroyWindow(other);
}

}  // namespace
}  // namespace qvx::host::designer
