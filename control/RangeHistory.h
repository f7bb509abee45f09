// The ranges that the user has left, to go back to and forward again.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace kv::control {

/// A range before an action, and the one after it, are one step. Ranges in MHz.
class RangeHistory {
  public:
    using Range = std::pair<double, double>;
    static constexpr std::size_t kDeepest = 50;

    /// An action of the user begins at `present`. Inside another one it belongs to that one.
    void begin(const Range& present);
    /// The action has ended, at `present`: a step, unless the range is the one from before.
    void finish(const Range& present);
    /// The action has ended without a change.
    void giveUp() noexcept { before_.reset(); }
    [[nodiscard]] bool isInAction() const noexcept { return before_.has_value(); }

    [[nodiscard]] bool canGoBack() const noexcept { return !back_.empty(); }
    [[nodiscard]] bool canGoForward() const noexcept { return !forward_.empty(); }
    /// The range to go to from `present`; nothing when there is none. Throws std::bad_alloc and changes nothing.
    std::optional<Range> goBack(const Range& present) { return go(back_, forward_, present); }
    std::optional<Range> goForward(const Range& present) { return go(forward_, back_, present); }

  private:
    static std::optional<Range> go(std::vector<Range>& from, std::vector<Range>& to, const Range& present);

    std::vector<Range> back_;  ///< the latest is the last
    std::vector<Range> forward_;
    std::optional<Range> before_;  ///< of the action that is going on
};

/// An action that is over at the end of a block. One that raised an event of a new range has been finished by then.
class RangeAction {
  public:
    RangeAction(RangeHistory& history, const RangeHistory::Range& present)
        : history_(history), outer_(!history.isInAction()) {
        history_.begin(present);
    }
    ~RangeAction() {
        if (outer_)
            history_.giveUp();
    }
    RangeAction(const RangeAction&) = delete;
    RangeAction& operator=(const RangeAction&) = delete;

  private:
    RangeHistory& history_;
    bool outer_;
};

}  // namespace kv::control
