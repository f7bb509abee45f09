// Results of calls that end with a run-time error.
#pragma once

#include <windows.h>

namespace kv::test {

/// What a call returns for the run-time error of that number.
[[nodiscard]] constexpr HRESULT runTimeError(unsigned number) noexcept {
    return static_cast<HRESULT>(0x800A0000U + number);
}

inline constexpr HRESULT kError5 = runTimeError(5);   ///< Invalid procedure call or argument
inline constexpr HRESULT kError9 = runTimeError(9);   ///< Subscript out of range
inline constexpr HRESULT kNotSet = runTimeError(91);  ///< Object variable not set

}  // namespace kv::test
