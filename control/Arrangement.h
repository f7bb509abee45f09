// The start of the child controls: places, captions, colors and tooltips.
#pragma once

#include "control/Children.h"

namespace kv::control {

/// The margin between the control's edge and its two frames, and between the frames; twips.
inline constexpr double kPanelMargin = 60.0;

/// Arranges a new control at its start size.
void arrangeParts(Children& ui);

}  // namespace kv::control
