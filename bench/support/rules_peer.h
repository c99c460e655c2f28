// The flexible grid's own rules as a peer.
#pragma once

#include <string>
#include <vector>

#include "bench/support/measure.h"
#include "bench/support/record_works.h"
#include "bench/support/workload.h"
#include "common/numeric_reading.h"
#include "common/text.h"
#include "controls/grid/aggregates.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/duplicate_rows.h"
#include "controls/grid/row_operations.h"
#include "controls/grid/validation.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::bench {

class RulesPeer {
  public:
    RulesPeer() {
        grid_.SetFixedRows(0);
        grid_.SetFixedCols(0);
        grid_.SetRows(0);
        grid_.SetCols(columnCount);
        (void)Block();
    }

    static const char* Name() { return "Qvx rules"; }

    void Load(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) grid_.AddItem(Texts()[i % distinctRows]);
    }
    void LoadMixed(std::size_t rows) {
        static const std::vector<Text> texts = RowTexts<Text>(MixedRowText);
        for (std::size_t i = 0; i < rows; ++i) grid_.AddItem(texts[i % distinctRows]);
    }

    double Sum() {
        double sum = 0;
        grid_.ForEachCellInColumn(sumColumn, 0, grid_.Rows() - 1, [&](int, flexgrid::CellView cell) {
            sum += cell.IsLatin1() ? NumericValue(cell.Latin1()) : NumericValue(cell.Wide());
        });
        return sum;
    }

    std::size_t CountBlank() {
        std::size_t blank = 0;
        grid_.ForEachRow(0, grid_.Rows() - 1, [&](int, const flexgrid::RowView& cells) {
            flexgrid::WithCells(cells, [&](const auto& row) {
                for (int col = 0; col < columnCount; ++col) blank += grid::IsBlank(row[col]) ? 1 : 0;
            });
        });
        return blank;
    }

    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) grid_.AddItem(Texts()[i % distinctRows], static_cast<int>(i));
    }

    void InsertBlockAtTop(std::size_t count) {
        CheckSameWork(count == insertedRows, Name(), "insert_block");
        grid_.AddItems(Block(), 0);
    }

    void RemoveEverySecond() {
        grid_.RemoveRowsIf([](int row) { return row % 2 != 0; });
    }

    void SetCell(std::size_t row, int col, const std::string& text) {
        grid_.SetTextMatrix(static_cast<int>(row), col, Text(text.begin(), text.end()));
    }
    bool HasDuplicate() { return grid::FirstDuplicate(grid_, 0).has_value(); }
    void RemoveEmptyRows() { grid::RemoveEmptyRows(grid_, grid::ControlState(), false); }
    double Product(bool write) {
        return grid::SumOfProducts(grid_, write ? productColumn : -1, std::vector{sumColumn, factorColumn});
    }
    std::size_t FirstInvalidRow() {
        static const grid::ControlState state = ValidatedState();
        const auto invalid = grid::FindInvalidCell(grid_, state);
        return invalid ? static_cast<std::size_t>(invalid->row) : Rows();
    }

    std::size_t Rows() { return static_cast<std::size_t>(grid_.Rows()); }

    std::string Cell(std::size_t row, std::size_t col) {
        const Text text = grid_.TextMatrix(static_cast<int>(row), static_cast<int>(col));
        return std::string(text.begin(), text.end());
    }

  protected:
    static const std::vector<Text>& Texts() {
        static const std::vector<Text> texts = RowTexts<Text>();
        return texts;
    }

    // The rows of a block as the one text that the library takes. Like the texts of single rows, it is ready before the
    // clock starts.
    static const Text& Block() {
        static const Text block = [] {
            Text rows;
            for (std::size_t i = 0; i < insertedRows; ++i) rows.append(Texts()[i % distinctRows]).append(u"\r");
            return rows;
        }();
        return block;
    }

    // Every column is required; the factors must be above 0.
    static grid::ControlState ValidatedState() {
        const auto wide = [](const std::string& text) { return Text(text.begin(), text.end()); };
        grid::ControlState state;
        state.requiredFields = u";";
        for (int col = 0; col < columnCount; ++col) state.requiredFields += wide(Caption(col)) + u";";
        const Text code = u"-" + wide(std::to_string(grid::sign_rule::positive)) + u";";
        state.checkValueFor = u";" + wide(Caption(sumColumn)) + code + wide(Caption(factorColumn)) + code;
        return state;
    }

    flexgrid::Grid grid_;
};

// Removes the same rows with one call each, as a host's loop would.
class RulesOneByOnePeer : public RulesPeer {
  public:
    static const char* Name() { return "Qvx rules, a call a row"; }
    void RemoveEverySecond() {
        for (int row = (grid_.Rows() - 1) | 1; row > 0; row -= 2)
            if (row < grid_.Rows()) grid_.RemoveItem(row);
    }
};

}  // namespace qvx::bench
