#include "control/KnobRescale.h"

#include "turndial/Knob.h"

namespace kv::control {

void ReScaleknob(turndial::tdKnob& knob, double dMin, double dMax, double dStepIn, std::int16_t& nSteps) {
    if (knob.bMouseDown())
        return;
    knob.dMinVal = dMin > 0.0 ? dMin : 0.0;
    knob.dMaxVal = dMax;
    if (dStepIn > 0.0) {
        knob.dStep = dStepIn;
    } else {
        if (nSteps <= 0)
            nSteps = 10;
        // The whole span counts, also the part below 0 that the knob leaves out.
        knob.dStep = (dMax - dMin) / nSteps;
    }
    knob.Refresh();
}

}  // namespace kv::control
