// The operations on rows as records, the same for every peer: a table without equal rows is searched for duplicates,
// two columns are multiplied, valid cells are checked, and rows without text are removed from among the others.
//
// A peer is one of data_works.h that also has
//   void SetCell(std::size_t row, int col, const std::string& text);   before the clock runs
//   bool HasDuplicate();     of two rows whose cells, joined and regardless of case, give the same text
//   void RemoveEmptyRows();  those in which all cells are empty or blank
//   double Product(bool write);   of columns 3 and 4, added up; written as text into column 9 of each row when asked
//   std::size_t FirstInvalidRow();   from row 1 on (row 0 contains captions) the first with an empty or blank cell,
//                                    or one not above 0 in columns 3 and 4; Rows() when there is none
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/measure.h"
#include "bench/support/workload.h"

namespace qvx::bench {

constexpr int factorColumn = 4;
constexpr int productColumn = 9;

inline std::string Caption(int col) { return "Column" + std::to_string(col); }

// Row 0 contains captions, and no cell below it is blank, or 0 where a number above 0 is required.
template <class Peer>
void MakeValid(Peer& peer) {
    const std::size_t rows = peer.Rows();
    std::vector<std::vector<std::string>> texts;
    for (std::size_t text = 0; text < distinctRows; ++text) texts.push_back(Expected::Cells(text));
    for (std::size_t row = 1; row < rows; ++row) {
        const std::vector<std::string>& cells = texts[row % distinctRows];
        for (int col = 1; col < columnCount; ++col) {
            const std::string& cell = cells[static_cast<std::size_t>(col)];
            if (cell.find_first_not_of(' ') == std::string::npos) peer.SetCell(row, col, "Open");
            if (col == factorColumn && cell == "0") peer.SetCell(row, col, "1");
            if (col == productColumn) peer.SetCell(row, col, cell);
        }
    }
    for (int col = 0; col < columnCount; ++col) peer.SetCell(0, col, Caption(col));
}

// A fault of either kind in the very last row is found.
template <class Peer>
bool FindsFaults(Peer& peer) {
    const std::size_t last = peer.Rows() - 1;
    peer.SetCell(last, factorColumn, "0");
    const bool number = peer.FirstInvalidRow() == last;
    peer.SetCell(last, factorColumn, "1");
    peer.SetCell(last, productColumn, "  ");
    const bool blank = peer.FirstInvalidRow() == last;
    peer.SetCell(last, productColumn, "1");
    return number && blank && peer.FirstInvalidRow() == peer.Rows();
}

template <class Peer>
void RunRecordWorks(const Options& options) {
    std::vector<double> last(5, 0);
    std::vector<double> products;
    for (std::size_t text = 0; text < distinctRows; ++text) {
        const std::vector<std::string> cells = Expected::Cells(text);
        products.push_back(std::stod(cells[sumColumn]) * std::stod(cells[factorColumn]));
    }
    const char* const works[] = {"duplicates", "product", "remove_empty", "product_set", "validate"};
    for (std::size_t rows = std::max<std::size_t>(options.minRows, 10'000); rows <= options.maxRows; rows *= 10) {
        std::vector<double> times[5];
        // Estimates from the time at a tenth of the rows; removal may be quadratic.
        const auto affordable = [&](int work) { return last[work] * (work == 2 ? 100 : 10) <= options.limit; };
        double expected = 0;
        for (std::size_t row = 0; row < rows; ++row) expected += products[row % distinctRows];
        const std::size_t runs = rows > 100'000 ? 3 : 5;
        for (std::size_t run = 0; run < runs; ++run) {
            const auto peer = std::make_unique<Peer>();
            peer->Load(rows);
            for (std::size_t row = 0; row < rows; ++row) peer->SetCell(row, 0, "No." + std::to_string(row));
            const auto measure = [&](int work, auto step) {
                if (!affordable(work)) return;
                const WorkStopwatch watch;
                step();
                times[work].push_back(watch.Seconds());
            };
            const auto check = [&](bool same, int work) { CheckSameWork(same, Peer::Name(), works[work]); };
            measure(0, [&] { check(!peer->HasDuplicate(), 0); });
            double product = 0;
            measure(1, [&] { product = peer->Product(false); });
            if (affordable(1)) check(std::fabs(product - expected) <= 1e-9 * expected, 1);
            measure(3, [&] { product = peer->Product(true); });
            if (affordable(3)) check(std::fabs(product - expected) <= 1e-9 * expected, 3);
            if (affordable(4)) {
                MakeValid(*peer);
                std::size_t found = 0;
                measure(4, [&] { found = peer->FirstInvalidRow(); });
                check(found == rows && FindsFaults(*peer), 4);
            }
            if (!affordable(2)) continue;
            for (std::size_t row = 1; row < rows; row += 2)
                for (int col = 0; col < columnCount; ++col) peer->SetCell(row, col, col == 5 ? " " : "");
            measure(2, [&] { peer->RemoveEmptyRows(); });
            check(peer->Rows() == (rows + 1) / 2 && peer->Cell(1, 0) == "No.2", 2);
        }
        for (int work = 0; work < 5; ++work) {
            if (times[work].empty()) {
                ReportCut(works[work], rows, Peer::Name(), last[work] * (work == 2 ? 100 : 10));
            } else {
                last[work] = Median(times[work]);
                Report(works[work], rows, Peer::Name(), times[work]);
            }
        }
    }
}

}  // namespace qvx::bench
