#include "host/form_file.h"

#include <gtest/gtest.h>

#include "common/run_time_error.h"

namespace qvx::host {
namespace {

// A form in the way people write them: remarks, odd spacing, lines that only another reader knows, CR LF and LF mixed.
const std::string realistic =
    "VERSION 5.00\r\n"
    "Object = \"{0D452EE1}#1.0#0\"; \"Qvx.ocx\"\r\n"
    "Begin Form frmInvoice \r\n"
    "   Caption         =   \"Invoice \"\"A\"\"\"   ' shown above\r\n"
    "   ' a remark = not a property\r\n"
    "\r\n"
    "   BackColor       =   &H8000000F&\r\n"
    "   ScaleMode=1 'Twips\n"
    "   MaxButton       =   0   'False\r\n"
    "   LinkTopic       =   $\"frmInvoice.bin\":0000\r\n"
    "\tBegin Qvx.ComboGrid grdLines \r\n"
    "\t\tLeft = 120\r\n"
    "\t\t_ExtentX = 4233\r\n"
    "\t\tBeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851} \r\n"
    "\t\t   Name            =   \"Tahoma\"\r\n"
    "\t\t   Size            =   8.25\r\n"
    "\t\tEndProperty\r\n"
    "\tEnd\r\n"
    "   Begin Menu mnuFile\r\n"
    "      Caption         =   \"&File\"\r\n"
    "      Begin Menu mnuSave\r\n"
    "         Shortcut        =   ^S\r\n"
    "      End\r\n"
    "   End\r\n"
    "End\r\n"
    "Attribute Name = \"frmInvoice\"\r\n"
    "End of what is looked at";

TEST(FormFile, ReadsNestedBlocks) {
    const FormFile file = FormFile::Parse(realistic);
    EXPECT_EQ(file.form.TextOf(u"caption"), u"Invoice \"A\"");
    EXPECT_EQ(file.form.IntOf(u"BackColor", 0), static_cast<std::int32_t>(0x8000000F));
    EXPECT_FALSE(file.form.BoolOf(u"MaxButton", true));
    EXPECT_EQ(file.form.Find(u"LinkTopic"), nullptr);
    ASSERT_EQ(file.form.Objects().size(), 2u);
    const Block& grid = *file.form.Objects()[0];
    EXPECT_EQ(grid.className, u"Qvx.ComboGrid");
    ASSERT_NE(grid.FindGroup(u"font"), nullptr);
    EXPECT_EQ(std::get<double>(*grid.FindGroup(u"Font")->Find(u"Size")), 8.25);
    EXPECT_EQ(file.form.Objects()[1]->Objects()[0]->name, u"mnuSave");
    EXPECT_EQ(file.header.size(), 2u);
    EXPECT_EQ(file.footer.size(), 2u);
    EXPECT_TRUE(file.warnings.empty());
}

TEST(FormFile, WritesBackTheSameBytes) {
    const std::string latin =
        "Begin Form f\n  Caption = \"Gr\xF6\xDF"
        "e \x80 \x81\"\nEnd\n";
    const std::string marked =
        "\xEF\xBB\xBF"
        "Begin Form f\r\n Caption = \"\xE2\x82\xAC \xF0\x9F\x98\x80\"\r\nEnd";
    for (const std::string& bytes : {realistic, latin, marked, std::string("Begin A b\nnot understood\nEnd")}) {
        EXPECT_EQ(FormFile::Parse(bytes).Write(), bytes);
    }
    const auto warnings = FormFile::Parse("Begin Form f\n  Captoin \"x\"\n  Left = 1\nEnd\n").warnings;
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].line, 2);
    EXPECT_EQ(warnings[0].message, u"not understood: \"Captoin \"x\"\"");
    EXPECT_EQ(FormFile::Parse(latin).form.TextOf(u"Caption"), u"Gr\u00F6\u00DFe \u20AC \u0081");
    EXPECT_EQ(FormFile::Parse(marked).form.TextOf(u"Caption"), u"\u20AC \U0001F600");
}

TEST(FormFile, NamesTheLineOfAnError) {
    std::string deep;
    for (int i = 0; i < limits::nesting + 1; ++i) deep += "Begin A b\n";
    const struct {
        std::string bytes;
        int line;
        Text message;
    } cases[] = {
        {"", 0, u"the file holds no form: no line begins with \"Begin\""},
        {"Begin Form\nEnd\n", 1, u"\"Begin\" must name a class and an object"},
        {"Begin Form a b\nEnd\n", 1, u"unexpected text \"b\""},
        {"Begin Form a\n  Caption = \"x\nEnd\n", 2, u"\"\"x\" is no value for \"Caption\""},
        {"Begin Form a\n  Left =\nEnd\n", 2, u"the value of \"Left\" is missing"},
        {"Begin Form a\n  Left = 12x\nEnd\n", 2, u"\"12x\" is no value for \"Left\""},
        {"Begin Form a\n  Begin B c\n  End\n", 4, u"the file ends inside \"a\", which begins in line 1"},
        {"Begin Form a\nEndProperty\n", 2, u"\"End\" expected"},
        {"Begin Form a\nBeginProperty Font\nEnd\nEnd\n", 3, u"\"EndProperty\" expected"},
        {"Begin Form a\nBeginProperty Font\nBegin B c\n", 3, u"an object cannot stand inside a property"},
        {"Begin Form a\nBeginProperty\n", 2, u"\"BeginProperty\" must name a property"},
        {"Begin Form a\nEnd now\n", 2, u"unexpected text \"now\""},
        {deep, limits::nesting + 1, u"blocks are nested too deeply"},
        {"Begin Form a\nTag = \"" + std::string(limits::lineLength, 'x') + "\"\nEnd\n", 2, u"the line is too long"},
        {std::string(limits::fileBytes + 1, '\n'), 0, u"the file is too large for a form"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes.substr(0, 60));
        try {
            FormFile::Parse(c.bytes);
            ADD_FAILURE() << "was accepted";
        } catch (const FormFileError& error) {
            EXPECT_EQ(error.Line(), c.line);
            EXPECT_EQ(error.Message(), c.message);
        }
    }
}

TEST(FormFile, AChangeTouchesItsOwnLineOnly) {
    FormFile file = FormFile::Parse(
        "Begin Form f\r\n"
        "   Caption         =   \"old\"   ' remark\r\n"
        "   BackColor       =   &H000000FF&\r\n"
        "   Enabled         =   -1  'True\r\n"
        "   Begin Label a\r\n"
        "   End\r\n"
        "End\r\n");
    file.form.Set(u"Caption", Text(u"say \"hi\""));
    file.form.Set(u"BackColor", std::int32_t{0x00FF00});
    file.form.Set(u"Enabled", true);
    file.form.Set(u"Left", std::int32_t{-15});
    file.form.Set(u"Visible", false);
    file.form.Objects()[0]->Set(u"Caption", Text(u"two\r\nlines"));
    EXPECT_EQ(file.Write(),
              "Begin Form f\r\n"
              "   Caption         =   \"say \"\"hi\"\"\"\r\n"
              "   BackColor       =   &H0000FF00&\r\n"
              "   Enabled         =   -1  'True\r\n"
              "   Left            =   -15\r\n"
              "   Visible         =   0   'False\r\n"
              "   Begin Label a\r\n"
              "      Caption         =   \"two\" & Chr(13) & Chr(10) & \"lines\"\r\n"
              "   End\r\n"
              "End\r\n");
    EXPECT_TRUE(file.form.Remove(u"left"));
    EXPECT_FALSE(file.form.Remove(u"Left"));
    for (const TextView name : {u"two words", u"", u"1st", u"a\xD800", u"a\xDFFF", u"a\uFEFF"}) {
        EXPECT_THROW(file.form.Set(name, true), RunTimeError) << testing::PrintToString(name);
    }
}

TEST(FormFile, TextBeyondTheOldCodePageTurnsTheFileToUtf8) {
    FormFile file = FormFile::Parse("Begin Form f\n  Caption = \"\xE4\"\nEnd\n");
    file.form.Set(u"Tag", Text(u"\u0416"));
    const std::string bytes = file.Write();
    EXPECT_EQ(bytes.substr(0, 3), "\xEF\xBB\xBF");
    const FormFile again = FormFile::Parse(bytes);
    EXPECT_EQ(again.form.TextOf(u"Caption"), u"\u00E4");
    EXPECT_EQ(again.form.TextOf(u"Tag"), u"\u0416");
}

TEST(FormValue, ReadsEveryForm) {
    const struct {
        TextView line;
        FormValue value;
    } cases[] = {
        {u" \"\"", Text()},
        {u" \"a'b\" 'c", Text(u"a'b")},
        {u"\"a\" & Chr(10) & \"b\"", Text(u"a\nb")},
        {u"chr(65)", Text(u"A")},
        {u"-2147483648", std::int32_t{INT32_MIN}},
        {u"2147483648", 2147483648.0},
        {u"+.5", 0.5},
        {u"1E-3", 0.001},
        {u"&HFFFF", std::int32_t{-1}},
        {u"&HFFFF&", std::int32_t{65535}},
        {u"&h80000012&", static_cast<std::int32_t>(0x80000012)},
        {u"-1  'True", true},
        {u"0 ' false", false},
        {u"1  'True", std::int32_t{1}},
        {u"2  'Fixed Dialog", std::int32_t{2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.line.begin(), c.line.end()));
        bool malformed = true;
        const ValueLine read = ParseValue(c.line, malformed);
        EXPECT_FALSE(malformed);
        ASSERT_TRUE(read.value);
        EXPECT_TRUE(*read.value == c.value);
    }
    for (const TextView line : {u"\"a", u"\"a\" b", u"\"a\" &", u"Chr(70000)", u"Chr()", u"1.2.3", u"-", u"&Hxyz&",
                                u"&H123456789&", u"&O17", u"1e999", u"'only a remark"}) {
        bool malformed = false;
        ParseValue(line, malformed);
        EXPECT_TRUE(malformed) << std::string(line.begin(), line.end());
    }
}

TEST(FormValue, TextOfAnyCharactersComesBack) {
    Text all;
    for (char32_t c = 0; c <= 0xFFFF; ++c) all.push_back(static_cast<char16_t>(c));
    for (const Text& text :
         {all, Text(u"\xD83D\xDE00\xDE00\xD83D"), Text(u"\U0001F600"), Text(u"\r"), Text(u"\""), Text(u"a\0b", 3)}) {
        FormFile file = FormFile::Parse("Begin Form f\nEnd\n");
        file.form.Set(u"Tag", text);
        EXPECT_TRUE(FormFile::Parse(file.Write()).form.TextOf(u"Tag") == text);
    }
}

TEST(FormValue, ConvertsForTheHostsOwnProperties) {
    EXPECT_EQ(ValueAsInt(2.5, 0), 2);
    EXPECT_EQ(ValueAsInt(3.5, 0), 4);
    EXPECT_EQ(ValueAsInt(1e10, 7), 7);
    EXPECT_EQ(ValueAsInt(Text(u"x"), 7), 7);
    EXPECT_EQ(ValueAsInt(true, 0), -1);
    EXPECT_TRUE(ValueAsBool(Text(u"TRUE")));
    EXPECT_EQ(ValueAsText(0.25), u"0.25");
}

TEST(CheckNames, EachNameStandsOnceExceptInArrays) {
    const struct {
        const char* inside;
        int line;  // of the object that is refused, or 0
    } cases[] = {
        {"Begin Label a\nEnd\nBegin Label b\nEnd\n", 0},
        {"Begin Label a\nEnd\nBegin TextBox A\nEnd\n", 4},
        {"Begin Label \xc3\x84\nEnd\nBegin TextBox \xc3\xa4\nEnd\n", 4},
        {"Begin Label F\nEnd\n", 2},
        {"Begin Label a\nIndex = 0\nEnd\nBegin TextBox a\nIndex = 3\nEnd\n", 0},
        {"Begin Label a\nIndex = 1\nEnd\nBegin Label a\nIndex = 1\nEnd\n", 5},
        {"Begin Label a\nEnd\nBegin Label a\nIndex = 1\nEnd\n", 4},
        {"Begin Frame b\nBegin Label a\nEnd\nEnd\nBegin Label a\nEnd\n", 6},
        {"Begin Label a\nEnd\nBegin Menu m\nBegin Menu A\nEnd\nEnd\n", 5},
        {"Begin Menu m\nBegin Menu m\nEnd\nEnd\n", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.inside);
        int line = 0;
        try {
            CheckNames(FormFile::Parse("Begin Form f\n" + std::string(c.inside) + "End\n").form);
        } catch (const FormFileError& error) {
            line = error.Line();
        }
        EXPECT_EQ(line, c.line);
    }
}

}  // namespace
}  // namespace qvx::host
