// A set of bits that quickly counts the bits before a position.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kv::channels {

/// Marks the items that were removed from a list, so that the others need no new numbers: an item's position never
/// changes, and its current index is the number of clear bits before it. Bits above the highest set one take no memory.
class RankedBits {
  public:
    /// Sets a bit that is clear. Costs one addition for each word after it in its block of 1024 positions, and one for
    /// each block after that. If the memory is short, throws std::bad_alloc and changes nothing.
    void set(std::size_t position);

    [[nodiscard]] bool test(std::size_t position) const noexcept;
    /// The number of set bits.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] std::size_t clearBefore(std::size_t position) const noexcept;
    /// The position of the clear bit with `rank` clear bits before it.
    [[nodiscard]] std::size_t positionOfClear(std::size_t rank) const noexcept;

  private:
    [[nodiscard]] std::size_t clearBeforeBlock(std::size_t block) const noexcept;
    [[nodiscard]] std::size_t clearBeforeWord(std::size_t word) const noexcept;

    std::vector<std::size_t> words_;
    std::vector<std::uint16_t> setInBlock_;  ///< before each word, from the beginning of its block
    std::vector<std::uint32_t> setBefore_;   ///< before each block of words
    std::size_t count_ = 0;
};

}  // namespace kv::channels
