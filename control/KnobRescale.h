// The scale of a rotary knob that follows the displayed range.
#pragma once

#include <cstdint>

namespace kv::turndial {
class tdKnob;
}

namespace kv::control {

/// Gives the knob the range from `dMin`, but at least 0, to `dMax`. One detent becomes `dStepIn` when that is above 0,
/// otherwise one part of `nSteps`; an `nSteps` that is not above 0 becomes 10. A knob that the user holds stays as it
/// is.
void ReScaleknob(turndial::tdKnob& knob, double dMin, double dMax, double dStepIn, std::int16_t& nSteps);

}  // namespace kv::control
