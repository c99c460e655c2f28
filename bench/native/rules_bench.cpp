// The library's rules, and the baseline: bare arrays of strings without any table around them.
#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/floor_peer.h"
#include "bench/support/paste_works.h"
#include "bench/support/record_works.h"
#include "bench/support/rules_peer.h"
#include "bench/support/sum_works.h"
#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "common/text_compare.h"

namespace qvx::bench {
namespace {

class ArraysPeer {
  public:
    static const char* Name() { return "Bare arrays"; }

    void Load(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) rows_.push_back(Split(Texts()[i % distinctRows]));
    }
    void LoadMixed(std::size_t rows) {
        static const std::vector<Text> texts = RowTexts<Text>(MixedRowText);
        for (std::size_t i = 0; i < rows; ++i) rows_.push_back(Split(texts[i % distinctRows]));
    }
    double Sum() {
        double sum = 0;
        for (const Row& row : rows_) sum += NumericValue(row[sumColumn]);
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        for (const Row& row : rows_)
            for (const Text& cell : row) blank += cell.find_first_not_of(u' ') == Text::npos ? 1 : 0;
        return blank;
    }
    void InsertAtTop(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(i), Split(Texts()[i % distinctRows]));
    }
    void InsertBlockAtTop(std::size_t count) {
        std::vector<Row> block;
        for (std::size_t i = 0; i < count; ++i) block.push_back(Split(Texts()[i % distinctRows]));
        rows_.insert(rows_.begin(), std::make_move_iterator(block.begin()), std::make_move_iterator(block.end()));
    }
    void RemoveEverySecond() {
        std::size_t kept = 0;
        for (std::size_t row = 0; row < rows_.size(); row += 2, ++kept)
            if (kept != row) rows_[kept] = std::move(rows_[row]);
        rows_.resize(kept);
    }
    void SetCell(std::size_t row, int col, const std::string& text) {
        rows_[row][static_cast<std::size_t>(col)].assign(text.begin(), text.end());
    }
    bool HasDuplicate() {
        std::unordered_set<Text> keys;
        keys.reserve(rows_.size());
        Text key;
        for (const Row& row : rows_) {
            key.clear();
            for (const Text& cell : row) key += cell;
            if (!keys.insert(FoldedText(key)).second) return true;
        }
        return false;
    }
    void RemoveEmptyRows() {
        std::erase_if(rows_, [](const Row& row) {
            return std::all_of(row.begin(), row.end(),
                               [](const Text& cell) { return cell.find_first_not_of(u' ') == Text::npos; });
        });
    }
    double Product(bool write) {
        double total = 0;
        for (Row& row : rows_) {
            const double product = NumericValue(row[sumColumn]) * NumericValue(row[factorColumn]);
            if (write) row[productColumn] = DoubleToText(product);
            total += product;
        }
        return total;
    }
    std::size_t FirstInvalidRow() {
        for (std::size_t row = 1; row < rows_.size(); ++row) {
            for (std::size_t col = 0; col < columnCount; ++col) {
                const Text& cell = rows_[row][col];
                if (cell.find_first_not_of(u' ') == Text::npos) return row;
                if ((col == sumColumn || col == factorColumn) && !(NumericValue(cell) > 0)) return row;
            }
        }
        return rows_.size();
    }
    std::size_t Rows() { return rows_.size(); }
    std::string Cell(std::size_t row, std::size_t col) {
        return std::string(rows_[row][col].begin(), rows_[row][col].end());
    }

  private:
    using Row = std::array<Text, columnCount>;

    static const std::vector<Text>& Texts() {
        static const std::vector<Text> texts = RowTexts<Text>();
        return texts;
    }
    static Row Split(TextView text) {
        Row row;
        for (Text& cell : row) {
            const std::size_t tab = std::min(text.find(u'\t'), text.size());
            cell = text.substr(0, tab);
            text.remove_prefix(std::min(tab + 1, text.size()));
        }
        return row;
    }

    std::vector<Row> rows_;
};

}  // namespace
}  // namespace qvx::bench

int main(int argc, char** argv) {
    using namespace qvx::bench;
    const Options options(argc, argv);
    if (options.quick) {
        RunDataWorks<RulesPeer>(options);
    } else {
        RunDataWorks<RulesPeer, FloorPeer>(options);
    }
    if (options.growth) return 0;
    if (options.quick) {
        RunSumWorks<RulesPeer>(options);
    } else {
        RunSumWorks<RulesPeer, FloorPeer, ArraysPeer>(options);
    }
    RunRecordWorks<RulesPeer>(options);
    RunPasteWorks(options);
    if (options.quick) return 0;
    RunDataWorks<RulesOneByOnePeer>(options);
    RunDataWorks<ArraysPeer>(options);
    RunRecordWorks<ArraysPeer>(options);
}
