#include <gtest/gtest.h>

#include "common/keys.h"
#include "host/form_font.h"
#include "host/form_look.h"
#include "host/menu_model.h"
#include "host/options.h"
#include "host/picture_names.h"
#include "host/saved_properties.h"
#include "host/tab_order.h"
#include "tests/support/error_of.h"

namespace qvx::host {
namespace {

std::shared_ptr<SavedGroup> FontGroup(double size) {
    auto group = std::make_shared<SavedGroup>();
    group->properties.Add(u"Name", Text(u"Tahoma"));
    group->properties.Add(u"Size", size);
    return group;
}

// The block of a control that spells out a default (Rows), in a spelling of its own, beside what only the host knows.
const std::string gridBlock =
    "Begin Form f\n"
    "  Begin Qvx.ComboGrid g\n"
    "    Left = 30\n"
    "    rows=3 'the default\n"
    "    Cols = 4\n"
    "    Mystery = \"kept\"\n"
    "    BeginProperty Font\n"
    "      Size = 8\n"
    "    EndProperty\n"
    "  End\n"
    "End\n";

SavedProperties GridAsLoaded() {
    SavedProperties saved;
    saved.Add(u"Cols", std::int32_t{4});
    saved.AddGroup(u"Font", FontGroup(8));
    return saved;
}

const std::vector<Text> gridKeys = {u"Rows", u"Cols", u"AutoTab", u"Font"};

TEST(FormLook, IsWrittenWhereItDiffersFromADefault) {
    const struct {
        const char* properties;
        const char* saved;  // in place of them, when everything is written anew
    } cases[] = {
        {"", "   Caption         =   \"f\"\n   ClientHeight    =   3600\n   ClientWidth     =   4800\n"},
        {"   ScaleHeight = 1200\n   ScaleWidth = 2400\n   BorderStyle = 2\n   BackColor = &H8000000F&\n",
         "   Caption         =   \"f\"\n   ClientHeight    =   1200\n   ClientWidth     =   2400\n"},
        {"   Caption = \"\"\n   ClientHeight = 10\n   ScaleHeight = 20\n   ClientWidth = 30\n   Tag = \"t\"\n"
         "   BorderStyle = 3\n   MinButton = 0\n   MaxButton = 0\n   BackColor = 1\n   ForeColor = 2\n",
         "   Caption         =   \"\"\n   ClientHeight    =   10\n   ClientWidth     =   30\n"
         "   BackColor       =   &H00000001&\n   ForeColor       =   &H00000002&\n   Tag             =   \"t\"\n"
         "   BorderStyle     =   3\n   MinButton       =   0   'False\n   MaxButton       =   0   'False\n"},
    };
    for (const auto& c : cases) {
        FormFile file = FormFile::Parse(std::string("Begin Form f\n") + c.properties + "End\n");
        const SavedProperties saved = SaveLook(ReadLook(file.form));
        MergeSaved(file.form, saved, saved, LookProperties(), MergeMode::everything);
        EXPECT_EQ(file.Write(), std::string("Begin Form f\n") + c.saved + "End\n");
    }
    const FormFile file = FormFile::Parse("Begin Form f\n BeginProperty Font\n  Size = 14\n EndProperty\nEnd\n");
    EXPECT_EQ(ReadLook(file.form).font.points, 14);
    EXPECT_TRUE(SaveLook(ReadLook(file.form)).Find(u"Font"));
}

TEST(MergeSaved, ChangesGoToTheirLines) {
    FormFile file = FormFile::Parse(gridBlock);
    MergeSaved(*file.form.Objects()[0], GridAsLoaded(), GridAsLoaded(), gridKeys, MergeMode::changes);
    EXPECT_EQ(file.Write(), gridBlock);
    SavedProperties now;  // Cols went back to its default
    now.Add(u"Rows", std::int32_t{9});
    now.Add(u"AutoTab", false);
    now.AddGroup(u"Font", FontGroup(12));
    MergeSaved(*file.form.Objects()[0], GridAsLoaded(), now, gridKeys, MergeMode::changes);
    EXPECT_EQ(file.Write(),
              "Begin Form f\n"
              "  Begin Qvx.ComboGrid g\n"
              "    Left = 30\n"
              "    rows=9\n"
              "    Mystery = \"kept\"\n"
              "    BeginProperty Font\n"
              "      Size = 12\n"
              "      Name            =   \"Tahoma\"\n"
              "    EndProperty\n"
              "    AutoTab         =   0   'False\n"
              "  End\n"
              "End\n");
}

TEST(MergeSaved, RewritingFollowsTheControlsOrder) {
    FormFile file = FormFile::Parse(gridBlock);
    MergeSaved(*file.form.Objects()[0], GridAsLoaded(), GridAsLoaded(), gridKeys, MergeMode::everything);
    EXPECT_EQ(file.Write(),
              "Begin Form f\n"
              "  Begin Qvx.ComboGrid g\n"
              "    Left = 30\n"
              "    Mystery = \"kept\"\n"
              "    Cols            =   4\n"
              "    BeginProperty Font\n"
              "       Name            =   \"Tahoma\"\n"
              "       Size            =   8\n"
              "    EndProperty\n"
              "  End\n"
              "End\n");
}

TEST(FormFont, ComesBackAndTakesNonsenseFromItsBase) {
    FontSpec font;
    font.face = u"Tahoma";
    font.points = 9.75;
    font.weight = 700;
    font.italic = true;
    font.charset = 238;
    FormFile file = FormFile::Parse("Begin Form f\nEnd\n");
    SavedProperties saved;
    saved.AddGroup(u"Font", SaveFont(font));
    MergeSaved(file.form, {}, saved, {}, MergeMode::changes);
    ASSERT_TRUE(IsFontBlock(*file.form.FindGroup(u"Font")));
    EXPECT_EQ(ReadFont(*file.form.FindGroup(u"Font"), FontSpec()), font);

    const FormFile odd = FormFile::Parse(
        "Begin Form f\nBeginProperty Font {11111111-2222-3333-4444-555555555555}\n"
        "Underline = -1\nEndProperty\nEnd\n");
    EXPECT_FALSE(IsFontBlock(*odd.form.FindGroup(u"Font")));
    FontSpec expected = font;
    expected.underline = true;
    EXPECT_EQ(ReadFont(*odd.form.FindGroup(u"Font"), font), expected);

    const struct {
        std::string lines;
        double points;
        int weight, charset;
    } bounds[] = {
        {"Size = 1\nWeight = 1\nCharset = 0\n", 1, 1, 0},
        {"Size = 2048\nWeight = 1000\nCharset = 255\n", 2048, 1000, 255},
        {"Size = 0.9\nWeight = 0\nCharset = -1\n", 9.75, 700, 238},
        {"Size = 2048.5\nWeight = 1001\nCharset = 256\n", 9.75, 700, 238},
    };
    for (const auto& [lines, points, weight, charset] : bounds) {
        const FontSpec read = ReadFont(FormFile::Parse("Begin Form f\n" + lines + "End\n").form, font);
        EXPECT_EQ(std::tie(read.points, read.weight, read.charset), std::tie(points, weight, charset)) << lines;
    }
}

TEST(Options, ReadsTheCommandLine) {
    const Options options = ParseOptions({u"a.frm", u"--log", u"l.txt", u"a.vbs", u"--save", u"out.frm", u"--design",
                                          u"--quiet", u"--rewrite", u"--ocx", u"Qvx.ocx", u"--", u"--log", u"x"});
    EXPECT_EQ(options.form, u"a.frm");
    EXPECT_EQ(options.script, u"a.vbs");
    EXPECT_EQ(options.log, u"l.txt");
    EXPECT_EQ(options.save, u"out.frm");
    EXPECT_EQ(options.server, u"Qvx.ocx");
    EXPECT_TRUE(options.design && options.quiet && options.rewrite);
    EXPECT_EQ(options.arguments, (std::vector<Text>{u"--log", u"x"}));
    EXPECT_TRUE(ParseOptions({u"--help"}).help);
}

TEST(Options, RefusesWhatMakesNoSense) {
    const std::pair<std::vector<Text>, Text> cases[] = {
        {{}, u"no form file is given"},
        {{u"a.frm", u"--save"}, u"--save needs a file name"},
        {{u"a.frm", u"--log", u""}, u"--log needs a file name"},
        {{u"a.frm", u"--sav", u"x"}, u"unknown option --sav"},
        {{u"a.frm", u"b.vbs", u"c"}, u"unexpected argument c"},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EQ(test::RaisedBy([&] { ParseOptions(arguments); }).words, message);
    }
}

TEST(TabOrder, GoesAroundByIndexAndSkipsWhatCannotBeReached) {
    //                                  0           1           2          3 (same index as 0, later on the form)
    const std::vector<TabStop> stops = {{2, true}, {1, true}, {0, false}, {2, true}};
    using Position = std::optional<std::size_t>;
    const struct {
        Position from;
        bool forward;
        Position to;
    } cases[] = {
        {std::nullopt, true, 1u}, {std::nullopt, false, 3u}, {1u, true, 0u},  {0u, true, 3u},
        {3u, true, 1u},           {1u, false, 3u},           {3u, false, 0u}, {2u, true, 1u},
    };
    for (const auto& c : cases) EXPECT_EQ(NextTabStop(stops, c.from, c.forward), c.to);
    EXPECT_EQ(NextTabStop({{0, false}}, 0u, true), std::nullopt);
    EXPECT_EQ(NextTabStop({{0, true}}, 0u, true), 0u);
    EXPECT_EQ(NextTabStop({}, std::nullopt, true), std::nullopt);
}

TEST(TabOrder, FindsAccessKeys) {
    EXPECT_EQ(AccessKey(u"Sa&ve"), u'v');
    EXPECT_EQ(AccessKey(u"A && &B"), u'b');
    EXPECT_EQ(AccessKey(u"Save &"), 0);
    EXPECT_EQ(AccessKey(u"Save"), 0);
    const std::vector<AccessStop> stops = {{1, u"s", true}, {0, u"qs", true}, {2, u"s", false}, {3, u"x\u00C4", true}};
    EXPECT_EQ(FindAccessKey(stops, u'S', std::nullopt), 1u);
    EXPECT_EQ(FindAccessKey(stops, u's', 1u), 0u);
    EXPECT_EQ(FindAccessKey(stops, u's', 0u), 1u);
    EXPECT_EQ(FindAccessKey(stops, u'q', 0u), 1u);
    EXPECT_EQ(FindAccessKey(stops, u'\u00E4', 0u), 3u);
    EXPECT_EQ(FindAccessKey(stops, u'z', 0u), std::nullopt);
    EXPECT_EQ(FindAccessKey({{0, u"", true}}, 0, std::nullopt), std::nullopt);
}

TEST(Menus, AreReadAndShortcutsOfWhatIsDisabledMeanNothing) {
    const FormFile file = FormFile::Parse(
        "Begin Form f\n"
        "Begin Menu mnuOff\nEnabled = 0 'False\n"
        "Begin Menu mnuIn\nBegin Menu mnuDeep\nShortcut = ^D\nEnd\nShortcut = ^P\nEnd\nEnd\n"
        "Begin Menu mnuOn\nShortcut = ^O\n"
        "Begin Label a\nEnd\nBegin Menu mnuItem\nShortcut = {F5}\nChecked = -1 'True\nVisible = 0 'False\nEnd\n"
        "Begin Menu mnuGray\nShortcut = ^G\nEnabled = 0 'False\nEnd\n"
        "Begin Menu mnuSecond\nShortcut = {F5}\nEnd\nEnd\nEnd\n");
    std::vector<MenuItem> menus = ReadMenus(file.form);
    const MenuItem* item = FindMenuItem(menus, [](const MenuItem& one) { return one.name == u"mnuItem"; });
    ASSERT_TRUE(item);
    EXPECT_EQ(item->id, firstMenuId + 4);
    EXPECT_TRUE(item->checked && item->enabled && !item->visible);
    const std::pair<TextView, TextView> cases[] = {{u"{F5}", u"mnuItem"}, {u"^G", u""}, {u"^D", u""},
                                                   {u"^P", u""},          {u"^O", u""}, {u"", u""}};
    for (const auto& [keys, name] : cases) {
        const MenuItem* found = FindShortcut(menus, ParseShortcut(keys));
        EXPECT_EQ(found ? found->name : Text(), name);
    }
    std::vector<Text> names;
    for (const MenuItem* one : AllMenuItems(menus)) names.push_back(one->name);
    EXPECT_EQ(names,
              (std::vector<Text>{u"mnuOff", u"mnuIn", u"mnuDeep", u"mnuOn", u"mnuItem", u"mnuGray", u"mnuSecond"}));
}

TEST(Menus, ReadsShortcuts) {
    const struct {
        TextView source;
        Shortcut shortcut;
        TextView shown;
    } cases[] = {
        {u"^s", {'S', keys::controlMask}, u"Ctrl+S"},
        {u"+^{F12}", {123, keys::controlMask | keys::shiftMask}, u"Ctrl+Shift+F12"},
        {u"{F2}", {keys::f2, 0}, u"F2"},
        {u"%{BKSP}", {keys::backspace, keys::altMask}, u"Alt+Bksp"},
        {u"S", {}, u""},
        {u"^", {}, u""},
        {u"{F13}", {}, u""},
        {u"{F4x", {}, u""},
        {u"", {}, u""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.source.begin(), c.source.end()));
        EXPECT_EQ(ParseShortcut(c.source), c.shortcut);
        EXPECT_EQ(ShortcutText(ParseShortcut(c.source)), Text(c.shown));
    }
}

TEST(PictureNames, AreFileNamesBelowTheForm) {
    EXPECT_EQ(PictureFileName(u"iml", u"mnuFile(2)"), u"iml-mnuFile(2)");
    EXPECT_EQ(PictureFileName(u"iml", u"..\\a/b:\u00E4"), u"iml-___a_b__");
    EXPECT_EQ(PictureFileName(u"iml", Text(500, u'x')).size(), 80u);
    EXPECT_EQ(RelativeTo(u"C:\\Forms", u"c:/forms/pics/a.bmp"), u"pics/a.bmp");
    EXPECT_EQ(RelativeTo(u"C:\\Forms", u"C:\\Formsold\\a.bmp"), u"C:\\Formsold\\a.bmp");
}

}  // namespace
}  // namespace qvx::host
