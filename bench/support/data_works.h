// The operations on a table's data, the same for every peer.
//
// A peer is a class with
//   static const char* Name();
//   void Load(std::size_t rows);             row i from text i of the workload, in the way that suits the peer best
//   double Sum();                            of column 3
//   std::size_t CountBlank();                cells that are empty or blank, checking every cell
//   void InsertAtTop(std::size_t count);     one call per row, row i from text i
//   void InsertBlockAtTop(std::size_t count) the same in as few calls as the peer allows
//   void RemoveEverySecond();                rows 1, 3, 5 …, in the way that suits the peer best
//   std::size_t Rows();
//   std::string Cell(row, column);
#pragma once

#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "bench/support/measure.h"
#include "bench/support/workload.h"

namespace qvx::bench {

// The expected results of the work, calculated from the rows' own text.
struct Expected {
    explicit Expected(std::size_t rows) {
        double sumOfTexts[distinctRows];
        std::size_t blankOfTexts[distinctRows];
        for (std::size_t i = 0; i < distinctRows; ++i) {
            const std::vector<std::string> cells = Cells(i);
            sumOfTexts[i] = std::stod(cells[sumColumn]);
            blankOfTexts[i] = 0;
            for (const std::string& cell : cells) blankOfTexts[i] += cell.find_first_not_of(' ') == std::string::npos;
        }
        for (std::size_t row = 0; row < rows; ++row) {
            sum += sumOfTexts[row % distinctRows];
            blank += blankOfTexts[row % distinctRows];
        }
    }

    static std::vector<std::string> Cells(std::size_t text) { return CellsOf(RowText(text)); }
    static std::vector<std::string> CellsOf(const std::string& row) {
        std::vector<std::string> cells(1);
        for (const char c : row) {
            if (c == '\t') {
                cells.emplace_back();
            } else {
                cells.back() += c;
            }
        }
        return cells;
    }

    double sum = 0;
    std::size_t blank = 0;
};

template <class Peer>
class DataWorks {
  public:
    // Work that is likely to take longer than `limit` seconds is skipped.
    explicit DataWorks(double limit) : limit_(limit) {}

    // Returns the repetitions at this size: five; more where one is too short for the clock.
    static std::size_t Repetitions(std::size_t rows) { return std::clamp<std::size_t>(100'000 / rows, 5, 20); }

    void Begin(std::size_t rows) {
        rows_ = rows;
        expected_.emplace(rows);
        load_ = memory_ = sum_ = scan_ = insert_ = block_ = remove_ = Times();
    }
    // Does the works once, those that take long only at first.
    void Repeat(std::size_t run) {
        const std::size_t rows = rows_;
        if (!Affordable("load", 10) || (run > 0 && load_.Long())) return;
        ForgetFreeMemory();
        const std::size_t before = BytesInUse();
        auto peer = std::make_unique<Peer>();
        load_.Add([&] { peer->Load(rows); });
        memory_.values.push_back(static_cast<double>(BytesInUse() - before) / static_cast<double>(rows * columnCount));
        Check(peer->Rows() == rows && Is(*peer, rows - 1, rows - 1), "load");
        if (run < 5) {
            sum_.AddRepeated([&] { Check(std::fabs(peer->Sum() - expected_->sum) <= 1e-9 * expected_->sum, "sum"); });
            scan_.AddRepeated([&] { Check(peer->CountBlank() == expected_->blank, "scan"); });
        }
        std::size_t onTop = 0;
        if (Affordable("insert_top", 10) && !(run > 0 && insert_.Long())) {
            onTop = insertedRows;
            insert_.Add([&] { peer->InsertAtTop(insertedRows); });
            Check(peer->Rows() == rows + insertedRows && Is(*peer, insertedRows, 0), "insert_top");
            Check(Is(*peer, insertedRows - 1, insertedRows - 1), "insert_top");
            block_.Add([&] { peer->InsertBlockAtTop(insertedRows); });
            Check(peer->Rows() == rows + 2 * insertedRows && Is(*peer, 2 * insertedRows, 0), "insert_block");
            Check(Is(*peer, insertedRows - 1, insertedRows - 1), "insert_block");
        }
        if (Affordable("remove_half", 100) && !(run > 0 && remove_.Long())) {
            const std::size_t all = peer->Rows();
            remove_.Add([&] { peer->RemoveEverySecond(); });
            Check(peer->Rows() == (all + 1) / 2, "remove_half");
            Check(Is(*peer, onTop + 1, 2), "remove_half");
        }
    }
    void ReportAll() {
        Report("load", load_);
        if (BytesInUse() != 0) Report("memory", memory_);
        Report("sum", sum_);
        Report("scan", scan_);
        Report("insert_top", insert_);
        Report("insert_block", block_);
        Report("remove_half", remove_);
    }

  private:
    struct Times {
        std::vector<double> values;

        template <class Work>
        void Add(Work work) {
            const WorkStopwatch watch;
            work();
            values.push_back(watch.Seconds());
        }
        // Repeats the work often enough to fill 20 milliseconds.
        template <class Work>
        void AddRepeated(Work work) {
            const WorkStopwatch watch;
            std::size_t times = 0;
            do {
                work();
                ++times;
            } while (watch.Seconds() < 0.02);
            values.push_back(watch.Seconds() / static_cast<double>(times));
        }
        bool Long() const { return !values.empty() && values.back() > 3; }
    };

    static void Check(bool same, const char* work) { CheckSameWork(same, Peer::Name(), work); }

    static bool Is(Peer& peer, std::size_t row, std::size_t text) {
        const std::vector<std::string> cells = Expected::Cells(text % distinctRows);
        for (std::size_t col = 0; col < columnCount; ++col)
            if (peer.Cell(row, col) != cells[col]) return false;
        return true;
    }

    // Estimates from the time at a tenth of the rows, growing by `factor`.
    bool Affordable(const std::string& work, double factor) {
        const auto known = last_.find(work);
        if (known == last_.end() || known->second.first == rows_) return true;
        const double tenths = static_cast<double>(rows_) / static_cast<double>(known->second.first) / 10;
        estimate_[work] = known->second.second * factor * tenths;
        return estimate_[work] <= limit_;
    }

    void Report(const std::string& work, const Times& times) {
        if (times.values.empty()) {
            bench::ReportCut(work.c_str(), rows_, Peer::Name(), estimate_[work]);
            return;
        }
        last_[work] = {rows_, Median(times.values)};
        bench::Report(work.c_str(), rows_, Peer::Name(), times.values);
    }

    double limit_;
    std::size_t rows_ = 0;
    std::optional<Expected> expected_;
    Times load_;
    Times memory_;
    Times sum_;
    Times scan_;
    Times insert_;
    Times block_;
    Times remove_;
    std::map<std::string, std::pair<std::size_t, double>> last_;
    std::map<std::string, double> estimate_;
};

// Options of the benchmark programs:
//
//     --rows=N          the largest table
//     --limit=SECONDS   the longest that a single piece of work may take
//     --quick           nothing but the library's own works, with 100,000 rows
//     --growth          nothing but the works on data of the library and of the floor, with 10 million rows
//     --large-screen    nothing but the frames in a large window
struct Options {
    std::size_t minRows = 1000;
    std::size_t maxRows = 1'000'000;
    double limit = 30;
    bool quick = false;
    bool growth = false;
    bool largeScreen = false;

    Options(int argc, char** argv) {
        for (int i = 1; i < argc; ++i) {
            const std::string argument = argv[i];
            if (argument.rfind("--rows=", 0) == 0) maxRows = std::stoul(argument.substr(7));
            if (argument.rfind("--limit=", 0) == 0) limit = std::stod(argument.substr(8));
            if (argument == "--quick") quick = true;
            if (argument == "--growth") growth = true;
            if (argument == "--large-screen") largeScreen = true;
        }
        if (quick) minRows = maxRows = 100'000;
        if (growth) minRows = maxRows = 10'000'000;
    }
};

// Several peers take turns, so that whatever else the machine does slows all of them.
template <class... Peers>
void RunDataWorks(const Options& options) {
    std::tuple<DataWorks<Peers>...> all(DataWorks<Peers>(options.limit)...);
    for (std::size_t rows = options.minRows; rows <= options.maxRows; rows *= 10) {
        std::apply(
            [&](auto&... works) {
                (works.Begin(rows), ...);
                for (std::size_t run = 0; run < std::get<0>(all).Repetitions(rows); ++run) (works.Repeat(run), ...);
                (works.ReportAll(), ...);
            },
            all);
    }
}

}  // namespace qvx::bench
