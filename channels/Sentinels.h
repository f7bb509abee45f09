// The values that mean "not set", visible to hosts, and one named test for each.
#pragma once

namespace kv::channels {

/// A minimum that has seen nothing holds +FREQ_UNSET, a maximum -FREQ_UNSET (MHz or dBm).
inline constexpr double FREQ_UNSET = 8888888888888.0;

/// What an empty store reports as its lowest frequency; one unit below FREQ_UNSET on purpose, so that a value derived
/// from it still counts as empty.
inline constexpr double kEmptyStoreMinimum = 8888888888887.0;

/// Invalid, not found or not given.
inline constexpr int kInvalid = -88;

[[nodiscard]] constexpr bool isUnsetMinimum(double value) noexcept {
    return !(value < FREQ_UNSET);
}
[[nodiscard]] constexpr bool isUnsetMaxPower(double value) noexcept {
    return !(value > -FREQ_UNSET);
}
/// A maximum frequency, a center or a grid step.
[[nodiscard]] constexpr bool isUnsetFrequency(double value) noexcept {
    return !(value > 0.0);
}
[[nodiscard]] constexpr bool isEmptyStoreMinimum(double value) noexcept {
    return !(value < kEmptyStoreMinimum);
}

}  // namespace kv::channels
