// Drawings that wait until the host has changed all that it wants to change.
#pragma once

#include <optional>
#include <utility>

namespace kv::control {

class HeldDrawings {
  public:
    enum class Drawing { DrawDisplay, JustDrawIt, Refresh };

    void begin() noexcept { ++depth_; }
    /// True, with the drawing noted in place of an earlier one, while drawings are held.
    bool holds(Drawing drawing) noexcept {
        if (depth_ == 0)
            return false;
        asked_ = drawing;
        return true;
    }
    [[nodiscard]] bool isHolding() const noexcept { return depth_ > 0; }
    /// The end that belongs to a `begin`. Returns the drawing that was asked for last, when it is the outermost end.
    std::optional<Drawing> end() noexcept { return --depth_ == 0 ? std::exchange(asked_, std::nullopt) : std::nullopt; }

  private:
    int depth_ = 0;
    std::optional<Drawing> asked_;
};

}  // namespace kv::control
