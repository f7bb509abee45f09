// A set of places that is quickly filled, gone through in order and emptied.
#pragma once

#include <cstddef>
#include <vector>

namespace kv::channels {

/// A bit a place, and a bit for each word of them, so that a few members of half a million are found without a search.
/// Only `grow` needs memory.
class PlaceSet {
  public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// Places below `size` can be members from now on. Throws std::bad_alloc and changes nothing.
    void grow(std::size_t size);
    /// Does nothing for a place that cannot be a member.
    void insert(std::size_t place) noexcept;
    void erase(std::size_t place) noexcept;
    void clear() noexcept;
    [[nodiscard]] bool contains(std::size_t place) const noexcept;
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] bool empty() const noexcept { return count_ == 0; }
    /// The first member at `from` or after it, `kNone` without one.
    [[nodiscard]] std::size_t next(std::size_t from) const noexcept;

  private:
    std::vector<std::size_t> words_;
    std::vector<std::size_t> used_;  ///< a bit for each word that is not 0
    std::size_t count_ = 0;
};

}  // namespace kv::channels
