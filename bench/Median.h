// Times of single steps, of which the median counts: one step in a while waits for the rest of the machine.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace kv::bench {

class Stopwatch {
  public:
    [[nodiscard]] double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
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
