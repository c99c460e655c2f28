#include <gtest/gtest.h>

#include "designer/document/image_edit.h"
#include "designer/document/menu_edit.h"
#include "designer/document/named_pictures.h"

namespace qvx::host::designer {
namespace {

const std::string menus =
    "Begin Form f\r\n"
    "   Begin Label lbl\r\n   End\r\n"
    "   Begin Menu mnuFile\r\n"
    "      Caption = \"&File\"  ' first\r\n"
    "      Begin Menu mnuSave\r\n"
    "         Caption         =   \"&Save\"\r\n"
    "         Shortcut        =   ^S\r\n"
    "      End\r\n"
    "      Begin Menu mnuQuit\r\n"
    "         Caption         =   \"&Quit\"\r\n"
    "      End\r\n"
    "   End\r\n"
    "   Begin Menu mnuHelp\r\n"
    "      Caption         =   \"&Help\"\r\n"
    "   End\r\n"
    "End\r\n";

Text Listed(const std::vector<MenuLine>& lines) {
    Text text;
    for (const MenuLine& line : lines) text += Text(static_cast<std::size_t>(line.level), u'.') + line.name + u" ";
    return text;
}

TEST(MenuEdit, LinesMoveWithWhatStandsBelowThem) {
    std::vector<MenuLine> lines = ReadMenuLines(FormFile::Parse(menus).form);
    EXPECT_EQ(Listed(lines), u"mnuFile .mnuSave .mnuQuit mnuHelp ");
    EXPECT_EQ(MoveMenuLine(lines, 0, false), 1u);
    EXPECT_EQ(Listed(lines), u"mnuHelp mnuFile .mnuSave .mnuQuit ");
    EXPECT_TRUE(IndentMenuLine(lines, 1, true));
    EXPECT_EQ(Listed(lines), u"mnuHelp .mnuFile ..mnuSave ..mnuQuit ");
    EXPECT_FALSE(IndentMenuLine(lines, 1, true)) << "nothing stands there to be below";
    EXPECT_TRUE(IndentMenuLine(lines, 2, false));
    EXPECT_EQ(Listed(lines), u"mnuHelp .mnuFile .mnuSave ..mnuQuit ");
    EXPECT_EQ(MoveMenuLine(lines, 2, true), 1u);
    EXPECT_EQ(Listed(lines), u"mnuHelp .mnuSave ..mnuQuit .mnuFile ");
    EXPECT_EQ(MoveMenuLine(lines, 1, true), 1u);
    RemoveMenuLine(lines, 1);
    EXPECT_EQ(Listed(lines), u"mnuHelp .mnuFile ");
    MenuLine line;
    line.level = 3;
    line.name = u"mnuNew";
    InsertMenuLine(lines, 0, line);
    EXPECT_EQ(Listed(lines), u"mnuNew mnuHelp .mnuFile ");
}

TEST(MenuEdit, WhatDoesNotChangeStaysByteForByte) {
    FormFile file = FormFile::Parse(menus);
    std::vector<MenuLine> lines = ReadMenuLines(file.form);
    WriteMenuLines(file.form, lines);
    EXPECT_EQ(file.Write(), menus);
    lines[2].shortcut = u"^Q";
    lines[2].checked = true;
    lines[2].enabled = false;
    lines[2].visible = false;
    MenuLine line;
    line.level = 1;
    line.caption = u"-";
    line.name = FreshMenuName(lines, file.form);
    InsertMenuLine(lines, 2, line);
    IndentMenuLine(lines, 4, true);
    WriteMenuLines(file.form, lines);
    const std::string quit = "      Begin Menu mnuQuit\r\n         Caption         =   \"&Quit\"\r\n";
    const std::string expected = menus.substr(0, menus.find(quit)) +
                                 "      Begin Menu mnuItem1\r\n         Caption         =   \"-\"\r\n      End\r\n" +
                                 quit +
                                 "         Shortcut        =   ^Q\r\n"
                                 "         Checked         =   -1  'True\r\n"
                                 "         Enabled         =   0   'False\r\n"
                                 "         Visible         =   0   'False\r\n      End\r\n"
                                 "      Begin Menu mnuHelp\r\n         Caption         =   \"&Help\"\r\n      End\r\n"
                                 "   End\r\nEnd\r\n";
    EXPECT_EQ(file.Write(), expected);
}

TEST(MenuEdit, SaysWhatIsWrong) {
    const FormFile file = FormFile::Parse(menus);
    const struct {
        std::size_t line;
        std::function<void(MenuLine&)> change;
        TextView sentence;
    } cases[] = {
        {1, [](MenuLine& l) { l.name = u"LBL"; }, u"The name \"LBL\" is used already."},
        {2, [](MenuLine& l) { l.name = u"mnusave"; }, u"The name \"mnusave\" is used already."},
        {2, [](MenuLine& l) { l.name.clear(); }, u"Every menu needs a name."},
        {3, [](MenuLine& l) { l.caption.clear(); }, u"\"mnuHelp\" needs a caption."},
        {3, [](MenuLine& l) { l.caption = u"-"; }, u"A dividing line cannot stand in the bar itself."},
        {0, [](MenuLine& l) { l.shortcut = u"^F"; }, u"A menu in the bar cannot have a shortcut."},
        {2, [](MenuLine& l) { l.shortcut = u"^s"; }, u"The shortcut Ctrl+S belongs to \"mnuSave\" already."},
        {2, [](MenuLine& l) { l.shortcut = u"what"; }, u"\"what\" is no shortcut."},
    };
    EXPECT_FALSE(CheckMenuLines(ReadMenuLines(file.form), file.form));
    for (const auto& c : cases) {
        std::vector<MenuLine> lines = ReadMenuLines(file.form);
        c.change(lines[c.line]);
        const auto fault = CheckMenuLines(lines, file.form);
        ASSERT_TRUE(fault);
        EXPECT_EQ(fault->line, c.line);
        EXPECT_EQ(fault->sentence, c.sentence);
    }
}

TEST(ImageEdit, ImagesInTheirPlacesStayByteForByte) {
    const std::string text =
        "Begin Form f\n  Begin ImageList iml\n    BeginProperty Images\n"
        "      BeginProperty ListImage1\n        Key = \"a\" ' first\n        Picture = \"a.bmp\"\n      EndProperty\n"
        "      BeginProperty ListImage2\n        Picture = \"b.bmp\"\n      EndProperty\n"
        "    EndProperty\n  End\nEnd\n";
    FormFile file = FormFile::Parse(text);
    Block& list = *file.form.Objects().front();
    std::vector<ImageLine> images = ReadImages(list);
    WriteImages(list, images);
    EXPECT_EQ(file.Write(), text);
    images[1].key = u"b";
    images.push_back({u"A", u"c.ico", {}, {}});
    EXPECT_EQ(DoubleKey(images), u"A");
    images[2].key = u"c";
    WriteImages(list, images);
    EXPECT_NE(file.Write().find("        Key = \"a\" ' first\n"), std::string::npos);
    images = ReadImages(list);
    ASSERT_EQ(images.size(), 3u);
    EXPECT_EQ(images[1].key + images[2].key + images[2].file, u"bcc.ico");
    images.erase(images.begin());
    WriteImages(list, images);
    ASSERT_EQ(ReadImages(list).size(), 2u);
    EXPECT_EQ(ReadImages(list)[0].file, u"b.bmp");
    WriteImages(list, {});
    EXPECT_EQ(file.Write(), "Begin Form f\n  Begin ImageList iml\n  End\nEnd\n");
}

TEST(NamedPictures, ArePicturesBelowTheFormsFolder) {
    const FormFile file = FormFile::Parse(
        "Begin Form f\r\n   Icon = \"a.ICO\"\r\n   Tag = \"a.txt\"\r\n   Begin Frame g\r\n"
        "      Picture = \"sub\\b.bmp\"\r\n      BeginProperty Images\r\n         Picture = \"c.jpeg\"\r\n"
        "      EndProperty\r\n   End\r\n   P1 = \"C:\\d.bmp\"\r\n   P2 = \"\\d.bmp\"\r\n   P3 = \"/d.bmp\"\r\n"
        "   P4 = \"..\\d.bmp\"\r\nEnd\r\n");
    EXPECT_EQ(PicturesIn(file.form), (std::vector<Text>{u"a.ICO", u"sub\\b.bmp", u"c.jpeg"}));
    EXPECT_EQ(FileNameOf(u"C:\\x/y.bmp"), u"y.bmp");
    EXPECT_EQ(NumberedName(u"a.b.bmp", 1), u"a.b.bmp");
    EXPECT_EQ(NumberedName(u"a.b.bmp", 3), u"a.b-3.bmp");
    EXPECT_EQ(NumberedName(u"a", 2), u"a-2");
}

}  // namespace
}  // namespace qvx::host::designer
