// Clocks, medians and the lines that bench/report.py turns into tables.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#ifdef _WIN32
#include "bench/support/processor_clock.h"
#else
#include <malloc.h>
#endif

namespace qvx::bench {

// Measures elapsed time, for work in which other processes take part (a display server).
class Stopwatch {
  public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Measures work done by this thread alone: its processor time, so that a busy machine disturbs less. In a Windows
// process, where a peer may have the system do its work, that is so only on request.
class WorkStopwatch {
  public:
    double Seconds() const { return Now() - start_; }

#ifdef _WIN32
    inline static bool countsProcessorTime = false;
#endif

  private:
    static double Now() {
#ifdef _WIN32
        if (countsProcessorTime) return ProcessorStopwatch::Now();
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
#endif
    }

    double start_ = Now();
};

// Returns the bytes that the C library's allocator has handed out; 0 under Windows, where nothing counts them as
// precisely.
inline std::size_t BytesInUse() {
#ifdef _WIN32
    return 0;
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

// Returns free memory to the system, so that whoever loads next has to ask for all of it, whatever ran before.
inline void ForgetFreeMemory() {
#ifndef _WIN32
    malloc_trim(0);
#endif
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Stops the whole run: a peer that did different work must not be compared with the others.
inline void CheckSameWork(bool same, const char* peer, const char* work) {
    if (same) return;
    std::fprintf(stderr, "%s did not do the work '%s' as it is meant\n", peer, work);
    std::exit(1);
}

// Prints one line of results, with tabs between columns; see bench/report.py. The last column has every sample, in the
// order in which they were taken, so that two runs can be compared by more than their medians.
inline void Report(const char* work, std::size_t rows, const std::string& peer, const std::vector<double>& samples) {
    std::printf("%s\t%zu\t%s\t%.9g\t%zu\t", work, rows, peer.c_str(), Median(samples), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) std::printf(i == 0 ? "%.9g" : ",%.9g", samples[i]);
    std::puts("");
    std::fflush(stdout);
}

// Reports work that would have taken too long at this size; `estimate` is in seconds.
inline void ReportCut(const char* work, std::size_t rows, const std::string& peer, double estimate) {
    std::printf("%s\t%zu\t%s\tcut\t%.9g\n", work, rows, peer.c_str(), estimate);
    std::fflush(stdout);
}

}  // namespace qvx::bench
