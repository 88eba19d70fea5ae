#pragma once
// What the benchmarks share: a clock, and the peak memory of a piece of work
// measured in a child process started afresh, so that one measurement does not
// inherit the heap of another.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double seconds(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

// The best of `runs` timings of fn().
template <class Fn>
double bestOf(int runs, Fn&& fn) {
    double best = 1e30;
    for (int r = 0; r < runs; ++r) {
        const auto t0 = Clock::now();
        fn();
        best = std::min(best, seconds(t0, Clock::now()));
    }
    return best;
}

// A field of /proc/self/status in kB, -1 when missing.
inline long statusKb(const char* key) {
    std::ifstream f("/proc/self/status");
    std::string line;
    const std::size_t len = std::strlen(key);
    while (std::getline(f, line))
        if (line.compare(0, len, key) == 0) return std::atol(line.c_str() + len + 1);
    return -1;
}

// The resident size to measure a peak from: the peak is reset through
// /proc/self/clear_refs where the kernel allows it, else the larger of the two.
inline long memoryBase() {
    bool reset = false;
    {
        std::ofstream clear("/proc/self/clear_refs");
        if (clear) reset = static_cast<bool>(clear << "5");
    }
    return reset ? statusKb("VmRSS:") : std::max(statusKb("VmRSS:"), statusKb("VmHWM:"));
}

// Bytes the peak grew by since `base` (from memoryBase).
inline long peakGrowthBytes(long base) { return (statusKb("VmHWM:") - base) * 1024; }

// Runs this program again as `PROGRAM --memory-child HOW` and reads the number it
// prints; on failure sets `error` and returns 0. The program's main hands
// --memory-child to its own child routine.
inline double childBytes(const char* program, const char* how, std::string& error) {
    int fds[2];
    if (pipe(fds) != 0) {
        error = "pipe failed";
        return 0;
    }
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], 1);
        close(fds[0]);
        execl("/proc/self/exe", program, "--memory-child", how, nullptr);
        _exit(127);
    }
    close(fds[1]);
    std::string out;
    char buf[256];
    ssize_t got;
    while ((got = read(fds[0], buf, sizeof buf)) > 0) out.append(buf, std::size_t(got));
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || out.empty()) {
        error = std::string("memory child failed: ") + how;
        return 0;
    }
    return std::atof(out.c_str());
}

}  // namespace bench
