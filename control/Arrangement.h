// The start of the child controls: places, captions, colors and tooltips.
#pragma once

#include "control/Children.h"

namespace kv::control {

/// The margin between the control's edge and its two frames, and between the frames; twips.
inline constexpr double kPanelMargin = 60.0;

/// Arranges a new control at its start size.
void arrangeParts(Children& ui);

/// Places the read-outs of the pointer in a panel of that width (twips). In a wide panel they are large and to the
/// right of all other parts; otherwise they are in the left column. The other parts never move.
void placeReadouts(Children& ui, double panelWidth);

}  // namespace kv::control
