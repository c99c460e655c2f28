// The sum of a column in which a third of the cells are texts that are no number, the same for every peer.
//
// A peer is one of data_works.h with
//   void LoadMixed(std::size_t rows);   row i from mixed text i of the workload
// or, where texts are stored one by one in any case, with SetCell (record_works.h).
#pragma once

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "bench/support/data_works.h"
#include "bench/support/measure.h"
#include "bench/support/workload.h"

namespace qvx::bench {

template <class Peer>
void LoadMixed(Peer& peer, std::size_t rows, const std::vector<std::string>& cells) {
    if constexpr (requires { peer.LoadMixed(rows); }) {
        peer.LoadMixed(rows);
    } else {
        peer.Load(rows);
        for (std::size_t row = 0; row < rows; ++row) peer.SetCell(row, sumColumn, cells[row % distinctRows]);
    }
}

// What one peer took. Work that is likely to take longer than the options allow is skipped; a load that takes more than
// a second is not repeated.
template <class Peer>
class SumWorks {
  public:
    void Repeat(std::size_t rows, double expected, const std::vector<std::string>& cells, double limit) {
        if (loading_ * 10 > limit || (!samples_.empty() && lastLoading_ > 1)) return;
        auto peer = std::make_unique<Peer>();
        const WorkStopwatch loading;
        LoadMixed(*peer, rows, cells);
        lastLoading_ = loading.Seconds();
        // Often enough to fill 20 milliseconds.
        const WorkStopwatch watch;
        std::size_t times = 0;
        do {
            CheckSameWork(std::fabs(peer->Sum() - expected) <= 1e-9 * expected, Peer::Name(), "sum_texts");
            ++times;
        } while (watch.Seconds() < 0.02);
        samples_.push_back(watch.Seconds() / static_cast<double>(times));
    }
    void ReportAll(std::size_t rows) {
        if (samples_.empty()) {
            ReportCut("sum_texts", rows, Peer::Name(), loading_ * 10);
        } else {
            Report("sum_texts", rows, Peer::Name(), samples_);
        }
        samples_.clear();
        loading_ = lastLoading_;
    }

  private:
    std::vector<double> samples_;
    double loading_ = 0;  // at a tenth of the rows
    double lastLoading_ = 0;
};

// Several peers take turns.
template <class... Peers>
void RunSumWorks(const Options& options) {
    std::vector<std::string> cells;
    for (std::size_t text = 0; text < distinctRows; ++text)
        cells.push_back(Expected::CellsOf(MixedRowText(text))[sumColumn]);
    std::tuple<SumWorks<Peers>...> all;
    for (std::size_t rows = options.minRows; rows <= options.maxRows; rows *= 10) {
        double expected = 0;
        for (std::size_t row = 0; row < rows; ++row) {
            const std::string& cell = cells[row % distinctRows];
            if (cell.front() >= '0' && cell.front() <= '9') expected += std::stod(cell);
        }
        std::apply(
            [&](auto&... works) {
                for (int run = 0; run < 5; ++run) (works.Repeat(rows, expected, cells, options.limit), ...);
                (works.ReportAll(rows), ...);
            },
            all);
    }
}

}  // namespace qvx::bench
