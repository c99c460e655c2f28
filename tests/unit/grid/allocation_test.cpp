// The data-entry grid without memory: each allocation of each call fails once, alone and with all behind it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "controls/grid/aggregates.h"
#include "controls/grid/binding.h"
#include "controls/grid/cell_edit.h"
#include "controls/grid/clipboard_text.h"
#include "controls/grid/column_index.h"
#include "controls/grid/column_sort.h"
#include "controls/grid/copied_cells.h"
#include "controls/grid/csv_import.h"
#include "controls/grid/duplicate_rows.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/lifecycle.h"
#include "controls/grid/paste.h"
#include "controls/grid/projection.h"
#include "controls/grid/replace_cells.h"
#include "controls/grid/row_commands.h"
#include "controls/grid/row_filter.h"
#include "controls/grid/row_operations.h"
#include "controls/grid/row_states.h"
#include "controls/grid/validation.h"
#include "tests/support/portable/failing_allocation.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/editor_host.h"
#include "tests/unit/grid/export_fixture.h"

namespace qvx::grid {
namespace {

using test::ExpectAllOrNothing;
using test::Starvation;

const TextView longText = u"a text that no string holds within itself";

// A grid, an editor over its cells and a host program.
struct Scene {
    Scene() {
        Fill(grid, {u"No\tName\tQty\tRate\tItem", u"1\tfirst of the names\t1\t2\tPen", u"2\tsecond\t3\t4\tPencil",
                    u"3\t\u0416\u0416\u0416 wide\t5\t6\tInk", u"4\t\t\t\t"});
        state.autoRecordNumber = true;
        state.initialised = true;
        state.columnsDataType = u";Qty-0;Rate-1;";
        state.requiredFields = u";Name;Item;";
        state.inVisibleColumns = u";Rate;";
        state.nonFocusColumns = u";Qty;";
        for (const int row : {1, 2, 3, 4}) grid.SetRowData(row, row);
        grid.MoveTo(3, 1);
        host.silent = true;
        host.listens = false;
    }

    void Paste(TextView text) {
        const ClipboardCells cells(text);
        const CellRectangle rectangle(grid, cells);
        CellWriter<EditorHost>(grid, state, history, host, sources).Write(rectangle);
    }

    flexgrid::Grid grid;
    ControlState state;
    EditHistory history{grid};
    RowStates states{grid, state};
    Projection projection{grid, state};
    EditorHost host{grid};
    CellSources sources{{}, [this](int) { return host.List(); }};
};

std::string DescribeStates(const Scene& scene) {
    std::string text = "\n";
    for (int row = scene.grid.FixedRows(); scene.states.On() && row < scene.grid.Rows(); ++row)
        text += std::to_string(static_cast<int>(scene.states.Of(row))) + Narrow(scene.states.OriginalText(row, 1)) +
                std::to_string(scene.states.RecordNumber(row)) + ' ';
    for (int i = 0; i < scene.states.DeletedCount(); ++i) text += '-' + Narrow(scene.states.DeletedText(i, 1));
    return text;
}

std::string Describe(const Scene& scene) {
    const ControlState& state = scene.state;
    return flexgrid::Describe(scene.grid) + "\nedit " + std::to_string(state.editRow) + ',' +
           std::to_string(state.editCol) + (state.changed ? " changed" : "") + (state.editing ? " editing" : "") +
           (state.committing != 0 ? " committing" : "") + (scene.history.CanUndo() ? " undo" : "") +
           (scene.history.CanRedo() ? " redo" : "") + Narrow(SortColumnsText(scene.grid, scene.grid.SortMarks())) +
           DescribeStates(scene);
}

struct Row {
    const char* name;
    void (*call)(Scene& scene);
    void (*prepare)(Scene& scene) = [](Scene&) {};
};

void PasteRows(Scene& scene) {
    scene.state.autoAddNew = true;
    scene.Paste(u"one of the pasted\t12\ttwo\r\nthree\r\n\"four\r\n\"\t7%\r\n\u0416\t8\t\r\n");
}
void ImportTexts(Scene& scene) {
    CsvRows imported(scene.grid, u"Item,Qty,Name\nan imported pen,12,\"the \"\"first\"\" of them\"\nb,3%,c\n", u',',
                     true);
    ImportRows(scene.grid, scene.state, scene.history, scene.host, scene.sources, imported);
}
void ExportAll(Scene& scene) {
    for (const ExportFormat format : {ExportFormat::csv, ExportFormat::html, ExportFormat::xlsx}) {
        ExportOptions options;
        options.format = format;
        (void)Exported(scene.grid, scene.state, options);
    }
}
void Undo(Scene& scene) { (void)scene.history.Undo(scene.state); }
void Redo(Scene& scene) { (void)scene.history.Redo(scene.state); }
void InsertAbove(Scene& scene) { InsertRow(scene.grid, scene.state, scene.history); }
void DeleteCurrent(Scene& scene) { DeleteRow(scene.grid, scene.state, scene.history); }

void SortByName(Scene& scene) {
    const SortHelp help{[](TextView text, std::string& key) { key.append(text.begin(), text.end()); }, {}, {}};
    SortRows(scene.grid, scene.state, scene.history, {{1, true}, {2, false}}, help);
}

void ReplaceTexts(Scene& scene) {
    CellSearch search(scene.grid);
    search.Look(u"\u0416", {});
    search.StartCounting(1);
    search.Count([] { return true; });
    (void)search.Next({1, 1}, true);
    ReplaceCells(scene.grid, scene.state, scene.history, scene.host, scene.sources, search, longText);
}

void PasteCells(Scene& scene) { scene.Paste(u"one\ttwo\r\nthree\r\n"); }
void NumberNothing(Scene& scene) { scene.state.autoRecordNumber = false; }
// Executes two calls, one after the other.
template <auto First, auto Then>
void Both(Scene& scene) {
    First(scene);
    Then(scene);
}

const Row rows[] = {
    {"a row inserted", InsertAbove},
    {"a row inserted where none is numbered", InsertAbove, NumberNothing},
    {"a row deleted", DeleteCurrent},
    {"a row deleted where none is numbered", DeleteCurrent, NumberNothing},
    {"the last row deleted", DeleteCurrent, [](Scene& scene) { scene.grid.SetRows(2); }},
    {"rows appended", [](Scene& scene) { AppendRows(scene.grid, scene.state, scene.history, 600); }},
    {"cells pasted", PasteCells},
    {"a cell pasted everywhere", [](Scene& scene) { scene.Paste(longText); },
     [](Scene& scene) { scene.grid.Select(1, 1, 4, 4); }},
    {"cells pasted beyond the end", PasteRows},
    {"rows imported", ImportTexts},
    {"rows exported", ExportAll},
    {"undoing cells", Undo, PasteCells},
    {"cells pasted around a filtered row", PasteRows, [](Scene& scene) { scene.grid.SetRowFiltered(4, true); }},
    {"undoing an insertion", Undo, InsertAbove},
    {"undoing a deletion", Undo, DeleteCurrent},
    {"undoing a deletion where none is numbered", Undo, Both<NumberNothing, DeleteCurrent>},
    {"undoing appended rows with cells", Undo, PasteRows},
    {"redoing cells", Redo, Both<PasteCells, Undo>},
    {"redoing an insertion", Redo, Both<InsertAbove, Undo>},
    {"redoing a deletion", Redo, Both<DeleteCurrent, Undo>},
    {"redoing appended rows with cells", Redo, Both<PasteRows, Undo>},
    {"cells replaced", ReplaceTexts},
    {"undoing replaced cells", Undo, ReplaceTexts},
    {"sorted rows", SortByName},
    {"sorted rows where none is numbered", SortByName, NumberNothing},
    {"undoing a sort", Undo, SortByName},
    {"redoing a sort", Redo, Both<SortByName, Undo>},
    {"numbering", [](Scene& scene) { Renumber(scene.grid, scene.state); },
     [](Scene& scene) {
         scene.grid.SetRows(30'000);
         scene.grid.SetRows(40);
     }},
    {"invisible columns", [](Scene& scene) { ApplyInVisibleColumns(scene.grid, scene.state); },
     [](Scene& scene) { scene.grid.SetFormatString(u"No|Name|Qty|Rate|Item|Another of them"); }},
    {"all records removed", [](Scene& scene) { RemoveAllRecords(scene.grid, scene.state, scene.history); }},
    {"a row cleared", [](Scene& scene) { ClearRow(scene.grid, 1, allColumns, {}); }},
    {"a row cleared in part", [](Scene& scene) { ClearRow(scene.grid, 1, u";Name;Item;", {}); }},
    {"a projected cell", [](Scene& scene) { scene.projection.Enter(); },
     [](Scene& scene) { scene.state.projectionBold = true; }},
    {"a projection ended", [](Scene& scene) { scene.projection.Leave(); },
     [](Scene& scene) {
         scene.state.projectionBold = true;
         scene.projection.Enter();
     }},
    {"everything cleared", [](Scene& scene) { scene.grid.Clear(); }},
    {"a column moved", [](Scene& scene) { scene.grid.SetColPosition(1, 2); }, DeleteCurrent},
    {"states accepted", [](Scene& scene) { scene.states.Accept(); }, Both<DeleteCurrent, PasteRows>},
    {"reading",
     [](Scene& scene) {
         (void)RefreshColIndex(scene.grid);
         (void)FindInvalidCell(scene.grid, scene.state);
         (void)FirstDuplicate(scene.grid, 1);
         (void)CopiedText(scene.grid);
         (void)CopiedHtml(scene.grid, scene.state);
         RowFilter filter;
         EXPECT_TRUE(filter.Replace(scene.grid, scene.state, {}, u"[Name]a text of some length*,[Qty]1..3|5"));
         EXPECT_EQ(filter.RowsToHide(scene.grid, scene.state, {})->size(), 5U);
         (void)SumOfColumn(scene.grid, 2);
     }},
};

TEST(EntryGridAllocations, LeaveTheGridAsItWasOrDoAll) {
    for (const bool tracks : {false, true}) {
        for (const Row& row : rows) {
            const auto make = [&] {
                auto scene = std::make_unique<Scene>();
                if (tracks) scene->states.Start();
                row.prepare(*scene);
                return scene;
            };
            ExpectAllOrNothing(row.name, make, row.call, Describe);
        }
    }
}

// What was recorded before a call that has run out of memory can still be taken back.
TEST(EntryGridAllocations, LeaveTheHistoryWhatItWas) {
    const auto make = [] {
        auto scene = std::make_unique<Scene>();
        scene->Paste(u"x");
        return scene;
    };
    const auto takenBack = [](Scene& scene) {
        while (scene.history.CanUndo()) Undo(scene);
        const std::string first = flexgrid::Shown(scene.grid);
        while (scene.history.CanRedo()) Redo(scene);
        return first;
    };
    for (void (*call)(Scene&) : {InsertAbove, DeleteCurrent, PasteRows, SortByName})
        ExpectAllOrNothing("with a step before", make, call, takenBack);
}

// Whether an allocation of the call has failed.
template <class Call>
bool Starve(int passing, Starvation starvation, Call call) {
    const test::FailingAllocation failing(passing, starvation);
    test::RunsOutOfMemory(call);
    return failing.Happened();
}

// What was typed is in the cell or still in the open editor, and so is the old text before it was typed over.
TEST(EntryGridAllocations, LoseNothingThatWasTyped) {
    for (const bool cancels : {false, true}) {
        test::ForEachAllocation([&](int passing, Starvation starvation) {
            SCOPED_TRACE((cancels ? "cancelled " : "") + std::to_string(passing));
            Scene scene;
            if (cancels) scene.host.onAfter = [](int, bool& cancel) { cancel = true; };
            scene.grid.Select(1, 1, 1, 1);
            const Text old = scene.grid.TextMatrix(1, 1);
            const auto open = [&] { ShowCellEditor(scene.grid, scene.state, scene.host, scene.host, true); };
            const auto commit = [&] { CommitEdit(scene.grid, scene.state, scene.history, scene.host, scene.host); };
            bool happened = Starve(passing, starvation, open);
            EXPECT_FALSE(scene.state.editing);
            EXPECT_EQ(EditIsOpen(scene.state) ? scene.host.comboText : scene.grid.TextMatrix(1, 1), old);
            EXPECT_EQ(scene.host.reported, happened ? errors::outOfMemory : 0);
            if (!EditIsOpen(scene.state)) {
                EXPECT_FALSE(scene.host.frameShown);
                open();
            }
            scene.host.comboText = longText;
            scene.host.reported = 0;
            happened = Starve(passing, starvation, commit) || happened;
            EXPECT_EQ(scene.state.committing, 0);
            if (EditIsOpen(scene.state)) {
                EXPECT_EQ(scene.host.comboText, longText);
                EXPECT_EQ(scene.host.reported, errors::outOfMemory);
                scene.host.reported = 0;
                commit();
            }
            EXPECT_FALSE(EditIsOpen(scene.state));
            // A text that could not be put back was reported.
            EXPECT_EQ(scene.grid.TextMatrix(1, 1), cancels && scene.host.reported == 0 ? old : longText);
            return happened;
        });
    }
}

// The host was told of each cell, so what it was told of stays.
TEST(EntryGridAllocations, LeaveWhatTheHostWasToldOf) {
    test::ForEachAllocation([](int passing, Starvation starvation) {
        SCOPED_TRACE(passing);
        Scene scene;
        scene.host.listens = true;
        scene.grid.Select(1, 1, 1, 1);
        const bool happened = Starve(
            passing, starvation, [&] { scene.Paste(u"a text too long for itself\t12\r\nanother of them\t13\r\n"); });
        const Text pasted[] = {u"a text too long for itself", u"12", u"another of them", u"13"};
        const Text before[] = {u"first of the names", u"1", u"second", u"3"};
        bool reached = true;
        for (int i = 0; i < 4; ++i) {
            const Text now = scene.grid.TextMatrix(1 + i / 2, 1 + i % 2);
            reached = reached && now == pasted[i];
            EXPECT_EQ(now, reached ? pasted[i] : before[i]);
        }
        EXPECT_TRUE(reached || happened);
        return happened;
    });
}

// An error of the records leaves the rows so far, each of them whole.
TEST(EntryGridAllocations, LeaveTheRecordsLoadedSoFar) {
    class Records final : public RecordSource {
      public:
        std::int64_t Count() override { return 5; }
        bool AtEnd() override { return at_ == 5; }
        std::int64_t Position() override { return at_ + 1; }
        void AppendFields(Text& row) override { row.append(longText).append(u"\t"); }
        void MoveNext() override { ++at_; }

      private:
        std::int64_t at_ = 0;
    };
    test::ForEachAllocation([](int passing, Starvation starvation) {
        SCOPED_TRACE(passing);
        Scene scene;
        scene.grid.SetRows(1);
        Records records;
        const bool happened = Starve(passing, starvation, [&] {
            LoadRecords(
                scene.grid, scene.state, scene.states, {}, records, [] { return true; },
                [](std::int64_t) { return true; });
        });
        EXPECT_TRUE(happened || scene.grid.Rows() == 6);
        for (int row = 1; row < scene.grid.Rows(); ++row) {
            EXPECT_EQ(scene.grid.TextMatrix(row, 0), Text(1, static_cast<char16_t>(u'0' + row)));
            EXPECT_EQ(scene.grid.TextMatrix(row, 1), longText);
        }
        return happened;
    });
}

// No error comes out of it; then the emptied rows that are left can be removed again.
TEST(EntryGridAllocations, OfRemovingEmptyRowsAreNobodysBusiness) {
    Scene unharmed;
    RemoveEmptyRows(unharmed.grid, unharmed.state, false);
    test::ForEachAllocation([&](int passing, Starvation starvation) {
        SCOPED_TRACE(passing);
        Scene scene;
        const bool happened =
            Starve(passing, starvation, [&] { EXPECT_NO_THROW(RemoveEmptyRows(scene.grid, scene.state, false)); });
        RemoveEmptyRows(scene.grid, scene.state, false);
        EXPECT_EQ(Describe(scene), Describe(unharmed));
        return happened;
    });
}

}  // namespace
}  // namespace qvx::grid
