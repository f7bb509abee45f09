// The keys that are held together with a key or a mouse button, as events number them; several add up.
#pragma once

namespace kv::formenv::shift_key {

inline constexpr int kShift = 1;
inline constexpr int kCtrl = 2;
inline constexpr int kAlt = 4;

}  // namespace kv::formenv::shift_key
