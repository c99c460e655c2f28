// What the designer says, which keys it takes, and how it runs a form.
#include <gtest/gtest.h>

#include "common/keys.h"
#include "designer/designer_keys.h"
#include "designer/help_page.h"
#include "designer/run_command.h"
#include "designer/status_line.h"
#include "host/options.h"

namespace qvx::host::designer {
namespace {

TEST(StatusLine, SaysWhatIsUnderWay) {
    StatusState form;
    form.formName = u"frmTest";
    form.form = {0, 0, 4800, 3600};
    StatusState one = form;
    one.selected = 1;
    one.primary = {u"txtField", 2};
    one.primaryBounds = {120, -60, 600, 480};
    StatusState several = one;
    several.selected = 3;
    StatusState broken = several;
    broken.fault = u"There is no such class.";
    StatusState dragged = one;
    dragged.dragging = true;
    dragged.dragged = TwipsRect{240, 0, 600, 480};
    StatusState armed = one;
    armed.armed = u"Qvx.Button";
    StatusState orders = several;
    orders.ordersTabs = armed.ordersTabs = true;
    const struct {
        StatusState state;
        TextView hint, place, size;
    } cases[] = {
        {form, u"frmTest", u"", u"4800 \u00D7 3600 twips"},
        {one, u"txtField(2)", u"120, -60", u"600 \u00D7 480 twips"},
        {several, u"3 controls", u"120, -60", u"600 \u00D7 480 twips"},
        {broken, u"There is no such class.", u"120, -60", u"600 \u00D7 480 twips"},
        {dragged, u"", u"240, 0", u"600 \u00D7 480 twips"},
        {orders, u"Click the controls in the order in which Tab shall visit them; Escape ends this.", u"120, -60",
         u"600 \u00D7 480 twips"},
        {armed, u"Draw the Qvx.Button on the form, or press Enter.", u"120, -60", u"600 \u00D7 480 twips"},
    };
    for (const auto& c : cases) {
        const StatusTexts texts = StatusOf(c.state);
        EXPECT_EQ(texts.hint, c.hint);
        EXPECT_EQ(texts.place, c.place) << &c - cases;
        EXPECT_EQ(texts.size, c.size) << &c - cases;
    }
}

TEST(StatusLine, TheCaptionNamesTheFile) {
    EXPECT_EQ(DesignerCaption(u"C:\\forms\\a.frm", u"frmA", false, u"Qvx"), u"a.frm - Qvx Designer");
    EXPECT_EQ(DesignerCaption(u"", u"Form1", true, u"Qvx"), u"Form1* - Qvx Designer");
}

TEST(DesignerKeys, F6GoesRoundThePanes) {
    using enum Pane;
    const struct {
        int shift;
        Pane from, to;
    } cases[] = {{0, canvas, properties},
                 {0, properties, toolbox},
                 {0, toolbox, canvas},
                 {keys::shiftMask, canvas, toolbox},
                 {keys::shiftMask, toolbox, properties},
                 {keys::shiftMask, properties, canvas}};
    for (const auto& c : cases) EXPECT_EQ(PaneAfterKey(paneKey, c.shift, c.from), c.to);
    EXPECT_FALSE(PaneAfterKey(paneKey, keys::controlMask, canvas));
    EXPECT_FALSE(PaneAfterKey(keys::f4, 0, canvas));
}

TEST(DesignerKeys, TextsAndChoicesKeepTheirShortcuts) {
    const struct {
        Command command;
        bool form, properties, other;
    } cases[] = {{Command::undo, true, false, false},
                 {Command::remove, true, false, false},
                 {Command::properties, true, false, true},
                 {Command::save, true, true, true},
                 {Command::run, true, true, true}};
    for (const auto& c : cases) {
        EXPECT_EQ(TakesShortcut(c.command, KeyTarget::form), c.form);
        EXPECT_EQ(TakesShortcut(c.command, KeyTarget::properties), c.properties);
        EXPECT_EQ(TakesShortcut(c.command, KeyTarget::other), c.other);
    }
    EXPECT_EQ(ToolboxActionOf(keys::enter), ToolboxAction::place);
    EXPECT_EQ(ToolboxActionOf(keys::escape), ToolboxAction::disarm);
    EXPECT_EQ(ToolboxActionOf(keys::space), ToolboxAction::none);
}

TEST(HelpPage, IsThatOfThePropertyOrTheControl) {
    const HelpPage form{u"hosting.html", u"the-form-file"};
    const struct {
        TextView className, property;
        HelpPage page;
    } cases[] = {{u"", u"", {u"designer.html"}},
                 {u"", u"Caption", form},
                 {u"Label", u"", form},
                 {u"Qvx", u"", form},
                 {u"Other.Button", u"Caption", form},
                 {u"Qvx.ComboGrid", u"", {u"combogrid.html"}},
                 {u"qvx.combogrid", u"Rows", {u"combogrid.html", u"Rows"}},
                 {u"Qvx.CMenus", u"Custom", {u"cmenus.html"}},
                 {u"Qvx.TextEdit", u"ToolTipText", form},
                 {u"Qvx.TextEdit", u"Text", {u"textedit.html", u"Text"}}};
    for (const auto& c : cases) EXPECT_EQ(HelpPageOf(c.className, c.property), c.page) << &c - cases;
}

TEST(HelpPage, HasAnAddressThatBrowsersTake) {
    EXPECT_EQ(DocumentationFolders(u"C:\\Qvx\\x64\\qvxhost.exe"),
              (std::vector<Text>{u"C:\\Qvx\\x64\\docs", u"C:\\Qvx\\docs"}));
    EXPECT_EQ(DocumentationFolders(u"C:\\qvxhost.exe"), (std::vector<Text>{u"C:\\docs"}));
    EXPECT_EQ(FileAddress(u"C:\\My #1 forms\\\u00E4\\a.html", u"Rows"),
              u"file:///C:/My%20%231%20forms/%C3%A4/a.html#Rows");
    EXPECT_EQ(FileAddress(u"\\\\server\\docs\\100%.html", u""), u"file://server/docs/100%25.html");
}

TEST(RunCommand, ArgumentsArriveAsTheyWere) {
    const struct {
        TextView argument, quoted;
    } cases[] = {
        {u"", uR"("")"},
        {u"C:\\a b\\", uR"("C:\a b\\")"},
        {u"say \"no\"", uR"("say \"no\"")"},
        {uR"(a\"b\c)", uR"("a\\\"b\c")"},
    };
    for (const auto& c : cases) {
        Options options;
        options.arguments = {Text(c.argument)};
        EXPECT_EQ(RunCommandLine(u"h", u"f", u"", options), uR"("h" "f" -- )" + Text(c.quoted));
    }
}

TEST(RunCommand, GoesOnAsTheDesignerWasStarted) {
    Options plain;
    plain.save = u"saved.frm";
    plain.design = plain.rewrite = true;
    Options full;
    full.server = u"C:\\qvx.ocx";
    full.log = u"C:\\a log.txt";
    full.quiet = true;
    full.arguments = {u"one", u"two words"};
    EXPECT_EQ(RunCommandLine(u"C:\\p\\host.exe", u"C:\\a.frm", u"", plain), u"\"C:\\p\\host.exe\" \"C:\\a.frm\"");
    EXPECT_EQ(RunCommandLine(u"h.exe", u"~a.frm", u"a.vbs", full),
              u"\"h.exe\" \"~a.frm\" \"a.vbs\" --ocx \"C:\\qvx.ocx\" --log \"C:\\a log.txt\" --quiet -- \"one\" "
              u"\"two words\"");
    EXPECT_EQ(ScriptsBeside(u"C:\\f\\a.b.frm"), (std::vector<Text>{u"C:\\f\\a.b.vbs", u"C:\\f\\a.b.js"}));
    EXPECT_EQ(ScriptsBeside(u"C:\\f.x\\a"), (std::vector<Text>{u"C:\\f.x\\a.vbs", u"C:\\f.x\\a.js"}));
    EXPECT_EQ(RunCopyName(u"a.frm", 0), u"~a.frm");
    EXPECT_EQ(RunCopyName(u"a.frm", 2), u"~2a.frm");
}

}  // namespace
}  // namespace qvx::host::designer
