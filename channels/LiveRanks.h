// Places in a list from which things are taken away again and again, without numbering the rest anew each time.
#pragma once

#include <cstdint>
#include <vector>

namespace kv::channels {

/// Whoever enters the list gets the next number, from 0, and keeps it; its rank is the number of those before it that
/// are still there. Entering costs nothing, leaving an addition for each 1024 numbers behind.
class LiveRanks {
  public:
    /// The number of whoever enters a list of `live` others.
    [[nodiscard]] std::int32_t next(std::int32_t live) const noexcept { return live + gone_; }
    [[nodiscard]] std::int32_t rank(std::int32_t number) const noexcept;
    /// `number`, which is still there, leaves.
    void leave(std::int32_t number);
    /// All have left; numbers begin anew.
    void clear() noexcept;

  private:
    std::vector<std::uint64_t> left_;       ///< a bit for each number; none for those above the highest that left
    std::vector<std::int32_t> leftBefore_;  ///< how many have left before each block
    std::int32_t gone_ = 0;
};

}  // namespace kv::channels
