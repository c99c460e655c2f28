// The document without memory: each allocation of each step fails once, alone and with all behind it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "designer/document/document.h"
#include "tests/support/portable/failing_allocation.h"

namespace qvx::host::designer {
namespace {

const std::string sample =
    "Begin Form f\r\n"
    "   Begin Label lblFirstOfAll\r\n"
    "      Left            =   120\r\n"
    "   End\r\n"
    "   Begin Frame fraThatHoldsOthers\r\n"
    "      Width           =   2000\r\n"
    "      Begin TextBox txt\r\n"
    "         Index           =   0\r\n"
    "      End\r\n"
    "   End\r\n"
    "End\r\n";

const ObjectId label{u"lblFirstOfAll", -1};
const ObjectId frame{u"fraThatHoldsOthers", -1};
const ObjectId box{u"txt", 0};

// As the designer makes a step.
void Step(Document& document, void (*change)(Document&)) {
    document.Begin();
    change(document);
    document.Commit(u"A step with a long name", u"a kind of step");
}

struct Row {
    const char* name;
    void (*change)(Document& document);
};

const Row rows[] = {
    {"placing",
     [](Document& d) {
         d.Place(u"Qvx.ComboGrid", frame, TwipsRect{100, 200, 300, 400});
     }},
    {"deleting",
     [](Document& d) {
         d.Delete(std::vector{label, box});
     }},
    {"moving",
     [](Document& d) {
         d.SetBounds({label}, {TwipsRect{1000, 2000, 3000, 4000}});
     }},
    {"renaming", [](Document& d) { d.Rename(label, u"lblWithAnotherName"); }},
    {"renaming the form", [](Document& d) { d.RenameForm(u"frmWithAnotherName"); }},
    {"an index", [](Document& d) { d.SetIndex(label, 7); }},
    {"restacking", [](Document& d) { d.Restack({frame}, true); }},
    {"the tab order",
     [](Document& d) {
         d.SetTabOrder(std::vector{box, label, frame});
     }},
    {"pasting",
     [](Document& d) {
         d.Paste(d.CopyText(std::vector{label, frame}), std::nullopt, false);
     }},
};

std::string Describe(const Document& document) {
    const auto named = [](const Text& name) { return '|' + std::string(name.begin(), name.end()); };
    return document.Bytes() + named(document.UndoName()) + named(document.RedoName()) +
           (document.InStep() ? " in step" : "") + (document.Dirty() ? " dirty" : "");
}

std::unique_ptr<Document> Opened() { return std::make_unique<Document>(FormFile::Parse(sample)); }

TEST(DesignAllocations, LeaveTheFormAsItWasOrDoTheStep) {
    for (const Row& row : rows) {
        const auto step = [&](Document& document) {
            try {
                Step(document, row.change);
            } catch (...) {
                document.Cancel();
                throw;
            }
        };
        test::ExpectAllOrNothing(row.name, Opened, step, Describe);
    }
}

TEST(DesignAllocations, LeaveTheStepsThatThereAre) {
    for (const Row& row : rows) {
        const auto made = [&] {
            auto document = Opened();
            Step(*document, row.change);
            return document;
        };
        const auto undone = [&] {
            auto document = made();
            document->Undo();
            return document;
        };
        test::ExpectAllOrNothing(
            std::string("undoing ") + row.name, made, [](Document& d) { d.Undo(); }, Describe);
        test::ExpectAllOrNothing(
            std::string("redoing ") + row.name, undone, [](Document& d) { d.Redo(); }, Describe);
    }
}

}  // namespace
}  // namespace qvx::host::designer
