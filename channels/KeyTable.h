// Texts by number, found without regard to letter case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kv::channels {

/// Numbers count from 0 in the order of adding. The texts lie one behind the other in one block of memory, because a
/// host may add half a million short keys.
class KeyTable {
  public:
    static constexpr std::int32_t kNone = -1;

    /// `kNone` when the text was not added.
    [[nodiscard]] std::int32_t find(std::wstring_view text) const noexcept;
    /// Whether the text that `find` has just found is the same in letter case, too.
    [[nodiscard]] bool foundExactly() const noexcept { return lastIsExact_; }
    /// The number of a text that is not in the table yet. Throws std::bad_alloc and changes nothing.
    std::int32_t add(std::wstring_view text);
    [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
    [[nodiscard]] std::wstring_view text(std::int32_t number) const noexcept;

  private:
    struct Entry {
        std::uint32_t begin;  ///< in `characters_`; the text ends where the next one begins
        std::uint32_t hash;
    };
    [[nodiscard]] bool isFull() const noexcept { return entries_.size() * 4 >= slots_.size() * 3; }
    [[nodiscard]] static std::uint32_t hashOf(std::wstring_view text) noexcept;
    static void enter(std::vector<std::uint32_t>& slots, std::uint32_t hash, std::size_t number) noexcept;
    void growSlots();

    std::vector<wchar_t> characters_;
    std::vector<Entry> entries_;
    mutable std::int32_t last_ = kNone;  ///< the text that was found last: a key is often looked up several times
    mutable bool lastIsExact_ = false;
    /// A power of 2 of them. A text is at the first slot from its hash on that was free: its number plus 1, which takes
    /// fewer bits than a slot has, and above it the same bits of its hash. They tell nearly all other texts without a
    /// look at their entries, which are scattered over the memory. 0 is a free slot.
    std::vector<std::uint32_t> slots_;
};

}  // namespace kv::channels
