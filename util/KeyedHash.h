// A hash whose values cannot be foreseen.
#pragma once

#include <cstddef>
#include <string_view>

namespace kv::util {

/// A hash of `text` without regard to letter case, as foldCase has it, under a key that is random in each process:
/// texts that are made to collide collide no more often than others. The method is SipHash-1-3 (J.-P. Aumasson and
/// D. J. Bernstein, "SipHash: a fast short-input PRF", 2012), in 32-bit programs its form for words of 32 bits,
/// HalfSipHash-1-3, with as many characters in each word as it holds.
[[nodiscard]] std::size_t foldedHash(std::wstring_view text) noexcept;

}  // namespace kv::util
