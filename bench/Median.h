// Times of single steps, of which the median counts: one step in a while waits for the rest of the machine.
#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace kv::bench {

/// Natively, the processor time of the thread, because other programs may be running. Under Wine, the time that passes,
/// because part of the work is done by the server of Wine.
class Stopwatch {
  public:
    [[nodiscard]] double seconds() const { return now() - start_; }

  private:
    [[nodiscard]] static double now() {
#ifdef _WIN32
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#endif
    }
    double start_ = now();
};

class Times {
  public:
    template <class F>
    double measure(F&& step) {
        const Stopwatch watch;
        step();
        seconds_.push_back(watch.seconds());
        return seconds_.back();
    }
    /// The shortest one: what the step takes while the machine does nothing else.
    [[nodiscard]] double least() const {
        return seconds_.empty() ? 0.0 : *std::min_element(seconds_.begin(), seconds_.end());
    }
    [[nodiscard]] double median() {
        if (seconds_.empty())
            return 0.0;
        const auto middle = seconds_.begin() + static_cast<std::ptrdiff_t>(seconds_.size() / 2);
        std::nth_element(seconds_.begin(), middle, seconds_.end());
        return *middle;
    }

  private:
    std::vector<double> seconds_;
};

}  // namespace kv::bench
