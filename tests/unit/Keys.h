// Codes of keys and mouse buttons, as the system numbers them.
#pragma once

#include "formenv/ShiftKeys.h"

namespace kv::key {

enum Code {
    kTab = 9,
    kEnter = 13,
    kEscape = 27,
    kSpace = 32,
    kPageUp,
    kPageDown,
    kEnd,
    kHome,
    kLeft,
    kUp,
    kRight,
    kDown,
    kB = 66,
    kC,
    kD,
    kM = 77,
    kPadPlus = 107,
    kPadMinus = 109,
    kPlus = 187,
    kMinus = 189
};

using namespace formenv::shift_key;

}  // namespace kv::key

namespace kv {

inline constexpr int kLeftButton = 1;
inline constexpr int kRightButton = 2;

}  // namespace kv
