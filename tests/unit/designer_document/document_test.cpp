#include "designer/document/document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include "common/run_time_error.h"
#include "designer/document/form_text.h"
#include "host/text_encoding.h"
#include "tests/support/error_of.h"
#include "tests/support/source_folder.h"

namespace qvx::host::designer {
namespace {

const std::string small =
    "' kept\r\n"
    "Begin Form f\r\n"
    "   Caption = \"x\"\r\n"
    "   Begin Label lblA\r\n"
    "      Left            =   120\r\n"
    "   End\r\n"
    "   Begin Frame fra   ' box\r\n"
    "      Width           =   2000\r\n"
    "      Height          =   2000\r\n"
    "      Begin TextBox txt\r\n"
    "         Index           =   0\r\n"
    "      End\r\n"
    "      Begin TextBox txt\r\n"
    "         Index           =   3\r\n"
    "      End\r\n"
    "   End\r\n"
    "   Begin Menu mnu\r\n"
    "      Caption         =   \"M\"\r\n"
    "   End\r\n"
    "End\r\n"
    "kept too\r\n";

ObjectId Id(TextView name, int index = -1) { return {Text(name), index}; }

Text Titles(const std::vector<ObjectId>& ids) {
    Text titles;
    for (const ObjectId& id : ids) titles += TitleOf(id) + u" ";
    return titles;
}

std::string SampleBytes(const std::string& name) {
    std::ifstream file(std::string(test::sourceFolder) + "/samples/" + name, std::ios::binary);
    EXPECT_TRUE(file);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class Body>
Text Refusal(Body body) {
    const test::Raised raised = test::RaisedBy(body);
    return raised.number == 0 ? u"(done)" : raised.words;
}

TEST(DesignDocument, PlacesWithAFreshNameInFrontAndLastInTheTabOrder) {
    Document document(FormFile::Parse(small));
    const Text order = Titles(document.TabOrder());
    document.Begin();
    EXPECT_EQ(document.Place(u"Qvx.Button", std::nullopt, {2400, 240, 1200, 375}), Id(u"Button1"));
    const std::string placed =
        "   Begin Qvx.Button Button1\r\n"
        "      Left            =   2400\r\n"
        "      Top             =   240\r\n"
        "      Width           =   1200\r\n"
        "      Height          =   375\r\n"
        "      TabIndex        =   4\r\n"
        "   End\r\n"
        "   Begin Menu mnu\r\n";
    EXPECT_NE(document.Bytes().find(placed), std::string::npos) << document.Bytes();
    EXPECT_EQ(document.Place(u"Label", Id(u"FRA"), {1000, 1000, 600, 240}), Id(u"Label1"));
    EXPECT_EQ(document.Place(u"Label", std::nullopt, {120, 0, 480, 480}), Id(u"Label2"));
    EXPECT_TRUE(document.Commit(u"Place"));
    EXPECT_EQ(Titles(document.Controls()), u"Label2 lblA fra txt(0) txt(3) Label1 Button1 ") << "over others in front";
    EXPECT_EQ(Titles(document.TabOrder()), order + u"Button1 Label1 Label2 ");
    EXPECT_NE(document.Bytes().find("      Begin Label Label1\r\n         Caption         =   \"Label1\"\r\n"),
              std::string::npos);
    document.Begin();
    document.Restack({Id(u"fra")}, true);
    document.Commit(u"Front");
    EXPECT_EQ(Titles(document.Controls()), u"fra txt(0) txt(3) Label1 Label2 lblA Button1 ");
    EXPECT_EQ(Titles(document.TabOrder()), order + u"Button1 Label1 Label2 ");
    document.Begin();
    document.SetTabOrder({Id(u"txt", 3), Id(u"fra")});
    document.Commit(u"Tab Order");
    EXPECT_EQ(Titles(document.TabOrder()), u"txt(3) fra lblA txt(0) Button1 Label1 Label2 ");
    while (document.Undo()) {
    }
    EXPECT_EQ(document.Bytes(), small);
    EXPECT_FALSE(document.Dirty());
}

TEST(DesignDocument, NamesAndIndexes) {
    Document document(FormFile::Parse(small));
    document.Begin();
    const auto rename = [&](const ObjectId& id, TextView name) {
        return Refusal([&] { document.Rename(id, Text(name)); });
    };
    for (const TextView used : {u"FRA", u"mnu", u"f"})
        EXPECT_EQ(rename(Id(u"lblA"), used), u"The name \"" + Text(used) + u"\" is used already.");
    EXPECT_EQ(rename(Id(u"lblA"), u"a b").substr(0, 18), u"\"a b\" is no name: ");
    EXPECT_EQ(rename(Id(u"fra"), u"fraBox"), u"(done)");
    EXPECT_EQ(rename(Id(u"txt", 3), u"one"), u"(done)");
    EXPECT_EQ(rename(Id(u"one", 3), u"txt"), u"(done)");
    EXPECT_NE(document.Bytes().find("   Begin Frame fraBox   ' box\r\n"), std::string::npos);
    EXPECT_EQ(Refusal([&] { document.SetIndex(Id(u"txt", 3), 0); }), u"The name \"txt(0)\" is used already.");
    EXPECT_EQ(Refusal([&] { document.SetIndex(Id(u"txt", 3), -1); }), u"The name \"txt\" is used already.");
    EXPECT_EQ(Refusal([&] { document.SetIndex(Id(u"txt", 3), 40000); }).substr(0, 12), u"The Index of");
    document.SetIndex(Id(u"txt", 3), 1);
    document.SetIndex(Id(u"txt", 0), 2);
    document.SetIndex(Id(u"txt", 1), 0);
    document.SetIndex(Id(u"lblA"), 0);
    EXPECT_EQ(Titles(document.Controls()), u"lblA(0) fraBox txt(2) txt(0) ");
    document.Cancel();
    EXPECT_EQ(document.Bytes(), small);
}

TEST(DesignDocument, PastedControlsGetNamesIndexesAndAPlaceOfTheirOwn) {
    Document document(FormFile::Parse(small));
    const Text text = document.CopyText({Id(u"fra"), Id(u"txt", 0)});
    EXPECT_EQ(text.substr(0, 33), u"Begin Frame fra   ' box\r\n   Width") << "what stands in a frame comes along once";
    EXPECT_EQ(Document::CountIn(text), 3u);
    document.Begin();
    EXPECT_EQ(Titles(document.Paste(text, std::nullopt, false)), u"Frame1 ");
    EXPECT_EQ(Titles(document.Controls()), u"Frame1 txt(4) txt(5) lblA fra txt(0) txt(3) ");
    EXPECT_EQ(Document::BoundsOf(*document.Find(Id(u"Frame1"))), (TwipsRect{120, 120, 2000, 2000}));
    document.Commit(u"Paste");
    document.Begin();
    const Text label = document.CopyText({Id(u"lblA")});
    EXPECT_EQ(Titles(document.Paste(label, Id(u"fra"), false)), u"Label1 ");
    EXPECT_EQ(Titles(document.Paste(label, std::nullopt, true)), u"lblA(1) ");
    EXPECT_TRUE(document.Find(Id(u"lblA", 0)));
    // A whole form brings its controls, which keep their order.
    const auto whole = document.Paste(DecodeFile(SampleBytes("invoice.frm")).text, std::nullopt, false);
    ASSERT_EQ(whole.size(), 19u);
    EXPECT_EQ(document.Controls().front(), whole.front());
    document.Commit(u"Paste");
    document.Undo();
    document.Undo();
    EXPECT_EQ(document.Bytes(), small);
}

TEST(DesignDocument, RefusesTextThatIsNoPartOfAForm) {
    Document document(FormFile::Parse(small));
    std::string deep;
    for (int i = 0; i < 62; ++i) deep += "Begin Frame f" + std::to_string(i) + "\r\n";
    for (int i = 0; i < 62; ++i) deep += "End\r\n";
    std::string many;
    for (std::size_t i = 0; i <= pastedControls; ++i) many += "Begin Label l" + std::to_string(i) + "\nEnd\n";
    const std::pair<std::string, TextView> cases[] = {
        {"", u"There are no controls on the clipboard."},
        {"Begin Label a\r\nEnd\r\nEnd\r\nBegin Label b\r\nEnd", u"it ends too early."},
        {"Caption = 1\r\nBegin Label a\r\nEnd", u"a property stands alone."},
        {"Begin Label a\r\n  what is this\r\nEnd", u"not understood: \"what is this\"."},
        {"Begin Menu a\r\nEnd", u"Menus are edited in the menu editor, not pasted."},
        {"Begin Label a\r\nBegin Form b\r\nEnd\r\nEnd\r\nBegin Form c\r\nEnd", u"A form cannot be pasted into a form."},
        {many, u"The clipboard holds too many controls."},
        {deep, u"(done)"},
    };
    for (const auto& [bytes, sentence] : cases) {
        SCOPED_TRACE(bytes.substr(0, 60));
        const Text said = Refusal([&] {
            document.Begin();
            document.Paste(*DecodeUtf8(bytes), std::nullopt, false);
        });
        document.Cancel();
        EXPECT_NE(said.find(sentence), Text::npos) << std::string(said.begin(), said.end());
        EXPECT_EQ(document.Bytes(), small);
    }
    // Deeper than a form is read, where the frame stands already.
    EXPECT_EQ(Refusal([&] {
                  document.Begin();
                  std::string deeper = "Begin Frame g\r\n" + deep + "End\r\n";
                  document.Paste(*DecodeUtf8(deeper), Id(u"fra"), false);
              }).substr(0, 28),
              u"This cannot be pasted here: ");
    document.Cancel();
    EXPECT_EQ(document.Bytes(), small);
}

TEST(DesignDocument, StepsInARowMayBeOne) {
    Document document(FormFile::Parse(small));
    const auto nudge = [&](int left) {
        document.Begin();
        document.SetBounds({Id(u"lblA")}, {{left, 0, 480, 480}});
        return document.Commit(u"Move", u"move lblA");
    };
    EXPECT_FALSE(nudge(120)) << "nothing changes";
    EXPECT_TRUE(nudge(240));
    EXPECT_TRUE(nudge(360));
    document.MarkSaved();
    EXPECT_TRUE(nudge(480));
    EXPECT_TRUE(document.Dirty());
    EXPECT_TRUE(document.Undo());
    EXPECT_FALSE(document.Dirty()) << "a step does not swallow the saved state";
    EXPECT_EQ(document.Find(Id(u"lblA"))->IntOf(u"Left", 0), 360);
    EXPECT_TRUE(document.Undo());
    EXPECT_EQ(document.Bytes(), small);
    EXPECT_FALSE(document.Undo());
    EXPECT_TRUE(document.Redo());
    EXPECT_TRUE(document.Redo());
    EXPECT_FALSE(document.Redo());
    EXPECT_EQ(document.Find(Id(u"lblA"))->IntOf(u"Left", 0), 480);
    EXPECT_TRUE(document.Undo());
    EXPECT_TRUE(nudge(600));
    EXPECT_TRUE(document.Undo());
    EXPECT_EQ(document.Find(Id(u"lblA"))->IntOf(u"Left", 0), 360) << "nor one that was gone back to";
}

// Whatever is done: going back through all steps gives the bytes of the beginning, and forward those of the end.
TEST(DesignDocument, AllStepsCanBeUndoneAndRedone) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        std::mt19937 random(seed);
        const std::string bytes = seed % 2 ? SampleBytes("invoice.frm") : small;
        Document document(FormFile::Parse(bytes));
        const auto any = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
        const auto pick = [&] {
            const auto all = document.Controls();
            return all.empty() ? Id(u"none") : all[random() % all.size()];
        };
        Text clipboard;
        const auto bounds = [&] { return TwipsRect{any(9000), any(9000), any(3000), any(3000)}; };
        const std::function<void()> acts[] = {
            [&] { document.Place(any(2) ? u"Frame" : u"Qvx.TextEdit", std::nullopt, bounds()); },
            [&] {
                document.Delete({pick(), pick()});
            },
            [&] {
                document.SetBounds({pick(), pick()}, {bounds(), bounds()});
            },
            [&] { document.Rename(pick(), u"name" + Text(1, static_cast<char16_t>(u'a' + any(20)))); },
            [&] { document.SetIndex(pick(), any(5) - 1); },
            [&] { document.Restack({pick()}, any(2) != 0); },
            [&] {
                document.SetTabOrder({pick(), pick()});
            },
            [&] {
                clipboard = document.CopyText({pick(), pick()});
            },
            [&] { document.Paste(clipboard, pick(), any(2) != 0); },
        };
        int steps = 0;
        for (int i = 0; i < 60; ++i) {
            document.Begin();
            try {
                // Deleting is rarer than all that adds something.
                const int act = any(9);
                acts[act == 1 ? any(3) : act]();
                steps += document.Commit(u"step");
            } catch (const RunTimeError&) {
                document.Cancel();
            }
            // Everything on the way is a form that can be loaded.
            ASSERT_NO_THROW(CheckNames(FormFile::Parse(document.Bytes()).form)) << seed << " " << i;
        }
        const std::string end = document.Bytes();
        int undone = 0;
        while (document.Undo()) ++undone;
        EXPECT_EQ(undone, steps);
        EXPECT_EQ(document.Bytes(), bytes) << seed;
        EXPECT_FALSE(document.Dirty());
        while (document.Redo()) --undone;
        EXPECT_EQ(undone, 0);
        EXPECT_EQ(document.Bytes(), end);
    }
}

}  // namespace
}  // namespace qvx::host::designer
