// The processor time of this thread in a Windows process, which other programs disturb less than elapsed time.
#pragma once

#include <windows.h>

#include <cstdint>

namespace qvx::bench {

class ProcessorStopwatch {
  public:
    double Seconds() const { return Now() - start_; }

    static double Now() {
#ifdef __x86_64__
        // Under Wine, the call below counts in steps of 10 ms, and the kernel, which is asked directly, in nanoseconds.
        static const bool onLinux = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
        if (onLinux) {
            constexpr std::int64_t clockGetTime = 228;
            constexpr std::int64_t clockOfThread = 3;
            struct {
                std::int64_t seconds;
                std::int64_t nanoseconds;
            } time{};
            std::int64_t failed = clockGetTime;
            asm volatile("syscall" : "+a"(failed) : "D"(clockOfThread), "S"(&time) : "rcx", "r11", "memory");
            if (failed == 0) return static_cast<double>(time.seconds) + 1e-9 * static_cast<double>(time.nanoseconds);
        }
#endif
        FILETIME created;
        FILETIME ended;
        FILETIME kernel;
        FILETIME user;
        GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
        return Seconds(kernel) + Seconds(user);
    }

  private:
    static double Seconds(const FILETIME& time) {
        return 1e-7 * (4294967296.0 * time.dwHighDateTime + time.dwLowDateTime);
    }

    double start_ = Now();
};

}  // namespace qvx::bench
