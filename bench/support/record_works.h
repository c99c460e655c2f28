// The works on rows as records, the same for every peer: a table of which no two rows are the same is searched for
// duplicates, two columns are multiplied, and rows without text are removed from among the others.
//
// A peer is one of the data works' (data_works.h) that has besides
//   void SetCell(std::size_t row, int col, const std::string& text);   before the clock runs
//   bool HasDuplicate();     of two rows whose cells, one behind the other and whatever their case, make the same text
//   void RemoveEmptyRows();  those whose cells all hold nothing but blanks
//   double Product(bool write);   of columns 3 and 4, added up; written as text into column 9 of each row when asked
#pragma once

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

template <class Peer>
void RunRecordWorks(const Options& options) {
    std::vector<double> last(4, 0);
    std::vector<double> products;
    for (std::size_t text = 0; text < distinctRows; ++text) {
        const std::vector<std::string> cells = Expected::Cells(text);
        products.push_back(std::stod(cells[sumColumn]) * std::stod(cells[factorColumn]));
    }
    const char* const works[] = {"duplicates", "product", "remove_empty", "product_set"};
    for (std::size_t rows = 10'000; rows <= options.maxRows; rows *= 10) {
        std::vector<double> times[4];
        // From the time at a tenth of the rows; removal may be quadratic.
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
            if (!affordable(2)) continue;
            for (std::size_t row = 1; row < rows; row += 2)
                for (int col = 0; col < columnCount; ++col) peer->SetCell(row, col, col == 5 ? " " : "");
            measure(2, [&] { peer->RemoveEmptyRows(); });
            check(peer->Rows() == (rows + 1) / 2 && peer->Cell(1, 0) == "No.2", 2);
        }
        for (int work = 0; work < 4; ++work) {
            if (times[work].empty()) {
                ReportCut(works[work], rows, Peer::Name(), last[work] * (work == 2 ? 100 : 10));
            } else {
                last[work] = Median(times[work]);
                Report(works[work], rows, Peer::Name(), last[work], times[work].size());
            }
        }
    }
}

}  // namespace qvx::bench
