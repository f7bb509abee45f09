// How long the last drawing of the display took.
#pragma once

#include <chrono>

namespace kv::control {

class RenderTime {
  public:
    /// Measures a drawing from its construction to its destruction. Of drawings inside each other, the outermost
    /// counts, because it ends last.
    class Measured {
      public:
        explicit Measured(RenderTime& time) noexcept : time_(time), start_(Clock::now()) {}
        ~Measured() { time_.last_ = Clock::now() - start_; }
        Measured(const Measured&) = delete;
        Measured& operator=(const Measured&) = delete;

      private:
        RenderTime& time_;
        std::chrono::steady_clock::time_point start_;
    };

    /// Milliseconds; 0 before the first drawing.
    [[nodiscard]] double milliseconds() const noexcept { return last_.count(); }

  private:
    using Clock = std::chrono::steady_clock;

    std::chrono::duration<double, std::milli> last_{};
};

}  // namespace kv::control
