// Cells on their way through the clipboard: which of them a rectangle of texts reaches, which text each of them gets,
// and the order of the events.
#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "common/dates.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/clipboard_text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/list_match.h"
#include "controls/grid/row_commands.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The events that notify the host program of each cell. Without listeners the cells are written a row at a time.
template <class H>
concept ChangeEvents = requires(H events, int number, const Text& text, bool& flag) {
    events.BeforeCellChange(number, number, text, flag);
    events.AfterCellChange(number, number, text, text, flag);
    { events.Listens() } -> std::convertible_to<bool>;
};

// The settings of the system and the pick lists that cleaning uses.
struct CellSources {
    DateSettings dates;
    std::function<ListState(int col)> list;  // of a list-only column
};

// Selects all cells except the fixed ones. The ends of these selections are in rows that are not filtered out.
void SelectAll(flexgrid::Grid& grid);
// Extends the selection to whole rows or columns, except for the fixed cells.
void SelectRows(flexgrid::Grid& grid);
void SelectColumns(flexgrid::Grid& grid);

// The rules of a column for texts that are not typed into it.
struct ColumnRules {
    bool refuses = false;  // fixed, inactive or hidden
    bool listOnly = false;
    int cleaning = noCleaning;
    int maxLength = 0;  // in UTF-16 units; 0 for no limit

    // Whether a text goes into its cells as it is.
    bool CleansNothing() const { return !listOnly && cleaning == noCleaning && maxLength <= 0; }
    bool TakesAll() const { return !refuses && CleansNothing(); }
};
// Returns the rules of a column. Raises the grid's errors for a column that it does not have.
ColumnRules RulesOf(const flexgrid::Grid& grid, const ControlState& state, int col);
// Returns the text that the cell gets for a given one.
Text TextFor(const ColumnRules& rules, int col, TextView given, TextView oldText, const ControlState& state,
             const CellSources& sources);

// As a text on its way into a cell: the cell keeps its own. It is recognised by its place in memory.
inline constexpr char16_t keepsCellMark[] = u"";
inline constexpr TextView keepsCell = keepsCellMark;
inline bool KeepsCell(TextView text) { return text.data() == keepsCellMark; }

// A rectangle of texts on its way into the grid. It reads the grid, which must outlive it.
class CellRectangle {
  public:
    // The pasted cells, from the first selected cell on; a single one for all selected cells.
    CellRectangle(const flexgrid::Grid& grid, const ClipboardCells& cells);
    // Empty texts for all selected cells.
    explicit CellRectangle(const flexgrid::Grid& grid);
    // One text for all selected cells.
    CellRectangle(const flexgrid::Grid& grid, TextView text);
    // The texts of the first selected row for the selected rows below it; with one row, those of the row above. Nothing
    // where there is no such row.
    static CellRectangle FillDown(const flexgrid::Grid& grid);
    // The same to the right, that is to columns with higher numbers.
    static CellRectangle FillRight(const flexgrid::Grid& grid);

    // What `textsOf` returns for each row of the target, which gets the rows that the grid lacks.
    using TextsOf = std::function<std::span<const TextView>(int row)>;
    static CellRectangle ForNewRows(const flexgrid::CellRange& target, TextsOf textsOf);

    CellRectangle(CellRectangle&&) = default;  // a copy would refer to the texts of the original

    const flexgrid::CellRange& Target() const { return target_; }
    // Whether its rows go into the rows of the grid that are not filtered out, one after the other; otherwise each
    // belongs to the row of its number.
    bool Flows() const { return cells_ != nullptr; }
    // Whether rows are added for it even without AutoAddNew.
    bool AddsRows() const { return static_cast<bool>(textsOf_); }
    // Returns the texts of a row of the target, from its first column on; a short row leaves the rest of the cells
    // unchanged.
    std::span<const TextView> Row(int row) const;
    // Returns the same as tab-separated text where the pasted text has it so, possibly with more cells than the target.
    std::optional<TextView> PlainRow(int row) const {
        return cells_ ? cells_->PlainRow(static_cast<std::size_t>(row - target_.top)) : std::nullopt;
    }

  private:
    static constexpr int none = -1;

    CellRectangle() = default;

    TextsOf textsOf_;  // null: one of the following
    const flexgrid::Grid* grid_ = nullptr;
    const ClipboardCells* cells_ = nullptr;  // null: `same_` in every row
    mutable std::vector<TextView> same_;
    mutable std::vector<Text> kept_;  // what `same_` refers to
    int sourceCol_ = none;            // whose text each row gets
    flexgrid::CellRange target_;
};

template <ChangeEvents Events>
class CellWriter {
  public:
    // Learns of each text that its cell did not take as it was, while there are listeners.
    using Changed = std::function<void(int row, int col, TextView given)>;

    CellWriter(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Events& events,
               const CellSources& sources, Changed changed = {})
        : grid_(grid),
          state_(state),
          history_(history),
          events_(events),
          sources_(sources),
          changed_(std::move(changed)) {}

    // Writes the part of the rectangle that is within the grid's columns, and within its rows or with AutoAddNew below
    // them, as one step of the history. Rows that are filtered out stay as they are. Every cell is treated as if typed:
    // cleaned by its column, with an event before that the host can cancel and one after. The grid counts as changed
    // when a cell was reached. Raises the grid's errors: what the host was notified of stays, and without listeners
    // nothing has changed.
    void Write(const CellRectangle& rectangle);

  private:
    // Calls write(row, source) for the rows that the rectangle reaches; `source` is the row of the rectangle.
    template <class WriteSource>
    void ForEachRow(const CellRectangle& rectangle, WriteSource write) const;
    // Returns the number of rows that the grid lacks for it.
    int MissingRows(const CellRectangle& rectangle) const;
    bool Exists(int row, int col) const { return row < grid_.Rows() && col < grid_.Cols(); }
    void WriteCell(int row, int col, TextView given);
    // Writes `count` adjacent cells of a row to the first ones of another row, and records that.
    void PutCells(int row, int col, const flexgrid::RowView& cells, int count);
    // Returns whether a cell was reached.
    bool WriteRow(int row, int left, std::span<const TextView> given, const std::vector<ColumnRules>& rules);

    flexgrid::Grid& grid_;
    ControlState& state_;
    EditHistory& history_;
    Events& events_;
    const CellSources& sources_;
    Changed changed_;
    std::vector<Text> cleaned_;  // of the row being written; a member to reuse its memory
    std::vector<TextView> texts_;
    flexgrid::RecordBuilder builder_;
};

template <ChangeEvents Events>
template <class WriteSource>
void CellWriter<Events>::ForEachRow(const CellRectangle& rectangle, WriteSource write) const {
    const flexgrid::CellRange& target = rectangle.Target();
    int source = target.top;
    for (int row = target.top; source <= target.bottom && row < grid_.Rows(); ++row) {
        const bool filtered = grid_.RowFiltered(row);
        if (!filtered) write(row, source);
        if (!filtered || !rectangle.Flows()) ++source;
    }
}

template <ChangeEvents Events>
int CellWriter<Events>::MissingRows(const CellRectangle& rectangle) const {
    const flexgrid::CellRange& target = rectangle.Target();
    int missing = target.bottom - grid_.Rows() + 1;
    if (rectangle.Flows() && grid_.FilteredRows() > 0)
        for (int row = target.top; row < grid_.Rows(); ++row) missing += grid_.RowFiltered(row);
    return missing;
}

template <ChangeEvents Events>
void CellWriter<Events>::Write(const CellRectangle& rectangle) {
    const flexgrid::CellRange target = rectangle.Target();
    if (target.Empty()) return;
    const int missing = state_.autoAddNew || rectangle.AddsRows() ? MissingRows(rectangle) : 0;
    const bool appends = missing > 0;
    const auto append = [&] {
        if (appends) AppendRows(grid_, state_, history_, missing);
    };
    if (events_.Listens()) {
        const EditHistory::Group group(history_);
        append();
        ForEachRow(rectangle, [&](int row, int source) {
            int col = target.left;
            for (const TextView text : rectangle.Row(source)) WriteCell(row, col++, text);
        });
        return;
    }
    using Reach = flexgrid::Grid::AllOrNothing::Reach;
    EditHistory::WholeGroup whole(history_, appends ? Reach::all : Reach::texts);
    append();
    std::vector<ColumnRules> rules;
    rules.reserve(static_cast<std::size_t>(grid_.Cols()));
    for (int col = 0; col < grid_.Cols(); ++col) rules.push_back(RulesOf(grid_, state_, col));
    const int right = std::min(target.right, grid_.Cols() - 1);
    const bool asGiven = target.left <= right && std::all_of(rules.begin() + target.left, rules.begin() + right + 1,
                                                             [](const ColumnRules& rule) { return rule.TakesAll(); });
    bool reached = false;
    ForEachRow(rectangle, [&](int row, int source) {
        if (row < grid_.FixedRows()) return;
        if (const auto plain = asGiven ? rectangle.PlainRow(source) : std::nullopt) {
            const flexgrid::RowView cells(builder_.FromItem(*plain, right - target.left + 1));
            PutCells(row, target.left, cells, builder_.ItemCells());
            reached = true;
        } else {
            reached = WriteRow(row, target.left, rectangle.Row(source), rules) || reached;
        }
    });
    whole.Commit();
    state_.changed = state_.changed || reached;
}

template <ChangeEvents Events>
void CellWriter<Events>::WriteCell(int row, int col, TextView given) {
    // After every event the grid may have changed.
    if (KeepsCell(given) || !Exists(row, col) || row < grid_.FixedRows() || RulesOf(grid_, state_, col).refuses) return;
    state_.eventFlag = false;
    events_.BeforeCellChange(row, col, grid_.TextMatrix(row, col), state_.eventFlag);
    if (state_.eventFlag || !Exists(row, col)) return;
    state_.changed = true;
    const std::uint64_t structure = grid_.StructureVersion();
    const Text oldText = grid_.TextMatrix(row, col);
    const Text newText = TextFor(RulesOf(grid_, state_, col), col, given, oldText, state_, sources_);
    if (!Exists(row, col)) return;
    grid_.SetTextMatrix(row, col, newText);
    state_.eventFlag = false;
    events_.AfterCellChange(row, col, oldText, newText, state_.eventFlag);
    if (!Exists(row, col)) return;
    if (state_.eventFlag)
        grid_.SetTextMatrix(row, col, oldText);
    else
        history_.CellChanged(structure, row, col, oldText, grid_.Cell(row, col));
    if (changed_ && newText != given) changed_(row, col, given);
}

template <ChangeEvents Events>
void CellWriter<Events>::PutCells(int row, int col, const flexgrid::RowView& cells, int count) {
    grid_.ForEachRow(row, row, [&](int, const flexgrid::RowView& before) {
        history_.CellsChanged(grid_.StructureVersion(), row, col, before, cells, count);
    });
    grid_.SetCells(row, col, cells, count);
}

template <ChangeEvents Events>
bool CellWriter<Events>::WriteRow(int row, int left, std::span<const TextView> given,
                                  const std::vector<ColumnRules>& rules) {
    given = given.first(std::min(given.size(), static_cast<std::size_t>(grid_.Cols() - left)));
    cleaned_.resize(std::max(cleaned_.size(), given.size()));
    int first = left;
    bool reached = false;
    texts_.clear();
    const auto writeRun = [&] {
        if (texts_.empty()) return;
        PutCells(row, first, flexgrid::RowView(builder_.FromTexts(texts_)), static_cast<int>(texts_.size()));
        reached = true;
        texts_.clear();
    };
    for (std::size_t i = 0; i < given.size(); ++i) {
        const int col = left + static_cast<int>(i);
        const ColumnRules& rule = rules[static_cast<std::size_t>(col)];
        if (rule.refuses || KeepsCell(given[i])) {
            writeRun();
            continue;
        }
        TextView text = given[i];
        if (!rule.CleansNothing()) {
            cleaned_[i] = TextFor(rule, col, text, grid_.TextMatrix(row, col), state_, sources_);
            text = cleaned_[i];
        }
        if (texts_.empty()) first = col;
        texts_.push_back(text);
    }
    writeRun();
    return reached;
}

// Notifies the host of what undoing or redoing has done: of a change of rows as a whole, else of cell after cell. The
// host cannot cancel it.
template <ChangeEvents Events>
void NotifyOfStep(const flexgrid::Grid& grid, ControlState& state, EditHistory& history, const EditStep& step,
                  bool backwards, Events& events) {
    if (!events.Listens()) return;
    const EditHistory::Pause pause(history);
    if (step.RowsChanged()) {
        state.eventFlag = false;
        events.AfterCellChange(-1, -1, {}, {}, state.eventFlag);
        return;
    }
    step.ForEachCell(backwards, [&](int row, int col, TextView before, TextView after) {
        if (row >= grid.Rows() || col >= grid.Cols()) return;
        state.eventFlag = false;
        events.AfterCellChange(row, col, Text(before), Text(after), state.eventFlag);
    });
}

}  // namespace qvx::grid
