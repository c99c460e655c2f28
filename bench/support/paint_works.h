// The operations on a table on the screen: 800 by 600 pixels with headers on both sides and two selected columns, full
// of cells of 80 by 20 pixels.
//
// A screen is a class whose constructor takes the number of rows, loads them, shows the table and returns once it has
// been painted. Its DrawFrame(topRow, everything) scrolls there and repaints the whole window, or as much as the table
// considers necessary, before it returns.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "bench/support/measure.h"

namespace qvx::bench {

constexpr int paintWidth = 800;
constexpr int paintHeight = 600;
constexpr int paintColumnWidth = 80;
constexpr int paintRowHeight = 20;
constexpr int paintHeaderWidth = 60;
constexpr std::size_t paintRows = 100'000;

template <class Watch = Stopwatch, class Screen>
double FramesPerSecond(Screen& screen, std::size_t firstRow, bool everything, std::size_t count = 100) {
    for (std::size_t i = 0; i < 5; ++i) screen.DrawFrame(firstRow + i, everything);
    const Watch watch;
    for (std::size_t i = 5; i < 5 + count; ++i) screen.DrawFrame(firstRow + i, everything);
    return static_cast<double>(count) / watch.Seconds();
}

// What one screen took.
template <class Screen>
class PaintWorks {
  public:
    // Does everything once, unless that was too slow to be worth another time.
    void Repeat(std::size_t run) {
        if (slow_) return;
        const Stopwatch loading;
        const auto screen = std::make_unique<Screen>(paintRows);
        first_.push_back(loading.Seconds());
        frames_.push_back(FramesPerSecond(*screen, 1000 * run, true));
        scroll_.push_back(FramesPerSecond(*screen, 1000 * run + 500, false));
        slow_ = loading.Seconds() > 20;
    }
    void ReportAll(const std::string& suffix) const {
        Report(("first_frame" + suffix).c_str(), paintRows, Screen::Name(), first_);
        Report(("frames" + suffix).c_str(), paintRows, Screen::Name(), frames_);
        Report(("scroll" + suffix).c_str(), paintRows, Screen::Name(), scroll_);
    }

  private:
    std::vector<double> first_;
    std::vector<double> frames_;
    std::vector<double> scroll_;
    bool slow_ = false;
};

// Several screens take turns. The works are called first_frame, frames and scroll, with `suffix`.
template <class... Screens>
void RunPaintWorks(const std::string& suffix = "") {
    std::tuple<PaintWorks<Screens>...> all;
    std::apply(
        [&](auto&... works) {
            for (std::size_t run = 0; run < 5; ++run) (works.Repeat(run), ...);
            (works.ReportAll(suffix), ...);
        },
        all);
}

}  // namespace qvx::bench
