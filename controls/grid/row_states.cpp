#include "controls/grid/row_states.h"

#include <algorithm>
#include <utility>

#include "controls/grid/row_operations.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::grid {

using flexgrid::RowId;
using flexgrid::RowView;

namespace {

void SetNumber(std::vector<int>& numbers, RowId row, int number) {
    if (row >= numbers.size()) numbers.resize(row + 1);
    numbers[row] = number;
}

int RecordNumberIn(const std::vector<int>& numbers, RowId row) { return row < numbers.size() ? numbers[row] : 0; }

}  // namespace

// ---- What is kept --------------------------------------------------------------------------------------------------

void RowStates::Start() {
    Forget();
    on_ = true;
    grid_.SetRowWatch(this);
}

void RowStates::Stop() noexcept {
    if (!on_) return;
    on_ = false;
    grid_.SetRowWatch(nullptr);
    Forget();
}

void RowStates::Forget() noexcept {
    DropPlaces();
    rows_ = {};
    leaving_ = 0;
}

// Rows that the history keeps are no longer among the deleted ones.
void RowStates::DropPlaces() noexcept {
    for (const auto& row : rows_.deleted)
        if (row) row->place = 0;
}

void RowStates::Accept() {
    if (!on_) return;
    Rows accepted;
    if (!rows_.added.Empty() || !rows_.originals.Empty() || !rows_.numbers.empty()) {
        KeepNumbers();
        std::vector<RowId> order(static_cast<std::size_t>(rows_.loaded) + 1, flexgrid::noRow);
        std::vector<RowId> added;
        grid_.ForEachRow(grid_.FixedRows(), grid_.Rows() - 1, [&](int row, const RowView& cells) {
            const RowId id = grid_.IdOf(row);
            const int number = RecordNumberIn(rows_.numbers, id);
            const bool changed = IsAdded(id) || rows_.originals.Find(id);
            if (changed && !HasText(cells)) return;
            if (number > 0) {
                order[static_cast<std::size_t>(number)] = id;
            } else {
                added.push_back(id);
            }
        });
        order.insert(order.end(), added.begin(), added.end());
        accepted.numbers.resize(rows_.numbers.size());
        for (const RowId id : order)
            if (id != flexgrid::noRow) SetNumber(accepted.numbers, id, ++accepted.loaded);
        int number = 0;
        bool inOrder = true;
        for (int row = grid_.FixedRows(); row < grid_.Rows() && inOrder; ++row)
            inOrder = RecordNumberIn(accepted.numbers, grid_.IdOf(row)) == ++number;
        if (inOrder) accepted = {};
    }
    DropPlaces();
    rows_ = std::move(accepted);
}

// ---- What is known -------------------------------------------------------------------------------------------------

int RowStates::FirstColumn() const { return std::max(state_.bindFrom, FirstRecordColumn(state_)); }

bool RowStates::HasText(const RowView& cells) const {
    for (int col = FirstColumn(); col < cells.Count(); ++col)
        if (!cells[col].Empty()) return true;
    return false;
}

RowId RowStates::CheckedId(int row) const {
    if (row < grid_.FixedRows()) flexgrid::RefuseRow();
    return grid_.IdOf(row);
}

int RowStates::NextChanged(int row) const {
    if (row < 0 || row >= std::max(grid_.Rows(), 1)) flexgrid::RefuseRow();
    for (int next = std::max(row + 1, grid_.FixedRows()); next < grid_.Rows(); ++next) {
        const RowId id = grid_.IdOf(next);
        if (IsAdded(id) ? !IsEmpty(next) : rows_.originals.Find(id) && Of(next) != RowState::unchanged) return next;
    }
    return 0;
}

RowState RowStates::Of(int row) const {
    const RowId id = CheckedId(row);
    if (IsAdded(id)) return RowState::added;
    const auto* original = rows_.originals.Find(id);
    if (!original) return RowState::unchanged;
    const RowView before = (*original)->Cells();
    RowState state = RowState::unchanged;
    grid_.ForEachRow(row, row, [&](int, const RowView& cells) {
        const int end = std::max(before.Count(), cells.Count());
        for (int col = FirstColumn(); col < end && state == RowState::unchanged; ++col)
            if (!(before[col] == cells[col])) state = HasText(before) ? RowState::changed : RowState::added;
    });
    return state;
}

bool RowStates::IsMarked(int row) const {
    if (row == state_.editRow && edit_ == state_.editNumber && state_.committing != edit_) return editedMarked_;
    const RowState state = Of(row);
    return state == RowState::changed || (state == RowState::added && !IsEmpty(row));
}

bool RowStates::IsEmpty(int row) const {
    bool empty = true;
    grid_.ForEachRow(row, row, [&](int, const RowView& cells) { empty = !HasText(cells); });
    return empty;
}

Text RowStates::OriginalText(int row, int col) const {
    const RowId id = CheckedId(row);
    if (col < 0 || col >= grid_.Cols()) flexgrid::RefuseCol();
    if (IsAdded(id)) return {};
    const auto* original = rows_.originals.Find(id);
    return original && col >= FirstColumn() ? (*original)->Cells()[col].ToText() : grid_.TextMatrix(row, col);
}

int RowStates::RecordNumber(int row) const {
    const RowId id = CheckedId(row);
    if (IsAdded(id)) return 0;
    return rows_.numbers.empty() ? row - grid_.FixedRows() + 1 : RecordNumberIn(rows_.numbers, id);
}

void RowStates::Compact() const noexcept {
    if (rows_.holes == 0) return;
    std::erase(rows_.deleted, nullptr);
    rows_.holes = 0;
    for (std::size_t i = 0; i < rows_.deleted.size(); ++i) rows_.deleted[i]->place = i + 1;
}

int RowStates::DeletedCount() const { return static_cast<int>(rows_.deleted.size() - rows_.holes); }

const RowOriginal& RowStates::Deleted(int index) const {
    if (index < 0 || index >= DeletedCount())
        throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
    Compact();
    return *rows_.deleted[static_cast<std::size_t>(index)];
}

Text RowStates::DeletedText(int index, int col) const {
    const RowOriginal& row = Deleted(index);
    if (col < 0 || col >= grid_.Cols()) flexgrid::RefuseCol();
    return row.Cells()[col].ToText();
}

// ---- Changes of the grid -------------------------------------------------------------------------------------------

const std::shared_ptr<RowOriginal>& RowStates::OriginalOf(RowId row, const RowView& cells) {
    if (const auto* found = rows_.originals.Find(row)) return *found;
    rows_.originals.Set(row, std::make_shared<RowOriginal>(cells));
    return *rows_.originals.Find(row);
}

void RowStates::CellsChange(RowId row, const RowView& cells, int firstCol, int count) {
    if (EditIsOpen(state_) && edit_ != state_.editNumber) {
        const bool there = state_.editRow >= grid_.FixedRows() && state_.editRow < grid_.Rows();
        const bool marked = there && IsMarked(state_.editRow);
        edit_ = state_.editNumber;
        editedMarked_ = marked;
    }
    if (loading_ == 0 && firstCol + count > FirstColumn() && !IsAdded(row)) OriginalOf(row, cells);
}

void RowStates::RowsCome(std::span<const RowId> rows) {
    if (loading_ == 0) {
        for (const RowId row : rows) rows_.added.Set(row, true);
        return;
    }
    if (!rows_.added.Empty()) KeepNumbers();
    if (rows_.numbers.empty()) return;
    for (const RowId row : rows) SetNumber(rows_.numbers, row, ++rows_.loaded);
}

void RowStates::RowLeaves(RowId row, const RowView& cells) {
    if (loading_ > 0 || IsAdded(row)) return;
    OriginalOf(row, cells)->number = RecordNumberIn(rows_.numbers, row);
    auto& deleted = rows_.deleted;
    const std::size_t needed = deleted.size() + ++leaving_;
    if (needed > deleted.capacity()) deleted.reserve(std::max(needed, 2 * deleted.capacity()));
}

void RowStates::RowGone(RowId row) noexcept {
    if (row < rows_.numbers.size()) rows_.numbers[row] = 0;
    if (IsAdded(row)) {
        rows_.added.Erase(row);
        return;
    }
    auto* const original = rows_.originals.Find(row);
    if (!original) return;
    leaving_ -= leaving_ > 0 ? 1 : 0;
    if (HasText((*original)->Cells())) {
        rows_.deleted.push_back(std::move(*original));
        rows_.deleted.back()->place = rows_.deleted.size();
    }
    rows_.originals.Erase(row);
}

void RowStates::KeepNumbers() {
    if (!rows_.numbers.empty()) return;
    std::vector<int> numbers(1);  // not empty, even if no row has a record
    int number = 0;
    for (int row = grid_.FixedRows(); row < grid_.Rows(); ++row) {
        const RowId id = grid_.IdOf(row);
        if (!IsAdded(id)) SetNumber(numbers, id, ++number);
    }
    rows_.numbers.swap(numbers);
    rows_.loaded = number;
}

void RowStates::ColumnMoves(int from, int to) {
    std::vector<std::pair<RowOriginal*, std::vector<std::uint32_t>>> moved;
    const auto move = [&](const std::shared_ptr<RowOriginal>& row) {
        if (row) moved.emplace_back(row.get(), row->WithMovedColumn(from, to));
    };
    std::as_const(rows_.originals).ForEach([&](RowId, const std::shared_ptr<RowOriginal>& row) { move(row); });
    for (const auto& row : rows_.deleted) move(row);
    for (auto& [row, record] : moved) row->record.swap(record);
}

void RowStates::ColumnsCut(int cols) noexcept {
    rows_.originals.ForEach([&](RowId, const std::shared_ptr<RowOriginal>& row) { row->Cut(cols); });
    for (const auto& row : rows_.deleted)
        if (row) row->Cut(cols);
}

// ---- Undoing -------------------------------------------------------------------------------------------------------

flexgrid::RowWatch::Keepsake RowStates::Keep(RowId row, const RowView& cells) {
    if (!IsAdded(row)) return OriginalOf(row, cells);
    auto kept = std::make_shared<RowOriginal>();
    kept->isNew = true;
    return kept;
}

// A row that was accepted as deleted in the meantime is a new one.
void RowStates::PutBack(RowId row, const Keepsake& kept) {
    const auto original = std::static_pointer_cast<RowOriginal>(kept);
    if (original->isNew || !IsAdded(row) || (original->place == 0 && HasText(original->Cells()))) return;
    if (!rows_.numbers.empty()) SetNumber(rows_.numbers, row, original->number);
    rows_.originals.Set(row, original);
    rows_.added.Erase(row);
    if (original->place == 0) return;
    rows_.deleted[original->place - 1] = nullptr;
    original->place = 0;
    ++rows_.holes;
}

void RowStates::Restore(const std::shared_ptr<void>& snapshot) noexcept {
    DropPlaces();
    std::swap(rows_, *static_cast<Rows*>(snapshot.get()));
    leaving_ = 0;
    for (std::size_t i = 0; i < rows_.deleted.size(); ++i)
        if (rows_.deleted[i]) rows_.deleted[i]->place = i + 1;
}

}  // namespace qvx::grid
