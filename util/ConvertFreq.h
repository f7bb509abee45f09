// Conversion of frequencies and bandwidths between the four units that channels are given in.
#pragma once

#include <cstdint>
#include <string_view>

namespace kv::util {

/// What ConvertFreq gives for a unit it does not know; the control's general value for "invalid".
inline constexpr double kInvalidFreq = -88.0;

/// Converts `dValue` from one unit to another. Units are "Hz", "KHz", "MHz" and "GHz", written exactly so.
///
/// Two equal texts return the value unchanged, even when they name no known unit. An unknown unit gives
/// kInvalidFreq and sets `bErr`, which is false in every other case. The value passes through MHz, by the constant
/// 1000 one step at a time, so that results agree to the last bit with those that hosts have stored.
/// Throws RuntimeError 6 (Overflow) when a finite value has no finite result; NaN and infinities pass through.
[[nodiscard]] double ConvertFreq(std::wstring_view sFromUnits, std::wstring_view sToUnits, double dValue, bool& bErr);

/// The same for callers to whom an unknown unit is no error.
[[nodiscard]] double ConvertFreq(std::wstring_view sFromUnits, std::wstring_view sToUnits, double dValue);

/// The units by number, for lists of many frequencies. `Other` is any text that names no unit.
enum class FreqUnit : std::uint8_t { MHz, Hz, KHz, GHz, Other };
[[nodiscard]] FreqUnit freqUnitOf(std::wstring_view name) noexcept;
/// As for the unit's name, but a finite value without a finite result gives an infinity.
[[nodiscard]] double toMHz(FreqUnit from, double dValue) noexcept;

/// Converts to MHz; an unknown unit gives kInvalidFreq. Throws RuntimeError 6 as ConvertFreq does.
[[nodiscard]] double toMHz(std::wstring_view sFromUnits, double dValue);

}  // namespace kv::util
