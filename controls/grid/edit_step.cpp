#include "controls/grid/edit_step.h"

#include <algorithm>
#include <cstring>

#include "common/latin1.h"

namespace qvx::grid {

KeptRows KeepRows(const flexgrid::Grid& grid, int at, int count) {
    KeptRows kept;
    if (at < 0 || at >= grid.Rows()) return kept;
    const int last = std::min(at + count, grid.Rows()) - 1;
    kept.rows.reserve(static_cast<std::size_t>(last) - static_cast<std::size_t>(at) + 1);
    grid.ForEachRow(at, last, [&](int row, const flexgrid::RowView& cells) {
        for (int col = 0; col < cells.Count(); ++col) {
            cells[col].AppendTo(kept.texts);
            kept.sizes.push_back(static_cast<std::uint32_t>(cells[col].Size()));
        }
        kept.rows.push_back({static_cast<std::size_t>(cells.Count()), grid.SettingsOf(row)});
    });
    return kept;
}

// ---- Packing -------------------------------------------------------------------------------------------------------

// A text is stored as twice its size, plus one if it takes two bytes a character, with seven bits in each byte, the
// lowest first; the eighth bit is set when more bytes follow. The characters come after it.

class EditStep::Writer {
  public:
    // Reserves room for `texts` texts of `characters` characters in all.
    Writer(std::vector<std::uint8_t>& bytes, std::size_t texts, std::size_t characters)
        : bytes_(bytes), old_(bytes.size()) {
        constexpr std::size_t sizeBytes = 5;
        bytes_.resize(old_ + texts * sizeBytes + characters * sizeof(char16_t));
        at_ = bytes_.data() + old_;
    }
    ~Writer() { bytes_.resize(static_cast<std::size_t>(at_ - bytes_.data())); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    std::size_t Position() const { return static_cast<std::size_t>(at_ - bytes_.data()); }
    void Add(flexgrid::CellView cell) {
        if (!cell.IsLatin1()) {
            Add(cell.Wide());
            return;
        }
        PutSize(cell.Size(), false);
        at_ = std::copy(cell.Latin1().begin(), cell.Latin1().end(), at_);
    }
    void Add(TextView text) {
        std::uint8_t* const begin = at_;
        PutSize(text.size(), false);
        if (NarrowTo(text.data(), text.size(), at_)) {
            at_ += text.size();
            return;
        }
        at_ = begin;
        PutSize(text.size(), true);
        std::memcpy(at_, text.data(), text.size() * sizeof(char16_t));
        at_ += text.size() * sizeof(char16_t);
    }

  private:
    void PutSize(std::size_t size, bool wide) {
        std::uint64_t left = std::uint64_t{size} * 2 + (wide ? 1 : 0);
        for (; left >= 0x80; left >>= 7) *at_++ = static_cast<std::uint8_t>(left | 0x80);
        *at_++ = static_cast<std::uint8_t>(left);
    }

    std::vector<std::uint8_t>& bytes_;
    std::size_t old_;
    std::uint8_t* at_ = nullptr;
};

std::size_t EditStep::Reader::TakeSize(bool& wide) {
    std::uint64_t value = 0;
    unsigned shift = 0;
    for (; (*at_ & 0x80) != 0; ++at_, shift += 7) value |= std::uint64_t{*at_ & 0x7FU} << shift;
    value |= std::uint64_t{*at_++} << shift;
    wide = (value & 1) != 0;
    return static_cast<std::size_t>(value / 2);
}

void EditStep::Reader::AppendNext(Text& text) {
    bool wide = false;
    const std::size_t size = TakeSize(wide);
    const std::size_t old = text.size();
    text.resize(old + size);
    if (wide) {
        std::memcpy(text.data() + old, at_, size * sizeof(char16_t));
    } else {
        WidenTo(at_, size, text.data() + old);
    }
    at_ += wide ? size * sizeof(char16_t) : size;
}

void EditStep::Reader::Skip() {
    bool wide = false;
    const std::size_t size = TakeSize(wide);
    at_ += wide ? size * sizeof(char16_t) : size;
}

void EditStep::AddCellTexts(Writer& writer, int row, int col, flexgrid::CellView before, TextView after) {
    Change* last = changes_.empty() ? nullptr : &changes_.back();
    if (last && last->kind == Kind::cells && last->row == row && last->col + last->count == col) {
        ++last->count;
    } else {
        changes_.push_back({Kind::cells, row, col, 1, writer.Position()});
    }
    writer.Add(before);
    writer.Add(after);
}

void EditStep::AddCell(int row, int col, flexgrid::CellView before, TextView after) {
    Writer writer(bytes_, 2, before.Size() + after.size());
    AddCellTexts(writer, row, col, before, after);
}

void EditStep::AddCells(int row, int col, const flexgrid::RowView& before, std::span<const TextView> after) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < after.size(); ++i)
        characters += before[col + static_cast<int>(i)].Size() + after[i].size();
    Writer writer(bytes_, 2 * after.size(), characters);
    for (const TextView text : after) {
        const flexgrid::CellView cell = before[col];
        if (!(cell == text)) AddCellTexts(writer, row, col, cell, text);
        ++col;
    }
}

void EditStep::ReserveChange() {
    const auto reserve = [](auto& list) { list.reserve(list.size() == list.capacity() ? 2 * list.size() + 1 : 0); };
    reserve(changes_);
    reserve(kept_);
    reserve(orders_);
}

void EditStep::AddRowsInserted(int at, int count) {
    changes_.push_back({Kind::rowsInserted, at, 0, count, 0});
    rowsChanged_ = true;
}

void EditStep::AddRowsRemoved(int at, KeptRows rows) {
    const auto count = static_cast<int>(rows.rows.size());
    kept_.push_back(std::move(rows));
    changes_.push_back({Kind::rowsRemoved, at, 0, count, 0});
    rowsChanged_ = true;
}

void EditStep::AddRowsOrdered(int first, std::vector<std::uint32_t> rows, std::vector<flexgrid::SortMark> marks) {
    const auto count = static_cast<int>(rows.size());
    orders_.push_back({std::move(rows), std::move(marks)});
    changes_.push_back({Kind::rowsOrdered, first, 0, count, 0});
    rowsChanged_ = true;
}

void EditStep::AddColumnMoved(int from, int to) { changes_.push_back({Kind::columnMoved, 0, from, to, 0}); }

std::optional<EditStep::ColumnMove> EditStep::MovedColumn() const {
    if (changes_.size() != 1 || changes_.front().kind != Kind::columnMoved) return std::nullopt;
    return ColumnMove{changes_.front().col, changes_.front().count};
}

std::size_t EditStep::Characters() const {
    std::size_t characters = (bytes_.size() + changes_.size() * sizeof(Change)) / sizeof(char16_t);
    for (const KeptRows& rows : kept_) characters += rows.Characters();
    for (const KeptOrder& order : orders_)
        characters += (order.rows.size() * sizeof(std::uint32_t) + order.marks.size() * sizeof(flexgrid::SortMark)) /
                      sizeof(char16_t);
    return characters;
}

EditStep::Place EditStep::FirstPlace() const {
    Place first;
    for (const Change& change : changes_) {
        if (change.kind == Kind::rowsOrdered || change.kind == Kind::columnMoved) continue;
        const int col = change.kind == Kind::cells ? change.col : -1;
        const bool above = first.row < 0 || change.row < first.row;
        const bool before = change.row == first.row && col >= 0 && (first.col < 0 || col < first.col);
        if (above || before) first = {change.row, col};
    }
    return first;
}

// ---- Reverting -----------------------------------------------------------------------------------------------------

void EditStep::RevertCells(flexgrid::Grid& grid, const Change& change, EditStep& made) const {
    // Cells can be missing only after an earlier fault; nothing is ever written outside the grid.
    const int count = std::min(change.count, grid.Cols() - change.col);
    if (change.row >= grid.Rows() || count <= 0) return;
    Text all;
    std::vector<std::size_t> ends;
    ends.reserve(static_cast<std::size_t>(count));
    Reader reader(*this, change);
    for (int cell = 0; cell < count; ++cell) {
        reader.AppendNext(all);
        reader.Skip();
        ends.push_back(all.size());
    }
    std::vector<TextView> texts;
    texts.reserve(ends.size());
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        texts.push_back(TextView(all).substr(begin, end - begin));
        begin = end;
    }
    grid.ForEachRow(change.row, change.row,
                    [&](int row, const flexgrid::RowView& cells) { made.AddCells(row, change.col, cells, texts); });
    grid.SetTexts(change.row, change.col, texts);
}

KeptRows EditStep::TakeRows(flexgrid::Grid& grid, int at, int count) {
    KeptRows kept = KeepRows(grid, at, count);
    if (at + count >= grid.Rows()) {
        // The row count removes them, because the last row cannot be removed otherwise.
        grid.SetRows(std::min(at, grid.Rows()));
    } else {
        grid.RemoveRowsIf([&](int row) { return row >= at && row < at + count; });
    }
    return kept;
}

void EditStep::PutRows(flexgrid::Grid& grid, int at, const KeptRows& rows) {
    grid.AddItems(Text(rows.rows.size(), u'\r'), at);
    TextView texts = rows.texts;
    auto size = rows.sizes.begin();
    std::vector<TextView> cells;
    for (const KeptRows::Row& row : rows.rows) {
        cells.clear();
        for (std::size_t i = 0; i < row.cells; ++i, ++size) {
            cells.push_back(texts.substr(0, *size));
            texts.remove_prefix(*size);
        }
        if (at >= grid.Rows()) return;
        cells.resize(std::min(cells.size(), static_cast<std::size_t>(grid.Cols())));
        grid.SetTexts(at, 0, cells);
        grid.SetSettings(at, row.settings);
        ++at;
    }
}

void EditStep::PutColumn(flexgrid::Grid& grid, const Change& change, EditStep& made) {
    made.ReserveChange();
    grid.SetColPosition(change.count, change.col);
    made.AddColumnMoved(change.count, change.col);
}

void EditStep::PutOrder(flexgrid::Grid& grid, int first, const KeptOrder& order, EditStep& made) {
    // Rows and columns can be missing only after an earlier fault.
    if (first + static_cast<int>(order.rows.size()) > grid.Rows()) return;
    std::vector<std::uint32_t> back(order.rows.size());
    for (std::size_t i = 0; i < back.size(); ++i)
        back[order.rows[i] - static_cast<std::uint32_t>(first)] =
            static_cast<std::uint32_t>(first) + static_cast<std::uint32_t>(i);
    std::vector<flexgrid::SortMark> marks = order.marks;
    std::erase_if(marks, [&](const flexgrid::SortMark& mark) { return mark.col >= grid.Cols(); });
    std::vector<flexgrid::SortMark> before = grid.SortMarks();
    made.ReserveChange();
    grid.OrderRows(first, back, marks);
    made.AddRowsOrdered(first, std::move(back), std::move(before));
}

}  // namespace qvx::grid
