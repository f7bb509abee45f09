// Numbers that are not finite.
#pragma once

#include <limits>

namespace kv {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace kv
