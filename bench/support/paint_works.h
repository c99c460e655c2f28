// The works on a table on the screen: 800 by 600 pixels with headers on both sides and two selected columns, full of
// cells of 80 by 20 pixels.
//
// A screen is a class whose constructor takes the number of rows, loads them, shows the table and returns once it has
// been painted, and whose DrawFrame(topRow) scrolls there and paints all of the window anew before it returns.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "bench/support/measure.h"

namespace qvx::bench {

constexpr int paintWidth = 800;
constexpr int paintHeight = 600;
constexpr int paintColumnWidth = 80;
constexpr int paintRowHeight = 20;
constexpr int paintHeaderWidth = 60;
constexpr std::size_t paintRows = 100'000;

template <class Screen>
void RunPaintWorks() {
    std::vector<double> first;
    std::vector<double> frames;
    for (int run = 0; run < 5; ++run) {
        const Stopwatch loading;
        const auto screen = std::make_unique<Screen>(paintRows);
        first.push_back(loading.Seconds());
        constexpr std::size_t count = 100;
        for (std::size_t i = 0; i < 10; ++i) screen->DrawFrame(i);
        const Stopwatch painting;
        for (std::size_t i = 0; i < count; ++i) screen->DrawFrame(1000 * static_cast<std::size_t>(run) + i);
        frames.push_back(static_cast<double>(count) / painting.Seconds());
    }
    Report("first_frame", paintRows, Screen::Name(), Median(first), first.size());
    Report("frames", paintRows, Screen::Name(), Median(frames), frames.size());
}

}  // namespace qvx::bench
